#include "base/new_folders.h"

#include "base/beside_file.h"

#include <system_error>

namespace facetor {

namespace fs = std::filesystem;

NewFolders::~NewFolders()
{
    std::error_code error;
    for (auto i = made_.rbegin(); i != made_.rend(); ++i) fs::remove(*i, error);
}

bool NewFolders::make(const std::string& folder)
{
    const auto native = toPath(folder);
    if (!native) return false;
    std::error_code error;
    std::vector<fs::path> missing; // the innermost first
    for (fs::path at = *native; !at.empty() && !fs::exists(at, error); at = at.parent_path()) {
        if (at == at.parent_path()) return false;     // a drive that is not there
        if (at.has_filename()) missing.push_back(at); // a slash at the end is none
    }
    for (auto i = missing.rbegin(); i != missing.rend(); ++i)
        if (fs::create_directory(*i, error)) made_.push_back(*i);
    return fs::is_directory(*native, error);
}

} // namespace facetor
