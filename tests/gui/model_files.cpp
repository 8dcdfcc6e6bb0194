#include "gui/model_files.h"

#include "base/file.h"
#include "model/model_file.h"
#include "texture/texture_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <span>

namespace facetor {

namespace {

std::unique_ptr<Model> makeCube(std::uint32_t polygonCount)
{
    auto model = std::make_unique<Model>();
    EXPECT_EQ(createModelStore(*model), Message::none);
    model->meshes[0].polygonCount = polygonCount;
    model->totalPolygonCount = polygonCount;
    return model;
}

} // namespace

void writeCubeFile(const std::string& path, std::uint32_t polygonCount)
{
    EXPECT_EQ(writeModelFile(*makeCube(polygonCount), path), Message::none);
}

void writeTexturedCubeFile(const std::string& path)
{
    const auto model = makeCube(6);
    for (std::uint32_t i = 0; i < 6; ++i) {
        model->attributes[i].flags = textureMap;
        model->attributes[i].texture = 0;
    }
    EXPECT_EQ(writeModelFile(*model, path), Message::none);
}

void writeTexturesFile(const std::string& path, Rgb555 colour)
{
    constexpr std::uint16_t size = 16;
    Texels pixels;
    ASSERT_TRUE(pixels.allocate(size * size));
    std::ranges::fill(pixels, static_cast<Rgb555>(colour | opaqueBit));
    TextureList list;
    ASSERT_EQ(list.create(), Message::none);
    list.set(0, size, size, std::move(pixels));
    EXPECT_EQ(writeTextureFile(list, path), Message::none);
}

void writeTextFile(const std::string& path, const std::string& text)
{
    EXPECT_EQ(writeFile(path, std::as_bytes(std::span(text))), Message::none);
}

} // namespace facetor
