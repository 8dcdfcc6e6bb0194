#include "ui/file_dialog_win.h"

#include "ui/window_data_win.h"

#include <commdlg.h>

#include <vector>

namespace facetor {

namespace {

constexpr std::size_t pathBufferSize = 16640; ///< bytes, with the terminating NUL

/// What a dialog may append to a name that is typed without an extension.
constexpr char defaultExtension[] = "123";

std::optional<ChosenFile> askFile(HWND owner, FileDialog& dialog, const std::string& initialName,
                                  DWORD flags, BOOL(WINAPI* ask)(LPOPENFILENAMEA))
{
    std::vector<char> path(pathBufferSize), title(pathBufferSize);
    initialName.copy(path.data(), path.size() - 1);
    OPENFILENAMEA description{};
    description.lStructSize = sizeof description;
    description.hwndOwner = owner;
    description.hInstance = instanceOf(owner);
    description.lpstrFilter = dialog.filters;
    description.nFilterIndex = dialog.filter;
    description.lpstrFile = path.data();
    description.nMaxFile = static_cast<DWORD>(path.size());
    description.lpstrFileTitle = title.data();
    description.nMaxFileTitle = static_cast<DWORD>(title.size());
    description.lpstrDefExt = defaultExtension;
    // Without OFN_NOCHANGEDIR the folder last looked at could not be removed while we run.
    description.Flags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | flags;
    if (!ask(&description)) return std::nullopt;
    dialog.filter = description.nFilterIndex;
    return ChosenFile{path.data(), description.nFilterIndex};
}

} // namespace

std::optional<ChosenFile> askOpenFile(HWND owner, FileDialog& dialog)
{
    return askFile(owner, dialog, {}, OFN_PATHMUSTEXIST | OFN_FILEMUSTEXIST | OFN_CREATEPROMPT,
                   GetOpenFileNameA);
}

std::optional<ChosenFile> askSaveFile(HWND owner, FileDialog& dialog,
                                      const std::string& initialName)
{
    return askFile(owner, dialog, initialName, OFN_PATHMUSTEXIST | OFN_OVERWRITEPROMPT,
                   GetSaveFileNameA);
}

} // namespace facetor
