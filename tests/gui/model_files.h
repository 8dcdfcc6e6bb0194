#pragma once

#include "base/colour.h"

#include <cstdint>
#include <string>

namespace facetor {

/// Writes the start-up cube without its last polygons as a model file. Needs 1-6 polygons.
void writeCubeFile(const std::string& path, std::uint32_t polygonCount);

/// Writes the start-up cube with texture 0 on every side.
void writeTexturedCubeFile(const std::string& path);

/// Writes a texture list whose slot 0 is a texture of one colour.
void writeTexturesFile(const std::string& path, Rgb555 colour);

/// Writes a file of these characters.
void writeTextFile(const std::string& path, const std::string& text);

} // namespace facetor
