// Takes the manual's pictures of windows: drives the editor with the samples, as if it were
// installed in C:\Facetor, and saves every picture by the name that the pages use.
// scripts/manual-pictures runs it for the pictures; as a test it shows that all windows open and
// that the first five minutes are true.
#include "app/commands.h"
#include "app/main_window.h"
#include "base/file.h"
#include "base/folder.h"
#include "driver/held_key.h"
#include "driver/running_editor.h"
#include "get_color/control_ids.h"
#include "image/bmp_codec.h"
#include "resources/resource_ids.h"
#include "ui/handles.h"
#include "windows/texture_window.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace facetor {

namespace {

constexpr char samples[] = "C:\\Facetor\\Samples";
constexpr char ship[] = "C:\\Facetor\\Samples\\ship.mx3";
constexpr char shipTextures[] = "C:\\Facetor\\Samples\\ship.mxt";
constexpr char popupMenuClass[] = "#32768";

/// Objects of the ship.
constexpr std::uint32_t hull = 0, dish = 6, wingRight = 7, wingLeft = 11;

/// Makes C:\Facetor with the samples, and with images to import.
void install()
{
    namespace fs = std::filesystem;
    const fs::path folder = "C:\\Facetor";
    fs::remove_all(folder);
    fs::create_directories(folder / "Pictures");
    fs::create_directories(folder / "Samples");
    for (const auto& entry : fs::directory_iterator("samples"))
        if (entry.is_regular_file())
            fs::copy_file(entry, folder / "Samples" / entry.path().filename());
    const std::vector<Rgb555> texels(64 * 64, opaqueBit);
    for (const char* name : {"bricks", "roof", "sky", "wood"})
        ASSERT_EQ(writeFile((folder / "Pictures" / name).string() + ".bmp",
                            bmpCodec.encode({64, 64, texels})),
                  Message::none);
}

/// Draws `top` over `picture`, its upper left corner at (left, y), cut at the edges.
void drawOver(WindowPicture& picture, const WindowPicture& top, int left, int y)
{
    for (int row = std::max(0, -y); row < top.height && row + y < picture.height; ++row)
        for (int column = std::max(0, -left); column < top.width && column + left < picture.width;
             ++column) {
            const auto from = static_cast<std::size_t>(3 * (row * top.width + column));
            const auto to =
                static_cast<std::size_t>(3 * ((row + y) * picture.width + column + left));
            std::copy_n(top.rgb.begin() + static_cast<std::ptrdiff_t>(from), 3,
                        picture.rgb.begin() + static_cast<std::ptrdiff_t>(to));
        }
}

WindowPicture cutOut(const WindowPicture& picture, int left, int top, int width, int height)
{
    WindowPicture part{width, height,
                       std::vector<std::uint8_t>(static_cast<std::size_t>(3 * width * height))};
    drawOver(part, picture, -left, -top);
    return part;
}

/// Makes the tower and all on it `times` as high: what stands 20 above the sea and beside the
/// house.
void makeTower(const std::string& path, double times)
{
    std::ifstream file(path);
    std::ostringstream changed;
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        std::string keyword;
        double x = 0, y = 0, z = 0;
        if (words >> keyword >> x >> y >> z && keyword == "v" && x > -20 && y > 20)
            changed << "v " << x << ' ' << 20 + (y - 20) * times << ' ' << z << '\n';
        else
            changed << line << '\n';
    }
    file.close();
    std::ofstream(path) << changed.str();
}

/// An editor with the ship, turned a little to the side, in a window of a good size for a page.
class ManualPictures : public testing::Test {
protected:
    static void SetUpTestSuite() { install(); }

