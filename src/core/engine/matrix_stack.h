#pragma once

#include "base/angle.h"
#include "base/geometry.h"
#include "base/pages.h"

#include <array>
#include <cstdint>

namespace facetor {

inline constexpr std::uint16_t matrixStackDepth = 20;

/// A 3x3 rotation part in rows (elements 0-8) and a translation row (elements 9-11).
using RotationTranslation = std::array<float, 12>;

/// The first three columns of a matrix, as multiplyMatrix() takes them.
RotationTranslation toRotationTranslation(const Matrix& matrix);

/// A stack of 20 matrices. Every operation below acts on the current one, matrices[index], on its
/// local side: what is called last is applied to a point first. Intermediate results are carried in
/// double precision and stored as singles.
struct MatrixStack {
    PageArray<Matrix> matrices;
    std::uint16_t index = 0;

    Matrix& current() { return matrices[index]; }
    const Matrix& current() const { return matrices[index]; }
};

/// Allocates the stack with the identity as its only matrix. False when memory is short.
[[nodiscard]] bool initialiseStack(MatrixStack& stack);

enum class PushedMatrix { identity, copy };

/// Makes a copy of the current matrix, or the identity, the new current one. At the twentieth
/// matrix it does nothing and returns false: the caller goes on with the unpushed matrix.
bool pushMatrix(MatrixStack& stack, PushedMatrix pushed = PushedMatrix::copy);

/// Back to the matrix before the last push. False, and nothing done, at the first matrix.
bool popMatrix(MatrixStack& stack);

/// current = a x current: `a` is applied in the local frame of the current matrix.
void multiplyMatrix(MatrixStack& stack, const RotationTranslation& a);

void translate(MatrixStack& stack, float x, float y, float z);
void translateZ(MatrixStack& stack, float z);
void scale(MatrixStack& stack, float sx, float sy, float sz);
void scaleUniform(MatrixStack& stack, float s);

void rotateX(MatrixStack& stack, float sine, float cosine);
void rotateY(MatrixStack& stack, float sine, float cosine);
void rotateZ(MatrixStack& stack, float sine, float cosine);
void rotateX(MatrixStack& stack, Angle angle);
void rotateY(MatrixStack& stack, Angle angle);
void rotateZ(MatrixStack& stack, Angle angle);
/// rotateZ(az), rotateY(ay), rotateX(ax), in this order of calls.
void rotateXYZ(MatrixStack& stack, Angle ax, Angle ay, Angle az);
/// About an axis that is taken as given: it should be of unit length.
void rotateAxis(MatrixStack& stack, const Vector3& axis, Angle angle);

} // namespace facetor
