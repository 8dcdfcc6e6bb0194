#include "ui/module.h"

namespace facetor {

UniqueModule loadModule(const std::string& path)
{
    DWORD errorMode = 0;
    SetThreadErrorMode(SEM_FAILCRITICALERRORS, &errorMode);
    UniqueModule module(LoadLibraryExA(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
    SetThreadErrorMode(errorMode, nullptr);
    return module;
}

} // namespace facetor
