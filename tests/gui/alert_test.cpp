#include "ui/alert.h"

#include "driver/running_editor.h"
#include "ui/window_data.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <array>
#include <cstring>

namespace facetor {

namespace {

TEST(Alert, ResourceCatalogueHoldsTheTextsOfTheCodesCatalogue)
{
    constexpr int numbers[] = {
#define FACETOR_MESSAGE(number, name, english, japanese) number,
#define FACETOR_WORD(number, name, english, japanese) number,
#include "base/messages.inc"
#undef FACETOR_MESSAGE
#undef FACETOR_WORD
    };
    for (const int number : numbers)
        EXPECT_EQ(loadCatalogueText(nullptr, static_cast<Word>(number)), catalogueText(number));
    EXPECT_EQ(loadCatalogueText(nullptr, static_cast<Word>(9999)), "");
}

TEST(Alert, ReplacesThePlaceholdersAndForgetsThem)
{
    const struct {
        Message message;
        const char* text1; ///< none: the texts are those that the alert before left
        const char* expected;
    } cases[] = {
        {Message::fileTooBig, "640", "This file size is too big to open. (640x480)"},
        {Message::fileTooBig, nullptr, "This file size is too big to open. (x)"},
        {Message::outOf, nullptr, "Out of  to edit!"},
        {Message::cannotUndoAfter, "",
         "WARNING : You cannot Undo after do this function.\n Save changes before doing?"},
    };
    const RunningEditor editor;
    for (const auto& current : cases) {
        SCOPED_TRACE(current.expected);
        AlertButton result{};
        editor.begin([&](Editor& e) {
            if (current.text1) setAlertTexts(e.alerts, current.text1, "480");
            result = alert(e.alerts, e.mainWindow, current.message, AlertStyle::exclamation);
        });
        const ShownAlert shown = editor.waitForAlert();
        EXPECT_EQ(shown.caption, "Alert");
        EXPECT_EQ(shown.text, current.expected);
        EXPECT_EQ(shown.buttons.size(), 1u);
        savePicture(editor.pictureOf(shown.window), "alert");
        EXPECT_TRUE(editor.press(shown, IDOK));
        editor.call([](Editor&) {}); // runs only after the alert has returned
        EXPECT_EQ(result, AlertButton::ok);
    }
}

TEST(Alert, HidesTheOwnersPopupsThatWereShown)
{
    const RunningEditor editor;
    std::array<HWND, 2> popups{};
    editor.call([&](Editor& e) {
        for (HWND& popup : popups)
            popup = CreateWindowExA(0, "STATIC", "", WS_POPUP | WS_VISIBLE, 0, 0, 20, 20,
                                    e.mainWindow, nullptr, e.instance, nullptr);
        ShowWindow(popups[1], SW_HIDE);
    });
    ASSERT_TRUE(IsWindowVisible(popups[0]));
    editor.begin(
        [](Editor& e) { alert(e.alerts, e.mainWindow, Message::outOfMemory, AlertStyle::stop); });
    const ShownAlert shown = editor.waitForAlert();
    EXPECT_FALSE(IsWindowVisible(popups[0]));
    EXPECT_FALSE(IsWindowEnabled(editor.window())) << "the alert is modal";
    EXPECT_EQ(GetWindow(shown.window, GW_OWNER), editor.window());
    EXPECT_TRUE(editor.press(shown, IDOK));
    EXPECT_TRUE(waitUntil([&] { return IsWindowVisible(popups[0]) != FALSE; }));
    EXPECT_FALSE(IsWindowVisible(popups[1])) << "what the user had hidden stays hidden";
    EXPECT_TRUE(IsWindowEnabled(editor.window()));
}

TEST(Alert, APlaceholderLongerThanItsBufferIsCut)
{
    AlertState state;
    setAlertTexts(state, std::string(63, 'a'), std::string(500, 'b'));
    EXPECT_EQ(std::string(state.placeholder1.data()), std::string(63, 'a'));
    EXPECT_EQ(std::string(state.placeholder2.data()), std::string(63, 'b'));
}

} // namespace

} // namespace facetor
