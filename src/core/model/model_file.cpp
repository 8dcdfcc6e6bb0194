#include "model/model_file.h"

#include "base/file.h"
#include "base/file_window.h"

#include <algorithm>
#include <array>

namespace facetor {

namespace {

constexpr std::uint32_t objectTag = tag("OBJT");
constexpr std::uint32_t verticesTag = tag("VerF");
constexpr std::uint32_t normalsTag = tag("NorF");
constexpr std::uint32_t polygonsTag = tag("POLY");
constexpr std::uint32_t nameTag = tag("MoNm");
constexpr std::uint32_t attributesTag = tag("TQAt");
constexpr std::uint32_t gouraudTag = tag("TQGr");

// Sizes in the file, in bytes.
constexpr std::uint32_t vertexSize = 12;
constexpr std::uint32_t polygonSize = 8;
constexpr std::uint32_t attributeSize = 12;
constexpr std::uint32_t gouraudSize = 8;
constexpr std::uint32_t chunkHeaderSize = 8;

/// What an object's polygons have when the file does not say.
constexpr PolygonAttribute defaultAttribute{1, 0, 0, 0xE318, polygonFace | useLight, 0};

Vector3 readVector(ByteReader& in)
{
    return {in.f32(), in.f32(), in.f32()}; // braces: read from left to right
}

/// Reads one file from its first byte to its last, object after object.
class ModelReader {
public:
    ModelReader(Model& model, const ByteReader& bytes) : model_(model), chunks_(bytes) {}

    Message read();
    /// Where and why the file was refused; empty when it was not.
    Reason reason() const;

private:
    Message readHeader();
    Message readObject(std::uint32_t index);
    Message readPlacement(std::uint32_t index);
    Message readVertices(Mesh& mesh);
    Message readNormals(const Mesh& mesh, bool& missing);
    Message readPolygons(Mesh& mesh);
    Message readOptionalChunks(std::uint32_t index, const Mesh& mesh);
    Message readName(std::uint32_t index, std::uint32_t size);
    Message readAttributes(const Mesh& mesh, std::uint32_t size);
    Message readGouraud(const Mesh& mesh, std::uint32_t size);
    Message checkMeshes();
    Message checkLinks();
    void makeSafe();

    Message fail(const std::string& what) { return chunks_.fail(what); }
    Message failObject(std::uint32_t index, const std::string& what);

