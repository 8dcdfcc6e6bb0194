#pragma once

#include "base/message.h"
#include "base/pages.h"
#include "texture/texture_transforms.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace facetor {

// What the editor keeps of the image plug-ins, and the rules of importing and exporting that need
// no window. docs/plugins.md describes a plug-in from its own side.

inline constexpr std::size_t plugInFilterSize = 2048; ///< bytes of a filter text with its NULs
inline constexpr std::size_t plugInCapacity = 32;     ///< of a list
inline constexpr std::size_t plugInNameSize = 32;     ///< bytes of a file name with its NUL

/// The plug-ins of one purpose, import or export. Entry n belongs to the file dialog's filter n
/// + 1.
struct PlugInList {
    PageArray<char> filter;
    std::size_t filterLength = 0;   ///< bytes in use
    bool full = false;              ///< there was no room for one, and none is added after it
    std::vector<std::string> files; ///< names without the folder
};

/// All of them, as the scan at start-up found them.
struct PlugIns {
    std::string folder;
    PlugInList import, export_;
};

/// Empties both lists and allocates their filters. outOfMemory when memory is short.
Message createPlugInLists(PlugIns& plugIns);

/// What a plug-in is able to do, by the text of its string 1.
struct PlugInCapability {
    bool read = false, write = false;
    bool effect = false; ///< of a kind that is not for images; skipped without a message
};

/// None for any text but "READ WRITE", "READ", "WRITE" and "EFFECT".
std::optional<PlugInCapability> parsePlugInCapability(std::string_view text);

/// What a plug-in says about itself, as its strings 2 and 3 and its file's name do.
struct PlugInDescription {
    std::string file, extension, description;
};

/// Adds a plug-in to the list of each purpose that it serves. A list without room for it, in
/// its filter or in its table, stays as it is from then on. badPlugIn, with nothing added, for a
/// file name that a table entry cannot hold, or a text with the "|" that separates the filters.
Message registerPlugIn(PlugIns& plugIns, const PlugInDescription& plugIn,
                       const PlugInCapability& capability);

/// Ends the scan: every "|" of both filters becomes the NUL that the file dialogs want there.
void finishPlugInFilters(PlugIns& plugIns);

/// Whether a plug-in's string 4, numbers separated by blanks, lists a depth: the number has to be
/// followed by a blank or the end, so that "116" lists 16 as well.
bool listsDepth(std::string_view depths, int depth);

/// How many of `fileCount` chosen files are imported from slot `current` on. The last slot of all
/// is never filled.
std::uint32_t importCount(std::uint32_t current, std::size_t fileCount);

/// The textures that are exported, and how their dialog keeps it.
enum class ExportRange { all, current, extent };
struct ExportChoice {
    ExportRange range = ExportRange::all;
    SlotExtent extent{};
};

/// Slots from `first` to before `end`.
struct SlotRange {
    std::uint32_t first, end;
};
/// What a choice stands for; never beyond the last slot. Needs an extent without an extentFault().
SlotRange exportedSlots(const ExportChoice& choice, std::uint32_t current, std::uint32_t usedCount);

/// The file of one exported slot: the chosen path with the slot's number, of two digits, or three
/// for a list of 100 textures or more, before its extension.
std::string exportPath(std::string_view chosen, std::uint32_t slot, std::uint32_t usedCount);

} // namespace facetor
