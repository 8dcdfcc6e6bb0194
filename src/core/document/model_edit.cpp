#include "document/model_edit.h"

namespace facetor {

namespace {

template <typename T> std::span<std::byte> firstOf(PageArray<T>& pool, std::uint32_t count)
{
    return std::as_writable_bytes(std::span(pool.data(), count));
}

/// What an edit changes; nothing for a kind that is no edit of a model.
UndoPieces piecesOf(Model& model, ModelEdit edit)
{
    const std::uint32_t count = model.totalPolygonCount;
    const auto polygons = firstOf(model.polygons, count);
    const auto attributes = firstOf(model.attributes, count);
    switch (edit) {
    case ModelEdit::attributes: return {attributes};
    case ModelEdit::rotateVertices: return {polygons, attributes};
    case ModelEdit::invertSurface:
        return {polygons, attributes, firstOf(model.vertexNormals, model.totalVertexCount)};
    case ModelEdit::gouraudTable: return {attributes, firstOf(model.gouraud, count)};
    }
    return {};
}

} // namespace

Message rememberModel(UndoSlot& slot, Model& model, ModelEdit edit)
{
    return undoRemember(slot, static_cast<std::uint32_t>(edit), piecesOf(model, edit));
}

Message exchangeModelEdit(UndoSlot& slot, Model& model, TextureList&)
{
    const UndoPieces live = piecesOf(model, static_cast<ModelEdit>(slot.kind));
    return live.empty() ? Message::none : undoExchange(slot, slot.kind, live);
}

} // namespace facetor
