#include "base/message.h"

namespace facetor {

namespace {

struct CatalogueEntry {
    int number;
    std::string_view text;
};

constexpr CatalogueEntry catalogue[] = {
#define FACETOR_MESSAGE(number, name, english, japanese) {number, english},
#define FACETOR_WORD(number, name, english, japanese) {number, english},
#include "base/messages.inc"
#undef FACETOR_MESSAGE
#undef FACETOR_WORD
};

} // namespace

std::string_view catalogueText(int number)
{
    for (const CatalogueEntry& entry : catalogue)
        if (entry.number == number) return entry.text;
    return {};
}

std::string_view catalogueText(Message message)
{
    return catalogueText(static_cast<int>(message));
}

std::string_view catalogueText(Word word)
{
    return catalogueText(static_cast<int>(word));
}

std::string expandPlaceholders(std::string_view message, std::string_view text1,
                               std::string_view text2)
{
    std::string result;
    for (std::size_t at = 0; at < message.size(); ++at) {
        const char next = at + 1 < message.size() ? message[at + 1] : '\0';
        if (message[at] == '^' && (next == '1' || next == '2')) {
            result += next == '1' ? text1 : text2;
            ++at;
        } else {
            result += message[at];
        }
    }
    return result;
}

} // namespace facetor
