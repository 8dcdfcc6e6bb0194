#pragma once

#include "exchange/obj_writer.h"

#include <span>
#include <string>
#include <vector>

namespace facetor {

/// Those of an export's files that stand in the folder already, but for the first. `folder` ends
/// with its slash.
std::vector<std::string> standingFiles(const std::string& folder,
                                       std::span<const ExportedFile> files);

/// Writes an export's files into a folder that ends with its slash, all or none, and makes the
/// folders below it that they need. cannotCreateFile, with the file and the cause in `reason`; what
/// stood there before still stands.
Message writeExport(const std::string& folder, std::span<const ExportedFile> files, Reason& reason);

} // namespace facetor
