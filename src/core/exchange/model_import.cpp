#include "exchange/model_import.h"

#include "base/text.h"
#include "exchange/face_split.h"
#include "exchange/matching.h"
#include "exchange/model_points.h"
#include "exchange/own_model.h"
#include "exchange/scene_colour.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>
#include <set>
#include <unordered_map>

namespace facetor {

namespace {

constexpr std::size_t longestImportedName = 127; ///< bytes
constexpr double translucentBelow = 0.75;        ///< opacity
constexpr std::uint32_t polygonsPerReport = 16;  ///< of progress; one may cut a large texture
const double cosineOfSmooth = std::cos(1.0 / 180 * std::numbers::pi);
const double cosineOfFlat = std::cos(0.1 / 180 * std::numbers::pi);

/// A polygon to be: corners of the scene in the file's order, a triangle's last one twice.
struct Piece {
    std::array<std::uint32_t, 4> corner;
    std::uint32_t face;
    bool smooth;
    bool isTriangle;
};

Real3 placed(const Real3& p, const ImportOptions& options)
{
    const double s = double{options.scale};
    if (options.up == UpAxis::z) return {p[0] * s, -p[2] * s, p[1] * s};
    return {p[0] * s, -p[1] * s, -p[2] * s};
}

Vector3 toVector(const Real3& p)
{
    // Adding zero takes the sign off a zero, so that equal positions have equal bits.
    return {static_cast<float>(p[0]) + 0.0f, static_cast<float>(p[1]) + 0.0f,
            static_cast<float>(p[2]) + 0.0f};
}

Real3 toReal(const Vector3& v)
{
    return {double{v.x}, double{v.y}, double{v.z}};
}

/// 0-1 to 8 bits by rounding, then to 5 by dropping the low three.
int toFiveBits(double component)
{
    return toByte(component) >> 3;
}

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

/// One object on its way into the model.
struct Part {
    std::vector<Vector3> vertices;
    std::vector<Piece> pieces;
};

class ModelImport {
public:
    ModelImport(const Scene& scene, TextureList* textures, const ImportOptions& options,
                ImportReport& report, const ImportProgress& progress)
        : scene_(scene), textures_(textures), options_(options), report_(report),
          progress_(progress), cuts_(scene, options.textures), parts_(scene.objects.size()),
          vertexOf_(scene.corners.size(), noIndex)
    {
    }

    Message run(Model& model, Reason& reason)
    {
        if (const std::string why = tooLarge(); !why.empty()) {
            reason.text = why;
            return Message::formatNotSupported;
        }
        for (const SceneObject& object : scene_.objects)
            for (const Real3& row : object.placement)
                if (!isFinite(toVector(placed(row, options_))) || !isFinite(toVector(row)))
                    beyondSingles_ = "\"" + object.name + "\" is placed too far away";
        makePieces();
        if (!beyondSingles_.empty()) {
            reason.text = beyondSingles_;
            return Message::formatNotSupported;
        }
        if (report_.polygons == 0) {
            reason.text = "no face has an area";
            return Message::formatNotSupported;
        }
        if (const std::string why = beyondPools(); !why.empty()) {
            reason.text = why;
            return Message::formatNotSupported;
        }
        if (!fill(model, reason)) return Message::formatNotSupported;
        noteTextures();
        return textures_ ? cuts_.store(*textures_) : Message::none;
    }

private:
    /// What is too much whatever triangles are joined; a huge file is refused here at once.
    std::string tooLarge() const
    {
        std::uint64_t most = 0, quarters = 0; // polygons, and half triangles of them at least
        for (const SceneFace& face : scene_.faces) {
            if (face.cornerCount < 3) continue;
            quarters += face.cornerCount - 2;
            most += face.cornerCount <= 4 ? 1 : (face.cornerCount - 1) / 2;
        }
        const std::uint64_t least = options_.triangles == Triangles::keep ? most : quarters / 2;
        // Faces without area may yet be dropped; so many are no model.
        if (least <= 4 * polygonCapacity) return {};
        return tooManyFaces(scene_.faces.size());
    }

