#include "base/temporary_folder.h"
#include "driver/running_editor.h"
#include "model/model_file.h"
#include "resources/resource_ids.h"
#include "ui/window_data.h"

#include <gtest/gtest.h>

#include <commctrl.h>

namespace facetor {

namespace {

/// Objects of the ship, the wing with children.
constexpr std::uint32_t dish = 6, wing = 7;

/// Sends the command of the menu; the window that is open then.
HWND toggle(const RunningEditor& editor)
{
    editor.sendCommand(IDM_VIEW_HIERARCHY);
    return editor.ask([](Editor& e) { return e.hierarchyWindow; });
}

/// An editor with the ship and its hierarchy window.
struct Hierarchy : testing::Test {
    LRESULT sendTree(UINT message, WPARAM wParam, std::uint32_t index) const
    {
        const auto items = editor.ask([](Editor& e) { return e.hierarchyItems; });
        return SendDlgItemMessageA(window, IDC_HIERARCHY_TREE, message, wParam,
                                   reinterpret_cast<LPARAM>(items.at(index)));
    }
    void send(int command) const { SendMessageA(window, WM_COMMAND, WPARAM(command), 0); }
    ShownAlert open(int command) const
    {
        PostMessageA(window, WM_COMMAND, WPARAM(command), 0);
        return editor.waitForAlert();
    }
    void end(const ShownAlert& dialog, int button) const
    {
        EXPECT_TRUE(editor.press(dialog, button));
        EXPECT_TRUE(waitUntil([&] { return IsWindowEnabled(window) != FALSE; }));
    }
    /// Whether the model is marked as changed; takes the mark away.
    bool takeChanged() const
    {
        return editor.ask([](Editor& e) {
            const bool changed = isModelChanged(e.document);
            markModelSaved(e.document);
            return changed;
        });
    }
    /// An object's name and its label, with a "*" where that is bold and a "+" where it is
    /// collapsed.
    std::string item(std::uint32_t index) const
    {
        return editor.ask([&](Editor& e) {
            std::array<char, 200> text{};
            TVITEMA item{};
            item.mask = TVIF_TEXT | TVIF_STATE;
            item.hItem = e.hierarchyItems.at(index);
            item.pszText = text.data();
            item.cchTextMax = int(text.size());
            SendDlgItemMessageA(window, IDC_HIERARCHY_TREE, TVM_GETITEMA, 0, LPARAM(&item));
            return e.document.model.names[index] + "|" + text.data() +
                   (item.state & TVIS_BOLD ? "*" : "") + (item.state & TVIS_EXPANDED ? "" : "+");
        });
    }
    RunningEditor editor{{"samples/ship.mx3", "samples/ship.mxt"}};
    HWND window = toggle(editor);
};

TEST_F(Hierarchy, ShowsAndHidesACollapsedBranchAsAWhole)
{
    EXPECT_EQ(windowText(window), "Facetor for NT - Hierarchy");
    const WindowPicture whole = editor.picture();
    SendDlgItemMessageA(window, IDC_HIERARCHY_TREE, TVM_SELECTITEM, TVGN_CARET, 0);
    for (const int command : {IDC_HIERARCHY_HIDE, IDM_HIERARCHY_RENAME, IDM_HIERARCHY_INFORMATION})
        send(command); // without a selection nothing happens
    for (const auto& [hide, show, expand, hidden] :
         {std::tuple{IDC_HIERARCHY_HIDE, IDM_HIERARCHY_SHOW, WPARAM{TVE_COLLAPSE},
                     "WingRight|WingRight+ FlapRight|FlapRight"},
          {IDM_HIERARCHY_HIDE, IDC_HIERARCHY_SHOW, WPARAM{TVE_EXPAND},
           "WingRight|WingRight FlapRight|FlapRight*"}}) {
        sendTree(TVM_SELECTITEM, TVGN_CARET, wing);
        sendTree(TVM_EXPAND, expand, wing);
        EXPECT_EQ(editor.picture(), whole);
        send(hide);
        EXPECT_EQ(item(wing) + " " + item(wing + 1), hidden);
        EXPECT_NE(editor.picture(), whole);
        savePicture(editor.picture(), "hidden-" + std::to_string(expand));
        savePicture(editor.pictureOf(window), "hierarchy");
        send(show);
    }
    EXPECT_EQ(editor.picture(), whole);
}

TEST_F(Hierarchy, FollowsALoadOf128ObjectsThatAreNested128Deep)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("nested.mx3");
    Model model;
    ASSERT_EQ(createModelStore(model), Message::none);
    for (std::uint32_t i = model.objectCount = objectCapacity; i-- > 0;) {
        model.objects[i] = model.objects[0]; // all with its mesh
        model.objects[i].child = i + 1 < objectCapacity ? i + 1 : noObject;
    }
    ASSERT_EQ(writeModelFile(model, path), Message::none);
    editor.open(path);
    for (std::uint32_t i = 1; i < objectCapacity; ++i)
        EXPECT_EQ(sendTree(TVM_GETNEXTITEM, TVGN_CHILD, i - 1),
                  editor.ask([&](Editor& e) { return LRESULT(e.hierarchyItems.at(i)); }));
}

TEST_F(Hierarchy, RenamingMarksTheModelAlsoWhenCancelled)
{
    const std::string cut(126, 'x'), label = cut.substr(0, 64);
    using Row = std::tuple<std::string, int, std::string>;
    for (const auto& [text, answer, expected] :
         {Row{"\"\xC3\xA9", IDOK, "\"\xC3\xA9|\"\xC3\xA9*"}, Row{"", IDOK, "|*"},
          Row{"Other", IDCANCEL, "|*"}, Row{cut + "\xC3\xA9", IDOK, cut + "|" + label + "*"},
          Row{label, VK_RETURN, cut + "|" + label + "*"}, Row{"Bowl", VK_RETURN, "Bowl|Bowl*"},
          Row{"Other", VK_ESCAPE, "Bowl|Bowl*"}}) {
        SCOPED_TRACE(text);
        sendTree(TVM_SELECTITEM, TVGN_CARET, dish);
        if (answer <= IDCANCEL) {
            const ShownAlert dialog = open(IDM_HIERARCHY_RENAME);
            SetDlgItemTextA(dialog.window, IDC_ANSWER_TEXT, text.c_str());
            savePicture(editor.pictureOf(dialog.window), "rename");
            end(dialog, answer);
        } else { // in place, the key through the main loop
            SendDlgItemMessageA(window, IDC_HIERARCHY_TREE, WM_KEYDOWN, VK_F2, 0);
            const auto edit = reinterpret_cast<HWND>(sendTree(TVM_GETEDITCONTROL, 0, dish));
            SetWindowTextA(edit, text.c_str());
            PostMessageA(edit, WM_KEYDOWN, WPARAM(answer), 0);
        }
        EXPECT_TRUE(waitUntil([&] { return takeChanged(); }));
        EXPECT_EQ(item(dish), expected);
    }
}

TEST_F(Hierarchy, InformationIsABoxOrWithShiftAndCtrlTheObjectEditor)
{
    sendTree(TVM_SELECTITEM, TVGN_CARET, dish);
    ShownAlert dialog = open(IDM_HIERARCHY_INFORMATION);
    EXPECT_EQ(dialog.caption, "Object Information");
    EXPECT_TRUE(dialog.text.starts_with("ID = 6\n\nTRANSLATION[x,y,z]\n\t 0.0000,-18.0000, 0.00"));
    savePicture(editor.pictureOf(dialog.window), "information");
    end(dialog, IDOK);

    /// All bits of the object.
    const auto bits = [&] {
        const Object object = editor.ask([](Editor& e) { return e.document.model.objects[dish]; });
        return std::string(reinterpret_cast<const char*>(&object), sizeof object);
    };
    const auto setKeys = [&](BYTE state) {
        std::array<BYTE, 256> keys{};
        keys[VK_SHIFT] = keys[VK_CONTROL] = state;
        editor.call([&](Editor&) { SetKeyboardState(keys.data()); });
    };
    const WindowPicture picture = editor.picture();
    const std::string before = bits();
    for (const int button : {IDCANCEL, IDOK}) {
        setKeys(0x80);
        dialog = open(IDM_HIERARCHY_INFORMATION);
        setKeys(0);
        savePicture(editor.pictureOf(dialog.window), "edit-object");
        SetDlgItemTextA(dialog.window, IDC_OBJECT_FIRST + 1, "-60");
        SendMessageA(dialog.window, WM_COMMAND, IDC_OBJECT_PREVIEW, 0);
        EXPECT_NE(bits(), before);
        EXPECT_NE(editor.picture(), picture);
        SendMessageA(dialog.window, WM_COMMAND, IDC_OBJECT_REVERT, 0);
        EXPECT_EQ(windowText(GetDlgItem(dialog.window, IDC_OBJECT_FIRST + 1)), "-18.000");
        EXPECT_EQ(bits(), before);
        SetDlgItemTextA(dialog.window, IDC_OBJECT_FIRST + 4, "12000000");
        PostMessageA(dialog.window, WM_COMMAND, IDOK, 0);
        EXPECT_TRUE(waitUntil([&] { return !IsWindowEnabled(dialog.window); }));
        const ShownAlert refusal = editor.waitForAlert();
        EXPECT_EQ(refusal.text, "Data Error(ROTATION[x,y,z])");
        EXPECT_TRUE(editor.press(refusal, IDOK));
        EXPECT_TRUE(waitUntil([&] { return IsWindowEnabled(dialog.window) != FALSE; }));
        EXPECT_EQ(editor.ask([](Editor&) { return GetDlgCtrlID(GetFocus()); }),
                  IDC_OBJECT_FIRST + 4);
        EXPECT_EQ(bits(), before);
        SetDlgItemTextA(dialog.window, IDC_OBJECT_FIRST + 4, "30");
        SendMessageA(dialog.window, WM_COMMAND, IDC_OBJECT_PREVIEW, 0);
        end(dialog, button);
        EXPECT_EQ(takeChanged(), button == IDOK);
        EXPECT_EQ(bits() == before, button == IDCANCEL) << "to the last angle unit";
        EXPECT_EQ(editor.picture() == picture, button == IDCANCEL);
    }
}

TEST(HierarchyPlace, IsKeptToTheNextRunAndTheKeyboardReachesTheControls)
{
    const TemporaryFolder folder;
    constexpr RECT wanted{300, 120, 560, 520};
    for (const bool firstRun : {true, false}) {
        RunningEditor editor({}, Platform::nt, {}, folder.file("Facetor.ini"));
        HWND window = firstRun ? toggle(editor) // which the next run has open
                               : editor.ask([](Editor& e) { return e.hierarchyWindow; });
        if (firstRun) {
            const auto focus = [&] { return editor.ask([](Editor&) { return GetFocus(); }); };
            for (const int id : {IDC_HIERARCHY_SHOW, IDC_HIERARCHY_HIDE, IDC_HIERARCHY_TREE}) {
                PostMessageA(focus(), WM_KEYDOWN, VK_TAB, 0);
                EXPECT_TRUE(waitUntil([&] { return GetDlgCtrlID(focus()) == id; })) << id;
            }
            SetWindowPos(window, nullptr, 300, 120, 260, 400, SWP_NOZORDER);
            EXPECT_FALSE(toggle(editor));
            window = toggle(editor);
        }
        RECT place{}, tree{};
        GetWindowRect(window, &place);
        EXPECT_TRUE(EqualRect(&place, &wanted));
        GetWindowRect(GetDlgItem(window, IDC_HIERARCHY_TREE), &tree);
        EXPECT_TRUE(tree.right - tree.left > 220 && place.bottom - tree.bottom < 20);
        editor.post(WM_CLOSE); // with the window open
        EXPECT_EQ(editor.waitForEnd(), 0);
    }
}

} // namespace

} // namespace facetor
