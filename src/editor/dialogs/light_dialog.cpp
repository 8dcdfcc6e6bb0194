#include "dialogs/light_dialog.h"

#include "resources/resource_ids.h"
#include "state/editor.h"
#include "ui/colour_button.h"
#include "ui/dialog.h"
#include "ui/handles.h"
#include "ui/window_data.h"
#include "windows/model_view_window.h"

#include <windows.h>
#include <windowsx.h>

#include <commctrl.h>

namespace facetor {

namespace {

constexpr int pickerMargin = 8; ///< within its frame, in pixels
constexpr int markerSize = 10;  ///< in pixels
constexpr int focusInset = 3;   ///< of the focus's frame within the picker's, in pixels
constexpr int keyStep = 4;      ///< of the marker by an arrow key, in pixels; with Ctrl it is 1
constexpr COLORREF globeColour = RGB(0x80, 0x80, 0x80);

/// What the dialog works on until OK.
struct LightDialog {
    Editor& editor;
    LightPicker picker{};
    ScreenPoint point{};
    Rgb555 light, ambient;
};

LightDialog& stateOf(HWND dialog)
{
    return dialogState<LightDialog>(dialog);
}

/// A control's client area in the dialog's client pixels.
RECT areaInDialog(HWND dialog, int control)
{
    RECT area{};
    GetClientRect(GetDlgItem(dialog, control), &area);
    MapWindowPoints(GetDlgItem(dialog, control), dialog, reinterpret_cast<POINT*>(&area), 2);
    return area;
}

void fillDialog(HWND dialog, LightDialog& state)
{
    const RECT area = areaInDialog(dialog, IDC_LIGHT_PICKER);
    state.picker.bounds = {area.left + pickerMargin, area.top + pickerMargin,
                           area.right - pickerMargin, area.bottom - pickerMargin};
    const LightChoice& choice = state.editor.light;
    state.point = choice.point.x == 0 && choice.point.y == 0
                      ? lightPoint(state.picker, state.editor.view.lightDirection)
                      : choice.point;
    CheckRadioButton(dialog, IDC_LIGHT_FORE, IDC_LIGHT_BACK,
                     choice.side == LightSide::fore ? IDC_LIGHT_FORE : IDC_LIGHT_BACK);
}

LightSide chosenSide(HWND dialog)
{
    return IsDlgButtonChecked(dialog, IDC_LIGHT_BACK) == BST_CHECKED ? LightSide::back
                                                                     : LightSide::fore;
}

/// Gives the view the light as it is chosen.
void lightView(HWND dialog, LightDialog& state)
{
    View& view = state.editor.view;
    view.lightDirection = lightDirection(state.picker, state.point, chosenSide(dialog));
    view.lightColour = state.light;
    view.ambientColour = state.ambient;
}

void takeDialog(HWND dialog, LightDialog& state)
{
    state.editor.light = {state.point, chosenSide(dialog)};
    lightView(dialog, state);
}

/// Lets the view show what is chosen, before it is decided.
void preview(HWND dialog, LightDialog& state)
{
    lightView(dialog, state);
    requestRedraw(state.editor);
}

/// Draws the globe and the marker; `area` is where, all in the pixels of the device context.
void drawGlobe(HDC dc, const RECT& area, POINT marker)
{
    const int width = area.right - area.left, height = area.bottom - area.top;
    const UniqueHandle<HPEN, DeleteObject> pen(CreatePen(PS_SOLID, 1, globeColour));
    const int saved = SaveDC(dc);
    SelectObject(dc, pen.get());
    SelectObject(dc, GetStockObject(HOLLOW_BRUSH));
    const UniqueHandle<HRGN, DeleteObject> inside(
        CreateEllipticRgn(area.left, area.top, area.right + 1, area.bottom + 1));
    SelectClipRgn(dc, inside.get());
    for (const int eighths : {1, 4, 7}) {
        MoveToEx(dc, area.left, area.top + height * eighths / 8, nullptr);
        LineTo(dc, area.right, area.top + height * eighths / 8);
    }
    MoveToEx(dc, area.left + width / 2, area.top, nullptr);
    LineTo(dc, area.left + width / 2, area.bottom);
    SelectClipRgn(dc, nullptr);
    Ellipse(dc, area.left, area.top, area.right, area.bottom);
    Ellipse(dc, area.left + width / 4, area.top, area.right - width / 4, area.bottom);
    PatBlt(dc, marker.x - markerSize / 2, marker.y - markerSize / 2, markerSize, markerSize,
           DSTINVERT);
    RestoreDC(dc, saved);
}

void drawPicker(const LightDialog& state, const DRAWITEMSTRUCT& item)
{
    RECT frame = item.rcItem;
    const int width = frame.right, height = frame.bottom;
    // Into a bitmap first: it is drawn anew for each move of the mouse, and shall not flicker.
    const UniqueHandle<HDC, DeleteDC> memory(CreateCompatibleDC(item.hDC));
    const UniqueHandle<HBITMAP, DeleteObject> bitmap(
        CreateCompatibleBitmap(item.hDC, width, height));
    const HGDIOBJ before = SelectObject(memory.get(), bitmap.get());
    FillRect(memory.get(), &frame, GetSysColorBrush(COLOR_BTNFACE));
    DrawEdge(memory.get(), &frame, EDGE_ETCHED, BF_RECT);
    const InclusiveRectangle& bounds = state.picker.bounds;
    const int dx = pickerMargin - bounds.left, dy = pickerMargin - bounds.top;
    drawGlobe(memory.get(),
              {bounds.left + dx, bounds.top + dy, bounds.right + dx, bounds.bottom + dy},
              {state.point.x + dx, state.point.y + dy});
    if (GetFocus() == item.hwndItem) {
        InflateRect(&frame, -focusInset, -focusInset);
        DrawFocusRect(memory.get(), &frame);
    }
    BitBlt(item.hDC, 0, 0, width, height, memory.get(), 0, 0, SRCCOPY);
    SelectObject(memory.get(), before);
}

void onDrawItem(const LightDialog& state, const DRAWITEMSTRUCT& item)
{
    switch (item.CtlID) {
    case IDC_LIGHT_PICKER: drawPicker(state, item); return;
    case IDC_LIGHT_COLOUR: drawColourButton(item, state.light); return;
    case IDC_LIGHT_AMBIENT: drawColourButton(item, state.ambient); return;
    default: return;
    }
}

/// Takes a point of the globe; nothing for one outside.
void moveMarker(HWND dialog, LightDialog& state, ScreenPoint point)
{
    if (!state.picker.contains(point)) return;
    state.point = point;
    InvalidateRect(GetDlgItem(dialog, IDC_LIGHT_PICKER), nullptr, FALSE);
    preview(dialog, state);
}

void onArrowKey(HWND dialog, LightDialog& state, WPARAM key)
{
    const int step = isKeyDown(VK_CONTROL) ? 1 : keyStep;
    ScreenPoint point = state.point;
    if (key == VK_LEFT) point.x -= step;
    if (key == VK_RIGHT) point.x += step;
    if (key == VK_UP) point.y -= step;
    if (key == VK_DOWN) point.y += step;
    moveMarker(dialog, state, point);
}

/// Before the static control's own procedure, which knows no keyboard.
LRESULT CALLBACK pickerProcedure(HWND picker, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                 DWORD_PTR)
{
    switch (message) {
    case WM_GETDLGCODE: return DLGC_WANTARROWS;
    case WM_SETFOCUS:
    case WM_KILLFOCUS: InvalidateRect(picker, nullptr, FALSE); return 0;
    case WM_KEYDOWN: onArrowKey(GetParent(picker), stateOf(GetParent(picker)), wParam); return 0;
    default: return DefSubclassProc(picker, message, wParam, lParam);
    }
}

void onCommand(HWND dialog, LightDialog& state, int control)
{
    Editor& editor = state.editor;
    switch (control) {
    case IDC_LIGHT_FORE:
    case IDC_LIGHT_BACK: return preview(dialog, state);
    case IDC_LIGHT_COLOUR:
        state.light = pickColour(editor.colourPicking, editor.alerts, dialog, state.light);
        break;
    case IDC_LIGHT_AMBIENT:
        state.ambient = pickColour(editor.colourPicking, editor.alerts, dialog, state.ambient);
        break;
    case IDOK: takeDialog(dialog, state); [[fallthrough]];
    case IDCANCEL: EndDialog(dialog, control); return;
    default: return;
    }
    InvalidateRect(GetDlgItem(dialog, control), nullptr, FALSE);
    preview(dialog, state);
}

INT_PTR CALLBACK lightProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message) {
    case WM_INITDIALOG:
        keepDialogState(dialog, lParam);
        fillDialog(dialog, stateOf(dialog));
        SetWindowSubclass(GetDlgItem(dialog, IDC_LIGHT_PICKER), pickerProcedure, 0, 0);
        SetFocus(GetDlgItem(dialog, stateOf(dialog).editor.light.side == LightSide::fore
                                        ? IDC_LIGHT_FORE
                                        : IDC_LIGHT_BACK));
        return FALSE; // it has been given
    case WM_DRAWITEM:
        onDrawItem(stateOf(dialog), *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
        return TRUE;
    case WM_LBUTTONDOWN:
    case WM_MOUSEMOVE:
        if (wParam & MK_LBUTTON)
            moveMarker(dialog, stateOf(dialog), {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
        return TRUE;
    case WM_COMMAND: onCommand(dialog, stateOf(dialog), LOWORD(wParam)); return TRUE;
    default: return FALSE;
    }
}

} // namespace

void showLightDialog(Editor& editor)
{
    View& view = editor.view;
    LightDialog state{editor, {}, {}, view.lightColour, view.ambientColour};
    const Vector3 direction = view.lightDirection;
    const Rgb555 light = view.lightColour, ambient = view.ambientColour;
    if (runDialog(editor.mainWindow, "IDD_LIGHT", lightProcedure,
                  reinterpret_cast<LPARAM>(&state)) != IDOK) {
        view.lightDirection = direction;
        view.lightColour = light;
        view.ambientColour = ambient;
    }
    requestRedraw(editor);
}

} // namespace facetor
