#include "monitor/command_runner.h"

#include <algorithm>
#include <array>
#include <memory>
#include <system_error>
#include <utility>

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

using Pipe = UniqueHandle<HANDLE, CloseHandle>;

/// Reads what is in the pipe by now, of a command that writes without end a part. True when there
/// may be more.
bool readSome(HANDLE pipe, std::string& output)
{
    std::array<char, 4096> bytes;
    for (std::size_t taken = 0; taken < CommandRunner::longestOutput;) {
        DWORD there = 0, read = 0;
        if (!PeekNamedPipe(pipe, nullptr, 0, nullptr, &there, nullptr) || there == 0 ||
            !ReadFile(pipe, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr))
            return false;
        const std::size_t room = CommandRunner::longestOutput - output.size();
        output.append(bytes.data(), std::min<std::size_t>(read, room));
        taken += read;
    }
    return true;
}

/// Reads on what nobody wants: a program that can no longer write might give up what it does.
void drain(Pipe pipe)
{
    try {
        std::thread([pipe = std::move(pipe)] {
            std::array<char, 4096> bytes;
            DWORD read = 0;
            while (ReadFile(pipe.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read,
                            nullptr)) {
            }
        }).detach();
    } catch (const std::system_error&) { // the pipe is closed then
    }
}

} // namespace

/// Runs one command to its end, or until one of the events is set.
void CommandRunner::runCommand(Result& result, std::string commandLine) const
{
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    HANDLE readEnd = nullptr, writeEnd = nullptr;
    if (!CreatePipe(&readEnd, &writeEnd, &inherited, 0)) {
        result.output = systemText(GetLastError());
        return;
    }
    Pipe reader(readEnd), writer(writeEnd);
    SetHandleInformation(readEnd, HANDLE_FLAG_INHERIT, 0);
    STARTUPINFOA start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
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
    PostMessageA(window_, began_, result.image, 0);
    const std::array<HANDLE, 3> events{running.get(), stop_.get(), leave_.get()};
    constexpr DWORD pollInterval = 20; // ms: a full pipe would hold the command up
    DWORD event = WAIT_TIMEOUT;
    for (bool more = false; event == WAIT_TIMEOUT;) {
        event = WaitForMultipleObjects(static_cast<DWORD>(events.size()), events.data(), FALSE,
                                       more ? 0 : pollInterval);
        more = readSome(reader.get(), result.output);
    }
    result.left = event != WAIT_OBJECT_0;
    if (result.left)
        drain(std::move(reader));
    else
        GetExitCodeProcess(running.get(), &result.exitStatus);
}

CommandRunner::CommandRunner(HWND window, UINT began, UINT ended)
    : window_(window), began_(began), ended_(ended),
      stop_(CreateEventA(nullptr, TRUE, FALSE, nullptr)),
      leave_(CreateEventA(nullptr, TRUE, FALSE, nullptr)), thread_([this] { work(); })
{
}

CommandRunner::~CommandRunner()
{
    {
        const std::lock_guard lock(mutex_);
        ends_ = true;
    }
    SetEvent(stop_.get());
    wake_.notify_one();
    thread_.join();
}

void CommandRunner::run(std::size_t image, const std::string& commandLine)
{
    {
        const std::lock_guard lock(mutex_);
        jobs_.push_back({image, commandLine});
    }
    wake_.notify_one();
}

void CommandRunner::leave(std::size_t image)
{
    const std::lock_guard lock(mutex_);
    if (running_ == image) SetEvent(leave_.get());
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
            running_ = job.image;
            ResetEvent(leave_.get()); // it was for the one before
        }
        auto result = std::make_unique<Result>(Result{job.image, false, false, 0, {}});
        runCommand(*result, std::move(job.commandLine));
        if (PostMessageA(window_, ended_, 0, reinterpret_cast<LPARAM>(result.get())))
            static_cast<void>(result.release()); // the window's now
    }
}

} // namespace facetor
