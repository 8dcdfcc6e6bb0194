#include "output/target_image.h"

#include "base/file.h"
#include "base/text.h"
#include "output/attribute_packing.h"
#include "output/gouraud_count.h"
#include "output/target_layout.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>

namespace facetor {

namespace {

/// In bytes; far above the console's memory, and what a 32-bit process may have in one piece.
constexpr std::uint64_t largestImage = 0x7FFFFFFF;

/// 16.16 fixed point, truncated toward zero. What does not fit becomes the nearest that does; what
/// is no number becomes 0.
std::int32_t toFixed(float value)
{
    const double scaled = double{value} * 65536.0;
    if (!(scaled == scaled)) return 0;
    constexpr double least = std::numeric_limits<std::int32_t>::min();
    constexpr double most = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::clamp(scaled, least, most));
}

/// Whether toFixed() keeps the value but for what 16 bits behind the point drop.
bool fitsFixed(float value)
{
    const double scaled = double{value} * 65536.0;
    return scaled > -2147483649.0 && scaled < 2147483648.0;
}

/// Builds an image block by block.
class ImageWriter {
public:
    /// Makes room for that many bytes in advance; false when memory is short.
    bool reserve(std::size_t size)
    {
        try {
            bytes_.reserve(size);
        } catch (const std::bad_alloc&) {
            return false;
        }
        return true;
    }
    void beginBlock(std::uint32_t address)
    {
        for (int i = 0; i < 4; ++i) bytes_.push_back(static_cast<std::byte>(address >> (8 * i)));
        bytes_.insert(bytes_.end(), 4, std::byte{0});
        start_ = bytes_.size();
    }
    void endBlock() // only now is the size known
    {
        const auto size = static_cast<std::uint32_t>(bytes_.size() - start_);
        for (std::size_t i = 0; i < 4; ++i)
            bytes_[start_ - 4 + i] = static_cast<std::byte>(size >> (8 * i));
    }

    void u16(std::uint32_t value)
    {
        bytes_.push_back(static_cast<std::byte>(value >> 8));
        bytes_.push_back(static_cast<std::byte>(value));
    }
    void u32(std::uint32_t value)
    {
        u16(value >> 16);
        u16(value);
    }
    void fixed(float value) { u32(static_cast<std::uint32_t>(toFixed(value))); }
    void fixed(const Vector3& v, float scale = 1.0f)
    {
        for (const float value : {v.x, v.y, v.z}) fixed(value * scale);
    }
    void colour(Rgb555 value) { u16(toConsoleColour(value)); }
    void bytes(std::span<const std::byte> values)
    {
        bytes_.insert(bytes_.end(), values.begin(), values.end());
    }

