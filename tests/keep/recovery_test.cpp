#include "keep/keeper.h"

#include "base/file.h"
#include "base/folder.h"
#include "base/temporary_folder.h"
#include "model/model_file.h"
#include "texture/texture_file.h"

#include <gtest/gtest.h>

#include <chrono>

namespace facetor {

namespace {

/// A program's run: a document and its keeper.
struct RunOfEditor {
    explicit RunOfEditor(const std::string& folder)
    {
        EXPECT_EQ(startDocument(document), Message::none);
        startKeeper(keeper, folder);
        keeper.period = 0;
    }
    ~RunOfEditor() { releaseDocument(document); }

    void edit(const std::string& name)
    {
        (void)change(document, Word::stepRename, [&] {
            document.model.names[0] = name;
            document.model.objects[0].rotation = {1, 16384, -5};
            document.model.attributes[1].flags |= picked;
            return EditOutcome{};
        });
    }
    void addTexture(std::uint32_t slot, Rgb555 colour)
    {
        (void)change(document, Word::stepPaste, [&] {
            Texels texels;
            EXPECT_TRUE(texels.allocate(64));
            texels[0] = colour;
            document.textures.set(slot, 8, 8, std::move(texels));
            return EditOutcome{};
        });
    }
    /// Ticks until what has changed is written.
    void write()
    {
        tickKeeper(keeper, document, view, ++now);
        while (keeper.writer.isBusy()) tickKeeper(keeper, document, view, now);
    }
    /// Ends as a process that is killed does.
    void vanish()
    {
        write();
        keeper.live.leave();
        for (Recoverable& other : keeper.recoverable) other.set.leave();
    }

