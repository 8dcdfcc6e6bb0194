#pragma once

#include "output/received_image.h"

#include <windows.h>

#include <memory>

namespace facetor {

/// The picture of what was received: a child window that draws it with the engine, at its own size.
class Preview {
public:
    /// False when the system refuses the window, or memory is short.
    bool create(HWND owner);
    void place(const RECT& place);
    /// Shows the scene as it is now; it must live as long as the preview.
    void show(ReceivedScene& scene);

private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void paint() const;
    void draw();

    HWND window_ = nullptr;
    ReceivedScene* scene_ = nullptr;
    std::unique_ptr<Engine> engine_;
    View view_;
};

} // namespace facetor
