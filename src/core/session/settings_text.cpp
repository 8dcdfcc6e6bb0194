#include "session/settings_text.h"

#include "base/file.h"
#include "base/folder.h"
#include "base/text.h"
#include "texture/texture_rules.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <iterator>

namespace facetor {

namespace {

constexpr std::string_view settingsFileName = "Facetor.ini";
constexpr std::string_view lineEnd = "\r\n";
constexpr std::size_t longestLine = 255;

constexpr std::string_view importHeader = "[IMPORT]";
constexpr std::string_view upWords[] = {"Y", "Z"};               // in the order of UpAxis,
constexpr std::string_view triangleWords[] = {"REJOIN", "KEEP"}; // of Triangles
constexpr std::string_view ditherWords[] = {"NONE", "ORDERED", "DIFFUSE"}; // and of Dither

constexpr std::string_view dragMethods[] = {"byWIRE", "byFLAT", "byFULL"};

struct RectangleKey {
    std::string_view key;
    WindowRectangle SettingsRecord::*rectangle;
};
constexpr RectangleKey rectangleKeys[] = {{"MainRect", &SettingsRecord::mainWindow},
                                          {"ToolRect", &SettingsRecord::toolBox},
                                          {"HierRect", &SettingsRecord::hierarchy},
                                          {"AttrRect", &SettingsRecord::attributes},
                                          {"TextRect", &SettingsRecord::textures}};

struct ColourKey {
    std::string_view key;
    Rgb555 SettingsRecord::*colour;
};
constexpr ColourKey colourKeys[] = {{"BackGround", &SettingsRecord::background},
                                    {"PickedPolygon", &SettingsRecord::pickedPolygon},
                                    {"Transparent", &SettingsRecord::transparent}};

struct FilesSection {
    std::string_view header;
    std::vector<std::string> SettingsRecord::*files;
};
constexpr FilesSection filesSections[] = {{"[MX3FILES]", &SettingsRecord::modelFiles},
                                          {"[MXTFILES]", &SettingsRecord::textureFiles}};

std::string aligned(std::int32_t value, std::size_t columns)
{
    std::string digits = std::to_string(value);
    if (digits.size() < columns) digits.insert(0, columns - digits.size(), ' ');
    return digits;
}

void appendFiles(std::string& text, const FilesSection& section, const SettingsRecord& settings)
{
    const std::vector<std::string>& files = settings.*section.files;
    const std::size_t count = std::min(files.size(), recentFileCapacity);
    text += section.header;
    text += lineEnd;
    text += "Files = " + aligned(static_cast<std::int32_t>(count), 2);
    text += lineEnd;
    for (std::size_t i = 0; i < count; ++i) {
        text += "Index:" + std::to_string(i + 1) + " = " + files[i];
        text += lineEnd;
    }
    text += lineEnd;
}

/// The file's lines, as a buffer of limited size reads them.
class LineReader {
public:
    explicit LineReader(std::string_view text) : rest_(text) {}

    /// The next line with its line feed; of a line that is too long its first part. Empty at the
    /// end.
    std::string_view next()
    {
        const std::string_view line = rest_.substr(0, std::min(rest_.find('\n'), rest_.size()) + 1);
        rest_.remove_prefix(line.size());
        return line.substr(0, longestLine);
    }

    /// Goes on behind the first line that is exactly `header`. False when there is none.
    bool skipHeader(std::string_view header)
    {
        for (std::string_view line = next(); !line.empty(); line = next())
            if (line == std::string(header) + std::string(lineEnd)) return true;
        return false;
    }

