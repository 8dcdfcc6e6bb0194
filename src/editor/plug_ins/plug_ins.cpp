#include "plug_ins/plug_ins.h"

#include "base/text.h"
#include "image/bitmap_conversion.h"

#include <algorithm>
#include <array>

namespace facetor {

namespace {

// The exports; docs/plugins.md describes them. Each takes its own module first.
using CheckFileFormat = int(WINAPI*)(HMODULE, const char* path);
using GetFileImageSize = int(WINAPI*)(HMODULE, const char* path, INT32* width, INT32* height);
using GetFileImageDepth = int(WINAPI*)(HMODULE, const char* path);
using GetFileImageBits = int(WINAPI*)(HMODULE, const char* path, void* buffer);
using PutFileImageBits = int(WINAPI*)(HMODULE, const char* path, const void* pixels,
                                      const INT32* width, const INT32* height, const INT32* depth);

constexpr char checkName[] = "scvCheckFileFormat";
constexpr char sizeName[] = "scvGetFileImageSize";
constexpr char depthName[] = "scvGetFileImageDepth";
constexpr char bitsName[] = "scvGetFileImageBits";
constexpr char putName[] = "scvPutFileImageBits";
constexpr const char* readExports[] = {checkName, sizeName, depthName, bitsName};
constexpr const char* writeExports[] = {putName, "scvBeginCatalogSave", "scvEndCatalogSave"};

constexpr int textureDepth = 16; ///< bits of a texel

/// The plug-in's strings, and the bytes with the NUL that are read of each.
enum StringId : UINT { capabilityId = 1, extensionId, descriptionId, depthsId };
constexpr std::size_t shortSize = 16, longSize = 32, depthsSizeAtExport = 64;

/// One of a plug-in's strings; none when it has none.
template <std::size_t size>
std::optional<std::string> stringOf(const UniqueModule& module, StringId id)
{
    std::array<char, size> text{};
    if (LoadStringA(module.get(), id, text.data(), static_cast<int>(size)) <= 0)
        return std::nullopt;
    return text.data();
}

/// Gives a file another name in its folder, one that no file has, with the same extension; empty
/// when it cannot be moved.
std::string moveAside(const std::string& path)
{
    constexpr unsigned mostAttempts = 100;
    const std::string folder = path.substr(0, path.find_last_of("\\/") + 1);
    const unsigned first = GetTickCount();
    for (unsigned i = 0; i < mostAttempts; ++i) {
        std::string name =
            folder + "~" + std::to_string(first + i) + "." + std::string(extensionOf(path));
        if (MoveFileExA(path.c_str(), name.c_str(), 0)) return name;
        if (GetLastError() != ERROR_ALREADY_EXISTS && GetLastError() != ERROR_FILE_EXISTS) break;
    }
    return {};
}

/// Lets `write` make a file. What stands under its name already comes back unless `write` succeeds
/// and leaves a file there. False, before anything is touched, for what a file must not replace.
template <typename Write> bool replaceBy(const std::string& path, const Write& write)
{
    const auto attributesOf = [&] { return GetFileAttributesA(path.c_str()); };
    const DWORD before = attributesOf();
    const bool exists = before != INVALID_FILE_ATTRIBUTES;
    std::string aside;
    if (exists) {
        if (before & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)) return false;
        aside = moveAside(path);
        if (aside.empty()) return false;
    }
    const bool written = write() && attributesOf() != INVALID_FILE_ATTRIBUTES;
    if (!written) DeleteFileA(path.c_str());
    if (!aside.empty() && written) DeleteFileA(aside.c_str());
    if (!aside.empty() && !written)
        MoveFileExA(aside.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING);
    return written;
}

bool hasExports(const UniqueModule& module, std::span<const char* const> names)
{
    return std::ranges::all_of(
        names, [&](const char* name) { return GetProcAddress(module.get(), name) != nullptr; });
}

Message registerLibrary(PlugIns& plugIns, const std::string& file)
{
    const UniqueModule module = loadModule(plugIns.folder + "\\" + file);
    if (!module) return Message::noPlugIn;
    const auto text = stringOf<shortSize>(module, capabilityId);
    const auto capability = text ? parsePlugInCapability(*text) : std::nullopt;
    if (!capability) return Message::badPlugIn;
    if (capability->effect) return Message::none;
    if (capability->read && !hasExports(module, readExports)) return Message::badPlugIn;
    if (capability->write && !hasExports(module, writeExports)) return Message::badPlugIn;
    const auto extension = stringOf<shortSize>(module, extensionId);
    const auto description = stringOf<longSize>(module, descriptionId);
    if (!extension || !description || !stringOf<longSize>(module, depthsId))
        return Message::badPlugIn;
    return registerPlugIn(plugIns, {file, *extension, *description}, *capability);
}

/// The names of a folder's libraries, sorted.
std::vector<std::string> librariesOf(const std::string& folder)
{
    std::vector<std::string> names;
    if (folder.empty()) return names; // not those of the drive's root
    WIN32_FIND_DATAA found{};
    const HANDLE search = FindFirstFileA((folder + "\\*.dll").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return names;
    do {
        if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
            names.emplace_back(found.cFileName);
    } while (FindNextFileA(search, &found));
    FindClose(search);
    std::ranges::sort(names, [](const std::string& a, const std::string& b) {
        return lstrcmpiA(a.c_str(), b.c_str()) < 0;
    });
    return names;
}

} // namespace

Message scanPlugInFolder(PlugIns& plugIns, const PlugInReport& report)
{
    if (const Message message = createPlugInLists(plugIns); message != Message::none)
        return message;
    for (const std::string& file : librariesOf(plugIns.folder))
        if (const Message message = registerLibrary(plugIns, file); message != Message::none)
            report(message, file);
    finishPlugInFilters(plugIns);
    const bool any = !plugIns.import.files.empty() || !plugIns.export_.files.empty();
    return any ? Message::none : Message::noPlugIn;
}

const UniqueModule& loadPlugIn(LoadedPlugIns& loaded, const std::string& path)
{
    UniqueModule& module = loaded[path];
    if (!module) module = loadModule(path);
    return module;
}

ImageSource imageSource(const UniqueModule& plugIn, const std::string& path)
{
    if (!plugIn) return {};
    const HMODULE module = plugIn.get();
    ImageSource source;
    if (const auto check = exportOf<CheckFileFormat>(plugIn, checkName))
        source.check = [=] { return check(module, path.c_str()) != 0; };
    // What it returns means nothing; the sizes tell.
    if (const auto size = exportOf<GetFileImageSize>(plugIn, sizeName))
        source.size = [=](INT32& width, INT32& height) {
            (void)size(module, path.c_str(), &width, &height);
        };
    if (const auto depth = exportOf<GetFileImageDepth>(plugIn, depthName))
        source.depth = [=] { return depth(module, path.c_str()); };
    if (const auto bits = exportOf<GetFileImageBits>(plugIn, bitsName))
        source.bits = [=](std::span<std::byte> buffer) {
            return bits(module, path.c_str(), buffer.data()) == 0;
        };
    return source;
}

Message exportImage(const UniqueModule& plugIn, const std::string& path, std::uint16_t width,
                    std::uint16_t height, std::span<const Rgb555> texels)
{
    const auto put = exportOf<PutFileImageBits>(plugIn, putName);
    if (!plugIn || !put) return Message::noPlugIn;
    const auto depths = stringOf<depthsSizeAtExport>(plugIn, depthsId);
    if (!depths || !listsDepth(*depths, textureDepth)) return Message::colourModeNotSupported;
    PageArray<Rgb555> copy; // a plug-in may write into what it is given
    if (!copy.allocate(texels.size())) return Message::outOfMemory;
    std::ranges::copy(texels, copy.begin());
    const INT32 columns = width, rows = height, depth = textureDepth;
    const bool written = replaceBy(path, [&] {
        return put(plugIn.get(), path.c_str(), copy.data(), &columns, &rows, &depth) == 0;
    });
    return written ? Message::none : Message::cannotCreateFile;
}

} // namespace facetor
