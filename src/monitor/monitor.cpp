#include "monitor/monitor.h"

#include "ui/handles.h"

#include <algorithm>
#include <array>

namespace facetor {

Entry* findEntry(Monitor& monitor, std::size_t number)
{
    const auto found = std::ranges::find(monitor.entries, number, &Entry::number);
    return found == monitor.entries.end() ? nullptr : &*found;
}

std::string resourceText(UINT number)
{
    std::array<char, 256> buffer{};
    const int length = LoadStringA(GetModuleHandleA(nullptr), number, buffer.data(),
                                   static_cast<int>(buffer.size()));
    return {buffer.data(), static_cast<std::size_t>(length)};
}

int scaled(HWND window, int pixels)
{
    const WindowDc dc(window);
    return MulDiv(pixels, GetDeviceCaps(dc.get(), LOGPIXELSX), 96);
}

void keepSettings(const Monitor& monitor)
{
    if (monitor.settings.empty()) return;
    const auto keep = [&](const char* key, const std::string& value) {
        // Reading strips one pair of quotes, which must not be those of a program's name.
        WritePrivateProfileStringA("Monitor", key, ('"' + value + '"').c_str(),
                                   monitor.settings.c_str());
    };
    keep("Folder", monitor.options.folder);
    keep("Command", monitor.options.command);
}

} // namespace facetor
