#include "exchange/scene.h"

#include "model/model.h"

#include <algorithm>

namespace facetor {

bool goesOn(const ImportProgress& progress, double done, Reason& reason)
{
    if (!progress || progress(done)) return true;
    reason.text = "it was stopped";
    return false;
}

std::string_view withoutMark(std::string_view text)
{
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    if (text.starts_with(mark)) text.remove_prefix(mark.size());
    return text;
}

std::string tooManyFaces(std::size_t count)
{
    return std::to_string(count) + " faces; at most " + std::to_string(polygonCapacity) +
           " polygons fit";
}

bool staysBelow(std::string_view name)
{
    if (name.empty() || name.front() == '/' || name.front() == '\\' ||
        name.find(':') != std::string_view::npos || name.find('\0') != std::string_view::npos)
        return false; // a colon ends a drive or the scheme of a URL
    while (!name.empty()) {
        const std::size_t end = name.find_first_of("/\\");
        if (name.substr(0, end) == "..") return false;
        name.remove_prefix(end == std::string_view::npos ? name.size() : end + 1);
    }
    return true;
}

std::uint32_t addPicture(Scene& scene, const std::string& name, std::uint32_t line,
                         const AssetReader& assets)
{
    const auto known = std::find_if(scene.pictures.begin(), scene.pictures.end(),
                                    [&](const ScenePicture& p) { return p.name == name; });
    if (known != scene.pictures.end())
        return known->pixels.rgba.empty()
                   ? noIndex
                   : static_cast<std::uint32_t>(known - scene.pictures.begin());
    ScenePicture& picture = scene.pictures.emplace_back();
    picture.name = name;
    std::string reason;
    const std::optional<Bytes> file = assets(name, reason);
    if (file && decodePicture(picture.pixels, *file, reason))
        return static_cast<std::uint32_t>(scene.pictures.size() - 1);
    scene.notes.push_back({line, "picture \"" + name + "\": " + reason});
    return noIndex;
}

} // namespace facetor
