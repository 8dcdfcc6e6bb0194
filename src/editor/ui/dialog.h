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

// Dialogs whose size the user can change.

/// Makes a control as wide as its dialog leaves, with the margin on its left on its right, too.
void stretchAcross(HWND dialog, int control);
/// The same, and as high, with that margin below.
void stretchToEnd(HWND dialog, int control);

/// For the message that asks for limits: a client area of at least this size, in dialog units.
void limitClientSize(HWND dialog, LONG leastWidth, LONG leastHeight, MINMAXINFO& limits);

} // namespace facetor
