#include "windows/budget_window.h"

#include "resources/resource_ids.h"
#include "session/window_place.h"
#include "state/editor.h"
#include "ui/dialog.h"
#include "ui/handles.h"
#include "ui/text_list.h"
#include "ui/window_data.h"
#include "windows/main_tool_bar.h"
#include "windows/shown_polygon.h"
#include "windows/texture_window.h"
#include "windows/title.h"

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <string>
#include <vector>

namespace facetor {

namespace {

constexpr UINT_PTR watchTimer = 1;
constexpr UINT watchPeriod = 200; ///< milliseconds between two looks at the document
constexpr UINT checkPeriod = 15;  ///< between two parts of a check

/// What a part of a check reads: some milliseconds' worth.
constexpr std::size_t texelsAtOnce = 1u << 19;

/// The smallest client area, in dialog units: the bars and some warnings.
constexpr LONG leastWidth = 290, leastHeight = 150;

constexpr COLORREF overColour = RGB(0xC6, 0x28, 0x28);

HWND warningsOf(const Editor& editor)
{
    return GetDlgItem(editor.budget.window, IDC_BUDGET_WARNINGS);
}

std::string textOf(const Editor& editor, const TargetWarning& warning)
{
    return describe(warning, [&](Word word) { return loadCatalogueText(editor.mainWindow, word); });
}

void showParts(Editor& editor)
{
    BudgetWindow& budget = editor.budget;
    budget.parts = budgetParts(editor.document.model, editor.document.textures);
    for (int row = 0; const BudgetPart& part : budget.parts) {
        const auto set = [&](int control, const std::string& text) {
            const HWND window = GetDlgItem(budget.window, control + row);
            if (windowText(window) != text) SetWindowTextA(window, text.c_str());
        };
        set(IDC_BUDGET_TITLE, loadCatalogueText(editor.mainWindow, part.title));
        set(IDC_BUDGET_COUNT,
            expandPlaceholders(loadCatalogueText(editor.mainWindow, Word::countOf),
                               std::to_string(part.used), std::to_string(part.limit)));
        InvalidateRect(GetDlgItem(budget.window, IDC_BUDGET_BAR + row), nullptr, FALSE);
        ++row;
    }
}

void showNote(const Editor& editor)
{
    const BudgetWindow& budget = editor.budget;
    const Word word = budget.isChecking         ? Word::budgetChecking
                      : budget.warnings.empty() ? Word::budgetNoWarnings
                                                : Word::budgetWarnings;
    SetDlgItemTextA(budget.window, IDC_BUDGET_NOTE,
                    expandPlaceholders(loadCatalogueText(editor.mainWindow, word),
                                       std::to_string(budget.warnings.size()), {})
                        .c_str());
}

/// Takes new warnings; the chosen one stays chosen where it is still there.
void showWarnings(Editor& editor, std::vector<TargetWarning> warnings)
{
    BudgetWindow& budget = editor.budget;
    std::optional<std::size_t> chosen = chosenTextRow(warningsOf(editor));
    if (chosen && (*chosen >= budget.warnings.size() || *chosen >= warnings.size() ||
                   textOf(editor, budget.warnings[*chosen]) != textOf(editor, warnings[*chosen])))
        chosen.reset();
    budget.warnings = std::move(warnings);
    setTextRows(warningsOf(editor), budget.warnings.size(), chosen);
    showNote(editor);
}

BudgetState stateOf(const Editor& editor)
{
    const Document& document = editor.document;
    return {document.modelRevision, document.textureRevision, document.history.position,
            editor.view.viewScale};
}

/// Looks whether the document is another one than what is shown, and goes on with a check.
void follow(Editor& editor)
{
    BudgetWindow& budget = editor.budget;
    const Document& document = editor.document;
    if (document.changing) return; // a dialog of a change lets timers through
    if (const BudgetState now = stateOf(editor); budget.shown != now) {
        budget.search.begin(document.textures);
        budget.shown = now;
        showParts(editor);
        if (!budget.isChecking) SetTimer(budget.window, watchTimer, checkPeriod, nullptr);
        budget.isChecking = true;
    }
    if (!budget.isChecking || !budget.search.step(texelsAtOnce)) return;
    budget.isChecking = false;
    SetTimer(budget.window, watchTimer, watchPeriod, nullptr);
    auto warnings = checkTarget(document.model, editor.view.viewScale, &document.textures);
    std::ranges::move(checkTarget(document.textures, &document.model, budget.search.found()),
                      std::back_inserter(warnings));
    showWarnings(editor, std::move(warnings));
}

void paintBar(const BudgetPart& part, const DRAWITEMSTRUCT& item)
{
    RECT area = item.rcItem;
    FillRect(item.hDC, &area, GetSysColorBrush(COLOR_WINDOW));
    FrameRect(item.hDC, &area, GetSysColorBrush(COLOR_BTNSHADOW));
    InflateRect(&area, -1, -1);
    const double width = shareOf(part) * static_cast<double>(area.right - area.left);
    // What is there at all is seen.
    area.right = area.left + (part.used > 0 ? std::max(1L, static_cast<LONG>(width)) : 0);
    const bool isOver = part.used > part.limit;
    const UniqueHandle<HBRUSH, DeleteObject> brush(
        CreateSolidBrush(isOver ? overColour : GetSysColor(COLOR_HIGHLIGHT)));
    FillRect(item.hDC, &area, brush.get());
}

/// All polygons of the object, or the one, or the slot.
void showFault(Editor& editor, const TargetWarning& warning)
{
    const Model& model = editor.document.model;
    if (warning.slot && !warning.object) {
        if (!editor.textureWindow.window) toggleTextureWindow(editor);
        if (!editor.textureWindow.window) return; // the user has been told
        showTexture(editor, *warning.slot);
        SetActiveWindow(editor.budget.window);
    } else if (warning.object && *warning.object < model.objectCount) {
        const Mesh& mesh = model.meshes[model.objects[*warning.object].mesh];
        std::vector<std::uint32_t> polygons;
        for (std::uint32_t i = 0; i < mesh.polygonCount; ++i)
            if (!warning.polygon || i == *warning.polygon)
                polygons.push_back(mesh.attributeTable + i);
        pickAndShow(editor, polygons);
    }
}

void onInitialise(Editor& editor, HWND dialog)
{
    const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&classes);
    setWindowTitle(editor, dialog, Word::budgetTitle);
    editor.budget.window = dialog;
    const WindowRectangle place = restoredPlace(
        editor.session.budget, virtualScreen(),
        toolWindowPlace({}, windowPlace(dialog), windowPlace(editor.mainWindow), virtualScreen()));
    MoveWindow(dialog, place.left, place.top, place.right - place.left, place.bottom - place.top,
               FALSE);
    prepareTextList(warningsOf(editor), {{Word::columnWarning, 200}});
    stretchToEnd(dialog, IDC_BUDGET_WARNINGS);
    fitLastColumn(warningsOf(editor));
    editor.modelessDialogs.push_back(dialog);
    SetTimer(dialog, watchTimer, watchPeriod, nullptr);
    follow(editor);
    showNote(editor);
    SetFocus(warningsOf(editor));
}

void onMoved(Editor& editor, HWND dialog)
{
    if (editor.budget.window == dialog && !IsIconic(dialog))
        editor.session.budget = windowPlace(dialog);
}

void onSize(Editor& editor, HWND dialog)
{
    stretchToEnd(dialog, IDC_BUDGET_WARNINGS);
    fitLastColumn(GetDlgItem(dialog, IDC_BUDGET_WARNINGS));
    onMoved(editor, dialog);
}

void onDestroy(Editor& editor, HWND dialog)
{
    KillTimer(dialog, watchTimer);
    std::erase(editor.modelessDialogs, dialog);
    editor.budget = BudgetWindow{};
}

void onNotify(Editor& editor, LPARAM notification)
{
    const BudgetWindow& budget = editor.budget;
    if (answerTextList(notification, [&](std::size_t row, int) {
            return row < budget.warnings.size() ? textOf(editor, budget.warnings[row])
                                                : std::string();
        }))
        return;
    const std::optional<std::size_t> row = rowChosenBy(notification);
    if (row && *row < budget.warnings.size())
        showFault(editor, TargetWarning(budget.warnings[*row]));
}

INT_PTR CALLBACK budgetProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    Editor& editor = theEditor();
    switch (message) {
    case WM_INITDIALOG: onInitialise(editor, dialog); return FALSE; // the list has the focus
    case WM_SIZE: onSize(editor, dialog); return TRUE;
    case WM_MOVE: onMoved(editor, dialog); return TRUE;
    case WM_GETMINMAXINFO:
        limitClientSize(dialog, leastWidth, leastHeight, *reinterpret_cast<MINMAXINFO*>(lParam));
        return TRUE;
    case WM_TIMER: follow(editor); return TRUE;
    case WM_DRAWITEM: {
        const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
        const std::size_t row = item.CtlID - IDC_BUDGET_BAR;
        if (row < editor.budget.parts.size()) paintBar(editor.budget.parts[row], item);
        return TRUE;
    }
    case WM_NOTIFY:
        if (wParam == IDC_BUDGET_WARNINGS) onNotify(editor, lParam);
        return FALSE;
    case WM_CLOSE: toggleBudgetWindow(editor); return TRUE;
    case WM_DESTROY: onDestroy(editor, dialog); return TRUE;
    default: return FALSE;
    }
}

} // namespace

void toggleBudgetWindow(Editor& editor)
{
    if (editor.budget.window)
        DestroyWindow(editor.budget.window);
    else if (CreateDialogParamA(editor.instance, "IDD_BUDGET", editor.mainWindow, budgetProcedure,
                                0))
        ShowWindow(editor.budget.window, SW_SHOW);
    else
        alert(editor.alerts, editor.mainWindow, Message::resourceMissing, AlertStyle::exclamation);
    refreshMenuState(editor);
}

} // namespace facetor
