#include "dialogs/transform_dialogs.h"

#include "dialogs/texture_fields.h"
#include "resources/resource_ids.h"
#include "state/editor.h"
#include "ui/dialog.h"
#include "ui/number_field.h"

#include <windows.h>

namespace facetor {

namespace {

/// One of the three dialogs: how it is filled, what its buttons do beside the usual, and how it is
/// taken, which is refused with a message when something is wrong.
struct TransformDialog {
    const char* templateName;
    ExtentControls extent;
    void (*fill)(Editor& editor, HWND dialog);
    void (*press)(HWND dialog, int button);
    bool (*take)(Editor& editor, HWND dialog);
};

void showCheck(HWND dialog, int button, bool checked)
{
    CheckDlgButton(dialog, button, checked ? BST_CHECKED : BST_UNCHECKED);
}

bool isChecked(HWND dialog, int button)
{
    return IsDlgButtonChecked(dialog, button) == BST_CHECKED;
}

constexpr ExtentControls flipExtent{IDC_FLIP_CURRENT, IDC_FLIP_EXTENT, IDC_FLIP_FROM, IDC_FLIP_TO};
constexpr ExtentControls turnExtent{IDC_TURN_CURRENT, IDC_TURN_EXTENT, IDC_TURN_FROM, IDC_TURN_TO};
constexpr ExtentControls sizeExtent{IDC_SIZE_CURRENT, IDC_SIZE_EXTENT, IDC_SIZE_FROM, IDC_SIZE_TO};

void fillFlip(Editor& editor, HWND dialog)
{
    showCheck(dialog, IDC_FLIP_HORIZONTAL, editor.transforms.flip.horizontal);
    showCheck(dialog, IDC_FLIP_VERTICAL, editor.transforms.flip.vertical);
    fillExtent(dialog, flipExtent, editor.transforms.flipExtent);
}

bool takeFlip(Editor& editor, HWND dialog)
{
    if (!takeExtent(editor, dialog, flipExtent, editor.transforms.flipExtent)) return false;
    editor.transforms.flip = {isChecked(dialog, IDC_FLIP_HORIZONTAL),
                              isChecked(dialog, IDC_FLIP_VERTICAL)};
    return true;
}

// The buttons of the turns have the order of TextureTurn.
static_assert(IDC_TURN_COUNTERCLOCKWISE - IDC_TURN_CLOCKWISE ==
                  static_cast<int>(TextureTurn::counterClockwise) &&
              IDC_TURN_HALF - IDC_TURN_CLOCKWISE == static_cast<int>(TextureTurn::halfTurn));

void fillTurn(Editor& editor, HWND dialog)
{
    CheckRadioButton(dialog, IDC_TURN_CLOCKWISE, IDC_TURN_HALF,
                     IDC_TURN_CLOCKWISE + static_cast<int>(editor.transforms.turn));
    fillExtent(dialog, turnExtent, editor.transforms.turnExtent);
}

bool takeTurn(Editor& editor, HWND dialog)
{
    if (!takeExtent(editor, dialog, turnExtent, editor.transforms.turnExtent)) return false;
    for (int button = IDC_TURN_CLOCKWISE; button <= IDC_TURN_HALF; ++button)
        if (isChecked(dialog, button))
            editor.transforms.turn = static_cast<TextureTurn>(button - IDC_TURN_CLOCKWISE);
    return true;
}

/// The present size, as the labels before the fields show it: at least three columns.
std::string sizeLabel(std::uint16_t size)
{
    const std::string digits = std::to_string(size);
    return std::string(digits.size() < 3 ? 3 - digits.size() : 0, ' ') + digits + " ->";
}

void fillSize(Editor& editor, HWND dialog)
{
    const TextureList& list = editor.document.textures;
    const TextureSlot& texture = list.slot(list.current);
    SetDlgItemTextA(dialog, IDC_SIZE_OLD_WIDTH, sizeLabel(texture.width).c_str());
    SetDlgItemTextA(dialog, IDC_SIZE_OLD_HEIGHT, sizeLabel(texture.height).c_str());
    setNumber(dialog, IDC_SIZE_WIDTH, texture.width);
    setNumber(dialog, IDC_SIZE_HEIGHT, texture.height);
    showCheck(dialog, IDC_SIZE_SMOOTH, editor.transforms.sampling == Sampling::smooth);
    fillExtent(dialog, sizeExtent, editor.transforms.scaleExtent);
}

void pressSize(HWND dialog, int button)
{
    if (button != IDC_SIZE_DOUBLE && button != IDC_SIZE_HALVE) return;
    const TextureSize size{numberIn(dialog, IDC_SIZE_WIDTH).value_or(0),
                           numberIn(dialog, IDC_SIZE_HEIGHT).value_or(0)};
    const auto [width, height] = button == IDC_SIZE_DOUBLE ? doubledSize(size) : halvedSize(size);
    setNumber(dialog, IDC_SIZE_WIDTH, width);
    setNumber(dialog, IDC_SIZE_HEIGHT, height);
}

bool takeSize(Editor& editor, HWND dialog)
{
    const auto width = readField(editor, dialog, IDC_SIZE_WIDTH, Word::fieldWidth);
    if (!width) return false;
    const auto height = readField(editor, dialog, IDC_SIZE_HEIGHT, Word::fieldHeight);
    if (!height) return false;
    if (const auto fault = textureSizeFault(*width, *height)) {
        showFault(editor, dialog, *fault);
        return false;
    }
    if (!takeExtent(editor, dialog, sizeExtent, editor.transforms.scaleExtent)) return false;
    editor.transforms.newSize = {*width, *height};
    editor.transforms.sampling =
        isChecked(dialog, IDC_SIZE_SMOOTH) ? Sampling::smooth : Sampling::nearest;
    return true;
}

constexpr TransformDialog flipDialog{"IDD_TEXFLIP", flipExtent, fillFlip, nullptr, takeFlip};
constexpr TransformDialog turnDialog{"IDD_TEXROTATE", turnExtent, fillTurn, nullptr, takeTurn};
constexpr TransformDialog sizeDialog{"IDD_TEXSIZE", sizeExtent, fillSize, pressSize, takeSize};

INT_PTR CALLBACK transformProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG) {
        keepDialogState(dialog, lParam);
        dialogState<const TransformDialog>(dialog).fill(theEditor(), dialog);
        return TRUE;
    }
    if (message != WM_COMMAND) return FALSE;
    const auto& kind = dialogState<const TransformDialog>(dialog);
    const int button = LOWORD(wParam);
    enableExtent(dialog, kind.extent);
    if (kind.press) kind.press(dialog, button);
    if (button == IDCANCEL || (button == IDOK && kind.take(theEditor(), dialog)))
        EndDialog(dialog, button);
    return TRUE;
}

bool ask(Editor& editor, const TransformDialog& dialog)
{
    return runDialog(editor.mainWindow, dialog.templateName, transformProcedure,
                     reinterpret_cast<LPARAM>(&dialog)) == IDOK;
}

} // namespace

bool askFlip(Editor& editor)
{
    return ask(editor, flipDialog);
}

bool askTurn(Editor& editor)
{
    return ask(editor, turnDialog);
}

bool askSize(Editor& editor)
{
    return ask(editor, sizeDialog);
}

} // namespace facetor
