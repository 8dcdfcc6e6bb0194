#include "output/target_reader.h"

#include "base/bytes.h"
#include "output/attribute_packing.h"
#include "output/target_layout.h"

#include <utility>
#include <vector>

namespace facetor {

namespace {

/// In the console's byte order.
std::uint16_t wordAt(std::span<const std::byte> bytes, std::size_t offset)
{
    return static_cast<std::uint16_t>(std::to_integer<unsigned>(bytes[offset]) << 8 |
                                      std::to_integer<unsigned>(bytes[offset + 1]));
}

struct Block {
    std::uint32_t address;
    std::span<const std::byte> data;
};

/// The blocks of an image; false when one is cut.
bool readBlocks(std::vector<Block>& blocks, std::span<const std::byte> image)
{
    for (ByteReader in{image}; in.left() > 0;) {
        const std::uint32_t address = in.u32(), size = in.u32();
        if (!in.ok() || size > in.left()) return false;
        blocks.push_back({address, in.take(size)});
    }
    return true;
}

/// A cursor over the console's big-endian values.
class ConsoleReader {
public:
    explicit ConsoleReader(std::span<const std::byte> bytes) : in_(bytes) {}

    std::uint8_t u8() { return in_.u8(); }
    std::uint16_t u16()
    {
        const std::uint32_t high = in_.u8();
        return static_cast<std::uint16_t>(high << 8 | in_.u8());
    }
    std::uint32_t u32()
    {
        const std::uint32_t high = u16();
        return high << 16 | u16();
    }
    /// 16.16 fixed point.
    double fixed() { return static_cast<std::int32_t>(u32()) / 65536.0; }
    Vector3 vector(double scale = 1)
    {
        const auto next = [&] { return static_cast<float>(fixed() / scale); };
        return {next(), next(), next()}; // braces: read from left to right
    }

private:
    ByteReader in_;
};

/// What packAttribute() made of it; `table` is the number of its Gouraud table.
PolygonAttribute unpackAttribute(ConsoleReader& in, std::uint16_t& table)
{
    PolygonAttribute attribute{};
    attribute.plane = in.u8() != 0 ? dualPlaneBit : 0;
    const std::uint32_t options = in.u8();
    attribute.texture = in.u16();
    const std::uint32_t mode = in.u16();
    attribute.color = toConsoleColour(in.u16()); // exchanges red and blue: its own inverse
    table = in.u16();
    const std::uint32_t kind = in.u16();
    static constexpr std::array<std::uint16_t, 4> sorts{3, sortNearest, sortFarthest, sortCentre};
    attribute.sort = sorts[options & 3];
    static constexpr std::array<std::uint32_t, 4> modes{0, shadowMode, halfMode, translucentMode};
    std::uint32_t flags = modes[mode & 3];
    if ((mode & 4) != 0) flags |= gouraudShading;
    if ((mode & 0x100) != 0) flags |= meshMode;
    if ((options & 0x88) != 0) flags |= useLight;
    if ((options & 0x40) != 0) flags |= nearClip;
    if ((options & 4) != 0) {
        flags |= textureMap;
        if ((kind & 0x10) != 0) flags |= flipHorizontal;
        if ((kind & 0x20) != 0) flags |= flipVertical;
    } else {
        flags |= (kind & 0x3F) == 5 ? polyLine : polygonFace;
    }
    attribute.flags = flags;
    return attribute;
}

class ModelImageReader {
public:
    ModelImageReader(Model& model, Reason& reason) : model_(model), reason_(reason) {}

    bool read(std::span<const std::byte> image)
    {
        if (!readBlocks(blocks_, image)) return fail("a block is cut");
        const Block *matrices = find(matricesAddress), *scale = find(scaleAddress),
                    *objects = find(objectsAddress);
        if (!matrices || !objects) return fail("it holds no model");
        const std::size_t count = matrices->data.size() / matrixSize;
        if (count > objectCapacity)
            return fail(std::to_string(count) + " objects where " + std::to_string(objectCapacity) +
                        " fit");
        if (objects->data.size() < count * objectSize) return fail("its object table is cut");
        if (!scale || scale->data.size() < 4) return fail("it holds no scale");
        scale_ = ConsoleReader(scale->data).fixed();
        if (!(scale_ > 0)) return fail("its scale is not above 0");
        objects_ = objects->data;
        model_.objectCount = static_cast<std::uint32_t>(count);
        model_.totalVertexCount = model_.totalPolygonCount = 0;
        next_ = objectsAddress + objectSize * model_.objectCount;
        for (std::uint32_t i = 0; i < model_.objectCount; ++i)
            if (!readObject(i, matrices->data.subspan(i * matrixSize, matrixSize))) return false;
        std::uint32_t culprit = 0;
        if (!linksFormForest(model_, culprit))
            return failObject(culprit, "linked twice or in a circle");
        assignDepths(model_, 0, 0);
        return true;
    }

private:
    bool fail(const std::string& what)
    {
        reason_.text = what;
        return false;
    }
    bool failObject(std::uint32_t index, const std::string& what)
    {
        return fail("object " + std::to_string(index) + ": " + what);
    }

