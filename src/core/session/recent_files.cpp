#include "session/recent_files.h"

#include "base/text.h"
#include "session/settings_text.h"

#include <algorithm>

namespace facetor {

void addRecentFile(RecentFiles& files, std::string_view path)
{
    if (std::any_of(files.begin(), files.end(),
                    [&](const std::string& held) { return equalIgnoringCase(held, path); }))
        return;
    if (files.size() < recentFileCapacity) files.emplace_back();
    for (std::size_t i = files.size() - 1; i > 0; --i)
        if (!files[i - 1].empty()) files[i] = files[i - 1];
    files[0] = path;
}

std::string recentFileItem(int number, std::string_view path)
{
    return "&" + std::to_string(number) + " " + std::string(path);
}

} // namespace facetor
