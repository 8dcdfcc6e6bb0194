#pragma once

#include "commands.h"
#include "input_file.h"

namespace facetor {

/// Converts a model of another program, `kind` being which, into a model file. Returns the exit
/// status; what failed has been reported.
int runImport(Run& run, const ConvertOptions& options, FileKind kind);

} // namespace facetor
