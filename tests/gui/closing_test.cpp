#include "commands/model_commands.h"
#include "commands/texture_file_commands.h"
#include "driver/running_editor.h"
#include "resources/resource_ids.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>

namespace facetor {

namespace {

TEST(Closing, CloseMessageAndExitCommandBothEndTheProgramWithZero)
{
    for (const UINT message : {WM_CLOSE, WM_COMMAND}) {
        SCOPED_TRACE(message);
        RunningEditor editor;
        editor.post(message, message == WM_COMMAND ? IDM_FILE_EXIT : 0);
        EXPECT_EQ(editor.waitForEnd(), 0);
    }
}

TEST(Closing, ACommandThatReturnsAfterTheEndReadsNothing)
{
    RunningEditor editor;
    editor.begin([](Editor& e) {
        DestroyWindow(e.mainWindow);
        EXPECT_TRUE(openModelPath(e, "samples/ship.mx3") == CommandOutcome::abandoned);
        EXPECT_TRUE(openTexturePath(e, "samples/ship.mxt") == CommandOutcome::abandoned);
    });
    EXPECT_EQ(editor.waitForEnd(), 0);
}

TEST(Closing, UnsavedChangesAreAskedAboutModelFirst)
{
    struct Case {
        std::string unsaved, answers; ///< m: model, t: textures; y, n and c: Yes, No, Cancel
        bool ends;
        std::vector<int> saves; ///< the commands of the main window that save
    };
    const Case cases[] = {
        {"m", "c", false, {}},
        {"m", "n", true, {}},
        {"t", "y", true, {}},
        {"mt", "nc", false, {}},
        {"mt", "yc", false, {IDM_FILE_SAVE_AS}},
        {"mt", "yn", true, {IDM_FILE_SAVE_AS}},
    };
    for (const Case& current : cases) {
        SCOPED_TRACE(current.unsaved + current.answers);
        RunningEditor editor;
        const bool model = current.unsaved[0] == 'm', textures = current.unsaved.back() == 't';
        editor.setChanged(model);
        editor.call([&](Editor& e) { setTexturesChanged(e.document, textures); });
        editor.post(WM_CLOSE);
        for (std::size_t i = 0; i < current.answers.size(); ++i) {
            const ShownAlert shown = editor.waitForAlert();
            EXPECT_EQ(shown.caption, "Alert");
            EXPECT_EQ(shown.text, current.unsaved[i] == 'm'
                                      ? "Save changes of model before ending?"
                                      : "Save changes of texture before ending?");
            EXPECT_EQ(shown.buttons, (std::vector<int>{IDCANCEL, IDYES, IDNO}));
            savePicture(editor.pictureOf(shown.window), "question");
            const char answer = current.answers[i];
            EXPECT_TRUE(editor.press(shown, answer == 'y'   ? IDYES
                                            : answer == 'n' ? IDNO
                                                            : IDCANCEL));
            if (answer == 'y') {
                EXPECT_TRUE(editor.cancelFileDialog()) << "whatever comes of it, closing goes on";
            }
        }
        if (current.ends) {
            EXPECT_EQ(editor.waitForEnd(), 0);
        } else {
            EXPECT_EQ(editor.title(), "Facetor for NT - Untitled"); // it answers: it still runs
            EXPECT_EQ(editor.isChanged(), model);
            EXPECT_FALSE(editor.hasEnded());
        }
        EXPECT_EQ(editor.commandsSeen(), current.saves);
    }
}

TEST(Closing, ASecondCloseWhileTheQuestionIsAskedIsIgnored)
{
    const RunningEditor editor;
    editor.setChanged();
    editor.post(WM_CLOSE);
    const ShownAlert shown = editor.waitForAlert();
    EXPECT_EQ(editor.send(WM_CLOSE), 0); // returns at once: no second question inside the first
    EXPECT_TRUE(editor.press(shown, IDCANCEL));
    EXPECT_EQ(editor.title(), "Facetor for NT - Untitled");
    EXPECT_EQ(editor.findAlert().window, nullptr);
}

} // namespace

} // namespace facetor
