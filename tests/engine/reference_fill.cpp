#include "engine/reference_fill.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>

namespace facetor::test {

namespace {

using Edges = std::vector<std::pair<ScreenPoint, ScreenPoint>>;

/// Calls `pixel(x, row)` for every pixel between the edges' smallest and largest x in each row.
void visitSpans(const ReferencePicture& picture, const std::vector<ScreenPoint>& points,
                const Edges& edges, const std::function<void(std::int32_t, std::int32_t)>& pixel)
{
    const auto byY = [](const ScreenPoint& a, const ScreenPoint& b) { return a.y < b.y; };
    const auto byX = [](const ScreenPoint& a, const ScreenPoint& b) { return a.x < b.x; };
    const std::int32_t first = std::min_element(points.begin(), points.end(), byY)->y;
    const std::int32_t last = std::max_element(points.begin(), points.end(), byY)->y;
    for (std::int32_t row = std::max(first, 0); row <= std::min(last, picture.height - 1); ++row) {
        std::int32_t left = std::max_element(points.begin(), points.end(), byX)->x;
        std::int32_t right = std::min_element(points.begin(), points.end(), byX)->x;
        for (const auto& [a, b] : edges) {
            if (a.y == b.y) continue;
            const float t = static_cast<float>(row - a.y) / static_cast<float>(b.y - a.y);
            if (t < 0.0f || t > 1.0f) continue;
            const std::int32_t x =
                static_cast<std::int32_t>(static_cast<float>(b.x - a.x) * t) + a.x;
            left = std::min(left, x);
            right = std::max(right, x);
        }
        for (std::int32_t x = std::max(left, 0); x <= std::min(right, picture.width - 1); ++x)
            pixel(x, row);
    }
}

std::array<int, 3> components(Rgb555 colour)
{
    return {redOf(colour), greenOf(colour), blueOf(colour)};
}

Rgb555 colourOf(const std::array<int, 3>& c)
{
    return rgb555(c[0], c[1], c[2]);
}

Rgb555 blend(std::uint32_t flags, Rgb555 d, Rgb555 s)
{
    if ((flags & shadowMode) != 0) return static_cast<Rgb555>((d & 0x7BDE) >> 1);
    if ((flags & halfMode) != 0) return static_cast<Rgb555>((s & 0x7BDE) >> 1);
    if ((flags & translucentMode) == 0) return s;
    const int red = ((d & 0x7800) + (s & 0x7800)) >> 1;
    const int green = ((d & 0x03C0) + (s & 0x03C0)) >> 1;
    const int blue = ((d & 0x001E) + (s & 0x001E)) >> 1;
    return static_cast<Rgb555>(red | green | blue);
}

Rgb555 light555(const Light& light, Rgb555 colour, int level, int index)
{
    std::array<int, 3> c = components(colour);
    for (std::size_t i = 0; i < 3; ++i)
        c[i] = std::clamp(
            std::max(c[i] - light.offset[i], int{light.minimum[i]}) + level + index - 40, 0, 31);
    return colourOf(c);
}

ScreenQuad surfaceRows(const ReferencePicture& picture, const ScreenQuad& quad)
{
    ScreenQuad result = quad;
    for (ScreenPoint& p : result) p.y = picture.height - 1 - p.y;
    return result;
}

struct Corner {
    ScreenPoint at;
    std::vector<double> coordinate;
};

using Shader = std::function<void(Rgb555& d, const std::vector<int>& at, bool ambiguous,
                                  std::vector<bool>::reference mark)>;

void visitTriangle(ReferencePicture& picture, const std::array<Corner, 3>& corner,
                   const std::vector<double>& limit, std::uint32_t flags, const Shader& shade)
{
    const ScreenPoint p0 = corner[0].at, p1 = corner[1].at, p2 = corner[2].at;
    const double x1 = p1.x - p0.x, x2 = p2.x - p0.x, r1 = p1.y - p0.y, r2 = p2.y - p0.y;
    const double area = x1 * r2 - x2 * r1;
    if (area == 0) return;
    visitSpans(picture, {p0, p1, p2}, {{p0, p1}, {p1, p2}, {p0, p2}},
               [&](std::int32_t x, std::int32_t row) {
                   if ((flags & meshMode) != 0 && ((x ^ row) & 1) == 0) return;
                   std::vector<int> at;
                   bool ambiguous = false;
                   for (std::size_t c = 0; c < limit.size(); ++c) {
                       const double d1 = corner[1].coordinate[c] - corner[0].coordinate[c];
                       const double d2 = corner[2].coordinate[c] - corner[0].coordinate[c];
                       const double dx = (d1 * r2 - d2 * r1) / area;
                       const double dr = (d2 * x1 - d1 * x2) / area;
                       const double value =
                           corner[0].coordinate[c] + dx * (x - p0.x) + dr * (row - p0.y);
                       const double clamped = std::clamp(value, 0.0, limit[c] - 1);
                       at.push_back(static_cast<int>(clamped));
                       // A hundredth of a texel, but not where clamping decides.
                       const double near = std::fabs(value - std::round(value));
                       if (near < 0.01 && value > 0.5 && value < limit[c] - 0.5) ambiguous = true;
                   }
                   const auto index = static_cast<std::size_t>(row * picture.width + x);
                   shade(picture.pixel[index], at, ambiguous, picture.ambiguous[index]);
               });
}

int gouraudStep(const Light& light, const std::array<Rgb555, 4>& gouraud, std::size_t channel,
                int column, int row, std::uint32_t flags)
{
    std::array<double, 4> g;
    for (std::size_t i = 0; i < 4; ++i) {
        int c = components(gouraud[i])[channel];
        if ((flags & useLight) != 0)
            c = std::max(c - light.offset[channel], int{light.minimum[channel]});
        g[i] = c * 0.03125;
    }
    const double bi = column / 32.0, ai = 1.0 - bi, bj = row / 32.0, aj = 1.0 - bj;
    const double p = (ai * g[0] + bi * g[1]) * aj + (ai * g[3] + bi * g[2]) * bj;
    return static_cast<int>((p - 0.5) * 32.0);
}

Rgb555 stepped(const Light& light, const std::array<Rgb555, 4>& gouraud, Rgb555 colour, int column,
               int row, std::uint32_t flags)
{
    std::array<int, 3> c = components(colour);
    for (std::size_t i = 0; i < 3; ++i)
        c[i] = std::clamp(c[i] + gouraudStep(light, gouraud, i, column, row, flags), 0, 31);
    return colourOf(c);
}

ScreenPoint half(ScreenPoint a, ScreenPoint b)
{
    return {(a.x + b.x) >> 1, (a.y + b.y) >> 1};
}

std::array<ScreenPoint, 5> divide(ScreenPoint a, ScreenPoint b)
{
    const ScreenPoint m = half(a, b);
    return {a, half(a, m), m, half(m, b), b};
}

void visitCells(ReferencePicture& picture, const ScreenQuad& quad, const std::vector<double>& limit,
                std::uint32_t flags, const Shader& shade)
{
    const ScreenQuad p = surfaceRows(picture, quad);
    const auto top = divide(p[0], p[1]), bottom = divide(p[3], p[2]);
    const auto coordinate = [&](std::size_t c, std::size_t i) -> double {
        const int size = static_cast<int>(limit[c]);
        const std::array<int, 5> at{0, size >> 2, size >> 1, (size >> 2) + (size >> 1), size - 1};
        return at[i];
    };
    const auto corner = [&](std::size_t i, std::size_t j) {
        Corner result{divide(top[i], bottom[i])[j], {}};
        for (std::size_t c = 0; c < limit.size(); ++c)
            result.coordinate.push_back(coordinate(c, c % 2 == 0 ? i : j));
        return result;
    };
    for (std::size_t j = 0; j < 4; ++j)
        for (std::size_t i = 0; i < 4; ++i) {
            visitTriangle(picture, {corner(i, j), corner(i + 1, j), corner(i + 1, j + 1)}, limit,
                          flags, shade);
            visitTriangle(picture, {corner(i, j), corner(i + 1, j + 1), corner(i, j + 1)}, limit,
                          flags, shade);
        }
}

Rgb555 texelAt(const TextureSlot& texture, int u, int v, std::uint32_t flags)
{
    if ((flags & flipHorizontal) != 0) u = texture.width - 1 - u;
    if ((flags & flipVertical) != 0) v = texture.height - 1 - v;
    return texture.pixels[v * texture.width + u];
}

/// Texels of half and translucent polygons are lit even without light: at level 16.
Rgb555 texturedPixel(const Light& light, Rgb555 d, Rgb555 texel, int level, std::uint32_t flags,
                     bool alreadyLit)
{
    const Rgb555 result = blend(flags, d, texel);
    if ((flags & shadowMode) != 0) return result;
    if ((flags & (halfMode | translucentMode)) != 0) return light555(light, result, level, 32);
    return (flags & useLight) != 0 && !alreadyLit ? light555(light, result, level, 32) : result;
}

} // namespace

ReferencePicture::ReferencePicture(std::int32_t pictureWidth, std::int32_t pictureHeight,
                                   Rgb555 background)
    : width(pictureWidth), height(pictureHeight),
      pixel(static_cast<std::size_t>(width * height), background),
      ambiguous(static_cast<std::size_t>(width * height), false)
{
}

void referenceFlat(ReferencePicture& picture, const Light& light, const ScreenQuad& quad,
                   Rgb555 colour, int level, std::uint32_t flags)
{
    if ((flags & useLight) != 0) colour = light555(light, colour, level, 40);
    const ScreenQuad p = surfaceRows(picture, quad);
    visitSpans(picture, {p[0], p[1], p[2], p[3]},
               {{p[0], p[1]}, {p[1], p[2]}, {p[3], p[2]}, {p[0], p[3]}},
               [&](std::int32_t x, std::int32_t row) {
                   if ((flags & meshMode) != 0 && (x & 1) != (row & 1)) return;
                   Rgb555& d = picture.pixel[static_cast<std::size_t>(row * picture.width + x)];
                   d = blend(flags, d, colour);
               });
}

void referenceGouraud(ReferencePicture& picture, const Light& light, const ScreenQuad& quad,
                      Rgb555 colour, const std::array<Rgb555, 4>& gouraud, std::uint32_t flags)
{
    const ScreenQuad p = surfaceRows(picture, quad);
    const Shader shade = [&](Rgb555& d, const std::vector<int>& at, bool ambiguous,
                             std::vector<bool>::reference mark) {
        mark = mark || ambiguous;
        d = blend(flags, d, stepped(light, gouraud, colour, at[0], at[1], flags));
    };
    visitTriangle(picture, {Corner{p[0], {0, 0}}, Corner{p[1], {31, 0}}, Corner{p[2], {31, 31}}},
                  {32, 32}, flags, shade);
    visitTriangle(picture, {Corner{p[0], {0, 0}}, Corner{p[2], {31, 31}}, Corner{p[3], {0, 31}}},
                  {32, 32}, flags, shade);
}

void referenceTextured(ReferencePicture& picture, const Light& light, const ScreenQuad& quad,
                       const TextureSlot& texture, int level, std::uint32_t flags)
{
    visitCells(picture, quad, {double(texture.width), double(texture.height)}, flags,
               [&](Rgb555& d, const std::vector<int>& at, bool ambiguous,
                   std::vector<bool>::reference mark) {
                   mark = mark || ambiguous;
                   const Rgb555 texel = texelAt(texture, at[0], at[1], flags);
                   const int used = (flags & useLight) != 0 ? level : 16;
                   if ((texel & opaqueBit) != 0)
                       d = texturedPixel(light, d, texel, used, flags, false);
               });
}

void referenceTexturedGouraud(ReferencePicture& picture, const Light& light, const ScreenQuad& quad,
                              const TextureSlot& texture, const std::array<Rgb555, 4>& gouraud,
                              std::uint32_t flags)
{
    visitCells(picture, quad, {double(texture.width), double(texture.height), 32, 32}, flags,
               [&](Rgb555& d, const std::vector<int>& at, bool ambiguous,
                   std::vector<bool>::reference mark) {
                   mark = mark || ambiguous;
                   const Rgb555 texel = texelAt(texture, at[0], at[1], flags);
                   if ((texel & opaqueBit) == 0) return;
                   const Rgb555 shaded = stepped(light, gouraud, texel, at[2], at[3], flags);
                   d = texturedPixel(light, d, shaded, 16, flags, true);
               });
}

} // namespace facetor::test
