#include "base/file.h"

#include "base/file_window.h"
#include "base/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string_view>

#ifndef _WIN32
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#endif

namespace facetor {
namespace {

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

        FileWindow file;
        ASSERT_TRUE(file.open(folder.file("big")));
        ByteReader in(file);
        const std::size_t parts[] = {5, 256 * 1024 - 7, size - 256 * 1024 + 2};
        for (std::size_t i = 0, at = 0; i < std::size(parts); at += parts[i++]) {
            EXPECT_EQ(in.offset(), at);
            const std::span<const std::byte> expected = std::span(bytes).subspan(at, parts[i]);
            EXPECT_TRUE(std::ranges::equal(in.peek(2), expected.first(2)));
            if (i == 1) // passed over, with the window moving on
                in.skip(parts[i]);
            else
                EXPECT_TRUE(std::ranges::equal(in.take(parts[i]), expected));
        }
        EXPECT_EQ(in.left(), 0u);
        EXPECT_TRUE(in.peek(1).empty() && in.ok());
        EXPECT_TRUE(in.take(1).empty() && !in.ok());
    }
}

TEST(File, WhatARunThatWasEndedLeftIsRemovedAndNothingElse)
{
    const TemporaryFolder folder;
    const std::string left = ".facetor-0123456789abcdef";
    const std::string others[] = {left + "0", ".facetor-0123456789abcdeg", "x" + left, "a.new0"};
    for (const std::string& name : others) std::ofstream(folder.file(name)) << name;
    std::ofstream(folder.file(left)) << "half a mod";
    ASSERT_EQ(writeFile(folder.file("a"), bytesOf("new")), Message::none);
    EXPECT_FALSE(std::filesystem::exists(folder.file(left)));
    for (const std::string& name : others) EXPECT_EQ(readFile(folder.file(name)), bytesOf(name));
    EXPECT_EQ(folder.entryCount(), std::size(others) + 1);
}

#ifndef _WIN32

TEST(File, WhatARunningProcessWritesIsNotRemoved)
{
    const TemporaryFolder folder;
    const std::string busy = folder.file(".facetor-0123456789abcdef");
    const int descriptor = open(busy.c_str(), O_WRONLY | O_CREAT, 0600);
    ASSERT_EQ(flock(descriptor, LOCK_EX), 0);
    ASSERT_EQ(writeFile(folder.file("a"), bytesOf("new")), Message::none);
    EXPECT_TRUE(std::filesystem::exists(busy));
    close(descriptor);
}

TEST(File, AFullDeviceIsReportedAndStaysADevice)
{
    ASSERT_TRUE(std::filesystem::is_character_file("/dev/full"));
    std::string reason;
    EXPECT_EQ(writeFile("/dev/full", bytesOf("x"), &reason), Message::cannotCreateFile);
    EXPECT_EQ(reason, "disk full");
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
    EXPECT_FALSE(readFile("/dev/full").has_value());
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
