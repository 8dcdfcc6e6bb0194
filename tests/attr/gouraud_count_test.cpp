#include "attr/gouraud_count.h"

#include <gtest/gtest.h>

namespace facetor {
namespace {

TEST(GouraudCount, CountsBothSortsAmongThePolygonsInUse)
{
    Model model;
    ASSERT_EQ(createModelStore(model), Message::none);
    EXPECT_EQ(countGouraud(model).light, 0u);
    EXPECT_EQ(countGouraud(model).table, 0u);
    model.attributes[0].flags = gouraudShading | useLight;
    model.attributes[1].flags = gouraudShading;
    model.attributes[2].flags = useLight;
    model.attributes[5].flags = gouraudShading | nearClip;
    model.attributes[6].flags = gouraudShading; // beyond the six polygons of the cube
    EXPECT_EQ(countGouraud(model).light, 1u);
    EXPECT_EQ(countGouraud(model).table, 2u);
}

} // namespace
} // namespace facetor
