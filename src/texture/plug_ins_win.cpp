#include "texture/plug_ins_win.h"

#include "base/text.h"
#include "texture/bitmap_conversion.h"
#include "ui/module_win.h"

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

/// A name that no file has, in the folder of a path and with its extension.
std::string nameBeside(const std::string& path)
{
    const std::string folder = path.substr(0, path.find_last_of("\\/") + 1);
    std::string name;
    unsigned number = GetTickCount();
    do name = folder + "~" + std::to_string(number++) + "." + std::string(extensionOf(path));
    while (GetFileAttributesA(name.c_str()) != INVALID_FILE_ATTRIBUTES);
    return name;
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

/// What a plug-in says about a file before its pixels are read.
struct FileAnswers {
    INT32 width = 0, height = 0;
    int depth = 0;
};

/// Asks a plug-in about a file, and refuses what it answers unless a texture can be made of it.
std::optional<InputFault> askAbout(const UniqueModule& module, const std::string& path,
                                   FileAnswers& answers)
{
    const auto check = exportOf<CheckFileFormat>(module, checkName);
    const auto size = exportOf<GetFileImageSize>(module, sizeName);
    const auto depth = exportOf<GetFileImageDepth>(module, depthName);
    // Without them the library is no longer the one that was registered.
    if (!check || !size || !depth) return InputFault{Message::noPlugIn};
    if (check(module.get(), path.c_str()) == 0) return InputFault{Message::formatNotSupported};
    (void)size(module.get(), path.c_str(), &answers.width, &answers.height); // means nothing
    if (const auto fault = textureSizeFault(answers.width, answers.height)) return fault;
    answers.depth = depth(module.get(), path.c_str());
    if (imageBufferSize(static_cast<std::uint32_t>(answers.width),
                        static_cast<std::uint32_t>(answers.height), answers.depth) == 0)
        return InputFault{Message::colourModeNotSupported};
    return std::nullopt;
}

/// The image buffer that a plug-in fills.
std::optional<InputFault> readBuffer(const std::string& plugIn, const std::string& path,
                                     FileAnswers& answers, PageArray<std::byte>& buffer)
{
    const UniqueModule module = loadModule(plugIn);
    const auto bits = exportOf<GetFileImageBits>(module, bitsName);
    if (!module || !bits) return InputFault{Message::noPlugIn};
    if (const auto fault = askAbout(module, path, answers)) return fault;
    if (!buffer.allocate(imageBufferSize(static_cast<std::uint32_t>(answers.width),
                                         static_cast<std::uint32_t>(answers.height),
                                         answers.depth)))
        return InputFault{Message::outOfMemory};
    if (bits(module.get(), path.c_str(), buffer.data()) != 0)
        return InputFault{Message::cannotOpenFile};
    return std::nullopt;
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

ImportedImage importImage(const std::string& plugIn, const std::string& path,
                          Rgb555 transparentColour)
{
    ImportedImage image;
    FileAnswers answers;
    PageArray<std::byte> buffer;
    image.fault = readBuffer(plugIn, path, answers, buffer);
    if (image.fault) return image;
    image.width = static_cast<std::uint16_t>(answers.width);
    image.height = static_cast<std::uint16_t>(answers.height);
    if (!image.pixels.allocate(std::size_t{image.width} * image.height)) {
        image.fault = InputFault{Message::outOfMemory};
        return image;
    }
    convertImageBuffer({buffer.data(), buffer.size()}, image.width, answers.depth,
                       transparentColour, {image.pixels.data(), image.pixels.size()});
    return image;
}

Message checkImage(const std::string& plugIn, const std::string& path)
{
    const UniqueModule module = loadModule(plugIn);
    const auto check = exportOf<CheckFileFormat>(module, checkName);
    if (!module || !check) return Message::noPlugIn;
    return check(module.get(), path.c_str()) != 0 ? Message::none : Message::formatNotSupported;
}

Message exportImage(const std::string& plugIn, const std::string& path, std::uint16_t width,
                    std::uint16_t height, std::span<const Rgb555> texels)
{
    const UniqueModule module = loadModule(plugIn);
    const auto put = exportOf<PutFileImageBits>(module, putName);
    if (!module || !put) return Message::noPlugIn;
    const auto depths = stringOf<depthsSizeAtExport>(module, depthsId);
    if (!depths || !listsDepth(*depths, textureDepth)) return Message::colourModeNotSupported;
    PageArray<Rgb555> copy; // a plug-in may write into what it is given
    if (!copy.allocate(texels.size())) return Message::outOfMemory;
    std::ranges::copy(texels, copy.begin());
    const INT32 columns = width, rows = height, depth = textureDepth;
    // Beside the file that is wanted: one that stands there already outlives a failure.
    const std::string written = nameBeside(path);
    if (put(module.get(), written.c_str(), copy.data(), &columns, &rows, &depth) == 0 &&
        MoveFileExA(written.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING))
        return Message::none;
    DeleteFileA(written.c_str());
    return Message::cannotCreateFile;
}

} // namespace facetor
