#include "commands/texture_clipboard.h"

#include "commands/texture_commands.h"
#include "document/texture_edits.h"
#include "image/bitmap_conversion.h"
#include "state/editor.h"
#include "ui/handles.h"

#include <cstdint>

namespace facetor {

namespace {

using UniqueGlobal = UniqueHandle<HGLOBAL, GlobalFree>;

UniqueGlobal packedBlock(const TextureSlot& texture)
{
    const std::uint64_t size = packedTextureSize(texture);
    if (size > SIZE_MAX) return nullptr;
    UniqueGlobal block(GlobalAlloc(GHND, static_cast<SIZE_T>(size)));
    const LockedGlobal locked(block.get());
    if (locked.bytes().size() < size) return nullptr;
    packTexture(texture, locked.bytes());
    return block;
}

} // namespace

bool putOnClipboard(HWND owner, const TextureSlot& texture)
{
    UniqueGlobal block = packedBlock(texture);
    if (!block) return false;
    const OpenedClipboard clipboard(owner);
    if (!clipboard || !EmptyClipboard() || !SetClipboardData(CF_DIB, block.get())) return false;
    (void)block.release(); // the clipboard owns the memory now
    return true;
}

CommandOutcome copyTexture(Editor& editor)
{
    const TextureList& list = editor.document.textures;
    if (putOnClipboard(editor.mainWindow, list.slot(list.current))) return CommandOutcome::done;
    alert(editor.alerts, editor.mainWindow, Message::outOfMemory, AlertStyle::exclamation);
    return CommandOutcome::abandoned;
}

CommandOutcome pasteTexture(Editor& editor)
{
    EditOutcome outcome{Message::none, Message::clipboardEmpty};
    if (const OpenedClipboard clipboard(editor.mainWindow); clipboard) {
        if (const HANDLE data = GetClipboardData(CF_DIB))
            outcome = change(editor.document, Word::stepPaste, [&] {
                TextureList& list = editor.document.textures;
                return pasteBitmap(list, editor.document.undo, list.current,
                                   LockedGlobal(data).bytes(), editor.transparentColour);
            });
    }
    return finishTextureEdit(editor, outcome); // with the clipboard closed: it may show an alert
}

void emptyClipboard(Editor& editor)
{
    if (const OpenedClipboard clipboard(editor.mainWindow); clipboard) EmptyClipboard();
}

} // namespace facetor
