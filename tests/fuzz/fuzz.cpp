// libFuzzer targets: FUZZ names the one of the functions below that a program hands its inputs to.
// Each ends the program when an answer contradicts another.
#include "base/checksum.h"
#include "exchange/gltf_reader.h"
#include "exchange/model_import.h"
#include "exchange/obj_reader.h"
#include "image/bitmap_conversion.h"
#include "image/bmp_codec.h"
#include "image/png_codec.h"
#include "image/tga_codec.h"
#include "keep/recovery_file.h"
#include "keep/versions.h"
#include "model/model_file.h"
#include "session/session_text.h"
#include "texture/texture_file.h"
#include "watch/picture_store.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <numeric>
#include <vector>

namespace facetor {

using Input = std::span<const std::byte>;

static void require(bool holds)
{
    if (!holds) std::abort(); // what the fuzzer reports as a finding
}

[[maybe_unused]] static void model_file(Input file)
{
    static Model model;
    static const bool created = createModelStore(model) == Message::none;
    require(created);
    // The model that the file before left behind is the one that this file is read into: a failed
    // read leaves parts of it.
    const bool read = readModel(model, file) == Message::none;
    require(isSafeToDraw(model));
    const Bytes written = writeModel(model);
    if (!read) return;

    // What was read is written so that it reads back, and settles: angles drift toward zero, so the
    // third file is the first that has to be the same but for them.
    require(readModel(model, written) == Message::none);
    require(isSafeToDraw(model));
    require(writeModel(model).size() == written.size());
    for (std::uint32_t i = 0; i < model.objectCount; ++i) model.objects[i].rotation = {};
    const Bytes still = writeModel(model);
    require(readModel(model, still) == Message::none);
    require(writeModel(model) == still);
}

/// Every texel that the list claims to hold is read, so that the sanitizer sees the claim.
[[maybe_unused]] static std::uint32_t sumOfTexels(const TextureList& list)
{
    std::uint32_t sum = 0;
    for (const TextureSlot& slot : list.slots().first(list.usedCount()))
        sum = std::accumulate(slot.pixels, slot.pixels + slot.width * slot.height, sum);
    return sum;
}

[[maybe_unused]] static void texture_file(Input file)
{
    static TextureList list;
    static const bool created = list.create() == Message::none;
    require(created);
    list.clearAll();
    const bool read = readTextures(list, file) == Message::none;
    const std::uint32_t sum = sumOfTexels(list);
    if (!read) return;

    const Bytes written = writeTextures(list);
    list.clearAll();
    require(readTextures(list, written) == Message::none);
    require(sumOfTexels(list) == sum);
    require(writeTextures(list) == written);
}

/// A packed bitmap, as the clipboard has it.
[[maybe_unused]] static void bitmap(Input input)
{
    const auto [width, height] = packedBitmapSize(input);
    if (!isConvertible(input)) return;
    // One that is taken holds all its rows, so its size is no lie.
    require(width > 0 && height > 0 &&
            width * std::int64_t{height} <= static_cast<std::int64_t>(input.size()) * 2);
    std::vector<Rgb555> texels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    require(convertBitmap(input, 0x1234, texels));

    // What is copied and pasted again is the same but for the low bits that mark holes.
    const TextureSlot slot{static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height),
                           texels.data()};
    std::vector<std::byte> packed(packedTextureSize(slot));
    packTexture(slot, packed);
    std::vector<Rgb555> again(texels.size());
    require(convertBitmap(packed, 0x1234, again));
    for (std::size_t i = 0; i < texels.size(); ++i) require(((texels[i] ^ again[i]) & 0x7FFF) == 0);
}

[[maybe_unused]] static void picture(const ImageCodec& codec, Input file)
{
    const auto info = codec.info(file);
    if (!info) return;
    require(info->width > 0 && info->height > 0);
    if (!isDecodable(*info)) {
        require(!codec.decode(file, {}));
        return;
    }
    // Others that are large take time and no other way.
    if (info->width * info->height > 64 * 64) return;
    std::vector<std::byte> buffer(imageBufferSize(info->width, info->height, info->depth));
    if (!codec.decode(file, buffer)) return;

    // What was read can be written, and is then of the same size.
    std::vector<Rgb555> texels(std::size_t{info->width} * info->height);
    convertImageBuffer(buffer, info->width, info->depth, 0, texels);
    const Bytes written = codec.encode({info->width, info->height, texels});
    const auto again = codec.info(written);
    require(again && again->width == info->width && again->height == info->height);
    buffer.resize(imageBufferSize(again->width, again->height, again->depth));
    require(codec.decode(written, buffer));
}

