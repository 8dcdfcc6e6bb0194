#include "session/import_text.h"

namespace facetor {

namespace {

constexpr const char* lineEnd = "\r\n";

} // namespace

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
        if (note.line != 0)
            text +=
                expandPlaceholders(textOf(Word::reportLine), std::to_string(note.line), {}) + ": ";
        text += note.text + lineEnd;
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
