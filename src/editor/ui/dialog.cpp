#include "ui/dialog.h"

#include "ui/window_data.h"

namespace facetor {

INT_PTR runDialog(HWND owner, const char* templateName, DLGPROC procedure, LPARAM argument)
{
    return DialogBoxParamA(instanceOf(owner), templateName, owner, procedure, argument);
}

void keepDialogState(HWND dialog, LPARAM argument)
{
    SetWindowLongPtrA(dialog, DWLP_USER, argument);
}

} // namespace facetor
