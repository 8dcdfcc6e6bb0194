#include "app/crash.h"

#include "state/editor.h"

#include <windows.h>

#include <atomic>
#include <exception>

namespace facetor {

namespace {

std::atomic<bool> armed = false;
LPTOP_LEVEL_EXCEPTION_FILTER filterBefore = nullptr;
std::terminate_handler terminateBefore = nullptr;

void keepOnce()
{
    if (!armed.exchange(false)) return; // a fault in here ends the process at once
    Editor& editor = theEditor();
    if (isRunning(editor)) keepAtCrash(editor.keeper, editor.document, editor.view);
}

LONG WINAPI onFault(EXCEPTION_POINTERS* fault)
{
    keepOnce();
    return filterBefore ? filterBefore(fault) : EXCEPTION_CONTINUE_SEARCH;
}

[[noreturn]] void onTerminate()
{
    keepOnce();
    if (terminateBefore) terminateBefore();
    TerminateProcess(GetCurrentProcess(), 3);
    for (;;) Sleep(INFINITE);
}

} // namespace

CrashGuard::CrashGuard()
{
    armed = true;
    filterBefore = SetUnhandledExceptionFilter(onFault);
    terminateBefore = std::set_terminate(onTerminate);
}

CrashGuard::~CrashGuard()
{
    armed = false;
    SetUnhandledExceptionFilter(filterBefore);
    std::set_terminate(terminateBefore);
}

} // namespace facetor