    Bytes release() { return std::move(bytes_); }

private:
    Bytes bytes_;
    std::size_t start_ = 0; ///< of the present block's data
};

const Mesh& meshOf(const Model& model, std::uint32_t object)
{
    return model.meshes[model.objects[object].mesh];
}

/// How many polygons there are up to and including the last one with Gouraud shading by light.
std::uint32_t lightGouraudEnd(const Model& model)
{
    std::uint32_t end = model.totalPolygonCount;
    while (end > 0 && !isLightGouraud(model.attributes[end - 1])) --end;
    return end;
}

/// The console addresses of one object's tables.
struct DataAddresses {
    std::uint32_t data, points, polygons, attributes, normals, end;
    bool carriesNormals;
};

/// An object carries normals when it or any object behind it has a polygon that needs them.
DataAddresses addressesFrom(std::uint32_t data, const Mesh& mesh, std::uint32_t needed)
{
    DataAddresses a{};
    a.data = data;
    a.carriesNormals = mesh.attributeTable < needed;
    a.points = a.data + dataHeaderSize;
    a.polygons = a.points + mesh.vertexCount * pointSize;
    a.attributes = a.polygons + mesh.polygonCount * polygonSize;
    a.normals = a.attributes + mesh.polygonCount * std::uint32_t{packedAttributeSize};
    a.end = a.normals + (a.carriesNormals ? mesh.vertexCount * pointSize : 0);
    return a;
}

std::vector<DataAddresses> layOut(const Model& model)
{
    std::vector<DataAddresses> addresses;
    const std::uint32_t needed = lightGouraudEnd(model);
    std::uint32_t next = objectsAddress + objectSize * model.objectCount;
    for (std::uint32_t k = 0; k < model.objectCount; ++k) {
        addresses.push_back(addressesFrom(next, meshOf(model, k), needed));
        next = addresses.back().end;
    }
    return addresses;
}

void writeMatrices(ImageWriter& out, const Model& model, float scale)
{
    out.beginBlock(matricesAddress);
    for (std::uint32_t k = 0; k < model.objectCount; ++k) {
        const auto& m = model.objects[k].matrix.element;
        for (std::size_t row = 0; row < 3; ++row)
            out.fixed({m[row * 4], m[row * 4 + 1], m[row * 4 + 2]});
        out.fixed({m[12], m[13], m[14]}, scale);
    }
    out.endBlock();
}

/// The address of an object's entry; 0 for none. An object that the model does not have counts as
/// the first.
std::uint32_t entryAddress(const Model& model, std::uint32_t object)
{
    if (object == noObject) return 0;
    return objectsAddress + objectSize * (object < model.objectCount ? object : 0);
}

void writeEntry(ImageWriter& out, const Model& model, std::uint32_t index,
                const DataAddresses& addresses, float scale)
{
    const Object& object = model.objects[index];
    const Mesh& mesh = meshOf(model, index);
    out.u32(mesh.vertexCount > 0 && mesh.polygonCount > 0 ? addresses.data : 0);
    out.fixed(object.translation, scale);
    for (const Angle angle : object.rotation) out.u16(static_cast<std::uint32_t>(angle));
    out.u16(0); // fills up to four bytes
    out.fixed(object.scaling);
    out.u32(entryAddress(model, object.child));
    out.u32(entryAddress(model, object.next));
}

/// The tables that the Gouraud polygons take one after another, over all objects.
struct GouraudCounters {
    std::uint16_t light, table;
};

void writeData(ImageWriter& out, const Model& model, const Mesh& mesh,
               const DataAddresses& addresses, float scale, GouraudCounters& counters)
{
    out.u32(addresses.points);
    out.u32(mesh.vertexCount);
    out.u32(addresses.polygons);
    out.u32(mesh.polygonCount);
    out.u32(addresses.attributes);
    out.u32(addresses.carriesNormals ? addresses.normals : 0);
    for (std::uint32_t i = 0; i < mesh.vertexCount; ++i)
        out.fixed(model.vertices[mesh.vertexTable + i], scale);
    for (std::uint32_t i = 0; i < mesh.polygonCount; ++i) {
        const Polygon& polygon = model.polygons[mesh.polygonTable + i];
        out.fixed(polygon.normal);
        for (const std::uint16_t corner : polygon.corner) out.u16(corner);
    }
    for (std::uint32_t i = 0; i < mesh.polygonCount; ++i)
        out.bytes(packAttribute(model.attributes[mesh.attributeTable + i], counters.light,
                                counters.table));
    if (!addresses.carriesNormals) return;
    for (std::uint32_t i = 0; i < mesh.vertexCount; ++i)
        out.fixed(model.vertexNormals[mesh.vertexNormalTable + i]);
}

void writeGouraudTables(ImageWriter& out, const Model& model, std::uint32_t firstTable)
{
    out.beginBlock(gouraudAddress + gouraudSize * firstTable);
    for (std::uint32_t k = 0; k < model.objectCount; ++k) {
        const Mesh& mesh = meshOf(model, k);
        for (std::uint32_t i = 0; i < mesh.polygonCount; ++i) {
            const PolygonAttribute& attribute = model.attributes[mesh.attributeTable + i];
            if (!isTableGouraud(attribute)) continue;
            for (const Rgb555 colour : model.gouraud[attribute.gouraud].color) out.colour(colour);
        }
    }
    out.endBlock();
}

} // namespace

Bytes formatModelImage(const Model& model, float scale)
{
    ImageWriter out;
    writeMatrices(out, model, scale);
    out.beginBlock(scaleAddress);
    out.fixed(scale);
    out.endBlock();

    const auto addresses = layOut(model);
    const std::uint32_t firstTable = firstGouraudTable + countImageGouraud(model).light;
    GouraudCounters counters{static_cast<std::uint16_t>(firstGouraudTable),
                             static_cast<std::uint16_t>(firstTable)};
    out.beginBlock(objectsAddress);
    for (std::uint32_t k = 0; k < model.objectCount; ++k)
        writeEntry(out, model, k, addresses[k], scale);
    for (std::uint32_t k = 0; k < model.objectCount; ++k)
        writeData(out, model, meshOf(model, k), addresses[k], scale, counters);
    out.endBlock();
    writeGouraudTables(out, model, firstTable);
    return out.release();
}

std::vector<BeyondFixed> findBeyondFixed(const Model& model, float scale)
{
    std::vector<BeyondFixed> found;
    if (!fitsFixed(scale) || toFixed(scale) == 0) {
        found.push_back({std::nullopt, "scale", scale});
        return found;
    }
    for (std::uint32_t k = 0; k < model.objectCount; ++k) {
        const Object& object = model.objects[k];
        const Mesh& mesh = meshOf(model, k);
        const std::size_t before = found.size();
        const auto check = [&](const char* what, float value, float factor) {
            if (found.size() == before && !fitsFixed(value * factor))
                found.push_back({k, what, value * factor});
        };
        const auto checkVector = [&](const char* what, const Vector3& v, float factor) {
            for (const float value : {v.x, v.y, v.z}) check(what, value, factor);
        };
        const auto& m = object.matrix.element;
        for (std::size_t i = 0; i < m.size(); ++i)
            if (i % 4 != 3) check("matrix element", m[i], i < 12 ? 1 : scale);
        checkVector("translation", object.translation, scale);
        checkVector("scaling", object.scaling, 1);
        for (std::uint32_t i = 0; i < mesh.vertexCount && found.size() == before; ++i) {
            checkVector("vertex", model.vertices[mesh.vertexTable + i], scale);
            if (found.size() > before) found.back().vertex = i;
            // A vertex of no polygon has a normal that is no number, written as 0.
            const Vector3& n = model.vertexNormals[mesh.vertexNormalTable + i];
            for (const float value : {n.x, n.y, n.z})
                if (!std::isnan(value)) check("vertex normal", value, 1);
        }
    }
    return found;
}

