#pragma once

#include "base/message.h"
#include "exchange/model_import.h"

#include <functional>
#include <string>

namespace facetor {

// What an import has made, in the user's words.

/// Gives a catalogue text in the user's language.
using TextOf = std::function<std::string(Word)>;

/// The whole report on the file at `path`, in lines that end with CR LF: counts, as far as they say
/// something, and all notes.
std::string importReportText(const ImportReport& report, const std::string& path,
                             const TextOf& textOf);

/// What a reader says in English of a file, as a note or a reason, in the user's language; what the
/// catalogue does not know stays English.
std::string importNoteText(const std::string& english, const TextOf& textOf);

/// The report in one line.
std::string importStatus(const ImportReport& report, const TextOf& textOf);

} // namespace facetor
