#include "session/plug_in_list.h"

#include "texture/texture_list.h"

#include <algorithm>
#include <cassert>

namespace facetor {

namespace {

void add(PlugInList& list, const PlugInDescription& plugIn)
{
    const std::string entry =
        plugIn.description + "(*." + plugIn.extension + ")|*." + plugIn.extension + "|";
    // One byte stays for the second NUL at the end.
    list.full = list.full || list.files.size() == plugInCapacity ||
                entry.size() >= list.filter.size() - list.filterLength;
    if (list.full) return;
    std::ranges::copy(entry, list.filter.begin() + list.filterLength);
    list.filterLength += entry.size();
    list.files.push_back(plugIn.file);
}

Message create(PlugInList& list)
{
    list.files.clear();
    list.filterLength = 0;
    list.full = false;
    return list.filter.allocate(plugInFilterSize) ? Message::none : Message::outOfMemory;
}

} // namespace

Message createPlugInLists(PlugIns& plugIns)
{
    if (const Message message = create(plugIns.import); message != Message::none) return message;
    return create(plugIns.export_);
}

std::optional<PlugInCapability> parsePlugInCapability(std::string_view text)
{
    if (text == "READ WRITE") return PlugInCapability{.read = true, .write = true};
    if (text == "READ") return PlugInCapability{.read = true};
    if (text == "WRITE") return PlugInCapability{.write = true};
    if (text == "EFFECT") return PlugInCapability{.effect = true};
    return std::nullopt;
}

Message registerPlugIn(PlugIns& plugIns, const PlugInDescription& plugIn,
                       const PlugInCapability& capability)
{
    if (plugIn.file.size() >= plugInNameSize ||
        (plugIn.extension + plugIn.description).find('|') != std::string::npos)
        return Message::badPlugIn;
    if (capability.read) add(plugIns.import, plugIn);
    if (capability.write) add(plugIns.export_, plugIn);
    return Message::none;
}

void finishPlugInFilters(PlugIns& plugIns)
{
    for (PlugInList* list : {&plugIns.import, &plugIns.export_})
        std::ranges::replace(list->filter, '|', '\0');
}

bool listsDepth(std::string_view depths, int depth)
{
    const std::string number = std::to_string(depth);
    for (std::size_t found = depths.find(number); found != std::string_view::npos;
         found = depths.find(number, found + 1)) {
        const std::string_view rest = depths.substr(found + number.size());
        if (rest.empty() || rest.front() == ' ') return true;
    }
    return false;
}

std::uint32_t importCount(std::uint32_t current, std::size_t fileCount)
{
    constexpr std::uint32_t end = textureSlotCount - 1;
    if (current >= end) return 0;
    return static_cast<std::uint32_t>(std::min<std::size_t>(fileCount, end - current));
}

SlotRange exportedSlots(const ExportChoice& choice, std::uint32_t current, std::uint32_t usedCount)
{
    switch (choice.range) {
    case ExportRange::current: return {current, current + 1};
    case ExportRange::extent:
        return {static_cast<std::uint32_t>(choice.extent.first),
                std::min(static_cast<std::uint32_t>(choice.extent.last) + 1, textureSlotCount)};
    default: return {0, usedCount};
    }
}

std::string exportPath(std::string_view chosen, std::uint32_t slot, std::uint32_t usedCount)
{
    // A "." in a folder's name is no extension's.
    const std::size_t name = chosen.find_last_of("\\/") + 1;
    const std::size_t dot = chosen.find_last_of('.');
    const bool extended = dot != std::string_view::npos && dot >= name;
    const std::string_view base = extended ? chosen.substr(0, dot) : chosen;
    const std::string_view extension = extended ? chosen.substr(dot + 1) : std::string_view{};

    std::string number = std::to_string(slot);
    const std::size_t digits = usedCount >= 100 ? 3 : 2;
    if (number.size() < digits) number.insert(0, digits - number.size(), '0');
    return std::string(base) + number + "." + std::string(extension);
}

} // namespace facetor
