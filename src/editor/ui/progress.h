#pragma once

#include "base/message.h"

#include <windows.h>

#include <cstdint>
#include <functional>
#include <string>

namespace facetor {

/// Tells how far a command over many files has come, and lets the user stop it, until the end of
/// the scope. For what takes less than a third of a second nothing appears. Then a small window
/// does; meanwhile the windows of `owner` paint themselves but take no input. Alerts may come up
/// between two steps.
class Progress {
public:
    /// Of `count` steps, with a catalogue text as the window's title; begun at the time `started`,
    /// in the system's milliseconds.
    Progress(HWND owner, Word title, std::uint32_t count, std::uint64_t started = GetTickCount64());
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Before each step, with the path of its file, of which the name is shown. False when the user
    /// has asked to stop: by the window's button, by Esc, also in an alert of the step before, or
    /// by ending the program.
    bool goesOn(const std::string& path);

    /// The same between two moments of one step, of which `percent` is done.
    bool goesOn(const std::string& path, std::uint32_t percent);

private:
    void show();
    void update(const std::string& path, const std::string& count, std::uint32_t position);
    void takeMessages();

    HWND owner_;
    Word title_;
    std::uint32_t count_, done_ = 0;
    std::uint64_t started_;   ///< milliseconds
    std::uint64_t shown_ = 0; ///< when the window last changed, likewise
    HWND active_ = nullptr;   ///< the window that had the keyboard
    HWND window_ = nullptr;
    bool stopped_ = false;
};

/// Takes the share of work that is done, 0 to 1; false asks for its end.
using ShareDone = std::function<bool(double)>;

/// Does work on one file on a thread of its own, while the windows of `owner` paint themselves but
/// take no input; after a third of a second there is a Progress. The work tells how far it is and
/// must not touch what this thread uses. Returns at its end, false when the user stopped it.
bool workAside(HWND owner, Word title, const std::string& path,
               const std::function<void(const ShareDone&)>& work);

} // namespace facetor
