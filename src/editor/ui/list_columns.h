#pragma once

#include "base/message.h"

#include <windows.h>

#include <initializer_list>

namespace facetor {

struct ListColumn {
    Word title;
    int width; ///< in dialog units
};

/// Adds columns to a dialog's list view in its report form that has none.
void addListColumns(HWND list, std::initializer_list<ListColumn> columns);

} // namespace facetor
