// Writes the small files that the fuzz targets start from: write_seeds MODEL_FOLDER TEXTURE_FOLDER

#include "model/model_file.h"
#include "texture/texture_file.h"

#include <algorithm>
#include <cstdio>
#include <string>

namespace {

using namespace facetor;

/// The start-up cube three times, as a tree, each with its own geometry.
Message writeModels(const std::string& folder)
{
    Model model;
    if (const Message message = createModelStore(model); message != Message::none) return message;
    if (const Message message = writeModelFile(model, folder + "/cube.mx3");
        message != Message::none)
        return message;
    const Mesh first = model.meshes[0];
    for (std::uint32_t i = 1; i < 3; ++i) {
        Mesh& mesh = model.meshes[i];
        mesh = first;
        mesh.vertexTable = mesh.vertexNormalTable = i * first.vertexCount;
        mesh.polygonTable = mesh.attributeTable = i * first.polygonCount;
        std::copy_n(model.vertices.begin(), first.vertexCount,
                    model.vertices.begin() + mesh.vertexTable);
        std::copy_n(model.vertexNormals.begin(), first.vertexCount,
                    model.vertexNormals.begin() + mesh.vertexNormalTable);
        std::copy_n(model.polygons.begin(), first.polygonCount,
                    model.polygons.begin() + mesh.polygonTable);
        model.objects[i] = model.objects[0];
        model.objects[i].mesh = i;
        model.names[i] = defaultObjectName(i);
    }
    model.objects[0].child = 1;
    model.objects[0].next = 2;
    model.objectCount = 3;
    model.totalVertexCount *= 3;
    model.totalPolygonCount *= 3;
    return writeModelFile(model, folder + "/tree.mx3");
}

Message writeLists(const std::string& folder)
{
    TextureList list;
    if (const Message message = list.create(); message != Message::none) return message;
    for (const std::uint32_t slot : {0u, 2u}) {
        PageArray<Rgb555> pixels;
        if (!pixels.allocate(8 * 4)) return Message::outOfMemory;
        std::fill(pixels.begin(), pixels.end(), static_cast<Rgb555>(0x8421 + slot));
        list.set(slot, 8, 4, std::move(pixels));
    }
    return writeTextureFile(list, folder + "/two.mxt");
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 3) return 2;
    for (const Message message : {writeModels(arguments[1]), writeLists(arguments[2])})
        if (message != Message::none) {
            std::fprintf(stderr, "write_seeds: %s\n", std::string(catalogueText(message)).c_str());
            return 1;
        }
    return 0;
}
