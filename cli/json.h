#pragma once

#include "base/message.h"

#include <nlohmann/json.hpp>

#include <string>

namespace facetor {

using Json = nlohmann::ordered_json;

/// An integer where the value is one, else the number whose digits are the fewest that tell the
/// single from its neighbours; null for what is not finite.
Json toJson(float value);

/// A failure as an object: path, message, text, and of reason and offset what is known. `detail`
/// fills the message's placeholder.
Json failureToJson(const std::string& path, Message message, const Reason& reason,
                   const std::string& detail = {});

/// The text of a value. Names and paths are bytes; what is no UTF-8 in them becomes the replacement
/// character.
std::string toText(const Json& value);

} // namespace facetor
