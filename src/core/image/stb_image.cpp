#include "image/stb_image.h"

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace {

/// More than a decoder needs for an image of the largest size. A small compressed file can ask for
/// any amount.
constexpr std::size_t largestBlock = 256u * 1024 * 1024;

void* allocateBlock(std::size_t size)
{
    return size <= largestBlock ? std::malloc(size) : nullptr;
}

void* resizeBlock(void* block, std::size_t size)
{
    return size <= largestBlock ? std::realloc(block, size) : nullptr;
}

} // namespace

#define STBI_MAX_DIMENSIONS facetor::largestImageSide
#define STBI_MALLOC(size) allocateBlock(size)
#define STBI_REALLOC(block, size) resizeBlock(block, size)
#define STBI_FREE(block) std::free(block)
#define STBI_ONLY_PNG
#define STBI_ONLY_TGA
#define STBI_ONLY_JPEG
#define STBI_ONLY_GIF
#define STBI_NO_STDIO
#define STBI_NO_THREAD_LOCALS
#define STB_IMAGE_STATIC
#define STB_IMAGE_IMPLEMENTATION
#define STBI_WRITE_NO_STDIO
#define STB_IMAGE_WRITE_STATIC
#define STB_IMAGE_WRITE_IMPLEMENTATION
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-function"
#include <stb/stb_image.h>
#include <stb/stb_image_write.h>
#pragma GCC diagnostic pop

namespace facetor {

namespace {

constexpr int rgbaChannels = 4;

const stbi_uc* bytesOf(std::span<const std::byte> file)
{
    return reinterpret_cast<const stbi_uc*>(file.data());
}

void append(void* context, void* data, int size)
{
    const auto* bytes = static_cast<const std::byte*>(data);
    auto& file = *static_cast<Bytes*>(context);
    file.insert(file.end(), bytes, bytes + size);
}

} // namespace

std::optional<ImageInfo> stbInfo(std::span<const std::byte> file)
{
    int width = 0, height = 0, channels = 0;
    if (file.size() > largestImageFile ||
        !stbi_info_from_memory(bytesOf(file), static_cast<int>(file.size()), &width, &height,
                               &channels) ||
        width < 1 || height < 1)
        return std::nullopt;
    return ImageInfo{static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height),
                     channels % 2 == 0 ? 32 : 24};
}

std::vector<std::uint8_t> stbDecode(std::span<const std::byte> file)
{
    const std::optional<ImageInfo> info = stbInfo(file);
    if (!info) return {};
    const std::size_t size = std::size_t{info->width} * info->height * rgbaChannels;
    int width = 0, height = 0, channels = 0;
    struct Free {
        void operator()(void* pixels) const { stbi_image_free(pixels); }
    };
    if (stbi_is_16_bit_from_memory(bytesOf(file), static_cast<int>(file.size()))) {
        // The decoder itself would cut the lower bytes off instead of rounding.
        const std::unique_ptr<stbi_us, Free> wide(
            stbi_load_16_from_memory(bytesOf(file), static_cast<int>(file.size()), &width, &height,
                                     &channels, rgbaChannels));
        std::vector<std::uint8_t> rgba(wide ? size : 0);
        std::transform(wide.get(), wide.get() + rgba.size(), rgba.begin(), [](stbi_us component) {
            return static_cast<std::uint8_t>((component + 128u) / 257u);
        });
        return rgba;
    }
    const std::unique_ptr<stbi_uc, Free> pixels(stbi_load_from_memory(
        bytesOf(file), static_cast<int>(file.size()), &width, &height, &channels, rgbaChannels));
    if (!pixels) return {};
    return {pixels.get(), pixels.get() + size};
}

Bytes stbEncodePng(std::uint32_t width, std::uint32_t height, int channels,
                   std::span<const std::uint8_t> pixels)
{
    Bytes file;
    if (stbi_write_png_to_func(append, &file, static_cast<int>(width), static_cast<int>(height),
                               channels, pixels.data(), static_cast<int>(width) * channels) == 0)
        file.clear();
    return file;
}

Bytes stbEncodeTga(std::uint32_t width, std::uint32_t height, std::span<const std::uint8_t> rgba)
{
    Bytes file;
    if (stbi_write_tga_to_func(append, &file, static_cast<int>(width), static_cast<int>(height),
                               rgbaChannels, rgba.data()) == 0)
        file.clear();
    return file;
}

} // namespace facetor
