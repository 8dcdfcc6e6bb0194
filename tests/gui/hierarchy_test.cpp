#include "base/temporary_folder.h"
#include "gui/model_files.h"
#include "gui/running_editor.h"
#include "model/model_file.h"
#include "model/object_tree.h"
#include "resources/resource_ids.h"
#include "ui/window_data_win.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <cstring>
#include <utility>

namespace facetor {

namespace {

/// An editor with a sample and its hierarchy window.
struct OpenHierarchy {
    explicit OpenHierarchy(const std::string& path = "samples/ship.mx3")
        : editor({path, "samples/ship.mxt"})
    {
        editor.sendCommand(IDM_VIEW_HIERARCHY);
        window = editor.ask([](Editor& e) { return e.hierarchyWindow; });
        tree = GetDlgItem(window, IDC_HIERARCHY_TREE);
    }

    HTREEITEM item(std::uint32_t index) const
    {
        return editor.ask([&](Editor& e) { return e.hierarchyItems.at(index); });
    }
    LRESULT sendTree(UINT message, WPARAM wParam, HTREEITEM item) const
    {
        return SendMessageA(tree, message, wParam, reinterpret_cast<LPARAM>(item));
    }
    void select(std::uint32_t index) const
    {
        sendTree(TVM_SELECTITEM, TVGN_CARET, index == noObject ? nullptr : item(index));
    }
    UINT state(std::uint32_t index) const
    {
        return static_cast<UINT>(SendMessageA(tree, TVM_GETITEMSTATE,
                                              reinterpret_cast<WPARAM>(item(index)),
                                              TVIS_BOLD | TVIS_EXPANDED));
    }
    std::string label(std::uint32_t index) const
    {
        std::string text(200, '\0');
        TVITEMA query{};
        query.mask = TVIF_TEXT;
        query.hItem = item(index);
        query.pszText = text.data();
        query.cchTextMax = static_cast<int>(text.size());
        SendMessageA(tree, TVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&query));
        return text.c_str();
    }
    void send(int command) const
    {
        SendMessageA(window, WM_COMMAND, static_cast<WPARAM>(command), 0);
    }
    ShownAlert open(int command) const
    {
        PostMessageA(window, WM_COMMAND, static_cast<WPARAM>(command), 0);
        return editor.waitForAlert();
    }
    /// Ends a dialog, and waits for what its command does afterwards.
    void end(const ShownAlert& dialog, int button) const
    {
        EXPECT_TRUE(editor.press(dialog, button));
        EXPECT_TRUE(waitUntil([&] { return IsWindowEnabled(window) != FALSE; }));
        editor.call([](Editor&) {});
    }
    Object object(std::uint32_t index) const
    {
        return editor.ask([&](Editor& e) { return e.document.model.objects[index]; });
    }
    std::string name(std::uint32_t index) const
    {
        return editor.ask([&](Editor& e) { return e.document.model.names[index]; });
    }
    /// Whether the model has been marked as changed; takes the mark away.
    bool takeChanged() const
    {
        return editor.ask([](Editor& e) { return std::exchange(e.document.modelChanged, false); });
    }

