#pragma once

#include "base/message.h"

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace facetor {

/// What the user chose in a file dialog.
struct ChosenFile {
    std::string path;
    DWORD filter; ///< number of the filter that was set, from 1
};

/// A kind of files that a dialog offers.
struct FileFilter {
    Word title;
    std::string_view pattern;
};

/// A file dialog of one purpose, which remembers its filter for the next time.
struct FileDialog {
    std::vector<FileFilter> kinds; ///< empty: `filters` says them
    /// Pairs of title and pattern, each with its NUL, then one more NUL.
    const char* filters = nullptr;
    DWORD filter = 1;
    std::string folder = {}; ///< where it begins; empty: where the system last was
    /// What may be appended to a name that is typed without an extension.
    const char* defaultExtension = "123";
};

/// Asks for an existing file; none when the user cancels. Offers to create a missing one, which
/// then does not exist when this returns.
std::optional<ChosenFile> askOpenFile(HWND owner, FileDialog& dialog);

/// Files chosen together, in the order in which the dialog gives them.
struct ChosenFiles {
    std::vector<std::string> paths; ///< empty when more were chosen than their names have room for
    DWORD filter;                   ///< number of the filter that was set, from 1
};

/// As askOpenFile(), for one or more files of a folder.
std::optional<ChosenFiles> askOpenFiles(HWND owner, FileDialog& dialog);

/// Asks where to save. The folder must exist; overwriting is confirmed.
std::optional<ChosenFile> askSaveFile(HWND owner, FileDialog& dialog,
                                      const std::string& initialName);

} // namespace facetor
