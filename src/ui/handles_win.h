#pragma once

#include <windows.h>

#include <memory>
#include <type_traits>

namespace facetor {

template <auto Close> struct Closer {
    template <typename Handle> void operator()(Handle* handle) const { Close(handle); }
};

/// Owns a handle of the system and closes it with `Close`; release() marks the line where the
/// system takes the handle over.
template <typename Handle, auto Close>
using UniqueHandle = std::unique_ptr<std::remove_pointer_t<Handle>, Closer<Close>>;

/// The device context of one paint message, given back when the scope ends.
class PaintContext {
public:
    explicit PaintContext(HWND window) : window_(window) { BeginPaint(window_, &paint_); }
    ~PaintContext() { EndPaint(window_, &paint_); }
    PaintContext(const PaintContext&) = delete;
    PaintContext& operator=(const PaintContext&) = delete;

    HDC dc() const { return paint_.hdc; }

private:
    HWND window_;
    PAINTSTRUCT paint_{};
};

/// Shows the wait cursor, and the arrow again when the scope ends.
class WaitCursor {
public:
    WaitCursor() { SetCursor(LoadCursorA(nullptr, IDC_WAIT)); }
    ~WaitCursor() { SetCursor(LoadCursorA(nullptr, IDC_ARROW)); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

} // namespace facetor