[[maybe_unused]] static void bmp(Input file)
{
    picture(bmpCodec, file);
}
[[maybe_unused]] static void png(Input file)
{
    picture(pngCodec, file);
}
[[maybe_unused]] static void tga(Input file)
{
    picture(tgaCodec, file);
}

/// What a reader of another program's model makes of a file that names itself for all its parts:
/// an OBJ is its own material file.
[[maybe_unused]] static void foreign(Input file, bool isObj)
{
    static Model model;
    static TextureList textures;
    static const bool created =
        createModelStore(model) == Message::none && textures.create() == Message::none;
    require(created);
    const AssetReader assets = [&](const std::string& name, std::string&) {
        return staysBelow(name) ? std::optional<Bytes>(std::in_place, file.begin(), file.end())
                                : std::nullopt;
    };
    Scene scene;
    Reason reason;
    ImportReport report;
    ImportOptions options;
    options.textures = {16, 16, Dither::ordered};
    const std::string_view text(reinterpret_cast<const char*>(file.data()), file.size());
    const Message message = isObj ? readObj(scene, text, "title", assets, reason)
                                  : readGltf(scene, file, assets, reason);
    require(message == Message::none || !reason.text.empty());
    if (message != Message::none) return;
    textures.clearAll();
    const bool built =
        buildModel(model, &textures, scene, options, report, reason) == Message::none;
    require(isSafeToDraw(model));
    require(!built || report.polygons == model.totalPolygonCount);
}

[[maybe_unused]] static void obj(Input file)
{
    foreign(file, true);
}
[[maybe_unused]] static void gltf(Input file)
{
    foreign(file, false);
}

/// A recovery file but for its last chunk, which is made here: no input would have its checksum.
[[maybe_unused]] static void recovery_file(Input input)
{
    static Model model;
    static const bool created = createModelStore(model) == Message::none;
    require(created);
    ByteWriter end;
    const std::size_t payload = end.beginChunk(tag("CRC "));
    end.u32(crc32(input));
    end.endChunk(payload);
    const Bytes tail = end.release();
    Bytes file(input.begin(), input.end());
    file.insert(file.end(), tail.begin(), tail.end());
    RecoveryState state;
    std::string reason;
    const Message message = readRecoveryFile(state, model, file, reason);
    require(isSafeToDraw(model));
    require(message == Message::none || !reason.empty());
    if (message != Message::none) return;
    // What was read is written so that it reads back, and settles but for angles of the file
    // format.
    const Bytes written = writeRecoveryFile(state, model);
    require(readRecoveryFile(state, model, written, reason) == Message::none);
    require(writeRecoveryFile(state, model).size() == written.size());
}

/// The index of the versions, of whose lines each gets its checksum here, the links to pictures,
/// and what is remembered from one run to the next.
[[maybe_unused]] static void kept_text(Input input)
{
    const std::string_view text(reinterpret_cast<const char*>(input.data()), input.size());
    std::string index = formatVersionIndex({});
    for (std::size_t at = 0; at < text.size();) {
        const std::string_view line = text.substr(at, text.find('\n', at) - at);
        std::array<char, 9> checksum{};
        (void)std::snprintf(checksum.data(), checksum.size(), "%08x",
                            crc32(std::as_bytes(std::span(line))));
        index.append(checksum.data()).append(" ").append(line).append("\n");
        at += line.size() + 1;
    }
    const Versions versions = parseVersionIndex(index);
    require(parseVersionIndex(formatVersionIndex(versions.all)).all == versions.all);

    const std::string pictures = formatPictures(parsePictures(text));
    require(formatPictures(parsePictures(pictures)) == pictures);
    const std::string session = formatSession(parseSession(text));
    require(formatSession(parseSession(session)) == session);
}

} // namespace facetor

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    facetor::FUZZ(std::as_bytes(std::span(data, size)));
    return 0;
}
