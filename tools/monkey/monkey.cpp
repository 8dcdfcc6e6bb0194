// A monkey at the editor: presses, types, drops and drags at random, and watches for crashes, hangs
// and for handles and memory that grow.
//
//     monkey.exe SECONDS [SEED]
//
// Works in rounds, each with an editor of its own and a seed that is printed first; with SEED there
// is that round alone. Run it from the repository's root: it drops copies of the samples, damaged
// ones too. Ends with 0, or with 3 for a hang, 4 for a crash, 5 for growth; the last actions are
// printed.
#include "driver/running_editor.h"
#include "monkey/process_usage.h"
#include "resources/resource_ids.h"
#include "ui/window_data.h"

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace facetor {

namespace {

namespace fs = std::filesystem;

constexpr DWORD longestAnswer =
    180000; ///< milliseconds until an editor that is silent counts as hung
constexpr ULONGLONG roundLength = 20000;
constexpr std::size_t rememberedActions = 40;
constexpr std::uint32_t warmUpRounds = 4; ///< what is loaded once is loaded by then

constexpr DWORD filling = 300;       ///< milliseconds that a dialog of the system needs at first
constexpr int fileNameField = 0x47C; ///< of the system's file dialog

enum ExitCode { hang = 3, crash = 4, growth = 5 };

std::atomic<ULONGLONG> lastSign = 0; ///< of life, in milliseconds of the system
std::deque<std::string> lastActions;
std::uint32_t seed = 0;
std::size_t answeredFileDialogs = 0; ///< over all rounds

void remember(std::string action)
{
    if (lastActions.size() == rememberedActions) lastActions.pop_front();
    lastActions.push_back(std::move(action));
}

BOOL CALLBACK printWindow(HWND window, LPARAM)
{
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process != GetCurrentProcessId()) return TRUE;
    std::array<char, 64> name{};
    GetClassNameA(window, name.data(), static_cast<int>(name.size()));
    std::printf("  window %s%s%s%s\n", name.data(), IsWindowVisible(window) ? " visible" : "",
                IsWindowEnabled(window) ? "" : " disabled", IsIconic(window) ? " minimised" : "");
    return TRUE;
}

[[noreturn]] void giveUp(ExitCode code, const char* what)
{
    std::printf("%s with seed %u; the last actions:\n", what, static_cast<unsigned>(seed));
    for (const std::string& action : lastActions) std::printf("  %s\n", action.c_str());
    EnumWindows(printWindow, 0);
    std::fflush(stdout);
    TerminateProcess(GetCurrentProcess(), code);
    std::abort();
}

/// Gives up where the monkey itself waits for good, as for the end of an editor that asks something
/// which cannot be seen.
void watch()
{
    for (;;) {
        Sleep(1000);
        if (GetTickCount64() - lastSign > longestAnswer + 60000)
            giveUp(ExitCode::hang, "hang of the round");
    }
}

void printPlace(const void* address)
{
    HMODULE module = nullptr;
    GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                           GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       static_cast<const char*>(address), &module);
    std::array<char, MAX_PATH> name{};
    GetModuleFileNameA(module, name.data(), static_cast<DWORD>(name.size()));
    std::printf("  %s + %zx\n", module ? name.data() : "nowhere",
                static_cast<std::size_t>(static_cast<const char*>(address) -
                                         reinterpret_cast<const char*>(module)));
}

/// Says where, with the callers as far as they can be found.
LONG WINAPI onCrash(EXCEPTION_POINTERS* fault)
{
    std::printf("exception %08lx\n", fault->ExceptionRecord->ExceptionCode);
    printPlace(fault->ExceptionRecord->ExceptionAddress);
    std::array<void*, 40> callers{};
    const auto count =
        CaptureStackBackTrace(0, static_cast<DWORD>(callers.size()), callers.data(), nullptr);
    for (std::size_t i = 0; i < count; ++i) printPlace(callers[i]);
    giveUp(ExitCode::crash, "crash");
}

BOOL CALLBACK addVisible(HWND window, LPARAM windows)
{
    if (IsWindowVisible(window)) reinterpret_cast<std::vector<HWND>*>(windows)->push_back(window);
    return TRUE;
}

std::string classOf(HWND window)
{
    std::array<char, 64> name{};
    GetClassNameA(window, name.data(), static_cast<int>(name.size()));
    return name.data();
}

/// The commands of a menu and its submenus that are enabled.
void addCommands(std::vector<int>& commands, HMENU menu)
{
    for (int at = 0; at < GetMenuItemCount(menu); ++at) {
        if (const HMENU below = GetSubMenu(menu, at)) {
            addCommands(commands, below);
            continue;
        }
        const UINT state = GetMenuState(menu, static_cast<UINT>(at), MF_BYPOSITION);
        const int id = static_cast<int>(GetMenuItemID(menu, at));
        // The end of a round is the round's business, and the manual opens another program.
        const bool isOutside = id == IDM_FILE_EXIT || id == IDM_HELP_CONTENTS;
        if (id > 0 && !isOutside && !(state & (MF_GRAYED | MF_DISABLED | MF_SEPARATOR)))
            commands.push_back(id);
    }
}

