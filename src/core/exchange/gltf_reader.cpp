#include "exchange/gltf_reader.h"

#include "exchange/gltf_data.h"
#include "exchange/gltf_format.h"
#include "exchange/own_model.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

namespace facetor {

using namespace gltf;

namespace {

constexpr std::size_t mostFaces = 2'000'000; ///< of all instances together
constexpr int deepestNode = 256;

class GltfReader {
public:
    GltfReader(Scene& scene, const AssetReader& assets, Reason& reason,
               const ImportProgress& progress)
        : scene_(scene), data_(assets, reason), reason_(reason), progress_(progress)
    {
        scene_.colourSpace = ColourSpace::linear;
    }

    bool read(std::span<const std::byte> file)
    {
        if (!data_.open(file)) return false;
        if (!textMember(member(json_, "asset"), "version").starts_with("2."))
            return fail("asset: it is not of version 2");
        for (const Json& extension : member(json_, "extensionsRequired")) {
            static constexpr std::string_view known[] = {
                "KHR_materials_unlit", "KHR_texture_transform", "KHR_mesh_quantization"};
            const std::string name = extension.is_string() ? extension.get<std::string>() : "";
            if (std::find(std::begin(known), std::end(known), name) == std::end(known))
                return fail("it needs the extension " + name);
        }
        if (member(member(json_, "extras"), "facetor").is_object()) {
            if (!readOwn(member(json_["extras"], "facetor"))) return false;
            if (scene_.own) return true;
        }
        if (!readMaterials() || !readNodes()) return false;
        if (faceCount_ > mostFaces) return fail(tooManyFaces(faceCount_));
        return !scene_.faces.empty() || fail("it has no face");
    }

private:
    bool fail(const std::string& what) { return data_.fail(what); }

    /// The model as Facetor wrote it into the file, unless another program has changed it since:
    /// then what that program left counts.
    bool readOwn(const Json& json)
    {
        const auto* bytes = data_.buffer(0);
        if (!bytes) return false;
        if (sizeMember(json, "version", 0) != ownModelVersion ||
            sizeMember(json, "checksum", missing) != glbChecksum(json_, *bytes)) {
            scene_.notes.push_back({0, "another program has changed the file since Facetor wrote "
                                       "it: its attributes are not taken"});
            return true;
        }
        const auto model = data_.view(sizeMember(json, "model", missing));
        if (!model) return fail("extras.facetor has no model");
        OwnModel own{Bytes(model->begin(), model->end()), std::nullopt, {}};
        if (const std::size_t list = sizeMember(json, "textures", missing); list != missing) {
            const auto textures = data_.view(list);
            if (!textures) return false;
            own.textures.emplace(textures->begin(), textures->end());
        }
        for (const Json& rotation : member(json, "rotations")) {
            const auto units = numbers<3>(rotation);
            if (!units) return fail("extras.facetor holds a rotation that is none");
            std::array<Angle, 3>& angles = own.rotations.emplace_back();
            for (std::size_t k = 0; k < 3; ++k) {
                if ((*units)[k] < std::numeric_limits<Angle>::min() ||
                    (*units)[k] > std::numeric_limits<Angle>::max())
                    return fail("extras.facetor holds a rotation that is none");
                angles[k] = static_cast<Angle>((*units)[k]);
            }
        }
        scene_.own = std::move(own);
        return true;
    }

    bool readMaterials()
    {
        for (const Json& json : member(json_, "materials")) {
            SceneMaterial& material = scene_.materials.emplace_back();
            textures_.push_back({});
            material.name = textMember(json, "name");
            material.doubleSided = member(json, "doubleSided") == true;
            material.unlit = member(member(json, "extensions"), "KHR_materials_unlit").is_object();
            const Json& base = member(json, "pbrMetallicRoughness");
            double alpha = 1;
            if (const auto factor = numbers<4>(member(base, "baseColorFactor"))) {
                for (std::size_t i = 0; i < 3; ++i)
                    material.colour[i] = std::clamp((*factor)[i], 0.0, 1.0);
                alpha = std::clamp((*factor)[3], 0.0, 1.0);
            }
            const Json& texture = member(base, "baseColorTexture");
            if (texture.is_object() && !readTexture(material, texture)) return false;
            const std::string mode = textMember(json, "alphaMode");
            if (mode == "BLEND") {
                material.opacity = alpha;
                // It multiplies the texels' alpha. Where it alone is too little for any of them,
                // that the polygon is translucent says it.
                if (alpha > 0.5) material.alphaCutoff = 0.5 / alpha;
            } else if (mode == "MASK") {
                const double cutoff = numberMember(json, "alphaCutoff", 0.5);
                material.alphaCutoff = cutoff <= 0 ? 0 : alpha > 0 ? cutoff / alpha : 2;
            } else {
                material.alphaCutoff = 0;
            }
        }
        return true;
    }

