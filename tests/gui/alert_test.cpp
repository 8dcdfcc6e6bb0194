#include "ui/alert_win.h"

#include "gui/running_editor.h"
#include "ui/window_data_win.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <array>
#include <cstring>

namespace facetor {

namespace {

/// Shows an alert on the editor's thread, presses `button`, and returns what was on the screen.
ShownAlert showAlert(const RunningEditor& editor, Message message, AlertStyle style, int button,
                     AlertButton& result)
{
    editor.begin([&result, message, style](Editor& e) {
        result = alert(e.alerts, e.mainWindow, message, style);
    });
    const ShownAlert shown = editor.waitForAlert();
    savePicture(editor.pictureOf(shown.window),
                "alert-" + std::to_string(static_cast<int>(message)));
    EXPECT_TRUE(editor.press(shown, button));
    editor.call([](Editor&) {}); // runs only after the alert has returned
    return shown;
}

TEST(Alert, ResourceCatalogueHoldsTheTextsOfTheCodesCatalogue)
{
    constexpr int numbers[] = {
#define FACETOR_MESSAGE(number, name, text) number,
#define FACETOR_WORD(number, name, text) number,
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
    struct Case {
        Message message;
        const char *text1, *text2;
        const char* expected;
        const char* reason;
    };
    const Case cases[] = {
        {Message::fileTooBig, "640", "480", "This file size is too big to open. (640x480)", "both"},
        {Message::fileTooBig, nullptr, nullptr, "This file size is too big to open. (x)",
         "the alert before emptied them"},
        {Message::outOf, "unused", "Polygons", "Out of Polygons to edit!", "only the second"},
        {Message::cannotOpenFile, "left", "over", "Cannot open File.", "neither"},
        {Message::outOf, nullptr, nullptr, "Out of  to edit!", "emptied by a text without any"},
        {Message::dataError, "\"From\">\"to\"", "", "Data Error(\"From\">\"to\")", "quotes"},
        {Message::cannotFind, "^2^1", "x", "Cannot find ^2^1.", "inserted texts are not scanned"},
        {Message::outOfUndoMemory, "", "", "Cannot allocate enough memory to do \"Undo\" function.",
         "quotes of the catalogue"},
        {Message::cannotUndoAfter, "", "",
         "WARNING : You cannot Undo after do this function.\n Save changes before doing?",
         "a line break"},
    };
    const RunningEditor editor;
    for (const Case& current : cases) {
        SCOPED_TRACE(current.reason);
        if (current.text1)
            editor.call([&](Editor& e) { setAlertTexts(e.alerts, current.text1, current.text2); });
        AlertButton result{};
        const ShownAlert shown =
            showAlert(editor, current.message, AlertStyle::exclamation, IDOK, result);
        EXPECT_EQ(shown.caption, "Alert");
        EXPECT_EQ(shown.text, current.expected);
        EXPECT_EQ(shown.buttons.size(), 1u);
        EXPECT_EQ(result, AlertButton::ok);
        EXPECT_TRUE(editor.ask([](Editor& e) {
            return e.alerts.placeholder1[0] == '\0' && e.alerts.placeholder2[0] == '\0';
        }));
    }
}

TEST(Alert, ReturnsThePressedButton)
{
    const RunningEditor editor;
    for (const AlertButton button : {AlertButton::yes, AlertButton::no, AlertButton::cancel}) {
        AlertButton result{};
        (void)showAlert(editor, Message::cannotUndoAfter, AlertStyle::question,
                        static_cast<int>(button), result);
        EXPECT_EQ(result, button);
    }
    EXPECT_EQ(static_cast<int>(AlertStyle::exclamation), 48);
    EXPECT_EQ(static_cast<int>(AlertStyle::stop), 16);
    EXPECT_EQ(static_cast<int>(AlertStyle::question), 35);
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

TEST(Alert, MayHaveNoOwner)
{
    const RunningEditor editor;
    AlertButton result{};
    editor.begin([&](Editor& e) {
        setAlertTexts(e.alerts, "GetColor.dll", "");
        result = alert(e.alerts, nullptr, Message::cannotFindModule, AlertStyle::stop);
    });
    const ShownAlert shown = editor.waitForAlert();
    EXPECT_EQ(shown.text, "Cannot find GetColor.dll.");
    savePicture(editor.pictureOf(shown.window), "alert-stop");
    EXPECT_EQ(GetWindow(shown.window, GW_OWNER), nullptr);
    EXPECT_TRUE(editor.press(shown, IDOK));
    editor.call([](Editor&) {});
    EXPECT_EQ(result, AlertButton::ok);
}

TEST(Alert, CaptionIsCutInTheCallersBufferAt31CharactersAndCanBeReset)
{
    AlertState state;
    std::array<char, 64> text{};
    const auto set = [&](std::size_t length) {
        text.fill('\0');
        std::memset(text.data(), 'c', length);
        setAlertCaption(state, text.data());
        return std::strlen(text.data());
    };
    EXPECT_EQ(set(31), 31u);
    EXPECT_EQ(std::string(state.caption.data()), std::string(31, 'c'));
    EXPECT_EQ(set(32), 31u);
    EXPECT_EQ(std::string(state.caption.data()), std::string(31, 'c'));
    EXPECT_EQ(set(63), 31u);
    EXPECT_EQ(text[32], 'c') << "only the one character is overwritten";
    setAlertCaption(state, nullptr);
    EXPECT_STREQ(state.caption.data(), "Alert");
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
