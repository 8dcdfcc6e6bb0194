#pragma once

#include "engine/engine.h"

#include <cstdint>
#include <vector>

namespace facetor {

/// Whose polygons the entries of a frame are. An entry names its mesh, which several objects may
/// show; each of them has vertices of its own in the frame.
class FrameObjects {
public:
    /// Of the model that is listed from its first object on, safe to draw.
    FrameObjects(const Engine& engine, const Model& model);

    std::uint32_t object(const PolygonEntry& entry) const
    {
        return shown_[entry.firstVertex].object;
    }
    /// Its number among all polygons of shown objects, listed or not, below polygonCount(). The
    /// same one in every frame that shows the same objects.
    std::uint32_t number(const PolygonEntry& entry) const
    {
        return shown_[entry.firstVertex].firstPolygon + entry.polygon;
    }
    std::uint32_t polygonCount() const { return polygonCount_; }

private:
    struct Shown {
        std::uint32_t object, firstPolygon;
    };
    std::vector<Shown> shown_; ///< by the object's first vertex in Engine::viewVertices
    std::uint32_t polygonCount_ = 0;
};

} // namespace facetor
