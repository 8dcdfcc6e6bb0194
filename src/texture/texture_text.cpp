#include "texture/texture_text.h"

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
    std::string tip;
    for (const char letter : item) {
        if (letter == '\t')
            tip += '(';
        else if (letter != '&' && letter != '.')
            tip += letter;
    }
    return tip.find('(') == std::string::npos ? tip : tip + ')';
}

} // namespace facetor
