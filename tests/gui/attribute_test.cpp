#include "windows/attribute_window.h"

#include "app/settings.h"
#include "base/file.h"
#include "base/temporary_folder.h"
#include "driver/held_key.h"
#include "driver/running_editor.h"
#include "gui/model_files.h"
#include "resources/resource_ids.h"
#include "ui/colour_picker.h"
#include "ui/window_data.h"
#include "view/selection.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <atomic>
#include <cstring>

namespace facetor {

namespace {

using enum AttributePage;

const Rgb555 chosenColour = fromPickedColour(RGB(80, 160, 40));

/// The attribute window over a running editor, open from the start.
class AttributeWindow {
public:
    explicit AttributeWindow(const RunningEditor& editor) : editor_(editor)
    {
        editor.call([](Editor& e) { e.colourPicking.picker = ColourPicker::system; });
        toggle();
    }

    void toggle() const { editor_.sendCommand(IDM_VIEW_ATTRIBUTES); }
    HWND window() const
    {
        return editor_.ask([](Editor& e) { return e.attributeWindow; });
    }
    HWND page() const
    {
        return editor_.ask([](Editor& e) {
            return e.attributePages.pages[static_cast<std::size_t>(e.attributePages.current)];
        });
    }
    std::pair<std::int32_t, std::int32_t> corner() const
    {
        const WindowRectangle place = windowPlace(window());
        return {place.left, place.top};
    }
    void moveTo(int x, int y) const
    {
        SetWindowPos(window(), nullptr, x, y, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    }
    HWND item(int control) const { return GetDlgItem(page(), control); }
    std::string idText() const { return windowText(item(IDC_ATTRIBUTE_TEXTURE)); }
    bool isChecked(int control) const { return IsDlgButtonChecked(page(), control) == BST_CHECKED; }

    /// As a click on its tab does.
    void choose(AttributePage page) const
    {
        const HWND tabs = GetDlgItem(window(), IDC_ATTRIBUTE_TABS);
        SendMessageA(tabs, TCM_SETCURFOCUS, static_cast<WPARAM>(page), 0);
    }
    /// Clicks a button, types "4095" into the field, or chooses a colour for a colour button.
    void change(int control) const
    {
        if (control == IDC_ATTRIBUTE_TEXTURE) return type("4095");
        const bool picks = (GetWindowLongPtrA(item(control), GWL_STYLE) & BS_TYPEMASK) ==
                           static_cast<LONG_PTR>(BS_OWNERDRAW);
        if (!picks) return (void)SendMessageA(item(control), BM_CLICK, 0, 0);
        PostMessageA(page(), WM_COMMAND, static_cast<WPARAM>(control), 0);
        constexpr int redField = 706; // then green and blue, of every colour dialog
        const HWND colours = editor_.waitForAlert().window;
        for (int i = 0; const UINT component : {80u, 160u, 40u})
            SetDlgItemInt(colours, redField + i++, component, FALSE);
        PostMessageA(colours, WM_COMMAND, IDOK, 0);
        EXPECT_TRUE(waitUntil([&] { return IsWindowEnabled(editor_.window()) != FALSE; }));
        editor_.call([](Editor&) {}); // the button's command has come to its end
    }
    void type(const std::string& text) const
    {
        SendMessageA(item(IDC_ATTRIBUTE_TEXTURE), WM_SETTEXT, 0,
                     reinterpret_cast<LPARAM>(text.c_str()));
    }
    void apply() const { SendMessageA(window(), WM_COMMAND, IDOK, 0); }
    /// Presses Apply, which has to bring an alert up, and returns its text.
    std::string refusal() const
    {
        PostMessageA(window(), WM_COMMAND, IDOK, 0);
        const ShownAlert shown = editor_.waitForAlert();
        EXPECT_TRUE(editor_.press(shown, IDOK));
        EXPECT_TRUE(waitUntil([&] { return IsWindowVisible(window()) != FALSE; }));
        return shown.text;
    }

private:
    const RunningEditor& editor_;
};

/// What the window can change of a polygon: an attribute and a Gouraud entry as a file holds them.
struct PolygonState {
    std::uint16_t plane, sort, texture, color;
    std::uint32_t flags;
    std::array<Rgb555, 4> gouraud;
};
constexpr std::size_t attributeBytes = 12, gouraudBytes = 8;
static_assert(sizeof(PolygonState) == attributeBytes + gouraudBytes);

constexpr std::uint32_t changedPolygon = 2;

/// Gives every polygon this state, loads it, and picks one polygon.
void prepare(const RunningEditor& editor, const PolygonState& s)
{
    editor.call([&](Editor& e) {
        for (std::uint32_t i = 0; i < 6; ++i) {
            e.document.model.attributes[i] = {s.plane, s.sort, s.texture, s.color, s.flags, i};
            e.document.model.gouraud[i].color = s.gouraud;
        }
        e.document.model.attributes[changedPolygon].flags |= picked;
        loadWorkingAttribute(e, 0);
    });
}

std::string save(const RunningEditor& editor, const std::string& path)
{
    editor.sendCommand(IDM_FILE_SAVE);
    const auto bytes = readFile(path);
    if (!bytes) return {};
    return {reinterpret_cast<const char*>(bytes->data()), bytes->size()};
}

/// The file with the one polygon's state replaced.
std::string withState(std::string file, const PolygonState& state)
{
    constexpr std::size_t chunkHeader = 8;
    const auto* bytes = reinterpret_cast<const char*>(&state);
    std::memcpy(&file[file.find("TQAt") + chunkHeader + changedPolygon * attributeBytes], bytes,
                attributeBytes);
    std::memcpy(&file[file.find("TQGr") + chunkHeader + changedPolygon * gouraudBytes],
                bytes + attributeBytes, gouraudBytes);
    return file;
}

TEST(AttributeWindow, EveryControlOfEveryPageReachesTheFileAndNothingElseDoes)
{
    constexpr PolygonState zeros{0, 0, 0, 0, 0, {0, 0, 0, 0}};
    constexpr PolygonState ones{1, 2, 77, 0x7FFF, 0x0900154B, {1, 2, 3, 4}};
    using S = PolygonState;
    struct Row {
        AttributePage page;
        int control;
        const PolygonState& before;
        void (*change)(PolygonState& state);
    };
    const Row rows[] = {
        {material, 1094, ones, [](S& s) { s.flags ^= 0x18; }},
        {material, 1095, ones, [](S& s) { s.flags ^= 0x28; }},
        {material, 1096, zeros, [](S& s) { s.flags ^= 0x8; }},
        {material, 1020, zeros, [](S& s) { s.flags ^= 0x01000000; }},
        {material, 1020, ones, [](S& s) { s.flags ^= 0x01000000; }},
        {material, 1031, ones, [](S& s) { s.color = chosenColour; }},
        {material, 1011, ones, [](S& s) { s.texture = 4095; }},
        {material, 1012, zeros, [](S& s) { s.flags ^= 1; }},
        {material, 1012, ones, [](S& s) { s.flags ^= 1; }},
        {material, 1013, zeros, [](S& s) { s.flags ^= 2; }},
        {material, 1013, ones, [](S& s) { s.flags ^= 2; }},
        {mode, 1015, ones, [](S& s) { s.flags ^= 0x400; }},
        {mode, 1016, ones, [](S& s) { s.flags ^= 0x600; }},
        {mode, 1017, zeros, [](S& s) { s.flags ^= 0x400; }},
        {mode, 1018, ones, [](S& s) { s.flags ^= 0xC00; }},
        {mode, 1014, zeros, [](S& s) { s.flags ^= 0x100; }},
        {mode, 1014, ones, [](S& s) { s.flags ^= 0x100; }},
        {zSort, 1024, ones, [](S& s) { s.sort = 0; }},
        {zSort, 1025, zeros, [](S& s) { s.sort = 1; }},
        {zSort, 1026, zeros, [](S& s) { s.sort = 2; }},
        {gouraud, 1019, zeros, [](S& s) { s.flags ^= 0x1000; }},
        {gouraud, 1019, ones, [](S& s) { s.flags ^= 0x1000; }},
        {gouraud, 1020, ones, [](S& s) { s.flags ^= 0x01000000; }},
        {gouraud, 1006, zeros, [](S& s) { s.gouraud[0] = chosenColour; }},
        {gouraud, 1007, zeros, [](S& s) { s.gouraud[1] = chosenColour; }},
        {gouraud, 1008, ones, [](S& s) { s.gouraud[2] = chosenColour; }},
        {gouraud, 1009, ones, [](S& s) { s.gouraud[3] = chosenColour; }},
        {option, 1022, ones, [](S& s) { s.plane = 0; }},
        {option, 1023, zeros, [](S& s) { s.plane = 1; }},
        {option, 1021, zeros, [](S& s) { s.flags ^= 0x08000000; }},
        {option, 1021, ones, [](S& s) { s.flags ^= 0x08000000; }},
    };
    const TemporaryFolder folder;
    const std::string path = folder.file("edited.mx3");
    writeCubeFile(path, 6);
    const RunningEditor editor({path});
    const AttributeWindow attributes(editor);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.control);
        prepare(editor, row.before);
        const std::string before = save(editor, path);
        attributes.choose(row.page);
        attributes.change(row.control);
        EXPECT_TRUE(save(editor, path) == before) << "nothing before Apply";
        attributes.apply();
        EXPECT_TRUE(editor.isChanged());
        PolygonState expected = row.before;
        row.change(expected);
        expected.flags |= picked;
        EXPECT_TRUE(save(editor, path) == withState(before, expected));
        editor.sendCommand(IDM_EDIT_UNDO);
        PolygonState undone = row.before;
        undone.flags |= picked;
        undone.gouraud = expected.gouraud; // of which Undo knows nothing
        EXPECT_TRUE(save(editor, path) == withState(before, undone)) << "after Undo";
    }
}

PolygonAttribute attributeOf(const RunningEditor& editor, std::uint32_t polygon)
{
    return editor.ask([&](Editor& e) { return e.document.model.attributes[polygon]; });
}

TEST(AttributeWindow, ApplyWithCtrlDeselectsAndWithoutSelectedPolygonsSaysSo)
{
    const RunningEditor editor;
    const AttributeWindow attributes(editor);
    editor.sendCommand(IDM_SELECT_ALL);
    attributes.change(IDC_ATTRIBUTE_POLYLINE); // stays behind on its page
    attributes.choose(mode);
    attributes.change(IDC_ATTRIBUTE_SHADOW);
    const std::uint32_t before = attributeOf(editor, 5).flags;
    {
        const HeldKey control(editor, VK_CONTROL);
        attributes.apply();
    }
    EXPECT_EQ(attributeOf(editor, 5).flags, (before & ~picked) | shadowMode);
    editor.setChanged(false);
    EXPECT_EQ(attributes.refusal(), "No Selected polygons could be found. ");
    EXPECT_FALSE(editor.isChanged());
    editor.sendCommand(IDM_EDIT_UNDO);
    EXPECT_EQ(attributeOf(editor, 5).flags, before) << "with its mark: only one Apply was kept";
}

TEST(AttributeWindow, APickedPolygonOrAChosenTextureIsShown)
{
    const RunningEditor editor;
    editor.resizeClient(400, 320);
    editor.sendCommand(IDM_TOOL_SELECT);
    const AttributeWindow attributes(editor);
    const auto colour = [&] {
        return editor.ask([](Editor& e) { return e.workingAttribute.color; });
    };
    attributes.change(IDC_ATTRIBUTE_COLOUR);
    attributes.change(IDC_ATTRIBUTE_POLYLINE);
    attributes.type("12");
    EXPECT_EQ(colour(), chosenColour);
    for (const UINT message : {WM_LBUTTONDOWN, WM_LBUTTONUP})
        editor.send(message, message == WM_LBUTTONUP ? 0 : MK_LBUTTON, MAKELPARAM(200, 160));
    EXPECT_NE(colour(), chosenColour) << "one of the cube's";
    EXPECT_TRUE(attributes.isChecked(IDC_ATTRIBUTE_POLYGON));
    EXPECT_FALSE(attributes.isChecked(IDC_ATTRIBUTE_POLYLINE));
    EXPECT_EQ(attributes.idText(), "0");

    editor.call([](Editor& e) { setWorkingTexture(e, 7); });
    EXPECT_EQ(attributes.idText(), "7");
    attributes.choose(mode);
    editor.call([](Editor& e) { setWorkingTexture(e, 8); });
    attributes.choose(material);
    EXPECT_EQ(attributes.idText(), "8");
}

TEST(AttributeWindow, ATextThatIsNoTextureNumberIsRefused)
{
    const RunningEditor editor;
    const AttributeWindow attributes(editor);
    editor.sendCommand(IDM_SELECT_ALL);
    attributes.change(IDC_ATTRIBUTE_TEXTURE_MAP);
    attributes.type("31");
    for (const std::string text : {"", "x", "65536", "99999999999999999999"}) {
        SCOPED_TRACE(text);
        attributes.type(text);
        EXPECT_EQ(attributes.refusal(), "Data Error(ID)");
        EXPECT_EQ(attributeOf(editor, 0).texture, 0);
        EXPECT_TRUE(editor.ask([&](Editor& e) {
            return e.document.undo.isEmpty() &&
                   GetFocus() == attributes.item(IDC_ATTRIBUTE_TEXTURE);
        }));
    }
    attributes.choose(mode);
    attributes.apply(); // the text is of another page
    attributes.choose(material);
    EXPECT_EQ(attributes.idText(), "31") << "the last number";
    attributes.apply();
    EXPECT_EQ(attributeOf(editor, 0).texture, 31);
    const WindowPicture emptySlot = editor.picture();
    attributes.type("-2");
    attributes.apply();
    EXPECT_EQ(attributeOf(editor, 0).texture, 65534);
    EXPECT_EQ(editor.picture(), emptySlot) << "beyond the list";
}

TEST(AttributeWindow, KeepsTabValuesAndPlaceWhileItIsClosedAndItsPlaceFromRunToRun)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("Facetor.ini");
    {
        RunningEditor editor({}, Platform::nt, {}, path);
        SetWindowPos(editor.window(), nullptr, 30, 40, 444, 333, SWP_NOZORDER);
        const AttributeWindow attributes(editor);
        EXPECT_EQ(attributes.corner(), std::pair(474, 40)) << "beside the main window";
        attributes.choose(option);
        attributes.change(IDC_ATTRIBUTE_DUAL);
        attributes.moveTo(321, 234);
        SendMessageA(attributes.window(), WM_CLOSE, 0, 0);
        EXPECT_FALSE(attributes.window());
        EXPECT_FALSE(editor.isItemChecked(IDM_VIEW_ATTRIBUTES));
        editor.call([](Editor& e) { setWorkingTexture(e, 9); });
        attributes.toggle();
        EXPECT_EQ(attributes.corner(), std::pair(321, 234));
        EXPECT_TRUE(attributes.isChecked(IDC_ATTRIBUTE_DUAL)) << "on the same page";
        attributes.choose(material);
        EXPECT_EQ(attributes.idText(), "9");
        attributes.moveTo(400, 300);
        editor.post(WM_CLOSE);
        EXPECT_EQ(editor.waitForEnd(), 0);
    }
    const RunningEditor editor({}, Platform::nt, {}, path);
    EXPECT_TRUE(editor.isItemChecked(IDM_VIEW_ATTRIBUTES)) << "it is open again";
    editor.sendCommand(IDM_VIEW_ATTRIBUTES);
    EXPECT_EQ(AttributeWindow(editor).corner(), std::pair(400, 300));
}