    bool readTexture(SceneMaterial& material, const Json& json)
    {
        const std::string title = indexed("texture", member(json, "index"));
        const Json& texture =
            element(member(json_, "textures"), sizeMember(json, "index", missing));
        if (!texture.is_object()) return fail(title + " does not exist");
        const Json& source = member(texture, "source");
        const std::size_t image = sizeMember(texture, "source", missing);
        if (source.is_null()) // it has one only for programs that know an extension
            notePicture(title, "no picture that can be read");
        else if (!element(member(json_, "images"), image).is_object())
            return fail(indexed("image", source) + " does not exist");
        else
            material.picture = picture(image);
        const Json& sampler =
            element(member(json_, "samplers"), sizeMember(texture, "sampler", missing));
        const auto wrap = [&](const char* name) {
            const std::size_t value = sizeMember(sampler, name, repeat);
            return value == clampToEdge      ? Wrap::clamp
                   : value == mirroredRepeat ? Wrap::mirror
                                             : Wrap::repeat;
        };
        material.wrapU = wrap("wrapS");
        material.wrapV = wrap("wrapT");
        TextureUse& use = textures_.back();
        const Json& transform = member(member(json, "extensions"), "KHR_texture_transform");
        use.coordinates = sizeMember(transform, "texCoord", sizeMember(json, "texCoord", 0));
        use.offset = numbers<2>(member(transform, "offset")).value_or(use.offset);
        use.scale = numbers<2>(member(transform, "scale")).value_or(use.scale);
        use.rotation = numberMember(transform, "rotation", 0);
        return true;
    }

    /// What a member names by its index, for messages.
    static std::string indexed(const char* what, const Json& index)
    {
        return std::string(what) + ' ' + (index.is_number() ? index.dump() : "(no number)");
    }

    /// Once, however many materials show it.
    void notePicture(const std::string& name, const std::string& why)
    {
        const std::string text = "picture \"" + name + "\": " + why;
        const auto isSame = [&](const ImportNote& note) { return note.text == text; };
        if (std::none_of(scene_.notes.begin(), scene_.notes.end(), isSame))
            scene_.notes.push_back({0, text});
    }

    /// Image `index` as a picture of the scene, read once; one that cannot be read is noted.
    std::uint32_t picture(std::size_t index)
    {
        const Json& json = element(member(json_, "images"), index);
        const auto known = pictures_.find(index);
        if (known != pictures_.end()) return known->second;
        const std::string uri = textMember(json, "uri");
        const std::string name =
            uri.empty() || uri.starts_with("data:") ? "image " + std::to_string(index) : uri;
        ScenePicture read;
        read.name = name;
        std::string why = "it has no data";
        std::optional<Bytes> file;
        if (!uri.empty()) {
            file = data_.fetch(uri, why);
        } else if (const auto bytes = data_.view(sizeMember(json, "bufferView", missing))) {
            file.emplace(bytes->begin(), bytes->end());
        }
        if (!file || !decodePicture(read.pixels, *file, why)) {
            reason_.text.clear(); // a picture that is missing is no failure
            notePicture(name, why);
            return pictures_[index] = noIndex;
        }
        scene_.pictures.push_back(std::move(read));
        return pictures_[index] = static_cast<std::uint32_t>(scene_.pictures.size() - 1);
    }

    bool readNodes()
    {
        const Json& nodes = member(json_, "nodes");
        const Json& scenes = member(json_, "scenes");
        isUsed_.assign(nodes.is_array() ? nodes.size() : 0, false);
        const Json& roots = member(element(scenes, sizeMember(json_, "scene", 0)), "nodes");
        if (roots.is_array()) {
            for (const Json& root : roots)
                if (!readNode(root, noIndex, 0)) return false;
            return true;
        }
        std::vector<bool> isChild(isUsed_.size());
        for (const Json& node : nodes)
            for (const Json& child : member(node, "children"))
                if (child.is_number_unsigned() && child.get<std::size_t>() < isChild.size())
                    isChild[child.get<std::size_t>()] = true;
        for (std::size_t i = 0; i < isUsed_.size(); ++i)
            if (!isChild[i] && !readNode(i, noIndex, 0)) return false;
        return true;
    }

