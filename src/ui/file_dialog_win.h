#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace facetor {

/// What the user chose in a file dialog.
struct ChosenFile {
    std::string path;
    DWORD filter; ///< number of the filter that was set, from 1
};

/// A file dialog of one purpose, which remembers its filter for the next time.
struct FileDialog {
    const char* filters; ///< pairs of title and pattern, each with its NUL, then one more NUL
    DWORD filter = 1;
};

/// Asks for an existing file; none when the user cancels. Offers to create a missing one, which
/// then does not exist when this returns.
std::optional<ChosenFile> askOpenFile(HWND owner, FileDialog& dialog);

/// Asks where to save. The folder must exist; overwriting is confirmed.
std::optional<ChosenFile> askSaveFile(HWND owner, FileDialog& dialog,
                                      const std::string& initialName);

} // namespace facetor