    /// The text behind the first "=" of the next line, which has to start with `key`.
    std::optional<std::string_view> value(std::string_view key)
    {
        const std::string_view line = next();
        const std::size_t equals = line.find('=');
        if (!line.starts_with(key) || equals == std::string_view::npos) return std::nullopt;
        return line.substr(equals + 1);
    }

private:
    std::string_view rest_;
};

/// Numbers separated by commas, each of at most `columns` characters with its sign; blanks before a
/// number are passed over. From the first that does not fit on, all are 0.
template <std::size_t Count>
std::array<std::int32_t, Count> scanNumbers(std::string_view text, std::size_t columns)
{
    std::array<std::int32_t, Count> numbers{};
    for (std::size_t i = 0; i < Count; ++i) {
        if (i > 0) {
            if (!text.starts_with(',')) break;
            text.remove_prefix(1);
        }
        text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
        const std::string_view field = text.substr(0, columns);
        const std::size_t sign = field.starts_with('+') ? 1 : 0; // from_chars takes "-" alone
        const auto result =
            std::from_chars(field.data() + sign, field.data() + field.size(), numbers[i]);
        if (result.ec != std::errc{}) break;
        text.remove_prefix(static_cast<std::size_t>(result.ptr - text.data()));
    }
    return numbers;
}

std::string_view firstWord(std::string_view text)
{
    constexpr std::string_view blanks = " \t\r\n\v\f";
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text.substr(0, text.find_first_of(blanks));
}

bool parseMain(SettingsRecord& settings, std::string_view text)
{
    LineReader lines(text);
    if (!lines.skipHeader("[MAIN]")) return false;
    for (const RectangleKey& key : rectangleKeys) {
        const auto value = lines.value(key.key);
        if (!value) return false;
        const auto numbers = scanNumbers<4>(*value, 4);
        settings.*key.rectangle = {numbers[0], numbers[1], numbers[2], numbers[3]};
    }
    const auto zoom = lines.value("MainZoom");
    if (!zoom) return false;
    settings.mainZoomed = zoom->find("TRUE") != std::string_view::npos;
    return true;
}

bool parseColours(SettingsRecord& settings, std::string_view text)
{
    LineReader lines(text);
    if (!lines.skipHeader("[COLOR]")) return false;
    for (const ColourKey& key : colourKeys) {
        const auto value = lines.value(key.key);
        if (!value) return false;
        const auto numbers = scanNumbers<3>(*value, 2);
        settings.*key.colour =
            static_cast<Rgb555>(0x8000 | rgb555(numbers[0] & 31, numbers[1] & 31, numbers[2] & 31));
    }
    return true;
}

bool parseDrag(SettingsRecord& settings, std::string_view text)
{
    LineReader lines(text);
    if (!lines.skipHeader("[DRAG]")) return false;
    const std::string_view line = lines.next();
    if (!line.starts_with("Method")) return false;
    for (std::uint32_t method = 0; method < std::size(dragMethods); ++method)
        if (line.find(dragMethods[method]) != std::string_view::npos) {
            settings.dragMethod = method;
            break;
        }
    return true;
}

/// The place of a value among the words of a setting; none for another word.
template <typename Value, std::size_t count>
std::optional<Value> parseWord(const std::optional<std::string_view>& value,
                               const std::string_view (&words)[count])
{
    const auto* word = value ? std::find(words, words + count, firstWord(*value)) : words + count;
    if (word == words + count) return std::nullopt;
    return static_cast<Value>(word - words);
}

void appendImport(std::string& text, const ImportOptions& import)
{
    const auto add = [&](std::string_view key, const auto& value) {
        text.append(key).append(" = ").append(value).append(lineEnd);
    };
    text.append(importHeader).append(lineEnd);
    add("Scale", formatShortest(import.scale));
    add("Up", upWords[static_cast<std::size_t>(import.up)]);
    add("Triangles", triangleWords[static_cast<std::size_t>(import.triangles)]);
    add("Texture", std::to_string(import.textures.largestWidth) + "," +
                       std::to_string(import.textures.largestHeight));
    add("Dither", ditherWords[static_cast<std::size_t>(import.textures.dither)]);
    text += lineEnd;
}

/// As they stand, or those that every user begins with.
ImportOptions parseImport(std::string_view text)
{
    LineReader lines(text);
    if (!lines.skipHeader(importHeader)) return {};
    const auto scaleText = lines.value("Scale");
    const float scale = parseFloat(scaleText ? firstWord(*scaleText) : "").value_or(0);
    const auto up = parseWord<UpAxis>(lines.value("Up"), upWords);
    const auto triangles = parseWord<Triangles>(lines.value("Triangles"), triangleWords);
    const auto size = lines.value("Texture");
    const auto dither = parseWord<Dither>(lines.value("Dither"), ditherWords);
    if (!(scale > 0) || !up || !triangles || !size || !dither) return {};
    const auto [width, height] = scanNumbers<2>(*size, 3);
    if (textureSizeFault(width, height)) return {};
    return {scale,
            *up,
            *triangles,
            {static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height), *dither}};
}

bool parseFiles(SettingsRecord& settings, const FilesSection& section, std::string_view text)
{
    LineReader lines(text);
    if (!lines.skipHeader(section.header)) return false;
    const auto value = lines.value("Files");
    if (!value) return false;
    const std::int32_t count = scanNumbers<1>(*value, 2)[0];
    std::vector<std::string>& files = settings.*section.files;
    for (std::int32_t i = 0; i < count; ++i) {
        const auto path = lines.value("");
        if (!path) return false;
        if (files.size() < recentFileCapacity) files.emplace_back(firstWord(*path));
    }
    return true;
}

/// Whether the settings file can be written in a folder: tried, since access rights alone do not
/// tell. A file that stands there is left as it is.
bool canWriteSettings(const std::string& path)
{
    if (std::FILE* existing = std::fopen(path.c_str(), "r+b")) return std::fclose(existing) == 0;
    if (std::FILE* unreadable = std::fopen(path.c_str(), "rb"))
        return std::fclose(unreadable), false;
    const std::string trial = path + ".try";
    if (writeFile(trial, {}) != Message::none) return false;
    std::remove(trial.c_str());
    return true;
}

} // namespace

