#include "ui/number_field_win.h"

#include "base/text.h"
#include "ui/window_data_win.h"

#include <charconv>
#include <string>

namespace facetor {

std::optional<std::int32_t> numberIn(HWND dialog, int field)
{
    const std::string text = windowText(GetDlgItem(dialog, field));
    const std::string_view digits = trimmed(text);
    const char* const end = digits.data() + digits.size();
    std::int32_t number = 0;
    const auto result = std::from_chars(digits.data(), end, number);
    if (result.ec != std::errc{} || result.ptr != end) return std::nullopt;
    return number;
}

void setNumber(HWND dialog, int field, std::int32_t number)
{
    SetDlgItemTextA(dialog, field, std::to_string(number).c_str());
}

void focusField(HWND dialog, int field)
{
    SendMessageA(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(dialog, field)), TRUE);
}

} // namespace facetor
