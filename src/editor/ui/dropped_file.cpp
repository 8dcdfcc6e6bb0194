#include "ui/dropped_file.h"

namespace facetor {

Message takeDroppedFile(HWND window, HDROP drop, std::string& path)
{
    const UINT length = IsWindowEnabled(window) ? DragQueryFileA(drop, 0, nullptr, 0) : 0;
    path.assign(length <= longestDroppedPath ? length : 0, '\0');
    if (!path.empty()) DragQueryFileA(drop, 0, path.data(), length + 1);
    DragFinish(drop);
    return length <= longestDroppedPath ? Message::none : Message::cannotOpenFile;
}

} // namespace facetor
