#include "ui/dialog.h"

#include "ui/window_data.h"

#include <algorithm>

namespace facetor {

namespace {

enum class Stretch { across, toEnd };

void stretch(HWND dialog, int control, Stretch how)
{
    const HWND window = GetDlgItem(dialog, control);
    RECT client{}, place{};
    GetClientRect(dialog, &client);
    GetWindowRect(window, &place);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&place), 2);
    const LONG height =
        how == Stretch::toEnd ? client.bottom - place.top - place.left : place.bottom - place.top;
    SetWindowPos(window, nullptr, 0, 0, std::max(0L, client.right - 2 * place.left),
                 std::max(0L, height), SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

} // namespace

INT_PTR runDialog(HWND owner, const char* templateName, DLGPROC procedure, LPARAM argument)
{
    return DialogBoxParamA(instanceOf(owner), templateName, owner, procedure, argument);
}

void keepDialogState(HWND dialog, LPARAM argument)
{
    SetWindowLongPtrA(dialog, DWLP_USER, argument);
}

void stretchAcross(HWND dialog, int control)
{
    stretch(dialog, control, Stretch::across);
}

void stretchToEnd(HWND dialog, int control)
{
    stretch(dialog, control, Stretch::toEnd);
}

void limitClientSize(HWND dialog, LONG leastWidth, LONG leastHeight, MINMAXINFO& limits)
{
    RECT least{0, 0, leastWidth, leastHeight};
    MapDialogRect(dialog, &least);
    AdjustWindowRectEx(&least, static_cast<DWORD>(GetWindowLongPtrA(dialog, GWL_STYLE)),
                       GetMenu(dialog) != nullptr,
                       static_cast<DWORD>(GetWindowLongPtrA(dialog, GWL_EXSTYLE)));
    limits.ptMinTrackSize = {least.right - least.left, least.bottom - least.top};
}

} // namespace facetor
