#include "exchange/gltf_writer.h"

#include "exchange/face_split.h"
#include "exchange/gltf_format.h"
#include "exchange/look.h"
#include "exchange/model_points.h"
#include "exchange/own_model.h"
#include "exchange/scene_colour.h"
#include "image/image_codec.h"
#include "model/model_file.h"
#include "texture/texture_file.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <optional>

namespace facetor {

namespace {

using Json = nlohmann::ordered_json;

/// 0 to 31 as glTF's linear 0 to 1.
double linearOf(int component)
{
    return toLinear(stretched(component) / 255.0);
}

/// The vertices of the polygons of an object that have one look.
struct Primitive {
    std::vector<float> positions, normals, uvs, colours; ///< 3, 3, 2 and 3 a vertex
    std::vector<std::uint16_t> indices;
    /// Corner, polygon of a flat one, place on the picture, colour; a vertex for each.
    std::map<std::array<std::uint32_t, 4>, std::uint16_t> known;
};

/// A point or direction in glTF's axes.
Real3 toFile(const Vector3& v)
{
    return {double{v.x}, 0.0 - double{v.y}, 0.0 - double{v.z}};
}

Real3 unit(const Real3& v)
{
    const double length = lengthOf(v);
    return {v[0] / length, v[1] / length, v[2] / length};
}

/// The two triangles of a quad, also of a concave one; of a triangle the first three.
std::array<std::size_t, 6> cutOf(std::span<const Real3> points)
{
    constexpr std::array<std::size_t, 6> usual{0, 1, 2, 0, 2, 3}, other{0, 1, 3, 1, 2, 3};
    if (points.size() < 4) return usual;
    const Real3 whole = areaVector(points);
    for (std::size_t t = 0; t < 6; t += 3) {
        const std::array<Real3, 3> triangle{points[usual[t]], points[usual[t + 1]],
                                            points[usual[t + 2]]};
        if (dot(areaVector(triangle), whole) < 0) return other;
    }
    return usual;
}

void append(std::vector<float>& values, std::span<const double> more)
{
    for (const double value : more) values.push_back(static_cast<float>(value));
}

class GlbWriter {
public:
    GlbWriter(const Model& model, const TextureList* textures) : model_(model), textures_(textures)
    {
    }

    Message write(Bytes& file)
    {
        json_["asset"] = {{"version", "2.0"}, {"generator", "Facetor"}};
        json_["scene"] = 0;
        json_["scenes"] = Json::array({Json::object()});
        if (model_.objectCount > 0) {
            if (!initialiseStack(stack_)) return Message::outOfMemory;
            json_["scenes"][0]["nodes"] = addNodes(0);
        }
        if (const Message message = addMaterials(); message != Message::none) return message;
        Json own = {{"version", ownModelVersion}};
        own["model"] = addView(writeModel(model_), std::nullopt, std::nullopt);
        if (textures_ && textures_->usedCount() > 0)
            own["textures"] = addView(writeTextures(*textures_), std::nullopt, std::nullopt);
        own["rotations"] = Json::array();
        for (std::uint32_t i = 0; i < model_.objectCount; ++i)
            own["rotations"].push_back(model_.objects[i].rotation);
        json_["buffers"] = Json::array({{{"byteLength", binary_.size()}}});
        own["checksum"] = glbChecksum(json_, binary_);
        json_["extras"]["facetor"] = std::move(own);
        return finish(file);
    }

private:
    Message finish(Bytes& file)
    {
        std::string text = json_.dump(-1, ' ', false, Json::error_handler_t::replace);
        text.append((4 - text.size() % 4) % 4, ' ');
        constexpr std::size_t headers = gltf::headerSize + 2 * gltf::chunkHeaderSize;
        if (text.size() + binary_.size() > std::numeric_limits<std::uint32_t>::max() - headers)
            return Message::outOfMemory;
        ByteWriter out;
        out.u32(gltf::fileTag);
        out.u32(gltf::binaryVersion);
        out.u32(static_cast<std::uint32_t>(headers + text.size() + binary_.size()));
        out.u32(static_cast<std::uint32_t>(text.size()));
        out.u32(gltf::jsonChunk);
        out.text(text);
        out.u32(static_cast<std::uint32_t>(binary_.size()));
        out.u32(gltf::binaryChunk);
        out.bytes(binary_);
        file = out.release();
        return Message::none;
    }

