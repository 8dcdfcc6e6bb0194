#include "ui/file_dialog.h"

#include "ui/window_data.h"

#include <cderr.h>
#include <commdlg.h>

#include <vector>

namespace facetor {

namespace {

constexpr std::size_t pathBufferSize = 16640; ///< bytes, with the terminating NUL

/// The kinds of files as the system's dialogs take them, in the user's language.
std::string filterTexts(HWND owner, const FileDialog& dialog)
{
    std::string texts;
    for (const auto& [title, pattern] : dialog.kinds)
        texts.append(loadCatalogueText(owner, title))
            .append(1, '\0')
            .append(pattern)
            .append(1, '\0');
    return texts;
}

/// What a dialog leaves in its buffer; none when the user cancels.
std::optional<std::vector<char>> runDialog(HWND owner, FileDialog& dialog,
                                           const std::string& initialName, DWORD flags,
                                           BOOL(WINAPI* ask)(LPOPENFILENAMEA))
{
    std::vector<char> path(pathBufferSize), title(pathBufferSize);
    initialName.copy(path.data(), path.size() - 1);
    OPENFILENAMEA description{};
    description.lStructSize = sizeof description;
    description.hwndOwner = owner;
    description.hInstance = instanceOf(owner);
    const std::string filters = filterTexts(owner, dialog); // its end is one more NUL
    description.lpstrFilter = dialog.kinds.empty() ? dialog.filters : filters.c_str();
    description.nFilterIndex = dialog.filter;
    description.lpstrFile = path.data();
    description.nMaxFile = static_cast<DWORD>(path.size());
    description.lpstrFileTitle = title.data();
    description.nMaxFileTitle = static_cast<DWORD>(title.size());
    if (!dialog.folder.empty()) description.lpstrInitialDir = dialog.folder.c_str();
    description.lpstrDefExt = dialog.defaultExtension;
    // Without OFN_NOCHANGEDIR the folder last looked at could not be removed while we run.
    description.Flags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | flags;
    if (!ask(&description)) {
        if (CommDlgExtendedError() != FNERR_BUFFERTOOSMALL) return std::nullopt;
        path.assign(2, '\0');
    }
    dialog.filter = description.nFilterIndex;
    return path;
}

std::optional<ChosenFile> askFile(HWND owner, FileDialog& dialog, const std::string& initialName,
                                  DWORD flags, BOOL(WINAPI* ask)(LPOPENFILENAMEA))
{
    const auto path = runDialog(owner, dialog, initialName, flags, ask);
    if (!path || path->front() == '\0') return std::nullopt;
    return ChosenFile{path->data(), dialog.filter};
}

/// The paths in the buffer of a dialog for several files: one path, or a folder and the names of
/// files in it, each with its NUL, and one more NUL.
std::vector<std::string> splitPaths(const char* next)
{
    std::vector<std::string> texts;
    for (; *next != '\0'; next += texts.back().size() + 1) texts.emplace_back(next);
    if (texts.size() <= 1) return texts;
    std::string folder = texts.front();
    if (!folder.ends_with('\\')) folder += '\\';
    texts.erase(texts.begin());
    for (std::string& text : texts) text.insert(0, folder);
    return texts;
}

constexpr DWORD openFlags = OFN_PATHMUSTEXIST | OFN_FILEMUSTEXIST | OFN_CREATEPROMPT;

} // namespace

std::optional<ChosenFile> askOpenFile(HWND owner, FileDialog& dialog)
{
    return askFile(owner, dialog, {}, openFlags, GetOpenFileNameA);
}

std::optional<ChosenFiles> askOpenFiles(HWND owner, FileDialog& dialog)
{
    const auto names =
        runDialog(owner, dialog, {}, openFlags | OFN_ALLOWMULTISELECT, GetOpenFileNameA);
    if (!names) return std::nullopt;
    return ChosenFiles{splitPaths(names->data()), dialog.filter};
}

std::optional<ChosenFile> askSaveFile(HWND owner, FileDialog& dialog,
                                      const std::string& initialName)
{
    return askFile(owner, dialog, initialName, OFN_PATHMUSTEXIST | OFN_OVERWRITEPROMPT,
                   GetSaveFileNameA);
}

} // namespace facetor
