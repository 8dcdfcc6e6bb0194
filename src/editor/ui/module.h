#pragma once

#include "ui/handles.h"

#include <windows.h>

#include <string>

namespace facetor {

using UniqueModule = UniqueHandle<HMODULE, FreeLibrary>;

/// Loads a module by its full path, so that none of the same name elsewhere is taken; what it needs
/// itself is searched for from its own folder first. Null when it is missing, no module, or one of
/// another architecture; the system shows no message of its own about it.
UniqueModule loadModule(const std::string& path);

/// An export of a module, by its name or by MAKEINTRESOURCEA of its number; null when it is
/// missing. Needs the function type that the module's interface gives it.
template <typename Function> Function exportOf(const UniqueModule& module, const char* name)
{
    // By way of void*: the compiler rightly doubts a cast between kinds of functions.
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module.get(), name)));
}

} // namespace facetor
