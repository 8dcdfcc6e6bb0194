#include "session/import_text.h"

#include <array>
#include <optional>
#include <string_view>

namespace facetor {

namespace {

constexpr const char* lineEnd = "\r\n";

/// The texts of readers stand together in the catalogue.
constexpr int firstNote = static_cast<int>(Word::noteAtLine);
constexpr int lastNote = static_cast<int>(Word::noteOwnUp);

/// What stands for "^1" and "^2" in a text of that form.
using Parts = std::array<std::string_view, 2>;

std::optional<Parts> matchForm(std::string_view form, std::string_view text)
{
    Parts parts;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const std::size_t at = form.find(i == 0 ? "^1" : "^2");
        if (at == std::string_view::npos) break;
        if (text.substr(0, at) != form.substr(0, at)) return std::nullopt;
        form.remove_prefix(at + 2);
        text.remove_prefix(at);
        const std::string_view behind = form.substr(0, form.find('^')); // the other, or the end
        std::size_t end = text.size();
        if (!behind.empty())
            end = behind.size() == form.size() ? text.rfind(behind) : text.find(behind);
        if (end == std::string_view::npos) return std::nullopt;
        parts[i] = text.substr(0, end);
        text.remove_prefix(end);
    }
    return form == text ? std::optional(parts) : std::nullopt;
}

} // namespace

std::string importNoteText(const std::string& english, const TextOf& textOf)
{
    if (const std::size_t comma = english.find(" fit, "); comma != std::string::npos)
        return importNoteText(english.substr(0, comma + 4), textOf) + ", " + // one count of several
               importNoteText(english.substr(comma + 6), textOf);
    for (int number = firstNote; number <= lastNote; ++number)
        if (const auto parts = matchForm(catalogueText(number), english))
            return expandPlaceholders(textOf(static_cast<Word>(number)), (*parts)[0],
                                      importNoteText(std::string((*parts)[1]), textOf));
    return english;
}

std::string importReportText(const ImportReport& report, const std::string& path,
                             const TextOf& textOf)
{
    std::string text = path + lineEnd + lineEnd;
    const auto add = [&](Word name, std::uint32_t count) {
        text += textOf(name) + ": " + std::to_string(count) + lineEnd;
    };
    const auto addSome = [&](Word name, std::uint32_t count) {
        if (count > 0) add(name, count);
    };
    add(Word::objects, report.objects);
    add(Word::vertices, report.vertices);
    add(Word::polygons, report.polygons);
    add(Word::reportQuads, report.quads);
    add(Word::reportTriangles, report.triangles);
    addSome(Word::reportRejoined, report.rejoined);
    addSome(Word::reportSplit, report.split);
    addSome(Word::reportDropped, report.dropped);
    if (!report.kept) {
        add(Word::reportTextures, report.textures);
        addSome(Word::reportShared, report.shared);
    } else {
        addSome(Word::reportTextures, report.textures); // new ones
        text += lineEnd;
        add(Word::reportKept, *report.kept);
        add(Word::reportNew, report.fresh);
        add(Word::reportGone, report.gone);
    }
    if (report.notes.empty()) return text;
    text += lineEnd + textOf(Word::reportNotes) + ":" + lineEnd;
    for (const ImportNote& note : report.notes) {
        const std::string line =
            note.line == 0 ? std::string() : "line " + std::to_string(note.line) + ": ";
        text += importNoteText(line + note.text, textOf) + lineEnd;
    }
    return text;
}

std::string importStatus(const ImportReport& report, const TextOf& textOf)
{
    const auto fill = [&](Word word, const std::string& first, std::size_t second) {
        return expandPlaceholders(textOf(word), first, std::to_string(second));
    };
    std::string text =
        report.kept
            ? fill(Word::statusGone,
                   fill(Word::statusKept, std::to_string(*report.kept), report.fresh), report.gone)
            : fill(Word::statusImported, std::to_string(report.polygons), report.textures);
    if (!report.notes.empty()) text = fill(Word::statusNotes, text, report.notes.size());
    return text;
}

} // namespace facetor