    /// Appends bytes to the binary chunk, at a multiple of four as it all is. Returns the view's
    /// index.
    std::size_t addView(std::span<const std::byte> bytes, std::optional<unsigned> target,
                        std::optional<std::size_t> stride)
    {
        Json view = {{"buffer", 0}, {"byteOffset", binary_.size()}, {"byteLength", bytes.size()}};
        if (stride) view["byteStride"] = *stride;
        if (target) view["target"] = *target;
        binary_.insert(binary_.end(), bytes.begin(), bytes.end());
        binary_.resize((binary_.size() + 3) / 4 * 4);
        json_["bufferViews"].push_back(std::move(view));
        return json_["bufferViews"].size() - 1;
    }

    std::size_t addAccessor(Json accessor)
    {
        json_["accessors"].push_back(std::move(accessor));
        return json_["accessors"].size() - 1;
    }

    /// An accessor of singles, `width` an element.
    std::size_t addNumbers(const std::vector<float>& values, std::size_t width)
    {
        ByteWriter out;
        for (const float value : values) out.f32(value);
        return addAccessor({{"bufferView", addView(out.release(), gltf::vertexData, width * 4)},
                            {"componentType", gltf::single},
                            {"count", values.size() / width},
                            {"type", width == 2 ? "VEC2" : "VEC3"}});
    }

    /// Nodes of an object, its siblings and all below them; their indices at this level.
    Json addNodes(std::uint32_t first)
    {
        Json siblings = Json::array();
        for (std::uint32_t i = first; i != noObject; i = model_.objects[i].next) {
            const std::size_t node = json_["nodes"].size();
            siblings.push_back(node);
            json_["nodes"].push_back({{"name", model_.names[i]}});
            placeNode(json_["nodes"][node], model_.objects[i]);
            if (auto mesh = addMesh(i)) json_["nodes"][node]["mesh"] = *mesh;
            if (const std::uint32_t child = model_.objects[i].child; child != noObject) {
                Json children = addNodes(child);
                json_["nodes"][node]["children"] = std::move(children);
            }
        }
        return siblings;
    }

    /// Translation, rotation and scaling, or the matrix of an object that has one of its own.
    void placeNode(Json& node, const Object& object)
    {
        const auto isFiniteMatrix = [](const Matrix& matrix) {
            return std::all_of(matrix.element.begin(), matrix.element.end(),
                               [](float f) { return std::isfinite(f); });
        };
        // Half a turn about x leads from one program's axes to the other's.
        static constexpr std::array<double, 4> turn{1, -1, -1, 1};
        const auto turned = [&](const Matrix& matrix, std::size_t row, std::size_t column) {
            return double{matrix.row(row)[column]} * turn[row] * turn[column] + 0.0;
        };
        (void)pushMatrix(stack_, PushedMatrix::identity);
        rotateXYZ(stack_, object.rotation[0], object.rotation[1], object.rotation[2]);
        const Matrix rotation = stack_.current();
        (void)popMatrix(stack_);
        (void)pushMatrix(stack_, PushedMatrix::identity);
        multiplyMatrix(stack_, toRotationTranslation(object.matrix));
        translate(stack_, object.translation.x, object.translation.y, object.translation.z);
        rotateXYZ(stack_, object.rotation[0], object.rotation[1], object.rotation[2]);
        scale(stack_, object.scaling.x, object.scaling.y, object.scaling.z);
        const Matrix whole = stack_.current();
        (void)popMatrix(stack_);
        if (!isFiniteMatrix(whole)) return;
        if (toRotationTranslation(object.matrix) != toRotationTranslation(identityMatrix)) {
            Json elements = Json::array();
            for (std::size_t row = 0; row < 4; ++row) {
                for (std::size_t column = 0; column < 3; ++column)
                    elements.push_back(turned(whole, row, column));
                elements.push_back(row == 3 ? 1.0 : 0.0);
            }
            node["matrix"] = std::move(elements);
            return;
        }
        const Vector3 &t = object.translation, &s = object.scaling;
        if (!isZero(t)) node["translation"] = {double{t.x}, 0.0 - double{t.y}, 0.0 - double{t.z}};
        if (object.rotation != std::array<Angle, 3>{}) {
            std::array<Real3, 3> axes;
            for (std::size_t i = 0; i < 3; ++i)
                for (std::size_t k = 0; k < 3; ++k) axes[i][k] = turned(rotation, i, k);
            node["rotation"] = quaternionOf(axes);
        }
        if (s.x != 1 || s.y != 1 || s.z != 1)
            node["scale"] = {double{s.x}, double{s.y}, double{s.z}};
    }

