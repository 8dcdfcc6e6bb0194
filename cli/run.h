#pragma once

#include "base/bytes.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace facetor {

/// How much a command says about work that goes well.
enum class Progress { shown, silent };

/// How failures are written to the error stream.
enum class ErrorFormat { text, json };

/// The path that stands for the standard input or output.
inline constexpr std::string_view standardStream = "-";

/// How reports name an input.
inline std::string displayName(const std::string& path)
{
    return path == standardStream ? "stdin" : path;
}

/// One run of the program: what every command takes beside its own options, and what it has read.
struct Run {
    Progress progress = Progress::shown;
    ErrorFormat errors = ErrorFormat::text;
    bool ifChanged = false;   ///< an output whose bytes would be the same is not touched
    std::string depfile;      ///< where the make rule goes; empty: none is written
    std::string standardKind; ///< the extension that tells what goes to the standard output

    std::vector<std::string> filesRead; ///< paths as they were given
    std::optional<Bytes> standardInput; ///< all of it, once it was read
};

} // namespace facetor
