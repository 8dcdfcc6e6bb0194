#pragma once

#include "model/model.h"

#include <cstdint>

namespace facetor {

// The objects in the order of their indices with their depths, read as a tree: an object's children
// and theirs follow it at once, one deeper than their parents.

/// The parent of an object: the nearest one before it that is less deep. noObject at the top.
/// Needs index < model.objectCount.
std::uint32_t parentOf(const Model& model, std::uint32_t index);

/// The index behind an object's last descendant; index + 1 for one without children.
std::uint32_t subtreeEnd(const Model& model, std::uint32_t index);

/// How an object stands in a tree that is shown to the user.
enum class Branch {
    expanded,  ///< its children are in sight and can be chosen themselves
    collapsed, ///< it stands for all its descendants
};

enum class Visibility : std::uint32_t { hidden = 0, shown = objectShown };

/// Shows or hides an object, a collapsed one with all its descendants. Returns the index behind the
/// last object that was set; the first is `index`.
std::uint32_t setVisibility(Model& model, std::uint32_t index, Branch branch,
                            Visibility visibility);

} // namespace facetor
