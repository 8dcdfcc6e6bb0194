#include "dialogs/screen_dialog.h"

#include "resources/resource_ids.h"
#include "state/editor.h"
#include "ui/dialog.h"
#include "ui/window_data.h"
#include "windows/model_view_window.h"

#include <windows.h>

#include <commctrl.h>

#include <string>

namespace facetor {

namespace {

constexpr int sliderPage = 3;
constexpr int degreesPerPosition = 10;

int sliderOf(HWND dialog)
{
    return static_cast<int>(SendDlgItemMessageA(dialog, IDC_SCREEN_ANGLE, TBM_GETPOS, 0, 0));
}

/// Writes the angle behind the "=" of the label.
void showAngle(HWND dialog)
{
    const HWND label = GetDlgItem(dialog, IDC_SCREEN_LABEL);
    const std::string text = windowText(label);
    const int degrees = sliderOf(dialog) * degreesPerPosition;
    SetWindowTextA(label,
                   (text.substr(0, text.find('=')) + "= " + std::to_string(degrees)).c_str());
}

void fillDialog(HWND dialog, const View& view)
{
    CheckRadioButton(dialog, IDC_SCREEN_PARALLEL, IDC_SCREEN_PERSPECTIVE,
                     view.perspective ? IDC_SCREEN_PERSPECTIVE : IDC_SCREEN_PARALLEL);
    const HWND slider = GetDlgItem(dialog, IDC_SCREEN_ANGLE);
    SendMessageA(slider, TBM_SETRANGE, FALSE, MAKELPARAM(leastSliderPosition, mostSliderPosition));
    SendMessageA(slider, TBM_SETPAGESIZE, 0, sliderPage);
    SendMessageA(slider, TBM_SETLINESIZE, 0, 1);
    SendMessageA(slider, TBM_SETPOS, TRUE, sliderPosition(view.viewAngle));
    showAngle(dialog);
}

void takeDialog(HWND dialog, View& view)
{
    view.viewAngle = viewAngleOf(sliderOf(dialog));
    view.perspective = IsDlgButtonChecked(dialog, IDC_SCREEN_PERSPECTIVE) == BST_CHECKED;
}

/// Lets the view show what is set, before it is decided.
void preview(HWND dialog)
{
    takeDialog(dialog, theEditor().view);
    requestRedraw(theEditor());
}

void onCommand(HWND dialog, int control)
{
    switch (control) {
    case IDC_SCREEN_PARALLEL:
    case IDC_SCREEN_PERSPECTIVE: return preview(dialog);
    case IDOK: takeDialog(dialog, theEditor().view); [[fallthrough]];
    case IDCANCEL: EndDialog(dialog, control); return;
    default: return;
    }
}

INT_PTR CALLBACK screenProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM)
{
    switch (message) {
    case WM_INITDIALOG: fillDialog(dialog, theEditor().view); return TRUE;
    case WM_HSCROLL:
        showAngle(dialog);
        preview(dialog);
        return TRUE;
    case WM_COMMAND: onCommand(dialog, LOWORD(wParam)); return TRUE;
    default: return FALSE;
    }
}

} // namespace

void showScreenDialog(Editor& editor)
{
    const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_BAR_CLASSES};
    InitCommonControlsEx(&classes);
    const Angle angle = editor.view.viewAngle;
    const bool perspective = editor.view.perspective;
    if (runDialog(editor.mainWindow, "IDD_SCREEN", screenProcedure) != IDOK) {
        editor.view.viewAngle = angle;
        editor.view.perspective = perspective;
    }
    requestRedraw(editor);
}

} // namespace facetor
