#include "output/source_header.h"

#include "output/source_text.h"

namespace facetor {

namespace {

/// The end of the line that opens a table, as appendTableStart() writes it.
constexpr std::string_view tableStart = "[] = {";

std::string guardOf(std::string_view title)
{
    std::string guard = toIdentifier(title, SourceNames::identifiers) + '_';
    for (char& c : guard)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    // A digit begins no identifier, and an underscore those of the compiler.
    return guard.front() >= 'A' && guard.front() <= 'Z' ? guard : "H_" + guard;
}

} // namespace

TextWriter formatSourceHeader(std::string_view source, std::string_view path, SourceNames names)
{
    const std::string_view title = fileTitle(path);
    const std::string guard = guardOf(title);
    TextWriter text;
    appendHeaderStart(text, toComment(title, names));
    appendHeaderEnd(text);
    text.append("#ifndef " + guard + "\r\n#define " + guard + "\r\n\r\n");
    while (!source.empty()) {
        const std::size_t end = std::min(source.find("\r\n"), source.size());
        const std::string_view line = source.substr(0, end);
        source.remove_prefix(std::min(end + 2, source.size()));
        // Comments and the lines of a table begin with a blank, a tab or a slash.
        if (!line.ends_with(tableStart) || line.front() < 'A' || line.front() > 'Z') continue;
        text.append("extern ");
        text.append(line.substr(0, line.size() - tableStart.size()));
        text.append("[];\r\n");
    }
    text.append("\r\n#endif\r\n");
    return text;
}

} // namespace facetor