TEST(AttributeWindow, TheKeyboardReachesItsControlsAndApply)
{
    const RunningEditor editor;
    editor.sendCommand(IDM_VIEW_HIERARCHY);
    const AttributeWindow attributes(editor);
    EXPECT_EQ(editor.ask([](Editor& e) { return e.modelessDialogs.front(); }), attributes.window())
        << "the main loop asks it before the hierarchy window";
    EXPECT_TRUE(editor.isItemChecked(IDM_VIEW_ATTRIBUTES));
    editor.sendCommand(IDM_SELECT_ALL);
    const auto press = [&](WPARAM key) { // returns the control that has the keyboard then
        std::atomic<int> focus = -1;
        editor.call([&](Editor&) { PostMessageA(GetFocus(), WM_KEYDOWN, key, 0); });
        editor.begin([&](Editor&) { focus = GetDlgCtrlID(GetFocus()); }); // after the key
        EXPECT_TRUE(waitUntil([&] { return focus >= 0; }));
        return focus.load();
    };
    editor.call([&](Editor&) { SetFocus(attributes.item(IDC_ATTRIBUTE_POLYGON)); });
    std::vector<int> reached;
    for (int i = 0; i < 9; ++i) reached.push_back(press(VK_TAB));
    EXPECT_EQ(reached, (std::vector<int>{1020, 1031, 1011, 1012, 1013, IDOK, IDC_ATTRIBUTE_TABS,
                                         IDC_ATTRIBUTE_COPY, IDC_ATTRIBUTE_POLYGON}));
    attributes.change(IDC_ATTRIBUTE_FLIP_H);
    press(VK_RETURN);
    EXPECT_TRUE(attributeOf(editor, 0).flags & flipHorizontal);
    press(VK_ESCAPE);
    EXPECT_TRUE(attributes.window()) << "only the close box and the command close it";
}

} // namespace

} // namespace facetor