    /// x, y, z, w of the rotation whose axes' images are given, by the largest of the four.
    static std::array<double, 4> quaternionOf(const std::array<Real3, 3>& axes)
    {
        const double trace = axes[0][0] + axes[1][1] + axes[2][2];
        std::array<double, 4> q{};
        std::size_t largest = 3;
        for (std::size_t i = 0; i < 3; ++i)
            if (axes[i][i] > (largest == 3 ? trace : axes[largest][largest])) largest = i;
        const std::size_t i = largest, j = (i + 1) % 3, k = (i + 2) % 3;
        if (largest == 3) {
            q = {axes[1][2] - axes[2][1], axes[2][0] - axes[0][2], axes[0][1] - axes[1][0],
                 1 + trace};
        } else {
            q[i] = 1 + axes[i][i] - axes[j][j] - axes[k][k];
            q[j] = axes[i][j] + axes[j][i];
            q[k] = axes[k][i] + axes[i][k];
            q[3] = axes[j][k] - axes[k][j];
        }
        const double length = std::sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2] + q[3] * q[3]);
        for (double& component : q) component = component / length + 0.0;
        return q;
    }

    /// The mesh of an object's polygons, none where it has nothing to show.
    std::optional<std::size_t> addMesh(std::uint32_t object)
    {
        const Mesh& mesh = model_.meshes[model_.objects[object].mesh];
        std::map<Look, Primitive> primitives;
        for (std::uint32_t p = 0; p < mesh.polygonCount; ++p) addPolygon(primitives, mesh, p);
        Json list = Json::array();
        for (const auto& [look, primitive] : primitives)
            if (!primitive.indices.empty()) list.push_back(primitiveOf(look, primitive));
        if (list.empty()) return std::nullopt;
        json_["meshes"].push_back(
            {{"name", model_.names[object]}, {"primitives", std::move(list)}});
        return json_["meshes"].size() - 1;
    }

    Json primitiveOf(const Look& look, const Primitive& primitive)
    {
        Json attributes;
        const std::size_t positions = addNumbers(primitive.positions, 3);
        Json least = Json::array(), most = Json::array();
        for (std::size_t k = 0; k < 3; ++k) {
            float low = primitive.positions[k], high = low;
            for (std::size_t i = k; i < primitive.positions.size(); i += 3) {
                low = std::min(low, primitive.positions[i]);
                high = std::max(high, primitive.positions[i]);
            }
            least.push_back(double{low});
            most.push_back(double{high});
        }
        json_["accessors"][positions]["min"] = std::move(least);
        json_["accessors"][positions]["max"] = std::move(most);
        attributes["POSITION"] = positions;
        if (look.isLit) attributes["NORMAL"] = addNumbers(primitive.normals, 3);
        if (look.slot) attributes["TEXCOORD_0"] = addNumbers(primitive.uvs, 2);
        if (look.hasColours) attributes["COLOR_0"] = addNumbers(primitive.colours, 3);
        ByteWriter out;
        for (const std::uint16_t index : primitive.indices) out.u16(index);
        const std::size_t indices =
            addAccessor({{"bufferView", addView(out.release(), gltf::indexData, std::nullopt)},
                         {"componentType", gltf::unsignedShort},
                         {"count", primitive.indices.size()},
                         {"type", "SCALAR"}});
        const auto next = looks_.size();
        const std::size_t material = looks_.try_emplace(look, next).first->second;
        return {{"attributes", std::move(attributes)},
                {"indices", indices},
                {"material", material},
                {"mode", gltf::triangles}};
    }

