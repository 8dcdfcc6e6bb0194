#pragma once

#include "base/colour.h"
#include "base/geometry.h"
#include "base/message.h"
#include "base/pages.h"
#include "engine/cell_shapes.h"
#include "engine/fill_path.h"
#include "engine/frame_surface.h"
#include "engine/light.h"
#include "engine/matrix_stack.h"
#include "engine/opacity.h"
#include "engine/texture_slot.h"
#include "model/model.h"

#include <array>
#include <bitset>
#include <cstdint>
#include <span>
#include <vector>

namespace facetor {

/// A position on the screen, in pixels from the top-left corner of the client area.
struct ScreenPoint {
    std::int32_t x, y;
};

/// The corners of a polygon on the screen, in order around it.
using ScreenQuad = std::array<ScreenPoint, 4>;

/// A rectangle whose four sides belong to it.
struct InclusiveRectangle {
    std::int32_t left, top, right, bottom;
};

/// Bits of EngineSettings::drawFlags.
enum DrawFlag : std::uint32_t {
    drawWireframe = 1, ///< every polygon as an outline in its colour
    drawFlat = 2,      ///< every polygon filled with its colour, without texture or Gouraud
    drawParallel = 4,  ///< parallel projection instead of perspective
};

inline constexpr Angle defaultViewAngle = 16383;

/// The focal length is taken from this width whatever the window's size.
inline constexpr std::int32_t focalScreenWidth = 640;

/// Polygons that are left out of frames, by their pool index.
using HiddenPolygons = std::bitset<polygonCapacity>;

struct EngineSettings {
    InclusiveRectangle window{0, 0, 640, 480}; ///< clip window, inclusive
    ScreenPoint centre{320, 240};
    float focalLength = 0; ///< about 320 at the default view angle; set by startEngine()
    Light light;
    Rgb555 pickedColour = 0x83E0;
    std::uint32_t drawFlags = 0;
    FillPath fillPath = fastestFillPath;
    HiddenPolygons hidden;
    bool countsWrites = false; ///< fills add one to each pixel that they write, and draw nothing
    /// The texture table. A polygon whose number lies beyond it shows the blank texture; without a
    /// table none is textured.
    std::span<const TextureSlot> textures;
};

/// A polygon that passed the frame's tests, ready to be drawn.
struct PolygonEntry {
    float depth;                      ///< z of the sort point less the focal length
    std::array<ScreenPoint, 4> point; ///< the corners on the screen
    Vector3 normal;                   ///< face normal in view space
    std::array<Vector3, 4>
        vertexNormal;          ///< in view space; only set with gouraudShading and useLight
    std::uint32_t firstVertex; ///< of its object, in Engine::viewVertices
    std::uint32_t attribute;   ///< pool index of its attribute, hence of its polygon
    std::uint32_t mesh;        ///< whose polygon it is
    std::uint32_t polygon;     ///< index within the mesh
};

/// Texels of the largest texture that is lit as a whole before it is drawn.
inline constexpr std::size_t litTexelCapacity = 65536;

/// Columns and rows of the work texture of Gouraud fills.
inline constexpr std::size_t gouraudTextureSize = 32;

/// The whole engine: settings, matrix stack, the buffers of one frame and the surface. Everything
/// is allocated by startEngine(); a frame allocates nothing.
struct Engine {
    EngineSettings settings;
    MatrixStack stack;
    PageArray<Vertex> viewVertices;       ///< transformed vertices of the frame
    PageArray<ScreenPoint> screenPoints;  ///< parallel to viewVertices: where each appears
    PageArray<PolygonEntry> entries;      ///< in the order in which the polygons were put
    PageArray<std::uint32_t> sortList;    ///< indices of entries, far to near once sorted
    PageArray<std::uint64_t> sortScratch; ///< two halves of one key and index an entry
    PageArray<std::int16_t> spanEnds;     ///< left, then right ends of the rows being filled
    PageArray<Rgb555> gouraudTexture;     ///< the 32 x 32 work texture of Gouraud fills
    PageArray<Rgb555> litTexels;          ///< the work texture of large lit polygons
    TexelLightCache texelLights;
    CellShapes cellShapes;
    OpacityCache opacity;           ///< of the frame's textures
    std::uint32_t entryCount = 0;   ///< polygons in the list
    std::uint32_t vertexCount = 0;  ///< transformed vertices in use
    std::uint32_t polygonCount = 0; ///< polygons seen, dropped ones too
    FrameSurface surface;
};

/// The nearest z that the projection divides by: what is nearer is projected as if it lay there.
inline constexpr float nearClampZ = 40.0f;
/// Entries deeper than this are dropped.
inline constexpr float farLimit = 32767.0f;
/// From this on, the dot product of face normal and sort point (in parallel projection the normal's
/// z) makes a polygon face away.
inline constexpr float backFaceEpsilon = 0.001f;

/// Creates the frame surface (640 x 489), the frame's buffers and the matrix stack, and gives the
/// settings their start values. outOfMemory, with nothing held, when an allocation fails.
Message startEngine(Engine& engine);
/// Frees everything; the engine is then as before its first start.
void stopEngine(Engine& engine);

/// Sets the focal length: 640 / (2 tangent(angle / 2)), the half angle by an arithmetic shift.
void setViewAngle(Engine& engine, Angle angle);

/// Sets or clears draw flags.
void setDrawFlags(Engine& engine, std::uint32_t flags, bool on);

/// Empties the frame: entries, transformed vertices, polygons seen. From here until the frame is
/// drawn the texels of the textures must stay as they are.
void resetFrame(Engine& engine);

/// Puts the polygons of one mesh into the frame, seen through the current matrix: transforms its
/// vertices, drops polygons that face away, lie too near or far, or have all corners outside the
/// clip window, and lists the others. A mesh whose vertices, and polygons that, would not fit into
/// the frame's buffers are left out; that needs a model whose objects show one mesh more than once.
void putMesh(Engine& engine, const Model& model, std::uint32_t meshIndex);

/// Puts object `first`, its siblings and all their children into the frame. Needs a model that
/// isSafeToDraw(). An object that is not shown still passes its matrix on to its children.
void walkHierarchy(Engine& engine, const Model& model, std::uint32_t first);

/// Orders sortList from far to near; equal depths keep no particular order, but the same list
/// always gives the same one.
void sortPolygons(Engine& engine);

/// All polygons of a frame, as a count.
inline constexpr std::uint32_t allPolygons = 0xFFFFFFFF;

/// Draws the sorted list, or the first `count` polygons of it, into the surface. The model must be
/// as it was when the list was made.
void drawPolygons(Engine& engine, const Model& model, std::uint32_t count = allPolygons);

/// How often the same would write each pixel of the surface, top row first, at most 255. Uses the
/// surface to find out: what it holds is lost.
std::vector<std::uint8_t> countWrites(Engine& engine, const Model& model,
                                      std::uint32_t count = allPolygons);

/// The polygons that write one pixel, as places in the sorted list, far to near; none for a pixel
/// beyond the surface. Uses the surface like countWrites().
std::vector<std::uint32_t> findWriters(Engine& engine, const Model& model, ScreenPoint pixel);

/// Where a point in view space appears on the screen: the centre plus trunc(x f), trunc(y f) with
/// f = focal length / max(z, 40), or f = 1 in parallel projection. Far outside, or for what is no
/// number, the result is clamped to +-2^28, so that differences fit 32 bits.
ScreenPoint projectPoint(const EngineSettings& settings, const Vector3& point);

} // namespace facetor
