#pragma once

#include "model/object_tree.h"

#include <cstdint>
#include <optional>
#include <string>

namespace facetor {

struct Editor;

/// Opens the hierarchy window, where it was last, or closes it.
void toggleHierarchyWindow(Editor& editor);

/// Makes the tree anew from the model, if the window is open.
void refreshHierarchyTree(Editor& editor);

/// Chooses the object of a polygon that was picked in the tree, if the window is open and linked.
void showObjectOf(Editor& editor, std::uint32_t polygon);

/// Whether a name is being typed in the tree.
bool isNaming(const Editor& editor);

// What the window's own commands do. Each needs an open window.

/// The object whose item is selected.
std::optional<std::uint32_t> selectedObject(const Editor& editor);
/// Shows or hides it; a collapsed one stands for all its descendants.
void showSelectedObject(Editor& editor, Visibility visibility);
/// Picks its polygons and no others, with Ctrl held in addition; with Shift held they are no longer
/// picked. A collapsed one stands for all its descendants.
void pickSelectedObject(Editor& editor);
/// Makes a choice in the tree pick, and a click on a polygon choose in the tree, or no longer.
void toggleTreeLink(Editor& editor);
/// Gives an object another name, also in the tree. Nothing for one that is no longer there.
void renameObject(Editor& editor, std::uint32_t index, std::string name);

} // namespace facetor
