#pragma once

#include <windows.h>

#include <string>

namespace facetor {

/// A menu's items as text, submenus in braces: "A {B, C}, -, D=number". What is grey stands in
/// parentheses.
std::string menuOutline(HMENU menu);

} // namespace facetor
