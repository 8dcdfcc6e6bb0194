#pragma once

#include "base/colour.h"
#include "base/pages.h"
#include "texture/plug_in_list.h"
#include "texture/texture_rules.h"

#include <windows.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

namespace facetor {

// The libraries in the plug-in folder, each loaded only while it is asked something. Their answers
// are checked like those of a file; what their code does is beyond our control.

/// Shows a plug-in's message, with its file name.
using PlugInReport = std::function<void(Message message, const std::string& file)>;

/// Looks through plugIns.folder and makes both lists anew, in the order of the files' names. A
/// library that cannot be used is reported and left out; one for effects is left out silently.
/// noPlugIn when no library is left that reads or writes images, also for a folder without a name;
/// outOfMemory when memory is short.
Message scanPlugInFolder(PlugIns& plugIns, const PlugInReport& report);

/// A texture from an image file. `pixels` holds width x height texels when there is no fault.
struct ImportedImage {
    std::optional<InputFault> fault; ///< noPlugIn when the library cannot be loaded
    std::uint16_t width = 0, height = 0;
    PageArray<Rgb555> pixels;
};

/// Reads an image through one plug-in, given by its library's path. A texel of the transparent
/// colour is transparent.
ImportedImage importImage(const std::string& plugIn, const std::string& path,
                          Rgb555 transparentColour);

/// Whether a plug-in can read a file. noPlugIn when the library cannot be loaded,
/// formatNotSupported when it cannot read the file.
Message checkImage(const std::string& plugIn, const std::string& path);

/// Writes texels, top row first, through one plug-in, complete or not at all.
/// colourModeNotSupported when it does not write 16 bits a pixel; after cannotCreateFile a file
/// that stood there still does.
Message exportImage(const std::string& plugIn, const std::string& path, std::uint16_t width,
                    std::uint16_t height, std::span<const Rgb555> texels);

} // namespace facetor
