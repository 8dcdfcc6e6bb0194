#pragma once

#include "base/colour.h"
#include "exchange/model_import.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace facetor {

/// A window's place on the screen, in pixels; right and bottom lie just outside.
struct WindowRectangle {
    std::int32_t left, top, right, bottom;

    bool operator==(const WindowRectangle&) const = default;
};

/// Files that a recent-file list and the settings hold at most.
inline constexpr std::size_t recentFileCapacity = 4;

/// What the settings file remembers. The format is docs/formats/settings.md.
struct SettingsRecord {
    WindowRectangle mainWindow{}, toolBox{}, hierarchy{}, attributes{}, textures{};
    bool mainZoomed = false;
    Rgb555 background = 0, pickedPolygon = 0, transparent = 0x8000;
    std::uint32_t dragMethod = 0;          ///< 0 wire, 1 flat, 2 full
    std::vector<std::string> modelFiles;   ///< at most recentFileCapacity
    std::vector<std::string> textureFiles; ///< at most recentFileCapacity
    ImportOptions import;                  ///< as chosen last

    bool operator==(const SettingsRecord&) const = default;
};

/// The whole settings file. Lines end with CR LF.
std::string formatSettings(const SettingsRecord& settings);

/// Reads a settings file, all or nothing: none when a section or one of its lines is missing. The
/// sections may stand in any order. The format's own limits hold: a number of a rectangle has at
/// most four characters (what follows a longer one counts as 0), a path ends at its first blank,
/// and a line at its 255th character. Of more than four files in a list the first four are kept.
/// The section of import options may be missing: it is written only once they differ from those
/// that every user begins with. What is wrong in it counts as theirs.
std::optional<SettingsRecord> parseSettings(std::string_view text);

/// Where the settings are kept, for reading and for writing, given the folders that the system
/// names: beside the program when a settings file stands there (a portable copy), else in the
/// Windows directory when files can be created there, else in the user's own folder.
std::string chooseSettingsPath(const std::string& programFolder, const std::string& windowsFolder,
                               const std::string& userFolder);

/// The folder for earlier versions and recovery files: beside the program in a portable copy, which
/// is one whose settings are there, else the user's own folder.
std::string chooseKeepFolder(const std::string& settingsPath, const std::string& programFolder,
                             const std::string& userFolder);

} // namespace facetor
