#include "session/object_text.h"

#include "base/text.h"

namespace facetor {

namespace {

std::array<float, 3> components(const Vector3& v)
{
    return {v.x, v.y, v.z};
}

std::array<float, 3> inDegrees(const std::array<Angle, 3>& rotation)
{
    return {angleToDegrees(rotation[0]), angleToDegrees(rotation[1]), angleToDegrees(rotation[2])};
}

/// As printf("\t% 6.4f,% 6.4f,% 6.4f\n").
std::string informationLine(const float* values)
{
    std::string line;
    for (int i = 0; i < 3; ++i) {
        line += i == 0 ? '\t' : ',';
        line += formatFixed(values[i], 4, 6, PositiveSign::blank);
    }
    return line + '\n';
}

} // namespace

std::string objectInformation(const Model& model, std::uint32_t index,
                              const std::array<std::string, 3>& groupTitles)
{
    const Object& object = model.objects[index];
    const std::array<float, 3> groups[] = {components(object.translation),
                                           inDegrees(object.rotation), components(object.scaling)};
    std::string text = "ID = " + std::to_string(index) + "\n\n";
    for (std::size_t group = 0; group < std::size(groups); ++group) {
        text += groupTitles[group];
        text += '\n' + informationLine(groups[group].data());
    }
    text += "MATRIX[4][3]\n";
    for (std::size_t row = 0; row < 4; ++row) text += informationLine(object.matrix.row(row));
    return text;
}

ObjectFields formatObjectFields(const Object& object)
{
    ObjectFields fields;
    std::size_t next = 0;
    for (const auto& group :
         {components(object.translation), inDegrees(object.rotation), components(object.scaling)})
        for (const float value : group)
            fields[next++] = formatFixed(value, 3, 6, PositiveSign::none);
    return fields;
}

std::optional<std::size_t> parseObjectFields(Object& object, const ObjectFields& fields)
{
    constexpr std::size_t rotation = 3, scaling = 6; // indices of their first fields
    std::array<float, objectFieldCount> values;
    for (std::size_t i = 0; i < objectFieldCount; ++i) {
        const std::string_view text = fields[i];
        const auto value = parseFloat(trimmed(text));
        if (text.size() > longestObjectField || !value) return i;
        if (i >= rotation && i < scaling && !isConvertibleDegrees(*value)) return i;
        values[i] = *value;
    }
    object.translation = {values[0], values[1], values[2]};
    for (std::size_t axis = 0; axis < 3; ++axis)
        object.rotation[axis] = degreesToAngle(values[rotation + axis]);
    object.scaling = {values[scaling], values[scaling + 1], values[scaling + 2]};
    return std::nullopt;
}

Word objectFieldGroup(std::size_t field)
{
    return objectGroups[field / 3];
}

} // namespace facetor
