#pragma once

#include "session/import_memory.h"
#include "session/settings_text.h"

#include <string>
#include <string_view>
#include <vector>

namespace facetor {

/// Whether the texture list of the same name is opened with a model.
enum class ListWithModel {
    unknown, ///< nothing is said of it
    no,
    yes,
    ask, ///< the user, the first time that there is one
};

/// What the program remembers beyond the settings file, whose format has no room for it. The format
/// is docs/formats/session.md.
struct SessionRecord {
    std::vector<std::string> modelFiles, textureFiles; ///< recent ones by their whole paths
    std::string lastTextureList;                       ///< opened or saved last; empty: none
    bool attributesShown = false, hierarchyShown = false, texturesShown = false;
    bool budgetShown = false, drawOrderShown = false;
    /// Where these were last; empty until they were open.
    WindowRectangle budget{}, drawOrder{};
    bool keepsVersions = true, keepsRecovery = true;
    bool treeLinked = false; ///< the hierarchy window with what is picked
    bool mixedShown = false; ///< in the attribute window
    /// Places of windows, which the settings file cuts at four characters a number.
    WindowRectangle mainWindow{}, toolBox{}, hierarchy{}, attributes{}, textures{};
    int zoom = 1; ///< of the view, 1 to mostViewZoom
    bool watchesFiles = true, watchesPictures = true;
    ListWithModel listWithModel = ListWithModel::unknown;
    ImportMemory imports; ///< the last ones, at most rememberedImports of each kind
};

/// How many pixels of the screen a pixel of the view can take, across and down.
inline constexpr int mostViewZoom = 3;

inline constexpr std::size_t rememberedImports = 32;
inline constexpr std::size_t rememberedFiles = 256; ///< of an import

/// The file of the session beside a settings file.
std::string sessionPath(const std::string& settingsPath);

/// The whole file. Lines end with CR LF.
std::string formatSession(const SessionRecord& session);

/// Reads a session file. Lines that it does not know, or whose value is wrong, are passed over:
/// what they say stays as in `session`.
SessionRecord parseSession(std::string_view text, SessionRecord session = {});

/// What someone begins with who has never used the program: what has been added since is on, where
/// it would surprise those who are used to the program without it.
SessionRecord firstSession();

/// Gives places of windows from the settings file the numbers that it has no room for, where a
/// place here is the same but for these.
void completePlaces(SettingsRecord& settings, const SessionRecord& session);

/// Gives recent files from the settings file, where a path ends at its first blank or with its
/// line, the whole paths that the session holds; which files there are is the settings file's word.
void completePaths(std::vector<std::string>& files, const std::vector<std::string>& whole);

} // namespace facetor