    Model& model_;
    ChunkReader chunks_;
    ByteReader& in_ = chunks_.in;
    std::uint32_t version_ = 0;
    std::uint32_t object_ = 0;       ///< the one being read
    std::uint32_t faultyObject_ = 0; ///< once all are read: the one that a fault is in
    std::array<std::uint64_t, objectCapacity> objectOffsets_{}; ///< of their first chunks
    bool headerRead_ = false;
};

Message ModelReader::read()
{
    if (const Message message = readHeader(); message != Message::none) return message;
    for (object_ = 0; object_ < model_.objectCount; ++object_)
        if (const Message message = readObject(object_); message != Message::none) {
            makeSafe();
            return message;
        }
    Message message = checkMeshes();
    if (message == Message::none) message = checkLinks();
    if (message != Message::none) {
        makeSafe();
        return message;
    }
    assignDepths(model_, 0, 0); // of an empty model too: its slot 0 is still there
    return Message::none;
}

Reason ModelReader::reason() const
{
    Reason reason = chunks_.fault();
    const std::uint32_t object = object_ < model_.objectCount ? object_ : faultyObject_;
    if (!reason.text.empty() && headerRead_)
        reason.text.insert(0, "object " + std::to_string(object) + ", ");
    return reason;
}

/// Notes a fault that shows only once all objects are read.
Message ModelReader::failObject(std::uint32_t index, const std::string& what)
{
    chunks_.setChunk(objectTag, objectOffsets_[index]);
    faultyObject_ = index;
    return fail(what);
}

Message ModelReader::readHeader()
{
    ChunkHeader header;
    if (!chunks_.expect(modelFileTag, header)) return Message::formatNotSupported;
    if (header.size > dataFileHeaderSize || header.size < 8)
        return fail("a header of " + std::to_string(header.size) + " bytes");
    ByteReader fields{in_.take(header.size)};
    if (!in_.ok()) return chunks_.failCut();
    version_ = fields.u32();
    const std::uint32_t count = fields.u32();
    if (count > objectCapacity) return fail(std::to_string(count) + " objects");
    headerRead_ = true;
    model_.objectCount = count;
    model_.totalVertexCount = 0;
    model_.totalPolygonCount = 0;
    return Message::none;
}

Message ModelReader::readObject(std::uint32_t index)
{
    if (const Message message = readPlacement(index); message != Message::none) return message;

    // The slices follow those of the objects before, so the totals so far are their positions. The
    // totals move on with each chunk, the mesh enters its table only when it is whole.
    Mesh mesh{model_.totalVertexCount, 0, model_.totalPolygonCount, 0, model_.totalPolygonCount,
              model_.totalVertexCount};
    bool normalsMissing = false;
    if (const Message message = readVertices(mesh); message != Message::none) return message;
    if (const Message message = readNormals(mesh, normalsMissing); message != Message::none)
        return message;
    if (const Message message = readPolygons(mesh); message != Message::none) return message;
    if (normalsMissing) computeVertexNormals(model_, mesh);

    model_.names[index] = defaultObjectName(index);
    for (std::uint32_t p = 0; p < mesh.polygonCount; ++p) {
        const std::uint32_t slot = mesh.attributeTable + p;
        model_.attributes[slot] = defaultAttribute;
        model_.attributes[slot].gouraud = slot;
        model_.gouraud[slot].color.fill(neutralGouraud);
    }
    if (const Message message = readOptionalChunks(index, mesh); message != Message::none)
        return message;
    model_.meshes[index] = mesh;
    model_.totalVertexCount += mesh.vertexCount;
    model_.totalPolygonCount += mesh.polygonCount;
    return Message::none;
}

Message ModelReader::readPlacement(std::uint32_t index)
{
    ChunkHeader header;
    objectOffsets_[index] = in_.offset();
    if (!chunks_.expect(objectTag, header)) return Message::formatNotSupported;
    Object object{};
    object.matrix = identityMatrix;
    if (version_ != olderModelFileVersion)
        for (std::size_t row = 0; row < 4; ++row)
            for (std::size_t column = 0; column < 3; ++column)
                object.matrix.row(row)[column] = in_.f32();
    object.translation = readVector(in_);
    const std::array<float, 3> degrees{in_.f32(), in_.f32(), in_.f32()};
    object.scaling = readVector(in_);
    object.mesh = in_.u32();
    object.child = in_.u32();
    object.next = in_.u32();
    if (!in_.ok()) return chunks_.failCut();
    for (std::size_t axis = 0; axis < 3; ++axis) {
        if (!isConvertibleDegrees(degrees[axis]))
            return fail("a rotation beyond what an angle holds");
        object.rotation[axis] = degreesToAngle(degrees[axis]);
    }
    if (object.mesh >= model_.objectCount)
        return fail("mesh " + std::to_string(object.mesh) + " does not exist");
    for (const std::uint32_t target : {object.child, object.next})
        if (target != noObject && target >= model_.objectCount)
            return fail("object " + std::to_string(target) + " does not exist");
    object.flags = objectShown;
    model_.objects[index] = object;
    return Message::none;
}

Message ModelReader::readVertices(Mesh& mesh)
{
    ChunkHeader header;
    if (!chunks_.expect(verticesTag, header)) return Message::formatNotSupported;
    const std::uint32_t count = header.size / vertexSize;
    if (count > vertexCapacity - mesh.vertexTable)
        return fail("more than " + std::to_string(vertexCapacity) + " vertices");
    ByteReader fields{in_.take(std::size_t{count} * vertexSize)};
    if (!in_.ok()) return chunks_.failCut();
    mesh.vertexCount = count;
    for (std::uint32_t i = 0; i < count; ++i)
        model_.vertices[mesh.vertexTable + i] = readVector(fields);
    return Message::none;
}

Message ModelReader::readNormals(const Mesh& mesh, bool& missing)
{
    ChunkHeader header;
    if (!chunks_.expect(normalsTag, header)) return Message::formatNotSupported;
    missing = header.size / vertexSize != mesh.vertexCount;
    if (missing) in_.skip(header.size);
    ByteReader fields{in_.take(missing ? 0 : std::size_t{mesh.vertexCount} * vertexSize)};
    if (!in_.ok()) return chunks_.failCut();
    if (missing) return Message::none;
    for (std::uint32_t i = 0; i < mesh.vertexCount; ++i)
        model_.vertexNormals[mesh.vertexNormalTable + i] = readVector(fields);
    return Message::none;
}

Message ModelReader::readPolygons(Mesh& mesh)
{
    ChunkHeader header;
    if (!chunks_.expect(polygonsTag, header)) return Message::formatNotSupported;
    const std::uint32_t count = header.size / polygonSize;
    if (count > polygonCapacity - mesh.polygonTable)
        return fail("more than " + std::to_string(polygonCapacity) + " polygons");
    ByteReader fields{in_.take(std::size_t{count} * polygonSize)};
    if (!in_.ok()) return chunks_.failCut();
    mesh.polygonCount = count;
    for (std::uint32_t i = 0; i < count; ++i) {
        Polygon& polygon = model_.polygons[mesh.polygonTable + i];
        for (std::uint16_t& corner : polygon.corner) {
            corner = fields.u16();
            if (corner >= mesh.vertexCount)
                return fail("polygon " + std::to_string(i) + " names vertex " +
                            std::to_string(corner) + " of " + std::to_string(mesh.vertexCount));
        }
        polygon.normal = computeFaceNormal(polygon, model_.vertices.data() + mesh.vertexTable);
    }
    return Message::none;
}

/// Reads names, attributes and Gouraud entries until the next object or the end of the file. The
/// payload of any other tag is read as if chunk headers stood in it: there are no unknown chunks.
Message ModelReader::readOptionalChunks(std::uint32_t index, const Mesh& mesh)
{
    while (in_.left() >= chunkHeaderSize) {
        ByteReader ahead{in_.peek(chunkHeaderSize)};
        const std::optional<ChunkHeader> header = readChunkHeader(ahead);
        if (header && header->tag == objectTag) return Message::none;
        chunks_.setChunk(header ? header->tag : 0, in_.offset());
        (void)in_.take(chunkHeaderSize);
        if (!header) return chunks_.failCut(); // the file has become shorter
        if (header->tag == nameTag) {
            if (const Message message = readName(index, header->size); message != Message::none)
                return message;
        } else if (header->tag == attributesTag) {
            if (const Message message = readAttributes(mesh, header->size);
                message != Message::none)
                return message;
        } else if (header->tag == gouraudTag) {
            if (const Message message = readGouraud(mesh, header->size); message != Message::none)
                return message;
        }
    }
    in_.skip(in_.left()); // fewer bytes than a header: the end of the file
    return Message::none;
}

Message ModelReader::readName(std::uint32_t index, std::uint32_t size)
{
    const auto characters = in_.take(std::min<std::size_t>(size, longestObjectName + 1));
    const auto end = std::find(characters.begin(), characters.end(), std::byte{0});
    if (static_cast<std::size_t>(end - characters.begin()) > longestObjectName)
        return fail("a name of more than " + std::to_string(longestObjectName) + " bytes");
    std::string& name = model_.names[index];
    name.clear();
    for (auto at = characters.begin(); at != end; ++at) name.push_back(static_cast<char>(*at));
    in_.skip(size - characters.size());
    return in_.ok() ? Message::none : chunks_.failCut();
}

Message ModelReader::readAttributes(const Mesh& mesh, std::uint32_t size)
{
    const std::uint32_t count = size / attributeSize;
    if (count > mesh.polygonCount)
        return fail(std::to_string(count) + " attributes for " + std::to_string(mesh.polygonCount) +
                    " polygons");
    ByteReader fields{in_.take(std::size_t{count} * attributeSize)};
    if (!in_.ok()) return chunks_.failCut();
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint32_t slot = mesh.attributeTable + i;
        const PolygonAttribute attribute{fields.u16(), fields.u16(), fields.u16(),
                                         fields.u16(), fields.u32(), slot};
        model_.attributes[slot] = attribute;
        model_.attributes[slot].flags &= ~std::uint32_t{picked};
    }
    return Message::none;
}

Message ModelReader::readGouraud(const Mesh& mesh, std::uint32_t size)
{
    const std::uint32_t count = size / gouraudSize;
    if (count > mesh.polygonCount)
        return fail(std::to_string(count) + " Gouraud entries for " +
                    std::to_string(mesh.polygonCount) + " polygons");
    ByteReader fields{in_.take(std::size_t{count} * gouraudSize)};
    if (!in_.ok()) return chunks_.failCut();
    for (std::uint32_t i = 0; i < count; ++i)
        for (Rgb555& color : model_.gouraud[mesh.attributeTable + i].color) color = fields.u16();
    return Message::none;
}

/// Several objects may show one mesh, but a frame holds no more than one pool of vertices and
/// polygons. Object indices were checked when they were read. On failure every object is given its
/// own mesh again, so that what was read stays within the frame.
Message ModelReader::checkMeshes()
{
    std::uint32_t vertices = 0, polygons = 0;
    for (std::uint32_t i = 0; i < model_.objectCount; ++i) {
        const Mesh& mesh = model_.meshes[model_.objects[i].mesh];
        vertices += mesh.vertexCount;
        polygons += mesh.polygonCount;
        if (vertices <= vertexCapacity && polygons <= polygonCapacity) continue;
        for (std::uint32_t own = 0; own < model_.objectCount; ++own) model_.objects[own].mesh = own;
        return failObject(i, "shares a mesh so that a frame would hold too many polygons");
    }
    return Message::none;
}

Message ModelReader::checkLinks()
{
    std::uint32_t culprit = 0;
    if (linksFormForest(model_, culprit)) return Message::none;
    return failObject(culprit, "linked twice or in a circle");
}

/// After a failure: objects that were not read whole become empty ones, and links that do not form
/// a forest are cut.
void ModelReader::makeSafe()
{
    for (std::uint32_t i = std::min(object_, model_.objectCount); i < model_.objectCount; ++i) {
        model_.objects[i] = {i,         noObject,       noObject,    {0, 0, 0}, {0, 0, 0},
                             {1, 1, 1}, identityMatrix, objectShown, 0};
        model_.meshes[i] = {};
        model_.names[i] = defaultObjectName(i);
    }
    std::uint32_t culprit = 0;
    if (!linksFormForest(model_, culprit))
        for (std::uint32_t i = 0; i < model_.objectCount; ++i)
            model_.objects[i].child = model_.objects[i].next = noObject;
    assignDepths(model_, 0, 0);
}

void writeVector(ByteWriter& out, const Vector3& v)
{
    out.f32(v.x);
    out.f32(v.y);
    out.f32(v.z);
}

void writePlacement(ByteWriter& out, const Model& model, std::uint32_t index)
{
    const Object& object = model.objects[index];
    const std::size_t payload = out.beginChunk(objectTag);
    for (std::size_t row = 0; row < 4; ++row)
        for (std::size_t column = 0; column < 3; ++column) out.f32(object.matrix.row(row)[column]);
    writeVector(out, object.translation);
    for (const Angle angle : object.rotation) out.f32(angleToDegrees(angle));
    writeVector(out, object.scaling);
    out.u32(index);
    for (const std::uint32_t target : {object.child, object.next})
        out.u32(target == noObject || target < model.objectCount ? target : 0);
    out.endChunk(payload);
}

void writeMesh(ByteWriter& out, const Model& model, const Mesh& mesh)
{
    std::size_t payload = out.beginChunk(verticesTag);
    for (std::uint32_t i = 0; i < mesh.vertexCount; ++i)
        writeVector(out, model.vertices[mesh.vertexTable + i]);
    out.endChunk(payload);

    payload = out.beginChunk(normalsTag);
    for (std::uint32_t i = 0; i < mesh.vertexCount; ++i)
        writeVector(out, model.vertexNormals[mesh.vertexNormalTable + i]);
    out.endChunk(payload);

    payload = out.beginChunk(polygonsTag);
    for (std::uint32_t i = 0; i < mesh.polygonCount; ++i)
        for (const std::uint16_t corner : model.polygons[mesh.polygonTable + i].corner)
            out.u16(corner);
    out.endChunk(payload);
}

void writeAttributes(ByteWriter& out, const Model& model, const Mesh& mesh)
{
    std::size_t payload = out.beginChunk(attributesTag);
    for (std::uint32_t i = 0; i < mesh.polygonCount; ++i) {
        const PolygonAttribute& attribute = model.attributes[mesh.attributeTable + i];
        for (const std::uint16_t field :
             {attribute.plane, attribute.sort, attribute.texture, attribute.color})
            out.u16(field);
        out.u32(attribute.flags);
    }
    out.endChunk(payload);

    payload = out.beginChunk(gouraudTag);
    for (std::uint32_t i = 0; i < mesh.polygonCount; ++i)
        for (const Rgb555 color : model.gouraud[mesh.attributeTable + i].color) out.u16(color);
    out.endChunk(payload);
}

} // namespace

