#pragma once

#include "commands.h"
#include "input_file.h"

namespace facetor {

/// Converts a model of another program, of which `source` reads, into a model file. Returns the
/// exit status; what failed has been reported.
int runImport(Run& run, const ConvertOptions& options, FileKind kind, ByteReader source);

} // namespace facetor
