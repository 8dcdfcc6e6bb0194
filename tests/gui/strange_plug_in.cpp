#include <windows.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

/// What the module is to answer stands in the file's name: "width,height,depth,result of the
/// bits.odd".
std::array<int, 4> answersFor(const char* path)
{
    std::array<int, 4> answers{};
    const char* name = std::strrchr(path, '\\');
    name = name ? name + 1 : path;
    for (int& answer : answers) {
        char* end = nullptr;
        answer = static_cast<int>(std::strtol(name, &end, 10));
        name = *end ? end + 1 : end;
    }
    return answers;
}

} // namespace

/// Stands for a plug-in that another has written, with answers of every kind.
extern "C" {

int WINAPI scvCheckFileFormat(HINSTANCE, const char* path)
{
    const std::size_t length = std::strlen(path);
    return length > 4 && std::strcmp(path + length - 4, ".odd") == 0 ? -1 : 0;
}

int WINAPI scvGetFileImageSize(HINSTANCE, const char* path, INT32* width, INT32* height)
{
    *width = answersFor(path)[0];
    *height = answersFor(path)[1];
    return 77; // has no meaning
}

int WINAPI scvGetFileImageDepth(HINSTANCE, const char* path)
{
    return answersFor(path)[2];
}

int WINAPI scvGetFileImageBits(HINSTANCE, const char* path, void*)
{
    return answersFor(path)[3];
}

/// Writes the name that it was given. Fails afterwards when the first texel is odd.
int WINAPI scvPutFileImageBits(HINSTANCE, const char* path, const void* pixels, const INT32*,
                               const INT32*, const INT32*)
{
    std::FILE* const file = std::fopen(path, "wb");
    if (!file) return 1;
    std::fputs(path, file);
    std::fclose(file);
    return *static_cast<const std::uint16_t*>(pixels) & 1;
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
