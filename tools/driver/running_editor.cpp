#include "driver/running_editor.h"

#include "app/main_window.h"
#include "resources/resource_ids.h"
#include "ui/window_data.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>
#include <shlobj.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <mutex>

namespace facetor {

namespace {

using WindowCheck = std::function<bool(HWND)>;

struct WindowSearch {
    const WindowCheck& check;
    HWND found;
};

BOOL CALLBACK checkWindow(HWND window, LPARAM argument)
{
    auto& search = *reinterpret_cast<WindowSearch*>(argument);
    if (!search.check(window)) return TRUE;
    search.found = window;
    return FALSE;
}

/// The first top-level window of a thread that passes the check.
HWND findThreadWindow(DWORD thread, const WindowCheck& check)
{
    WindowSearch search{check, nullptr};
    EnumThreadWindows(thread, checkWindow, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

std::string className(HWND window)
{
    std::array<char, 64> name{};
    GetClassNameA(window, name.data(), static_cast<int>(name.size()));
    return name.data();
}

/// The name of the system's icon in an alert.
std::string iconOf(HWND alert)
{
    for (HWND child = GetWindow(alert, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        if (className(child) != "Static" ||
            (GetWindowLongPtrA(child, GWL_STYLE) & SS_TYPEMASK) != SS_ICON)
            continue;
        const LRESULT icon = SendMessageA(child, STM_GETICON, 0, 0);
        for (const auto& [name, id] : {std::pair{"stop", IDI_HAND},
                                       {"question", IDI_QUESTION},
                                       {"exclamation", IDI_EXCLAMATION}})
            if (icon == reinterpret_cast<LRESULT>(LoadIconA(nullptr, id))) return name;
    }
    return {};
}

constexpr char dialogClass[] = "#32770";
constexpr int alertTextId = 0xFFFF;
constexpr int firstFileNameId = 0x480; // what that field is until the dialog is complete
constexpr int fileNameId = 0x47C;      // the file dialog's field for the name
constexpr int fileFilterId = 0x470;    // and its list of filters

// The main window is subclassed, so that a test can run code on the editor's thread: a message that
// no other program and no control uses carries the function.
WNDPROC subclassed = nullptr;

UINT callMessage()
{
    static const UINT message = RegisterWindowMessageA("facetor gui test call");
    return message;
}

UINT beginMessage()
{
    static const UINT message = RegisterWindowMessageA("facetor gui test begin");
    return message;
}

std::mutex commandsMutex;
std::vector<int> commands;

LRESULT CALLBACK callingProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == callMessage()) {
        (*reinterpret_cast<const std::function<void(Editor&)>*>(lParam))(theEditor());
        return 1;
    }
    if (message == beginMessage()) {
        const std::unique_ptr<std::function<void(Editor&)>> action(
            reinterpret_cast<std::function<void(Editor&)>*>(lParam));
        (*action)(theEditor());
        return 1;
    }
    if (message == WM_COMMAND) {
        const std::lock_guard lock(commandsMutex);
        commands.push_back(LOWORD(wParam));
    }
    // Where the display's own cursor happens to be is none of the tests' business: they send
    // theirs.
    if ((message == WM_MOUSEMOVE || message == WM_NCMOUSEMOVE) && !InSendMessage()) return 0;
    return CallWindowProcA(subclassed, window, message, wParam, lParam);
}

void saveTestPicture(const WindowPicture& picture, const std::string& suffix)
{
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    if (!test) return; // a program that is no test
    savePicture(picture, std::string(test->test_suite_name()) + "." + test->name() + suffix);
}

BOOL CALLBACK findFiles(HWND window, LPARAM found)
{
    if (className(window) == "SHELLDLL_DefView" && IsWindowVisible(window))
        *reinterpret_cast<bool*>(found) = true;
    return TRUE;
}

} // namespace

bool isFileDialog(HWND window)
{
    const HWND dialog = GetAncestor(window, GA_ROOT);
    return GetDlgItem(dialog, fileNameId) || GetDlgItem(dialog, firstFileNameId);
}

bool isFilling(HWND window)
{
    bool hasFiles = false;
    EnumChildWindows(GetAncestor(window, GA_ROOT), findFiles, reinterpret_cast<LPARAM>(&hasFiles));
    return isFileDialog(window) && !hasFiles;
}

void giveAnswer(HWND dialog, int button)
{
    PostMessageA(dialog, WM_COMMAND, static_cast<WPARAM>(button), 0);
    constexpr int patience = 1000, pause = 5; // milliseconds
    for (int waited = 0; IsWindowEnabled(dialog) && waited < patience; waited += pause)
        Sleep(pause);
}

bool waitUntil(const std::function<bool()>& condition)
{
    const ULONGLONG start = GetTickCount64();
    while (!condition()) {
        if (GetTickCount64() - start > longestWait) return false;
        Sleep(5);
    }
    return true;
}

RunningEditor::RunningEditor(std::vector<std::string> arguments, Platform platform,
                             std::function<void()> prepare, std::string settingsPath,
                             std::string keepFolder)
{
    {
        const std::lock_guard lock(commandsMutex);
        commands.clear();
    }
    Start start{GetModuleHandleA(nullptr),
                platform,
                SW_SHOWNORMAL,
                std::move(arguments),
                std::move(settingsPath),
                std::move(keepFolder)};
    thread_ = std::thread([this, start = std::move(start), prepare = std::move(prepare)] {
        threadId_ = GetCurrentThreadId();
        if (prepare) prepare();
        exitCode_ = runProgram(start);
        ended_ = true;
    });
    waitUntil([&] {
        if (ended_) return true;
        if (threadId_ == 0) return false;
        window_ = findThreadWindow(threadId_, [](HWND window) {
            return className(window) == mainWindowClass && IsWindowVisible(window) &&
                   windowText(window) != "TEST";
        });
        return window_ != nullptr;
    });
    if (window_) {
        subclassed = reinterpret_cast<WNDPROC>(
            SetWindowLongPtrA(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(callingProcedure)));
        SendMessageA(window_, WM_NULL, 0, 0); // answered from the main loop: it has started
    }
}

RunningEditor::~RunningEditor()
{
    if (testing::Test::HasFailure() && !ended_ && window_) {
        saveTestPicture(pictureOf(window_), ".failed");
        if (const HWND dialog = findAlert().window)
            saveTestPicture(pictureOf(dialog), ".failed-dialog");
    }
    end();
    thread_.join(); // the watchdog ends the run if this never returns
}

void RunningEditor::end()
{
    waitUntil([&] {
        if (ended_) return true;
        if (const ShownAlert shown = findAlert(); shown.window && !shown.buttons.empty())
            giveAnswer(shown.window, shown.buttons.back());
        else if (window_)
            PostMessageA(window_, WM_CLOSE, 0, 0);
        Sleep(20);
        return ended_.load();
    });
}

int RunningEditor::waitForEnd()
{
    return waitUntil([&] { return ended_.load(); }) ? exitCode_ : -1;
}

std::string RunningEditor::title() const
{
    return windowText(window_);
}

bool RunningEditor::waitForTitle(const std::string& file) const
{
    const bool named = waitUntil([&] { return title() == "Facetor for NT - " + file; });
    EXPECT_TRUE(named) << title();
    return named;
}

bool RunningEditor::isChanged() const
{
    return ask([](Editor& e) { return isModelChanged(e.document); });
}

void RunningEditor::setChanged(bool changed) const
{
    call([=](Editor& e) { setModelChanged(e.document, changed); });
}

bool RunningEditor::isItemEnabled(int command) const
{
    return !(GetMenuState(GetMenu(window_), static_cast<UINT>(command), MF_BYCOMMAND) & MF_GRAYED);
}

bool RunningEditor::isItemChecked(int command) const
{
    return GetMenuState(GetMenu(window_), static_cast<UINT>(command), MF_BYCOMMAND) & MF_CHECKED;
}

std::string RunningEditor::statusText(int part) const
{
    const HWND statusBar = FindWindowExA(window_, nullptr, STATUSCLASSNAMEA, nullptr);
    const auto index = static_cast<WPARAM>(part);
    const auto length = LOWORD(SendMessageA(statusBar, SB_GETTEXTLENGTHA, index, 0));
    std::string text(length + 1u, '\0');
    SendMessageA(statusBar, SB_GETTEXTA, index, reinterpret_cast<LPARAM>(text.data()));
    return text.c_str();
}

LRESULT RunningEditor::send(UINT message, WPARAM wParam, LPARAM lParam) const
{
    return SendMessageA(window_, message, wParam, lParam);
}

LRESULT RunningEditor::sendCommand(int number, LPARAM argument) const
{
    return send(WM_COMMAND, static_cast<WPARAM>(number), argument);
}

void RunningEditor::post(UINT message, WPARAM wParam, LPARAM lParam) const
{
    PostMessageA(window_, message, wParam, lParam);
}

void RunningEditor::postDrop(const std::vector<std::string>& paths, HWND target) const
{
    std::string names;
    for (const std::string& path : paths) names += path + '\0';
    names += '\0';
    const HGLOBAL block = GlobalAlloc(GHND, sizeof(DROPFILES) + names.size());
    auto* files = static_cast<DROPFILES*>(GlobalLock(block));
    *files = {sizeof(DROPFILES), {0, 0}, FALSE, FALSE};
    std::memcpy(files + 1, names.data(), names.size());
    GlobalUnlock(block);
    PostMessageA(target ? target : window_, WM_DROPFILES, reinterpret_cast<WPARAM>(block),
                 0); // the receiver frees the block
}

void RunningEditor::call(const std::function<void(Editor&)>& action) const
{
    EXPECT_EQ(SendMessageA(window_, callMessage(), 0, reinterpret_cast<LPARAM>(&action)), 1)
        << "the editor is gone";
}

void RunningEditor::begin(std::function<void(Editor&)> action) const
{
    auto owned = std::make_unique<std::function<void(Editor&)>>(std::move(action));
    if (PostMessageA(window_, beginMessage(), 0, reinterpret_cast<LPARAM>(owned.get())))
        (void)owned.release(); // the window procedure owns it now
}

std::vector<int> RunningEditor::commandsSeen() const
{
    const std::lock_guard lock(commandsMutex);
    return commands;
}

void RunningEditor::resizeClient(int width, int height) const
{
    RECT outer{0, 0, width, height};
    AdjustWindowRectEx(&outer, static_cast<DWORD>(GetWindowLongPtrA(window_, GWL_STYLE)), TRUE, 0);
    SetWindowPos(window_, nullptr, 0, 0, outer.right - outer.left, outer.bottom - outer.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

WindowPicture RunningEditor::picture() const
{
    return ask([](Editor& editor) {
        UpdateWindow(editor.mainWindow);
        return captureClient(editor.mainWindow);
    });
}

WindowPicture RunningEditor::pictureOf(HWND window) const
{
    return ask([&](Editor&) {
        RedrawWindow(window, nullptr, nullptr,
                     RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
        return captureWindow(window);
    });
}

HWND RunningEditor::findWindow(const std::string& name) const
{
    return findThreadWindow(threadId_, [&](HWND window) {
        return className(window) == name && IsWindowVisible(window);
    });
}

ShownAlert RunningEditor::findAlert() const
{
    ShownAlert shown;
    // A modeless dialog may be open as well; what waits for an answer disables it. Tool windows are
    // no answers' business at any time.
    shown.window = findThreadWindow(threadId_, [](HWND window) {
        return className(window) == dialogClass && IsWindowVisible(window) &&
               IsWindowEnabled(window) && !isFilling(window) &&
               (GetWindowLongPtrA(window, GWL_EXSTYLE) & WS_EX_TOOLWINDOW) == 0;
    });
    if (!shown.window) return shown;
    shown.caption = windowText(shown.window);
    if (const HWND text = GetDlgItem(shown.window, alertTextId)) shown.text = windowText(text);
    shown.icon = iconOf(shown.window);
    for (const int id : {IDOK, IDCANCEL, IDYES, IDNO}) {
        const HWND button = GetDlgItem(shown.window, id);
        if (button && (GetWindowLongPtrA(button, GWL_STYLE) & WS_VISIBLE) != 0)
            shown.buttons.push_back(id);
    }
    return shown;
}

ShownAlert RunningEditor::waitForAlert() const
{
    ShownAlert shown;
    waitUntil([&] {
        shown = findAlert();
        return shown.window && !shown.buttons.empty();
    });
    return shown;
}

void RunningEditor::dismiss(const std::string& text, const std::string& icon) const
{
    const ShownAlert shown = waitForAlert();
    EXPECT_EQ(shown.text, text);
    if (!icon.empty()) {
        EXPECT_EQ(shown.icon, icon);
    }
    EXPECT_TRUE(press(shown, IDOK));
}

std::string RunningEditor::refusalOf(const ShownAlert& dialog) const
{
    PostMessageA(dialog.window, WM_COMMAND, IDOK, 0);
    ShownAlert shown;
    EXPECT_TRUE(waitUntil([&] {
        shown = findAlert();
        return shown.window && shown.window != dialog.window && !shown.buttons.empty();
    }));
    EXPECT_TRUE(press(shown, IDOK));
    EXPECT_TRUE(IsWindowVisible(dialog.window)) << "the dialog stays open";
    EXPECT_TRUE(waitUntil([&] { return IsWindowEnabled(dialog.window) != FALSE; }));
    return shown.text;
}

HWND RunningEditor::waitForFileDialog() const
{
    HWND dialog = nullptr;
    waitUntil([&] {
        dialog = findWindow(dialogClass);
        return dialog && GetDlgItem(dialog, fileNameId) && !isFilling(dialog) &&
               IsWindowVisible(GetDlgItem(dialog, fileNameId));
    });
    return dialog && GetDlgItem(dialog, fileNameId) ? dialog : nullptr;
}

bool RunningEditor::fillFileDialog(const std::string& path, int filter) const
{
    const HWND dialog = waitForFileDialog();
    if (!dialog) return false;
    if (filter != 0) {
        const HWND filters = GetDlgItem(dialog, fileFilterId);
        SendMessageA(filters, CB_SETCURSEL, static_cast<WPARAM>(filter - 1), 0);
        for (const int notification : {CBN_SELENDOK, CBN_SELCHANGE}) // as choosing by hand sends
            SendMessageA(dialog, WM_COMMAND, MAKEWPARAM(fileFilterId, notification),
                         reinterpret_cast<LPARAM>(filters));
    }
    SetDlgItemTextA(dialog, fileNameId, path.c_str());
    PostMessageA(dialog, WM_COMMAND, IDOK, 0);
    return waitUntil([&] { return !IsWindow(dialog); });
}

bool RunningEditor::cancelFileDialog() const
{
    const HWND dialog = waitForFileDialog();
    PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
    return dialog && waitUntil([&] { return !IsWindow(dialog); });
}

void RunningEditor::open(const std::string& path) const
{
    sendCommand(IDM_FILE_OPEN_PATH, reinterpret_cast<LPARAM>(path.c_str()));
}

void RunningEditor::beginOpen(const std::string& path) const
{
    begin([path](Editor& e) {
        SendMessageA(e.mainWindow, WM_COMMAND, IDM_FILE_OPEN_PATH,
                     reinterpret_cast<LPARAM>(path.c_str()));
    });
}

ShownAlert RunningEditor::openDialog(int command) const
{
    post(WM_COMMAND, static_cast<WPARAM>(command));
    return waitForAlert();
}

void RunningEditor::closeDialog(const ShownAlert& dialog, int button) const
{
    EXPECT_TRUE(press(dialog, button));
    EXPECT_TRUE(waitUntil([&] { return IsWindowEnabled(window_) != FALSE; }));
    call([](Editor&) {});
}

bool RunningEditor::press(const ShownAlert& alert, int button) const
{
    // The only button of a message box may bear the id of Cancel, whatever its text is.
    const int id =
        button == IDOK && alert.buttons == std::vector<int>{IDCANCEL} ? IDCANCEL : button;
    if (std::ranges::find(alert.buttons, id) == alert.buttons.end()) return false;
    PostMessageA(alert.window, WM_COMMAND, static_cast<WPARAM>(id), 0);
    return waitUntil([&] { return !IsWindow(alert.window); });
}

} // namespace facetor
