#pragma once

#include <windows.h>

#include <cstddef>
#include <memory>
#include <span>
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
    /// What needs to be painted, in client pixels.
    const RECT& area() const { return paint_.rcPaint; }

private:
    HWND window_;
    PAINTSTRUCT paint_{};
};

/// A window's device context, given back when the scope ends.
class WindowDc {
public:
    explicit WindowDc(HWND window) : window_(window), dc_(GetDC(window)) {}
    ~WindowDc() { ReleaseDC(window_, dc_); }
    WindowDc(const WindowDc&) = delete;
    WindowDc& operator=(const WindowDc&) = delete;

    HDC get() const { return dc_; }

private:
    HWND window_;
    HDC dc_;
};

/// The clipboard, opened for `owner`, until the scope ends. What another program holds open for a
/// moment is waited for.
class OpenedClipboard {
public:
    explicit OpenedClipboard(HWND owner)
    {
        for (int attempt = 0; attempt < 20 && !(open_ = OpenClipboard(owner) != FALSE); ++attempt)
            Sleep(10);
    }
    ~OpenedClipboard()
    {
        if (open_) CloseClipboard();
    }
    OpenedClipboard(const OpenedClipboard&) = delete;
    OpenedClipboard& operator=(const OpenedClipboard&) = delete;

    explicit operator bool() const { return open_; }

private:
    bool open_ = false;
};

/// The memory of a global block while it is locked.
class LockedGlobal {
public:
    explicit LockedGlobal(HGLOBAL block)
        : block_(block), data_(static_cast<std::byte*>(GlobalLock(block))),
          size_(data_ ? GlobalSize(block) : 0)
    {
    }
    ~LockedGlobal()
    {
        if (data_) GlobalUnlock(block_);
    }
    LockedGlobal(const LockedGlobal&) = delete;
    LockedGlobal& operator=(const LockedGlobal&) = delete;

    /// The whole block; it may be larger than what was asked for. Empty when it cannot be locked.
    std::span<std::byte> bytes() const { return {data_, size_}; }

private:
    HGLOBAL block_;
    std::byte* data_;
    std::size_t size_;
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