/// One round: an editor, and all that is done to it.
class Monkey {
public:
    Monkey(const RunningEditor& editor, std::vector<std::string> files)
        : editor_(editor), thread_(GetWindowThreadProcessId(editor.window(), nullptr)),
          files_(std::move(files)), random_(seed)
    {
    }

    /// Answers whatever still asks, until nothing more comes.
    void finish()
    {
        constexpr int patience = 500, calm = 5;
        int quiet = 0;
        for (int turn = 0; turn < patience && quiet < calm; ++turn) {
            awaitAnswer();
            Sleep(filling / calm);
            if (IsWindowEnabled(editor_.window())) {
                ++quiet;
            } else {
                quiet = 0;
                answer();
            }
        }
    }

    void step()
    {
        if (IsWindowEnabled(editor_.window()))
            use();
        else
            answer();
        awaitAnswer();
    }

private:
    int below(int end)
    {
        return static_cast<int>(random_() % static_cast<unsigned>(std::max(end, 1)));
    }
    template <typename List> const auto& oneOf(const List& list)
    {
        return list[static_cast<std::size_t>(below(static_cast<int>(std::size(list))))];
    }

    std::vector<HWND> windows() const
    {
        std::vector<HWND> found;
        EnumThreadWindows(thread_, addVisible, reinterpret_cast<LPARAM>(&found));
        return found;
    }

    void awaitAnswer() const
    {
        lastSign = GetTickCount64();
        DWORD_PTR result;
        if (IsWindow(editor_.window()) &&
            !SendMessageTimeoutA(editor_.window(), WM_NULL, 0, 0, SMTO_NORMAL, longestAnswer,
                                 &result) &&
            GetLastError() == ERROR_TIMEOUT)
            giveUp(ExitCode::hang, "hang");
    }

    void use()
    {
        std::vector<HWND> all = windows();
        std::erase_if(all, [](HWND window) { return !IsWindowEnabled(window); });
        if (all.empty() || std::ranges::any_of(all, isFileDialog)) return;
        const HWND window = oneOf(all);
        if (classOf(window) == "#32768") { // a menu that popped up
            remember("escape from a menu");
            PostMessageA(window, WM_KEYDOWN, VK_ESCAPE, 0);
            return;
        }
        switch (below(10)) {
        case 0:
        case 1:
        case 2: return command(window);
        case 3:
        case 4:
        case 5: return drag(window);
        case 6:
        case 7: return key(window);
        case 8: return drop(window);
        default: return place(window);
        }
    }

    void command(HWND window)
    {
        std::vector<int> commands;
        addCommands(commands, GetMenu(window) ? GetMenu(window) : GetMenu(editor_.window()));
        if (commands.empty()) return;
        const int id = oneOf(commands);
        remember("command " + std::to_string(id));
        PostMessageA(GetMenu(window) ? window : editor_.window(), WM_COMMAND,
                     static_cast<WPARAM>(id), 0);
    }

    void drag(HWND window)
    {
        std::vector<HWND> targets{window};
        EnumChildWindows(window, addVisible, reinterpret_cast<LPARAM>(&targets));
        const HWND target = oneOf(targets);
        RECT area;
        GetClientRect(target, &area);
        const bool isRight = below(5) == 0;
        const WPARAM keys =
            static_cast<WPARAM>((isRight ? MK_RBUTTON : MK_LBUTTON) |
                                (below(4) == 0 ? MK_SHIFT : 0) | (below(4) == 0 ? MK_CONTROL : 0));
        const auto point = [&] {
            return MAKELPARAM(below(area.right + 20) - 10, below(area.bottom + 20) - 10);
        };
        LPARAM at = point();
        const int moves = below(4);
        remember("drag in " + classOf(target) + ", keys " + std::to_string(keys) + ", moves " +
                 std::to_string(moves));
        PostMessageA(target,
                     below(6) == 0 ? WM_LBUTTONDBLCLK
                                   : static_cast<UINT>(isRight ? WM_RBUTTONDOWN : WM_LBUTTONDOWN),
                     keys, at);
        for (int move = 0; move < moves; ++move)
            PostMessageA(target, WM_MOUSEMOVE, keys, at = point());
        PostMessageA(target, static_cast<UINT>(isRight ? WM_RBUTTONUP : WM_LBUTTONUP), 0, at);
        if (below(6) == 0)
            PostMessageA(target, WM_MOUSEWHEEL, MAKEWPARAM(0, below(5) * 120 - 240), at);
    }

