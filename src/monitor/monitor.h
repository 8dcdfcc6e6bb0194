#pragma once

#include "base/bytes.h"
#include "monitor/command_runner.h"
#include "monitor/monitor_options.h"
#include "monitor/preview.h"
#include "output/received_image.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>
#include <windows.h>

namespace facetor {

/// An image that came in, as the list shows it.
struct Entry {
    std::size_t number = 0; ///< of all that came in, from 0
    std::string time, path, result, output;
    std::uint64_t size = 0;
    ReceivedImage image;
    Bytes bytes;           ///< that were checked, until they are handed on
    std::string temporary; ///< the file that the command gets where no copies are kept; else empty
    bool isDone = false;   ///< it is copied, and its command is over
};

/// The monitor's window with what it shows and has been told.
struct Monitor {
    HWND window = nullptr, images = nullptr, blocks = nullptr, output = nullptr, status = nullptr;
    MonitorOptions options;
    std::string settings;
    ReceivedScene scene;
    Preview preview;
    std::vector<Entry> entries; ///< as the list has them
    std::size_t receivedCount = 0;
    std::deque<std::string> temporaries; ///< Entry::temporary of commands that have ended
    std::optional<std::size_t> running;  ///< the number of the image that the command runs on
    std::unique_ptr<CommandRunner> runner;
    int exitStatus = 0;
};

/// Sent to the monitor's window.
constexpr UINT commandEnded = WM_APP;      ///< lParam: a CommandRunner::Result
constexpr UINT imageReceived = WM_APP + 1; ///< wParam: the image's number
constexpr UINT commandBegan = WM_APP + 2;  ///< wParam: the image's number

/// The image of a number; nullptr when it was cleared. Until another comes in.
Entry* findEntry(Monitor& monitor, std::size_t number);

/// A text of the program's resources, in the user's language.
std::string resourceText(UINT number);

/// Pixels at 96 DPI as pixels of the window's display; of the screen for nullptr.
int scaled(HWND window, int pixels);

/// Keeps the folder and the command for the next start. Without a settings file nothing happens.
void keepSettings(const Monitor& monitor);

} // namespace facetor
