#pragma once

#include "base/message.h"
#include "model/model.h"
#include "texture/texture_list.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace facetor {

/// One of the things that the editor or the target has only so many of.
struct BudgetPart {
    std::string_view name; ///< for other programs
    Word title;            ///< for users
    std::uint64_t used, limit;
};

/// What of them a file takes.
struct TargetBudget {
    std::vector<BudgetPart> parts;
    std::optional<std::uint64_t> imageBytes; ///< of its target image; none where it is refused
};

/// Objects, vertices, polygons and Gouraud tables of a model, and the size of its image at `scale`.
TargetBudget budgetOf(const Model& model, float scale);

/// Textures and their bytes as the target image counts them: up to the last slot that is filled,
/// empty ones below it as 8 x 8.
TargetBudget budgetOf(const TextureList& list);

/// The parts of both, and behind them the sizes of both images against the largest that there can
/// be: also of an image that is refused.
std::vector<BudgetPart> budgetParts(const Model& model, const TextureList& list);
inline constexpr std::size_t budgetPartCount = 8;

/// The share of the limit that is taken, 0 to 1.
double shareOf(const BudgetPart& part);

} // namespace facetor
