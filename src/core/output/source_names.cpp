#include "output/source_names.h"

#include <set>

namespace facetor {

namespace {

bool isIdentifierCharacter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

/// Whether a byte goes on with a character of UTF-8 that has begun before it.
bool isContinuation(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

} // namespace

std::string toIdentifier(std::string_view name, SourceNames names)
{
    if (names == SourceNames::asTheyAre) return std::string(name);
    std::string identifier;
    for (const char c : name) {
        if (isContinuation(c) && !identifier.empty()) continue; // one underscore a character
        identifier += isIdentifierCharacter(c) ? c : '_';
    }
    return identifier;
}

std::vector<std::string> toIdentifiers(std::span<const std::string> given, SourceNames names)
{
    std::vector<std::string> identifiers;
    for (const std::string& name : given) identifiers.push_back(toIdentifier(name, names));
    if (names == SourceNames::asTheyAre) return identifiers;

    std::set<std::string> taken;
    std::vector<bool> settled;
    for (std::size_t i = 0; i < given.size(); ++i)
        settled.push_back(identifiers[i] == given[i] && taken.insert(given[i]).second);
    for (std::size_t i = 0; i < given.size(); ++i) {
        if (settled[i]) continue;
        const std::string stem = identifiers[i];
        for (int number = 2; !taken.insert(identifiers[i]).second; ++number)
            identifiers[i] = stem + "_" + std::to_string(number);
    }
    return identifiers;
}

std::string toComment(std::string_view name, SourceNames names)
{
    if (names == SourceNames::asTheyAre) return std::string(name);
    std::string text;
    for (const char c : name) {
        const char last = text.empty() ? ' ' : text.back();
        if ((last == '*' && c == '/') || (last == '/' && c == '*')) text += ' ';
        const auto byte = static_cast<unsigned char>(c);
        text += byte < 0x20 || byte == 0x7F ? ' ' : c;
    }
    return text;
}

} // namespace facetor
