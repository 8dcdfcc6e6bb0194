#include "obj_text.h"

#include "numbers.h"

#include <charconv>

namespace facetor::samples {

namespace {

void append(std::string& text, double value)
{
    std::array<char, 32> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    text.append(1, ' ').append(digits.data(), end);
}

} // namespace

void ObjText::object(const std::string& name)
{
    text_ = finish() + "o " + name + '\n';
}

void ObjText::material(const std::string& name)
{
    faces_ += "usemtl " + name + '\n';
}

void ObjText::smooth(bool on)
{
    faces_ += on ? "s 1\n" : "s off\n";
}

void ObjText::face(std::span<const ObjCorner> corners)
{
    write(corners, Pictured::yes);
}

void ObjText::plainFace(std::span<const Point> corners)
{
    std::vector<ObjCorner> bare;
    for (const Point& corner : corners) bare.push_back({corner});
    write(bare, Pictured::no);
}

void ObjText::quad(const std::array<Point, 4>& corners, const std::array<double, 4>& part)
{
    const auto& [left, bottom, right, top] = part;
    face(std::array<ObjCorner, 4>{{{corners[0], left, bottom},
                                   {corners[1], right, bottom},
                                   {corners[2], right, top},
                                   {corners[3], left, top}}});
}

void ObjText::write(std::span<const ObjCorner> corners, Pictured pictured)
{
    faces_ += 'f';
    for (const ObjCorner& corner : corners) {
        const std::array<double, 3> at{toSixteenth(corner.at.x), toSixteenth(corner.at.y),
                                       toSixteenth(corner.at.z)};
        const auto [vertex, isNew] = vertexNumbers_.try_emplace(at, vertexCount_ + 1);
        if (isNew) {
            ++vertexCount_;
            vertices_ += 'v';
            for (const double coordinate : at) append(vertices_, coordinate);
            vertices_ += '\n';
        }
        faces_ += ' ' + std::to_string(vertex->second);
        if (pictured == Pictured::no) continue;
        const auto [uv, isNewUv] = uvNumbers_.try_emplace({corner.u, corner.v}, uvCount_ + 1);
        if (isNewUv) {
            ++uvCount_;
            uvs_ += "vt";
            append(uvs_, corner.u);
            append(uvs_, corner.v);
            uvs_ += '\n';
        }
        faces_ += '/' + std::to_string(uv->second);
    }
    faces_ += '\n';
}

std::string ObjText::finish()
{
    std::string whole = text_ + vertices_ + uvs_ + faces_;
    for (std::string* part : {&vertices_, &uvs_, &faces_}) part->clear();
    vertexNumbers_.clear(); // each object has vertices of its own
    return whole;
}

} // namespace facetor::samples
