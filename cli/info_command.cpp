#include "commands.h"

#include "input_file.h"
#include "json.h"

#include <cstdio>

namespace facetor {

namespace {

std::string hexadecimal(std::uint32_t value)
{
    std::string text = "0x";
    for (int shift = 28; shift >= 0; shift -= 4) text += "0123456789ABCDEF"[value >> shift & 15];
    return text;
}

using facetor::toJson;

Json toJson(const Vector3& v)
{
    return {toJson(v.x), toJson(v.y), toJson(v.z)};
}

Json indexOrNull(std::uint32_t object)
{
    return object == noObject ? Json() : Json(object);
}

Json describe(const Model& model, std::uint32_t version)
{
    Json objects = Json::array();
    for (std::uint32_t i = 0; i < model.objectCount; ++i) {
        const Object& object = model.objects[i];
        const Mesh& mesh = model.meshes[object.mesh];
        objects.push_back({{"index", i},
                           {"name", model.names[i]},
                           {"depth", object.depth},
                           {"child", indexOrNull(object.child)},
                           {"next", indexOrNull(object.next)},
                           {"vertices", mesh.vertexCount},
                           {"polygons", mesh.polygonCount},
                           {"translation", toJson(object.translation)},
                           {"rotation", object.rotation},
                           {"scaling", toJson(object.scaling)}});
    }
    return {{"type", "model"},
            {"version", hexadecimal(version)},
            {"objects", model.objectCount},
            {"vertices", model.totalVertexCount},
            {"polygons", model.totalPolygonCount},
            {"object", std::move(objects)}};
}

Json describe(const TextureList& list)
{
    Json textures = Json::array();
    for (std::uint32_t i = 0; i < textureSlotCount; ++i)
        if (!list.isEmpty(i))
            textures.push_back(
                {{"slot", i}, {"width", list.slot(i).width}, {"height", list.slot(i).height}});
    return {{"type", "textures"}, {"used", list.usedCount()}, {"textures", std::move(textures)}};
}

Json describe(const std::vector<ImageBlock>& blocks)
{
    Json described = Json::array();
    for (const ImageBlock& block : blocks)
        described.push_back({{"address", hexadecimal(block.address)}, {"size", block.size}});
    return {{"type", "image"}, {"blocks", std::move(described)}};
}

void print(const std::string& text)
{
    std::fputs(text.c_str(), stdout);
}

std::string triple(const Json& values)
{
    return values[0].dump() + ", " + values[1].dump() + ", " + values[2].dump();
}

std::string objectOrNone(std::uint32_t object)
{
    return object == noObject ? "none" : std::to_string(object);
}

void printModel(const Model& model, std::uint32_t version)
{
    print("model, layout " + hexadecimal(version) + ": " + std::to_string(model.objectCount) +
          " objects, " + std::to_string(model.totalVertexCount) + " vertices, " +
          std::to_string(model.totalPolygonCount) + " polygons\n");
    for (std::uint32_t i = 0; i < model.objectCount; ++i) {
        const Object& object = model.objects[i];
        const Mesh& mesh = model.meshes[object.mesh];
        print("object " + std::to_string(i) + " \"" + model.names[i] + "\": depth " +
              std::to_string(object.depth) + ", child " + objectOrNone(object.child) + ", next " +
              objectOrNone(object.next) + ", " + std::to_string(mesh.vertexCount) + " vertices, " +
              std::to_string(mesh.polygonCount) + " polygons\n");
        print("  translation " + triple(toJson(object.translation)) + "; rotation " +
              triple(object.rotation) + "; scaling " + triple(toJson(object.scaling)) + "\n");
    }
}

void printTextures(const TextureList& list)
{
    print("texture list: " + std::to_string(list.usedCount()) + " slots used\n");
    for (std::uint32_t i = 0; i < textureSlotCount; ++i)
        if (!list.isEmpty(i))
            print("slot " + std::to_string(i) + ": " + std::to_string(list.slot(i).width) + " x " +
                  std::to_string(list.slot(i).height) + "\n");
}

void printImage(const std::vector<ImageBlock>& blocks)
{
    print("target image: " + std::to_string(blocks.size()) + " blocks\n");
    for (const ImageBlock& block : blocks)
        print(hexadecimal(block.address) + ": " + std::to_string(block.size) + " bytes\n");
}

} // namespace

int runInfo(Run& run, const std::string& path, InfoFormat format)
{
    InputFile file;
    if (const Message message = readInputFile(run, file, path); message != Message::none)
        return reportFailure(run, path, message, file.reason);
    if (format == InfoFormat::json) {
        const Json json = file.kind == FileKind::model ? describe(file.model, file.modelVersion)
                          : file.kind == FileKind::textures ? describe(file.textures)
                                                            : describe(file.blocks);
        print(toText(json) + "\n");
        return finishReport(run, stdout, exitDone);
    }
    if (file.kind == FileKind::model) printModel(file.model, file.modelVersion);
    if (file.kind == FileKind::textures) printTextures(file.textures);
    if (file.kind == FileKind::image) printImage(file.blocks);
    return finishReport(run, stdout, exitDone);
}

} // namespace facetor
