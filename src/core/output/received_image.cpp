#include "output/received_image.h"

#include "base/bytes.h"
#include "engine/placed_texture.h"
#include "output/target_layout.h"
#include "output/target_reader.h"

#include <algorithm>
#include <array>
#include <utility>

namespace facetor {

namespace {

enum class Part { model, textures, scene };

/// Something of the target's memory that an image writes.
struct Place {
    std::uint32_t first, end; ///< addresses; the end lies behind
    std::uint32_t size;       ///< of a block there, in bytes; 0 for any
    Part part;
    const char* contents;
};

constexpr std::array<Place, 11> places{{
    {matricesAddress, matricesAddress + 1, 0, Part::model, "object matrices"},
    {scaleAddress, scaleAddress + 1, 4, Part::model, "scale"},
    {objectsAddress, objectsAddress + 1, 0, Part::model, "objects and polygons"},
    {gouraudAddress, texelsAddress, 0, Part::model, "Gouraud tables"},
    {textureTableAddress, textureTableAddress + 1, 0, Part::textures, "texture table"},
    {texelsAddress, texelsAddress + 1, 0, Part::textures, "texels"},
    {lightDirectionAddress, lightDirectionAddress + 1, 12, Part::scene, "light direction"},
    {lightColourAddress, lightColourAddress + 1, 2, Part::scene, "light colour"},
    {viewAngleAddress, viewAngleAddress + 1, 2, Part::scene, "view angle"},
    {ambientColourAddress, ambientColourAddress + 1, 2, Part::scene, "ambient colour"},
    {backgroundAddress, backgroundAddress + 1, 2, Part::scene, "background colour"},
}};

const Place* placeOf(std::uint32_t address)
{
    const auto found = std::find_if(places.begin(), places.end(), [&](const Place& place) {
        return address >= place.first && address < place.end;
    });
    return found == places.end() ? nullptr : &*found;
}

std::string hexadecimal(std::uint32_t value)
{
    std::string text = "0x";
    for (int shift = 28; shift >= 0; shift -= 4) text += "0123456789ABCDEF"[value >> shift & 15];
    return text;
}

/// A big-endian value of so many bytes.
std::uint32_t valueAt(std::span<const std::byte> data, std::size_t offset, std::size_t size)
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < size; ++i)
        value = value << 8 | std::to_integer<std::uint32_t>(data[offset + i]);
    return value;
}

void readScenePart(SceneSettings& scene, std::uint32_t address, std::span<const std::byte> data)
{
    const auto fixed = [&](std::size_t offset) {
        return static_cast<float>(static_cast<std::int32_t>(valueAt(data, offset, 4)) / 65536.0);
    };
    const auto colour = [&] { // toConsoleColour() is its own inverse
        return toConsoleColour(static_cast<Rgb555>(valueAt(data, 0, 2)));
    };
    if (address == lightDirectionAddress) scene.lightDirection = {fixed(0), fixed(4), fixed(8)};
    if (address == lightColourAddress) scene.lightColour = colour();
    if (address == viewAngleAddress) scene.viewAngle = static_cast<Angle>(valueAt(data, 0, 2));
    if (address == ambientColourAddress) scene.ambientColour = colour();
    if (address == backgroundAddress) scene.backgroundColour = colour();
}

/// Lists the blocks and notes which parts they are of; the reason why one cannot work.
std::string listBlocks(ReceivedImage& image, std::array<bool, 3>& parts, SceneSettings& scene,
                       std::span<const std::byte> bytes)
{
    for (ByteReader in{bytes}; in.left() > 0;) {
        const std::uint32_t address = in.u32(), size = in.u32();
        if (!in.ok() || size > in.left())
            return "block " + std::to_string(image.blocks.size() + 1) + " is cut";
        const std::span<const std::byte> data = in.take(size);
        const Place* const place = placeOf(address);
        image.blocks.push_back({address, size, place ? place->contents : nullptr});
        if (!place) return "nothing of the target lies at " + hexadecimal(address);
        if (place->size != 0 && place->size != size)
            return std::string(place->contents) + ": " + std::to_string(size) +
                   " bytes in place of " + std::to_string(place->size);
        parts[static_cast<std::size_t>(place->part)] = true;
        if (place->part == Part::scene) readScenePart(scene, address, data);
    }
    return image.blocks.empty() ? "it holds no block" : std::string();
}

