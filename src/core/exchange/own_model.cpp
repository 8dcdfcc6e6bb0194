#include "exchange/own_model.h"

#include "exchange/model_points.h"
#include "model/model_file.h"
#include "texture/texture_file.h"

#include <nlohmann/json.hpp>

#include <set>
#include <utility>

namespace facetor {

namespace {

/// Positions are multiplied wherever they stand; rotations and scalings stay.
void scaleModel(Model& model, float scale)
{
    const auto multiply = [scale](Vector3& v) { v = {v.x * scale, v.y * scale, v.z * scale}; };
    for (std::uint32_t v = 0; v < model.totalVertexCount; ++v) multiply(model.vertices[v]);
    for (std::uint32_t i = 0; i < model.objectCount; ++i) {
        multiply(model.objects[i].translation);
        for (std::size_t k = 0; k < 3; ++k) model.objects[i].matrix.row(3)[k] *= scale;
    }
}

void countPolygons(ImportReport& report, const Model& model, const TextureList* textures)
{
    report.objects = model.objectCount;
    report.vertices = model.totalVertexCount;
    report.polygons = model.totalPolygonCount;
    std::set<std::uint16_t> shown;
    std::uint32_t textured = 0;
    for (std::uint32_t p = 0; p < model.totalPolygonCount; ++p) {
        const bool isQuad = differentCorners(model.polygons[p]).size() == 4;
        ++(isQuad ? report.quads : report.triangles);
        const PolygonAttribute& attribute = model.attributes[p];
        if ((attribute.flags & textureMap) == 0 || !textures ||
            attribute.texture >= textureSlotCount || textures->isEmpty(attribute.texture))
            continue;
        ++textured;
        shown.insert(attribute.texture);
    }
    report.shared = textured - static_cast<std::uint32_t>(shown.size());
    if (!textures) return;
    for (std::uint32_t slot = 0; slot < textureSlotCount; ++slot)
        if (!textures->isEmpty(slot)) ++report.textures;
}

} // namespace

std::uint32_t glbChecksum(const nlohmann::json& json, std::span<const std::byte> binary)
{
    nlohmann::json seen = json;
    seen.erase("extras");
    using Handler = nlohmann::json::error_handler_t;
    std::uint32_t hash = 2166136261; // FNV-1a
    const auto add = [&hash](std::uint8_t byte) { hash = (hash ^ byte) * 16777619; };
    for (const char c : seen.dump(-1, ' ', false, Handler::replace))
        add(static_cast<std::uint8_t>(c));
    for (const std::byte byte : binary) add(std::to_integer<std::uint8_t>(byte));
    return hash;
}

Message readOwnModel(Model& model, TextureList* textures, const OwnModel& own,
                     const ImportOptions& options, ImportReport& report, Reason& reason)
{
    Model read; // a model file that turns out to be damaged leaves half a model
    if (const Message message = createModelStore(read); message != Message::none) return message;
    if (const Message message = readModel(read, own.model, &reason); message != Message::none)
        return message;
    if (own.rotations.size() != read.objectCount) {
        reason.text = "extras.facetor has not a rotation for each object";
        return Message::formatNotSupported;
    }
    for (std::uint32_t i = 0; i < read.objectCount; ++i)
        read.objects[i].rotation = own.rotations[i];
    if (textures && own.textures)
        if (const Message message = readTextures(*textures, *own.textures, &reason);
            message != Message::none)
            return message;
    if (options.scale != 1) scaleModel(read, options.scale);
    if (options.up != UpAxis::y)
        report.notes.push_back({0, "a file of Facetor's own has y up: the option is ignored"});
    countPolygons(report, read, own.textures ? textures : nullptr);
    if (own.textures && !textures)
        report.notes.push_back({0, "its textures are left out: no texture list was asked for"});
    model = std::move(read);
    return Message::none;
}

} // namespace facetor
