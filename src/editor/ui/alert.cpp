#include "ui/alert.h"

#include "ui/window_data.h"

#include <algorithm>
#include <string>

namespace facetor {

namespace {

template <std::size_t size> void copyText(std::array<char, size>& buffer, std::string_view text)
{
    const std::size_t length = std::min(text.size(), size - 1);
    std::copy_n(text.begin(), length, buffer.begin());
    buffer[length] = '\0';
}

} // namespace

void setAlertTexts(AlertState& state, std::string_view text1, std::string_view text2)
{
    copyText(state.placeholder1, text1);
    copyText(state.placeholder2, text2);
}

AlertButton alert(AlertState& state, HWND owner, Message message, AlertStyle style,
                  const std::string& reason)
{
    std::array<char, 256> text{};
    LoadStringA(instanceOf(owner), static_cast<UINT>(message), text.data(),
                static_cast<int>(text.size()));
    if (owner) ShowOwnedPopups(owner, FALSE);
    std::string expanded =
        expandPlaceholders(text.data(), state.placeholder1.data(), state.placeholder2.data());
    if (!reason.empty()) expanded += "\n\n" + reason;
    const bool isOwn = state.caption != AlertState{}.caption;
    const std::string caption =
        isOwn ? state.caption.data() : loadCatalogueText(owner, Word::alertCaption);
    const int button =
        MessageBoxA(owner, expanded.c_str(), caption.c_str(), static_cast<UINT>(style));
    if (owner) ShowOwnedPopups(owner, TRUE);
    setAlertTexts(state, {}, {});
    return static_cast<AlertButton>(button);
}

} // namespace facetor
