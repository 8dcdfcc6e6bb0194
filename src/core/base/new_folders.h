#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace facetor {

/// Folders for what is written next, which are gone again unless that was done: keep().
class NewFolders {
public:
    NewFolders() = default;
    NewFolders(const NewFolders&) = delete;
    NewFolders& operator=(const NewFolders&) = delete;
    /// Removes those that are empty.
    ~NewFolders();

    /// Makes a folder and those above it, where they are not there yet; false when it is none then.
    bool make(const std::string& folder);
    void keep() { made_.clear(); }

private:
    std::vector<std::filesystem::path> made_; ///< each after the one that it is in
};

} // namespace facetor
