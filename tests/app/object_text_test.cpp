#include "app/object_text.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

namespace facetor {
namespace {

TEST(ObjectText, InformationHasALineForEachGroupAndRow)
{
    Model model;
    ASSERT_EQ(createModelStore(model), Message::none);
    Object& object = model.objects[0];
    object.translation = {1.5f, -20.25f, 1234.56789f};
    object.rotation = {16384, -1, 0};
    object.matrix.element[4] = -0.5f;
    object.matrix.element[14] = 3;
    EXPECT_EQ(objectInformation(model, 0), "ID = 0\n\n"
                                           "TRANSLATION[x,y,z]\n\t 1.5000,-20.2500, 1234.5679\n"
                                           "ROTATION[x,y,z]\n\t 89.9973,-0.0055, 0.0000\n"
                                           "SCALING[x,y,z]\n\t 1.0000, 1.0000, 1.0000\n"
                                           "MATRIX[4][3]\n"
                                           "\t 1.0000, 0.0000, 0.0000\n"
                                           "\t-0.5000, 1.0000, 0.0000\n"
                                           "\t 0.0000, 0.0000, 1.0000\n"
                                           "\t 0.0000, 0.0000, 3.0000\n");
}

TEST(ObjectText, FieldsAreTakenAllTogetherOrNotAtAll)
{
    Object object{};
    object.translation = {1.5f, -20.25f, 1e10f};
    object.rotation = {16384, -1, 0};
    object.scaling = {1, 1, 0.0004f};
    const ObjectFields shown = formatObjectFields(object);
    EXPECT_EQ(shown, (ObjectFields{" 1.500", "-20.250", "10000000000.000", "89.997", "-0.005",
                                   " 0.000", " 1.000", " 1.000", " 0.000"}));

    struct Row {
        std::size_t field;
        const char* text;
        bool taken;
    };
    const Row rows[] = {
        {0, " -7.25 ", true},   {1, "1e3", true},       {2, "-99999999999.99", true},
        {3, "11796479", true},  {4, "-11796479", true}, {8, "-0", true},
        {0, "", false},         {1, "  ", false},       {2, "1.5x", false},
        {3, "11796480", false}, {4, "-1e9", false},     {5, "nan", false},
        {6, "inf", false},      {7, "1e39", false},     {8, "0.0000000000000000", false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        ObjectFields fields = shown;
        fields[row.field] = row.text;
        Object changed = object;
        const auto faulty = parseObjectFields(changed, fields);
        EXPECT_EQ(faulty, row.taken ? std::nullopt : std::optional(row.field));
        EXPECT_EQ(std::memcmp(&changed, &object, sizeof object) == 0, !row.taken);
        for (const Angle angle : changed.rotation)
            EXPECT_TRUE(isConvertibleDegrees(angleToDegrees(angle))) << "can be read from a file";
    }
    EXPECT_EQ(parseObjectFields(object, shown), std::nullopt);
    EXPECT_EQ(object.rotation, (std::array<Angle, 3>{16383, 0, 0}));
    EXPECT_EQ(objectFieldGroup(2), "TRANSLATION[x,y,z]");
    EXPECT_EQ(objectFieldGroup(3), "ROTATION[x,y,z]");
    EXPECT_EQ(objectFieldGroup(8), "SCALING[x,y,z]");
}

} // namespace
} // namespace facetor
