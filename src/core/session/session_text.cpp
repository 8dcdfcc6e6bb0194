#include "session/session_text.h"

#include "base/folder.h"
#include "base/text.h"
#include "session/settings_text.h"
#include "texture/texture_rules.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>

namespace facetor {

namespace {

constexpr std::string_view sessionFileName = "FacetorSession.ini";
constexpr std::string_view header = "[SESSION]\r\n";
constexpr std::string_view lineEnd = "\r\n";

struct SwitchKey {
    std::string_view key;
    bool SessionRecord::*value;
};
constexpr SwitchKey switchKeys[] = {{"Attributes", &SessionRecord::attributesShown},
                                    {"Hierarchy", &SessionRecord::hierarchyShown},
                                    {"Textures", &SessionRecord::texturesShown},
                                    {"Budget", &SessionRecord::budgetShown},
                                    {"DrawOrder", &SessionRecord::drawOrderShown},
                                    {"KeepVersions", &SessionRecord::keepsVersions},
                                    {"KeepRecovery", &SessionRecord::keepsRecovery},
                                    {"TreeLinked", &SessionRecord::treeLinked},
                                    {"MixedShown", &SessionRecord::mixedShown},
                                    {"WatchFiles", &SessionRecord::watchesFiles},
                                    {"WatchPictures", &SessionRecord::watchesPictures}};

constexpr std::string_view withModelKey = "OpenTextures";
constexpr std::pair<std::string_view, ListWithModel> withModelValues[] = {
    {"FALSE", ListWithModel::no}, {"TRUE", ListWithModel::yes}, {"ASK", ListWithModel::ask}};

struct FilesKey {
    std::string_view key;
    std::vector<std::string> SessionRecord::*files;
};
constexpr FilesKey filesKeys[] = {{"Model", &SessionRecord::modelFiles},
                                  {"List", &SessionRecord::textureFiles}};

struct PlaceKey {
    std::string_view key;
    WindowRectangle SessionRecord::*place;
    WindowRectangle SettingsRecord::*setting; ///< null where the settings have none
};
constexpr PlaceKey placeKeys[] = {
    {"MainPlace", &SessionRecord::mainWindow, &SettingsRecord::mainWindow},
    {"ToolPlace", &SessionRecord::toolBox, &SettingsRecord::toolBox},
    {"HierPlace", &SessionRecord::hierarchy, &SettingsRecord::hierarchy},
    {"AttrPlace", &SessionRecord::attributes, &SettingsRecord::attributes},
    {"TextPlace", &SessionRecord::textures, &SettingsRecord::textures},
    {"BudgetPlace", &SessionRecord::budget, nullptr},
    {"DrawOrderPlace", &SessionRecord::drawOrder, nullptr}};

/// A path that a line can hold.
bool fitsLine(std::string_view path)
{
    return !path.empty() && path.find_first_of("\r\n") == std::string_view::npos;
}

// Options of an import: scale, up axis, triangles, width, height, dithering, separated by commas.

std::string formatOptions(const ImportOptions& options)
{
    std::string text = formatShortest(options.scale);
    for (const std::uint32_t value :
         {static_cast<std::uint32_t>(options.up), static_cast<std::uint32_t>(options.triangles),
          options.textures.largestWidth, options.textures.largestHeight,
          static_cast<std::uint32_t>(options.textures.dither)})
        text += ',' + std::to_string(value);
    return text;
}

std::string_view cutField(std::string_view& text)
{
    const std::size_t end = text.find(',');
    const std::string_view field = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return field;
}

std::string formatPlace(const WindowRectangle& place)
{
    std::string text = std::to_string(place.left);
    for (const std::int32_t value : {place.top, place.right, place.bottom})
        text += ',' + std::to_string(value);
    return text;
}

std::optional<WindowRectangle> parsePlace(std::string_view text)
{
    WindowRectangle place{};
    for (std::int32_t* value : {&place.left, &place.top, &place.right, &place.bottom}) {
        const auto number = parseWhole(cutField(text));
        if (!number) return std::nullopt;
        *value = *number;
    }
    return place;
}

/// Takes the options off the front of a text.
std::optional<ImportOptions> cutOptions(std::string_view& text)
{
    const std::optional<float> scale = parseFloat(cutField(text));
    std::array<std::int32_t, 5> values{};
    for (std::int32_t& value : values) {
        const auto number = parseWhole(cutField(text));
        if (!number || *number < 0) return std::nullopt;
        value = *number;
    }
    const auto [up, triangles, width, height, dither] = values;
    if (!scale || !(*scale > 0) || up > static_cast<int>(UpAxis::z) ||
        triangles > static_cast<int>(Triangles::keep) || textureSizeFault(width, height) ||
        dither > static_cast<int>(Dither::diffuse))
        return std::nullopt;
    return ImportOptions{*scale,
                         static_cast<UpAxis>(up),
                         static_cast<Triangles>(triangles),
                         {static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height),
                          static_cast<Dither>(dither)}};
}

/// The part behind the oldest ones that are too many.
template <typename Entries> auto lastOf(const Entries& entries)
{
    return std::span(entries).last(std::min(entries.size(), rememberedImports));
}

void parseLine(SessionRecord& session, std::string_view key, std::string_view value)
{
    for (const SwitchKey& known : switchKeys)
        if (key == known.key && (value == "TRUE" || value == "FALSE"))
            session.*known.value = value == "TRUE";
    for (const FilesKey& known : filesKeys)
        if (key == known.key && (session.*known.files).size() < recentFileCapacity)
            (session.*known.files).emplace_back(value);
    for (const PlaceKey& known : placeKeys)
        if (key == known.key) session.*known.place = parsePlace(value).value_or(WindowRectangle{});
    if (key == "Zoom")
        if (const auto zoom = parseWhole(value); zoom && *zoom >= 1 && *zoom <= mostViewZoom)
            session.zoom = *zoom;
    for (const auto& [text, meaning] : withModelValues)
        if (key == withModelKey && value == text) session.listWithModel = meaning;
    if (key == "LastTextureList") session.lastTextureList = value;
    if (key == "Imported" && session.imports.sources.size() < rememberedImports)
        if (const auto options = cutOptions(value); options && !value.empty())
            session.imports.sources.push_back({std::string(value), *options, {}});
    if (key == "Uses" && !session.imports.sources.empty() &&
        session.imports.sources.back().files.size() < rememberedFiles)
        session.imports.sources.back().files.emplace_back(value);
    if (key == "Saved" && session.imports.models.size() < rememberedImports)
        session.imports.models.push_back({std::string(value), {}});
    if (key == "From" && !session.imports.models.empty())
        session.imports.models.back().importedFrom = value;
}

/// What the settings file gives back of a path.
std::string cutBySettings(const std::string& path)
{
    SettingsRecord settings;
    settings.modelFiles = {path};
    const auto read = parseSettings(formatSettings(settings));
    return read && !read->modelFiles.empty() ? read->modelFiles.front() : std::string();
}

} // namespace

