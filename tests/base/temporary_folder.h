#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace facetor {

/// A fresh folder for one test's files, removed with all that is in it at the end of the test.
class TemporaryFolder {
public:
    TemporaryFolder()
    {
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        const auto base = std::filesystem::temp_directory_path();
        for (int number = 0; path_.empty(); ++number) {
            const auto candidate = base / ("facetor-" + std::string(test->test_suite_name()) + "-" +
                                           test->name() + "-" + std::to_string(number));
            if (std::filesystem::create_directory(candidate)) path_ = candidate;
        }
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }
    /// The path of a file in the folder, as the functions under test take it.
    std::string file(const std::string& name) const
    {
        const std::u8string bytes = (path_ / std::u8string(name.begin(), name.end())).u8string();
        return {bytes.begin(), bytes.end()};
    }
    /// How many entries the folder holds.
    std::size_t entryCount() const
    {
        std::size_t count = 0;
        for (const auto& entry : std::filesystem::directory_iterator(path_)) {
            (void)entry;
            ++count;
        }
        return count;
    }

private:
    std::filesystem::path path_;
};

} // namespace facetor
