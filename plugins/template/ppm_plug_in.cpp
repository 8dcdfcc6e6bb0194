// An image plug-in to begin with: the binary form of the portable pixmap, a text header "P6 width
// height 255" and then red, green and blue of each pixel, a byte each. It needs nothing but the
// system; docs/plugins.md says what each function has to do.

#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <initializer_list>
#include <memory>

namespace {

struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, Closer>;

constexpr int largestSide = 4096; // what a file says is no size until it has been checked

struct Size {
    int width = 0, height = 0;
};

// What the editor was told last, and has made its buffer by. The file may be another one by the
// time its pixels are read.
Size told;

/// Opens a file and reads up to its pixels; null when it is no file of ours.
File openImage(const char* path, Size& size)
{
    File file(std::fopen(path, "rb"));
    int largestValue = 0;
    if (!file ||
        std::fscanf(file.get(), "P6 %5d %5d %3d", &size.width, &size.height, &largestValue) != 3 ||
        largestValue != 255 || std::fgetc(file.get()) == EOF)
        return nullptr;
    if (size.width < 1 || size.width > largestSide || size.height < 1 || size.height > largestSide)
        return nullptr;
    return file;
}

} // namespace

extern "C" {

int WINAPI scvCheckFileFormat(HINSTANCE, const char* path)
{
    Size size;
    return openImage(path, size) ? 1 : 0;
}

int WINAPI scvGetFileImageSize(HINSTANCE, const char* path, INT32* width, INT32* height)
{
    told = {};
    const File file = openImage(path, told);
    *width = told.width;
    *height = told.height;
    return file ? 0 : 1;
}

int WINAPI scvGetFileImageDepth(HINSTANCE, const char*)
{
    return 24;
}

int WINAPI scvGetFileImageBits(HINSTANCE, const char* path, void* buffer)
{
    Size size;
    const File file = openImage(path, size);
    if (!file || size.width != told.width || size.height != told.height) return 1;
    auto* pixel = static_cast<std::uint8_t*>(buffer);
    for (int i = 0; i < size.width * size.height; ++i, pixel += 4) {
        std::uint8_t rgb[3];
        if (std::fread(rgb, 1, sizeof rgb, file.get()) != sizeof rgb) return 1;
        for (int j = 0; j < 3; ++j) pixel[j] = rgb[2 - j];
        pixel[3] = 0;
    }
    return 0;
}

int WINAPI scvPutFileImageBits(HINSTANCE, const char* path, const void* pixels, const INT32* width,
                               const INT32* height, const INT32* depth)
{
    if (*depth != 16) return 1;
    File file(std::fopen(path, "wb"));
    if (!file) return 1;
    bool written = std::fprintf(file.get(), "P6 %d %d 255\n", *width, *height) > 0;
    const auto* texel = static_cast<const std::uint16_t*>(pixels);
    for (INT32 i = 0; i < *width * *height && written; ++i, ++texel)
        for (const int shift : {10, 5, 0}) {
            const int component = *texel >> shift & 31;
            written = written && std::fputc(component << 3 | component >> 2, file.get()) != EOF;
        }
    // The editor removes what a failure leaves behind.
    return std::fclose(file.release()) == 0 && written ? 0 : 1;
}

int WINAPI scvBeginCatalogSave(HINSTANCE)
{
    return 0;
}

int WINAPI scvEndCatalogSave(HINSTANCE)
{
    return 0;
}

} // extern "C"