    void addPolygon(std::map<Look, Primitive>& primitives, const Mesh& mesh, std::uint32_t index)
    {
        const Polygon& polygon = model_.polygons[mesh.polygonTable + index];
        const PolygonAttribute& attribute = model_.attributes[mesh.attributeTable + index];
        const GouraudEntry& gouraud = model_.gouraud[mesh.attributeTable + index];
        std::vector<std::uint16_t> corners = differentCorners(polygon);
        std::reverse(corners.begin() + 1, corners.end());
        std::vector<Real3> points;
        for (const std::uint16_t corner : corners) {
            const Vertex& vertex = model_.vertices[mesh.vertexTable + corner];
            if (!isFinite(vertex)) return;
            points.push_back(toFile(vertex));
        }
        const Real3 area = areaVector(points);
        if (hasNoArea(points) || !(lengthOf(area) > 0)) return;
        const Look look = glbLookOf(attribute);
        Primitive& primitive = primitives[look];
        std::array<std::uint16_t, 4> vertices{};
        for (std::size_t i = 0; i < corners.size(); ++i) {
            const auto at = static_cast<std::size_t>(
                std::find(polygon.corner.begin(), polygon.corner.end(), corners[i]) -
                polygon.corner.begin());
            const Vector3& given = model_.vertexNormals[mesh.vertexNormalTable + corners[i]];
            const bool isSmooth =
                isLightGouraud(attribute) && isFinite(given) && lengthOf(toFile(given)) > 0;
            const auto [right, low] = pictureCorner(attribute, at);
            const Rgb555 colour = cornerColour(attribute, look, gouraud.color[at]);
            const std::uint32_t place = look.slot ? (right ? 1u : 0u) + (low ? 2u : 0u) : 0u;
            const auto [known, isNew] =
                primitive.known.try_emplace({corners[i], isSmooth ? 0 : index + 1, place, colour},
                                            static_cast<std::uint16_t>(primitive.known.size()));
            vertices[i] = known->second;
            if (!isNew) continue;
            append(primitive.positions, points[i]);
            append(primitive.normals, unit(isSmooth ? toFile(given) : area));
            append(primitive.uvs, Real2{right ? 1.0 : 0.0, low ? 1.0 : 0.0});
            append(primitive.colours, Real3{linearOf(redOf(colour)), linearOf(greenOf(colour)),
                                            linearOf(blueOf(colour))});
        }
        const std::array<std::size_t, 6> order = cutOf(points);
        for (std::size_t t = 0; t < (corners.size() == 4 ? 6u : 3u); t += 3) {
            const std::array<Real3, 3> triangle{points[order[t]], points[order[t + 1]],
                                                points[order[t + 2]]};
            if (hasNoArea(triangle)) continue; // of two corners at one place
            for (std::size_t k = t; k < t + 3; ++k) primitive.indices.push_back(vertices[order[k]]);
        }
    }

