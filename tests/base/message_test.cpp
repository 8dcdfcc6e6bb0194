#include "base/message.h"

#include <gtest/gtest.h>

namespace facetor {
namespace {

TEST(MessageCatalogue, TextsStandExactlyAsTheyAreSpelled)
{
    // A sample of the texts that a well-meaning hand would mend: misspellings, spaces at the end,
    // quotes, a line break.
    EXPECT_EQ(catalogueText(18), "Cannot find a Resource to do this function on this apprication.");
    EXPECT_EQ(catalogueText(20), "Sorry, this Color mode is not supported. ");
    EXPECT_EQ(catalogueText(24), "Clipboard data is empty. Nothing to edit. ");
    EXPECT_EQ(catalogueText(25), "No Selected polygons could be found. ");
    EXPECT_EQ(catalogueText(28), "Cannot allocate enough memory to do \"Undo\" function.");
    EXPECT_EQ(catalogueText(29), "Texture data is empty. Nothing to edit. ");
    EXPECT_EQ(catalogueText(30), "Width of Texture should be multiple of 8. ");
    EXPECT_EQ(catalogueText(37), "This Plug-In contains a bad information.(^1)");
    EXPECT_EQ(catalogueText(39), "WARNING : You cannot Undo after do this function.\n"
                                 " Save changes before doing?");
}

TEST(MessageCatalogue, JapaneseTextsHaveTheirPlaceholdersAndRoom)
{
    struct Row {
        std::string_view english, japanese;
        std::size_t room; // bytes
    };
    const Row rows[] = {
#define FACETOR_MESSAGE(number, name, english, japanese) {english, japanese, 255},
#define FACETOR_WORD(number, name, english, japanese) {english, japanese, 79},
#include "base/messages.inc"
#undef FACETOR_MESSAGE
#undef FACETOR_WORD
    };
    for (const auto& [english, japanese, room] : rows) {
        SCOPED_TRACE(english);
        EXPECT_FALSE(japanese.empty());
        EXPECT_LE(japanese.size(), room);
        for (const std::string_view mark : {"^1", "^2", "(Ctrl+", "(Del)"})
            EXPECT_EQ(english.find(mark) < english.size(), japanese.find(mark) < japanese.size());
    }
}

TEST(Placeholders, AreReplacedByTheTwoTexts)
{
    struct Row {
        std::string_view message, text1, text2, expected;
    };
    const Row rows[] = {
        {catalogueText(Message::fileTooBig), "640", "480",
         "This file size is too big to open. (640x480)"},
        {catalogueText(Message::outOf), "unused", "Polygons", "Out of Polygons to edit!"},
        {catalogueText(Message::cannotFind), "", "", "Cannot find ."},
        {catalogueText(Message::notSupported), "a", "b", "Sorry, this function is not supported."},
        {"^^1", "x", "", "^x"},
        {"a^3^", "x", "y", "a^3^"},
        {"^1^2", "^2", "^1", "^2^1"},
        {"", "x", "y", ""},
    };
    for (const Row& row : rows)
        EXPECT_EQ(expandPlaceholders(row.message, row.text1, row.text2), row.expected);
}

} // namespace
} // namespace facetor