bool probeModelFile(const std::string& path)
{
    const std::optional<Bytes> start = readFileStart(path, chunkHeaderSize);
    if (!start) return false;
    ByteReader in{*start};
    const std::optional<ChunkHeader> header = readChunkHeader(in);
    return header && header->tag == modelFileTag;
}

Message readModel(Model& model, std::span<const std::byte> bytes, Reason* reason)
{
    return readModel(model, ByteReader(bytes), reason);
}

Message readModel(Model& model, const ByteReader& bytes, Reason* reason)
{
    ModelReader reader(model, bytes);
    const Message message = reader.read();
    if (reason) *reason = reader.reason();
    return message;
}

Message readModelFile(Model& model, const std::string& path, Reason* reason)
{
    FileWindow file;
    if (!file.open(path, reason ? &reason->text : nullptr)) return Message::cannotOpenFile;
    return readModel(model, ByteReader(file), reason);
}

Bytes writeModel(const Model& model)
{
    ByteWriter out;
    writeDataFileHeader(out, modelFileTag, model.objectCount);
    for (std::uint32_t k = 0; k < model.objectCount; ++k) {
        writePlacement(out, model, k);
        writeMesh(out, model, model.meshes[k]);
        const std::size_t name = out.beginChunk(nameTag);
        out.text(model.names[k]);
        out.u8(0);
        out.endChunk(name);
        writeAttributes(out, model, model.meshes[k]);
    }
    return out.release();
}

Message writeModelFile(const Model& model, const std::string& path)
{
    try {
        return writeFile(path, writeModel(model));
    } catch (const std::bad_alloc&) {
        return Message::outOfMemory;
    }
}

} // namespace facetor
