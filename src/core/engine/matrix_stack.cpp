#include "engine/matrix_stack.h"

#include "engine/trigonometry.h"

namespace facetor {

namespace {

/// The x, y and z elements of a row, in double precision.
struct Row {
    double x, y, z;
};

Row load(const float* row)
{
    return {row[0], row[1], row[2]};
}

void store(float* row, const Row& value)
{
    row[0] = static_cast<float>(value.x);
    row[1] = static_cast<float>(value.y);
    row[2] = static_cast<float>(value.z);
}

Row operator*(double factor, const Row& row)
{
    return {factor * row.x, factor * row.y, factor * row.z};
}

Row operator+(const Row& a, const Row& b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

Row operator-(const Row& a, const Row& b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

} // namespace

RotationTranslation toRotationTranslation(const Matrix& matrix)
{
    RotationTranslation result;
    for (std::size_t row = 0; row < 4; ++row)
        for (std::size_t column = 0; column < 3; ++column)
            result[3 * row + column] = matrix.row(row)[column];
    return result;
}

bool initialiseStack(MatrixStack& stack)
{
    stack.index = 0;
    if (!stack.matrices.allocate(matrixStackDepth)) return false;
    stack.current() = identityMatrix;
    return true;
}

bool pushMatrix(MatrixStack& stack, PushedMatrix pushed)
{
    if (stack.index + 1 >= matrixStackDepth) return false;
    stack.matrices[stack.index + 1u] =
        pushed == PushedMatrix::copy ? stack.current() : identityMatrix;
    ++stack.index;
    return true;
}

bool popMatrix(MatrixStack& stack)
{
    if (stack.index == 0) return false;
    --stack.index;
    return true;
}

void multiplyMatrix(MatrixStack& stack, const RotationTranslation& a)
{
    Matrix& m = stack.current();
    const Row r0 = load(m.row(0)), r1 = load(m.row(1)), r2 = load(m.row(2)), r3 = load(m.row(3));
    const auto combine = [&](std::size_t i) {
        return double{a[i]} * r0 + double{a[i + 1]} * r1 + double{a[i + 2]} * r2;
    };
    store(m.row(0), combine(0));
    store(m.row(1), combine(3));
    store(m.row(2), combine(6));
    store(m.row(3), combine(9) + r3);
}

void translate(MatrixStack& stack, float x, float y, float z)
{
    Matrix& m = stack.current();
    store(m.row(3), double{x} * load(m.row(0)) + double{y} * load(m.row(1)) +
                        double{z} * load(m.row(2)) + load(m.row(3)));
}

void translateZ(MatrixStack& stack, float z)
{
    Matrix& m = stack.current();
    store(m.row(3), double{z} * load(m.row(2)) + load(m.row(3)));
}

void scale(MatrixStack& stack, float sx, float sy, float sz)
{
    Matrix& m = stack.current();
    store(m.row(0), double{sx} * load(m.row(0)));
    store(m.row(1), double{sy} * load(m.row(1)));
    store(m.row(2), double{sz} * load(m.row(2)));
}

void scaleUniform(MatrixStack& stack, float s)
{
    scale(stack, s, s, s);
}

void rotateX(MatrixStack& stack, float sine, float cosine)
{
    Matrix& m = stack.current();
    const Row r1 = load(m.row(1)), r2 = load(m.row(2));
    const double s = sine, c = cosine;
    store(m.row(1), c * r1 + s * r2);
    store(m.row(2), c * r2 - s * r1);
}

void rotateY(MatrixStack& stack, float sine, float cosine)
{
    Matrix& m = stack.current();
    const Row r0 = load(m.row(0)), r2 = load(m.row(2));
    const double s = sine, c = cosine;
    store(m.row(0), c * r0 - s * r2);
    store(m.row(2), c * r2 + s * r0);
}

void rotateZ(MatrixStack& stack, float sine, float cosine)
{
    Matrix& m = stack.current();
    const Row r0 = load(m.row(0)), r1 = load(m.row(1));
    const double s = sine, c = cosine;
    store(m.row(0), c * r0 + s * r1);
    store(m.row(1), c * r1 - s * r0);
}

void rotateX(MatrixStack& stack, Angle angle)
{
    rotateX(stack, sine(angle), cosine(angle));
}

void rotateY(MatrixStack& stack, Angle angle)
{
    rotateY(stack, sine(angle), cosine(angle));
}

void rotateZ(MatrixStack& stack, Angle angle)
{
    rotateZ(stack, sine(angle), cosine(angle));
}

void rotateXYZ(MatrixStack& stack, Angle ax, Angle ay, Angle az)
{
    rotateZ(stack, az);
    rotateY(stack, ay);
    rotateX(stack, ax);
}

void rotateAxis(MatrixStack& stack, const Vector3& axis, Angle angle)
{
    Matrix& m = stack.current();
    const Row r0 = load(m.row(0)), r1 = load(m.row(1)), r2 = load(m.row(2));
    const double x = axis.x, y = axis.y, z = axis.z;
    const double s = sine(angle), c = cosine(angle), t = 1.0 - c;
    store(m.row(0), (x * x * t + c) * r0 + (y * x * t + z * s) * r1 + (z * x * t - y * s) * r2);
    store(m.row(1), (x * y * t - z * s) * r0 + (y * y * t + c) * r1 + (z * y * t + x * s) * r2);
    store(m.row(2), (x * z * t + y * s) * r0 + (y * z * t - x * s) * r1 + (z * z * t + c) * r2);
}

} // namespace facetor