    const Block* find(std::uint32_t address) const
    {
        for (const Block& block : blocks_)
            if (block.address == address) return &block;
        return nullptr;
    }

    /// `count` records of the object block; none when they do not all lie in it.
    std::optional<std::span<const std::byte>> at(std::uint32_t address, std::uint32_t count,
                                                 std::uint32_t size) const
    {
        const std::uint64_t offset = std::uint64_t{address} - objectsAddress; // wraps below it
        const std::uint64_t bytes = std::uint64_t{count} * size;
        if (offset > objects_.size() || bytes > objects_.size() - offset) return std::nullopt;
        return objects_.subspan(static_cast<std::size_t>(offset), static_cast<std::size_t>(bytes));
    }

    /// The object that an entry's address means; false when it is none's.
    bool readLink(std::uint32_t address, std::uint32_t& object) const
    {
        object = noObject;
        if (address == 0) return true;
        object = (address - objectsAddress) / objectSize;
        return address >= objectsAddress && (address - objectsAddress) % objectSize == 0 &&
               object < model_.objectCount;
    }

    bool readObject(std::uint32_t index, std::span<const std::byte> matrix)
    {
        Object& object = model_.objects[index];
        object = {};
        object.mesh = index;
        object.flags = objectShown;
        object.matrix = identityMatrix;
        ConsoleReader elements(matrix);
        for (std::size_t row = 0; row < 4; ++row) {
            const Vector3 v = elements.vector(row == 3 ? scale_ : 1);
            float* const to = object.matrix.row(row);
            to[0] = v.x, to[1] = v.y, to[2] = v.z;
        }
        ConsoleReader in(objects_.subspan(index * objectSize, objectSize));
        const std::uint32_t data = in.u32();
        object.translation = in.vector(scale_);
        for (Angle& angle : object.rotation) angle = static_cast<std::int16_t>(in.u16());
        (void)in.u16(); // fills up to four bytes
        object.scaling = in.vector();
        if (const std::uint32_t child = in.u32(), next = in.u32();
            !readLink(child, object.child) || !readLink(next, object.next))
            return failObject(index, "a link leads to no object");
        model_.names[index] = defaultObjectName(index);
        return readMesh(index, data);
    }

    /// What has no polygons has no address, but is there where the object before it ends.
    bool readMesh(std::uint32_t index, std::uint32_t data)
    {
        Mesh& mesh = model_.meshes[index];
        mesh = {model_.totalVertexCount, 0, model_.totalPolygonCount, 0, model_.totalPolygonCount,
                model_.totalVertexCount};
        const std::uint32_t start = data != 0 ? data : next_;
        const auto header = at(start, 1, dataHeaderSize);
        if (!header) return data == 0 || failObject(index, "its data lies outside the image");
        ConsoleReader in(*header);
        const std::uint32_t points = in.u32(), vertices = in.u32(), polygons = in.u32(),
                            faces = in.u32(), attributes = in.u32(), normals = in.u32();
        if (data == 0 && (points != start + dataHeaderSize || faces != 0)) return true;
        if (vertices > vertexCapacity - model_.totalVertexCount)
            return failObject(index, "more than " + std::to_string(vertexCapacity) + " vertices");
        if (faces > polygonCapacity - model_.totalPolygonCount)
            return failObject(index, "more than " + std::to_string(polygonCapacity) + " polygons");
        const auto pointData = at(points, vertices, pointSize);
        const auto polygonData = at(polygons, faces, polygonSize);
        const auto attributeData = at(attributes, faces, packedAttributeSize);
        const auto normalData = at(normals, normals == 0 ? 0 : vertices, pointSize);
        if (!pointData || !polygonData || !attributeData || (normals != 0 && !normalData))
            return failObject(index, "its tables lie outside the image");
        next_ = normals != 0 ? normals + vertices * pointSize
                             : attributes + faces * std::uint32_t{packedAttributeSize};
        mesh.vertexCount = vertices;
        mesh.polygonCount = faces;
        ConsoleReader pointReader(*pointData);
        for (std::uint32_t v = 0; v < vertices; ++v)
            model_.vertices[mesh.vertexTable + v] = pointReader.vector(scale_);
        if (!readPolygons(index, mesh, *polygonData, *attributeData)) return false;
        if (normals == 0) {
            computeVertexNormals(model_, mesh);
        } else {
            ConsoleReader normalReader(*normalData);
            for (std::uint32_t v = 0; v < vertices; ++v)
                model_.vertexNormals[mesh.vertexNormalTable + v] = normalReader.vector();
        }
        model_.totalVertexCount += vertices;
        model_.totalPolygonCount += faces;
        return true;
    }

