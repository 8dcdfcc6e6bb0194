#pragma once

#include "view/view.h"

#include <cstddef>
#include <cstdint>

namespace facetor {

// Bringing one polygon into sight, named by the pool index of its attribute. All of it draws into
// the engine's surface, which is lost, and needs a model that isSafeToDraw(); the marks of the
// model are afterwards as they were.

/// How many pixels of a frame show the polygon: those that differ when it is marked.
std::size_t countVisiblePixels(const View& view, Engine& engine, Model& model,
                               std::uint32_t attribute, ClientSize client);

/// The fixed view that shows most of a polygon, forward where none shows anything of it. The rest
/// of `view` is what is to be seen from there.
FixedView findBestView(const View& view, Engine& engine, Model& model, std::uint32_t attribute,
                       ClientSize client);

/// Turns the view to the best of the fixed ones if the polygon is not to be seen as it is, and some
/// of it then is.
void bringIntoSight(View& view, Engine& engine, Model& model, std::uint32_t attribute,
                    ClientSize client);

} // namespace facetor
