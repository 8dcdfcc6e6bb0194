#include "driver/window_outline.h"

#include "driver/picture.h"
#include "ui/window_data.h"

#include <commctrl.h>

#include <array>
#include <initializer_list>
#include <span>
#include <sstream>
#include <string_view>
#include <utility>

namespace facetor {

namespace {

constexpr char dialogClass[] = "#32770";

std::string quoted(std::string text)
{
    for (const auto& [from, to] : {std::pair{'\t', "\\t"}, {'\n', "\\n"}, {'\r', ""}})
        for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos;)
            text.replace(at, 1, to);
    if (const std::size_t at = text.find(FACETOR_VERSION); at != std::string::npos)
        text.replace(at, std::string_view(FACETOR_VERSION).size(), "VERSION");
    return '"' + text + '"';
}

/// Everything about windows, a line for each thing, indented by what it is in.
class Outline {
public:
    std::string text;

    void add(HWND window)
    {
        const std::string kind = className(window);
        const bool isChild = styleOf(window, GWL_STYLE) & WS_CHILD;
        std::string numbers;
        if (kind == TRACKBAR_CLASSA)
            for (const UINT message :
                 {TBM_GETRANGEMIN, TBM_GETRANGEMAX, TBM_GETPAGESIZE, TBM_GETLINESIZE, TBM_GETPOS})
                numbers += " " + std::to_string(SendMessageA(window, message, 0, 0));
        if (kind == "Edit")
            numbers = " at most " + std::to_string(SendMessageA(window, EM_GETLIMITTEXT, 0, 0));
        line(kind, isChild ? GetDlgCtrlID(window) : 0, "style", hex(styleOf(window, GWL_STYLE)),
             hex(styleOf(window, GWL_EXSTYLE)), quoted(windowText(window)) + numbers,
             IsWindowEnabled(window) ? "" : "grey",
             kind == "Button" && SendMessageA(window, BM_GETCHECK, 0, 0) ? "checked" : "");
        ++depth_;
        if (kind.starts_with("sz")) addClass(window);
        if (const HMENU menu = isChild ? nullptr : GetMenu(window)) add(menu);
        if (kind == TOOLBARCLASSNAMEA) addButtons(window);
        if (kind == STATUSCLASSNAMEA) addParts(window);
        if (kind == WC_TABCONTROLA) addTabs(window);
        for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
            if (className(child) != dialogClass) add(child); // the pages stand under their tabs
        --depth_;
    }
    void add(HACCEL accelerators)
    {
        std::array<ACCEL, 32> keys{};
        const int count = CopyAcceleratorTableA(accelerators, keys.data(), 32);
        for (const ACCEL& key : std::span(keys).first(static_cast<std::size_t>(count)))
            line("key", hex(key.fVirt & 0x1Du), hex(key.key),
                 key.cmd); // without the last one's mark
    }
    void add(HMENU menu)
    {
        for (int at = 0; at < GetMenuItemCount(menu); ++at) {
            std::array<char, 128> name{};
            const auto index = static_cast<UINT>(at);
            GetMenuStringA(menu, index, name.data(), 128, MF_BYPOSITION);
            const UINT state = GetMenuState(menu, index, MF_BYPOSITION);
            const HMENU below = GetSubMenu(menu, at);
            const std::string number = below ? "menu" : std::to_string(GetMenuItemID(menu, at));
            if (!below && state & MF_SEPARATOR)
                line("-");
            else
                line(number, quoted(name.data()), state & MF_GRAYED ? "grey" : "",
                     !below && state & MF_CHECKED ? "checked" : "");
            ++depth_;
            if (below) add(below);
            --depth_;
        }
    }

private:
    static std::string className(HWND window)
    {
        std::array<char, 64> name{};
        GetClassNameA(window, name.data(), static_cast<int>(name.size()));
        return name.data();
    }
    static unsigned styleOf(HWND window, int which)
    {
        return static_cast<unsigned>(GetWindowLongPtrA(window, which));
    }
    static std::string hex(unsigned value)
    {
        std::ostringstream out;
        out << "0x" << std::hex << value;
        return out.str();
    }
    template <typename... Parts> void line(const Parts&... parts)
    {
        text += std::string(depth_ * 2, ' ');
        const auto add = [&](const auto& part) {
            std::ostringstream out;
            out << part;
            text += out.str() + (out.str().empty() ? "" : " ");
        };
        (add(parts), ...);
        text.back() = '\n';
    }
    void addClass(HWND window)
    {
        const auto value = [&](int which) { return GetClassLongPtrA(window, which); };
        const auto is = [](ULONG_PTR handle, HANDLE other) {
            return reinterpret_cast<HANDLE>(handle) == other;
        };
        const ULONG_PTR brush = value(GCLP_HBRBACKGROUND);
        const HWND owner = GetWindow(window, GW_OWNER);
        line("class style", value(GCL_STYLE),
             is(value(GCLP_HCURSOR), LoadCursorA(nullptr, IDC_ARROW)) ? "arrow" : "other cursor",
             is(brush, GetStockObject(GRAY_BRUSH)) ? "grey"
             : brush < 64                          ? "system"
                                                   : "other",
             "brush,", value(GCLP_HICON) ? "icon, owned by" : "no icon, owned by",
             owner ? quoted(windowText(owner)) : "none");
    }
    static std::string tipOf(HWND bar, int command)
    {
        NMTTDISPINFOA tip{};
        tip.hdr.code = TTN_GETDISPINFOA;
        tip.hdr.idFrom = static_cast<UINT_PTR>(command);
        SendMessageA(GetParent(bar), WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&tip));
        return quoted(tip.lpszText ? tip.lpszText : "");
    }
    void addButtons(HWND bar)
    {
        const auto tips = reinterpret_cast<HWND>(SendMessageA(bar, TB_GETTOOLTIPS, 0, 0));
        line("tool tips style", hex(styleOf(tips, GWL_STYLE)));
        const LRESULT count = SendMessageA(bar, TB_BUTTONCOUNT, 0, 0);
        for (LRESULT i = 0; i < count; ++i) {
            TBBUTTON button{};
            SendMessageA(bar, TB_GETBUTTON, static_cast<WPARAM>(i),
                         reinterpret_cast<LPARAM>(&button));
            line("button", button.idCommand, "image", button.iBitmap, "state", hex(button.fsState),
                 "style", hex(button.fsStyle), tipOf(bar, button.idCommand));
        }
        // A command may have a tip and no button.
        constexpr int firstCommand = 40001, lastCommand = 40200;
        for (int command = firstCommand; command <= lastCommand; ++command)
            if (SendMessageA(bar, TB_COMMANDTOINDEX, static_cast<WPARAM>(command), 0) < 0 &&
                tipOf(bar, command) != quoted(""))
                line("no button", command, tipOf(bar, command));
    }
    void addParts(HWND bar)
    {
        std::array<int, 8> edges{};
        const LRESULT count =
            SendMessageA(bar, SB_GETPARTS, edges.size(), reinterpret_cast<LPARAM>(edges.data()));
        for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
            std::array<char, 128> part{};
            SendMessageA(bar, SB_GETTEXTA, i, reinterpret_cast<LPARAM>(part.data()));
            line("up to", edges[i], quoted(part.data()));
        }
    }
    void addTabs(HWND tabs)
    {
        const LRESULT count = SendMessageA(tabs, TCM_GETITEMCOUNT, 0, 0);
        for (LRESULT i = 0; i < count; ++i) {
            std::array<char, 64> name{};
            TCITEMA tab{};
            tab.mask = TCIF_TEXT;
            tab.pszText = name.data();
            tab.cchTextMax = static_cast<int>(name.size());
            SendMessageA(tabs, TCM_GETITEMA, static_cast<WPARAM>(i),
                         reinterpret_cast<LPARAM>(&tab));
            line("tab", quoted(name.data()));
            ++depth_;
            SendMessageA(tabs, TCM_SETCURFOCUS, static_cast<WPARAM>(i), 0); // as a click does
            for (HWND page = nullptr;
                 (page = FindWindowExA(GetParent(tabs), page, dialogClass, nullptr)) != nullptr;)
                if (IsWindowVisible(page)) add(page);
            const HWND owner = GetParent(tabs);
            RedrawWindow(owner, nullptr, nullptr,
                         RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN | RDW_UPDATENOW);
            savePicture(captureWindow(owner), windowText(owner) + " " + name.data());
            --depth_;
        }
    }

    std::size_t depth_ = 0;
};

} // namespace

std::string windowOutline(HWND window)
{
    Outline outline;
    outline.add(window);
    return outline.text;
}

std::string menuOutline(HMENU menu)
{
    Outline outline;
    outline.add(menu);
    return outline.text;
}

std::string keyOutline(HACCEL accelerators)
{
    Outline outline;
    outline.add(accelerators);
    return outline.text;
}

} // namespace facetor
