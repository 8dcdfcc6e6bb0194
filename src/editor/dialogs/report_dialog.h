#pragma once

#include <windows.h>

#include <string>

namespace facetor {

/// Shows the report on an import, in lines that end with CR LF, to be read and copied.
void showReport(HWND owner, const std::string& text);

} // namespace facetor
