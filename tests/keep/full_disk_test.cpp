// Disks and folders that take nothing more, and files that cannot be opened. Each is tried by a
// child process: a full disk is a small one in memory that it mounts for itself, or, where it may
// not, a limit on the size of its files.
#ifdef __linux__

#include "base/file.h"
#include "base/folder.h"
#include "base/temporary_folder.h"
#include "keep/keeper.h"
#include "keep/versions.h"
#include "model/model_file.h"

#include <gtest/gtest.h>

#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>

namespace facetor {

namespace {

/// Gives this process a disk of 128 KiB at a folder, which no other one sees. False where it may
/// not.
bool mountSmallDisk(const std::string& folder)
{
    return unshare(CLONE_NEWNS) == 0 &&
           mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("none", folder.c_str(), "tmpfs", 0, "size=128k") == 0;
}

/// Lets no file of this process become larger than that.
void limitFiles(rlim_t bytes)
{
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = std::min(bytes, limit.rlim_max);
    setrlimit(RLIMIT_FSIZE, &limit);
}

void require(bool holds, const char* what)
{
    if (holds) return;
    std::fprintf(stderr, "%s\n", what);
    std::_Exit(1);
}

constexpr uid_t nobody = 65534;

void setRights(const std::string& path, mode_t rights)
{
    require(chmod(path.c_str(), rights) == 0, "no rights");
}

/// Saves and keeps in a folder that takes nothing, for the reason `expected`, once `close` has run,
/// and takes all again after `open`.
[[noreturn]] void tryDisk(const std::string& folder, const std::string& expected,
                          const std::function<void()>& close, const std::function<void()>& open)
{
    const std::string file = pathIn(folder, "model.mx3"), kept = pathIn(folder, "kept");
    const VersionStore versions{pathIn(folder, "versions"), 10, 1u << 20};
    Document document;
    const View view;
    require(startDocument(document) == Message::none, "no memory");
    Keeper keeper;
    startKeeper(keeper, kept);
    std::uint64_t now = 1;
    const auto edit = [&](const std::string& name) {
        (void)change(document, Word::stepRename, [&] {
            document.model.names[0] = name;
            return EditOutcome{};
        });
        tickKeeper(keeper, document, view, now += keeperPeriod);
        while (keeper.writer.isBusy()) tickKeeper(keeper, document, view, now);
    };
    require(writeModelFile(document.model, file) == Message::none, "the first save");
    edit("first");
    require(keeper.fault.empty(), "the first recovery file");
    const auto saved = readFile(file), state = readFile(keeper.live.statePath());
    close();
    std::string reason;
    const Bytes bytes = writeModel(document.model);
    require(writeFile(file, bytes, &reason) == Message::cannotCreateFile, "a save is refused");
    require(reason == expected, reason.c_str());
    require(keepVersion(versions, file, KeptKind::model, reason) == Message::versionNotKept,
            "so is a version");
    require(reason == expected, reason.c_str());
    edit("second");
    require(keeper.fault == expected, keeper.fault.c_str());
    require(!keepForLater(keeper, document, view) ||
                (waitForKept(keeper), keeper.recoverable.empty()),
            "nothing is offered that is not there");
    require(readFile(file) == saved && readFile(keeper.live.statePath()) == state,
            "what was there stands");
    open();
    require(namesIn(kept).size() == 2 && readVersions(versions).all.empty(),
            "nothing is left about");
    require(writeFile(file, bytes) == Message::none, "a save again");
    require(keepVersion(versions, file, KeptKind::model, reason) == Message::none, "a version");
    edit("third");
    require(keeper.fault.empty() && readFile(keeper.live.statePath()) != state, "and what is kept");
    std::_Exit(0);
}

TEST(FullDisk, SaysSoAndLosesNothing)
{
    const TemporaryFolder folder;
    const std::string disk = folder.path().string(), filler = pathIn(disk, "filler");
    const auto fill = [&] {
        std::FILE* file = std::fopen(filler.c_str(), "wb");
        while (std::fputc(0, file) != EOF && std::fflush(file) == 0) {
        }
        (void)std::fclose(file);
    };
    const auto tryIt = [&] {
        if (mountSmallDisk(disk))
            tryDisk(disk, "disk full", fill, [&] { (void)removeFile(filler); });
        // Without a disk of its own, files that may not grow break off their writing as well.
        std::signal(SIGXFSZ, SIG_IGN);
        tryDisk(
            disk, systemReason(EFBIG), [] { limitFiles(16); }, [] { limitFiles(RLIM_INFINITY); });
    };
    EXPECT_EXIT(tryIt(), testing::ExitedWithCode(0), "");
}

TEST(ReadOnlyFolder, SaysSoAndLosesNothing)
{
    const TemporaryFolder folder;
    const std::string path = folder.path().string();
    const bool isRoot = geteuid() == 0; // who may write everywhere
    const auto allow = [&](mode_t rights) {
        for (const std::string& each : {path, pathIn(path, "kept")}) setRights(each, rights);
    };
    const auto close = [&] {
        allow(0555);
        require(!isRoot || seteuid(nobody) == 0, "nobody");
    };
    const auto open = [&] {
        require(!isRoot || seteuid(0) == 0, "root");
        allow(0755);
    };
    EXPECT_EXIT(tryDisk(path, "no permission", close, open), testing::ExitedWithCode(0), "");
}

TEST(UnreadableFile, IsNotTakenForNone)
{
    const TemporaryFolder folder;
    const std::string kept = folder.file("kept"), file = folder.file("model.mx3");
    RecoverySet set;
    std::string reason;
    ASSERT_TRUE(set.create(kept, reason)) << reason;
    for (const std::string& path : {set.statePath(), set.texturesPath(1), file})
        ASSERT_EQ(writeFile(path, {}), Message::none);
    set.leave();
    const auto tryIt = [&] {
        for (const std::string& name : namesIn(kept)) setRights(pathIn(kept, name), 0666);
        for (const std::string& each : {folder.path().string(), kept}) setRights(each, 0777);
        for (const std::string& each : {set.statePath(), file}) setRights(each, 0);
        require(geteuid() != 0 || seteuid(nobody) == 0, "nobody");
        const auto found = findRecoverable(kept);
        require(found.size() == 1 && found[0].reason == "no permission", "a document");
        require(namesIn(kept).size() == 3, "its list stays");
        const VersionStore versions{folder.file("versions"), 10, 100};
        require(keepVersion(versions, file, KeptKind::model, reason) == Message::versionNotKept,
                "a version that is not kept");
        std::_Exit(0);
    };
    EXPECT_EXIT(tryIt(), testing::ExitedWithCode(0), "");
}

} // namespace

} // namespace facetor

#endif
