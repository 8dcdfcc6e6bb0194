#include "app/property_dialog.h"

#include "app/settings_text.h"
#include "base/file.h"
#include "base/temporary_folder.h"
#include "get_color/control_ids.h"
#include "gui/running_editor.h"
#include "resources/resource_ids.h"
#include "ui/window_data_win.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <array>
#include <filesystem>

namespace facetor {

namespace {

/// Puts another file in the place of the colour module, or none; the module is back at the end.
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
        if (source) std::filesystem::copy_file(source, place);
    }
};

/// The property dialog of an editor, opened by its command.
struct OpenDialog {
    const RunningEditor& editor;
    ShownAlert shown;

    explicit OpenDialog(const RunningEditor& running) : editor(running)
    {
        editor.post(WM_COMMAND, IDM_EDIT_PROPERTY);
        shown = editor.waitForAlert();
    }
    HWND tabs() const { return GetDlgItem(shown.window, IDC_PROPERTY_TABS); }
    /// The page that holds a control.
    HWND page(int control) const
    {
        for (HWND page = nullptr;
             (page = FindWindowExA(shown.window, page, "#32770", nullptr)) != nullptr;)
            if (GetDlgItem(page, control)) return page;
        return nullptr;
    }
    HWND control(int number) const { return GetDlgItem(page(number), number); }
    bool shows(int number) const { return IsWindowVisible(control(number)) != FALSE; }
    void press(int number) const { PostMessageA(control(number), BM_CLICK, 0, 0); }
    void showTab(int index) const
    {
        SendMessageA(tabs(), TCM_SETCURFOCUS, static_cast<WPARAM>(index), 0);
    }
    std::uint32_t swatchPixel(int number) const
    {
        const Picture picture = editor.pictureOf(control(number));
        return picture.at(picture.height / 2, picture.height / 2);
    }
    /// Waits for a dialog over this one.
    ShownAlert waitForNext() const
    {
        ShownAlert next;
        EXPECT_TRUE(waitUntil([&] {
            next = editor.findAlert();
            return next.window != shown.window && !next.buttons.empty();
        }));
        return next;
    }
    void close(int button) const
    {
        EXPECT_TRUE(editor.press(shown, button));
        EXPECT_TRUE(waitUntil([&] { return IsWindowEnabled(editor.window()) != FALSE; }));
        editor.call([](Editor&) {});
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
        {
            const OpenDialog dialog(editor);
            EXPECT_TRUE(dialog.shows(IDC_COLOUR_BACKGROUND));
            EXPECT_FALSE(dialog.shows(IDC_DRAG_WIRE));
            EXPECT_TRUE(IsDlgButtonChecked(dialog.page(IDC_COLOUR_CUSTOM), IDC_COLOUR_CUSTOM));
            savePicture(editor.pictureOf(dialog.shown.window), "property-colour");
            dialog.showTab(1);
            EXPECT_FALSE(dialog.shows(IDC_COLOUR_BACKGROUND));
            EXPECT_TRUE(dialog.shows(IDC_DRAG_WIRE));
            EXPECT_TRUE(IsDlgButtonChecked(dialog.page(IDC_DRAG_WIRE), IDC_DRAG_WIRE));
            savePicture(editor.pictureOf(dialog.shown.window), "property-drag");
            SendMessageA(dialog.control(IDC_DRAG_FLAT), BM_CLICK, 0, 0);
            SendMessageA(dialog.control(IDC_COLOUR_CUSTOM), BM_CLICK, 0, 0);
            dialog.close(IDCANCEL);
        }
        EXPECT_EQ(editor.ask([](Editor& e) { return e.view.dragDrawMode; }), DragDrawMode::wire);
        {
            const OpenDialog dialog(editor);
            EXPECT_TRUE(dialog.shows(IDC_DRAG_WIRE)) << "the page shown last";
            EXPECT_EQ(SendMessageA(dialog.tabs(), TCM_GETCURSEL, 0, 0), 1);
            EXPECT_TRUE(IsDlgButtonChecked(dialog.page(IDC_COLOUR_CUSTOM), IDC_COLOUR_CUSTOM));
            SendMessageA(dialog.control(IDC_DRAG_FULL), BM_CLICK, 0, 0);
            SendMessageA(dialog.control(IDC_COLOUR_CUSTOM), BM_CLICK, 0, 0);
            dialog.close(IDOK);
        }
        editor.call([](Editor& e) {
            EXPECT_EQ(e.view.dragDrawMode, DragDrawMode::full);
            EXPECT_EQ(e.colourPicking.picker, ColourPicker::system);
            EXPECT_FALSE(e.document.modelChanged);
            e.transparentColour = 0x8123;
        });
        EXPECT_EQ(coloursOf(editor)[1], defaultColours[1]);
        editor.post(WM_CLOSE);
        EXPECT_EQ(editor.waitForEnd(), 0);
    }
    const RunningEditor editor({}, Platform::nt, {}, path); // the next run
    EXPECT_EQ(coloursOf(editor), (Colours{0x8010, 0x83E0, 0x8123}));
    const OpenDialog dialog(editor);
    EXPECT_TRUE(dialog.shows(IDC_COLOUR_BACKGROUND)) << "the page is not saved";
    EXPECT_TRUE(IsDlgButtonChecked(dialog.page(IDC_DRAG_FULL), IDC_DRAG_FULL));
    dialog.close(IDOK);
}

