#include "document/undo_kinds.h"

#include "document/model_edit.h"
#include "document/texture_undo.h"

#include <algorithm>
#include <iterator>

namespace facetor {

namespace {

enum class Subject { model, textures };

/// What the undo slot can hold, and what undoing does with it.
struct UndoKind {
    std::uint32_t tag;
    Subject subject;
    Message (*undo)(UndoSlot& slot, Model& model, TextureList& list);
};

constexpr std::uint32_t tagOf(ModelEdit edit)
{
    return static_cast<std::uint32_t>(edit);
}

constexpr UndoKind undoKinds[] = {
    {tagOf(ModelEdit::attributes), Subject::model, exchangeModelEdit},
    {tagOf(ModelEdit::rotateVertices), Subject::model, exchangeModelEdit},
    {tagOf(ModelEdit::invertSurface), Subject::model, exchangeModelEdit},
    {tagOf(ModelEdit::gouraudTable), Subject::model, exchangeModelEdit},
    {textureReplaced, Subject::textures, undoTexture},
    {textureTransformed, Subject::textures, undoTexture},
    {slotInserted, Subject::textures, undoInsert},
    {slotRemoved, Subject::textures, undoRemove},
    {texturesFlipped, Subject::textures, undoFlips},
    {texturesTurned, Subject::textures, undoTurns},
};

const UndoKind* findKind(const UndoSlot& slot)
{
    const auto* found = std::ranges::find(undoKinds, slot.kind, &UndoKind::tag);
    return found == std::end(undoKinds) ? nullptr : found;
}

} // namespace

Message undoEdit(UndoSlot& slot, Model& model, TextureList& list)
{
    const UndoKind* kind = findKind(slot);
    return kind ? kind->undo(slot, model, list) : Message::none;
}

bool isTextureEdit(const UndoSlot& slot)
{
    const UndoKind* kind = findKind(slot);
    return kind && kind->subject == Subject::textures;
}

} // namespace facetor
