#pragma once

#include "base/bytes.h"
#include "base/message.h"
#include "model/model.h"
#include "texture/texture_list.h"

#include <string>

namespace facetor {

/// What a report is of.
struct ReportSubject {
    const Model& model;
    const TextureList* textures; ///< none: the model's polygons are drawn without
    std::string modelName;       ///< file names, as the page shows them
    std::string texturesName;    ///< empty without a list
    float scale = 1;             ///< of the target image
};

/// One HTML page about a model, for a review or a build server, with everything in it: the six
/// fixed views and a turn, how much of each limit is taken, what the target cannot show with
/// pictures of the polygons, the textures with their sizes and uses, the object tree, and how
/// polygons are drawn. It needs no script and no other file, and can be printed. outOfMemory when
/// memory is short. Needs a model that isSafeToDraw().
Message formatReport(Bytes& page, const ReportSubject& subject);

} // namespace facetor
