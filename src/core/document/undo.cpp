#include "document/undo.h"

#include <algorithm>
#include <new>

namespace facetor {

namespace {

std::size_t sizeOf(const UndoPieces& pieces)
{
    std::size_t size = 0;
    for (const auto& piece : pieces) size += piece.size();
    return size;
}

} // namespace

Message undoRemember(UndoSlot& slot, std::uint32_t kind, const UndoPieces& live)
{
    undoClear(slot); // first, so that its memory can serve
    try {
        slot.block.reserve(sizeOf(live));
    } catch (const std::bad_alloc&) {
        return Message::outOfUndoMemory;
    }
    for (const auto& piece : live) slot.block.insert(slot.block.end(), piece.begin(), piece.end());
    slot.kind = kind;
    return Message::none;
}

Message undoExchange(UndoSlot& slot, std::uint32_t kind, const UndoPieces& live)
{
    if (slot.isEmpty() || slot.block.empty() || slot.kind != kind ||
        slot.block.size() != sizeOf(live))
        return Message::outOfUndoMemory;
    auto saved = slot.block.begin();
    for (const auto& piece : live) saved = std::swap_ranges(piece.begin(), piece.end(), saved);
    return Message::none;
}

void undoClear(UndoSlot& slot)
{
    slot = UndoSlot{};
}

} // namespace facetor
