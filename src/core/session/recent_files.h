#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace facetor {

/// Paths of the files last opened or saved, the newest first; at most recentFileCapacity of them.
using RecentFiles = std::vector<std::string>;

/// Puts a path in front. One that the list already holds, compared without regard to case, keeps
/// its place; of more than four the last drops off.
void addRecentFile(RecentFiles& files, std::string_view path);

/// The text of menu item `number`, from 1: the path begins at its fourth character.
std::string recentFileItem(int number, std::string_view path);

} // namespace facetor
