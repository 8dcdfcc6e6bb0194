#include "session/texture_text.h"

#include <algorithm>

namespace facetor {

std::string textureInformation(std::uint32_t slot, const TextureSlot& texture,
                               std::string_view width, std::string_view height)
{
    std::string text = "ID\t= " + std::to_string(slot);
    const auto add = [&](std::string_view word, std::uint16_t value) {
        text.append("\n").append(word).append("\t= ").append(std::to_string(value));
    };
    add(width, texture.width);
    add(height, texture.height);
    return text;
}

std::string tipOfMenuItem(std::string_view item)
{
    const std::size_t tab = std::min(item.find('\t'), item.size());
    const std::string_view key = item.substr(tab);
    std::string tip;
    for (std::size_t at = 0; at < tab; ++at) {
        // Where no letter of the text is a key's, the key stands behind it: "(&O)".
        if (item.substr(at).starts_with("(&"))
            at += 3;
        else if (item[at] != '&' && item[at] != '.')
            tip += item[at];
    }
    if (!key.empty()) tip.append("(").append(key.substr(1)).append(")");
    return tip;
}

} // namespace facetor
