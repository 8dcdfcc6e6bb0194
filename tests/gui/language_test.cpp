#include "driver/running_editor.h"
#include "resources/resource_ids.h"
#include "ui/window_data.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <commctrl.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

namespace facetor {

namespace {

constexpr WORD japanese = MAKELANGID(LANG_JAPANESE, SUBLANG_DEFAULT);

std::string menuText(HMENU menu, UINT item, UINT by)
{
    std::array<char, 128> text{};
    GetMenuStringA(menu, item, text.data(), static_cast<int>(text.size()), by);
    return text.data();
}

TEST(Language, IsJapaneseForAJapaneseUser)
{
    const RunningEditor editor({}, Platform::nt, [] {
        SetThreadUILanguage(japanese); // what Windows goes by, and what Wine does
        SetThreadLocale(MAKELCID(japanese, SORT_DEFAULT));
    });
    EXPECT_EQ(editor.title(), "Facetor for NT - 無題");
    EXPECT_EQ(editor.statusText(1).find("ポリゴン = "), 0u);
    const HMENU menu = GetMenu(editor.window());
    EXPECT_EQ(menuText(menu, 0, MF_BYPOSITION), "ファイル(&F)");
    EXPECT_EQ(menuText(menu, IDM_FILE_OPEN, MF_BYCOMMAND), "開く(&O)...\tCtrl+O");
    editor.setChanged();
    editor.post(WM_COMMAND, IDM_FILE_OPEN);
    const ShownAlert question = editor.waitForAlert();
    EXPECT_EQ(question.caption, "警告");
    EXPECT_EQ(question.text, "新しいファイルを開く前に、モデルの変更を保存しますか?");
    editor.closeDialog(question, IDCANCEL);
}

BOOL CALLBACK addName(HMODULE, const char*, char* name, LONG_PTR names)
{
    reinterpret_cast<std::vector<std::string>*>(names)->push_back(
        IS_INTRESOURCE(name) ? "#" + std::to_string(reinterpret_cast<ULONG_PTR>(name)) : name);
    return TRUE;
}

/// The pixels that a label or button needs for its text, and those that it has.
std::pair<LONG, LONG> neededWidth(HWND control)
{
    std::array<wchar_t, 128> text{};
    GetWindowTextW(control, text.data(), static_cast<int>(text.size()));
    const HDC dc = GetDC(control);
    const auto font = reinterpret_cast<HFONT>(SendMessageA(control, WM_GETFONT, 0, 0));
    const HGDIOBJ before = SelectObject(dc, font);
    RECT needed{}, has{};
    DrawTextW(dc, text.data(), -1, &needed, DT_CALCRECT | DT_SINGLELINE);
    SelectObject(dc, before);
    ReleaseDC(control, dc);
    GetClientRect(control, &has);
    const LONG type = GetWindowLongPtrA(control, GWL_STYLE) & BS_TYPEMASK;
    std::array<char, 16> name{};
    GetClassNameA(control, name.data(), static_cast<int>(name.size()));
    const bool hasMark = name.data() == std::string("Button") &&
                         (type == BS_AUTOCHECKBOX || type == BS_AUTORADIOBUTTON);
    constexpr LONG mark = 16; // with the gap behind it
    return {needed.right + (hasMark ? mark : 0), has.right};
}

BOOL CALLBACK expectRoom(HWND control, LPARAM)
{
    if (SendMessageA(control, STM_GETICON, 0, 0)) return TRUE; // its text names it
    const auto [needed, has] = neededWidth(control);
    EXPECT_LE(needed, has) << windowText(control);
    return TRUE;
}

INT_PTR CALLBACK doNothing(HWND, UINT, WPARAM, LPARAM)
{
    return FALSE;
}

TEST(Language, EveryDialogHasRoomForItsJapaneseTexts)
{
    const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_WIN95_CLASSES};
    InitCommonControlsEx(&classes);
    std::vector<std::string> names;
    const HMODULE module = GetModuleHandleA(nullptr);
    EnumResourceNamesA(module, RT_DIALOG, addName, reinterpret_cast<LONG_PTR>(&names));
    ASSERT_GT(names.size(), 10u);
    for (const std::string& name : names) {
        SCOPED_TRACE(name);
        const HRSRC found = FindResourceExA(module, RT_DIALOG, name.c_str(), japanese);
        ASSERT_TRUE(found);
        const auto* form = static_cast<DLGTEMPLATE*>(LockResource(LoadResource(module, found)));
        const HWND parent = CreateWindowA("STATIC", "", WS_POPUP, 0, 0, 400, 400, nullptr, nullptr,
                                          module, nullptr);
        const HWND dialog = CreateDialogIndirectParamA(module, form, parent, doNothing, 0);
        ASSERT_TRUE(dialog);
        EnumChildWindows(dialog, expectRoom, 0);
        DestroyWindow(parent); // and the dialog with it
    }
}

} // namespace

} // namespace facetor
