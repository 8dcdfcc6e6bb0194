// The exports of an image plug-in, the same for all of them; docs/plugins.md describes them. Each
// receives its own module first, which none needs.

#include "base/file.h"
#include "base/text.h"
#include "image/bitmap_conversion.h"
#include "image/bmp_codec.h"
#include "image/png_codec.h"
#include "image/tga_codec.h"
#include "images/plug_in_codec.h"

#include <windows.h>

#include <exception>
#include <string>
#include <string_view>
#include <utility>

namespace {

using namespace facetor;

/// What was told last, and of which file: the caller makes its buffer by it. Not the file's bytes,
/// which would stay in memory as long as the library.
struct Told {
    std::string path;
    std::optional<ImageInfo> info;
};
Told told;

/// Looks at a file anew.
Bytes lookAt(const char* path)
{
    told = {};
    std::optional<Bytes> bytes = readFile(path, largestImageFile);
    if (!bytes) return {};
    told = {path, plugInCodec.info(*bytes)};
    return std::move(*bytes);
}

const std::optional<ImageInfo>& infoOf(const char* path)
{
    if (told.path != path) (void)lookAt(path);
    return told.info;
}

/// What writes a file: the kind that its extension says, of those that can be written, and the
/// plug-in's own for every other name.
const ImageCodec& writerOf(const char* path)
{
    constexpr std::pair<std::string_view, const ImageCodec*> kinds[] = {
        {"bmp", &bmpCodec}, {"png", &pngCodec}, {"tga", &tgaCodec}};
    for (const auto& [extension, codec] : kinds)
        if (equalIgnoringCase(extensionOf(path), extension)) return *codec;
    return plugInCodec;
}

/// Keeps the library in the process from its first call on. The run-time linked into it takes a
/// thread-local index of the process and two handles when it is first used, and gives them back to
/// nobody: a program that loads and unloads the library for each file would run out of indices.
void stayLoaded()
{
    HMODULE self;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                       reinterpret_cast<LPCSTR>(&told), &self);
}

/// No exception leaves the module: memory may be short.
template <typename Action> int guarded(int failed, const Action& action)
{
    stayLoaded();
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
    return guarded(0, [&] {
        if (!path) return 0;
        (void)lookAt(path);
        return told.info ? 1 : 0;
    });
}

int WINAPI scvGetFileImageSize(HINSTANCE, const char* path, INT32* width, INT32* height)
{
    return guarded(1, [&] {
        if (!path || !width || !height) return 1;
        const auto& info = infoOf(path);
        *width = info ? static_cast<INT32>(info->width) : 0;
        *height = info ? static_cast<INT32>(info->height) : 0;
        return info ? 0 : 1;
    });
}

int WINAPI scvGetFileImageDepth(HINSTANCE, const char* path)
{
    return guarded(0, [&] {
        if (!path) return 0;
        const auto& info = infoOf(path);
        return info ? info->depth : 0;
    });
}

int WINAPI scvGetFileImageBits(HINSTANCE, const char* path, void* buffer)
{
    return guarded(1, [&] {
        if (!path || !buffer) return 1;
        const std::optional<ImageInfo> before = infoOf(path);
        const Bytes file = lookAt(path);
        // It may be another file by now, for which the buffer is too small.
        if (!before || told.info != before || !isDecodable(*before)) return 1;
        const auto [width, height, depth] = *before;
        const std::span to(static_cast<std::byte*>(buffer), imageBufferSize(width, height, depth));
        return plugInCodec.decode(file, to) ? 0 : 1;
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
        const Bytes file = writerOf(path).encode(image);
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