    Document document;
    View view;
    Keeper keeper;
    std::uint64_t now = 0;
};

TEST(Recovery, BringsBackWhatWasThereExactly)
{
    const TemporaryFolder folder;
    const std::string kept = folder.file("kept");
    RunOfEditor before(kept);
    before.edit("old name");
    before.addTexture(4095, 0x8123);
    before.document.modelFile = "C:\\a b\\ship.mx3";
    before.document.textures.current = 7;
    before.view.modelRotation = {1, 2, 3};
    before.view.viewMatrix.element[12] = 42;
    before.write();
    before.edit("new name"); // the list stays in the file that it has
    before.vanish();

    RunOfEditor after(kept);
    ASSERT_EQ(after.keeper.recoverable.size(), 1u);
    std::string reason;
    ASSERT_EQ(recover(after.keeper, 0, after.document, after.view, reason), Message::none)
        << reason;
    EXPECT_EQ(writeModel(after.document.model), writeModel(before.document.model));
    EXPECT_EQ(writeTextures(after.document.textures), writeTextures(before.document.textures));
    EXPECT_EQ(after.document.model.objects[0].rotation, before.document.model.objects[0].rotation);
    EXPECT_EQ(after.document.modelFile, "C:\\a b\\ship.mx3");
    EXPECT_EQ(after.document.textures.current, 7u);
    EXPECT_EQ(after.view.viewMatrix.element, before.view.viewMatrix.element);
    EXPECT_TRUE(isModelChanged(after.document) && areTexturesChanged(after.document));
    EXPECT_TRUE(after.keeper.recoverable.empty());
    EXPECT_TRUE(RunOfEditor(kept).keeper.recoverable.empty()) << "a running copy has it";
    takeStep(after.document, Direction::back);
    EXPECT_EQ(after.document.model.names[0], "Model00");
    takeStep(after.document, Direction::forward);
    after.vanish();
    EXPECT_EQ(RunOfEditor(kept).keeper.recoverable.size(), 1u) << "it was written anew";
}

TEST(Recovery, NothingIsLeftOfWhatWasSavedOrGivenUp)
{
    const TemporaryFolder folder;
    const std::string kept = folder.file("kept");
    RunOfEditor run(kept);
    run.edit("changed");
    run.addTexture(1, 1);
    run.write();
    EXPECT_EQ(namesIn(kept).size(), 3u);
    markModelSaved(run.document);
    markTexturesSaved(run.document);
    run.write();
    EXPECT_TRUE(namesIn(kept).empty()) << "saved";
    run.edit("again");
    run.write();
    endKeeper(run.keeper, run.document, run.view, KeeperEnd::decided);
    EXPECT_TRUE(namesIn(kept).empty()) << "given up";
}

TEST(Recovery, WhatTheUserHasNotDecidedAboutStays)
{
    const TemporaryFolder folder;
    RunOfEditor run(folder.file("kept"));
    run.edit("one");
    EXPECT_TRUE(keepForLater(run.keeper, run.document, run.view));
    run.edit("two");
    endKeeper(run.keeper, run.document, run.view, KeeperEnd::undecided);
    RunOfEditor next(folder.file("kept"));
    EXPECT_EQ(next.keeper.recoverable.size(), 2u);
    markModelSaved(run.document);
    keepForLater(next.keeper, run.document, run.view); // as before a reading that breaks off
    endKeeper(next.keeper, next.document, next.view, KeeperEnd::decided);
    EXPECT_EQ(RunOfEditor(folder.file("kept")).keeper.recoverable.size(), 2u)
        << "what a file holds as well goes with its run";
}

TEST(Recovery, WhatASaveHasReplacedIsNotForThatRunAlone)
{
    const TemporaryFolder folder;
    RunOfEditor run(folder.file("kept"));
    for (const char* file : {"C:\\other.mx3", "C:\\good.mx3"}) {
        run.edit(file);
        run.document.modelFile = file;
        markModelSaved(run.document);
        EXPECT_TRUE(keepForLater(run.keeper, run.document, run.view));
    }
    noteReplaced(run.keeper, KeptKind::textures, "C:\\other.mxt");
    noteReplaced(run.keeper, KeptKind::model, "c:\\Good.mx3");
    endKeeper(run.keeper, run.document, run.view, KeeperEnd::decided);
    RunOfEditor next(folder.file("kept"));
    ASSERT_EQ(next.keeper.recoverable.size(), 1u);
    next.keeper.recoverable[0].state.texturesChanged = true; // as if it could not be written
    std::string reason;
    EXPECT_EQ(recover(next.keeper, 0, next.document, next.view, reason), Message::none) << reason;
    EXPECT_EQ(next.document.model.names[0], "C:\\good.mx3");
    EXPECT_TRUE(isModelChanged(next.document) && areTexturesChanged(next.document));
}

TEST(Recovery, AListWhoseReadingBrokeOffIsNotTakenForTheOneBefore)
{
    const TemporaryFolder folder;
    RunOfEditor run(folder.file("kept"));
    run.addTexture(1, 0x8001);
    markTexturesSaved(run.document);
    const Bytes list = writeTextures(run.document.textures);
    run.edit("one");
    const auto open = [&] {
        run.document.textures.clearAll();
        return EditOutcome{Message::none, Message::formatNotSupported};
    };
    (void)change(run.document, Word::stepOpenTextures, open, ChangeKind::openTextures);
    notePartlyRead(run.document, ChangeKind::openTextures, "cut.mxt");
    run.write();
    takeStep(run.document, Direction::back);
    run.edit("two");
    run.vanish();
    RunOfEditor next(folder.file("kept"));
    ASSERT_EQ(next.keeper.recoverable.size(), 1u);
    EXPECT_EQ(next.keeper.recoverable[0].state.partlyReadTextures, "");
    std::string reason;
    EXPECT_EQ(recover(next.keeper, 0, next.document, next.view, reason), Message::none) << reason;
    EXPECT_EQ(writeTextures(next.document.textures), list);
}

TEST(Recovery, EveryDamageIsSeenAndTheRestStays)
{
    const TemporaryFolder folder;
    const std::string kept = folder.file("kept");
    RunOfEditor run(kept);
    run.edit("name");
    run.addTexture(3, 0x8001);
    run.vanish();
    const std::string state = run.keeper.live.statePath();
    const auto whole = readFile(state);
    ASSERT_TRUE(whole);
    Model model;
    ASSERT_EQ(createModelStore(model), Message::none);
    const auto isRefused = [&](const Bytes& bytes) {
        RecoveryState read;
        std::string reason;
        return readRecoveryFile(read, model, bytes, reason) != Message::none && !reason.empty() &&
               isSafeToDraw(model);
    };
    for (std::size_t size = 0; size < whole->size(); ++size)
        ASSERT_TRUE(isRefused(Bytes(whole->begin(), whole->begin() + static_cast<long>(size))));
    for (std::size_t at = 0; at < whole->size(); ++at) {
        Bytes changed = *whole;
        changed[at] ^= std::byte{0x10};
        ASSERT_TRUE(isRefused(changed)) << at;
    }
    ASSERT_EQ(writeFile(run.keeper.live.texturesPath(1), std::vector<std::byte>(300)),
              Message::none);
    std::string reason;
    {
        RunOfEditor next(kept);
        ASSERT_EQ(next.keeper.recoverable.size(), 1u);
        EXPECT_TRUE(next.keeper.recoverable[0].texturesDamaged);
        EXPECT_EQ(recover(next.keeper, 0, next.document, next.view, reason),
                  Message::recoveryPartly);
        EXPECT_EQ(next.document.model.names[0], "name");
        next.keeper.live.remove();
    }
    ASSERT_EQ(writeFile(state, std::span(*whole).first(100)), Message::none);
    RunOfEditor next(kept);
    ASSERT_EQ(next.keeper.recoverable.size(), 1u);
    EXPECT_TRUE(next.keeper.recoverable[0].damaged);
    EXPECT_EQ(recover(next.keeper, 0, next.document, next.view, reason), Message::recoveryDamaged);
    EXPECT_EQ(next.document.model.names[0], "Model00");
    EXPECT_TRUE(readFile(state)) << "it stays where it is";
}

TEST(Recovery, AWritingThatFailsIsSaidAndTriedAgain)
{
    const TemporaryFolder folder;
    ASSERT_EQ(writeFile(folder.file("kept"), {}), Message::none); // where the folder should be
    RunOfEditor run(folder.file("kept"));
    run.edit("name");
    run.write();
    EXPECT_FALSE(run.keeper.fault.empty());
    ASSERT_TRUE(removeFile(folder.file("kept")));
    run.write();
    EXPECT_TRUE(run.keeper.fault.empty()) << run.keeper.fault;
    EXPECT_EQ(namesIn(folder.file("kept")).size(), 2u);
}

TEST(Recovery, IsWrittenWhenItIsTimeAndNotWithinAChange)
{
    const TemporaryFolder folder;
    RunOfEditor run(folder.file("kept"));
    run.keeper.period = 100;
    run.now = 1000;
    run.edit("one");
    run.write();
    const Revision first = run.keeper.writtenModel;
    EXPECT_EQ(first, run.document.modelRevision) << "the first change at once";
    run.edit("two");
    run.write();
    EXPECT_EQ(run.keeper.writtenModel, first);
    run.now += 100;
    run.document.changing = true;
    run.write();
    EXPECT_EQ(run.keeper.writtenModel, first);
    keepAtCrash(run.keeper, run.document, run.view);
    EXPECT_EQ(run.keeper.writtenModel, first) << "nor by a crash in it";
    run.document.changing = false;
    keepAtCrash(run.keeper, run.document, run.view);
    EXPECT_EQ(run.keeper.writtenModel, run.document.modelRevision);
}

} // namespace

} // namespace facetor