void drawTextures(const TextureList& textures, FrameSurface& surface)
{
    const std::uint32_t count = textures.usedCount();
    // The largest square cells of which all find a place.
    std::int32_t cell = std::min(surface.width, surface.height);
    while (cell > 1 &&
           static_cast<std::uint32_t>((surface.width / cell) * (surface.height / cell)) < count)
        --cell;
    const std::int32_t columns = std::max(surface.width / cell, 1);
    for (std::uint32_t i = 0; i < count; ++i) {
        const TextureSlot& texture = textures.slot(i);
        const std::int32_t gap = cell > 8 ? 2 : 0, room = std::max(cell - gap, 1);
        const std::int32_t side = std::max({texture.width, texture.height, std::uint16_t{1}});
        const auto reduced = [&](std::int32_t size) {
            return side <= room ? size : std::max(size * room / side, 1);
        };
        const std::int32_t left = static_cast<std::int32_t>(i) % columns * cell;
        const std::int32_t top = static_cast<std::int32_t>(i) / columns * cell;
        drawPlacedTexture(
            surface,
            {texture, {left, top, left + reduced(texture.width), top + reduced(texture.height)}});
    }
}

} // namespace

Message createReceivedScene(ReceivedScene& scene)
{
    if (const Message message = createModelStore(scene.model); message != Message::none)
        return message;
    return scene.textures.create();
}

ReceivedImage receiveImage(ReceivedScene& scene, std::span<const std::byte> image)
{
    ReceivedImage received;
    std::array<bool, 3> parts{};
    SceneSettings settings = scene.scene;
    received.reason = listBlocks(received, parts, settings, image);
    constexpr std::array<const char*, 3> names{"model", "textures", "scene"};
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (!parts[i]) continue;
        if (!received.contents.empty()) received.contents += ", ";
        received.contents += names[i];
    }
    if (!received.reason.empty()) return received;

    Reason reason;
    const auto fail = [&](Message message) {
        received.reason = message == Message::outOfMemory ? "memory is short" : reason.text;
        return received;
    };
    const bool withModel = parts[static_cast<std::size_t>(Part::model)];
    const bool withTextures = parts[static_cast<std::size_t>(Part::textures)];
    TextureList textures;
    if (withTextures) {
        if (const Message message = textures.create(); message != Message::none)
            return fail(message);
        if (const Message message = readTextureImage(textures, image, reason);
            message != Message::none)
            return fail(message);
    }
    if (withModel) { // leaves the model as it was when it fails
        if (const Message message = readModelImage(scene.model, image, reason);
            message != Message::none)
            return fail(message);
        scene.hasModel = true;
    }
    if (withTextures) {
        scene.textures = std::move(textures);
        scene.hasTextures = true;
    }
    scene.scene = settings;
    return received;
}

void drawReceivedScene(ReceivedScene& scene, Engine& engine, View& view, ClientSize size)
{
    engine.settings.textures =
        scene.hasTextures ? scene.textures.slots() : std::span<const TextureSlot>{};
    view.lightDirection = scene.scene.lightDirection;
    view.lightColour = scene.scene.lightColour;
    view.ambientColour = scene.scene.ambientColour;
    view.viewAngle = scene.scene.viewAngle;
    view.backgroundColour = scene.scene.backgroundColour;
    startView(view, engine);
    if (scene.hasModel) {
        fitModel(view, engine, scene.model, size);
        constexpr Angle fromAbove = -3640, fromTheSide = 6372; // 20 and 35 degrees
        view.modelRotation = {fromAbove, fromTheSide, 0};
        buildViewMatrix(view, engine, ViewDirectionUse::ignore);
        view.frameNeedsDrawing = true;
        paintFrame(view, engine, scene.model, size);
        return;
    }
    setSurfaceSize(engine.surface, size.width, size.height);
    clearSurface(engine.surface, scene.scene.backgroundColour);
    if (scene.hasTextures) drawTextures(scene.textures, engine.surface);
}

} // namespace facetor
