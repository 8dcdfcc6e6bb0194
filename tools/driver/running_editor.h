#pragma once

#include "app/program.h"
#include "driver/picture.h"
#include "state/editor.h"

#include <windows.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace facetor {

/// Sets or clears a changed flag, as a command does.
inline void setModelChanged(Document& document, bool changed)
{
    changed ? markModelChanged(document) : markModelSaved(document);
}
inline void setTexturesChanged(Document& document, bool changed)
{
    changed ? markTexturesChanged(document) : markTexturesSaved(document);
}

/// How long a test waits for anything, in milliseconds. Only a failing test ever waits this long.
inline constexpr DWORD longestWait = 20000;

/// Waits until `condition` holds; false when it does not within longestWait.
bool waitUntil(const std::function<bool()>& condition);

/// Whether a window is a file dialog of the system, and whether it is one that does not show its
/// files yet: an answer then crashes Wine's.
bool isFileDialog(HWND window);
bool isFilling(HWND window);

/// Presses a button of a dialog and waits for a second at most until the dialog is gone or asks
/// something itself: a second answer in between crashes Wine's file dialog.
void giveAnswer(HWND dialog, int button);

/// An alert on the screen.
struct ShownAlert {
    HWND window = nullptr; ///< nullptr when none appeared in time
    std::string caption;
    std::string text;
    std::vector<int> buttons; ///< ids of the buttons that it has, ascending
    std::string icon;         ///< "stop", "question", "exclamation" or empty
};

/// The editor, run as WinMain runs it on a thread of its own in this process. Ends it at the end of
/// the scope, whatever is on the screen then; after a failure it first saves pictures of what is.
///
///     RunningEditor editor({path});
///     EXPECT_EQ(editor.statusText(0), "Objects = 2");
class RunningEditor {
public:
    /// Returns once the main window is on the screen and has its title. Arguments that bring an
    /// alert up leave the editor waiting there. `prepare` runs on the editor's thread first. No
    /// settings are read or written without a path for them, and nothing is kept without a folder.
    explicit RunningEditor(std::vector<std::string> arguments = {},
                           Platform platform = Platform::nt, std::function<void()> prepare = {},
                           std::string settingsPath = {}, std::string keepFolder = {});
    ~RunningEditor();
    RunningEditor(const RunningEditor&) = delete;
    RunningEditor& operator=(const RunningEditor&) = delete;

    HWND window() const { return window_; }
    std::string title() const;
    /// Waits until the title names a model file.
    bool waitForTitle(const std::string& file) const;
    std::string statusText(int part) const;

    /// The model changed flag.
    bool isChanged() const;
    void setChanged(bool changed = true) const;
    /// Whether the menu item of a command is enabled, and whether it is checked.
    bool isItemEnabled(int command) const;
    bool isItemChecked(int command) const;

    /// Sends the main window a message, and returns its result when it has been handled.
    LRESULT send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;
    LRESULT sendCommand(int number, LPARAM argument = 0) const;
    /// Posts a message: for what brings up an alert, a dialog or a menu and returns after it.
    void post(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;
    /// Posts what a drop of these files sends, to the main window unless another is given.
    void postDrop(const std::vector<std::string>& paths, HWND target = nullptr) const;

    /// Runs `action` on the editor's thread, between two messages.
    void call(const std::function<void(Editor&)>& action) const;
    /// Starts `action` on the editor's thread and does not wait: for what brings up an alert.
    void begin(std::function<void(Editor&)> action) const;
    /// The value of `question`, asked on the editor's thread.
    template <typename Question> auto ask(const Question& question) const
    {
        decltype(question(std::declval<Editor&>())) answer{};
        call([&](Editor& editor) { answer = question(editor); });
        return answer;
    }

    /// Gives the main window a client area of this size, in pixels.
    void resizeClient(int width, int height) const;
    /// The main window's client area, repainted first if it needs it.
    WindowPicture picture() const;

    /// A whole window of the editor's with its frame and children, repainted first.
    WindowPicture pictureOf(HWND window) const;

    /// The alert that is on the screen now; its window is nullptr when there is none.
    ShownAlert findAlert() const;
    ShownAlert waitForAlert() const;
    /// Waits for an alert with this text, and this icon unless it is empty, and presses OK.
    void dismiss(const std::string& text, const std::string& icon = {}) const;
    /// Presses a button of an alert, by its id, and waits until the alert is gone.
    bool press(const ShownAlert& alert, int button) const;

    /// Opens a model file by the command that carries its path, and waits for the end of it or,
    /// with beginOpen(), does not: for what asks or refuses.
    void open(const std::string& path) const;
    void beginOpen(const std::string& path) const;

    /// Presses OK of a dialog that refuses it, dismisses the alert that says why, and returns its
    /// text.
    std::string refusalOf(const ShownAlert& dialog) const;
    /// Starts a command and waits for its dialog.
    ShownAlert openDialog(int command) const;
    /// Presses a button of a dialog and waits until its command has come to its end.
    void closeDialog(const ShownAlert& dialog, int button) const;

    /// Waits for a file dialog of the system and types a path and Enter; chooses filter `filter`
    /// first, from 1, unless that is 0. False when there is no dialog or it does not go away.
    bool fillFileDialog(const std::string& path, int filter = 0) const;
    bool cancelFileDialog() const;
    /// Waits for a file dialog. nullptr for none.
    HWND waitForFileDialog() const;

    /// The first visible window of a class that belongs to the editor's thread; nullptr for none.
    HWND findWindow(const std::string& className) const;

    /// The numbers of the commands that have reached the main window so far, in their order.
    std::vector<int> commandsSeen() const;

    bool hasEnded() const { return ended_; }
    /// Waits for the end of the editor and returns its exit code; -1 when it does not end.
    int waitForEnd();

private:
    void end();

    std::atomic<DWORD> threadId_ = 0;
    std::atomic<bool> ended_ = false;
    int exitCode_ = -1;
    HWND window_ = nullptr;
    std::thread thread_;
};

} // namespace facetor
