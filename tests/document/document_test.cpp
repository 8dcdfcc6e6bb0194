#include "document/document.h"

#include "attr/polygon_edits.h"
#include "model/model_file.h"
#include "texture/texture_file.h"

#include <gtest/gtest.h>

#include <random>
#include <utility>
#include <vector>

namespace facetor {
namespace {

/// Both files as they would be saved now.
std::vector<Bytes> filesOf(const Document& document)
{
    return {writeModel(document.model), writeTextures(document.textures)};
}

class DocumentHistory : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(startDocument(d), Message::none); }

    Texels noise(std::size_t count)
    {
        Texels texels;
        EXPECT_TRUE(texels.allocate(count));
        for (Rgb555& texel : texels) texel = static_cast<Rgb555>(0x8000 | random());
        return texels;
    }
    EditOutcome paste(std::uint32_t slot)
    {
        return change(d, Word::stepPaste,
                      [&] { return replaceTexture(d.textures, d.undo, slot, 8, 16, noise(128)); });
    }
    void turn()
    {
        (void)changeModel(d, Word::stepRotateVertices, ModelEdit::rotateVertices, [](Model& m) {
            rotateVertices(m, CornerTurn::clockwise, PickedAfter::keep);
        });
    }
    void editAtRandom()
    {
        TextureList& list = d.textures;
        const std::uint32_t slot = random() % 12;
        const auto flags = static_cast<PolygonNumbers>(random() % 2);
        switch (random() % 9) {
        case 0: turn(); break;
        case 1:
            (void)changeModel(d, Word::stepInvertSurface, ModelEdit::invertSurface,
                              [](Model& model) { invertSurface(model, PickedAfter::clear); });
            break;
        case 2:
            (void)change(d, Word::stepRename, [&] {
                d.model.names[0] = std::string(random() % 40, 'x');
                d.model.objects[0].translation.x += 1;
                return EditOutcome{};
            });
            break;
        case 3:
        case 4: (void)paste(slot); break;
        case 5:
            (void)change(d, Word::stepInsert,
                         [&] { return insertSlot(list, d.undo, d.model, slot, flags); });
            break;
        case 6:
            (void)change(d, Word::stepBackspace,
                         [&] { return removeSlot(list, d.undo, d.model, slot, flags); });
            break;
        case 7:
            (void)change(d, Word::stepFlip, [&] {
                return flipTextures(list, d.undo, {slot, false, {}}, {true, false});
            });
            break;
        case 8: (void)undoLastEdit(d); break;
        }
    }

    std::mt19937 random{20};
    Document d;
};

TEST_F(DocumentHistory, AHundredEditsAreSteppedBackAndForwardThroughEqualFiles)
{
    for (unsigned seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE(seed);
        random.seed(seed);
        std::vector<std::pair<std::vector<Bytes>, std::vector<Bytes>>> steps; // before and after
        for (int i = 0; i < 100; ++i) {
            d.model.attributes[random() % 6].flags ^= picked;
            const auto before = filesOf(d);
            const Revision last = d.lastRevision;
            editAtRandom();
            if (d.lastRevision == last) continue; // no step, or Undo went to one that there is
            steps.resize(d.history.position - 1);
            steps.emplace_back(before, filesOf(d));
        }
        ASSERT_GT(steps.size(), 10u);
        while (canStep(d, Direction::forward)) (void)takeStep(d, Direction::forward);
        while (canStep(d, Direction::back)) {
            (void)takeStep(d, Direction::back);
            ASSERT_EQ(filesOf(d), steps[d.history.position].first) << d.history.position;
        }
        for (const auto& step : steps) {
            (void)takeStep(d, Direction::forward);
            ASSERT_EQ(filesOf(d), step.second) << "after step " << d.history.position;
        }
        releaseDocument(d);
        ASSERT_EQ(startDocument(d), Message::none);
    }
}

TEST_F(DocumentHistory, UndoTogglesTheLastEditAndIsAStepWhereItLeadsElsewhere)
{
    d.model.attributes[0].flags |= picked;
    const auto first = filesOf(d);
    turn();
    const auto turned = filesOf(d);
    for (const auto& [state, position] : {std::pair(first, 0u), {turned, 1u}, {first, 0u}}) {
        EXPECT_EQ(undoLastEdit(d).edit, Message::none);
        EXPECT_EQ(filesOf(d), state);
        EXPECT_EQ(d.history.position, position);
    }
    (void)takeStep(d, Direction::forward);
    EXPECT_EQ(filesOf(d), turned);
    EXPECT_TRUE(d.undo.isEmpty()) << "what it held belongs to another state";

    // A change that Undo does not know lies between: Undo then leads to a state of its own.
    turn();
    (void)change(d, Word::stepRename, [&] { return d.model.names[0] = "other", EditOutcome{}; });
    (void)undoLastEdit(d);
    EXPECT_EQ(d.history.steps.size(), 4u);
    EXPECT_EQ(stepName(d, Direction::back), Word::stepUndo);
    EXPECT_EQ(d.model.names[0], "other");
}

