#include "base/file.h"

#include "base/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string_view>

#ifndef _WIN32
#include <unistd.h>
#endif

namespace facetor {
namespace {

Bytes bytesOf(std::string_view text)
{
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

TEST(File, HoldsWhatWasWrittenLast)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("model.mx3");
    for (const std::string_view text : {"first, the longer one", "second", ""}) {
        ASSERT_EQ(writeFile(path, bytesOf(text)), Message::none);
        EXPECT_EQ(readFile(path), bytesOf(text));
    }
    EXPECT_EQ(folder.entryCount(), 1u) << "nothing is left beside the file";
}

TEST(File, AFileOfSeveralReadStepsIsReadWhole)
{
    const TemporaryFolder folder;
    Bytes bytes(256 * 1024 * 2 + 17);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::byte>(i * 2654435761u >> 24);
    for (const std::size_t size : {bytes.size(), std::size_t{256 * 1024}}) {
        bytes.resize(size);
        ASSERT_EQ(writeFile(folder.file("big"), bytes), Message::none);
        EXPECT_TRUE(readFile(folder.file("big")) == bytes) << size;
    }
}

TEST(File, WhatIsNoRegularFileCannotBeRead)
{
    const TemporaryFolder folder;
    EXPECT_FALSE(readFile(folder.file("missing")).has_value());
    EXPECT_FALSE(readFile(folder.path().string()).has_value());
    EXPECT_FALSE(readFile("").has_value());
    EXPECT_FALSE(readFileStart(folder.file("missing"), 4).has_value());
    EXPECT_FALSE(readFileStart(folder.path().string(), 4).has_value());
}

TEST(File, AFolderIsNotReplaced)
{
    const TemporaryFolder folder;
    const std::string target = folder.file("folder");
    std::filesystem::create_directory(target);
    EXPECT_EQ(writeFile(target, bytesOf("x")), Message::cannotCreateFile);
    EXPECT_TRUE(std::filesystem::is_directory(target));
    EXPECT_EQ(folder.entryCount(), 1u);
}

TEST(File, ANameThatIsTakenBesideTheTargetIsLeftAlone)
{
    const TemporaryFolder folder;
    ASSERT_EQ(writeFile(folder.file("a.new0"), bytesOf("somebody's")), Message::none);
    ASSERT_EQ(writeFile(folder.file("a"), bytesOf("new")), Message::none);
    EXPECT_EQ(readFile(folder.file("a.new0")), bytesOf("somebody's"));
    EXPECT_EQ(readFile(folder.file("a")), bytesOf("new"));
    EXPECT_EQ(folder.entryCount(), 2u);
}

#ifndef _WIN32

TEST(File, AFullDeviceIsReportedAndStaysADevice)
{
    ASSERT_TRUE(std::filesystem::is_character_file("/dev/full"));
    EXPECT_EQ(writeFile("/dev/full", bytesOf("x")), Message::cannotCreateFile);
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
    EXPECT_FALSE(readFile("/dev/full").has_value());
}

TEST(File, APipeBehindALinkIsWrittenTo)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    EXPECT_EQ(writeFile("/dev/fd/" + std::to_string(ends[1]), bytesOf("x")), Message::none);
    close(ends[1]);
    char received = 0;
    EXPECT_EQ(read(ends[0], &received, 1), 1);
    EXPECT_EQ(received, 'x');
    close(ends[0]);
}

TEST(File, AFolderThatTakesNoFilesKeepsTheOldContents)
{
    // The process file system refuses new names also where the tests run as root.
    EXPECT_EQ(writeFile("/proc/facetor.mx3", bytesOf("x")), Message::cannotCreateFile);
    EXPECT_FALSE(std::filesystem::exists("/proc/facetor.mx3"));
}

TEST(File, SavingThroughALinkKeepsTheLink)
{
    const TemporaryFolder folder;
    ASSERT_EQ(writeFile(folder.file("real"), bytesOf("old")), Message::none);
    std::filesystem::create_symlink("real", folder.file("link"));
    ASSERT_EQ(writeFile(folder.file("link"), bytesOf("new")), Message::none);
    EXPECT_TRUE(std::filesystem::is_symlink(folder.file("link")));
    EXPECT_EQ(readFile(folder.file("real")), bytesOf("new"));
}

TEST(File, ALinkMayLeadThroughOthersToAFileThatIsNotThereYet)
{
    const TemporaryFolder folder;
    std::filesystem::create_symlink(folder.path() / "second", folder.file("first"));
    std::filesystem::create_symlink("missing", folder.file("second"));
    ASSERT_EQ(writeFile(folder.file("first"), bytesOf("new")), Message::none);
    EXPECT_EQ(readFile(folder.file("missing")), bytesOf("new"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.file("second")));

    std::filesystem::create_symlink("round", folder.file("round"));
    EXPECT_EQ(writeFile(folder.file("round"), bytesOf("x")), Message::cannotCreateFile);
    EXPECT_EQ(folder.entryCount(), 4u);
}

TEST(File, AccessRightsOutliveASave)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("model.mx3");
    ASSERT_EQ(writeFile(path, bytesOf("old")), Message::none);
    const auto rights = std::filesystem::perms::owner_read | std::filesystem::perms::owner_write |
                        std::filesystem::perms::group_write;
    std::filesystem::permissions(path, rights);
    ASSERT_EQ(writeFile(path, bytesOf("new")), Message::none);
    EXPECT_EQ(std::filesystem::status(path).permissions(), rights);
}

#endif

} // namespace
} // namespace facetor
