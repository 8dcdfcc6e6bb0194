#pragma once

#include "base/bytes.h"
#include "run.h"

#include <cstdio>
#include <span>
#include <string>
#include <string_view>

namespace facetor {

/// A file that a command writes.
struct Output {
    std::string path; ///< "-" for the standard output
    Bytes bytes;
    std::string replaces; ///< an input that it may overwrite, by whatever path; empty: none
};

/// Puts what a command has made in its place, all of it or nothing, and the make rule with it where
/// one was asked for. Every command writes through here, after all that can fail. Refuses an output
/// that is also an input or another output, by whatever path or link. Returns the exit status;
/// what failed has been reported.
int writeOutputs(const Run& run, std::span<const Output> outputs);
int writeOutput(const Run& run, Output output);

/// Whether the options that concern the output suit it. Returns the exit status; what is wrong has
/// been reported.
int checkOutputOptions(const Run& run, const std::string& path);

/// checkOutputOptions(), and whether an output is what its command writes, judged by its extension
/// or, for the standard output, by what `--to` says; there a command that writes one kind only
/// needs no `--to`. Returns the exit status; what is wrong has been reported.
int checkOutputKind(const Run& run, const std::string& path, std::string_view command,
                    std::string_view extension);

/// The extension of an output, or what `--to` says of the standard output.
std::string_view outputKind(const Run& run, const std::string& path);

/// A file name of that extension after an input's, for what is written to the standard output:
/// "ship.mdl" for "models/ship.mx3".
std::string nameAfter(const std::string& input, std::string_view extension);

/// Where a report goes: to the standard output unless that is the output.
std::FILE* reportStream(const std::string& output);

} // namespace facetor
