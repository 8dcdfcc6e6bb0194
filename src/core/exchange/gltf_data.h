#pragma once

#include "base/bytes.h"
#include "base/message.h"
#include "exchange/scene.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cmath>
#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace facetor::gltf {

// What lies under a glTF's nodes and materials: JSON, buffers, views and accessors.

using Json = nlohmann::json;

// Members of JSON objects, whatever stands there: a missing or wrong one is as if it were not
// there, and what needs it says so.

const Json& member(const Json& object, const char* name);
const Json& element(const Json& array, std::size_t index);
std::size_t sizeMember(const Json& object, const char* name, std::size_t otherwise);
double numberMember(const Json& object, const char* name, double otherwise);
std::string textMember(const Json& object, const char* name);

/// As many finite numbers as asked for, or none of them.
template <std::size_t Count> std::optional<std::array<double, Count>> numbers(const Json& array)
{
    if (!array.is_array() || array.size() != Count) return std::nullopt;
    std::array<double, Count> values;
    for (std::size_t i = 0; i < Count; ++i) {
        if (!array[i].is_number()) return std::nullopt;
        values[i] = array[i].get<double>();
        if (!std::isfinite(values[i])) return std::nullopt;
    }
    return values;
}

/// An index or a size that is not there; nothing has it.
inline constexpr std::size_t missing = static_cast<std::size_t>(-1);

inline constexpr std::size_t mostElements = 16'000'000; ///< of an accessor

/// An accessor's numbers: `width` of them an element.
struct Numbers {
    std::vector<double> values;
    std::size_t width = 0;

    std::size_t count() const { return width == 0 ? 0 : values.size() / width; }
};

/// A file's JSON and what it names of data. What fails has said why in the reason, the first fault
/// only.
class Data {
public:
    Data(const AssetReader& assets, Reason& reason) : assets_(assets), reason_(reason) {}

    /// Takes a file, of text or binary, which has to stand as long as this is used.
    bool open(std::span<const std::byte> file);

    const Json& json() const { return json_; }

    /// Says why, unless something else has failed before; false.
    bool fail(const std::string& what);

    /// The bytes that a URI stands for; none with the cause in `why`.
    std::optional<Bytes> fetch(const std::string& uri, std::string& why);

    /// Buffer `index`, whole; null after fail().
    const std::span<const std::byte>* buffer(std::size_t index);

    /// Buffer view `index`; none after fail().
    std::optional<std::span<const std::byte>> view(std::size_t index);

    /// All numbers of accessor `index`, normalised ones as 0 to 1 or -1 to 1.
    bool readAccessor(Numbers& numbers, std::size_t index);

private:
    bool openBinary(std::span<const std::byte> file, std::span<const std::byte>& text);
    bool readElements(std::vector<double>& values, const Json& json, std::size_t kind,
                      std::size_t width, std::size_t count, const std::string& name);
    bool readSparse(Numbers& numbers, const Json& sparse, std::size_t kind, std::size_t count,
                    const std::string& name);

    const AssetReader& assets_;
    Reason& reason_;
    Json json_;
    std::span<const std::byte> binary_; ///< the chunk of data
    std::map<std::size_t, Bytes> files_;
    std::map<std::size_t, std::span<const std::byte>> buffers_;
};

} // namespace facetor::gltf