    Look glbLookOf(const PolygonAttribute& attribute) const
    {
        std::optional<std::uint16_t> slot = shownSlot(attribute, textures_);
        if (slot && std::max(textures_->slot(*slot).width, textures_->slot(*slot).height) >
                        largestImageSide)
            slot.reset(); // no picture can be made of it
        Look look = lookOf(attribute, slot);
        look.isDoubleSided = (attribute.plane & dualPlaneBit) != 0;
        look.hasColours = isTableGouraud(attribute);
        if (look.hasColours) look.colour = whiteOfLook; // it multiplies these
        if ((attribute.flags & shadowMode) != 0)        // which darkens what is behind it
            look = {std::nullopt, 0, false, true, look.isDoubleSided, false};
        return look;
    }

    /// What a corner's Gouraud colour makes of the polygon's. Of texels it can only take away.
    static Rgb555 cornerColour(const PolygonAttribute& attribute, const Look& look, Rgb555 entry)
    {
        if (!look.hasColours) return whiteOfLook;
        const Rgb555 own = look.slot ? whiteOfLook : attribute.color;
        const auto sum = [&](int (*component)(Rgb555)) {
            return std::clamp(component(own) + component(entry) - 16, 0, 31);
        };
        return rgb555(sum(redOf), sum(greenOf), sum(blueOf));
    }

    Message addMaterials()
    {
        std::vector<const Look*> looks(looks_.size());
        for (const auto& [look, index] : looks_) looks[index] = &look;
        std::map<std::uint16_t, std::size_t> images;
        for (const Look* look : looks) {
            const std::array<double, 4> factor{
                linearOf(redOf(look->colour)), linearOf(greenOf(look->colour)),
                linearOf(blueOf(look->colour)), look->isTranslucent ? 0.5 : 1.0};
            Json surface = {{"baseColorFactor", factor}};
            if (look->slot) {
                const auto [at, isNew] = images.try_emplace(*look->slot, images.size());
                if (isNew && !addTexture(*look->slot)) return Message::outOfMemory;
                surface["baseColorTexture"] = {{"index", at->second}};
            }
            surface["metallicFactor"] = 0.0;
            surface["roughnessFactor"] = 1.0;
            Json material = {{"name", look->name()}, {"pbrMetallicRoughness", std::move(surface)}};
            if (look->isTranslucent)
                material["alphaMode"] = "BLEND";
            else if (look->slot && hasHoles(textures_->slot(*look->slot)))
                material["alphaMode"] = "MASK";
            if (look->isDoubleSided) material["doubleSided"] = true;
            if (!look->isLit) {
                material["extensions"]["KHR_materials_unlit"] = Json::object();
                json_["extensionsUsed"] = {"KHR_materials_unlit"};
            }
            json_["materials"].push_back(std::move(material));
        }
        return Message::none;
    }

    static bool hasHoles(const TextureSlot& texture)
    {
        return std::any_of(texture.pixels,
                           texture.pixels + std::size_t{texture.width} * texture.height,
                           [](Rgb555 texel) { return (texel & opaqueBit) == 0; });
    }

    bool addTexture(std::uint16_t slot)
    {
        const Bytes png = encodeTexture(*textures_, slot);
        if (png.empty()) return false;
        if (!json_.contains("samplers"))
            json_["samplers"].push_back({{"magFilter", gltf::nearest},
                                         {"minFilter", gltf::nearest},
                                         {"wrapS", gltf::clampToEdge},
                                         {"wrapT", gltf::clampToEdge}});
        json_["textures"].push_back({{"sampler", 0}, {"source", json_["images"].size()}});
        json_["images"].push_back({{"name", slotNumber(slot)},
                                   {"mimeType", "image/png"},
                                   {"bufferView", addView(png, std::nullopt, std::nullopt)}});
        return true;
    }

    const Model& model_;
    const TextureList* textures_;
    Json json_;
    Bytes binary_;
    MatrixStack stack_;
    std::map<Look, std::size_t> looks_; ///< with their materials
};

} // namespace

Message writeGlb(Bytes& file, const Model& model, const TextureList* textures)
{
    return GlbWriter(model, textures).write(file);
}

} // namespace facetor