std::string describe(const Model& model, const BeyondFixed& fault)
{
    const std::string value = formatShortest(fault.value);
    if (!fault.object) return "the scale " + value;
    std::string what = fault.what;
    if (fault.vertex) what += ' ' + std::to_string(*fault.vertex) + " at";
    return "object " + std::to_string(*fault.object) + " \"" + model.names[*fault.object] +
           "\": " + what + ' ' + value + " is beyond what fixed point holds";
}

std::uint64_t modelImageSize(const Model& model)
{
    const auto addresses = layOut(model);
    const std::uint64_t objects = addresses.empty() ? 0 : addresses.back().end - objectsAddress;
    return 4 * blockHeadSize + matrixSize * model.objectCount + 4 + objects +
           gouraudSize * countImageGouraud(model).table;
}

std::uint64_t texelBytes(const TextureList& list)
{
    std::uint64_t size = 0;
    for (const TextureSlot& slot : list.slots().first(list.usedCount()))
        size += std::uint64_t{slot.width} * slot.height * sizeof(Rgb555);
    return size;
}

std::uint64_t textureImageSize(const TextureList& list)
{
    const std::uint32_t used = list.usedCount();
    return used == 0 ? 0 : 2 * blockHeadSize + textureEntrySize * used + texelBytes(list);
}

Message formatTextureImage(Bytes& image, const TextureList& list, std::string* reason)
{
    const auto slots = list.slots().first(list.usedCount());
    if (slots.empty()) return Message::texturesEmpty;
    for (std::size_t i = 0; i < slots.size(); ++i)
        if (slots[i].width > targetTextureWidth) {
            if (reason)
                *reason = "texture " + std::to_string(i) + " is " + std::to_string(slots[i].width) +
                          " texels wide, a row has at most " + std::to_string(targetTextureWidth);
            return Message::outOfMemory;
        }

    const std::uint64_t size = textureImageSize(list);
    ImageWriter out;
    if (size > largestImage || !out.reserve(static_cast<std::size_t>(size)))
        return Message::outOfMemory;
    out.beginBlock(textureTableAddress);
    std::uint32_t offset = firstTexelOffset;
    for (const TextureSlot& slot : slots) {
        out.u16(slot.width);
        out.u16(slot.height);
        out.u16(offset / spriteUnit);
        out.u16((slot.width / 8u & 0xFF) << 8 | (slot.height & 0xFFu));
        offset += std::uint32_t{slot.width} * slot.height * std::uint32_t{sizeof(Rgb555)};
    }
    out.endBlock();
    out.beginBlock(texelsAddress);
    for (const TextureSlot& slot : slots)
        for (const Rgb555 texel : std::span(slot.pixels, std::size_t{slot.width} * slot.height))
            out.u16((texel & opaqueBit) != 0 ? toConsoleColour(texel) : 0u);
    out.endBlock();
    image = out.release();
    return Message::none;
}

Bytes formatSceneImage(const SceneSettings& scene)
{
    ImageWriter out;
    out.beginBlock(lightDirectionAddress);
    out.fixed(scene.lightDirection);
    out.endBlock();
    const std::pair<std::uint32_t, std::uint32_t> words[] = {
        {lightColourAddress, toConsoleColour(scene.lightColour)},
        {viewAngleAddress, static_cast<std::uint32_t>(scene.viewAngle)},
        {ambientColourAddress, toConsoleColour(scene.ambientColour)},
        {backgroundAddress, toConsoleColour(scene.backgroundColour)}};
    for (const auto& [address, value] : words) {
        out.beginBlock(address);
        out.u16(value);
        out.endBlock();
    }
    return out.release();
}

Message writeModelImage(const Model& model, float scale, const std::string& path)
{
    return writeFile(path, formatModelImage(model, scale));
}

Message writeTextureImage(const TextureList& list, const std::string& path, std::string* reason)
{
    Bytes image;
    if (const Message message = formatTextureImage(image, list, reason); message != Message::none)
        return message;
    return writeFile(path, image);
}

Message writeSceneImage(const SceneSettings& scene, const std::string& path)
{
    return writeFile(path, formatSceneImage(scene));
}

} // namespace facetor
