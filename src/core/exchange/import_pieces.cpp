#include "exchange/import_pieces.h"

#include "exchange/face_split.h"
#include "exchange/matching.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>
#include <optional>
#include <set>
#include <span>
#include <unordered_map>
#include <utility>

namespace facetor {

namespace {

const double cosineOfSmooth = std::cos(1.0 / 180 * std::numbers::pi);
const double cosineOfFlat = std::cos(0.1 / 180 * std::numbers::pi);

struct VectorHash {
    std::size_t operator()(const Vector3& v) const
    {
        std::uint64_t hash = std::bit_cast<std::uint32_t>(v.x);
        hash = hash * 0x9E3779B97F4A7C15u + std::bit_cast<std::uint32_t>(v.y);
        hash = hash * 0x9E3779B97F4A7C15u + std::bit_cast<std::uint32_t>(v.z);
        return static_cast<std::size_t>(hash ^ hash >> 29);
    }
};
struct VectorEqual {
    bool operator()(const Vector3& a, const Vector3& b) const
    {
        return a.x == b.x && a.y == b.y && a.z == b.z;
    }
};

class PieceMaker {
public:
    PieceMaker(const Scene& scene, const ImportOptions& options, ImportReport& report)
        : scene_(scene), options_(options), report_(report)
    {
        made_.parts.resize(scene.objects.size());
        made_.vertexOf.assign(scene.corners.size(), noIndex);
        for (const SceneObject& object : scene.objects)
            for (const Real3& row : object.placement)
                if (!isFinite(toVector(placed(row, options))) || !isFinite(toVector(row)))
                    made_.beyondSingles = "\"" + object.name + "\" is placed too far away";
    }

    ImportPieces make()
    {
        // Objects come one after the other, so that the vertices of each are found among its own.
        std::vector<std::uint32_t> order(scene_.faces.size());
        for (std::uint32_t i = 0; i < order.size(); ++i) order[i] = i;
        std::stable_sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
            return scene_.faces[a].object < scene_.faces[b].object;
        });
        for (std::size_t begin = 0; begin < order.size();) {
            const std::uint32_t object = scene_.faces[order[begin]].object;
            std::size_t end = begin;
            while (end < order.size() && scene_.faces[order[end]].object == object) ++end;
            makePart(made_.parts[object], std::span(order).subspan(begin, end - begin));
            begin = end;
        }
        return std::move(made_);
    }

private:
    void makePart(Part& part, std::span<const std::uint32_t> faces)
    {
        std::unordered_map<Vector3, std::uint32_t, VectorHash, VectorEqual> known;
        std::vector<Real3> corners;
        std::vector<Vector3> all;
        for (const std::uint32_t f : faces) {
            const SceneFace& face = scene_.faces[f];
            corners.clear();
            all.clear();
            for (std::uint32_t i = 0; i < face.cornerCount; ++i) {
                const SceneCorner& corner = scene_.corners[face.firstCorner + i];
                all.push_back(toVector(placed(scene_.positions[corner.position], options_)));
                corners.push_back(toReal(all.back()));
                if (!isFinite(all.back())) noteBeyond(f);
            }
            if (hasNoArea(corners)) {
                ++report_.dropped;
                continue;
            }
            for (std::uint32_t i = 0; i < face.cornerCount; ++i) {
                const auto next = static_cast<std::uint32_t>(known.size());
                const auto [at, isNew] = known.try_emplace(all[i], next);
                if (isNew) part.vertices.push_back(all[i]);
                made_.vertexOf[face.firstCorner + i] = at->second;
            }
            addFace(part, f, corners);
        }
        if (options_.triangles == Triangles::rejoin) rejoin(part);
        for (const Piece& piece : part.pieces) {
            std::set<std::uint32_t> different;
            for (const std::uint32_t corner : piece.corner)
                different.insert(made_.vertexOf[corner]);
            ++(different.size() == 4 ? report_.quads : report_.triangles);
        }
        report_.polygons += static_cast<std::uint32_t>(part.pieces.size());
        report_.vertices += static_cast<std::uint32_t>(part.vertices.size());
    }

    /// Scaled, a position may be larger than a single holds.
    void noteBeyond(std::uint32_t face)
    {
        if (!made_.beyondSingles.empty()) return;
        const std::uint32_t line = scene_.faces[face].line;
        made_.beyondSingles = line == 0 ? "" : "line " + std::to_string(line) + ": ";
        made_.beyondSingles += "a position is too large at this scale";
    }