TEST(PropertyDialog, AModuleThatDoesNotServeGivesAnAlertAndBlack)
{
    const TemporaryFolder folder;
    const std::string text = folder.file("GetColor.dll");
    ASSERT_EQ(writeFile(text, std::as_bytes(std::span("no module"))), Message::none);
    for (const char* source :
         {static_cast<const char*>(nullptr), text.c_str(), STRANGER_MODULE_WITHOUT_EXPORT})
        for (const int button : {IDCANCEL, IDOK}) {
            SCOPED_TRACE(source ? source : "missing");
            const ModuleInPlace module(source);
            const RunningEditor editor;
            const OpenDialog dialog(editor);
            EXPECT_EQ(dialog.swatchPixel(IDC_COLOUR_BACKGROUND), 0x000080u);
            dialog.press(IDC_COLOUR_BACKGROUND);
            const ShownAlert alert = dialog.waitForNext();
            EXPECT_EQ(alert.text, "Cannot find GetColor.dll.");
            EXPECT_EQ(GetWindow(alert.window, GW_OWNER), nullptr);
            if (!source) savePicture(editor.pictureOf(alert.window), "property-no-module");
            EXPECT_TRUE(editor.press(alert, IDOK));
            EXPECT_TRUE(waitUntil([&] { return dialog.swatchPixel(IDC_COLOUR_BACKGROUND) == 0; }));
            dialog.close(button);
            EXPECT_EQ(coloursOf(editor)[0], button == IDOK ? 0 : defaultColours[0]);
        }
}

TEST(PropertyDialog, SixteenBitsOfAStrangersAnswerAreTaken)
{
    const ModuleInPlace module(STRANGER_MODULE);
    const RunningEditor editor;
    const OpenDialog dialog(editor);
    const int swatches[] = {IDC_COLOUR_BACKGROUND, IDC_COLOUR_PICKED, IDC_COLOUR_TRANSPARENT};
    for (const int swatch : swatches) SendMessageA(dialog.control(swatch), BM_CLICK, 0, 0);
    dialog.close(IDOK);
    EXPECT_EQ(coloursOf(editor), (Colours{0x7FEF, 0x7C1F, 0x7FFF}));
    const Picture view = editor.picture();
    EXPECT_EQ(view.at(4, view.height / 2), 0xFFFF7Bu) << "the view is drawn anew";
    EXPECT_FALSE(GetModuleHandleA("GetColor.dll")) << "unloaded again";
}

