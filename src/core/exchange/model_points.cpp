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

std::array<Real3, 3> invertedAxes(const Matrix& matrix)
{
    std::array<Real3, 3> m;
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t k = 0; k < 3; ++k) m[i][k] = double{matrix.row(i)[k]};
    std::array<Real3, 3> inverse{};
    const auto cofactor = [&](std::size_t i, std::size_t k) {
        const std::size_t a = (i + 1) % 3, b = (i + 2) % 3, c = (k + 1) % 3, d = (k + 2) % 3;
        return m[a][c] * m[b][d] - m[a][d] * m[b][c];
    };
    const double determinant =
        m[0][0] * cofactor(0, 0) + m[0][1] * cofactor(0, 1) + m[0][2] * cofactor(0, 2);
    if (!(std::abs(determinant) > 0) || !std::isfinite(1 / determinant)) return inverse;
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t k = 0; k < 3; ++k) inverse[k][i] = cofactor(i, k) / determinant;
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
