#pragma once

#include <string>

namespace facetor {

/// Gives a file the access rights of another one; those that it has stay where they are the same
/// or where the other's cannot be told or given. Paths are bytes in the process's code page.
void copyFileRights(const std::string& from, const std::string& to);

} // namespace facetor
