#include "get_color/colour_dialog.h"
#include "get_color/recent_memory_win.h"

#include <windows.h>

namespace {

HINSTANCE thisModule()
{
    static const char inModule = 0;
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                           GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       &inModule, &module);
    return module;
}

} // namespace

/// The module's one export, number 1; docs/colour-module.md describes it.
extern "C" WORD WINAPI GetColor(HWND owner, WORD colour)
{
    facetor::RecentMemory recent;
    return facetor::chooseColour(thisModule(), owner, colour, recent.colours());
}
