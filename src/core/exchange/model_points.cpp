#include "exchange/model_points.h"

#include <algorithm>
#include <cmath>

namespace facetor {

std::vector<Matrix> placementsOf(const Model& model)
{
    std::vector<Matrix> placements(model.objectCount, identityMatrix);
    MatrixStack stack;
    if (!initialiseStack(stack)) return {};
    const auto visit = [&](std::uint32_t index) { placements[index] = stack.current(); };
    walkObjects(stack, model, 0, ObjectPlacement::withMatrix, visit);
    return placements;
}

namespace {

/// What a row and a column leave of the rotation and scaling of a matrix, with its sign.
double cofactor(const Matrix& matrix, std::size_t i, std::size_t k)
{
    const std::size_t a = (i + 1) % 3, b = (i + 2) % 3, c = (k + 1) % 3, d = (k + 2) % 3;
    const auto m = [&](std::size_t row, std::size_t column) {
        return double{matrix.row(row)[column]};
    };
    return m(a, c) * m(b, d) - m(a, d) * m(b, c);
}

double determinantOf(const Matrix& matrix)
{
    double determinant = 0;
    for (std::size_t k = 0; k < 3; ++k)
        determinant += double{matrix.row(0)[k]} * cofactor(matrix, 0, k);
    return determinant;
}

} // namespace

bool isMirroring(const Matrix& matrix)
{
    return determinantOf(matrix) < 0;
}

std::array<Real3, 3> invertedAxes(const Matrix& matrix)
{
    std::array<Real3, 3> inverse{};
    const double determinant = determinantOf(matrix);
    if (!(std::abs(determinant) > 0) || !std::isfinite(1 / determinant)) return inverse;
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t k = 0; k < 3; ++k) inverse[k][i] = cofactor(matrix, i, k) / determinant;
    return inverse;
}

std::vector<std::uint16_t> differentCorners(const Polygon& polygon)
{
    std::vector<std::uint16_t> corners;
    for (const std::uint16_t corner : polygon.corner)
        if (std::find(corners.begin(), corners.end(), corner) == corners.end())
            corners.push_back(corner);
    return corners;
}

void linkObjects(Model& model, const std::vector<std::uint32_t>& parents)
{
    std::array<std::uint32_t, objectCapacity + 1> last; // child of each object, and at the top
    last.fill(noObject);
    for (std::uint32_t i = 0; i < model.objectCount; ++i) {
        const std::uint32_t parent = parents[i];
        std::uint32_t& before = last[parent == noIndex ? objectCapacity : parent];
        if (before != noObject)
            model.objects[before].next = i;
        else if (parent != noIndex)
            model.objects[parent].child = i;
        before = i;
    }
    assignDepths(model, 0, 0);
}

} // namespace facetor
