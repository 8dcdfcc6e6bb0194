#include "driver/picture.h"

#include "ui/handles.h"

#define STB_IMAGE_WRITE_IMPLEMENTATION
#include <stb/stb_image_write.h>

#include <cstdlib>

namespace facetor {

namespace {

WindowPicture capture(HDC source, int width, int height)
{
    WindowPicture picture{width, height, {}};
    if (width <= 0 || height <= 0) return {};
    const UniqueHandle<HDC, DeleteDC> memory(CreateCompatibleDC(source));
    const UniqueHandle<HBITMAP, DeleteObject> bitmap(CreateCompatibleBitmap(source, width, height));
    const HGDIOBJ before = SelectObject(memory.get(), bitmap.get());
    BitBlt(memory.get(), 0, 0, width, height, source, 0, 0, SRCCOPY);
    SelectObject(memory.get(), before);

    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height; // top row first
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    std::vector<std::uint8_t> bgrx(4 * count);
    GetDIBits(memory.get(), bitmap.get(), 0, static_cast<UINT>(height), bgrx.data(), &info,
              DIB_RGB_COLORS);
    picture.rgb.resize(3 * count);
    for (std::size_t i = 0; i < count; ++i)
        for (std::size_t channel = 0; channel < 3; ++channel)
            picture.rgb[3 * i + channel] = bgrx[4 * i + 2 - channel];
    return picture;
}

} // namespace

WindowPicture captureClient(HWND window)
{
    RECT area{};
    GetClientRect(window, &area);
    const HDC dc = GetDC(window);
    WindowPicture picture = capture(dc, area.right, area.bottom);
    ReleaseDC(window, dc);
    return picture;
}

WindowPicture captureWindow(HWND window)
{
    RECT area{};
    GetWindowRect(window, &area);
    const HDC dc = GetWindowDC(window);
    WindowPicture picture = capture(dc, area.right - area.left, area.bottom - area.top);
    ReleaseDC(window, dc);
    return picture;
}

void savePicture(const WindowPicture& picture, const std::string& name)
{
    const char* folder = std::getenv("FACETOR_SCREENSHOTS");
    if (!folder || picture.rgb.empty()) return;
    const std::string path = std::string(folder) + "/" + name + ".png";
    stbi_write_png(path.c_str(), picture.width, picture.height, 3, picture.rgb.data(), 0);
}

} // namespace facetor
