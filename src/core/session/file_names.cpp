#include "session/file_names.h"

#include "base/text.h"

namespace facetor {

std::string modelSavePath(std::string_view path)
{
    return std::string(cutExtension(path)) + ".mx3";
}

std::string textureSavePath(std::string_view path)
{
    return std::string(cutExtension(path)) + ".mxt";
}

std::string fileNameOf(std::string_view path)
{
    return std::string(path.substr(path.find_last_of("\\/") + 1));
}

} // namespace facetor
