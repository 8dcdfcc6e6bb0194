#include "keep/versions.h"

#include "base/file.h"
#include "base/file_lock.h"
#include "base/folder.h"
#include "base/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>

namespace facetor {

namespace {

Message putFile(const std::string& path, const std::string& text)
{
    return writeFile(path, std::as_bytes(std::span(text)));
}

class VersionsTest : public testing::Test {
protected:
    /// What a save does: the old file is kept, which may fail, then a new one stands there.
    bool save(const std::string& name, const std::string& text)
    {
        const Message message = keepVersion(store, folder.file(name), KeptKind::model, reason);
        EXPECT_EQ(putFile(folder.file(name), text), Message::none);
        return message == Message::none;
    }
    /// The contents that are kept of a file, the newest first.
    std::vector<std::string> kept(const std::string& name)
    {
        std::vector<std::string> texts;
        for (const Version& version : readVersions(store).all)
            if (version.document == (name.empty() ? name : folder.file(name))) {
                const auto bytes = readVersion(store, version, reason);
                texts.emplace_back(bytes ? reinterpret_cast<const char*>(bytes->data()) : "?",
                                   bytes ? bytes->size() : 1);
            }
        return texts;
    }

    TemporaryFolder folder;
    VersionStore store{folder.file("kept"), 3, 100};
    std::string reason;
};

using Texts = std::vector<std::string>;

TEST_F(VersionsTest, TheLastOnesOfEachDocumentAreKeptEachContentOnce)
{
    for (const char* text : {"1", "2", "2", "3", "1", "4", "5"})
        EXPECT_TRUE(save("a.mx3", text)) << reason;
    EXPECT_EQ(kept("a.mx3"), (Texts{"4", "1", "3"})) << "the 1 that was saved again is newer";
    save("b.mx3", "4");
    save("b.mx3", "5");
    EXPECT_EQ(kept("b.mx3"), Texts{"4"});
    EXPECT_EQ(kept("a.mx3"), (Texts{"4", "1", "3"}));
    EXPECT_EQ(namesIn(store.folder).size(), 3u + 2) << "a content that both have lies there once";
}

TEST_F(VersionsTest, TheOldestGoWhenTheyAreTooMuchTogether)
{
    const std::string large(60, 'x');
    save("a.mx3", large + "1");
    save("a.mx3", "small");
    save("a.mx3", large + "2");
    save("a.mx3", std::string(101, 'y'));
    EXPECT_EQ(kept("a.mx3"), (Texts{large + "2", "small"}));
    EXPECT_FALSE(save("a.mx3", "z")) << "one that is larger than all may be";
    EXPECT_EQ(kept("a.mx3").size(), 2u);
}

TEST_F(VersionsTest, WhatTheIndexHasLostIsFoundAgain)
{
    for (const char* text : {"one", "two", "three"}) save("a b%\xC3\xA9.mx3", text);
    const std::string index = pathIn(store.folder, "index.txt");
    const auto bytes = readFile(index);
    ASSERT_TRUE(bytes);
    std::string text(reinterpret_cast<const char*>(bytes->data()), bytes->size());
    text[text.size() - 3] ^= 1; // in the last line
    ASSERT_EQ(putFile(index, text), Message::none);
    EXPECT_TRUE(readVersions(store).damaged);
    EXPECT_EQ(kept("a b%\xC3\xA9.mx3"), Texts{"two"});
    EXPECT_EQ(kept(""), Texts{"one"}) << "without its name";
    save("a b%\xC3\xA9.mx3", "four");
    EXPECT_FALSE(readVersions(store).damaged);
    EXPECT_EQ(kept(""), Texts{"one"}) << "it is not taken for rubbish";
    save("b.mx3", "1");
    save("b.mx3", "2");
    ASSERT_TRUE(removeFile(index));
    auto time = std::filesystem::file_time_type::clock::now();
    for (const std::string& name : namesIn(store.folder))
        std::filesystem::last_write_time(pathIn(store.folder, name), time += std::chrono::hours(1));
    const auto found = readVersions(store).all;
    EXPECT_EQ(found.size(), 4u);
    EXPECT_TRUE(std::ranges::is_sorted(found, std::ranges::greater{}, &Version::savedAt));
    save("b.mx3", "3");
    EXPECT_EQ(kept("").size(), 4u) << "which may be of as many documents";
}

TEST_F(VersionsTest, AnIndexThatCannotBeOpenedIsNoEmptyOne)
{
    for (const char* text : {"1", "2", "3"}) save("a.mx3", text);
    const std::string index = pathIn(store.folder, "index.txt");
    const auto size = std::filesystem::file_size(index);
    std::filesystem::resize_file(index, largestFile + 1); // nobody can read all of that
    EXPECT_FALSE(save("a.mx3", "4"));
    std::filesystem::resize_file(index, size);
    EXPECT_EQ(kept("a.mx3"), (Texts{"2", "1"}));
}

TEST_F(VersionsTest, AContentThatWasChangedIsNotOpened)
{
    save("a.mx3", "one");
    save("a.mx3", "two");
    const auto all = readVersions(store).all;
    for (const std::string& name : namesIn(store.folder))
        if (name.ends_with(".mx3")) {
            ASSERT_EQ(putFile(pathIn(store.folder, name), "One"), Message::none);
        }
    EXPECT_FALSE(readVersion(store, all.at(0), reason));
    EXPECT_EQ(reason, "it is damaged");
    save("a.mx3", "one");
    save("a.mx3", "two");
    EXPECT_EQ(kept("a.mx3"), (Texts{"one", "two"})) << "keeping it again mends it";
}

TEST_F(VersionsTest, WhatCannotBeKeptIsSaidAndLeavesWhatIsThere)
{
    save("a.mx3", "one");
    save("a.mx3", "two");
    {
        FileLock other; // of another copy of the program that does not let go
        ASSERT_TRUE(other.take(pathIn(store.folder, "lock")));
        EXPECT_FALSE(save("a.mx3", "three"));
    }
    EXPECT_EQ(kept("a.mx3"), Texts{"one"});
    ASSERT_EQ(putFile(folder.file("file"), ""), Message::none);
    store.folder = folder.file("file") + "/kept";
    EXPECT_FALSE(save("a.mx3", "four"));
    EXPECT_FALSE(reason.empty());
}

} // namespace

} // namespace facetor