    void addFace(Part& part, std::uint32_t index, std::span<const Real3> corners)
    {
        const SceneFace& face = scene_.faces[index];
        const bool smooth = isSmooth(face, corners);
        const std::uint32_t c = face.firstCorner;
        if (face.cornerCount == 3) {
            part.pieces.push_back({{c, c + 1, c + 2, c + 2}, index, smooth, true});
        } else if (face.cornerCount == 4) {
            part.pieces.push_back({{c, c + 1, c + 2, c + 3}, index, smooth, false});
        } else {
            ++report_.split;
            for (const FacePiece& piece : splitFace(corners))
                part.pieces.push_back({{c + piece[0], c + piece[1], c + piece[2], c + piece[3]},
                                       index,
                                       smooth,
                                       isTriangle(piece)});
        }
    }

    /// By its normals where it has some, else as its file says.
    bool isSmooth(const SceneFace& face, std::span<const Real3> corners) const
    {
        const Real3 faceNormal = areaVector(corners);
        bool hasNormals = false;
        for (std::uint32_t i = 0; i < face.cornerCount; ++i) {
            const std::uint32_t index = scene_.corners[face.firstCorner + i].normal;
            if (index == noIndex) continue;
            hasNormals = true;
            const Real3 normal = turned(scene_.normals[index], options_);
            const double lengths = lengthOf(normal) * lengthOf(faceNormal);
            if (lengths > 0 && dot(normal, faceNormal) < cosineOfSmooth * lengths) return true;
        }
        return !hasNormals && face.smooth;
    }

    /// Whether two corners show the same there: of faces that were one the file says it twice.
    bool looksEqual(std::uint32_t a, std::uint32_t b) const
    {
        const SceneCorner &first = scene_.corners[a], &second = scene_.corners[b];
        const auto equal = [](std::uint32_t i, std::uint32_t j, const auto& values) {
            return i == j || (i != noIndex && j != noIndex && values[i] == values[j]);
        };
        return equal(first.uv, second.uv, scene_.uvs) &&
               equal(first.colour, second.colour, scene_.colours) &&
               equal(first.normal, second.normal, scene_.normals);
    }

    /// The quad that two triangles make when they share the edge from corner `i` of the first, or
    /// nothing; `quality` says how likely it was one.
    std::optional<std::array<std::uint32_t, 4>>
    joined(const Part& part, const Piece& a, std::size_t i, const Piece& b, float& quality) const
    {
        const std::uint32_t from = a.corner[i], to = a.corner[(i + 1) % 3];
        std::size_t j = 0; // the corner of b that lies at `to`, where its edge begins
        while (j < 3 && !(made_.vertexOf[b.corner[j]] == made_.vertexOf[to] &&
                          made_.vertexOf[b.corner[(j + 1) % 3]] == made_.vertexOf[from]))
            ++j;
        if (j == 3 || scene_.faces[a.face].material != scene_.faces[b.face].material ||
            !looksEqual(to, b.corner[j]) || !looksEqual(from, b.corner[(j + 1) % 3]))
            return std::nullopt;
        std::array<std::uint32_t, 4> quad{to, a.corner[(i + 2) % 3], from, b.corner[(j + 2) % 3]};
        std::array<Real3, 4> at;
        const auto point = [&](std::uint32_t corner) {
            return toReal(part.vertices[made_.vertexOf[corner]]);
        };
        for (std::size_t k = 0; k < 4; ++k) at[k] = point(quad[k]);
        const Real3 n1 = areaVector(std::array{at[0], at[1], at[2]});
        const Real3 n2 = areaVector(std::array{at[0], at[2], at[3]});
        if (dot(n1, n2) < cosineOfFlat * lengthOf(n1) * lengthOf(n2)) return std::nullopt;
        if (!isConvexQuad(at, {n1[0] + n2[0], n1[1] + n2[1], n1[2] + n2[2]})) return std::nullopt;

        // Right angles, two triangles one after the other, and a common first corner, as those have
        // that a quad was cut into.
        double worst = 0;
        for (std::size_t k = 0; k < 4; ++k) {
            const Real3 in = minus(at[(k + 1) % 4], at[k]);
            const Real3 out = minus(at[(k + 2) % 4], at[(k + 1) % 4]);
            worst = std::max(worst, std::abs(dot(in, out)) / (lengthOf(in) * lengthOf(out)));
        }
        quality = static_cast<float>(1 - worst);
        if (a.face + 1 == b.face || b.face + 1 == a.face) quality += 1;
        if (made_.vertexOf[a.corner[0]] == made_.vertexOf[b.corner[0]]) quality += 0.5f;
        const auto first = std::find(quad.begin(), quad.end(), a.corner[0]);
        std::rotate(quad.begin(), first, quad.end());
        return quad;
    }

