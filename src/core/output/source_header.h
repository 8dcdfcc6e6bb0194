#pragma once

#include "base/text_writer.h"
#include "output/source_names.h"

#include <string_view>

namespace facetor {

/// A C header for a source that formatModelSource() or formatTextureSource() has made: an extern
/// declaration of every table in it. Whoever includes it has to include the headers of the
/// console's library first, for the types. `path` is where it will stand; its file name makes the
/// name that guards against a second inclusion. Lines end with CR LF.
TextWriter formatSourceHeader(std::string_view source, std::string_view path, SourceNames names);

} // namespace facetor
