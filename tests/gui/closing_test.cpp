#include "gui/running_editor.h"
#include "resources/resource_ids.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>

namespace facetor {

namespace {

constexpr char modelQuestion[] = "Save changes of model before ending?";
constexpr char textureQuestion[] = "Save changes of texture before ending?";

void setChanged(const RunningEditor& editor, bool model, bool textures)
{
    editor.call([&](Editor& e) {
        e.document.modelChanged = model;
        e.document.texturesChanged = textures;
    });
}

TEST(Closing, CloseMessageAndExitCommandBothEndTheProgramWithZero)
{
    for (const UINT message : {WM_CLOSE, WM_COMMAND}) {
        SCOPED_TRACE(message);
        RunningEditor editor;
        editor.post(message, message == WM_COMMAND ? IDM_FILE_EXIT : 0);
        EXPECT_EQ(editor.waitForEnd(), 0);
    }
}

TEST(Closing, UnsavedChangesAreAskedAboutModelFirst)
{
    struct Answer {
        const char* question;
        int button;
    };
    struct Case {
        bool model, textures;
        std::vector<Answer> answers;
        bool ends;
        std::vector<int> saves; ///< the save commands that reach the main window
    };
    const Case cases[] = {
        {true, false, {{modelQuestion, IDCANCEL}}, false, {}},
        {true, false, {{modelQuestion, IDNO}}, true, {}},
        {true, false, {{modelQuestion, IDYES}}, true, {IDM_FILE_SAVE_AS}},
        {false, true, {{textureQuestion, IDCANCEL}}, false, {}},
        {false, true, {{textureQuestion, IDNO}}, true, {}},
        {false, true, {{textureQuestion, IDYES}}, true, {}},
        {true, true, {{modelQuestion, IDCANCEL}}, false, {}},
        {true, true, {{modelQuestion, IDNO}, {textureQuestion, IDCANCEL}}, false, {}},
        {true,
         true,
         {{modelQuestion, IDYES}, {textureQuestion, IDCANCEL}},
         false,
         {IDM_FILE_SAVE_AS}},
        {true, true, {{modelQuestion, IDNO}, {textureQuestion, IDNO}}, true, {}},
        {true, true, {{modelQuestion, IDYES}, {textureQuestion, IDYES}}, true, {IDM_FILE_SAVE_AS}},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        SCOPED_TRACE(i);
        RunningEditor editor;
        setChanged(editor, cases[i].model, cases[i].textures);
        editor.post(WM_CLOSE);
        for (const Answer& answer : cases[i].answers) {
            const ShownAlert shown = editor.waitForAlert();
            EXPECT_EQ(shown.caption, "Alert");
            EXPECT_EQ(shown.text, answer.question);
            EXPECT_EQ(shown.buttons, (std::vector<int>{IDCANCEL, IDYES, IDNO}));
            savePicture(editor.pictureOf(shown.window), "question");
            EXPECT_TRUE(editor.press(shown, answer.button));
            if (answer.button == IDYES) {
                EXPECT_TRUE(editor.cancelFileDialog()) << "whatever comes of it, closing goes on";
            }
        }
        if (cases[i].ends) {
            EXPECT_EQ(editor.waitForEnd(), 0);
        } else {
            EXPECT_EQ(editor.title(), "Facetor for NT - Untitled"); // it answers: it still runs
            EXPECT_EQ(editor.ask([](Editor& e) { return e.document.modelChanged; }),
                      cases[i].model);
            EXPECT_FALSE(editor.hasEnded());
        }
        EXPECT_EQ(editor.commandsSeen(), cases[i].saves);
    }
}

TEST(Closing, ASecondCloseWhileTheQuestionIsAskedIsIgnored)
{
    const RunningEditor editor;
    setChanged(editor, true, false);
    editor.post(WM_CLOSE);
    const ShownAlert shown = editor.waitForAlert();
    EXPECT_EQ(editor.send(WM_CLOSE), 0); // returns at once: no second question inside the first
    EXPECT_TRUE(editor.press(shown, IDCANCEL));
    EXPECT_EQ(editor.title(), "Facetor for NT - Untitled");
    EXPECT_EQ(editor.findAlert().window, nullptr);
}

} // namespace

} // namespace facetor
