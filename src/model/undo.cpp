#include "model/undo.h"

#include <algorithm>
#include <new>

namespace facetor {

Message undoRemember(UndoSlot& slot, std::uint32_t kind, std::span<const std::byte> block)
{
    undoClear(slot); // first, so that its memory can serve
    try {
        slot.block.assign(block.begin(), block.end());
    } catch (const std::bad_alloc&) {
        return Message::outOfUndoMemory;
    }
    slot.kind = kind;
    return Message::none;
}

Message undoExchange(UndoSlot& slot, std::uint32_t kind, std::span<std::byte> live)
{
    if (slot.isEmpty() || slot.block.empty() || slot.kind != kind ||
        slot.block.size() != live.size())
        return Message::outOfUndoMemory;
    std::swap_ranges(live.begin(), live.end(), slot.block.begin());
    return Message::none;
}

void undoClear(UndoSlot& slot)
{
    slot = UndoSlot{};
}

} // namespace facetor
