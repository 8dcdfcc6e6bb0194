#include "dialogs/report_dialog.h"

#include "resources/resource_ids.h"
#include "ui/dialog.h"

namespace facetor {

namespace {

INT_PTR CALLBACK reportProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG) {
        const auto& text = *reinterpret_cast<const std::string*>(lParam);
        SendDlgItemMessageA(dialog, IDC_REPORT_TEXT, EM_LIMITTEXT, 0, 0); // as much as there is
        SetDlgItemTextA(dialog, IDC_REPORT_TEXT, text.c_str());
        SetFocus(GetDlgItem(dialog, IDOK)); // else the system selects the text
        return FALSE;
    }
    if (message != WM_COMMAND) return FALSE;
    const int control = LOWORD(wParam);
    if (control == IDC_REPORT_COPY) {
        SendDlgItemMessageA(dialog, IDC_REPORT_TEXT, EM_SETSEL, 0, -1);
        SendDlgItemMessageA(dialog, IDC_REPORT_TEXT, WM_COPY, 0, 0);
        SendMessageA(dialog, WM_NEXTDLGCTL,
                     reinterpret_cast<WPARAM>(GetDlgItem(dialog, IDC_REPORT_TEXT)), TRUE);
    }
    if (control == IDOK || control == IDCANCEL) EndDialog(dialog, control);
    return TRUE;
}

} // namespace

void showReport(HWND owner, const std::string& text)
{
    runDialog(owner, "IDD_REPORT", reportProcedure, reinterpret_cast<LPARAM>(&text));
}

} // namespace facetor
