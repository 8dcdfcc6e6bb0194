#pragma once

#include "model_builder.h"

#include <map>
#include <span>
#include <string>
#include <vector>

namespace facetor::samples {

/// A corner of a face as modellers have it: y up, z towards the viewer; (0, 0) is the picture's
/// left bottom.
struct ObjCorner {
    Point at;
    double u = 0, v = 0;
};

/// An OBJ being written: objects one after the other, each with its vertices before its faces.
class ObjText {
public:
    explicit ObjText(std::string start) : text_(std::move(start)) {}

    /// Begins an object.
    void object(const std::string& name);
    /// Of the faces that follow, up to the next call.
    void material(const std::string& name);
    void smooth(bool on);
    /// Counter-clockwise from outside. Coordinates are rounded to sixteenths.
    void face(std::span<const ObjCorner> corners);
    /// The same without a picture.
    void plainFace(std::span<const Point> corners);
    /// Four corners from the left bottom on with a part of the picture: left, bottom, right, top.
    void quad(const std::array<Point, 4>& corners,
              const std::array<double, 4>& part = {0, 0, 1, 1});

    /// The whole file.
    std::string finish();

private:
    enum class Pictured { no, yes };
    void write(std::span<const ObjCorner> corners, Pictured pictured);

    std::string text_, vertices_, uvs_, faces_; ///< the last three of the object being written
    std::map<std::array<double, 3>, std::size_t> vertexNumbers_;
    std::map<std::array<double, 2>, std::size_t> uvNumbers_;
    std::size_t vertexCount_ = 0, uvCount_ = 0;
};

} // namespace facetor::samples
