#include "exchange/model_import.h"

#include "base/text.h"
#include "exchange/face_split.h"
#include "exchange/import_pieces.h"
#include "exchange/model_points.h"
#include "exchange/own_model.h"
#include "exchange/scene_colour.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <set>

namespace facetor {

namespace {

constexpr double translucentBelow = 0.75;       ///< opacity
constexpr std::uint32_t polygonsPerReport = 16; ///< of progress; one may cut a large texture

/// 0-1 to 8 bits by rounding, then to 5 by dropping the low three.
int toFiveBits(double component)
{
    return toByte(component) >> 3;
}

class ModelImport {
public:
    ModelImport(const Scene& scene, TextureList* textures, const ImportOptions& options,
                ImportReport& report, const ImportProgress& progress)
        : scene_(scene), textures_(textures), options_(options), report_(report),
          progress_(progress), cuts_(scene, options.textures)
    {
    }

    Message run(Model& model, Reason& reason)
    {
        if (const std::string why = tooLarge(scene_, options_); !why.empty()) {
            reason.text = why;
            return Message::formatNotSupported;
        }
        pieces_ = makePieces(scene_, options_, report_);
        if (!pieces_.beyondSingles.empty()) {
            reason.text = pieces_.beyondSingles;
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
        for (std::uint32_t i = 0; i < pieces_.parts.size(); ++i) {
            const Part& part = pieces_.parts[i];
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
        model.objectCount = static_cast<std::uint32_t>(pieces_.parts.size());
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
        std::array<Real3, 3> axes{}; // images of the model's axes, turned there and back
        for (std::size_t i = 0; i < 3; ++i) {
            Real3 image{};
            for (std::size_t k = 0; k < 3; ++k) {
                Real3 unit{};
                unit[k] = 1;
                const double share = turned(unit, options_)[i];
                for (std::size_t m = 0; m < 3; ++m) image[m] += given[k][m] * share;
            }
            axes[i] = turned(image, options_);
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
        const auto texture = placeTexture(materialIndex, material, corner, piece.isTriangle, index);
        if (texture)
            std::rotate(corner.begin(),
                        corner.begin() + static_cast<std::ptrdiff_t>(texture->first), corner.end());

        Polygon& polygon = model.polygons[index];
        for (std::size_t i = 0; i < 4; ++i)
            polygon.corner[i] = static_cast<std::uint16_t>(pieces_.vertexOf[corner[i]]);
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
                                         bool isTriangle, std::uint32_t polygon)
    {
        if (material.picture == noIndex) return std::nullopt;
        std::array<Real2, 4> uvs;
        for (std::size_t i = 0; i < 4; ++i) {
            const std::uint32_t uv = scene_.corners[corner[i]].uv;
            if (uv == noIndex) {
                bare_.push_back(polygon);
                return std::nullopt;
            }
            uvs[i] = scene_.uvs[uv];
        }
        if (!textures_) {
            plain_.push_back(polygon);
            return std::nullopt;
        }
        return cuts_.place(index, uvs, isTriangle);
    }

    void noteTextures()
    {
        const auto note = [&](const std::vector<std::uint32_t>& polygons, const char* what) {
            if (!polygons.empty())
                report_.notes.push_back(
                    {0, std::to_string(polygons.size()) + " polygons " + what, polygons});
        };
        note(plain_, "with a picture are plain: no texture list was asked for");
        note(bare_, "with a picture are plain: they have no texture coordinates");
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
                const Real3 given =
                    index == noIndex ? toReal(face) : turned(scene_.normals[index], options_);
                const double length = lengthOf(given);
                if (!(length > 0)) continue;
                Real3& sum = sums[pieces_.vertexOf[piece.corner[i]]];
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
    std::vector<std::uint32_t> plain_; ///< polygons with a picture that there is no list for
    std::vector<std::uint32_t> bare_;  ///< with a picture, but without texture coordinates
    ImportPieces pieces_;
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