    ManualPictures() : before_(std::filesystem::current_path())
    {
        std::filesystem::current_path(samples);
        editor.call([](Editor& e) {
            SetWindowPos(e.mainWindow, nullptr, 20, 20, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
            SetWindowPos(e.toolBox.window, nullptr, 560, 108, 0, 0,
                         SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
        });
        editor.resizeClient(600, 420);
        editor.open(ship);
        drag({300, 200}, {258, 232});
    }
    ~ManualPictures() override
    {
        editor.call([](Editor& e) {
            setModelChanged(e.document, false);
            setTexturesChanged(e.document, false);
        });
        std::filesystem::current_path(before_);
    }

    void mouse(UINT message, POINT at) const
    {
        const WPARAM keys = message == WM_LBUTTONUP ? 0 : MK_LBUTTON;
        editor.send(message, keys, MAKELPARAM(at.x, at.y));
    }
    /// A drag in the model view in ten moves.
    void beginDrag(POINT from, POINT to) const
    {
        mouse(WM_LBUTTONDOWN, from);
        for (int step = 1; step <= 10; ++step)
            mouse(WM_MOUSEMOVE,
                  {from.x + (to.x - from.x) * step / 10, from.y + (to.y - from.y) * step / 10});
    }
    void drag(POINT from, POINT to) const
    {
        beginDrag(from, to);
        mouse(WM_LBUTTONUP, to);
    }
    void click(POINT at) const
    {
        mouse(WM_LBUTTONDOWN, at);
        mouse(WM_LBUTTONUP, at);
    }

    /// Marks all polygons of one object.
    void pick(std::uint32_t object) const
    {
        editor.call([&](Editor& e) {
            const Mesh& mesh = e.document.model.meshes[object];
            for (std::uint32_t i = 0; i < mesh.polygonCount; ++i)
                e.document.model.attributes[mesh.attributeTable + i].flags |= picked;
        });
        editor.send(messageRedraw);
    }

    /// The main window with owned windows over it, as it is on the screen.
    WindowPicture scene(const std::vector<HWND>& owned) const
    {
        RECT main{};
        GetWindowRect(editor.window(), &main);
        RECT all = main;
        for (const HWND window : owned) {
            RECT place{};
            GetWindowRect(window, &place);
            UnionRect(&all, &all, &place);
        }
        const int width = all.right - all.left, height = all.bottom - all.top;
        WindowPicture picture{
            width, height,
            std::vector<std::uint8_t>(static_cast<std::size_t>(3 * width * height), 255)};
        drawOver(picture, editor.pictureOf(editor.window()), main.left - all.left,
                 main.top - all.top);
        for (const HWND window : owned) {
            RECT place{};
            GetWindowRect(window, &place);
            drawOver(picture, editor.pictureOf(window), place.left - all.left, place.top - all.top);
        }
        return picture;
    }
    HWND toolBox() const
    {
        return editor.ask([](Editor& e) { return e.toolBox.window; });
    }
    /// Opens a window by its command and puts it somewhere.
    HWND openWindow(int command, HWND (*find)(Editor&), RECT place) const
    {
        editor.sendCommand(command);
        const HWND window = editor.ask(find);
        EXPECT_TRUE(window);
        editor.call([&](Editor&) {
            const UINT keepSize = place.right == place.left ? SWP_NOSIZE : 0u;
            SetWindowPos(window, nullptr, place.left, place.top, place.right - place.left,
                         place.bottom - place.top, SWP_NOZORDER | keepSize);
        });
        return window;
    }
    HWND openAttributes(POINT at = {400, 330}) const
    {
        return openWindow(IDM_VIEW_ATTRIBUTES, [](Editor& e) { return e.attributeWindow; },
                          {at.x, at.y, at.x, at.y});
    }
    HWND openTextures() const
    {
        const HWND window =
            openWindow(IDM_VIEW_TEXTURES, [](Editor& e) { return e.textureWindow.window; },
                       {40, 470, 40 + 540, 470 + 214});
        editor.call([&](Editor& e) { // the frame that moves stands still, the same each time
            KillTimer(window, 1);
            e.textureWindow.marqueePhase = 0;
        });
        return window;
    }
    void choosePage(HWND attributes, int page) const
    {
        SendDlgItemMessageA(attributes, IDC_ATTRIBUTE_TABS, TCM_SETCURFOCUS,
                            static_cast<WPARAM>(page), 0);
    }

    void save(HWND window, const std::string& name) const
    {
        savePicture(editor.pictureOf(window), name);
    }
    /// Opens a dialog by a main window's command, saves its picture and cancels it.
    void saveDialog(int command, const std::string& name) const
    {
        const ShownAlert dialog = editor.openDialog(command);
        ASSERT_TRUE(dialog.window) << name;
        save(dialog.window, name);
        editor.closeDialog(dialog, dialog.buttons.back());
    }
    /// The same of a command of the texture list window.
    ShownAlert beginTextureCommand(int command) const
    {
        editor.begin([command](Editor& e) { runCommand(e, CommandWindow::textures, command, 0); });
        return editor.waitForAlert();
    }
    void saveFileDialog(const std::string& name) const
    {
        const HWND dialog = editor.waitForFileDialog();
        ASSERT_TRUE(dialog) << name;
        // The list of files is filled by a thread of the dialog's own.
        const HWND list = FindWindowExA(FindWindowExA(dialog, nullptr, "SHELLDLL_DefView", nullptr),
                                        nullptr, WC_LISTVIEWA, nullptr);
        EXPECT_TRUE(waitUntil([&] { return SendMessageA(list, LVM_GETITEMCOUNT, 0, 0) > 0; }));
        save(dialog, name);
        EXPECT_TRUE(editor.cancelFileDialog());
    }
    /// Pulls a menu of a window's bar down, by its mnemonic, and saves its picture.
    void saveMenu(HWND window, char key, const std::string& name) const
    {
        PostMessageA(window, WM_SYSCOMMAND, SC_KEYMENU, key);
        HWND popup = nullptr;
        ASSERT_TRUE(
            waitUntil([&] { return (popup = editor.findWindow(popupMenuClass)) != nullptr; }));
        save(popup, name);
        editor.call([](Editor&) { EndMenu(); });
        EXPECT_TRUE(waitUntil([&] { return !editor.findWindow(popupMenuClass); }));
    }

private:
    std::filesystem::path before_;

protected:
    RunningEditor editor{{ship, shipTextures}};
};

TEST_F(ManualPictures, MainWindow)
{
    const HWND box = toolBox();
    savePicture(scene({box}), "main-window");
    const WindowPicture whole = editor.pictureOf(editor.window());
    RECT outer{}, bar{}, status{};
    GetWindowRect(editor.window(), &outer);
    GetWindowRect(editor.ask([](Editor& e) { return e.toolBar; }), &bar);
    GetWindowRect(editor.ask([](Editor& e) { return e.statusBar; }), &status);
    savePicture(cutOut(whole, 0, bar.top - outer.top, 360, bar.bottom - bar.top), "tool-bar");
    savePicture(cutOut(whole, 0, status.top - outer.top, 608, status.bottom - status.top),
                "status-bar");
    save(box, "tool-box");
    beginDrag({264, 176}, {320, 200});
    savePicture(scene({box}), "dragging");
    mouse(WM_LBUTTONUP, {320, 200});
}

TEST_F(ManualPictures, Menus)
{
    editor.sendCommand(IDM_ROTATE_HALF_TURN); // something to undo
    editor.sendCommand(IDM_SELECT_ALL);
    editor.sendCommand(IDM_FILE_WATCH); // as it is from the start
    for (const auto& [key, name] : {std::pair{'f', "menu-file"},
                                    {'e', "menu-edit"},
                                    {'v', "menu-view"},
                                    {'o', "menu-options"},
                                    {'h', "menu-help"}})
        saveMenu(editor.window(), key, name);
    const HWND textures = openTextures();
    SendMessageA(textures, WM_COMMAND, IDM_TEXTURE_WATCH, 0);
    for (const auto& [key, name] : {std::pair{'f', "menu-texture-file"},
                                    {'e', "menu-texture-edit"},
                                    {'v', "menu-texture-view"},
                                    {'t', "menu-texture-tools"}})
        saveMenu(textures, key, name);
    const HWND hierarchy = openWindow(
        IDM_VIEW_HIERARCHY, [](Editor& e) { return e.hierarchyWindow; }, {700, 60, 900, 400});
    saveMenu(hierarchy, 't', "menu-hierarchy-tools");
}

TEST_F(ManualPictures, Selecting)
{
    editor.sendCommand(IDM_TOOL_SELECT);
    click({300, 225});
    savePicture(scene({toolBox()}), "picked-one");
    editor.sendCommand(IDM_SELECT_CLEAR);
    beginDrag({60, 60}, {330, 330});
    savePicture(editor.picture(), "rubber-band");
    mouse(WM_LBUTTONUP, {330, 330});
    savePicture(editor.picture(), "rubber-band-after");
}

TEST_F(ManualPictures, AttributeWindow)
{
    editor.sendCommand(IDM_TOOL_SELECT);
    click({300, 225});
    const HWND attributes = openAttributes();
    for (int page = 0; const char* name : {"material", "mode", "zsort", "gouraud", "option"}) {
        choosePage(attributes, page++);
        save(attributes, std::string("attribute-") + name);
    }
}

TEST_F(ManualPictures, HierarchyWindow)
{
    const HWND window = openWindow(IDM_VIEW_HIERARCHY, [](Editor& e) { return e.hierarchyWindow; },
                                   {528, 60, 728, 526});
    const auto sendTree = [&](UINT message, WPARAM wParam, std::uint32_t object) {
        const auto items = editor.ask([](Editor& e) { return e.hierarchyItems; });
        SendDlgItemMessageA(window, IDC_HIERARCHY_TREE, message, wParam,
                            reinterpret_cast<LPARAM>(items.at(object)));
    };
    const auto holdShiftAndControl = [&](BYTE state) {
        std::array<BYTE, 256> keys{};
        keys[VK_SHIFT] = keys[VK_CONTROL] = state;
        editor.call([&](Editor&) { SetKeyboardState(keys.data()); });
    };
    sendTree(TVM_SELECTITEM, TVGN_CARET, dish);
    holdShiftAndControl(0x80);
    PostMessageA(window, WM_COMMAND, IDM_HIERARCHY_INFORMATION, 0);
    ShownAlert dialog = editor.waitForAlert();
    holdShiftAndControl(0);
    save(dialog.window, "edit-object");
    editor.closeDialog(dialog, IDCANCEL);
    PostMessageA(window, WM_COMMAND, IDM_HIERARCHY_RENAME, 0);
    dialog = editor.waitForAlert();
    save(dialog.window, "rename-model");
    editor.closeDialog(dialog, IDCANCEL);
    save(window, "hierarchy");
    sendTree(TVM_SELECTITEM, TVGN_CARET, wingRight);
    sendTree(TVM_EXPAND, TVE_COLLAPSE, wingRight);
    SendMessageA(window, WM_COMMAND, IDC_HIERARCHY_HIDE, 0);
    savePicture(scene({window}), "hierarchy-hidden");
}

TEST_F(ManualPictures, TargetWindows)
{
    const auto count = [](HWND window, int list) {
        return SendDlgItemMessageA(window, list, LVM_GETITEMCOUNT, 0, 0);
    };
    const HWND budget =
        openWindow(IDM_VIEW_BUDGET, [](Editor& e) { return e.budget.window; }, {660, 40, 660, 40});
    EXPECT_TRUE(waitUntil([&] { return count(budget, IDC_BUDGET_WARNINGS) > 0; }));
    save(budget, "budget");
    const HWND order = openWindow(IDM_VIEW_DRAW_ORDER, [](Editor& e) { return e.drawOrder.window; },
                                  {660, 40, 660, 40});
    CheckDlgButton(order, IDC_ORDER_ASK, BST_CHECKED);
    SendMessageA(order, WM_COMMAND, IDC_ORDER_ASK, 0);
    click({330, 205});
    SendDlgItemMessageA(order, IDC_ORDER_SLIDER, TBM_SETPOS, TRUE, 120);
    SendMessageA(order, WM_HSCROLL, 0, 0);
    EXPECT_TRUE(waitUntil([&] { return count(order, IDC_ORDER_PAIRS) > 0; }));
    save(order, "draw-order");
    savePicture(editor.picture(), "draw-order-view");
}

TEST_F(ManualPictures, Dialogs)
{
    saveDialog(IDM_OPTIONS_LIGHT, "light");
    saveDialog(IDM_OPTIONS_SCREEN, "screen");
    saveDialog(IDM_HELP_ABOUT, "version-information");
    const ShownAlert property = editor.openDialog(IDM_EDIT_PROPERTY);
    const HWND tabs = GetDlgItem(property.window, IDC_PROPERTY_TABS);
    save(property.window, "property-color");
    HWND page = nullptr, swatch = nullptr;
    while (!swatch && (page = FindWindowExA(property.window, page, "#32770", nullptr)) != nullptr)
        swatch = GetDlgItem(page, IDC_COLOUR_BACKGROUND);
    PostMessageA(swatch, BM_CLICK, 0, 0);
    ShownAlert colours;
    EXPECT_TRUE(waitUntil([&] {
        colours = editor.findAlert();
        return colours.window != property.window && !colours.buttons.empty();
    }));
    save(colours.window, "colour");
    EXPECT_TRUE(editor.press(colours, IDCANCEL));
    EXPECT_TRUE(waitUntil([&] { return IsWindowEnabled(property.window) != FALSE; }));
    SendMessageA(tabs, TCM_SETCURFOCUS, 1, 0);
    save(property.window, "property-drag");
    editor.closeDialog(property, IDCANCEL);
}

TEST_F(ManualPictures, WhatIsKept)
{
    // 2 April 2026, 12:00 UTC, and a quarter of an hour for each version.
    constexpr std::uint64_t start = 134196048000000000, quarter = 9000000000;
    constexpr char kept[] = "C:\\Facetor\\Kept";
    std::filesystem::remove_all(kept);
    editor.call([&](Editor& e) {
        e.versions.folder = pathIn(kept, "Versions");
        startKeeper(e.keeper, pathIn(kept, "Recovery"));
    });
    const auto asIt = readFile(ship);
    for (std::uint64_t version = 0; const std::uint32_t object : {dish, wingRight, wingLeft}) {
        const std::uint64_t time = start + quarter * version++;
        const FILETIME written{static_cast<DWORD>(time), static_cast<DWORD>(time >> 32)};
        { // closed before the save, which could not replace it
            const UniqueHandle<HANDLE, CloseHandle> file(
                CreateFileA(ship, FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE,
                            nullptr, OPEN_EXISTING, 0, nullptr));
            SetFileTime(file.get(), nullptr, nullptr, &written);
        }
        editor.call([&](Editor& e) {
            const Mesh& mesh = e.document.model.meshes[object];
            (void)change(e.document, Word::stepAttributes, [&] {
                for (std::uint32_t i = 0; i < mesh.polygonCount; ++i)
                    e.document.model.attributes[mesh.attributeTable + i].flags |= meshMode;
                return EditOutcome{};
            });
        });
        editor.sendCommand(IDM_FILE_SAVE);
    }
    const ShownAlert versions = editor.openDialog(IDM_FILE_VERSIONS);
    save(versions.window, "earlier-versions");
    editor.closeDialog(versions, IDCANCEL);
    editor.call([](Editor& e) {
        markModelChanged(e.document);
        keepForLater(e.keeper, e.document, e.view);
        waitForKept(e.keeper);
        e.keeper.recoverable.front().state.writtenAt = 1775131200;
    });
    const ShownAlert recovery = editor.openDialog(IDM_FILE_RECOVER);
    save(recovery.window, "recover");
    editor.closeDialog(recovery, IDCANCEL);
    editor.call([](Editor& e) {
        endKeeper(e.keeper, e.document, e.view, KeeperEnd::decided);
        e.versions.folder.clear();
    });
    ASSERT_EQ(writeFile(ship, *asIt), Message::none);
}

TEST_F(ManualPictures, FileDialogsAndAlerts)
{
    editor.post(WM_COMMAND, IDM_FILE_OPEN);
    saveFileDialog("open");
    editor.post(WM_COMMAND, IDM_FILE_SAVE_AS);
    saveFileDialog("save-as");
    editor.setChanged();
    editor.post(WM_COMMAND, IDM_FILE_OPEN);
    const ShownAlert question = editor.waitForAlert();
    save(question.window, "question");
    editor.closeDialog(question, IDCANCEL);
    openAttributes();
    editor.begin([](Editor& e) { SendMessageA(e.attributeWindow, WM_COMMAND, IDOK, 0); });
    const ShownAlert alert = editor.waitForAlert();
    save(alert.window, "alert");
    editor.closeDialog(alert, IDOK);
}

TEST_F(ManualPictures, TextureListWindow)
{
    const HWND textures = openTextures();
    save(textures, "texture-list");
    for (const auto& [command, name] : {std::pair{IDM_TEXTURE_FLIP, "flip-texture"},
                                        {IDM_TEXTURE_ROTATE, "rotate-texture"},
                                        {IDM_TEXTURE_SCALE, "texture-size"},
                                        {IDM_TEXTURE_EXPORT, "export"},
                                        {IDM_TEXTURE_DELETE_ALL, "warning"}}) {
        const ShownAlert dialog = beginTextureCommand(command);
        ASSERT_TRUE(dialog.window) << name;
        save(dialog.window, name);
        editor.closeDialog(dialog, IDCANCEL);
    }
    std::filesystem::current_path("C:\\Facetor\\Pictures");
    editor.begin([](Editor& e) { runCommand(e, CommandWindow::textures, IDM_TEXTURE_IMPORT, 0); });
    saveFileDialog("import");
}

/// Zigzag stripes in two colours, 128 x 128 texels.
void putStripes(TextureList& list, std::uint32_t slot)
{
    constexpr std::uint16_t size = 128;
    Texels texels;
    ASSERT_TRUE(texels.allocate(size * size));
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x) {
            const int bend = std::abs(y % 32 - 16);
            const bool dark = (x + bend) / 8 % 2 != 0;
            texels[static_cast<std::size_t>(y * size + x)] = static_cast<Rgb555>(
                opaqueBit | (dark ? rgb555(24, 4, 4) : rgb555(31, 27 - y / 8, 8)));
        }
    list.set(slot, size, size, std::move(texels));
}

TEST_F(ManualPictures, Slicing)
{
    constexpr std::uint32_t picture = 16;
    const HWND textures = openTextures();
    editor.call([](Editor& e) {
        putStripes(e.document.textures, picture);
        chooseTexture(e, picture);
    });
    editor.sendCommand(IDM_CAMERA_TOP);
    editor.call(
        [](Editor& e) { runCommand(e, CommandWindow::textures, IDM_TEXTURE_SHOW_SLICED, 0); });
    editor.sendCommand(IDM_TOOL_MOVE_SLICE);
    savePicture(scene({toolBox(), textures}), "slice-shown");
    for (const std::uint32_t object : {hull, wingRight, wingLeft}) pick(object);
    savePicture(editor.picture(), "slice-picked");
    const ShownAlert warning = beginTextureCommand(IDM_TEXTURE_SLICE);
    EXPECT_TRUE(editor.press(warning, IDNO));
    const ShownAlert dialog = editor.waitForAlert();
    save(dialog.window, "slice-texture");
    SendDlgItemMessageA(dialog.window, IDC_SLICE_LAST, BM_CLICK, 0, 0);
    SendDlgItemMessageA(dialog.window, IDC_SLICE_REPEAT, BM_CLICK, 0, 0);
    SetDlgItemTextA(dialog.window, IDC_SLICE_WIDTH, "16");
    SetDlgItemTextA(dialog.window, IDC_SLICE_HEIGHT, "16");
    editor.closeDialog(dialog, IDOK);
    editor.sendCommand(IDM_SELECT_CLEAR);
    editor.call(
        [](Editor& e) { runCommand(e, CommandWindow::textures, IDM_TEXTURE_SHOW_SLICED, 0); });
    savePicture(scene({toolBox(), textures}), "slice-done");
}

/// The way from an OBJ to C source, as the page about models has it.
TEST_F(ManualPictures, FromAnObjToCSource)
{
    namespace fs = std::filesystem;
    const fs::path folder = "C:\\Facetor\\Mine";
    fs::create_directories(folder);
    for (const auto& entry : fs::directory_iterator(samples))
        if (entry.path().filename().string().starts_with("lighthouse"))
            fs::copy_file(entry, folder / entry.path().filename());
    const std::string obj = (folder / "lighthouse.obj").string();
    fs::current_path(folder);

    editor.postDrop({obj});
    const ShownAlert dialog = editor.waitForAlert();
    save(dialog.window, "import-model");
    editor.closeDialog(dialog, IDOK);
    ASSERT_TRUE(editor.waitForTitle("lighthouse"));
    savePicture(scene({toolBox()}), "model-opened");

    editor.sendCommand(IDM_CAMERA_BACK);
    const auto saveMiddle = [&](const std::string& name) {
        savePicture(cutOut(editor.picture(), 180, 140, 260, 200), name);
    };
    saveMiddle("model-before");
    editor.sendCommand(IDM_TOOL_SELECT);
    click({345, 280}); // the grass before the house,
    click({312, 270}); // and that beside it
    const HWND attributes = openAttributes();
    choosePage(attributes, 2);
    HWND page = nullptr;
    do page = FindWindowExA(attributes, page, "#32770", nullptr);
    while (page && !IsWindowVisible(page));
    SendDlgItemMessageA(page, IDC_ATTRIBUTE_FARTHEST, BM_CLICK, 0, 0);
    SendMessageA(attributes, WM_COMMAND, IDOK, 0);
    editor.sendCommand(IDM_SELECT_CLEAR);
    editor.sendCommand(IDM_VIEW_ATTRIBUTES);
    saveMiddle("model-after");

    const std::string model = (folder / "lighthouse.mx3").string();
    editor.post(WM_COMMAND, IDM_FILE_SAVE);
    EXPECT_TRUE(editor.fillFileDialog(model));
    EXPECT_TRUE(editor.waitForTitle(model));
    makeTower(obj, 1.25);
    editor.sendCommand(IDM_FILE_IMPORT_AGAIN);
    savePicture(scene({toolBox()}), "model-again");
    editor.call([](Editor& e) {
        const PolygonAttribute* first = e.document.model.attributes.data();
        EXPECT_TRUE(std::any_of(first, first + e.document.model.totalPolygonCount,
                                [](const auto& a) { return a.sort == sortFarthest; }));
    });
    editor.sendCommand(IDM_FILE_SAVE);
    const std::string source = (folder / "lighthouse.mdl").string();
    editor.post(WM_COMMAND, IDM_FILE_SAVE_AS);
    EXPECT_TRUE(editor.fillFileDialog(source, 2));
    EXPECT_TRUE(waitUntil([&] { return fs::exists(source); }));

    // A file that names what is not there.
    std::ofstream(folder / "sign.obj") << "mtllib sign.mtl\nv 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n"
                                          "usemtl board\nf 1 2 3 4\n";
    editor.setChanged(false);
    editor.beginOpen((folder / "sign.obj").string());
    editor.press(editor.waitForAlert(), IDOK);
    const ShownAlert report = editor.waitForAlert();
    save(report.window, "import-report");
    editor.closeDialog(report, IDOK);
}

/// Steps 4 to 6 of the first five minutes, as the page has them. At the end: it leaves recent
/// colours and folders behind.
TEST_F(ManualPictures, FirstFiveMinutes)
{
    editor.sendCommand(IDM_CAMERA_TOP);
    editor.sendCommand(IDM_TOOL_SELECT);
    click({300, 225});
    {
        const HeldKey shift(editor, VK_SHIFT);
        click({300, 225});
    }
    savePicture(scene({toolBox()}), "first-picked");
    const HWND attributes = openAttributes();
    HWND page = nullptr;
    do page = FindWindowExA(attributes, page, "#32770", nullptr);
    while (page && !IsWindowVisible(page));
    SendDlgItemMessageA(page, IDC_ATTRIBUTE_POLYGON, BM_CLICK, 0, 0);
    PostMessageA(GetDlgItem(page, IDC_ATTRIBUTE_COLOUR), BM_CLICK, 0, 0);
    const ShownAlert colours = editor.waitForAlert();
    for (const auto& [field, step] :
         {std::pair{IDC_RED_NUMBER, 28u}, {IDC_GREEN_NUMBER, 6u}, {IDC_BLUE_NUMBER, 6u}})
        SetDlgItemInt(colours.window, field, step, FALSE);
    editor.closeDialog(colours, IDOK);
    SendMessageA(attributes, WM_COMMAND, IDOK, 0);
    editor.sendCommand(IDM_SELECT_CLEAR);
    savePicture(scene({toolBox(), attributes}), "first-changed");

    const auto saveAs = [&](const char* path, int filter) {
        std::filesystem::remove(path);
        editor.post(WM_COMMAND, IDM_FILE_SAVE_AS);
        EXPECT_TRUE(editor.fillFileDialog(path, filter));
        EXPECT_TRUE(waitUntil([&] { return std::filesystem::exists(path); })) << path;
    };
    saveAs("C:\\Facetor\\myship.mx3", 1);
    EXPECT_TRUE(editor.waitForTitle("C:\\Facetor\\myship.mx3"));
    saveAs("C:\\Facetor\\myship.mdl", 2);
    editor.call([](Editor&) {});
    std::ifstream file("C:\\Facetor\\myship.mdl");
    const std::string source{std::istreambuf_iterator<char>(file), {}};
    const std::size_t hullTable = source.find("attribute_Hull[]");
    ASSERT_NE(hullTable, std::string::npos);
    EXPECT_LT(source.find("C_RGB(28, 6, 6)", hullTable), source.find("};", hullTable));
    EXPECT_TRUE(source.starts_with("/***")) << "as the page shows it";
}

} // namespace

} // namespace facetor
