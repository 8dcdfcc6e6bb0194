#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace facetor {

/// A picture of a window, 8 bits a channel, top row first.
struct WindowPicture {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgb;

    /// Red, green and blue as 0xRRGGBB. Needs 0 <= x < width, 0 <= y < height.
    std::uint32_t at(int x, int y) const
    {
        const std::size_t i = 3 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                                   static_cast<std::size_t>(x));
        return static_cast<std::uint32_t>(rgb[i] << 16 | rgb[i + 1] << 8 | rgb[i + 2]);
    }
    friend bool operator==(const WindowPicture&, const WindowPicture&) = default;
};

/// The pixels of a window's client area, from its device context.
WindowPicture captureClient(HWND window);
/// The pixels of the whole window with its frame.
WindowPicture captureWindow(HWND window);

/// Writes the picture as name.png into the folder that the environment variable
/// FACETOR_SCREENSHOTS names; does nothing without it.
void savePicture(const WindowPicture& picture, const std::string& name);

} // namespace facetor
