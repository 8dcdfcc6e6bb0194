#include "engine/matrix_stack.h"

#include "engine/trigonometry.h"

#include <gtest/gtest.h>

namespace facetor {
namespace {

class MatrixStackTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(initialiseStack(stack)); }

    Vector3 transformed(const Vector3& point) const
    {
        return transformPoint(point, stack.current());
    }

    void expectRow(std::size_t row, float x, float y, float z) const
    {
        SCOPED_TRACE(row);
        EXPECT_FLOAT_EQ(stack.current().row(row)[0], x);
        EXPECT_FLOAT_EQ(stack.current().row(row)[1], y);
        EXPECT_FLOAT_EQ(stack.current().row(row)[2], z);
    }

    MatrixStack stack;
};

TEST_F(MatrixStackTest, RefusesTheTwentiethPushAndThePopOfTheFirst)
{
    EXPECT_FALSE(popMatrix(stack));
    for (int level = 1; level < 20; ++level) EXPECT_TRUE(pushMatrix(stack)) << level;
    translate(stack, 1, 2, 3);
    EXPECT_FALSE(pushMatrix(stack, PushedMatrix::identity));
    EXPECT_EQ(stack.index, 19);
    expectRow(3, 1, 2, 3);
    for (int level = 1; level < 20; ++level) EXPECT_TRUE(popMatrix(stack)) << level;
    EXPECT_FALSE(popMatrix(stack));
    EXPECT_EQ(stack.index, 0);
}

TEST_F(MatrixStackTest, PushesACopyOrTheIdentityAndPopsBack)
{
    translate(stack, 1, 2, 3);
    ASSERT_TRUE(pushMatrix(stack));
    expectRow(3, 1, 2, 3);
    translate(stack, 1, 0, 0);
    ASSERT_TRUE(pushMatrix(stack, PushedMatrix::identity));
    EXPECT_EQ(stack.current().element, identityMatrix.element);
    ASSERT_TRUE(popMatrix(stack));
    expectRow(3, 2, 2, 3);
    ASSERT_TRUE(popMatrix(stack));
    expectRow(3, 1, 2, 3);
}

TEST_F(MatrixStackTest, RotatesAboutEachAxisInTheConsolesSense)
{
    const float s = sine(5000), c = cosine(5000);
    rotateX(stack, 5000);
    expectRow(1, 0, c, s);
    expectRow(2, 0, -s, c);
    stack.current() = identityMatrix;
    rotateY(stack, 5000);
    expectRow(0, c, 0, -s);
    expectRow(2, s, 0, c);
    stack.current() = identityMatrix;
    rotateZ(stack, 5000);
    expectRow(0, c, s, 0);
    expectRow(1, -s, c, 0);
}

TEST_F(MatrixStackTest, RotationAboutAUnitAxisAgreesWithTheNamedAxes)
{
    struct Row {
        Vector3 axis;
        void (*rotate)(MatrixStack&, Angle);
    };
    const Row rows[] = {{{1, 0, 0}, rotateX}, {{0, 1, 0}, rotateY}, {{0, 0, 1}, rotateZ}};
    for (const Row& row : rows) {
        stack.current() = identityMatrix;
        row.rotate(stack, 7000);
        const Matrix expected = stack.current();
        stack.current() = identityMatrix;
        rotateAxis(stack, row.axis, 7000);
        for (std::size_t i = 0; i < 16; ++i)
            EXPECT_NEAR(stack.current().element[i], expected.element[i], 1e-6f) << i;
    }
}

TEST_F(MatrixStackTest, RotationAboutASlantedAxisKeepsTheAxis)
{
    const Vector3 axis = normalised({1, 2, -2});
    rotateAxis(stack, axis, 12345);
    const Vector3 image = transformed(axis);
    EXPECT_NEAR(image.x, axis.x, 1e-4f);
    EXPECT_NEAR(image.y, axis.y, 1e-4f);
    EXPECT_NEAR(image.z, axis.z, 1e-4f);
}

TEST_F(MatrixStackTest, RotateXyzTurnsAPointAboutXFirst)
{
    rotateXYZ(stack, 16384, 16384, 0);
    const Vector3 image = transformed({0, 1, 0}); // X carries it to z, then Y carries z to x
    EXPECT_NEAR(image.x, 1, 1e-3f);
    EXPECT_NEAR(image.y, 0, 1e-3f);
    EXPECT_NEAR(image.z, 0, 1e-3f);
    const Matrix all = stack.current();
    stack.current() = identityMatrix;
    rotateZ(stack, 0);
    rotateY(stack, 16384);
    rotateX(stack, 16384);
    EXPECT_EQ(stack.current().element, all.element);
}

TEST_F(MatrixStackTest, ScalesTheAxesAndNotTheTranslation)
{
    translate(stack, 1, 2, 3);
    scale(stack, 2, 3, 4);
    expectRow(0, 2, 0, 0);
    expectRow(1, 0, 3, 0);
    expectRow(2, 0, 0, 4);
    expectRow(3, 1, 2, 3);
    translate(stack, 1, 1, 1);
    expectRow(3, 3, 5, 7);
    translateZ(stack, 2);
    expectRow(3, 3, 5, 15);
    scaleUniform(stack, 0.5f);
    expectRow(0, 1, 0, 0);
    expectRow(2, 0, 0, 2);
}

TEST_F(MatrixStackTest, MultipliesARecordOnTheLocalSide)
{
    translate(stack, 10, 20, 30);
    scale(stack, 2, 2, 2);
    multiplyMatrix(stack, {0, 1, 0, -1, 0, 0, 0, 0, 1, 5, 6, 7});
    expectRow(0, 0, 2, 0);
    expectRow(1, -2, 0, 0);
    expectRow(2, 0, 0, 2);
    expectRow(3, 20, 32, 44);
    EXPECT_EQ(toRotationTranslation(stack.current()),
              (RotationTranslation{0, 2, 0, -2, 0, 0, 0, 0, 2, 20, 32, 44}));
}

} // namespace
} // namespace facetor