    /// A node and those below it; those without a face in or below them are left out.
    bool readNode(const Json& named, std::uint32_t parent, int depth)
    {
        const std::string name = indexed("node", named);
        const std::size_t index = named.is_number_unsigned() ? named.get<std::size_t>() : missing;
        if (index >= isUsed_.size()) return fail(name + " does not exist");
        if (isUsed_[index]) return fail(name + " has two parents");
        if (depth > deepestNode) return fail(name + " lies too deep");
        isUsed_[index] = true;
        if (!goesOn(progress_, double(++nodesRead_) / double(isUsed_.size()), reason_))
            return false;
        const Json& json = json_["nodes"][index];
        const auto object = static_cast<std::uint32_t>(scene_.objects.size());
        const std::size_t faces = scene_.faces.size();
        scene_.objects.emplace_back();
        scene_.objects[object].parent = parent;
        const std::size_t mesh = sizeMember(json, "mesh", missing);
        std::string title = textMember(json, "name");
        if (title.empty()) title = textMember(element(member(json_, "meshes"), mesh), "name");
        scene_.objects[object].name = title.substr(0, title.find('\0'));
        scene_.objects[object].placement = placementOf(json);
        if (member(json, "mesh").is_number() && !readMesh(mesh, object)) return false;
        for (const Json& child : member(json, "children"))
            if (!readNode(child, object, depth + 1)) return false;
        if (scene_.faces.size() == faces) scene_.objects.resize(object);
        return true;
    }

    static std::array<Real3, 4> placementOf(const Json& json)
    {
        std::array<Real3, 4> placement = SceneObject{}.placement;
        if (const auto matrix = numbers<16>(member(json, "matrix"))) {
            for (std::size_t i = 0; i < 4; ++i)
                for (std::size_t k = 0; k < 3; ++k) placement[i][k] = (*matrix)[i * 4 + k];
            return placement;
        }
        const auto q =
            numbers<4>(member(json, "rotation")).value_or(std::array<double, 4>{0, 0, 0, 1});
        const double length = std::sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2] + q[3] * q[3]);
        if (length > 0) {
            const double x = q[0] / length, y = q[1] / length, z = q[2] / length, w = q[3] / length;
            placement[0] = {1 - 2 * (y * y + z * z), 2 * (x * y + z * w), 2 * (x * z - y * w)};
            placement[1] = {2 * (x * y - z * w), 1 - 2 * (x * x + z * z), 2 * (y * z + x * w)};
            placement[2] = {2 * (x * z + y * w), 2 * (y * z - x * w), 1 - 2 * (x * x + y * y)};
        }
        const Real3 scale = numbers<3>(member(json, "scale")).value_or(Real3{1, 1, 1});
        for (std::size_t i = 0; i < 3; ++i)
            for (double& component : placement[i]) component *= scale[i];
        placement[3] = numbers<3>(member(json, "translation")).value_or(Real3{0, 0, 0});
        return placement;
    }

    bool readMesh(std::size_t index, std::uint32_t object)
    {
        const Json& json = element(member(json_, "meshes"), index);
        if (!json.is_object()) return fail("mesh " + std::to_string(index) + " does not exist");
        std::size_t number = 0;
        for (const Json& primitive : member(json, "primitives"))
            if (!readPrimitive(primitive, object,
                               "mesh " + std::to_string(index) + " primitive " +
                                   std::to_string(number++)))
                return false;
        return true;
    }

    /// The values of one kind of a primitive's vertices, behind those of the scene; `first` is
    /// noIndex when it has none. False after fail().
    template <typename Value>
    bool appendValues(std::vector<Value>& into, const Json& accessor, std::size_t count,
                      std::uint32_t& first, const std::string& name)
    {
        first = noIndex;
        if (!accessor.is_number_unsigned()) return true;
        Numbers numbers;
        if (!data_.readAccessor(numbers, accessor.get<std::size_t>())) return false;
        constexpr std::size_t width = std::tuple_size_v<Value>;
        if (numbers.width < width || (count != missing && numbers.count() != count))
            return fail(name + " has attributes of different sizes");
        first = static_cast<std::uint32_t>(into.size());
        for (std::size_t i = 0; i < numbers.count(); ++i) {
            Value value;
            std::copy_n(numbers.values.begin() + static_cast<std::ptrdiff_t>(i * numbers.width),
                        width, value.begin());
            into.push_back(value);
        }
        return true;
    }

    static std::size_t facesOf(std::size_t mode, std::size_t corners)
    {
        return mode == triangles ? corners / 3 : corners < 3 ? 0 : corners - 2;
    }

    /// How many faces a primitive says that it has.
    std::size_t faceCountOf(const Json& json)
    {
        const Json& positions = member(member(json, "attributes"), "POSITION");
        if (!positions.is_number_unsigned()) return 0;
        const Json& indices = member(json, "indices");
        const Json& corners = indices.is_number_unsigned() ? indices : positions;
        const Json& accessor = element(member(json_, "accessors"), corners.get<std::size_t>());
        const std::size_t count = sizeMember(accessor, "count", 0);
        // A count that cannot be is named when the accessor is read.
        return facesOf(sizeMember(json, "mode", triangles), count > mostElements ? 0 : count);
    }