std::string sessionPath(const std::string& settingsPath)
{
    if (settingsPath.empty()) return {};
    const std::size_t end = settingsPath.find_last_of("\\/");
    return (end == std::string::npos ? std::string() : settingsPath.substr(0, end + 1)) +
           std::string(sessionFileName);
}

std::string formatSession(const SessionRecord& session)
{
    std::string text(header);
    const auto add = [&](std::string_view key, std::string_view value) {
        text.append(key).append(" = ").append(value).append(lineEnd);
    };
    for (const SwitchKey& known : switchKeys)
        add(known.key, session.*known.value ? "TRUE" : "FALSE");
    for (const PlaceKey& known : placeKeys) add(known.key, formatPlace(session.*known.place));
    add("Zoom", std::to_string(session.zoom));
    for (const auto& [value, meaning] : withModelValues)
        if (session.listWithModel == meaning) add(withModelKey, value);
    for (const FilesKey& known : filesKeys)
        for (const std::string& path : session.*known.files)
            if (fitsLine(path)) add(known.key, path);
    if (fitsLine(session.lastTextureList)) add("LastTextureList", session.lastTextureList);
    for (const ImportMemory::Source& source : lastOf(session.imports.sources))
        if (fitsLine(source.path)) {
            add("Imported", formatOptions(source.options) + ',' + source.path);
            for (const std::string& file : source.files)
                if (fitsLine(file)) add("Uses", file);
        }
    for (const ImportMemory::SavedModel& model : lastOf(session.imports.models))
        if (fitsLine(model.path) && fitsLine(model.importedFrom)) {
            add("Saved", model.path);
            add("From", model.importedFrom);
        }
    return text;
}

SessionRecord firstSession()
{
    SessionRecord session;
    session.treeLinked = session.mixedShown = true;
    return session;
}

SessionRecord parseSession(std::string_view text, SessionRecord session)
{
    constexpr std::string_view between = " = ";
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.ends_with('\r')) line.remove_suffix(1);
        const std::size_t equals = line.find(between);
        if (equals != std::string_view::npos && equals + between.size() < line.size())
            parseLine(session, line.substr(0, equals), line.substr(equals + between.size()));
    }
    return session;
}

void completePlaces(SettingsRecord& settings, const SessionRecord& session)
{
    for (const PlaceKey& known : placeKeys) {
        if (!known.setting) continue;
        SettingsRecord cut;
        cut.mainWindow = session.*known.place;
        const auto read = parseSettings(formatSettings(cut));
        if (read && read->mainWindow == settings.*known.setting)
            settings.*known.setting = session.*known.place;
    }
}

void completePaths(std::vector<std::string>& files, const std::vector<std::string>& whole)
{
    std::vector<std::string> rest = whole; // two may look alike once they are cut
    for (std::string& file : files) {
        const auto found = std::ranges::find(
            rest, file, [](const std::string& path) { return cutBySettings(path); });
        if (found == rest.end()) continue;
        file = *found;
        rest.erase(found);
    }
}

} // namespace facetor
