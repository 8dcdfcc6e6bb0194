#include "monitor/receiving.h"

#include "base/file.h"
#include "base/folder.h"
#include "monitor/image_words.h"
#include "monitor/monitor_ids.h"
#include "monitor/monitor_lists.h"
#include "session/file_names.h"
#include "ui/handles.h"
#include "ui/status_bar.h"

#include <array>
#include <cstdio>
#include <utility>

namespace facetor {

namespace {

/// What the editor marks its data with: "TQAL", the first character in the highest byte.
constexpr ULONG_PTR imageTag = 0x5451414C;

std::string now(const char* form)
{
    SYSTEMTIME time{};
    GetLocalTime(&time);
    std::array<char, 32> buffer{};
    std::snprintf(buffer.data(), buffer.size(), form, time.wYear, time.wMonth, time.wDay,
                  time.wHour, time.wMinute, time.wSecond);
    return buffer.data();
}

void writeLog(const Monitor& monitor, const Entry& entry)
{
    if (monitor.options.log.empty()) return;
    const std::string line = entry.time + '\t' + entry.path + '\t' + entry.image.contents + '\t' +
                             std::to_string(entry.size) + '\t' + entry.result + "\r\n";
    const UniqueHandle<HANDLE, CloseHandle> file(
        CreateFileA(monitor.options.log.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ, nullptr,
                    OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (file.get() == INVALID_HANDLE_VALUE) {
        setStatusText(monitor.status, 0, monitor.options.log + ": " + resourceText(IDS_NOT_COPIED));
        return;
    }
    DWORD written = 0;
    WriteFile(file.get(), line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
}

/// Ends a run with MonitorOptions::once when its image is done.
void finishImage(Monitor& monitor, std::size_t number, bool good)
{
    if (Entry* const entry = findEntry(monitor, number)) {
        entry->isDone = true;
        writeLog(monitor, *entry);
    }
    if (!monitor.options.once) return;
    monitor.exitStatus = good ? 0 : 1;
    DestroyWindow(monitor.window);
}

/// Checks what the editor has written and lists it. The editor waits for the answer: copies and
/// commands come later. True when it was accepted.
bool receive(Monitor& monitor, const std::string& path)
{
    Entry entry;
    entry.number = monitor.receivedCount++;
    entry.time = now("%04d-%02d-%02d %02d:%02d:%02d");
    entry.path = path;
    if (auto bytes = readFile(path)) {
        entry.size = bytes->size();
        entry.image = receiveImage(monitor.scene, *bytes);
        entry.bytes = std::move(*bytes);
    } else {
        entry.image.reason = resourceText(IDS_CANNOT_READ);
    }
    const bool accepted = entry.image.reason.empty();
    entry.result = accepted ? resourceText(IDS_ACCEPTED)
                            : resourceText(IDS_REFUSED) + imageWords(entry.image.reason);

    PostMessageA(monitor.window, imageReceived, entry.number, 0);
    monitor.entries.push_back(std::move(entry));
    showNewImage(monitor);
    if (accepted) monitor.preview.show(monitor.scene);
    return accepted;
}

/// A path in a folder where nothing stands: the moment, then a name.
std::string freePath(const std::string& folder, const std::string& name)
{
    for (;; Sleep(1)) {
        SYSTEMTIME time{};
        GetLocalTime(&time);
        std::string path =
            pathIn(folder, copyName(name, now("%04d%02d%02d-%02d%02d%02d"), time.wMilliseconds));
        if (GetFileAttributesA(path.c_str()) == INVALID_FILE_ATTRIBUTES) return path;
    }
}

/// A path for a file of the same name in a new folder of the system's for temporary files.
std::string temporaryPath(const std::string& path)
{
    std::array<char, MAX_PATH + 1> system{};
    GetTempPathA(static_cast<DWORD>(system.size()), system.data());
    const std::string folder = freePath(system.data(), "FacetorMonitor");
    (void)makeFolder(folder); // what then fails is the writing
    return pathIn(folder, fileNameOf(path));
}

void removeTemporary(const std::string& path)
{
    if (path.empty()) return;
    (void)removeFile(path);
    RemoveDirectoryA(path.substr(0, path.find_last_of('\\')).c_str()); // not with more in it
}

} // namespace

LRESULT receiveCopyData(Monitor& monitor, const COPYDATASTRUCT& data)
{
    constexpr LRESULT taken = 0, refused = 1; // the protocol's sense
    const auto* bytes = static_cast<const char*>(data.lpData);
    if (data.dwData != imageTag || !bytes || data.cbData < 2 || bytes[data.cbData - 1] != '\0')
        return refused;
    return receive(monitor, bytes) ? taken : refused;
}

void handOn(Monitor& monitor, std::size_t number)
{
    Entry* const entry = findEntry(monitor, number);
    if (!entry) return;
    const std::string &folder = monitor.options.folder, &command = monitor.options.command;
    // The editor may write the file again before the command begins.
    const Bytes bytes = std::exchange(entry->bytes, {});
    const bool accepted = entry->image.reason.empty();
    if (!accepted || (folder.empty() && command.empty())) {
        finishImage(monitor, number, accepted);
        return;
    }
    const std::string path =
        folder.empty() ? temporaryPath(entry->path) : freePath(folder, entry->path);
    if (folder.empty()) entry->temporary = path;
    if (writeFile(path, bytes) != Message::none) {
        removeTemporary(std::exchange(entry->temporary, {}));
        setResult(monitor, number, resourceText(IDS_NOT_COPIED) + path);
        finishImage(monitor, number, false);
        return;
    }
    if (command.empty()) {
        finishImage(monitor, number, true);
        return;
    }
    setResult(monitor, number, resourceText(IDS_COMMAND_WAITS));
    monitor.runner->run(number, commandLineFor(command, path));
}

void beginCommand(Monitor& monitor, std::size_t number)
{
    monitor.running = number;
    setResult(monitor, number, resourceText(IDS_RUNNING));
}

void endCommand(Monitor& monitor, const CommandRunner::Result& result)
{
    monitor.running.reset();
    if (Entry* const entry = findEntry(monitor, result.image)) {
        entry->output = result.output;
        if (!entry->temporary.empty()) monitor.temporaries.push_back(entry->temporary);
        entry->temporary.clear();
    }
    constexpr std::size_t keptTemporaries = 8; // a monitor may run for months
    for (; monitor.temporaries.size() > keptTemporaries; monitor.temporaries.pop_front())
        removeTemporary(monitor.temporaries.front());
    setResult(monitor, result.image,
              result.left      ? resourceText(IDS_LEFT)
              : result.started ? resourceText(IDS_FINISHED) + std::to_string(result.exitStatus)
                               : resourceText(IDS_NOT_STARTED) + result.output);
    finishImage(monitor, result.image, result.started && !result.left && result.exitStatus == 0);
}

void removeTemporaries(Monitor& monitor)
{
    for (const std::string& path : monitor.temporaries) removeTemporary(path);
    for (const Entry& entry : monitor.entries)
        if (entry.number != monitor.running) removeTemporary(entry.temporary);
}

} // namespace facetor
