// The editor as a process of its own, in a portable copy, that is killed or falls over: what was
// not saved is there at the next start.
#include "app/main_window.h"
#include "base/file.h"
#include "base/folder.h"
#include "base/temporary_folder.h"
#include "driver/running_editor.h"
#include "gui/model_files.h"
#include "resources/resource_ids.h"
#include "ui/handles.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <string>
#include <utility>

namespace facetor {

namespace {

namespace fs = std::filesystem;

struct ProcessWindow {
    DWORD process;
    const char* className;
    HWND found;
};

BOOL CALLBACK checkProcessWindow(HWND window, LPARAM argument)
{
    auto& search = *reinterpret_cast<ProcessWindow*>(argument);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    std::array<char, 64> name{};
    GetClassNameA(window, name.data(), static_cast<int>(name.size()));
    if (process != search.process || !IsWindowVisible(window) ||
        std::string(name.data()) != search.className)
        return TRUE;
    search.found = window;
    return FALSE;
}

/// A portable copy of the editor that runs on one model file.
class EditorProcess {
public:
    EditorProcess(const fs::path& program, const std::string& model)
    {
        SetErrorMode(SEM_NOGPFAULTERRORBOX); // inherited: a crash brings up no dialog
        // What a debugger says of the crash is nobody's business here.
        SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
        const UniqueHandle<HANDLE, CloseHandle> nowhere(
            CreateFileA("NUL", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                        &inherited, OPEN_EXISTING, 0, nullptr));
        STARTUPINFOW start{};
        start.cb = sizeof start;
        start.dwFlags = STARTF_USESTDHANDLES;
        start.hStdInput = start.hStdOutput = start.hStdError = nowhere.get();
        std::wstring line =
            L"\"" + program.wstring() + L"\" \"" + fs::path(model).wstring() + L"\"";
        PROCESS_INFORMATION started{};
        EXPECT_TRUE(CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr,
                                   nullptr, &start, &started));
        CloseHandle(started.hThread);
        process_.reset(started.hProcess);
        id_ = started.dwProcessId;
    }
    ~EditorProcess() { kill(); }
    EditorProcess(const EditorProcess&) = delete;
    EditorProcess& operator=(const EditorProcess&) = delete;

    HWND waitForWindow(const char* className) const
    {
        ProcessWindow search{id_, className, nullptr};
        EXPECT_TRUE(waitUntil([&] {
            EnumWindows(checkProcessWindow, reinterpret_cast<LPARAM>(&search));
            return search.found != nullptr;
        })) << className;
        return search.found;
    }
    void kill()
    {
        if (WaitForSingleObject(process_.get(), 0) == WAIT_OBJECT_0) return;
        TerminateProcess(process_.get(), 9);
        EXPECT_TRUE(hasEnded());
    }
    /// Has a thread of it run where no code is.
    void crash()
    {
        const auto nowhere = reinterpret_cast<LPTHREAD_START_ROUTINE>(std::uintptr_t{16});
        const UniqueHandle<HANDLE, CloseHandle> thread(
            CreateRemoteThread(process_.get(), nullptr, 0, nowhere, nullptr, 0, nullptr));
        EXPECT_TRUE(thread);
    }
    bool hasEnded() const { return WaitForSingleObject(process_.get(), 60000) == WAIT_OBJECT_0; }

private:
    UniqueHandle<HANDLE, CloseHandle> process_;
    DWORD id_ = 0;
};

TEST(KeptEditor, WhatWasNotSavedOutlivesAKillAndACrash)
{
    const TemporaryFolder folder;
    const fs::path program = folder.path() / "facetor.exe";
    fs::copy(FACETOR_EDITOR, program);
    fs::copy(fs::path(FACETOR_EDITOR).parent_path() / "PlugIn", folder.path() / "PlugIn");
    writeTextFile(folder.file("Facetor.ini"), ""); // a portable copy
    const std::string model = folder.file("a model.mx3");
    writeCubeFile(model, 6);
    const auto before = readFile(model);
    const std::string recovery = pathIn(pathIn(folder.path().string(), "Kept"), "Recovery");
    for (const bool falls : {false, true}) {
        SCOPED_TRACE(falls);
        {
            EditorProcess editor(program, model);
            const HWND window = editor.waitForWindow(mainWindowClass);
            SendMessageA(window, WM_NULL, 0, 0);
            for (const int command : {IDM_SELECT_ALL, IDM_INVERT_SURFACE})
                SendMessageA(window, WM_COMMAND, static_cast<WPARAM>(command), 0);
            if (falls) {
                editor.crash();
                EXPECT_TRUE(editor.hasEnded());
            } else {
                PostMessageA(window, WM_CLOSE, 0, 0); // while the question is asked all is written
                editor.waitForWindow("#32770");
                EXPECT_TRUE(waitUntil([&] {
                    const auto names = namesIn(recovery); // until it is whole, under another name
                    return std::any_of(names.begin(), names.end(), [](const std::string& name) {
                        return fs::path(name).extension() == ".recovery";
                    });
                }));
                editor.kill();
            }
            EXPECT_EQ(readFile(model), before) << "the file is the old one";
        }
        EditorProcess editor(program, model);
        const HWND window = editor.waitForWindow(mainWindowClass);
        const HWND recover = editor.waitForWindow("#32770");
        PostMessageA(recover, WM_COMMAND, IDOK, 0);
        EXPECT_TRUE(waitUntil([&] { return IsWindow(recover) == FALSE; }));
        // Then the file of the command line is to be opened, and what was recovered is asked about.
        const HWND question = editor.waitForWindow("#32770");
        EXPECT_TRUE(waitUntil([&] {
            PostMessageA(question, WM_COMMAND, IDCANCEL, 0);
            return IsWindowEnabled(window) != FALSE;
        }));
        SendMessageA(window, WM_COMMAND, IDM_FILE_SAVE, 0);
        EXPECT_NE(readFile(model), before);
        PostMessageA(window, WM_CLOSE, 0, 0);
        EXPECT_TRUE(editor.hasEnded());
        EXPECT_TRUE(namesIn(recovery).empty());
        EXPECT_EQ(writeFile(model, *before), Message::none);
    }
    EXPECT_TRUE(readFile(folder.file("FacetorSession.ini")));
}

} // namespace

} // namespace facetor
