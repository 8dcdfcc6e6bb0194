#pragma once

#include "base/message.h"
#include "base/text_writer.h"
#include "model/model.h"
#include "output/source_names.h"

#include <string>
#include <string_view>

namespace facetor {

/// The model as C source: for each object its points, polygons, attributes, vertex normals where
/// the light needs them and the header that holds them together, then the objects themselves from
/// the last to the first, and before all that the Gouraud tables. `title` is the name of the file
/// that the text is for; the Gouraud tables are named after it without its extension. Lines end
/// with CR LF.
TextWriter formatModelSource(const Model& model, std::string_view title,
                             SourceNames names = SourceNames::asTheyAre);

/// formatModelSource() into a file; cannotCreateFile when it cannot be put in place.
Message writeModelSource(const Model& model, const std::string& path);

} // namespace facetor
