#include "commands/picture_commands.h"

#include "base/file.h"
#include "base/text.h"
#include "commands/texture_clipboard.h"
#include "image/png_codec.h"
#include "state/editor.h"
#include "ui/handles.h"
#include "view/view_picture.h"
#include "windows/model_view_window.h"
#include "windows/slice_view.h"
#include "windows/title.h"

namespace facetor {

namespace {

/// Number of the filter of the file dialog.
constexpr DWORD filterWithoutBackground = 2;

Message pictureOfView(Editor& editor, ViewPicture& picture, Background background)
{
    const std::optional<PlacedTexture> slice = shownSlice(editor);
    const Message message = takePicture(picture, editor.view, editor.engine, editor.document.model,
                                        viewSize(editor), slice ? &*slice : nullptr, background);
    InvalidateRect(editor.mainWindow, nullptr, FALSE);
    return message;
}

Message writePicture(const ViewPicture& picture, const std::string& path)
{
    const Bytes file = pngCodec.encode({picture.width, picture.height, picture.texels});
    return file.empty() ? Message::outOfMemory : writeFile(path, file);
}

CommandOutcome finish(Editor& editor, Message message)
{
    if (message == Message::none) return CommandOutcome::done;
    alert(editor.alerts, editor.mainWindow, message, AlertStyle::exclamation);
    return CommandOutcome::abandoned;
}

} // namespace

CommandOutcome savePicture(Editor& editor)
{
    const auto chosen = askSaveFile(editor.mainWindow, editor.fileDialogs.savePicture,
                                    std::string(cutExtension(shownModelFile(editor))));
    if (!chosen || !isRunning(editor)) return CommandOutcome::abandoned;
    const WaitCursor waiting;
    ViewPicture picture;
    Message message = pictureOfView(
        editor, picture,
        chosen->filter == filterWithoutBackground ? Background::transparent : Background::kept);
    if (message == Message::none) message = writePicture(picture, chosen->path);
    return finish(editor, message);
}

CommandOutcome copyPicture(Editor& editor)
{
    ViewPicture picture;
    Message message = pictureOfView(editor, picture, Background::kept);
    if (message == Message::none) {
        const TextureSlot texture{static_cast<std::uint16_t>(picture.width),
                                  static_cast<std::uint16_t>(picture.height),
                                  picture.texels.data()};
        if (!putOnClipboard(editor.mainWindow, texture)) message = Message::outOfMemory;
    }
    return finish(editor, message);
}

} // namespace facetor
