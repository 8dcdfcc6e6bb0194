#include "ui/answer_dialog.h"
#include "ui/dialog.h"

#include "base/text.h"
#include "resources/resource_ids.h"
#include "ui/window_data.h"

namespace facetor {

namespace {

struct AnswerDialog {
    HWND owner;
    Word title;
    const std::string& prompt;
    std::string text;
    std::size_t longest;
};

void fillDialog(HWND dialog, const AnswerDialog& state)
{
    SetWindowTextA(dialog, loadCatalogueText(state.owner, state.title).c_str());
    SetDlgItemTextA(dialog, IDC_ANSWER_PROMPT, state.prompt.c_str());
    SendDlgItemMessageA(dialog, IDC_ANSWER_TEXT, EM_LIMITTEXT, state.longest, 0);
    SetDlgItemTextA(dialog, IDC_ANSWER_TEXT, state.text.c_str());
}

INT_PTR CALLBACK answerProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG) {
        keepDialogState(dialog, lParam);
        fillDialog(dialog, *reinterpret_cast<const AnswerDialog*>(lParam));
        return TRUE;
    }
    if (message != WM_COMMAND) return FALSE;
    auto& state = dialogState<AnswerDialog>(dialog);
    // The field's own limit counts characters, and lets a longer text in that was there before.
    if (LOWORD(wParam) == IDOK)
        state.text = cutText(windowText(GetDlgItem(dialog, IDC_ANSWER_TEXT)), state.longest);
    if (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL) EndDialog(dialog, LOWORD(wParam));
    return TRUE;
}

} // namespace

std::optional<std::string> askAnswer(HWND owner, Word title, const std::string& prompt,
                                     const std::string& text, std::size_t longest)
{
    AnswerDialog state{owner, title, prompt, text, longest};
    if (runDialog(owner, "IDD_ANSWER", answerProcedure, reinterpret_cast<LPARAM>(&state)) != IDOK)
        return std::nullopt;
    return state.text;
}

} // namespace facetor