    RunningEditor editor;
    HWND window, tree;
};

/// Objects of the ship.
constexpr std::uint32_t hull = 0, dish = 6, wing = 7, muzzle = 10;

TEST(Hierarchy, TheTreeIsThatOfTheModelAndFollowsALoad)
{
    const TemporaryFolder folder;
    writeNestedFile(folder.file("nested.mx3"));
    const OpenHierarchy shown;
    EXPECT_EQ(windowText(shown.window), "Facetor for NT - Hierarchy");
    savePicture(shown.editor.pictureOf(shown.window), "hierarchy");
    for (const std::string& path : {std::string("samples/ship.mx3"), folder.file("nested.mx3")}) {
        SCOPED_TRACE(path);
        shown.editor.sendCommand(IDM_FILE_OPEN_PATH, reinterpret_cast<LPARAM>(path.c_str()));
        shown.editor.call([&](Editor& e) {
            const Model& model = e.document.model;
            ASSERT_EQ(e.hierarchyItems.size(), model.objectCount);
            for (std::uint32_t i = 0; i < model.objectCount; ++i) {
                const auto parent = reinterpret_cast<HTREEITEM>(
                    shown.sendTree(TVM_GETNEXTITEM, TVGN_PARENT, e.hierarchyItems[i]));
                const std::uint32_t expected = parentOf(model, i);
                EXPECT_EQ(parent, expected == noObject ? nullptr : e.hierarchyItems[expected]);
            }
        });
        for (const std::uint32_t i : {hull, dish, muzzle}) {
            EXPECT_EQ(shown.label(i), shown.name(i));
            EXPECT_EQ(shown.state(i), UINT{TVIS_BOLD | TVIS_EXPANDED});
        }
    }
    // 128 objects, 128 deep: hidden as one branch, drawn, saved.
    const Picture before = shown.editor.picture();
    shown.select(0);
    shown.sendTree(TVM_EXPAND, TVE_COLLAPSE, shown.item(0));
    shown.send(IDC_HIERARCHY_HIDE);
    EXPECT_FALSE(shown.state(127) & TVIS_BOLD);
    EXPECT_NE(shown.editor.picture(), before);
    shown.send(IDC_HIERARCHY_SHOW);
    EXPECT_EQ(shown.editor.picture(), before);
    shown.editor.sendCommand(IDM_FILE_SAVE);
    Model saved;
    ASSERT_EQ(createModelStore(saved), Message::none);
    ASSERT_EQ(readModelFile(saved, folder.file("nested.mx3")), Message::none);
    EXPECT_EQ(saved.objects[127].depth, 127u);
}

TEST(Hierarchy, ShowAndHideTakeACollapsedBranchAsAWhole)
{
    struct Row {
        int hide, show;
        std::uint32_t object, last; ///< the last object that goes with it
        UINT action;
    };
    const Row rows[] = {
        {IDC_HIERARCHY_HIDE, IDC_HIERARCHY_SHOW, dish, dish, TVE_COLLAPSE},
        {IDM_HIERARCHY_HIDE, IDM_HIERARCHY_SHOW, wing, muzzle, TVE_COLLAPSE},
        {IDC_HIERARCHY_HIDE, IDM_HIERARCHY_SHOW, wing, wing, TVE_EXPAND},
    };
    const OpenHierarchy shown;
    const Picture whole = shown.editor.picture();
    shown.select(noObject);
    shown.send(IDC_HIERARCHY_HIDE);
    EXPECT_EQ(shown.editor.picture(), whole) << "nothing is selected";
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.object << " to " << row.last);
        shown.select(row.object);
        shown.sendTree(TVM_EXPAND, row.action, shown.item(row.object));
        const UINT expanded = shown.state(row.object) & TVIS_EXPANDED;
        shown.send(row.hide);
        for (std::uint32_t i = 0; i < 23; ++i) {
            const bool hidden = i >= row.object && i <= row.last;
            EXPECT_EQ(shown.object(i).flags, hidden ? 0u : 1u) << i;
            EXPECT_EQ((shown.state(i) & TVIS_BOLD) == 0, hidden) << i;
        }
        EXPECT_EQ(shown.state(row.object) & TVIS_EXPANDED, expanded);
        EXPECT_NE(shown.editor.picture(), whole);
        savePicture(shown.editor.picture(), "hidden-" + std::to_string(row.last));
        savePicture(shown.editor.pictureOf(shown.window), "hidden-tree");
        shown.send(row.show);
        EXPECT_EQ(shown.editor.picture(), whole);
    }
    EXPECT_FALSE(shown.takeChanged());
}

