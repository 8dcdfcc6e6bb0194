#include "keep/recovery_file.h"

#include "base/checksum.h"
#include "model/model_file.h"

#include <algorithm>
#include <cmath>
#include <ranges>

namespace facetor {

namespace {

constexpr std::uint32_t fileTag = tag("FREC"), fileVersion = 1;
constexpr std::uint32_t pathsTag = tag("PATH"), stateTag = tag("STAT"), viewTag = tag("VIEW");
constexpr std::uint32_t modelTag = tag("MODL"), exactTag = tag("EXAC"), endTag = tag("CRC ");
constexpr std::size_t endSize = 12; ///< tag, size 4, checksum of all before
constexpr std::uint32_t longestPath = 65535;

/// The texts of a state, in the order of the file.
template <typename State> auto pathsOf(State& state)
{
    return std::array{&state.modelFile, &state.importedFrom, &state.textureFile,
                      &state.partlyReadModel, &state.partlyReadTextures};
}

void writeU64(ByteWriter& out, std::uint64_t value)
{
    out.u32(static_cast<std::uint32_t>(value));
    out.u32(static_cast<std::uint32_t>(value >> 32));
}

std::uint64_t readU64(ByteReader& in)
{
    const std::uint64_t low = in.u32();
    return low | std::uint64_t{in.u32()} << 32;
}

void writeVector(ByteWriter& out, const Vector3& v)
{
    out.f32(v.x);
    out.f32(v.y);
    out.f32(v.z);
}

Vector3 readVector(ByteReader& in)
{
    return {in.f32(), in.f32(), in.f32()};
}

void writeAngles(ByteWriter& out, const std::array<Angle, 3>& angles)
{
    for (const Angle angle : angles) out.u32(static_cast<std::uint32_t>(angle));
}

std::array<Angle, 3> readAngles(ByteReader& in)
{
    std::array<Angle, 3> angles{};
    for (Angle& angle : angles) angle = static_cast<Angle>(in.u32());
    return angles;
}

void writeMatrix(ByteWriter& out, const Matrix& matrix)
{
    for (const float value : matrix.element) out.f32(value);
}

Matrix readMatrix(ByteReader& in)
{
    Matrix matrix{};
    for (float& value : matrix.element) value = in.f32();
    return matrix;
}

void writeView(ByteWriter& out, const View& view)
{
    writeMatrix(out, view.viewMatrix);
    writeVector(out, view.cameraPosition);
    writeVector(out, view.modelCentre);
    writeAngles(out, view.modelRotation);
    out.f32(view.viewScale);
    writeAngles(out, view.viewDirection);
    for (std::size_t i = 0; i < view.cameras.size(); ++i) {
        writeMatrix(out, view.cameras[i]);
        out.u8(view.cameraStored[i] ? 1 : 0);
    }
    out.u8(view.perspective ? 1 : 0);
    out.u32(static_cast<std::uint32_t>(view.viewAngle));
    writeVector(out, view.lightDirection);
    out.u16(view.lightColour);
    out.u16(view.ambientColour);
}

bool allFinite(const Matrix& matrix)
{
    return std::ranges::all_of(matrix.element, [](float value) { return std::isfinite(value); });
}

bool isUsable(const View& view)
{
    return allFinite(view.viewMatrix) && std::ranges::all_of(view.cameras, allFinite) &&
           isFinite(view.cameraPosition) && isFinite(view.modelCentre) &&
           isFinite(view.lightDirection) && std::isfinite(view.viewScale) && view.viewScale > 0 &&
           view.viewAngle > 0 && view.viewAngle < 32768;
}

/// The start's view for one that cannot be.
View readView(ByteReader& in)
{
    View view;
    view.viewMatrix = readMatrix(in);
    view.cameraPosition = readVector(in);
    view.modelCentre = readVector(in);
    view.modelRotation = readAngles(in);
    view.viewScale = in.f32();
    view.viewDirection = readAngles(in);
    for (std::size_t i = 0; i < view.cameras.size(); ++i) {
        view.cameras[i] = readMatrix(in);
        view.cameraStored[i] = in.u8() != 0;
    }
    view.perspective = in.u8() != 0;
    view.viewAngle = static_cast<Angle>(in.u32());
    view.lightDirection = readVector(in);
    view.lightColour = in.u16();
    view.ambientColour = in.u16();
    return in.ok() && isUsable(view) ? view : View{};
}

/// What a model file loses.
void writeExact(ByteWriter& out, const Model& model)
{
    for (std::uint32_t i = 0; i < model.objectCount; ++i) {
        writeAngles(out, model.objects[i].rotation);
        out.u32(model.objects[i].flags);
    }
    for (std::uint32_t i = 0; i < model.totalVertexCount; ++i)
        writeVector(out, model.vertexNormals[i]);
    for (std::uint32_t i = 0; i < model.totalPolygonCount; ++i)
        out.u8(model.attributes[i].flags & picked ? 1 : 0);
}

void readExact(ByteReader& in, Model& model)
{
    for (std::uint32_t i = 0; i < model.objectCount; ++i) {
        model.objects[i].rotation = readAngles(in);
        model.objects[i].flags = in.u32() & objectShown;
    }
    for (std::uint32_t i = 0; i < model.totalVertexCount; ++i)
        model.vertexNormals[i] = readVector(in);
    for (std::uint32_t i = 0; i < model.totalPolygonCount; ++i)
        if (in.u8() != 0) model.attributes[i].flags |= picked;
}

/// The payload of the next chunk, which has to be of that tag.
ByteReader payloadOf(ByteReader& in, std::uint32_t tag)
{
    const auto header = readChunkHeader(in);
    if (header && header->tag == tag) return ByteReader(in.take(header->size));
    (void)in.take(static_cast<std::size_t>(-1)); // which fails, and with it all that follows
    return ByteReader(std::span<const std::byte>{});
}

void readPaths(RecoveryState& state, ByteReader in)
{
    for (std::string* path : pathsOf(state)) {
        const std::uint32_t size = in.u32();
        if (size > longestPath) return;
        const auto bytes = in.take(size);
        path->assign(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    }
}

void readState(RecoveryState& state, ByteReader in)
{
    const std::uint32_t flags = in.u32();
    state.modelChanged = (flags & 1) != 0;
    state.texturesChanged = (flags & 2) != 0;
    state.writtenAt = static_cast<std::int64_t>(readU64(in));
    state.currentTexture = std::min(in.u32(), textureSlotCount - 1);
    state.texturesNumber = in.u32();
    state.texturesSize = readU64(in);
    state.texturesChecksum = in.u32();
}

} // namespace

RecoveryState stateOf(const Document& document, const View& view)
{
    RecoveryState state{document.modelFile,
                        document.importedFrom,
                        document.textureFile,
                        document.partlyReadModel,
                        document.partlyReadTextures,
                        isModelChanged(document),
                        areTexturesChanged(document),
                        0,
                        document.textures.current,
                        0,
                        0,
                        0,
                        view};
    return state;
}

Bytes writeRecoveryFile(const RecoveryState& state, const Model& model)
{
    ByteWriter out;
    std::size_t payload = out.beginChunk(fileTag);
    out.u32(fileVersion);
    out.endChunk(payload);
    payload = out.beginChunk(pathsTag);
    for (const std::string* path : pathsOf(state)) {
        out.u32(static_cast<std::uint32_t>(std::min<std::size_t>(path->size(), longestPath)));
        out.text(std::string_view(*path).substr(0, longestPath));
    }
    out.endChunk(payload);
    payload = out.beginChunk(stateTag);
    out.u32((state.modelChanged ? 1u : 0u) | (state.texturesChanged ? 2u : 0u));
    writeU64(out, static_cast<std::uint64_t>(state.writtenAt));
    out.u32(state.currentTexture);
    out.u32(state.texturesNumber);
    writeU64(out, state.texturesSize);
    out.u32(state.texturesChecksum);
    out.endChunk(payload);
    payload = out.beginChunk(viewTag);
    writeView(out, state.view);
    out.endChunk(payload);
    payload = out.beginChunk(modelTag);
    out.bytes(writeModel(model));
    out.endChunk(payload);
    payload = out.beginChunk(exactTag);
    writeExact(out, model);
    out.endChunk(payload);
    Bytes bytes = out.release();
    ByteWriter end;
    payload = end.beginChunk(endTag);
    end.u32(crc32(bytes));
    end.endChunk(payload);
    const Bytes tail = end.release();
    bytes.insert(bytes.end(), tail.begin(), tail.end());
    return bytes;
}

Message readRecoveryFile(RecoveryState& state, Model& model, std::span<const std::byte> bytes,
                         std::string& reason)
{
    const auto fail = [&](const char* why) {
        reason = why;
        return Message::formatNotSupported;
    };
    if (bytes.size() < endSize) return fail("it is cut short");
    ByteReader end{bytes.last(endSize)};
    if (payloadOf(end, endTag).u32() != crc32(bytes.first(bytes.size() - endSize)) || !end.ok())
        return fail("it is cut short or was changed");
    ByteReader in{bytes.first(bytes.size() - endSize)};
    if (payloadOf(in, fileTag).u32() != fileVersion) return fail("it is of another version");
    readPaths(state, payloadOf(in, pathsTag));
    readState(state, payloadOf(in, stateTag));
    ByteReader view = payloadOf(in, viewTag);
    state.view = readView(view);
    const ByteReader modelBytes = payloadOf(in, modelTag);
    ByteReader exact = payloadOf(in, exactTag);
    if (!in.ok()) return fail("a part of it is missing");
    Reason modelReason;
    if (readModel(model, modelBytes, &modelReason) != Message::none) {
        reason = modelReason.text;
        return Message::formatNotSupported;
    }
    readExact(exact, model);
    return exact.ok() ? Message::none : fail("a part of it is missing");
}

} // namespace facetor
