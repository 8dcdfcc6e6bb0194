#pragma once

#include "exchange/model_import.h"

#include <optional>
#include <string>

namespace facetor {

struct Editor;

/// What becomes of the open model in an import.
enum class ImportTarget {
    newModel,  ///< it is replaced
    openModel, ///< it keeps its attributes, and gets the geometry of the file
};

struct ImportChoice {
    ImportOptions options;
    ImportTarget target = ImportTarget::newModel;
};

/// Asks how the file at `path` is to be imported, beginning with `options`; none when the user
/// cancels.
std::optional<ImportChoice> askImportChoice(Editor& editor, const std::string& path,
                                            const ImportOptions& options);

} // namespace facetor
