#include "windows/draw_order_window.h"

#include "resources/resource_ids.h"
#include "session/window_place.h"
#include "state/editor.h"
#include "ui/dialog.h"
#include "ui/text_list.h"
#include "ui/window_data.h"
#include "view/selection.h"
#include "windows/draw_order_lists.h"
#include "windows/main_tool_bar.h"
#include "windows/model_view_window.h"
#include "windows/shown_polygon.h"
#include "windows/title.h"

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <array>
#include <string>

namespace facetor {

namespace {

constexpr UINT_PTR watchTimer = 1;
constexpr UINT watchPeriod = 100; ///< milliseconds between two looks at the view
constexpr UINT playPeriod = 40;   ///< between two steps of Play

/// From the first polygon to the last Play takes so many milliseconds, however many there are.
constexpr ULONGLONG playLength = 8000;

/// Pairs are looked for when the view has been at rest for so many milliseconds.
constexpr ULONGLONG restBeforePairs = 300;

/// The smallest client area, in dialog units: all but most of the pairs.
constexpr LONG leastWidth = 304, leastHeight = 210;

HWND controlOf(const Editor& editor, int control)
{
    return GetDlgItem(editor.drawOrder.window, control);
}

void setText(const Editor& editor, int control, const std::string& text)
{
    const HWND window = controlOf(editor, control);
    if (windowText(window) != text) SetWindowTextA(window, text.c_str());
}

void setWord(const Editor& editor, int control, Word word)
{
    setText(editor, control, loadCatalogueText(editor.mainWindow, word));
}

std::uint32_t countOf(const DrawOrderWindow& shown)
{
    return static_cast<std::uint32_t>(shown.order.size());
}

/// Brings slider and texts to where the view is.
void showPlace(const Editor& editor)
{
    const DrawOrderWindow& shown = editor.drawOrder;
    SendMessageA(controlOf(editor, IDC_ORDER_SLIDER), TBM_SETPOS, TRUE,
                 static_cast<LPARAM>(shown.drawn));
    setText(editor, IDC_ORDER_PLACE,
            expandPlaceholders(loadCatalogueText(editor.mainWindow, Word::countOf),
                               std::to_string(shown.drawn), std::to_string(shown.order.size())));
    setText(editor, IDC_ORDER_POLYGON,
            shown.drawn > 0 ? placeText(editor, shown.drawn - 1) : std::string());
}

enum class AtEnd { showsAll, outlinesLast };

/// Has the view draw so many polygons of its frame.
void drawFrame(Editor& editor, std::uint32_t count, AtEnd atEnd)
{
    DrawOrderWindow& shown = editor.drawOrder;
    shown.drawn = std::min(count, countOf(shown));
    shown.showsAll = atEnd == AtEnd::showsAll && shown.drawn == countOf(shown);
    const std::uint32_t drawn = shown.showsAll ? allPolygons : shown.drawn;
    if (editor.view.drawnPolygons != drawn) {
        editor.view.drawnPolygons = drawn;
        editor.view.frameNeedsDrawing = true;
    }
    InvalidateRect(editor.mainWindow, nullptr, FALSE);
    showPlace(editor);
}

/// What the user wants the view to draw. At the end it goes on drawing all, whatever comes, or
/// outlines the last one as it does elsewhere.
void draw(Editor& editor, std::uint32_t count, AtEnd atEnd = AtEnd::showsAll)
{
    editor.drawOrder.wanted = std::min(count, countOf(editor.drawOrder));
    drawFrame(editor, count, atEnd);
}

void findPairs(Editor& editor)
{
    DrawOrderWindow& shown = editor.drawOrder;
    shown.pairsDue = 0;
    shown.pairs = findUnstablePairs(editor.view, shown.engine, editor.document.model,
                                    viewSize(editor), shown.order);
    setTextRows(controlOf(editor, IDC_ORDER_PAIRS), shown.pairs.size());
    setText(editor, IDC_ORDER_PAIRS_NOTE,
            expandPlaceholders(loadCatalogueText(editor.mainWindow, Word::orderPairs),
                               std::to_string(largestTurnTried),
                               std::to_string(shown.pairs.size())));
}

/// Looks for what writes the pixel that was asked about. The list must be that of the view.
void listWriters(Editor& editor)
{
    DrawOrderWindow& shown = editor.drawOrder;
    shown.model = editor.document.modelRevision;
    shown.textures = editor.document.textureRevision;
    shown.steps = editor.document.history.position;
    shown.writers = findWriters(editor.view, shown.engine, editor.document.model, viewSize(editor),
                                *shown.pixel);
    setTextRows(controlOf(editor, IDC_ORDER_WRITERS), shown.writers.size());
}

/// Whether the writers were looked for in the document as it is.
bool areWritersNew(const Editor& editor)
{
    const DrawOrderWindow& shown = editor.drawOrder;
    const Document& document = editor.document;
    return shown.model == document.modelRevision && shown.textures == document.textureRevision &&
           shown.steps == document.history.position;
}

/// Lists the view's frame anew where it is another one.
void takeFrame(Editor& editor)
{
    DrawOrderWindow& shown = editor.drawOrder;
    const Document& document = editor.document;
    shown.frameIsNew = false;
    std::vector<OrderedPolygon> order =
        listDrawOrder(editor.view, shown.engine, document.model, viewSize(editor));
    const bool isSame = isSameOrder(order, shown.order);
    if (isSame && areWritersNew(editor)) return;
    shown.order = std::move(order);
    if (shown.pixel) listWriters(editor);
    if (isSame) return;
    shown.pairs.clear(); // they name places of the list before
    setTextRows(controlOf(editor, IDC_ORDER_PAIRS), 0);
    shown.pairsDue = GetTickCount64() + restBeforePairs;
    SendMessageA(controlOf(editor, IDC_ORDER_SLIDER), TBM_SETRANGEMAX, TRUE,
                 static_cast<LPARAM>(countOf(shown)));
    SendMessageA(controlOf(editor, IDC_ORDER_SLIDER), TBM_SETPAGESIZE, 0,
                 static_cast<LPARAM>(std::max(1u, countOf(shown) / 10)));
    drawFrame(editor, shown.showsAll ? countOf(shown) : shown.wanted,
              shown.showsAll ? AtEnd::showsAll : AtEnd::outlinesLast);
}

void stopPlaying(Editor& editor)
{
    if (editor.drawOrder.playStart == 0) return;
    editor.drawOrder.playStart = 0;
    setWord(editor, IDC_ORDER_PLAY, Word::orderPlay);
    SetTimer(editor.drawOrder.window, watchTimer, watchPeriod, nullptr);
}

void startPlaying(Editor& editor)
{
    DrawOrderWindow& shown = editor.drawOrder;
    if (shown.drawn == countOf(shown)) draw(editor, 0);
    shown.playFrom = shown.drawn;
    shown.playStart = GetTickCount64();
    setWord(editor, IDC_ORDER_PLAY, Word::orderStop);
    SetTimer(shown.window, watchTimer, playPeriod, nullptr);
}

void play(Editor& editor)
{
    const DrawOrderWindow& shown = editor.drawOrder;
    const ULONGLONG played = GetTickCount64() - shown.playStart;
    const ULONGLONG place =
        shown.playFrom + std::min(played, playLength) * shown.order.size() / playLength;
    draw(editor, static_cast<std::uint32_t>(std::min<ULONGLONG>(place, shown.order.size())));
    if (shown.drawn == countOf(shown)) stopPlaying(editor);
}

void onTimer(Editor& editor)
{
    DrawOrderWindow& shown = editor.drawOrder;
    if (editor.document.changing) return; // a dialog of a change lets timers through
    if (shown.frameIsNew) takeFrame(editor);
    if (shown.playStart != 0) return play(editor);
    const auto arePairsDue = [&] {
        return shown.pairsDue != 0 && GetTickCount64() >= shown.pairsDue && !editor.view.dragging;
    };
    if (!arePairsDue()) return;
    takeFrame(editor); // a window that is not painted may show another model meanwhile
    if (arePairsDue()) findPairs(editor);
}

/// Goes on to the next picked polygon that the view draws.
void goToPicked(Editor& editor)
{
    const DrawOrderWindow& shown = editor.drawOrder;
    const Model& model = editor.document.model;
    const auto place = findPicked(shown.order, model, shown.showsAll ? 0 : shown.drawn);
    if (place) return draw(editor, *place + 1, AtEnd::outlinesLast);
    setWord(editor, IDC_ORDER_POLYGON,
            isAnyPicked(model) ? Word::orderNotDrawn : Word::orderNonePicked);
}

void onAskChanged(Editor& editor)
{
    DrawOrderWindow& shown = editor.drawOrder;
    shown.isAsking = IsDlgButtonChecked(shown.window, IDC_ORDER_ASK) == BST_CHECKED;
    if (shown.isAsking) return;
    shown.pixel.reset();
    shown.writers.clear();
    setTextRows(controlOf(editor, IDC_ORDER_WRITERS), 0);
    InvalidateRect(editor.mainWindow, nullptr, FALSE);
}

void onCommand(Editor& editor, int control)
{
    const DrawOrderWindow& shown = editor.drawOrder;
    if (control == IDC_ORDER_ASK) return onAskChanged(editor);
    const bool wasPlaying = shown.playStart != 0;
    stopPlaying(editor);
    switch (control) {
    case IDC_ORDER_FIRST: return draw(editor, 0);
    case IDC_ORDER_BACK: return draw(editor, shown.drawn > 0 ? shown.drawn - 1 : 0);
    case IDC_ORDER_PLAY:
        if (!wasPlaying) startPlaying(editor);
        return;
    case IDC_ORDER_FORWARD: return draw(editor, shown.drawn + 1, AtEnd::outlinesLast);
    case IDC_ORDER_LAST: return draw(editor, countOf(shown));
    case IDC_ORDER_TO_PICKED: return goToPicked(editor);
    default: return;
    }
}

void onSlider(Editor& editor)
{
    stopPlaying(editor);
    draw(editor, static_cast<std::uint32_t>(
                     SendMessageA(controlOf(editor, IDC_ORDER_SLIDER), TBM_GETPOS, 0, 0)));
}

void onWritersNotify(Editor& editor, LPARAM notification)
{
    const DrawOrderWindow& shown = editor.drawOrder;
    if (answerTextList(notification, [&](std::size_t row, int column) {
            return writerText(editor, row, column);
        }))
        return;
    const auto row = rowChosenBy(notification);
    if (row && *row < shown.writers.size())
        draw(editor, shown.writers[*row] + 1, AtEnd::outlinesLast);
}

/// A pair that is chosen is picked.
void onPairsNotify(Editor& editor, LPARAM notification)
{
    const DrawOrderWindow& shown = editor.drawOrder;
    if (answerTextList(notification,
                       [&](std::size_t row, int column) { return pairText(editor, row, column); }))
        return;
    const auto row = rowChosenBy(notification);
    if (!row || *row >= shown.pairs.size()) return;
    const UnstablePair& pair = shown.pairs[*row];
    const std::array attributes{shown.order[pair.nearer].attribute,
                                shown.order[pair.farther].attribute};
    draw(editor, pair.nearer + 1, AtEnd::outlinesLast);
    pickOnly(editor, attributes);
}

void layOut(const Editor& editor)
{
    const HWND window = editor.drawOrder.window;
    for (const int control : {IDC_ORDER_PLACE, IDC_ORDER_SLIDER, IDC_ORDER_POLYGON,
                              IDC_ORDER_WRITERS, IDC_ORDER_PAIRS_NOTE})
        stretchAcross(window, control);
    stretchToEnd(window, IDC_ORDER_PAIRS);
    for (const int control : {IDC_ORDER_WRITERS, IDC_ORDER_PAIRS})
        fitLastColumn(GetDlgItem(window, control));
}

void rememberPlace(Editor& editor, HWND dialog)
{
    if (editor.drawOrder.window == dialog) editor.session.drawOrder = windowPlace(dialog);
}

void onInitialise(Editor& editor, HWND dialog)
{
    const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_LISTVIEW_CLASSES | ICC_BAR_CLASSES};
    InitCommonControlsEx(&classes);
    setWindowTitle(editor, dialog, Word::orderTitle);
    DrawOrderWindow& shown = editor.drawOrder;
    shown.window = dialog;
    const WindowRectangle place = restoredPlace(
        editor.session.drawOrder, virtualScreen(),
        toolWindowPlace({}, windowPlace(dialog), windowPlace(editor.mainWindow), virtualScreen()));
    MoveWindow(dialog, place.left, place.top, place.right - place.left, place.bottom - place.top,
               FALSE);
    prepareTextList(controlOf(editor, IDC_ORDER_WRITERS), {{Word::columnPlace, 46},
                                                           {Word::columnPolygon, 148},
                                                           {Word::columnSort, 44},
                                                           {Word::columnDepth, 40}});
    prepareTextList(controlOf(editor, IDC_ORDER_PAIRS), {{Word::columnFarther, 76},
                                                         {Word::columnNearer, 76},
                                                         {Word::columnTurn, 30},
                                                         {Word::columnSettled, 80}});
    layOut(editor);
    editor.modelessDialogs.push_back(dialog);
    shown.engine.settings.textures = editor.document.textures.slots();
    takeFrame(editor);
    showPlace(editor); // also of an empty view
    findPairs(editor);
    SetTimer(dialog, watchTimer, watchPeriod, nullptr);
    SetFocus(controlOf(editor, IDC_ORDER_SLIDER));
}

void onDestroy(Editor& editor, HWND dialog)
{
    KillTimer(dialog, watchTimer);
    std::erase(editor.modelessDialogs, dialog);
    stopEngine(editor.drawOrder.engine);
    editor.drawOrder = DrawOrderWindow{};
    editor.view.drawnPolygons = allPolygons;
    editor.view.frameNeedsDrawing = true;
    InvalidateRect(editor.mainWindow, nullptr, FALSE);
}

INT_PTR CALLBACK drawOrderProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    Editor& editor = theEditor();
    switch (message) {
    case WM_INITDIALOG: onInitialise(editor, dialog); return FALSE; // the slider has the focus
    case WM_SIZE:
        if (editor.drawOrder.window) layOut(editor);
        [[fallthrough]];
    case WM_MOVE: rememberPlace(editor, dialog); return TRUE;
    case WM_GETMINMAXINFO:
        limitClientSize(dialog, leastWidth, leastHeight, *reinterpret_cast<MINMAXINFO*>(lParam));
        return TRUE;
    case WM_TIMER: onTimer(editor); return TRUE;
    case WM_HSCROLL: onSlider(editor); return TRUE;
    case WM_COMMAND: onCommand(editor, LOWORD(wParam)); return TRUE;
    case WM_NOTIFY:
        if (wParam == IDC_ORDER_WRITERS) onWritersNotify(editor, lParam);
        if (wParam == IDC_ORDER_PAIRS) onPairsNotify(editor, lParam);
        return FALSE;
    case WM_CLOSE: toggleDrawOrderWindow(editor); return TRUE;
    case WM_DESTROY: onDestroy(editor, dialog); return TRUE;
    default: return FALSE;
    }
}

void open(Editor& editor)
{
    Message message = startEngine(editor.drawOrder.engine);
    if (message == Message::none && !CreateDialogParamA(editor.instance, "IDD_DRAW_ORDER",
                                                        editor.mainWindow, drawOrderProcedure, 0)) {
        stopEngine(editor.drawOrder.engine);
        message = Message::resourceMissing;
    }
    if (message == Message::none)
        ShowWindow(editor.drawOrder.window, SW_SHOW);
    else
        alert(editor.alerts, editor.mainWindow, message, AlertStyle::exclamation);
}

} // namespace

void toggleDrawOrderWindow(Editor& editor)
{
    if (editor.drawOrder.window)
        DestroyWindow(editor.drawOrder.window);
    else
        open(editor);
    refreshMenuState(editor);
}

void showPixelWriters(Editor& editor)
{
    takeFrame(editor); // the list may be older than what the user has clicked at
    listWriters(editor);
}

} // namespace facetor
