#include "exchange/gltf_data.h"

#include "exchange/gltf_format.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace facetor::gltf {

const Json& member(const Json& object, const char* name)
{
    static const Json nothing;
    if (!object.is_object()) return nothing;
    const auto found = object.find(name);
    return found == object.end() ? nothing : *found;
}

const Json& element(const Json& array, std::size_t index)
{
    static const Json nothing;
    return array.is_array() && index < array.size() ? array[index] : nothing;
}

std::size_t sizeMember(const Json& object, const char* name, std::size_t otherwise)
{
    const Json& value = member(object, name);
    return value.is_number_unsigned() ? value.get<std::size_t>() : otherwise;
}

double numberMember(const Json& object, const char* name, double otherwise)
{
    const Json& value = member(object, name);
    return value.is_number() ? value.get<double>() : otherwise;
}

std::string textMember(const Json& object, const char* name)
{
    const Json& value = member(object, name);
    return value.is_string() ? value.get<std::string>() : std::string();
}

namespace {

/// What stands behind "base64," of a data URI; none when it is damaged.
std::optional<Bytes> decodeBase64(std::string_view text)
{
    Bytes bytes;
    std::uint32_t bits = 0;
    int count = 0;
    while (text.ends_with('=')) text.remove_suffix(1);
    for (const char c : text) {
        static constexpr std::string_view digits =
            "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
        const std::size_t digit = digits.find(c);
        if (digit == std::string_view::npos) return std::nullopt;
        bits = bits << 6 | static_cast<std::uint32_t>(digit);
        if ((count += 6) < 8) continue;
        count -= 8;
        bytes.push_back(static_cast<std::byte>(bits >> count & 255));
    }
    return bytes;
}

/// A relative URI as a file's name: %20 is a blank.
std::string decodedUri(std::string_view uri)
{
    std::string name;
    const auto digit = [](char c) {
        static constexpr std::string_view digits = "0123456789abcdef";
        return digits.find(c >= 'A' && c <= 'F' ? static_cast<char>(c + 32) : c);
    };
    for (std::size_t i = 0; i < uri.size(); ++i) {
        if (uri[i] == '%' && i + 2 < uri.size() && digit(uri[i + 1]) < 16 &&
            digit(uri[i + 2]) < 16) {
            name += static_cast<char>(digit(uri[i + 1]) * 16 + digit(uri[i + 2]));
            i += 2;
        } else {
            name += uri[i];
        }
    }
    return name;
}

/// What a normalised number of that kind is divided by.
double largestOf(std::size_t kind)
{
    switch (kind) {
    case signedByte: return 127;
    case unsignedByte: return 255;
    case signedShort: return 32767;
    case unsignedShort: return 65535;
    default: return 1;
    }
}

} // namespace

bool Data::fail(const std::string& what)
{
    if (reason_.text.empty()) reason_.text = what;
    return false;
}

bool Data::open(std::span<const std::byte> file)
{
    std::span<const std::byte> text = file;
    if (ByteReader{file}.u32() == fileTag && !openBinary(file, text)) return false;
    json_ = Json::parse(reinterpret_cast<const char*>(text.data()),
                        reinterpret_cast<const char*>(text.data()) + text.size(), nullptr, false);
    return json_.is_object() || fail("it is no JSON");
}

bool Data::openBinary(std::span<const std::byte> file, std::span<const std::byte>& text)
{
    ByteReader in{file};
    in.skip(4);
    const std::uint32_t version = in.u32(), length = in.u32();
    if (version != binaryVersion || length > file.size() || length < headerSize)
        return fail("the header: another version, or the file is cut");
    ByteReader chunks{file.first(length)};
    chunks.skip(headerSize);
    bool hasText = false;
    while (chunks.left() >= chunkHeaderSize) {
        const std::uint32_t size = chunks.u32(), kind = chunks.u32();
        if (size > chunks.left())
            return fail("a chunk overruns the file at offset " +
                        std::to_string(chunks.offset() - chunkHeaderSize));
        const auto payload = chunks.take(size);
        if (kind == jsonChunk && !hasText) {
            text = payload;
            hasText = true;
        } else if (kind == binaryChunk && binary_.empty()) {
            binary_ = payload;
        }
    }
    return hasText || fail("it has no JSON chunk");
}

std::optional<Bytes> Data::fetch(const std::string& uri, std::string& why)
{
    if (!uri.starts_with("data:")) return assets_(decodedUri(uri), why);
    const std::size_t comma = uri.find(',');
    if (comma == std::string::npos ||
        !std::string_view(uri).substr(0, comma).ends_with(";base64")) {
        why = "a data URI that is not base64";
        return std::nullopt;
    }
    why = "base64 is damaged";
    return decodeBase64(std::string_view(uri).substr(comma + 1));
}

const std::span<const std::byte>* Data::buffer(std::size_t index)
{
    const auto known = buffers_.find(index);
    if (known != buffers_.end()) return &known->second;
    const std::string name = "buffer " + std::to_string(index);
    const Json& json = element(member(json_, "buffers"), index);
    const std::size_t length = sizeMember(json, "byteLength", missing);
    std::span<const std::byte> bytes = binary_;
    if (member(json, "uri").is_string()) {
        std::string why;
        std::optional<Bytes> file = fetch(textMember(json, "uri"), why);
        if (!file) {
            fail(name + ": " + why);
            return nullptr;
        }
        files_[index] = std::move(*file);
        bytes = files_[index];
    }
    if (length == missing || length > bytes.size()) {
        fail(name + " is shorter than it says");
        return nullptr;
    }
    return &(buffers_[index] = bytes.first(length));
}