    void key(HWND window)
    {
        static constexpr int keys[] = {VK_TAB,    VK_SPACE, VK_LEFT,   VK_RIGHT, VK_UP,
                                       VK_DOWN,   VK_PRIOR, VK_NEXT,   VK_HOME,  VK_END,
                                       VK_DELETE, VK_BACK,  VK_INSERT, VK_F2,    VK_ESCAPE,
                                       '0',       '7',      'A',       'X',      VK_RETURN};
        GUITHREADINFO state{};
        state.cbSize = sizeof state;
        const HWND focus = GetGUIThreadInfo(thread_, &state) ? state.hwndFocus : nullptr;
        if (focus && isFileDialog(focus)) return;
        const auto code = static_cast<WPARAM>(oneOf(keys));
        remember("key " + std::to_string(code));
        PostMessageA(focus ? focus : window, WM_KEYDOWN, code, 1);
        PostMessageA(focus ? focus : window, WM_KEYUP, code, 0xC0000001);
    }

    void drop(HWND window)
    {
        std::vector<std::string> dropped;
        for (int count = 1 + below(3); count > 0; --count) dropped.push_back(oneOf(files_));
        remember("drop of " + std::to_string(dropped.size()) + " files, " + dropped.front());
        editor_.postDrop(dropped, window);
    }

    void place(HWND window)
    {
        const int width = below(1200), height = below(900);
        switch (below(8)) {
        case 0:
            if (window != editor_.window()) {
                remember("close " + classOf(window));
                PostMessageA(window, WM_CLOSE, 0, 0);
            }
            return;
        case 1:
        case 2: {
            static constexpr int states[] = {SW_MINIMIZE, SW_MAXIMIZE, SW_RESTORE};
            remember("another state of the main window");
            ShowWindowAsync(editor_.window(), oneOf(states));
            return;
        }
        default:
            remember("size " + std::to_string(width) + " x " + std::to_string(height) + " of " +
                     classOf(window));
            SetWindowPos(window, nullptr, below(600), below(400), width, height,
                         SWP_NOZORDER | SWP_NOACTIVATE | SWP_ASYNCWINDOWPOS);
        }
    }

    /// The system's file dialog is not what is tried here, and Wine's takes neither drags of its
    /// files nor an answer while it fills itself.
    void answerFileDialog(HWND dialog)
    {
        const bool isTaken = below(3) != 0;
        const std::string& file = oneOf(files_);
        remember(isTaken ? "file " + file : "no file");
        Sleep(filling);
        // It may have asked about the last answer, or gone.
        if (!IsWindowEnabled(dialog) || isFilling(dialog)) return;
        if (isTaken) SetDlgItemTextA(dialog, fileNameField, file.c_str());
        ++answeredFileDialogs;
        giveAnswer(dialog, isTaken ? IDOK : IDCANCEL);
    }

    /// Something waits for an answer: the dialog that is enabled.
    void answer()
    {
        if (IsIconic(editor_.window())) { // what asks is hidden with it
            remember("restored");
            ShowWindowAsync(editor_.window(), SW_RESTORE);
            return Sleep(filling);
        }
        std::vector<HWND> all = windows();
        std::erase_if(all, [&](HWND window) {
            return window == editor_.window() || !IsWindowEnabled(window);
        });
        if (all.empty()) return Sleep(10); // it is on its way
        if (std::ranges::any_of(all, isFilling)) return Sleep(filling);
        const auto file = std::ranges::find_if(all, isFileDialog);
        if (file != all.end()) return answerFileDialog(*file);
        const HWND dialog = oneOf(all);
        if (dialog != dialog_) { // Wine's own dialogs take no answer before they are complete
            dialog_ = dialog;
            return Sleep(filling);
        }
        std::vector<HWND> controls;
        EnumChildWindows(dialog, addVisible, reinterpret_cast<LPARAM>(&controls));
        if (controls.empty() || below(6) == 0) {
            static constexpr int buttons[] = {IDOK, IDCANCEL, IDYES, IDNO};
            const int button = oneOf(buttons);
            remember("button " + std::to_string(button) + " of " + classOf(dialog) + " " +
                     windowText(dialog));
            PostMessageA(dialog, WM_COMMAND, static_cast<WPARAM>(button), 0);
            return;
        }
        const HWND control = oneOf(controls);
        if (classOf(control) == "Edit") {
            static constexpr const char* texts[] = {
                "0", "8", "64", "4096", "-1", "1e30", "x\xC3\xA4", "", "99999999999", "  16 "};
            const char* text = oneOf(texts);
            remember(std::string("text ") + text);
            SetWindowTextA(control, text);
        } else if (below(3) == 0) {
            key(control);
        } else {
            drag(control);
        }
    }

