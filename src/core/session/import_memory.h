#pragma once

#include "exchange/model_import.h"

#include <string>
#include <vector>

namespace facetor {

/// What a run remembers of imports, so that one can be done again without a question. Paths are
/// told apart but for case.
struct ImportMemory {
    struct Source {
        std::string path; ///< of another program's file
        ImportOptions options;
        std::vector<std::string> files; ///< what it named and was read with it
    };
    struct SavedModel {
        std::string path;
        std::string importedFrom;
    };
    std::vector<Source> sources;
    std::vector<SavedModel> models;
};

/// The options of the last import of that file are these now.
void rememberSource(ImportMemory& memory, const std::string& path, const ImportOptions& options);

/// The options that a file was imported with last; `otherwise` when it was not.
ImportOptions optionsOf(const ImportMemory& memory, const std::string& path,
                        const ImportOptions& otherwise);

/// What the import of that file has read beside it; it is remembered by rememberSource() already.
void rememberFiles(ImportMemory& memory, const std::string& path, std::vector<std::string> files);

/// What the last import of that file has read beside it.
std::vector<std::string> filesOf(const ImportMemory& memory, const std::string& path);

/// A model was saved at `path` that was imported, or an empty text.
void rememberModel(ImportMemory& memory, const std::string& path, const std::string& importedFrom);

/// What the model that is saved at `path` was imported from; empty when nothing is known.
std::string importedFrom(const ImportMemory& memory, const std::string& path);

} // namespace facetor
