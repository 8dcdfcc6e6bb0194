#include "monitor/receiving.h"

#include "base/file.h"
#include "monitor/image_words.h"
#include "monitor/monitor_ids.h"
#include "monitor/monitor_lists.h"
#include "ui/handles.h"
#include "ui/status_bar.h"

#include <array>
#include <cstdio>

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
    if (const auto bytes = readFile(path)) {
        entry.size = bytes->size();
        entry.image = receiveImage(monitor.scene, *bytes);
    } else {
        entry.image.reason = resourceText(IDS_CANNOT_READ);
    }
    const bool accepted = entry.image.reason.empty();
    entry.result = accepted ? resourceText(IDS_ACCEPTED)
                            : resourceText(IDS_REFUSED) + imageWords(entry.image.reason);

    monitor.entries.push_back(entry);
    showNewImage(monitor);
    if (accepted) monitor.preview.show(monitor.scene);
    PostMessageA(monitor.window, imageReceived, entry.number, 0);
    return accepted;
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
    const Entry* const found = findEntry(monitor, number);
    if (!found) return;
    const Entry& entry = *found;
    if (!entry.image.reason.empty()) {
        finishImage(monitor, number, false);
        return;
    }
    std::string path = entry.path;
    if (!monitor.options.folder.empty()) {
        SYSTEMTIME time{};
        GetLocalTime(&time);
        const std::string copy =
            monitor.options.folder + '\\' +
            copyName(path, now("%04d%02d%02d-%02d%02d%02d"), time.wMilliseconds);
        if (!CopyFileA(path.c_str(), copy.c_str(), TRUE)) {
            setResult(monitor, number, resourceText(IDS_NOT_COPIED) + copy);
            finishImage(monitor, number, false);
            return;
        }
        path = copy;
    }
    if (monitor.options.command.empty()) {
        finishImage(monitor, number, true);
        return;
    }
    setResult(monitor, number, resourceText(IDS_COMMAND_WAITS));
    monitor.runner->run(number, commandLineFor(monitor.options.command, path));
}

void beginCommand(Monitor& monitor, std::size_t number)
{
    monitor.running = number;
    setResult(monitor, number, resourceText(IDS_RUNNING));
}

void endCommand(Monitor& monitor, const CommandRunner::Result& result)
{
    monitor.running.reset();
    if (Entry* const entry = findEntry(monitor, result.image)) entry->output = result.output;
    setResult(monitor, result.image,
              result.left      ? resourceText(IDS_LEFT)
              : result.started ? resourceText(IDS_FINISHED) + std::to_string(result.exitStatus)
                               : resourceText(IDS_NOT_STARTED) + result.output);
    finishImage(monitor, result.image, result.started && !result.left && result.exitStatus == 0);
}

} // namespace facetor