std::string formatSettings(const SettingsRecord& settings)
{
    std::string text = "[MAIN]\r\n";
    for (const RectangleKey& key : rectangleKeys) {
        const WindowRectangle& r = settings.*key.rectangle;
        text += key.key;
        text += " = " + aligned(r.left, 4) + "," + aligned(r.top, 4) + "," + aligned(r.right, 4) +
                "," + aligned(r.bottom, 4);
        text += lineEnd;
    }
    text += settings.mainZoomed ? "MainZoom = TRUE\r\n\r\n" : "MainZoom = FALSE\r\n\r\n";
    text += "[COLOR]\r\n";
    for (const ColourKey& key : colourKeys) {
        const Rgb555 colour = settings.*key.colour;
        text += key.key;
        text += "\t= " + aligned(redOf(colour), 2) + "," + aligned(greenOf(colour), 2) + "," +
                aligned(blueOf(colour), 2);
        text += lineEnd;
    }
    text += "\r\n[DRAG]\r\nMethod = ";
    text += dragMethods[std::min<std::size_t>(settings.dragMethod, std::size(dragMethods) - 1)];
    text += "\r\n\r\n";
    for (const FilesSection& section : filesSections) appendFiles(text, section, settings);
    if (settings.import != ImportOptions{}) appendImport(text, settings.import);
    return text;
}

std::optional<SettingsRecord> parseSettings(std::string_view text)
{
    SettingsRecord settings;
    if (!parseMain(settings, text) || !parseColours(settings, text) || !parseDrag(settings, text))
        return std::nullopt;
    for (const FilesSection& section : filesSections)
        if (!parseFiles(settings, section, text)) return std::nullopt;
    settings.import = parseImport(text);
    return settings;
}

std::string chooseSettingsPath(const std::string& programFolder, const std::string& windowsFolder,
                               const std::string& userFolder)
{
    const std::string portable = pathIn(programFolder, settingsFileName);
    if (readFileStart(portable, 0)) return portable;
    const std::string shared = pathIn(windowsFolder, settingsFileName);
    if (canWriteSettings(shared)) return shared;
    return pathIn(userFolder, settingsFileName);
}

std::string chooseKeepFolder(const std::string& settingsPath, const std::string& programFolder,
                             const std::string& userFolder)
{
    const bool isPortable = settingsPath == pathIn(programFolder, settingsFileName);
    return isPortable ? pathIn(programFolder, "Kept") : userFolder;
}

} // namespace facetor