TEST(PropertyDialog, TheSystemsDialogIsUsedWhileTheBoxIsNotChecked)
{
    const RunningEditor editor;
    const OpenDialog dialog(editor);
    SendMessageA(dialog.control(IDC_COLOUR_CUSTOM), BM_CLICK, 0, 0);
    dialog.press(IDC_COLOUR_PICKED);
    const ShownAlert colours = dialog.waitForNext();
    for (const int field : {706, 707, 708}) // red, green, blue
        SetDlgItemInt(colours.window, field, field == 708 ? 255 : 0, FALSE);
    EXPECT_TRUE(editor.press(colours, IDOK));
    dialog.close(IDOK);
    EXPECT_EQ(coloursOf(editor), (Colours{0x8010, 0x003E, 0x8000}));
}

/// Presses a key in the module's dialog, where the focus is.
void type(const ShownAlert& colours, int control, std::initializer_list<WPARAM> keys)
{
    const HWND part = GetDlgItem(colours.window, control);
    for (const WPARAM key : keys) SendMessageA(part, WM_KEYDOWN, key, 0);
}

/// Presses the mouse in the middle of a part's cell.
void click(const ShownAlert& colours, int control, int cell, int cells)
{
    const HWND part = GetDlgItem(colours.window, control);
    RECT area{};
    GetClientRect(part, &area);
    const LPARAM at = MAKELPARAM((area.right * (2 * cell + 1)) / (2 * cells), area.bottom / 2);
    SendMessageA(part, WM_LBUTTONDOWN, MK_LBUTTON, at);
    SendMessageA(part, WM_LBUTTONUP, 0, at);
}

TEST(ColourModule, ChoosesByStripNumberFieldAndRecentColour)
{
    const RunningEditor editor;
    const OpenDialog dialog(editor);
    const struct {
        const char* what;
        void (*act)(const ShownAlert& colours);
        int button;
        Rgb555 expected;
    } steps[] = {
        {"cells and numbers",
         [](const ShownAlert& c) {
             click(c, IDC_RED_STRIP, 24, 32);
             SetDlgItemInt(c.window, IDC_GREEN_NUMBER, 9, FALSE);
             type(c, IDC_BLUE_STRIP, {VK_HOME, VK_RIGHT, VK_PRIOR});
         },
         IDOK, 0x8000 | rgb555(24, 9, 5)},
        {"cancelled", [](const ShownAlert& c) { click(c, IDC_FIELD, 0, 2); }, IDCANCEL,
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
        {"the oldest", [](const ShownAlert& c) { click(c, IDC_RECENT, 2, 16); }, IDOK,
         0x8000 | rgb555(24, 9, 5)},
        {"the old one again",
         [](const ShownAlert& c) {
             type(c, IDC_FIELD, {VK_DOWN, VK_RIGHT, VK_NEXT});
             click(c, IDC_SAMPLE, 1, 2);
         },
         IDOK, 0x8000 | rgb555(24, 9, 5)},
    };
    for (const auto& step : steps) {
        SCOPED_TRACE(step.what);
        dialog.press(IDC_COLOUR_TRANSPARENT);
        const ShownAlert colours = dialog.waitForNext();
        step.act(colours);
        savePicture(editor.pictureOf(colours.window), std::string("colour-module ") + step.what);
        EXPECT_TRUE(editor.press(colours, step.button));
        EXPECT_TRUE(waitUntil([&] { return IsWindowEnabled(dialog.shown.window) != FALSE; }));
        const auto [red, green, blue] = toScreenColour(step.expected);
        EXPECT_EQ(dialog.swatchPixel(IDC_COLOUR_TRANSPARENT),
                  static_cast<std::uint32_t>(red << 16 | green << 8 | blue));
    }
    dialog.close(IDOK);
    EXPECT_EQ(coloursOf(editor)[2], 0x8000 | rgb555(24, 9, 5));
}

} // namespace

} // namespace facetor
