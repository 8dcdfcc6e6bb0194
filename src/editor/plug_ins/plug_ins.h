#pragma once

#include "base/colour.h"
#include "base/pages.h"
#include "session/plug_in_list.h"
#include "texture/image_import.h"
#include "ui/module.h"

#include <windows.h>

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>

namespace facetor {

// The libraries in the plug-in folder. Their answers are checked like those of a file; what their
// code does is beyond our control.

/// The libraries that have been used, by their paths; each stays loaded from its first use on. The
/// run-time that most of them are built with takes a thread-local index of the process at the first
/// call and does not give it back when the library goes, and the process has 1,088 of them.
using LoadedPlugIns = std::map<std::string, UniqueModule>;

/// A library, loaded unless it already is. Null when it cannot be; that is tried again next time.
/// Stays valid until `loaded` is cleared.
const UniqueModule& loadPlugIn(LoadedPlugIns& loaded, const std::string& path);

/// Shows a plug-in's message, with its file name.
using PlugInReport = std::function<void(Message message, const std::string& file)>;

/// Looks through plugIns.folder and makes both lists anew, in the order of the files' names. A
/// library that cannot be used is reported and left out; one for effects is left out silently.
/// noPlugIn when no library is left that reads or writes images, also for a folder without a name;
/// outOfMemory when memory is short.
Message scanPlugInFolder(PlugIns& plugIns, const PlugInReport& report);

/// An image file as one plug-in reads it, for importImage(). Without the functions that a library
/// which is not loaded, or no longer the one that was registered, does not have. Needs the plug-in
/// to stay loaded.
ImageSource imageSource(const UniqueModule& plugIn, const std::string& path);

/// Writes texels, top row first, through one plug-in, complete or not at all. A file that stands
/// there already has another name meanwhile, and gets its own back when the plug-in fails.
/// noPlugIn for no library, colourModeNotSupported when it does not write 16 bits a pixel,
/// cannotCreateFile when it fails, writes nothing there or must not.
Message exportImage(const UniqueModule& plugIn, const std::string& path, std::uint16_t width,
                    std::uint16_t height, std::span<const Rgb555> texels);

} // namespace facetor