    bool readPrimitive(const Json& json, std::uint32_t object, const std::string& name)
    {
        const std::size_t mode = sizeMember(json, "mode", triangles);
        if (mode < triangles) return true; // points and lines
        if (mode > triangleFan) return fail(name + " is of an unknown mode");
        const std::size_t material = sizeMember(json, "material", missing);
        if (material != missing && material >= scene_.materials.size())
            return fail(name + " names a material that does not exist");
        const Json& attributes = member(json, "attributes");
        faceCount_ += faceCountOf(json);
        if (faceCount_ > mostFaces) return true; // what is too large is only counted
        SceneCorner first;
        if (!appendValues(scene_.positions, member(attributes, "POSITION"), missing, first.position,
                          name))
            return false;
        if (first.position == noIndex) return true;
        const std::size_t count = scene_.positions.size() - first.position;
        const TextureUse use = material == missing ? TextureUse{} : textures_[material];
        const std::string uvs = "TEXCOORD_" + std::to_string(use.coordinates);
        if (!appendValues(scene_.normals, member(attributes, "NORMAL"), count, first.normal,
                          name) ||
            !appendValues(scene_.uvs, member(attributes, uvs.c_str()), count, first.uv, name) ||
            !appendValues(scene_.colours, member(attributes, "COLOR_0"), count, first.colour, name))
            return false;
        if (first.uv != noIndex)
            for (std::size_t i = first.uv; i < scene_.uvs.size(); ++i)
                scene_.uvs[i] = use.transformed(scene_.uvs[i]);
        Numbers indices;
        const Json& accessor = member(json, "indices");
        if (accessor.is_number_unsigned()) {
            if (!data_.readAccessor(indices, accessor.get<std::size_t>())) return false;
            if (indices.width != 1) return fail(name + " has indices that are no single numbers");
            for (const double i : indices.values)
                if (!(i >= 0 && i < static_cast<double>(count)) || i != std::floor(i))
                    return fail(name + " has an index out of range");
        } else {
            for (std::size_t i = 0; i < count; ++i)
                indices.values.push_back(static_cast<double>(i));
        }
        const std::size_t faces = facesOf(mode, indices.values.size());
        for (std::size_t f = 0; f < faces; ++f) {
            std::array<std::size_t, 3> at{f * 3, f * 3 + 1, f * 3 + 2};
            if (mode == triangleStrip) at = {f, f + 1 + f % 2, f + 2 - f % 2};
            if (mode == triangleFan) at = {f + 1, f + 2, 0};
            scene_.faces.push_back(
                {static_cast<std::uint32_t>(scene_.corners.size()), 3, object,
                 material == missing ? noIndex : static_cast<std::uint32_t>(material), 0, false});
            for (const std::size_t i : at) {
                const auto vertex = static_cast<std::uint32_t>(indices.values[i]);
                const auto shifted = [&](std::uint32_t base) {
                    return base == noIndex ? noIndex : base + vertex;
                };
                scene_.corners.push_back({first.position + vertex, shifted(first.uv),
                                          shifted(first.normal), shifted(first.colour)});
            }
        }
        return true;
    }

    /// Which texture coordinates a material's picture uses, and what becomes of them first.
    struct TextureUse {
        std::size_t coordinates = 0;
        Real2 offset{0, 0}, scale{1, 1};
        double rotation = 0; ///< radians, counter-clockwise

        Real2 transformed(const Real2& uv) const
        {
            const double c = std::cos(rotation), s = std::sin(rotation);
            const double u = uv[0] * scale[0], v = uv[1] * scale[1];
            return {c * u + s * v + offset[0], c * v - s * u + offset[1]};
        }
    };

    Scene& scene_;
    Data data_;
    const Json& json_ = data_.json();
    Reason& reason_;
    const ImportProgress& progress_;
    std::map<std::size_t, std::uint32_t> pictures_;
    std::vector<TextureUse> textures_; ///< parallel to the scene's materials
    std::vector<bool> isUsed_;         ///< nodes
    std::size_t nodesRead_ = 0;
    std::size_t faceCount_ = 0; ///< of the nodes read, also those that are too many to keep
};

} // namespace

bool looksLikeGltf(std::span<const std::byte> file)
{
    if (ByteReader{file}.u32() == fileTag) return true;
    const std::string_view text =
        withoutMark({reinterpret_cast<const char*>(file.data()), file.size()});
    const std::size_t begin = text.find_first_not_of(" \n\r\t");
    return begin != std::string_view::npos && text[begin] == '{';
}

Message readGltf(Scene& scene, std::span<const std::byte> file, const AssetReader& assets,
                 Reason& reason, const ImportProgress& progress)
{
    return GltfReader(scene, assets, reason, progress).read(file) ? Message::none
                                                                  : Message::formatNotSupported;
}

} // namespace facetor
