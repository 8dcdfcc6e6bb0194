#include "monitor/image_words.h"

#include "base/message.h"
#include "monitor/monitor.h"
#include "monitor/monitor_ids.h"

#include <algorithm>
#include <string_view>

namespace facetor {

namespace {

struct Phrase {
    std::string_view english;
    UINT text;
};

constexpr Phrase phrases[] = {
    {"model", IDS_MODEL},
    {"textures", IDS_TEXTURES},
    {"scene", IDS_SCENE},
    {"object matrices", IDS_MATRICES},
    {"scale", IDS_SCALE},
    {"objects and polygons", IDS_OBJECTS},
    {"Gouraud tables", IDS_GOURAUD},
    {"texture table", IDS_TEXTURE_TABLE},
    {"texels", IDS_TEXELS},
    {"light direction", IDS_LIGHT_DIRECTION},
    {"light colour", IDS_LIGHT_COLOUR},
    {"view angle", IDS_VIEW_ANGLE},
    {"ambient colour", IDS_AMBIENT},
    {"background colour", IDS_BACKGROUND},
    {"it holds no block", IDS_NO_BLOCK},
    {"memory is short", IDS_NO_MEMORY},
};

/// A text with one or two parts that differ: what stands before, between and behind them.
struct Form {
    std::string_view before, between, behind;
    UINT text; ///< with ^1 and ^2
};

constexpr Form forms[] = {
    {"block ", "", " is cut", IDS_BLOCK_CUT},
    {"nothing of the target lies at ", "", "", IDS_NOTHING_AT},
    {"", " bytes in place of ", "", IDS_BYTES_INSTEAD},
};

} // namespace

std::string imageWords(const std::string& english)
{
    for (const Phrase& phrase : phrases)
        if (english == phrase.english) return resourceText(phrase.text);
    for (const std::string_view separator : {", ", ": "})
        if (const std::size_t at = english.find(separator); at != std::string::npos)
            return imageWords(english.substr(0, at)) + std::string(separator) +
                   imageWords(english.substr(at + separator.size()));
    for (const Form& form : forms) {
        if (!english.starts_with(form.before) || !english.ends_with(form.behind)) continue;
        const std::size_t first = form.before.size(), end = english.size() - form.behind.size();
        const std::size_t between = form.between.empty() ? end : english.find(form.between, first);
        if (between == std::string::npos) continue;
        const std::size_t second = std::min(between + form.between.size(), end);
        return expandPlaceholders(resourceText(form.text), english.substr(first, between - first),
                                  english.substr(second, end - second));
    }
    return english;
}

} // namespace facetor
