#pragma once

#include "base/message.h"

#include <windows.h>

#include <array>
#include <string>
#include <string_view>

namespace facetor {

inline constexpr std::size_t alertCaptionSize = 32;     ///< bytes, with the terminating NUL
inline constexpr std::size_t alertPlaceholderSize = 64; ///< bytes, with the terminating NUL

/// What an alert shows beside its message: one of each in the program.
struct AlertState {
    std::array<char, alertCaptionSize> caption{"Alert"};
    std::array<char, alertPlaceholderSize> placeholder1{};
    std::array<char, alertPlaceholderSize> placeholder2{};
};

/// The buttons and the icon of an alert, as the system's message box takes them.
enum class AlertStyle : UINT {
    exclamation = MB_OK | MB_ICONEXCLAMATION,    ///< 48
    stop = MB_OK | MB_ICONSTOP,                  ///< 16
    question = MB_YESNOCANCEL | MB_ICONQUESTION, ///< 35
    /// For what comes up without a command: a key that was meant for something else does no harm.
    choice = MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2,
};

/// The button that ended an alert, as the system numbers it.
enum class AlertButton : int { ok = IDOK, cancel = IDCANCEL, yes = IDYES, no = IDNO };

/// Sets the texts that replace "^1" and "^2" in the next alert, and only there. Pass an empty text
/// for one that is not used. What is longer than 63 bytes is cut.
void setAlertTexts(AlertState& state, std::string_view text1, std::string_view text2);

/// Shows a catalogue message over `owner` (or over nothing) and waits for the button. The pop-up
/// windows that the owner owns are hidden meanwhile. Empties both placeholders. What is known
/// beyond the message stands below it in `reason`.
AlertButton alert(AlertState& state, HWND owner, Message message, AlertStyle style,
                  const std::string& reason = {});

} // namespace facetor
