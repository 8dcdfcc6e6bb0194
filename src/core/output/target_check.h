#pragma once

#include "base/message.h"
#include "model/model.h"
#include "output/duplicate_textures.h"
#include "texture/texture_list.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace facetor {

// What files may hold and the target cannot show: said before it is sent. The limits are those of
// output/target_layout.h.

/// What is wrong, one code for each kind of fault.
enum class TargetCode : std::uint8_t {
    textureCount,
    textureMemory,
    textureHeight,
    textureWidth,
    gouraudCount,
    fixedRange,
    slotEmpty,
    slotRange,
    textureUnused,
    textureDuplicate,
    quadBent,
    quadCrossed,
    noArea,
    nameC,
    depth,
};
inline constexpr std::size_t targetCodeCount = 15;

/// The code's name for build scripts, like "texture-count".
std::string_view nameOf(TargetCode code);

/// Whether an image with that fault makes the target overwrite its memory or read elsewhere in it.
bool isOverrun(TargetCode code);

/// One fault. Where it lies is the object, the polygon within the object or the slot of the list; a
/// polygon's may have the slot that it shows as well.
struct TargetWarning {
    TargetCode code{};
    std::optional<std::uint32_t> object, polygon, slot;
    Word text{};              ///< what is wrong
    std::string word1, word2; ///< fill its placeholders
    std::string objectName;   ///< of the object, when there is one
};

/// Where a warning's fault lies, as text before what is wrong: "object 0 \"Hull\", polygon 3: ".
/// `textOf(word)` gives a catalogue text in the language wanted. Empty when it is the whole file's.
template <typename TextOf> std::string placeOf(const TargetWarning& warning, const TextOf& textOf)
{
    if (warning.slot && !warning.object)
        return expandPlaceholders(textOf(Word::atSlot), std::to_string(*warning.slot), {});
    if (!warning.object) return {};
    const std::string object = std::to_string(*warning.object) + " \"" + warning.objectName + '"';
    if (!warning.polygon) return expandPlaceholders(textOf(Word::atObject), object, {});
    return expandPlaceholders(textOf(Word::atPolygon), object, std::to_string(*warning.polygon));
}

/// placeOf() and what is wrong.
template <typename TextOf> std::string describe(const TargetWarning& warning, const TextOf& textOf)
{
    return placeOf(warning, textOf) +
           expandPlaceholders(textOf(warning.text), warning.word1, warning.word2);
}
/// The same in English.
std::string describe(const TargetWarning& warning);

/// What the target cannot show of a model at `scale`: its counts, then objects and polygons in
/// their order. With a list also what its polygons show of it. Needs a model that isSafeToDraw().
std::vector<TargetWarning> checkTarget(const Model& model, float scale, const TextureList* list);

/// What it cannot show of a texture list, and what is of no use in it: with a model, the slots that
/// no polygon of it shows. Duplicates equal a lower slot as DuplicateSearch says.
std::vector<TargetWarning> checkTarget(const TextureList& list, const Model* model);
/// The same with duplicates that have been found already.
std::vector<TargetWarning> checkTarget(const TextureList& list, const Model* model,
                                       const DuplicateTextures& duplicates);

/// The overruns of a model's image and of a list's: what isOverrun() says of. None of the others is
/// looked for, so this is fast.
std::optional<TargetWarning> findOverrun(const Model& model);
std::optional<TargetWarning> findOverrun(const TextureList& list);

/// What of a list cannot be sent as it is: an overrun, or a width that rows cannot have.
std::optional<TargetWarning> findRefusal(const TextureList& list);

} // namespace facetor
