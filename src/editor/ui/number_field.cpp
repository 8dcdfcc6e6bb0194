#include "ui/number_field.h"

#include "base/text.h"
#include "ui/window_data.h"

#include <string>

namespace facetor {

std::optional<std::int32_t> numberIn(HWND dialog, int field)
{
    const std::string text = windowText(GetDlgItem(dialog, field));
    return parseWhole(trimmed(text));
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
