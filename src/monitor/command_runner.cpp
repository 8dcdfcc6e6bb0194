#include "monitor/command_runner.h"

#include "ui/handles.h"

#include <array>
#include <memory>

namespace facetor {

namespace {

std::string systemText(DWORD error)
{
    std::array<char, 256> text{};
    const DWORD length = FormatMessageA(
        FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK,
        nullptr, error, 0, text.data(), static_cast<DWORD>(text.size()), nullptr);
    return length == 0 ? "error " + std::to_string(error) : std::string(text.data(), length);
}

/// Reads what is in the pipe by now. False when nobody writes into it any more.
bool readSome(HANDLE pipe, std::string& output)
{
    for (;;) {
        DWORD there = 0;
        if (!PeekNamedPipe(pipe, nullptr, 0, nullptr, &there, nullptr)) return false;
        if (there == 0) return true;
        std::array<char, 4096> bytes;
        DWORD read = 0;
        if (!ReadFile(pipe, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr))
            return false;
        const std::size_t room = CommandRunner::longestOutput - output.size();
        output.append(bytes.data(), std::min<std::size_t>(read, room));
    }
}

/// Runs one command to its end, or until `stop` is set.
void runCommand(CommandRunner::Result& result, std::string commandLine, HANDLE stop)
{
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    HANDLE readEnd = nullptr, writeEnd = nullptr;
    if (!CreatePipe(&readEnd, &writeEnd, &inherited, 0)) {
        result.output = systemText(GetLastError());
        return;
    }
    const UniqueHandle<HANDLE, CloseHandle> reader(readEnd);
    UniqueHandle<HANDLE, CloseHandle> writer(writeEnd);
    SetHandleInformation(readEnd, HANDLE_FLAG_INHERIT, 0);
    STARTUPINFOA start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES | STARTF_USESHOWWINDOW;
    start.wShowWindow = SW_HIDE;
    start.hStdOutput = start.hStdError = writeEnd;
    PROCESS_INFORMATION process{};
    if (!CreateProcessA(nullptr, commandLine.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW,
                        nullptr, nullptr, &start, &process)) {
        result.output = systemText(GetLastError());
        return;
    }
    const UniqueHandle<HANDLE, CloseHandle> running(process.hProcess), thread(process.hThread);
    writer.reset(); // what the command inherited is the last one open
    result.started = true;
    const std::array<HANDLE, 2> events{running.get(), stop};
    constexpr DWORD pollInterval = 20; // ms: a full pipe would hold the command up
    while (WaitForMultipleObjects(2, events.data(), FALSE, pollInterval) == WAIT_TIMEOUT)
        readSome(reader.get(), result.output);
    readSome(reader.get(), result.output);
    GetExitCodeProcess(running.get(), &result.exitStatus);
}

} // namespace

CommandRunner::CommandRunner(HWND window, UINT message)
    : window_(window), message_(message), stop_(CreateEventA(nullptr, TRUE, FALSE, nullptr)),
      thread_([this] { work(); })
{
}

CommandRunner::~CommandRunner()
{
    {
        const std::lock_guard lock(mutex_);
        ends_ = true;
    }
    SetEvent(stop_);
    wake_.notify_one();
    thread_.join();
    CloseHandle(stop_);
}

void CommandRunner::run(std::size_t image, const std::string& commandLine)
{
    {
        const std::lock_guard lock(mutex_);
        jobs_.push_back({image, commandLine});
    }
    wake_.notify_one();
}

void CommandRunner::work()
{
    for (;;) {
        Job job;
        {
            std::unique_lock lock(mutex_);
            wake_.wait(lock, [this] { return ends_ || !jobs_.empty(); });
            if (ends_) return;
            job = std::move(jobs_.front());
            jobs_.pop_front();
        }
        auto result = std::make_unique<Result>(Result{job.image, false, 0, {}});
        runCommand(*result, std::move(job.commandLine), stop_);
        if (PostMessageA(window_, message_, 0, reinterpret_cast<LPARAM>(result.get())))
            static_cast<void>(result.release()); // the window's now
    }
}

} // namespace facetor
