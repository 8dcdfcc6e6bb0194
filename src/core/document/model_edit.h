#pragma once

#include "base/bytes.h"
#include "base/message.h"
#include "document/undo.h"
#include "model/model.h"
#include "texture/texture_list.h"

#include <cstdint>

namespace facetor {

/// The edits of the model that can be undone, each with the kind under which the undo slot holds
/// what it changes, of the whole model.
enum class ModelEdit : std::uint32_t {
    attributes = tag("ATTR"),     ///< attribute records
    rotateVertices = tag("VTXR"), ///< polygons, attribute records
    invertSurface = tag("IVPL"),  ///< polygons, attribute records, vertex normals
    gouraudTable = tag("MKGR"),   ///< attribute records, Gouraud entries
};

/// Keeps what an edit is about to change. outOfUndoMemory, with the slot empty, when memory is
/// short.
Message rememberModel(UndoSlot& slot, Model& model, ModelEdit edit);

/// Exchanges what the slot holds with the model's present state. Does nothing when the slot holds
/// something that is not of a model. outOfUndoMemory, with nothing changed, when the slot does not
/// fit the model. The texture list has no part in it.
Message exchangeModelEdit(UndoSlot& slot, Model& model, TextureList& list);

} // namespace facetor
