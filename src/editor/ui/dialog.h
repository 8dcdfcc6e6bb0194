#pragma once

#include <windows.h>

namespace facetor {

/// Runs a modal dialog of the program over `owner` and returns what it ends with; -1 when the
/// system refuses it. `argument` reaches the procedure with WM_INITDIALOG.
INT_PTR runDialog(HWND owner, const char* templateName, DLGPROC procedure, LPARAM argument = 0);

/// Keeps what the procedure was given with WM_INITDIALOG, a pointer to the dialog's state.
void keepDialogState(HWND dialog, LPARAM argument);

/// The state that keepDialogState() was given.
template <typename State> State& dialogState(HWND dialog)
{
    return *reinterpret_cast<State*>(GetWindowLongPtrA(dialog, DWLP_USER));
}

} // namespace facetor
