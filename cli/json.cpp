#include "json.h"

#include "base/text.h"
#include "run.h"

#include <charconv>
#include <cmath>

namespace facetor {

Json toJson(float value)
{
    constexpr float integersEnd = 9007199254740992.0f; // what a reader holds exactly in a double
    if (std::fabs(value) < integersEnd && value == std::trunc(value))
        return static_cast<std::int64_t>(value);
    const std::string digits = formatShortest(value);
    double parsed = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), parsed);
    return std::isfinite(value) ? Json(parsed) : Json();
}

Json failureToJson(const std::string& path, Message message, const Reason& reason,
                   const std::string& detail)
{
    Json error = {{"path", displayName(path)},
                  {"message", static_cast<int>(message)},
                  {"text", expandPlaceholders(catalogueText(message), detail, {})}};
    if (!reason.text.empty()) error["reason"] = reason.text;
    if (reason.offset) error["offset"] = *reason.offset;
    return error;
}

std::string toText(const Json& value)
{
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

} // namespace facetor
