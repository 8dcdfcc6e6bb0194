#include "dialogs/property_dialog.h"

#include "base/file.h"
#include "base/temporary_folder.h"
#include "driver/running_editor.h"
#include "get_color/control_ids.h"
#include "resources/resource_ids.h"
#include "session/settings_text.h"
#include "ui/window_data.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <array>
#include <filesystem>

namespace facetor {

namespace {

/// Puts another file in the place of the colour module, or none for an empty name; the module is
/// back at the end.
class ModuleInPlace {
public:
    explicit ModuleInPlace(const char* source) { put(source); }
    ~ModuleInPlace() { put(COLOUR_MODULE); }
    ModuleInPlace(const ModuleInPlace&) = delete;
    ModuleInPlace& operator=(const ModuleInPlace&) = delete;

private:
    static void put(const char* source)
    {
        const std::filesystem::path place(programFolder(nullptr) + "\\GetColor.dll");
        std::filesystem::remove(place);
        if (*source) std::filesystem::copy_file(source, place);
    }
};

/// The property dialog of an editor, opened by its command.
struct OpenDialog {
    const RunningEditor& editor;
    ShownAlert shown = editor.openDialog(IDM_EDIT_PROPERTY);

    HWND tabs() const { return GetDlgItem(shown.window, IDC_PROPERTY_TABS); }
    /// A control of one of the pages.
    HWND control(int number) const
    {
        HWND page = nullptr, found = nullptr;
        while (!found && (page = FindWindowExA(shown.window, page, "#32770", nullptr)) != nullptr)
            found = GetDlgItem(page, number);
        return found;
    }
    bool shows(int number) const { return IsWindowVisible(control(number)) != FALSE; }
    bool isChecked(int number) const { return SendMessageA(control(number), BM_GETCHECK, 0, 0); }
    void click(int number) const { SendMessageA(control(number), BM_CLICK, 0, 0); }
    /// Clicks a swatch and waits for the dialog that it brings up.
    ShownAlert open(int swatch) const
    {
        PostMessageA(control(swatch), BM_CLICK, 0, 0);
        ShownAlert next;
        EXPECT_TRUE(waitUntil([&] {
            next = editor.findAlert();
            return next.window != shown.window && !next.buttons.empty();
        }));
        return next;
    }
    /// Presses a button of that dialog and waits for the swatch to show a colour.
    void close(const ShownAlert& picker, int button, int swatch, Rgb555 colour) const
    {
        EXPECT_TRUE(editor.press(picker, button));
        EXPECT_TRUE(waitUntil([&] { return IsWindowEnabled(shown.window) != FALSE; }));
        editor.call([](Editor&) {});
        const WindowPicture picture = editor.pictureOf(control(swatch));
        const auto [red, green, blue] = toScreenColour(colour);
        EXPECT_EQ(picture.at(picture.height / 2, picture.height / 2),
                  static_cast<std::uint32_t>(red << 16 | green << 8 | blue));
    }
};

using Colours = std::array<Rgb555, 3>;

/// Background, picked and transparent colour.
Colours coloursOf(const RunningEditor& editor)
{
    return editor.ask([](Editor& e) {
        return Colours{e.view.backgroundColour, e.engine.settings.pickedColour,
                       e.transparentColour};
    });
}

constexpr Colours defaultColours{0x8010, 0x83E0, 0x8000};

TEST(PropertyDialog, ReopensOnThePageUsedLastAndStoresWithOkOnly)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("Facetor.ini");
    {
        RunningEditor editor({}, Platform::nt, {}, path);
        const OpenDialog first{editor};
        EXPECT_TRUE(first.shows(IDC_COLOUR_BACKGROUND) && !first.shows(IDC_DRAG_WIRE));
        EXPECT_TRUE(first.isChecked(IDC_COLOUR_CUSTOM) && first.isChecked(IDC_DRAG_WIRE));
        savePicture(editor.pictureOf(first.shown.window), "property-colour");
        SendMessageA(first.tabs(), TCM_SETCURFOCUS, 1, 0); // as a click on it does
        EXPECT_TRUE(!first.shows(IDC_COLOUR_BACKGROUND) && first.shows(IDC_DRAG_WIRE));
        savePicture(editor.pictureOf(first.shown.window), "property-drag");
        for (const int control : {IDC_DRAG_FLAT, IDC_COLOUR_CUSTOM}) first.click(control);
        editor.closeDialog(first.shown, IDCANCEL);

        const OpenDialog second{editor};
        EXPECT_TRUE(!second.shows(IDC_COLOUR_BACKGROUND) && second.shows(IDC_DRAG_WIRE));
        EXPECT_EQ(SendMessageA(second.tabs(), TCM_GETCURSEL, 0, 0), 1);
        EXPECT_TRUE(second.isChecked(IDC_COLOUR_CUSTOM) && second.isChecked(IDC_DRAG_WIRE));
        for (const int control : {IDC_DRAG_FULL, IDC_COLOUR_CUSTOM}) second.click(control);
        editor.closeDialog(second.shown, IDOK);
        EXPECT_EQ(coloursOf(editor), defaultColours);
        editor.call([](Editor& e) {
            EXPECT_EQ(e.view.dragDrawMode, DragDrawMode::full);
            EXPECT_EQ(e.colourPicking.picker, ColourPicker::system);
            EXPECT_FALSE(isModelChanged(e.document));
            e.transparentColour = 0x8123;
        });
        editor.post(WM_CLOSE);
        EXPECT_EQ(editor.waitForEnd(), 0);
    }
    const RunningEditor editor({}, Platform::nt, {}, path); // the next run
    EXPECT_EQ(coloursOf(editor), (Colours{0x8010, 0x83E0, 0x8123}));
    const OpenDialog dialog{editor};
    EXPECT_TRUE(dialog.shows(IDC_COLOUR_BACKGROUND)) << "the page is not saved";
    EXPECT_TRUE(dialog.isChecked(IDC_COLOUR_CUSTOM) && dialog.isChecked(IDC_DRAG_FULL));
}

TEST(PropertyDialog, AModuleThatDoesNotServeGivesAnAlertAndBlack)
{
    const TemporaryFolder folder;
    const std::string text = folder.file("GetColor.dll");
    ASSERT_EQ(writeFile(text, std::as_bytes(std::span("no module"))), Message::none);
    for (const char* source : {"", text.c_str(), STRANGER_MODULE_WITHOUT_EXPORT})
        for (const int button : {IDCANCEL, IDOK}) {
            SCOPED_TRACE(source);
            const ModuleInPlace module(source);
            const RunningEditor editor;
            const OpenDialog dialog{editor};
            const ShownAlert alert = dialog.open(IDC_COLOUR_BACKGROUND);
            EXPECT_EQ(alert.text, "Cannot find GetColor.dll.");
            EXPECT_EQ(GetWindow(alert.window, GW_OWNER), nullptr);
            savePicture(editor.pictureOf(alert.window), "property-no-module");
            dialog.close(alert, IDOK, IDC_COLOUR_BACKGROUND, 0);
            editor.closeDialog(dialog.shown, button);
            EXPECT_EQ(coloursOf(editor)[0], button == IDOK ? 0 : defaultColours[0]);
        }
}

TEST(PropertyDialog, TakesSixteenBitsOfAStrangersAnswerAndSixOfTheSystemsBlue)
{
    const ModuleInPlace module(STRANGER_MODULE);
    const RunningEditor editor;
    const OpenDialog dialog{editor};
    for (const int swatch : {IDC_COLOUR_BACKGROUND, IDC_COLOUR_TRANSPARENT}) dialog.click(swatch);
    EXPECT_TRUE(GetModuleHandleA("GetColor.dll")) << "stays loaded";
    dialog.click(IDC_COLOUR_CUSTOM); // counts at once
    const ShownAlert colours = dialog.open(IDC_COLOUR_PICKED);
    for (const int field : {706, 707, 708}) // red, green, blue
        SetDlgItemInt(colours.window, field, field == 708 ? 255 : 0, FALSE);
    dialog.close(colours, IDOK, IDC_COLOUR_PICKED, 0x003E);
    editor.closeDialog(dialog.shown, IDOK);
    EXPECT_EQ(coloursOf(editor), (Colours{0x7FEF, 0x003E, 0x7FFF}));
    const WindowPicture view = editor.picture();
    EXPECT_EQ(view.at(4, view.height / 2), 0xFFFF7Bu) << "the view is drawn anew";
}

/// Presses keys in a part of the module's dialog.
void type(const ShownAlert& colours, int control, std::initializer_list<WPARAM> keys)
{
    const HWND part = GetDlgItem(colours.window, control);
    for (const WPARAM key : keys) SendMessageA(part, WM_KEYDOWN, key, 0);
}

/// Drags the mouse from one of a part's cells to another.
void drag(const ShownAlert& colours, int control, int from, int to, int cells)
{
    const HWND part = GetDlgItem(colours.window, control);
    RECT area{};
    GetClientRect(part, &area);
    const auto at = [&](int cell) {
        return MAKELPARAM(area.right * (2 * cell + 1) / (2 * cells), area.bottom / 2);
    };
    SendMessageA(part, WM_LBUTTONDOWN, MK_LBUTTON, at(from));
    SendMessageA(part, WM_MOUSEMOVE, MK_LBUTTON, at(to));
    SendMessageA(part, WM_LBUTTONUP, 0, at(to));
    SendMessageA(part, WM_MOUSEMOVE, 0, at(from)); // no longer dragged
}

TEST(ColourModule, ChoosesByStripNumberFieldAndRecentColour)
{
    const RunningEditor editor;
    const OpenDialog dialog{editor};
    const struct {
        const char* what;
        void (*act)(const ShownAlert& colours);
        int button;
        Rgb555 expected;
    } steps[] = {
        {"cells and numbers",
         [](const ShownAlert& c) {
             drag(c, IDC_RED_STRIP, 3, 24, 32);
             SetDlgItemInt(c.window, IDC_GREEN_NUMBER, 9, FALSE);
             type(c, IDC_BLUE_STRIP, {VK_HOME, VK_RIGHT, VK_PRIOR});
         },
         IDOK, 0x8000 | rgb555(24, 9, 5)},
        {"cancelled", [](const ShownAlert& c) { drag(c, IDC_FIELD, 1, 0, 2); }, IDCANCEL,
         0x8000 | rgb555(24, 9, 5)},
        {"what is no number of a channel",
         [](const ShownAlert& c) {
             SetDlgItemInt(c.window, IDC_RED_NUMBER, 32, FALSE);
             SetDlgItemTextA(c.window, IDC_GREEN_NUMBER, "");
             SetDlgItemTextA(c.window, IDC_BLUE_NUMBER, "-4");
         },
         IDOK, 0x8000 | rgb555(31, 9, 5)},
        {"value down to black", [](const ShownAlert& c) { type(c, IDC_VALUE, {VK_HOME}); }, IDOK,
         0x8000},
        {"the second of the recent colours",
         [](const ShownAlert& c) {
             type(c, IDC_RECENT, {VK_RIGHT, VK_SPACE});
         },
         IDOK, 0x8000 | rgb555(31, 9, 5)},
        {"the oldest", [](const ShownAlert& c) { drag(c, IDC_RECENT, 0, 2, 16); }, IDOK,
         0x8000 | rgb555(24, 9, 5)},
        {"the old one again",
         [](const ShownAlert& c) {
             type(c, IDC_FIELD, {VK_DOWN, VK_RIGHT, VK_NEXT});
             drag(c, IDC_SAMPLE, 0, 1, 2);
         },
         IDOK, 0x8000 | rgb555(24, 9, 5)},
    };
    for (const auto& step : steps) {
        SCOPED_TRACE(step.what);
        const ShownAlert colours = dialog.open(IDC_COLOUR_TRANSPARENT);
        step.act(colours);
        savePicture(editor.pictureOf(colours.window), std::string("colour-module ") + step.what);
        dialog.close(colours, step.button, IDC_COLOUR_TRANSPARENT, step.expected);
    }
    editor.closeDialog(dialog.shown, IDOK);
    EXPECT_EQ(coloursOf(editor)[2], 0x8000 | rgb555(24, 9, 5));
}

} // namespace

} // namespace facetor