TEST(Hierarchy, RenamingMarksTheModelAlsoWhenCancelled)
{
    const std::string longName = std::string(126, 'x') + "\xC3\xA9";
    struct Row {
        const char* text;
        int button;
        std::string name, label;
    };
    const Row rows[] = {
        {"Radar \"2\" \xC3\xA9", IDOK, "Radar \"2\" \xC3\xA9", "Radar \"2\" \xC3\xA9"},
        {"Other", IDCANCEL, "Radar \"2\" \xC3\xA9", "Radar \"2\" \xC3\xA9"},
        {"", IDOK, "", ""},
        {longName.c_str(), IDOK, longName.substr(0, 126), longName.substr(0, 64)},
    };
    const OpenHierarchy shown;
    shown.select(dish);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        const ShownAlert dialog = shown.open(IDM_HIERARCHY_RENAME);
        EXPECT_EQ(dialog.caption, "Rename Model");
        EXPECT_EQ(windowText(GetDlgItem(dialog.window, IDC_ANSWER_TEXT)), shown.name(dish));
        SetDlgItemTextA(dialog.window, IDC_ANSWER_TEXT, row.text);
        savePicture(shown.editor.pictureOf(dialog.window), "rename");
        shown.end(dialog, row.button);
        EXPECT_EQ(shown.name(dish), row.name);
        EXPECT_EQ(shown.label(dish), row.label);
        EXPECT_TRUE(shown.takeChanged());
    }
    // In place; the name is longer than its label now.
    for (const auto& [text, key, name] : {std::tuple{"", VK_RETURN, longName.substr(0, 126)},
                                          {"Bowl", VK_RETURN, "Bowl"},
                                          {"Other", VK_ESCAPE, "Bowl"}}) {
        SCOPED_TRACE(text);
        SendMessageA(shown.tree, WM_KEYDOWN, VK_F2, 0);
        const auto edit =
            reinterpret_cast<HWND>(SendMessageA(shown.tree, TVM_GETEDITCONTROL, 0, 0));
        ASSERT_TRUE(edit);
        if (*text) SetWindowTextA(edit, text);
        PostMessageA(edit, WM_KEYDOWN, static_cast<WPARAM>(key), 0); // through the main loop
        EXPECT_TRUE(waitUntil([&] { return !IsWindow(edit) || !IsWindowVisible(edit); }));
        EXPECT_EQ(shown.name(dish), name);
        EXPECT_EQ(shown.label(dish), name.substr(0, 64));
        EXPECT_TRUE(shown.takeChanged());
    }
}

TEST(Hierarchy, InformationIsABoxOrWithShiftAndCtrlTheObjectEditor)
{
    const OpenHierarchy shown;
    shown.select(noObject);
    for (const int command : {IDM_HIERARCHY_INFORMATION, IDM_HIERARCHY_RENAME}) shown.send(command);
    EXPECT_FALSE(shown.takeChanged()) << "nothing is selected";
    shown.select(dish);
    ShownAlert dialog = shown.open(IDM_HIERARCHY_INFORMATION);
    EXPECT_EQ(dialog.caption, "Object Information");
    EXPECT_TRUE(dialog.text.starts_with("ID = 6\n\nTRANSLATION[x,y,z]\n\t 0.0000,-18.0000, 0.00"));
    savePicture(shown.editor.pictureOf(dialog.window), "information");
    shown.end(dialog, IDOK);

    const Object before = shown.object(dish);
    const Picture picture = shown.editor.picture();
    const auto isAsBefore = [&] {
        const Object now = shown.object(dish);
        return std::memcmp(&now, &before, sizeof now) == 0;
    };
    const auto set = [&](int field, const char* text) {
        SetDlgItemTextA(dialog.window, IDC_OBJECT_FIRST + field, text);
    };
    const auto press = [&](int button) {
        SendMessageA(dialog.window, WM_COMMAND, static_cast<WPARAM>(button), 0);
    };
    const auto openEditor = [&] {
        std::array<BYTE, 256> keys{};
        keys[VK_SHIFT] = keys[VK_CONTROL] = 0x80;
        shown.editor.call([&](Editor&) { SetKeyboardState(keys.data()); });
        dialog = shown.open(IDM_HIERARCHY_INFORMATION);
        keys = {};
        shown.editor.call([&](Editor&) { SetKeyboardState(keys.data()); });
        EXPECT_EQ(dialog.caption, "Edit Object");
    };
    openEditor();
    savePicture(shown.editor.pictureOf(dialog.window), "edit-object");
    EXPECT_EQ(windowText(GetDlgItem(dialog.window, IDC_OBJECT_FIRST + 3)), "-22.494");
    set(1, "-60");
    press(IDC_OBJECT_PREVIEW);
    EXPECT_EQ(shown.object(dish).translation.y, -60);
    EXPECT_EQ(shown.object(dish).rotation[0], -4094) << "what the field shows is taken";
    EXPECT_NE(shown.editor.picture(), picture);
    press(IDC_OBJECT_REVERT);
    EXPECT_EQ(windowText(GetDlgItem(dialog.window, IDC_OBJECT_FIRST + 1)), "-18.000");
    EXPECT_TRUE(isAsBefore());
    set(4, "30");
    press(IDC_OBJECT_PREVIEW);
    for (const auto& [field, text, group] : {std::tuple{0, "1,5", "TRANSLATION"},
                                             {4, "12000000", "ROTATION"},
                                             {8, "1234567890123456", "SCALING"}}) {
        SCOPED_TRACE(text);
        const Object previewed = shown.object(dish);
        set(field, text);
        PostMessageA(dialog.window, WM_COMMAND, IDOK, 0);
        ShownAlert alert;
        ASSERT_TRUE(waitUntil([&] {
            alert = shown.editor.findAlert();
            return alert.window != dialog.window && !alert.buttons.empty();
        }));
        EXPECT_EQ(alert.text, std::string("Data Error(") + group + "[x,y,z])");
        EXPECT_TRUE(shown.editor.press(alert, IDOK));
        EXPECT_TRUE(waitUntil([&] { return IsWindowEnabled(dialog.window) != FALSE; }));
        EXPECT_EQ(shown.editor.ask([](Editor&) { return GetDlgCtrlID(GetFocus()); }),
                  IDC_OBJECT_FIRST + field);
        const Object now = shown.object(dish);
        EXPECT_EQ(std::memcmp(&now, &previewed, sizeof now), 0);
        set(field, "1");
    }
    shown.end(dialog, IDCANCEL);
    EXPECT_TRUE(isAsBefore()) << "exactly, to the last angle unit";
    EXPECT_EQ(shown.editor.picture(), picture);
    EXPECT_FALSE(shown.takeChanged());

    openEditor();
    set(7, "2.5");
    shown.end(dialog, IDOK);
    EXPECT_EQ(shown.object(dish).scaling.y, 2.5f);
    EXPECT_NE(shown.editor.picture(), picture);
    EXPECT_TRUE(shown.takeChanged());
}

