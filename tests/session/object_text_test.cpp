#include "session/object_text.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

namespace facetor {

TEST(ObjectText, InformationHasALineForEachGroupAndRow)
{
    Model model;
    ASSERT_EQ(createModelStore(model), Message::none);
    model.objects[0].translation = {1234.56789f, -0.03125f, std::numeric_limits<float>::infinity()};
    model.objects[0].rotation = {16384, -1, 0};
    model.objects[0].matrix.element[12] = -3;
    EXPECT_EQ(objectInformation(model, 0, {"A", "B", "C"}),
              "ID = 0\n\nA\n\t 1234.5679,-0.0312,   inf\n"
              "B\n\t 89.9973,-0.0055, 0.0000\n"
              "C\n\t 1.0000, 1.0000, 1.0000\n"
              "MATRIX[4][3]\n\t 1.0000, 0.0000, 0.0000\n\t 0.0000, 1.0000, 0.0000\n"
              "\t 0.0000, 0.0000, 1.0000\n\t-3.0000, 0.0000, 0.0000\n");
}

TEST(ObjectText, FieldsAreTakenAllTogetherOrNotAtAll)
{
    const Object object{0, 0, 0, {1.5f, -20, 1e10f}, {16384, -1, 0}, {1, 1, 0.0004f}, {}, 0, 0};
    const ObjectFields shown{" 1.500", "-20.000", "10000000000.000", "89.997", "-0.005",
                             " 0.000", " 1.000",  " 1.000",          " 0.000"};
    EXPECT_EQ(formatObjectFields(object), shown);
    // Whether it is taken, the number of a field and its text.
    for (const char* row :
         {"+0 -7.25 ", "+11e3", "+2-99999999999.99", "+311796479", "+4-11796479", "-0", "-1 ",
          "-21.5x", "-311796483", "-4nan", "-5inf", "-61e39", "-7+", "-80.00000000000000"}) {
        Object changed = object;
        ObjectFields fields = shown;
        const auto index = static_cast<std::size_t>(row[1] - '0');
        fields[index] = row + 2;
        EXPECT_EQ(parseObjectFields(changed, fields).value_or(9), *row == '+' ? 9 : index) << row;
        EXPECT_EQ(std::memcmp(&changed, &object, sizeof object) != 0, *row == '+') << row;
        for (const Angle angle : changed.rotation)
            EXPECT_TRUE(isConvertibleDegrees(angleToDegrees(angle))) << "a file may hold it";
    }
}

} // namespace facetor