    const RunningEditor& editor_;
    DWORD thread_;
    HWND dialog_ = nullptr; ///< the one answered last
    std::vector<std::string> files_;
    std::mt19937 random_;
};

/// Copies of the samples, damaged ones and pictures, in a folder of their own; all their paths.
std::vector<std::string> makeFiles(const fs::path& folder)
{
    fs::remove_all(folder);
    fs::create_directories(folder);
    std::vector<std::string> files;
    for (const fs::path source : {"samples", "tests/images/pictures"})
        for (const auto& entry : fs::directory_iterator(source))
            if (entry.is_regular_file()) {
                const fs::path copy = folder / entry.path().filename();
                fs::copy_file(entry, copy, fs::copy_options::overwrite_existing);
                files.push_back(copy.string());
            }
    std::mt19937 random(seed);
    for (std::size_t at = files.size(); at-- > 0;) {
        const fs::path whole = files[at];
        if (!whole.extension().string().starts_with(".mx")) continue;
        const fs::path damaged = folder / ("damaged-" + whole.filename().string());
        fs::copy_file(whole, damaged);
        std::fstream bytes(damaged, std::ios::in | std::ios::out | std::ios::binary);
        for (int change = 0; change < 4; ++change) {
            bytes.seekp(static_cast<std::streamoff>(random() % fs::file_size(whole)));
            bytes.put(static_cast<char>(random()));
        }
        files.push_back(damaged.string());
    }
    files.push_back((folder / "missing.mx3").string());
    return files;
}

/// One round; what the process then has in use.
ProcessUsage playRound(const fs::path& folder)
{
    std::printf("seed %u\n", static_cast<unsigned>(seed));
    std::fflush(stdout);
    lastActions.clear();
    const auto files = makeFiles(folder);
    {
        const RunningEditor editor({files.front()}, Platform::nt, {},
                                   (folder / "settings.ini").string());
        Monkey monkey(editor, files);
        const ULONGLONG start = GetTickCount64();
        while (GetTickCount64() - start < roundLength && !editor.hasEnded()) monkey.step();
        monkey.finish();
        if (!editor.hasEnded())
            editor.call([](Editor& e) {
                setModelChanged(e.document, false);
                setTexturesChanged(e.document, false);
            });
        remember("the end of the round");
    }
    return processUsage();
}

/// Whether something is in use far beyond what it was when all was warm. Each file dialog of Wine's
/// keeps up to three handles: a key of the registry, and a pipe and an event of its thread.
bool hasGrown(const ProcessUsage& warm, const ProcessUsage& now)
{
    constexpr std::size_t strayObjects = 40, strayBytes = 48u << 20;
    const std::size_t strayHandles = strayObjects + 3 * answeredFileDialogs;
    return now.drawingObjects > warm.drawingObjects + strayObjects ||
           now.windowObjects > warm.windowObjects + strayObjects ||
           now.handles > warm.handles + strayHandles || now.bytes > warm.bytes + strayBytes;
}

int play(ULONGLONG seconds, std::uint32_t firstSeed, bool isSingle)
{
    const fs::path folder = fs::temp_directory_path() / "facetor-monkey";
    fs::create_directories(folder);
    const ULONGLONG start = GetTickCount64();
    ProcessUsage warm{}, now{};
    std::uint32_t round = 0;
    for (seed = firstSeed; round == 0 || (!isSingle && GetTickCount64() - start < seconds * 1000);
         ++seed, ++round) {
        now = playRound(folder);
        if (round <= warmUpRounds) warm = now;
        std::printf("  %zu drawing objects, %zu windows and menus, %zu handles, %zu kB; "
                    "%zu file dialogs so far\n",
                    now.drawingObjects, now.windowObjects, now.handles, now.bytes / 1024,
                    answeredFileDialogs);
    }
    if (hasGrown(warm, now)) {
        std::printf("grown since round %u\n", static_cast<unsigned>(warmUpRounds));
        return ExitCode::growth;
    }
    std::printf("%u rounds without a finding\n", static_cast<unsigned>(round));
    return 0;
}

} // namespace

} // namespace facetor

int main(int argc, char** argv)
{
    if (argc < 2 || argc > 3) {
        std::fprintf(stderr, "monkey SECONDS [SEED]\n");
        return 2;
    }
    SetUnhandledExceptionFilter(facetor::onCrash);
    facetor::lastSign = GetTickCount64();
    std::thread(facetor::watch).detach();
    const bool isSingle = argc == 3;
    const auto number = static_cast<std::uint32_t>(isSingle ? std::strtoul(argv[2], nullptr, 10)
                                                            : std::random_device{}() % 1000000);
    return facetor::play(std::strtoull(argv[1], nullptr, 10), number, isSingle);
}