TEST_F(DocumentHistory, SteppingToWhatWasSavedIsNotChangedAndAnOpenedFileComesAndGoesWithItsName)
{
    d.model.attributes[0].flags |= picked;
    turn();
    EXPECT_TRUE(isModelChanged(d));
    markModelSaved(d);
    turn();
    (void)takeStep(d, Direction::back);
    EXPECT_FALSE(isModelChanged(d));
    (void)takeStep(d, Direction::back);
    EXPECT_TRUE(isModelChanged(d)) << "the start is not what was saved";
    EXPECT_FALSE(areTexturesChanged(d));
    markTexturesChanged(d); // by a command that changes nothing
    EXPECT_TRUE(areTexturesChanged(d));

    d.modelFile = "old.mx3";
    (void)change(
        d, Word::stepOpenModel,
        [&] {
            d.model.objects[0].translation.x = 50;
            d.modelFile = "new.mx3";
            return EditOutcome{};
        },
        ChangeKind::openModel);
    markModelSaved(d);
    turn();
    (void)takeStep(d, Direction::back);
    EXPECT_FALSE(isModelChanged(d));
    EXPECT_TRUE(takeStep(d, Direction::back));
    EXPECT_EQ(d.modelFile, "old.mx3");
    EXPECT_TRUE(isModelChanged(d));
    EXPECT_TRUE(takeStep(d, Direction::forward));
    EXPECT_EQ(d.modelFile, "new.mx3");
    EXPECT_FALSE(isModelChanged(d));

    d.textureFile = "new.mxt";
    (void)change(
        d, Word::stepImportModel,
        [&] {
            d.model.objects[0].translation.x = 60;
            d.textures.set(0, 8, 16, noise(128));
            leaveModelFile(d, "a.obj");
            leaveTextureFile(d);
            return EditOutcome{};
        },
        ChangeKind::openBoth);
    EXPECT_TRUE(isModelChanged(d) && areTexturesChanged(d)) << "it is in no file";
    EXPECT_TRUE(takeStep(d, Direction::back));
    EXPECT_EQ(d.modelFile + d.textureFile + d.importedFrom, "new.mx3new.mxt");
    EXPECT_FALSE(isModelChanged(d));
    EXPECT_TRUE(takeStep(d, Direction::forward));
    EXPECT_EQ(d.modelFile + d.textureFile + d.importedFrom, "a.obj");
    EXPECT_TRUE(isModelChanged(d));
}

TEST_F(DocumentHistory, WhatWasWrittenOverOrUndoneIsNotWhatWasSaved)
{
    d.modelFile = "a.mx3";
    markModelSaved(d);
    const auto open = [&] {
        d.model.objects[0].translation.x = 50;
        d.modelFile = "b.mx3";
        return EditOutcome{};
    };
    (void)change(d, Word::stepOpenModel, open, ChangeKind::openModel);
    markModelSaved(d);
    d.modelFile = "A.MX3";
    markModelSaved(d);
    (void)takeStep(d, Direction::back);
    EXPECT_TRUE(isModelChanged(d)) << "the other model stands in its file";
    (void)takeStep(d, Direction::forward);
    EXPECT_FALSE(isModelChanged(d));

    (void)paste(0);
    (void)undoLastEdit(d);
    EXPECT_TRUE(areTexturesChanged(d));
}

TEST_F(DocumentHistory, TheOldestStepsGoWhenTheMemoryIsUsedUp)
{
    for (std::uint32_t slot = 0; slot < 3; ++slot) (void)paste(slot);
    d.history.limit = d.history.size;
    (void)paste(3);
    EXPECT_EQ(d.history.steps.size(), 3u);
    EXPECT_LE(d.history.size, d.history.limit);
    while (canStep(d, Direction::back)) (void)takeStep(d, Direction::back);
    EXPECT_EQ(d.textures.usedCount(), 1u) << "the first one is beyond reach";
    (void)paste(9);
    EXPECT_FALSE(canStep(d, Direction::forward)) << "another change took the place of the others";
}

} // namespace
} // namespace facetor
