#include "commands/help.h"

#include "base/text.h"
#include "resources/resource_ids.h"
#include "state/editor.h"
#include "ui/dialog.h"
#include "ui/window_data.h"

#include <windows.h>

#include <shellapi.h>

#include <string>
#include <utility>
#include <vector>

namespace facetor {

namespace {

bool exists(const std::string& path)
{
    const DWORD attributes = GetFileAttributesA(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

/// The program's version resource; empty when it cannot be read.
std::vector<std::byte> versionBlock(HINSTANCE instance)
{
    std::vector<wchar_t> path(32768);
    GetModuleFileNameW(instance, path.data(), static_cast<DWORD>(path.size()));
    std::vector<std::byte> block(GetFileVersionInfoSizeW(path.data(), nullptr));
    if (!block.empty() &&
        !GetFileVersionInfoW(path.data(), 0, static_cast<DWORD>(block.size()), block.data()))
        block.clear();
    return block;
}

/// An entry of the resource's texts in the user's language; empty when there is none.
std::wstring versionText(const std::vector<std::byte>& block, const std::string& language,
                         const std::wstring& name)
{
    void* text = nullptr;
    UINT length = 0; // with the terminating NUL
    const std::wstring entry =
        L"\\StringFileInfo\\" + std::wstring(language.begin(), language.end()) + L"\\" + name;
    if (block.empty() || !VerQueryValueW(block.data(), entry.c_str(), &text, &length)) return {};
    return static_cast<const wchar_t*>(text);
}

void fillAbout(HWND dialog)
{
    const std::vector<std::byte> block = versionBlock(instanceOf(dialog));
    const std::string language = loadCatalogueText(dialog, Word::versionTexts);
    for (const auto& [control, name] : {std::pair{IDC_ABOUT_DESCRIPTION, L"FileDescription"},
                                        {IDC_ABOUT_FILE_VERSION, L"FileVersion"},
                                        {IDC_ABOUT_PRODUCT_VERSION, L"ProductVersion"},
                                        {IDC_ABOUT_COPYRIGHT, L"LegalCopyright"}})
        SetDlgItemTextW(dialog, control, versionText(block, language, name).c_str());
}

INT_PTR CALLBACK aboutProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM)
{
    switch (message) {
    case WM_INITDIALOG: fillAbout(dialog); return TRUE;
    case WM_COMMAND:
        if (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL) EndDialog(dialog, LOWORD(wParam));
        return TRUE;
    default: return FALSE;
    }
}

} // namespace

void showHelp(Editor& editor)
{
    const std::string file = programFolder(editor.mainWindow) + "\\" +
                             loadCatalogueText(editor.mainWindow, Word::helpFile);
    if (exists(file) && WinHelpA(editor.mainWindow, file.c_str(), HELP_FINDER, 0)) return;
    // Later systems have no viewer for help files; the page says the same.
    const std::string page = std::string(cutExtension(file)) + ".html";
    constexpr INT_PTR lastFailure = 32;
    if (exists(page) &&
        reinterpret_cast<INT_PTR>(ShellExecuteA(editor.mainWindow, "open", page.c_str(), nullptr,
                                                nullptr, SW_SHOWNORMAL)) > lastFailure)
        return;
    alert(editor.alerts, editor.mainWindow, Message::cannotFindHelp, AlertStyle::exclamation);
}

void showAbout(Editor& editor)
{
    runDialog(editor.mainWindow, "IDD_ABOUT", aboutProcedure);
}

} // namespace facetor