    void makePieces()
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
            makePart(parts_[object], std::span(order).subspan(begin, end - begin));
            begin = end;
        }
    }

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
                vertexOf_[face.firstCorner + i] = at->second;
            }
            addFace(part, f, corners);
        }
        if (options_.triangles == Triangles::rejoin) rejoin(part);
        for (const Piece& piece : part.pieces) {
            std::set<std::uint32_t> different;
            for (const std::uint32_t corner : piece.corner) different.insert(vertexOf_[corner]);
            ++(different.size() == 4 ? report_.quads : report_.triangles);
        }
        report_.polygons += static_cast<std::uint32_t>(part.pieces.size());
        report_.vertices += static_cast<std::uint32_t>(part.vertices.size());
    }

    /// Scaled, a position may be larger than a single holds.
    void noteBeyond(std::uint32_t face)
    {
        if (!beyondSingles_.empty()) return;
        const std::uint32_t line = scene_.faces[face].line;
        beyondSingles_ = line == 0 ? "" : "line " + std::to_string(line) + ": ";
        beyondSingles_ += "a position is too large at this scale";
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
            const Real3 normal = normalOf(index);
            const double lengths = lengthOf(normal) * lengthOf(faceNormal);
            if (lengths > 0 && dot(normal, faceNormal) < cosineOfSmooth * lengths) return true;
        }
        return !hasNormals && face.smooth;
    }

    Real3 normalOf(std::uint32_t index) const
    {
        ImportOptions turned = options_;
        turned.scale = 1;
        return placed(scene_.normals[index], turned);
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
        while (j < 3 && !(vertexOf_[b.corner[j]] == vertexOf_[to] &&
                          vertexOf_[b.corner[(j + 1) % 3]] == vertexOf_[from]))
            ++j;
        if (j == 3 || scene_.faces[a.face].material != scene_.faces[b.face].material ||
            !looksEqual(to, b.corner[j]) || !looksEqual(from, b.corner[(j + 1) % 3]))
            return std::nullopt;
        std::array<std::uint32_t, 4> quad{to, a.corner[(i + 2) % 3], from, b.corner[(j + 2) % 3]};
        std::array<Real3, 4> at;
        const auto point = [&](std::uint32_t corner) {
            return toReal(part.vertices[vertexOf_[corner]]);
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
        if (vertexOf_[a.corner[0]] == vertexOf_[b.corner[0]]) quality += 0.5f;
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
                edges.push_back({key(vertexOf_[corner[i]], vertexOf_[corner[(i + 1) % 3]]), t, i});
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

    std::string beyondPools()
    {
        report_.objects = static_cast<std::uint32_t>(scene_.objects.size());
        std::string why;
        const auto hold = [&](std::uint32_t count, std::uint32_t capacity, const char* what) {
            if (count <= capacity) return;
            why += (why.empty() ? "" : ", ") + std::to_string(count) + ' ' + what + " where " +
                   std::to_string(capacity) + " fit";
        };
        hold(report_.objects, objectCapacity, "objects");
        hold(report_.vertices, vertexCapacity, "vertices");
        hold(report_.polygons, polygonCapacity, "polygons");
        return why;
    }

    bool fill(Model& model, Reason& reason)
    {
        std::set<std::string> taken;
        std::uint32_t vertexCount = 0, polygonCount = 0;
        for (std::uint32_t i = 0; i < parts_.size(); ++i) {
            const Part& part = parts_[i];
            const auto vertices = static_cast<std::uint32_t>(part.vertices.size());
            const auto polygons = static_cast<std::uint32_t>(part.pieces.size());
            model.meshes[i] = {vertexCount, vertices,     polygonCount,
                               polygons,    polygonCount, vertexCount};
            std::copy(part.vertices.begin(), part.vertices.end(),
                      model.vertices.data() + vertexCount);
            for (std::uint32_t p = 0; p < polygons; ++p) {
                const double done = double(polygonCount + p) / report_.polygons;
                if (p % polygonsPerReport == 0 && !goesOn(progress_, done, reason)) return false;
                fillPolygon(model, model.meshes[i], part.pieces[p], polygonCount + p);
            }
            fillNormals(model, model.meshes[i], part);
            Object& object = model.objects[i];
            object = {i,         noObject,       noObject,    {0, 0, 0}, {0, 0, 0},
                      {1, 1, 1}, identityMatrix, objectShown, 0};
            place(object, scene_.objects[i].placement);
            model.names[i] = ownName(taken, i);
            vertexCount += vertices;
            polygonCount += polygons;
        }
        model.objectCount = static_cast<std::uint32_t>(parts_.size());
        model.totalVertexCount = vertexCount;
        model.totalPolygonCount = polygonCount;
        for (std::uint32_t i = model.objectCount; i < objectCapacity; ++i) model.names[i].clear();
        std::vector<std::uint32_t> parents;
        for (const SceneObject& object : scene_.objects) parents.push_back(object.parent);
        linkObjects(model, parents);
        return true;
    }

    /// As translation, rotation and scaling where they can say it, else as the object's matrix.
    void place(Object& object, const std::array<Real3, 4>& given) const
    {
        if (given == SceneObject{}.placement) return;
        ImportOptions turned = options_;
        turned.scale = 1;
        std::array<Real3, 3> axes{}; // images of the model's axes, turned there and back
        for (std::size_t i = 0; i < 3; ++i) {
            Real3 image{};
            for (std::size_t k = 0; k < 3; ++k) {
                Real3 unit{};
                unit[k] = 1;
                const double share = placed(unit, turned)[i];
                for (std::size_t m = 0; m < 3; ++m) image[m] += given[k][m] * share;
            }
            axes[i] = placed(image, turned);
        }
        const Vector3 translation = toVector(placed(given[3], options_));
        Real3 scaling;
        for (std::size_t i = 0; i < 3; ++i) scaling[i] = lengthOf(axes[i]);
        if (dot(cross(axes[0], axes[1]), axes[2]) < 0) scaling[0] = -scaling[0]; // mirrored
        bool isUpright = true;
        for (std::size_t i = 0; i < 3; ++i) {
            const Real3 &a = axes[i], &b = axes[(i + 1) % 3];
            isUpright &= lengthOf(a) > 0 && std::abs(dot(a, b)) <= 1e-5 * lengthOf(a) * lengthOf(b);
        }
        if (!isUpright) {
            for (std::size_t i = 0; i < 3; ++i) {
                const Vector3 row = toVector(axes[i]);
                object.matrix.row(i)[0] = row.x;
                object.matrix.row(i)[1] = row.y;
                object.matrix.row(i)[2] = row.z;
            }
            object.matrix.row(3)[0] = translation.x;
            object.matrix.row(3)[1] = translation.y;
            object.matrix.row(3)[2] = translation.z;
            return;
        }
        for (std::size_t i = 0; i < 3; ++i)
            for (double& component : axes[i]) component /= scaling[i];
        const auto units = [](double radians) {
            return static_cast<Angle>(std::lround(radians / (2 * std::numbers::pi) * fullTurn));
        };
        // About x first, then y, then z. Where y takes the x axis into z, the other two turn about
        // one axis, and the first does for both.
        const double level = std::hypot(axes[0][0], axes[0][1]);
        const double y = std::atan2(-axes[0][2], level);
        if (level < 1e-6)
            object.rotation = {units(std::atan2(y < 0 ? -axes[1][0] : axes[1][0], axes[1][1])),
                               units(y), 0};
        else
            object.rotation = {units(std::atan2(axes[1][2], axes[2][2])), units(y),
                               units(std::atan2(axes[0][1], axes[0][0]))};
        object.translation = translation;
        object.scaling = toVector(scaling);
    }

    std::string ownName(std::set<std::string>& taken, std::uint32_t index) const
    {
        const std::string& given = scene_.objects[index].name;
        std::string name(cutText(given, longestImportedName));
        if (name.empty()) name = defaultObjectName(index);
        const std::string stem = name;
        for (std::uint32_t number = 2; !taken.insert(name).second; ++number) {
            const std::string tail = "." + std::to_string(number);
            name = std::string(cutText(stem, longestImportedName - tail.size())) + tail;
        }
        return name;
    }

    void fillPolygon(Model& model, const Mesh& mesh, const Piece& piece, std::uint32_t index)
    {
        static constexpr std::array<std::size_t, 4> backwards{0, 3, 2, 1};
        // A triangle repeats its last corner: 0, 2, 1, 1.
        static constexpr std::array<std::size_t, 4> triangleBackwards{0, 2, 1, 1};
        std::array<std::uint32_t, 4> corner;
        for (std::size_t i = 0; i < 4; ++i)
            corner[i] = piece.corner[piece.isTriangle ? triangleBackwards[i] : backwards[i]];

        const std::uint32_t materialIndex = scene_.faces[piece.face].material;
        static const SceneMaterial plain;
        const SceneMaterial& material =
            materialIndex == noIndex ? plain : scene_.materials[materialIndex];
        const auto texture = placeTexture(materialIndex, material, corner, piece.isTriangle);
        if (texture)
            std::rotate(corner.begin(),
                        corner.begin() + static_cast<std::ptrdiff_t>(texture->first), corner.end());

        Polygon& polygon = model.polygons[index];
        for (std::size_t i = 0; i < 4; ++i)
            polygon.corner[i] = static_cast<std::uint16_t>(vertexOf_[corner[i]]);
        polygon.normal = computeFaceNormal(polygon, model.vertices.data() + mesh.vertexTable);

        const Rgb555 colour = toColour(material.colour);
        std::uint32_t flags = texture ? textureMap | texture->flips : std::uint32_t{polygonFace};
        if (material.opacity < translucentBelow) flags |= translucentMode;
        GouraudEntry& gouraud = model.gouraud[index];
        gouraud.color.fill(neutralGouraud);
        const bool hasColours = std::any_of(corner.begin(), corner.end(), [&](std::uint32_t c) {
            return scene_.corners[c].colour != noIndex;
        });
        if (hasColours) {
            flags |= gouraudShading;
            // Texels have the material's colour in them already.
            static constexpr Real3 white{1, 1, 1};
            for (std::size_t i = 0; i < 4; ++i)
                gouraud.color[i] = texture ? tableColour(white, rgb555(31, 31, 31), corner[i])
                                           : tableColour(material.colour, colour, corner[i]);
        } else if (!material.unlit) {
            flags |= useLight;
            if (piece.smooth) flags |= gouraudShading;
        }
        model.attributes[index] = {
            static_cast<std::uint16_t>(material.doubleSided ? dualPlaneBit : 0),
            sortCentre,
            static_cast<std::uint16_t>(texture ? texture->slot : 0),
            static_cast<Rgb555>(opaqueBit | colour),
            flags,
            index};
    }

    std::optional<ShownCut> placeTexture(std::uint32_t index, const SceneMaterial& material,
                                         const std::array<std::uint32_t, 4>& corner,
                                         bool isTriangle)
    {
        if (material.picture == noIndex) return std::nullopt;
        std::array<Real2, 4> uvs;
        for (std::size_t i = 0; i < 4; ++i) {
            const std::uint32_t uv = scene_.corners[corner[i]].uv;
            if (uv == noIndex) {
                ++bareCount_;
                return std::nullopt;
            }
            uvs[i] = scene_.uvs[uv];
        }
        if (!textures_) {
            ++plainCount_;
            return std::nullopt;
        }
        return cuts_.place(index, uvs, isTriangle);
    }

    void noteTextures()
    {
        const auto note = [&](std::uint32_t count, const char* what) {
            if (count > 0)
                report_.notes.push_back({0, std::to_string(count) + " polygons " + what});
        };
        note(plainCount_, "with a picture are plain: no texture list was asked for");
        note(bareCount_, "with a picture are plain: they have no texture coordinates");
        report_.textures = cuts_.count();
        report_.shared = cuts_.sharedCount();
    }

    Rgb555 toColour(Real3 colour) const
    {
        if (scene_.colourSpace == ColourSpace::linear)
            for (double& component : colour) component = toSrgb(component);
        return rgb555(toFiveBits(colour[0]), toFiveBits(colour[1]), toFiveBits(colour[2]));
    }

    /// What the corner's colour adds to the polygon's own, 16 being nothing.
    Rgb555 tableColour(const Real3& factor, Rgb555 own, std::uint32_t corner) const
    {
        const std::uint32_t index = scene_.corners[corner].colour;
        if (index == noIndex) return neutralGouraud;
        Real3 colour = scene_.colours[index];
        for (std::size_t i = 0; i < 3; ++i) colour[i] *= factor[i];
        const Rgb555 shown = toColour(colour);
        const auto difference = [&](int (*component)(Rgb555)) {
            return std::clamp(16 + component(shown) - component(own), 0, 31);
        };
        return static_cast<Rgb555>(
            opaqueBit | rgb555(difference(redOf), difference(greenOf), difference(blueOf)));
    }

    /// The file's normals where smooth polygons meet, so that flat neighbours do not bend the
    /// shading; what the polygons give elsewhere.
    void fillNormals(Model& model, const Mesh& mesh, const Part& part) const
    {
        computeVertexNormals(model, mesh);
        std::vector<Real3> sums(part.vertices.size());
        for (std::uint32_t p = 0; p < part.pieces.size(); ++p) {
            const Piece& piece = part.pieces[p];
            if (!piece.smooth) continue;
            const Vector3& face = model.polygons[mesh.polygonTable + p].normal;
            for (std::size_t i = 0; i < (piece.isTriangle ? 3u : 4u); ++i) {
                const std::uint32_t index = scene_.corners[piece.corner[i]].normal;
                const Real3 given = index == noIndex ? toReal(face) : normalOf(index);
                const double length = lengthOf(given);
                if (!(length > 0)) continue;
                Real3& sum = sums[vertexOf_[piece.corner[i]]];
                for (std::size_t k = 0; k < 3; ++k) sum[k] += given[k] / length;
            }
        }
        for (std::size_t i = 0; i < sums.size(); ++i)
            if (lengthOf(sums[i]) > 1e-6)
                model.vertexNormals[mesh.vertexNormalTable + i] = normalised(toVector(sums[i]));
    }

    const Scene& scene_;
    TextureList* textures_;
    const ImportOptions& options_;
    ImportReport& report_;
    const ImportProgress& progress_;
    TextureCuts cuts_;
    std::string beyondSingles_;           ///< the first position that singles cannot hold
    std::uint32_t plainCount_ = 0;        ///< polygons with a picture that there is no list for
    std::uint32_t bareCount_ = 0;         ///< with a picture, but without texture coordinates
    std::vector<Part> parts_;             ///< parallel to the scene's objects
    std::vector<std::uint32_t> vertexOf_; ///< in its part, of each corner
};

} // namespace

Message buildModel(Model& model, TextureList* textures, const Scene& scene,
                   const ImportOptions& options, ImportReport& report, Reason& reason,
                   const ImportProgress& progress)
{
    report = {};
    report.notes = scene.notes;
    if (scene.own) return readOwnModel(model, textures, *scene.own, options, report, reason);
    return ModelImport(scene, textures, options, report, progress).run(model, reason);
}

} // namespace facetor