    void rejoin(Part& part)
    {
        struct Edge {
            std::uint64_t key;
            std::uint32_t triangle, corner;
        };
        std::vector<std::uint32_t> triangles;
        for (std::uint32_t i = 0; i < part.pieces.size(); ++i)
            if (part.pieces[i].isTriangle) triangles.push_back(i);
        std::vector<Edge> edges;
        edges.reserve(triangles.size() * 3);
        const auto key = [](std::uint32_t from, std::uint32_t to) {
            return std::uint64_t{from} << 32 | to;
        };
        for (std::uint32_t t = 0; t < triangles.size(); ++t)
            for (std::uint32_t i = 0; i < 3; ++i) {
                const auto& corner = part.pieces[triangles[t]].corner;
                edges.push_back(
                    {key(made_.vertexOf[corner[i]], made_.vertexOf[corner[(i + 1) % 3]]), t, i});
            }
        const auto before = [](const Edge& a, const Edge& b) { return a.key < b.key; };
        std::vector<Edge> sorted = edges;
        std::stable_sort(sorted.begin(), sorted.end(), before);

        struct Quad {
            std::uint32_t first, second;
            std::array<std::uint32_t, 4> corner;
        };
        std::vector<Pair> pairs;
        std::vector<Quad> quads;
        for (const Edge& edge : edges) {
            const Edge wanted{edge.key << 32 | edge.key >> 32, 0, 0};
            const auto [begin, end] =
                std::equal_range(sorted.begin(), sorted.end(), wanted, before);
            // Many triangles at one edge are no surface: a few of them are looked at.
            for (auto other = begin; other != end && other - begin < 16; ++other) {
                if (other->triangle <= edge.triangle) continue;
                const Piece& a = part.pieces[triangles[edge.triangle]];
                const Piece& b = part.pieces[triangles[other->triangle]];
                float quality = 0;
                const auto quad = joined(part, a, edge.corner, b, quality);
                if (!quad) continue;
                pairs.push_back({edge.triangle, other->triangle, quality});
                quads.push_back({edge.triangle, other->triangle, *quad});
            }
        }
        const auto mates = matchPairs(static_cast<std::uint32_t>(triangles.size()), pairs);
        std::vector<bool> isGone(part.pieces.size());
        for (const Quad& quad : quads) {
            if (mates[quad.first] != quad.second || isGone[triangles[quad.second]]) continue;
            Piece& piece = part.pieces[triangles[quad.first]];
            if (!piece.isTriangle) continue;
            piece.corner = quad.corner;
            piece.smooth |= part.pieces[triangles[quad.second]].smooth;
            piece.isTriangle = false;
            isGone[triangles[quad.second]] = true;
            ++report_.rejoined;
        }
        std::size_t kept = 0;
        for (std::size_t i = 0; i < part.pieces.size(); ++i)
            if (!isGone[i]) part.pieces[kept++] = part.pieces[i];
        part.pieces.resize(kept);
    }

    const Scene& scene_;
    const ImportOptions& options_;
    ImportReport& report_;
    ImportPieces made_;
};

} // namespace

Real3 placed(const Real3& point, const ImportOptions& options)
{
    const double s = double{options.scale};
    if (options.up == UpAxis::z) return {point[0] * s, -point[2] * s, point[1] * s};
    return {point[0] * s, -point[1] * s, -point[2] * s};
}

Real3 turned(const Real3& direction, const ImportOptions& options)
{
    ImportOptions unscaled = options;
    unscaled.scale = 1;
    return placed(direction, unscaled);
}

Vector3 toVector(const Real3& point)
{
    // Adding zero takes the sign off a zero, so that equal positions have equal bits.
    return {static_cast<float>(point[0]) + 0.0f, static_cast<float>(point[1]) + 0.0f,
            static_cast<float>(point[2]) + 0.0f};
}

Real3 toReal(const Vector3& vector)
{
    return {double{vector.x}, double{vector.y}, double{vector.z}};
}

std::string tooLarge(const Scene& scene, const ImportOptions& options)
{
    std::uint64_t most = 0, quarters = 0; // polygons, and half triangles of them at least
    for (const SceneFace& face : scene.faces) {
        if (face.cornerCount < 3) continue;
        quarters += face.cornerCount - 2;
        most += face.cornerCount <= 4 ? 1 : (face.cornerCount - 1) / 2;
    }
    const std::uint64_t least = options.triangles == Triangles::keep ? most : quarters / 2;
    // Faces without area may yet be dropped; so many are no model.
    if (least <= 4 * polygonCapacity) return {};
    return tooManyFaces(scene.faces.size());
}

ImportPieces makePieces(const Scene& scene, const ImportOptions& options, ImportReport& report)
{
    return PieceMaker(scene, options, report).make();
}

} // namespace facetor
