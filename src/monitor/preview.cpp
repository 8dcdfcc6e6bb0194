#include "monitor/preview.h"

#include "ui/handles.h"
#include "ui/window_data.h"

namespace facetor {

bool Preview::create(HWND owner)
{
    engine_ = std::make_unique<Engine>();
    if (startEngine(*engine_) != Message::none) return false;
    WNDCLASSA description{};
    description.lpfnWndProc = procedure;
    description.hInstance = instanceOf(owner);
    description.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    description.lpszClassName = "FacetorMonitorPreview";
    RegisterClassA(&description);
    window_ =
        CreateWindowExA(WS_EX_CLIENTEDGE, description.lpszClassName, "", WS_CHILD | WS_VISIBLE, 0,
                        0, 1, 1, owner, nullptr, description.hInstance, this);
    return window_ != nullptr;
}

void Preview::place(const RECT& place)
{
    MoveWindow(window_, place.left, place.top, place.right - place.left, place.bottom - place.top,
               TRUE);
    draw();
}

void Preview::show(ReceivedScene& scene)
{
    scene_ = &scene;
    draw();
}

void Preview::draw()
{
    RECT client{};
    GetClientRect(window_, &client);
    if (!scene_ || client.right < 4 || client.bottom < 1) return;
    drawReceivedScene(*scene_, *engine_, view_, {client.right, client.bottom});
    InvalidateRect(window_, nullptr, FALSE);
}

void Preview::paint() const
{
    const PaintContext context(window_);
    RECT client{};
    GetClientRect(window_, &client);
    FillRect(context.dc(), &client, GetSysColorBrush(COLOR_APPWORKSPACE));
    if (!scene_ || (!scene_->hasModel && !scene_->hasTextures)) return;
    const FrameSurface& surface = engine_->surface;
    SetDIBitsToDevice(context.dc(), 0, 0, static_cast<DWORD>(surface.width),
                      static_cast<DWORD>(surface.height), 0, 0, 0,
                      static_cast<UINT>(surface.height), surface.pixels(),
                      reinterpret_cast<const BITMAPINFO*>(&surface.header()), DIB_RGB_COLORS);
}

LRESULT CALLBACK Preview::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_NCCREATE) {
        const auto* start = reinterpret_cast<const CREATESTRUCTA*>(lParam);
        SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(start->lpCreateParams));
        static_cast<Preview*>(start->lpCreateParams)->window_ = window;
    }
    const auto* preview = reinterpret_cast<Preview*>(GetWindowLongPtrA(window, GWLP_USERDATA));
    if (message == WM_PAINT && preview) {
        preview->paint();
        return 0;
    }
    if (message == WM_ERASEBKGND) return 1;
    return DefWindowProcA(window, message, wParam, lParam);
}

} // namespace facetor
