#include "dialogs/texture_fields.h"

#include "state/editor.h"
#include "ui/number_field.h"
#include "ui/window_data.h"

namespace facetor {

void showFault(Editor& editor, HWND dialog, const InputFault& fault)
{
    setAlertTexts(editor.alerts, loadCatalogueText(editor.mainWindow, fault.word1),
                  loadCatalogueText(editor.mainWindow, fault.word2));
    alert(editor.alerts, dialog, fault.message, AlertStyle::exclamation);
}

void enableField(HWND dialog, int field, BOOL enabled)
{
    const HWND window = GetDlgItem(dialog, field);
    EnableWindow(window, enabled);
    EnableWindow(GetWindow(window, GW_HWNDPREV), enabled);
}

std::optional<std::int32_t> readField(Editor& editor, HWND dialog, int field, Word name)
{
    const auto number = numberIn(dialog, field);
    if (!number && !IsWindowEnabled(GetDlgItem(dialog, field))) return 0;
    if (!number) {
        showFault(editor, dialog, {Message::dataError, name});
        focusField(dialog, field);
    }
    return number;
}

void fillExtent(HWND dialog, const ExtentControls& controls, const ExtentChoice& choice)
{
    CheckDlgButton(dialog, choice.useExtent ? controls.extent : controls.current, BST_CHECKED);
    setNumber(dialog, controls.from, choice.extent.first);
    setNumber(dialog, controls.to, choice.extent.last);
    enableExtent(dialog, controls);
}

void enableExtent(HWND dialog, const ExtentControls& controls)
{
    const BOOL chosen = IsDlgButtonChecked(dialog, controls.extent) == BST_CHECKED;
    enableField(dialog, controls.from, chosen);
    enableField(dialog, controls.to, chosen);
}

std::optional<SlotExtent> readExtent(Editor& editor, HWND dialog, int from, int to)
{
    const auto first = readField(editor, dialog, from, Word::fieldFrom);
    if (!first) return std::nullopt;
    const auto last = readField(editor, dialog, to, Word::fieldTo);
    if (!last) return std::nullopt;
    const SlotExtent extent{*first, *last};
    const auto fault = extentFault(extent);
    if (!fault) return extent;
    showFault(editor, dialog, *fault);
    return std::nullopt;
}

bool takeExtent(Editor& editor, HWND dialog, const ExtentControls& controls, ExtentChoice& choice)
{
    const auto extent = readExtent(editor, dialog, controls.from, controls.to);
    if (!extent) return false;
    choice = {*extent, IsDlgButtonChecked(dialog, controls.extent) == BST_CHECKED};
    return true;
}

} // namespace facetor
