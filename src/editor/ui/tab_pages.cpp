#include "ui/tab_pages.h"

#include "ui/window_data.h"

#include <windows.h>

#include <commctrl.h>
#include <uxtheme.h>

#include <string>

namespace facetor {

namespace {

/// Where pages go, in the dialog's client pixels.
RECT displayArea(HWND dialog, HWND tabs)
{
    RECT area{};
    GetClientRect(tabs, &area);
    MapWindowPoints(tabs, dialog, reinterpret_cast<POINT*>(&area), 2);
    SendMessageA(tabs, TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&area));
    return area;
}

void addTab(HWND tabs, std::string title)
{
    TCITEMA item{};
    item.mask = TCIF_TEXT;
    item.pszText = title.data();
    const LRESULT count = SendMessageA(tabs, TCM_GETITEMCOUNT, 0, 0);
    SendMessageA(tabs, TCM_INSERTITEMA, static_cast<WPARAM>(count),
                 reinterpret_cast<LPARAM>(&item));
}

} // namespace

TabPages createTabPages(HWND dialog, int tabControl, std::span<const TabPage> pages,
                        LPARAM argument)
{
    TabPages made{GetDlgItem(dialog, tabControl), {}, 0};
    // All tabs first: the display area depends on their height.
    for (const TabPage& page : pages) addTab(made.tabs, loadCatalogueText(dialog, page.title));
    const RECT area = displayArea(dialog, made.tabs);
    for (const TabPage& page : pages) {
        const HWND window = CreateDialogParamA(instanceOf(dialog), page.templateName, dialog,
                                               page.procedure, argument);
        if (!window) {
            for (const HWND earlier : made.pages) DestroyWindow(earlier);
            made.pages.clear();
            return made;
        }
        EnableThemeDialogTexture(window, ETDT_ENABLETAB);
        // Above the tab control, which would paint over the page otherwise.
        SetWindowPos(window, HWND_TOP, area.left, area.top, area.right - area.left,
                     area.bottom - area.top, SWP_NOACTIVATE | SWP_HIDEWINDOW);
        made.pages.push_back(window);
    }
    return made;
}

void showTabPage(TabPages& pages, int index)
{
    const int count = static_cast<int>(pages.pages.size());
    pages.current = index >= 0 && index < count ? index : 0;
    SendMessageA(pages.tabs, TCM_SETCURSEL, static_cast<WPARAM>(pages.current), 0);
    for (int i = 0; i < count; ++i)
        ShowWindow(pages.pages[static_cast<std::size_t>(i)],
                   i == pages.current ? SW_SHOW : SW_HIDE);
}

bool onTabNotify(TabPages& pages, const NMHDR& notification)
{
    if (notification.hwndFrom != pages.tabs || notification.code != TCN_SELCHANGE) return false;
    showTabPage(pages, static_cast<int>(SendMessageA(pages.tabs, TCM_GETCURSEL, 0, 0)));
    return true;
}

} // namespace facetor
