// The windows that show beforehand what the target will: its budget and the drawing order.
#include "base/temporary_folder.h"
#include "driver/running_editor.h"
#include "resources/resource_ids.h"
#include "ui/window_data.h"

#include <gtest/gtest.h>

#include <commctrl.h>

namespace facetor {

namespace {

std::string textOf(HWND window, int control)
{
    return windowText(GetDlgItem(window, control));
}

LRESULT rowCount(HWND window, int list)
{
    return SendDlgItemMessageA(window, list, LVM_GETITEMCOUNT, 0, 0);
}

std::string cellText(const RunningEditor& editor, HWND window, int list, int row, int column)
{
    return editor.ask([&](Editor&) {
        std::array<char, 300> text{};
        LVITEMA item{};
        item.iSubItem = column;
        item.pszText = text.data();
        item.cchTextMax = static_cast<int>(text.size());
        SendDlgItemMessageA(window, list, LVM_GETITEMTEXTA, static_cast<WPARAM>(row),
                            reinterpret_cast<LPARAM>(&item));
        return std::string(text.data());
    });
}

void choose(const RunningEditor& editor, HWND window, int list, int row)
{
    editor.call([&](Editor&) {
        LVITEMA item{};
        item.state = item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
        SendDlgItemMessageA(window, list, LVM_SETITEMSTATE, static_cast<WPARAM>(row),
                            reinterpret_cast<LPARAM>(&item));
    });
}

/// The row of a list whose first column holds a text; -1 for none.
int findRow(const RunningEditor& editor, HWND window, int list, const std::string& text)
{
    for (int row = 0; row < rowCount(window, list); ++row)
        if (cellText(editor, window, list, row, 0).find(text) != std::string::npos) return row;
    return -1;
}

struct TargetWindow : testing::Test {
    HWND open(int command)
    {
        editor.sendCommand(command);
        EXPECT_TRUE(editor.isItemChecked(command));
        return editor.ask([&](Editor& e) {
            return command == IDM_VIEW_BUDGET ? e.budget.window : e.drawOrder.window;
        });
    }
    std::vector<std::uint32_t> pickedPolygons() const
    {
        return editor.ask([](Editor& e) {
            std::vector<std::uint32_t> all;
            for (std::uint32_t i = 0; i < e.document.model.totalPolygonCount; ++i)
                if (isPicked(e.document.model.attributes[i])) all.push_back(i);
            return all;
        });
    }
    RunningEditor editor{{"samples/ship.mx3", "samples/ship.mxt"}};
};

TEST_F(TargetWindow, TheBudgetFollowsEditsAndAClickShowsWhatAWarningIsAbout)
{
    const HWND window = open(IDM_VIEW_BUDGET);
    EXPECT_EQ(windowText(window), "Facetor for NT - Target Budget");
    EXPECT_EQ(textOf(window, IDC_BUDGET_TITLE), "Objects");
    EXPECT_EQ(textOf(window, IDC_BUDGET_COUNT), "23 of 128");
    const auto rowOf = [&](const std::string& text) {
        int row = -1;
        EXPECT_TRUE(waitUntil([&] {
            row = findRow(editor, window, IDC_BUDGET_WARNINGS, text);
            return row >= 0;
        })) << text;
        return row;
    };
    editor.call([](Editor& e) {
        (void)change(e.document, Word::stepAttributes, [&] {
            e.document.model.attributes[700].flags |= textureMap;
            e.document.model.attributes[700].texture = 4000;
            Texels texels;
            EXPECT_TRUE(texels.allocate(8 * 256));
            e.document.textures.set(60, 8, 256, std::move(texels));
            return EditOutcome{};
        });
    });
    const int empty = rowOf("it shows slot 4000"), high = rowOf("slot 60: 256 rows");
    EXPECT_EQ(textOf(window, IDC_BUDGET_COUNT + 4), "61 of 2048");
    savePicture(editor.pictureOf(window), "budget");
    choose(editor, window, IDC_BUDGET_WARNINGS, empty);
    EXPECT_EQ(pickedPolygons(), std::vector<std::uint32_t>{700});
    savePicture(editor.picture(), "budget-polygon");
    choose(editor, window, IDC_BUDGET_WARNINGS, high);
    EXPECT_EQ(editor.ask([](Editor& e) { return e.document.textures.current; }), 60u);
    EXPECT_TRUE(editor.ask([](Editor& e) { return e.textureWindow.window; }));
    editor.sendCommand(IDM_EDIT_STEP_BACK);
    EXPECT_TRUE(waitUntil(
        [&] { return findRow(editor, window, IDC_BUDGET_WARNINGS, "it shows slot 4000") < 0; }));
    editor.sendCommand(IDM_VIEW_BUDGET);
    EXPECT_FALSE(IsWindow(window));
    editor.setChanged(false);
}

TEST_F(TargetWindow, TheOrderIsGoneThroughAndAPixelAskedAbout)
{
    const WindowPicture whole = editor.picture();
    const HWND window = open(IDM_VIEW_DRAW_ORDER);
    const HWND slider = GetDlgItem(window, IDC_ORDER_SLIDER);
    EXPECT_EQ(editor.picture(), whole);
    const LRESULT count = SendMessageA(slider, TBM_GETRANGEMAX, 0, 0);
    EXPECT_EQ(textOf(window, IDC_ORDER_PLACE),
              std::to_string(count) + " of " + std::to_string(count));
    savePicture(editor.pictureOf(window), "draw-order");
    const auto press = [&](int control) {
        SendMessageA(window, WM_COMMAND, static_cast<WPARAM>(control), 0);
        return SendMessageA(slider, TBM_GETPOS, 0, 0);
    };
    EXPECT_EQ(press(IDC_ORDER_FIRST), 0);
    EXPECT_EQ(press(IDC_ORDER_FORWARD), 1);
    const WindowPicture one = editor.picture();
    EXPECT_NE(one, whole);
    SendMessageA(slider, TBM_SETPOS, TRUE, count / 2);
    SendMessageA(window, WM_HSCROLL, TB_THUMBTRACK, reinterpret_cast<LPARAM>(slider));
    EXPECT_NE(editor.picture(), one);
    savePicture(editor.picture(), "draw-order-half");
    press(IDC_ORDER_PLAY);
    EXPECT_TRUE(waitUntil([&] { return SendMessageA(slider, TBM_GETPOS, 0, 0) > count / 2 + 3; }));
    EXPECT_EQ(press(IDC_ORDER_LAST), count);
    EXPECT_EQ(editor.picture(), whole);

    // What the view shows at a pixel is the last of what writes it.
    CheckDlgButton(window, IDC_ORDER_ASK, BST_CHECKED);
    press(IDC_ORDER_ASK);
    editor.send(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(320, 240));
    editor.send(WM_LBUTTONUP, 0, MAKELPARAM(320, 240));
    EXPECT_EQ(pickedPolygons(), std::vector<std::uint32_t>{});
    const int last = static_cast<int>(rowCount(window, IDC_ORDER_WRITERS)) - 1;
    ASSERT_GE(last, 1);
    EXPECT_TRUE(cellText(editor, window, IDC_ORDER_WRITERS, last, 1).starts_with("object "));
    choose(editor, window, IDC_ORDER_WRITERS, last);
    EXPECT_EQ(cellText(editor, window, IDC_ORDER_WRITERS, last, 0),
              std::to_string(SendMessageA(slider, TBM_GETPOS, 0, 0)));
    savePicture(editor.pictureOf(window), "draw-order-pixel");
    savePicture(editor.picture(), "draw-order-pixel-view");

    EXPECT_TRUE(waitUntil([&] { return rowCount(window, IDC_ORDER_PAIRS) > 0; }));
    choose(editor, window, IDC_ORDER_PAIRS, 0);
    EXPECT_EQ(pickedPolygons().size(), 2u);
    EXPECT_EQ(editor.statusText(3), "Picked = 2");
    const LRESULT nearer = SendMessageA(slider, TBM_GETPOS, 0, 0);
    press(IDC_ORDER_LAST);
    EXPECT_LT(press(IDC_ORDER_TO_PICKED), nearer);
    EXPECT_EQ(press(IDC_ORDER_TO_PICKED), nearer);
    editor.sendCommand(IDM_SELECT_CLEAR);
    editor.sendCommand(IDM_VIEW_DRAW_ORDER);
    EXPECT_EQ(editor.picture(), whole);
}

TEST(TargetWindowPlace, IsKeptToTheNextRun)
{
    const TemporaryFolder folder;
    for (const bool firstRun : {true, false}) {
        RunningEditor editor({}, Platform::nt, {}, folder.file("Facetor.ini"));
        RECT wanted{140, 50, 640, 500};
        for (const int command : {IDM_VIEW_BUDGET, IDM_VIEW_DRAW_ORDER}) {
            if (firstRun) editor.sendCommand(command);
            const HWND window = editor.ask([&](Editor& e) {
                return command == IDM_VIEW_BUDGET ? e.budget.window : e.drawOrder.window;
            });
            ASSERT_TRUE(window);
            if (firstRun)
                SetWindowPos(window, nullptr, wanted.left, wanted.top, wanted.right - wanted.left,
                             wanted.bottom - wanted.top, SWP_NOZORDER);
            RECT place{};
            GetWindowRect(window, &place);
            EXPECT_TRUE(EqualRect(&place, &wanted)) << command;
            OffsetRect(&wanted, 20, 20);
        }
        editor.post(WM_CLOSE);
        EXPECT_EQ(editor.waitForEnd(), 0);
    }
}

} // namespace

} // namespace facetor
