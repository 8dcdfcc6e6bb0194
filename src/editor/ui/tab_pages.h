#pragma once

#include "base/message.h"

#include <windows.h>

#include <span>
#include <vector>

namespace facetor {

/// One page of a dialog with tabs.
struct TabPage {
    Word title;               ///< what its tab says
    const char* templateName; ///< a dialog resource: DS_CONTROL, WS_CHILD, WS_EX_CONTROLPARENT
    DLGPROC procedure;
};

/// A tab control and its pages. The pages are child dialogs of the dialog that holds the tab
/// control; they live as long as it does.
struct TabPages {
    HWND tabs = nullptr;
    std::vector<HWND> pages; ///< in the order of the tabs; empty when one could not be made
    int current = 0;         ///< the page shown, from 0
};

/// Gives the tab control a tab for each page and makes the pages in its display area, all hidden;
/// `argument` is the second one of their initialising message. For the dialog's own initialising
/// message: the keyboard's order is then the shown page's controls, the dialog's own as they stand
/// in its template. So put the tab control last there, as the system's property sheets do.
TabPages createTabPages(HWND dialog, int tabControl, std::span<const TabPage> pages,
                        LPARAM argument);

/// Selects a tab and shows its page alone. An index that no page has counts as 0.
void showTabPage(TabPages& pages, int index);

/// For the dialog's notify message: shows the page of the tab that the user has chosen. False when
/// the notification is another one.
bool onTabNotify(TabPages& pages, const NMHDR& notification);

} // namespace facetor
