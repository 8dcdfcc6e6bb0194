// The exports of an image plug-in, the same for all of them; docs/plugins.md describes them. Each
// receives its own module first, which none needs.

#include "base/file.h"
#include "images/plug_in_codec.h"
#include "texture/bitmap_conversion.h"

#include <windows.h>

#include <exception>
#include <string>

namespace {

using namespace facetor;

/// The file that was looked at last. It is kept from one call to the next, so that size, depth and
/// pixels are of one and the same file whatever happens to it meanwhile: the caller has made its
/// buffer by what it was told first.
struct KeptFile {
    std::string path;
    Bytes bytes;
    std::optional<ImageInfo> info;
};
KeptFile kept;

enum class Freshness { readAgain, asKept };

const KeptFile& fileOf(const char* path, Freshness freshness)
{
    if (freshness == Freshness::asKept && kept.path == path) return kept;
    kept = {};
    std::optional<Bytes> bytes = readFile(path, largestImageFile);
    if (!bytes) return kept;
    kept.path = path;
    kept.bytes = std::move(*bytes);
    kept.info = plugInCodec.info(kept.bytes);
    return kept;
}

/// No exception leaves the module: memory may be short.
template <typename Action> int guarded(int failed, const Action& action)
{
    try {
        return action();
    } catch (const std::exception&) {
        return failed;
    }
}

} // namespace

extern "C" {

int WINAPI scvCheckFileFormat(HINSTANCE, const char* path)
{
    return guarded(0, [&] { return path && fileOf(path, Freshness::readAgain).info ? 1 : 0; });
}

int WINAPI scvGetFileImageSize(HINSTANCE, const char* path, INT32* width, INT32* height)
{
    return guarded(1, [&] {
        if (!path || !width || !height) return 1;
        const KeptFile& file = fileOf(path, Freshness::asKept);
        *width = file.info ? static_cast<INT32>(file.info->width) : 0;
        *height = file.info ? static_cast<INT32>(file.info->height) : 0;
        return file.info ? 0 : 1;
    });
}

int WINAPI scvGetFileImageDepth(HINSTANCE, const char* path)
{
    return guarded(0, [&] {
        if (!path) return 0;
        const KeptFile& file = fileOf(path, Freshness::asKept);
        return file.info ? file.info->depth : 0;
    });
}

int WINAPI scvGetFileImageBits(HINSTANCE, const char* path, void* buffer)
{
    return guarded(1, [&] {
        if (!path || !buffer) return 1;
        const KeptFile& file = fileOf(path, Freshness::asKept);
        if (!file.info || !isDecodable(*file.info)) return 1;
        const auto [width, height, depth] = *file.info;
        const std::span to(static_cast<std::byte*>(buffer), imageBufferSize(width, height, depth));
        return plugInCodec.decode(file.bytes, to) ? 0 : 1;
    });
}

int WINAPI scvPutFileImageBits(HINSTANCE, const char* path, const void* pixels, const INT32* width,
                               const INT32* height, const INT32* depth)
{
    return guarded(1, [&] {
        constexpr INT32 largest = largestImageSide;
        if (!plugInCodec.encode || !path || !pixels || !width || !height || !depth || *depth != 16)
            return 1;
        if (*width < 1 || *width > largest || *height < 1 || *height > largest) return 1;
        TexelImage image{
            static_cast<std::uint32_t>(*width), static_cast<std::uint32_t>(*height), {}};
        image.texels = {static_cast<const Rgb555*>(pixels),
                        std::size_t{image.width} * image.height};
        const Bytes file = plugInCodec.encode(image);
        return !file.empty() && writeFile(path, file) == Message::none ? 0 : 1;
    });
}

/// Nobody calls these two; a plug-in that writes has to have them.
int WINAPI scvBeginCatalogSave(HINSTANCE)
{
    return 0;
}

int WINAPI scvEndCatalogSave(HINSTANCE)
{
    return 0;
}

} // extern "C"
