#include "ui/progress.h"

#include "resources/resource_ids.h"
#include "ui/handles.h"
#include "ui/window_data.h"

#include <commctrl.h>

#include <atomic>
#include <system_error>
#include <thread>

namespace facetor {

namespace {

constexpr std::uint64_t patience = 300; ///< milliseconds until there is a window
constexpr std::uint64_t pace = 50;      ///< and from one change of it to the next

INT_PTR CALLBACK progressProcedure(HWND window, UINT message, WPARAM wParam, LPARAM)
{
    if (message == WM_INITDIALOG) return TRUE;
    if (message != WM_COMMAND || LOWORD(wParam) != IDCANCEL) return FALSE;
    EnableWindow(GetDlgItem(window, IDCANCEL), FALSE); // which says that it was heard
    return TRUE;
}

} // namespace

Progress::Progress(HWND owner, Word title, std::uint32_t count, std::uint64_t started)
    : owner_(owner), title_(title), count_(count), started_(started)
{
}

Progress::~Progress()
{
    if (!window_) return;
    EnableWindow(owner_, TRUE); // first: else the system would activate another program's window
    DestroyWindow(window_);
    if (IsWindow(active_)) SetActiveWindow(active_);
}

void Progress::show()
{
    active_ = GetActiveWindow();
    window_ = CreateDialogParamA(instanceOf(owner_), "IDD_PROGRESS", owner_, progressProcedure, 0);
    if (!window_) return;
    SetWindowTextA(window_, loadCatalogueText(owner_, title_).c_str());
    SendDlgItemMessageA(window_, IDC_PROGRESS_BAR, PBM_SETRANGE32, 0, static_cast<LPARAM>(count_));
    EnableWindow(owner_, FALSE);
    ShowWindow(window_, SW_SHOW);
}

void Progress::takeMessages()
{
    // An alert that has just been closed has left the keyboard with the owner.
    if (GetActiveWindow() == owner_) SetActiveWindow(window_);
    MSG message{};
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(message.wParam));
            stopped_ = true;
            return;
        }
        if (message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE) stopped_ = true;
        if (IsDialogMessageA(window_, &message)) continue;
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    if (!IsWindowEnabled(GetDlgItem(window_, IDCANCEL))) stopped_ = true;
}

void Progress::update(const std::string& path, const std::string& count, std::uint32_t position)
{
    shown_ = GetTickCount64();
    SetDlgItemTextA(window_, IDC_PROGRESS_FILE, path.c_str() + path.find_last_of("\\/") + 1);
    SetDlgItemTextA(window_, IDC_PROGRESS_COUNT, count.c_str());
    SendDlgItemMessageA(window_, IDC_PROGRESS_BAR, PBM_SETPOS, position, 0);
}

bool Progress::goesOn(const std::string& path, std::uint32_t percent)
{
    const std::uint64_t now = GetTickCount64();
    if (!window_ && now - started_ >= patience) show();
    if (!window_) return true;
    if (now - shown_ >= pace) update(path, std::to_string(percent) + " %", percent);
    takeMessages();
    return !stopped_;
}

bool Progress::goesOn(const std::string& path)
{
    // As far as messages have been taken: the key that closed an alert is still down.
    if (done_ > 0 && GetKeyState(VK_ESCAPE) < 0) stopped_ = true;
    const std::uint64_t now = GetTickCount64();
    if (!window_ && done_ > 0 && now - started_ >= patience) show();
    if (window_ && now - shown_ >= pace)
        update(path,
               expandPlaceholders(loadCatalogueText(owner_, Word::countOf),
                                  std::to_string(done_ + 1), std::to_string(count_)),
               done_);
    if (window_) takeMessages();
    ++done_;
    return !stopped_;
}

bool workAside(HWND owner, Word title, const std::string& path,
               const std::function<void(const ShareDone&)>& work)
{
    const UniqueHandle<HANDLE, CloseHandle> ended(CreateEventA(nullptr, TRUE, FALSE, nullptr));
    std::atomic<std::uint32_t> percent = 0;
    std::atomic<bool> stopped = false;
    std::thread worker;
    try {
        if (ended)
            worker = std::thread([&] {
                work([&](double share) {
                    percent = static_cast<std::uint32_t>(share * 100);
                    return !stopped;
                });
                SetEvent(ended.get());
            });
    } catch (const std::system_error&) { // no more threads: the windows wait, then
    }
    if (!worker.joinable()) return work({}), true;
    // No message is taken before there is a window that keeps the others from acting.
    const HANDLE event = ended.get();
    if (WaitForSingleObject(event, patience) != WAIT_OBJECT_0) {
        Progress progress(owner, title, 100, GetTickCount64() - patience);
        do {
            if (!progress.goesOn(path, percent)) stopped = true;
        } while (MsgWaitForMultipleObjects(1, &event, FALSE, pace, QS_ALLINPUT) != WAIT_OBJECT_0);
    }
    worker.join();
    return !stopped;
}

} // namespace facetor