TEST(Hierarchy, KeepsItsPlaceAndTakesTheKeyboard)
{
    const TemporaryFolder folder;
    const auto place = [](HWND window) {
        RECT r{};
        GetWindowRect(window, &r);
        return std::array{r.left, r.top, r.right, r.bottom};
    };
    const auto toggle = [](const RunningEditor& editor) {
        editor.sendCommand(IDM_VIEW_HIERARCHY);
        const HMENU menu = GetMenu(editor.window());
        const HWND window = editor.ask([](Editor& e) { return e.hierarchyWindow; });
        EXPECT_EQ((GetMenuState(menu, IDM_VIEW_HIERARCHY, 0) & MF_CHECKED) != 0, window != nullptr);
        return window;
    };
    constexpr std::array<LONG, 4> wanted{300, 120, 560, 520};
    {
        RunningEditor editor({}, Platform::nt, {}, folder.file("Facetor.ini"));
        HWND window = toggle(editor);
        const HWND tree = GetDlgItem(window, IDC_HIERARCHY_TREE);
        for (const int control : {IDC_HIERARCHY_SHOW, IDC_HIERARCHY_HIDE, IDC_HIERARCHY_TREE}) {
            PostMessageA(editor.ask([](Editor&) { return GetFocus(); }), WM_KEYDOWN, VK_TAB, 0);
            EXPECT_TRUE(waitUntil([&] {
                return editor.ask([](Editor&) { return GetDlgCtrlID(GetFocus()); }) == control;
            })) << control;
        }
        SetWindowPos(window, nullptr, 300, 120, 1, 1, SWP_NOZORDER);
        EXPECT_GT(place(tree)[2] - place(tree)[0], 50) << "the window has a least size";
        SetWindowPos(window, nullptr, 300, 120, 260, 400, SWP_NOZORDER);
        EXPECT_GT(place(tree)[2] - place(tree)[0], 220) << "the tree fills the rest";
        savePicture(editor.pictureOf(window), "hierarchy-large");
        PostMessageA(window, WM_CLOSE, 0, 0);
        EXPECT_TRUE(waitUntil([&] { return !IsWindow(window); }));
        window = toggle(editor);
        EXPECT_EQ(place(window), wanted);
        SendMessageA(window, WM_COMMAND, IDM_HIERARCHY_CLOSE, 0);
        EXPECT_TRUE(toggle(editor));
        EXPECT_FALSE(toggle(editor));
        EXPECT_TRUE(toggle(editor)); // open at the end of the run
        editor.post(WM_CLOSE);
        EXPECT_EQ(editor.waitForEnd(), 0);
    }
    const RunningEditor editor({}, Platform::nt, {}, folder.file("Facetor.ini"));
    EXPECT_EQ(place(toggle(editor)), wanted);
}

} // namespace

} // namespace facetor