std::optional<std::span<const std::byte>> Data::view(std::size_t index)
{
    const Json& json = element(member(json_, "bufferViews"), index);
    const auto* bytes = buffer(sizeMember(json, "buffer", missing));
    if (!bytes) return std::nullopt;
    const std::size_t offset = sizeMember(json, "byteOffset", 0);
    const std::size_t length = sizeMember(json, "byteLength", missing);
    if (offset > bytes->size() || length > bytes->size() - offset) {
        fail("bufferView " + std::to_string(index) + " overruns its buffer");
        return std::nullopt;
    }
    return bytes->subspan(offset, length);
}

bool Data::readAccessor(Numbers& numbers, std::size_t index)
{
    const std::string name = "accessor " + std::to_string(index);
    const Json& json = element(member(json_, "accessors"), index);
    if (!json.is_object()) return fail(name + " does not exist");
    static const std::map<std::string, std::size_t> widths{
        {"SCALAR", 1}, {"VEC2", 2}, {"VEC3", 3}, {"VEC4", 4}};
    const auto width = widths.find(textMember(json, "type"));
    const std::size_t count = sizeMember(json, "count", 0);
    if (width == widths.end()) return fail(name + " is of an unknown type");
    if (count == 0 || count > mostElements) return fail(name + " has no count that can be");
    numbers.width = width->second;
    numbers.values.clear();
    const Json& sparse = member(json, "sparse");
    const std::size_t kind = sizeMember(json, "componentType", 0);
    const bool normalised = member(json, "normalized") == true;
    if (member(json, "bufferView").is_null() && sparse.is_object())
        numbers.values.assign(count * numbers.width, 0.0); // all that is not said is zero
    else if (!readElements(numbers.values, json, kind, numbers.width, count, name))
        return false;
    if (sparse.is_object() && !readSparse(numbers, sparse, kind, count, name)) return false;
    if (normalised)
        for (double& value : numbers.values) value = std::max(value / largestOf(kind), -1.0);
    return true;
}

/// `count` elements of `width` numbers from where `json` says that they lie.
bool Data::readElements(std::vector<double>& values, const Json& json, std::size_t kind,
                        std::size_t width, std::size_t count, const std::string& name)
{
    static const std::map<std::size_t, std::size_t> sizes{{signedByte, 1},      {unsignedByte, 1},
                                                          {signedShort, 2},     {unsignedShort, 2},
                                                          {unsignedInteger, 4}, {single, 4}};
    const auto size = sizes.find(kind);
    if (size == sizes.end()) return fail(name + " is of an unknown type");
    const auto bytes = view(sizeMember(json, "bufferView", missing));
    if (!bytes) return fail(name + " has no data");
    const std::size_t elementSize = width * size->second;
    const std::size_t stride =
        sizeMember(element(member(json_, "bufferViews"), sizeMember(json, "bufferView", 0)),
                   "byteStride", elementSize);
    const std::size_t offset = sizeMember(json, "byteOffset", 0);
    if (stride < elementSize || stride > 65535 || offset > bytes->size() ||
        bytes->size() - offset < elementSize ||
        (bytes->size() - offset - elementSize) / stride < count - 1)
        return fail(name + " overruns its bufferView");
    values.reserve(count * width);
    for (std::size_t i = 0; i < count; ++i) {
        ByteReader in{bytes->subspan(offset + i * stride, elementSize)};
        for (std::size_t k = 0; k < width; ++k) {
            double value = 0;
            switch (kind) {
            case signedByte: value = static_cast<std::int8_t>(in.u8()); break;
            case unsignedByte: value = in.u8(); break;
            case signedShort: value = static_cast<std::int16_t>(in.u16()); break;
            case unsignedShort: value = in.u16(); break;
            case unsignedInteger: value = in.u32(); break;
            default: value = double{in.f32()};
            }
            if (!std::isfinite(value)) return fail(name + " holds a number that is not finite");
            values.push_back(value);
        }
    }
    return true;
}

/// Puts single elements of an accessor into their places.
bool Data::readSparse(Numbers& numbers, const Json& sparse, std::size_t kind, std::size_t count,
                      const std::string& name)
{
    const std::size_t changed = sizeMember(sparse, "count", 0);
    if (changed == 0 || changed > count) return fail(name + " has no sparse count that can be");
    std::vector<double> indices, values;
    const Json& places = member(sparse, "indices");
    if (!readElements(indices, places, sizeMember(places, "componentType", 0), 1, changed, name) ||
        !readElements(values, member(sparse, "values"), kind, numbers.width, changed, name))
        return false;
    for (std::size_t i = 0; i < changed; ++i) {
        if (!(indices[i] >= 0 && indices[i] < static_cast<double>(count)) ||
            indices[i] != std::floor(indices[i]))
            return fail(name + " has a sparse index out of range");
        std::copy_n(
            values.begin() + static_cast<std::ptrdiff_t>(i * numbers.width), numbers.width,
            numbers.values.begin() +
                static_cast<std::ptrdiff_t>(static_cast<std::size_t>(indices[i]) * numbers.width));
    }
    return true;
}

} // namespace facetor::gltf
