#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace facetor {

/// What an operation reports: none for success, else the catalogue number of the message that the
/// command which owns the interaction shows. The list is base/messages.inc.
enum class [[nodiscard]] Message : int;
enum class Message : int {
    none = 0,
#define FACETOR_MESSAGE(number, name, english, japanese) name = number,
#define FACETOR_WORD(number, name, english, japanese)
#include "base/messages.inc"
#undef FACETOR_MESSAGE
#undef FACETOR_WORD
};

/// Catalogue texts that are no messages: titles, labels, words that fill placeholders.
enum class Word : int {
#define FACETOR_MESSAGE(number, name, english, japanese)
#define FACETOR_WORD(number, name, english, japanese) name = number,
#include "base/messages.inc"
#undef FACETOR_MESSAGE
#undef FACETOR_WORD
};

/// The English catalogue text of a number; empty for a number that the catalogue does not hold.
std::string_view catalogueText(int number);
std::string_view catalogueText(Message message);
std::string_view catalogueText(Word word);

/// What an operation knows of its failure beyond the message: a few words, and where in the file.
struct Reason {
    std::string text;                    ///< empty when nothing more is known
    std::optional<std::uint64_t> offset; ///< in bytes from the start of the file
};

/// A message with "^1" and "^2" replaced by the two texts. A caret before anything else stays as
/// it is, and the inserted texts are not scanned again: there is no escaping.
std::string expandPlaceholders(std::string_view message, std::string_view text1,
                               std::string_view text2);

} // namespace facetor