    bool readPolygons(std::uint32_t index, const Mesh& mesh, std::span<const std::byte> polygons,
                      std::span<const std::byte> attributes)
    {
        ConsoleReader in(polygons), attributeReader(attributes);
        for (std::uint32_t p = 0; p < mesh.polygonCount; ++p) {
            Polygon& polygon = model_.polygons[mesh.polygonTable + p];
            (void)in.vector(); // the normal, which its corners give exactly
            for (std::uint16_t& corner : polygon.corner)
                if ((corner = in.u16()) >= mesh.vertexCount)
                    return failObject(index, "polygon " + std::to_string(p) + " names vertex " +
                                                 std::to_string(corner) + " of " +
                                                 std::to_string(mesh.vertexCount));
            polygon.normal = computeFaceNormal(polygon, model_.vertices.data() + mesh.vertexTable);
            std::uint16_t table = 0;
            const std::uint32_t slot = mesh.attributeTable + p;
            model_.attributes[slot] = unpackAttribute(attributeReader, table);
            model_.attributes[slot].gouraud = slot;
            model_.gouraud[slot].color.fill(neutralGouraud);
            if (isTableGouraud(model_.attributes[slot]) &&
                !readGouraud(model_.gouraud[slot], table))
                return failObject(index, "polygon " + std::to_string(p) +
                                             " has a Gouraud table outside the image");
        }
        return true;
    }

    bool readGouraud(GouraudEntry& entry, std::uint16_t table) const
    {
        const std::uint32_t address = gouraudAddress + gouraudSize * table;
        for (const Block& block : blocks_) {
            const std::uint64_t offset = std::uint64_t{address} - block.address;
            if (offset > block.data.size() || gouraudSize > block.data.size() - offset) continue;
            ConsoleReader in(block.data.subspan(static_cast<std::size_t>(offset), gouraudSize));
            for (Rgb555& colour : entry.color) colour = toConsoleColour(in.u16());
            return true;
        }
        return false;
    }

    Model& model_;
    Reason& reason_;
    std::vector<Block> blocks_;
    std::span<const std::byte> objects_; ///< the object table and all data behind it
    double scale_ = 1;
    std::uint32_t next_ = 0; ///< where the data of the objects so far end
};

} // namespace

Message readModelImage(Model& model, std::span<const std::byte> image, Reason& reason)
{
    Model read; // an image that turns out to be damaged leaves half a model
    if (const Message message = createModelStore(read); message != Message::none) return message;
    if (!ModelImageReader(read, reason).read(image)) return Message::formatNotSupported;
    model = std::move(read);
    return Message::none;
}

Message readTextureImage(TextureList& list, std::span<const std::byte> image, Reason& reason)
{
    const auto fail = [&](const std::string& what) {
        reason.text = what;
        return Message::formatNotSupported;
    };
    std::vector<Block> blocks;
    if (!readBlocks(blocks, image)) return fail("a block is cut");
    std::span<const std::byte> table, texels;
    for (const Block& block : blocks) {
        if (block.address == textureTableAddress) table = block.data;
        if (block.address == texelsAddress) texels = block.data;
    }
    const std::size_t count = table.size() / textureEntrySize;
    if (count == 0) return fail("it holds no textures");
    if (count > textureSlotCount)
        return fail(std::to_string(count) + " textures where " + std::to_string(textureSlotCount) +
                    " fit");
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint16_t width = wordAt(table, i * textureEntrySize);
        const std::uint16_t height = wordAt(table, i * textureEntrySize + 2);
        const std::size_t size = std::size_t{width} * height;
        if (size == 0 || size > texels.size() / 2)
            return fail("texture " + std::to_string(i) + " has no texels or more than there are");
        Texels own;
        if (!own.allocate(size)) return Message::outOfMemory;
        for (std::size_t k = 0; k < size; ++k) {
            const Rgb555 texel = wordAt(texels, k * 2);
            // toConsoleColour() exchanges red and blue; it is its own inverse.
            own[k] = (texel & opaqueBit) != 0 ? toConsoleColour(texel) : Rgb555{0};
        }
        texels = texels.subspan(size * 2);
        list.set(static_cast<std::uint32_t>(i), width, height, std::move(own));
    }
    return Message::none;
}

} // namespace facetor
