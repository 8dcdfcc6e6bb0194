#include "exchange/obj_writer.h"

#include "base/text.h"
#include "base/text_writer.h"
#include "exchange/look.h"
#include "exchange/model_points.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <set>

namespace facetor {

namespace {

constexpr int significantDigits = 9; // a single comes back from them as it was

void appendNumber(TextWriter& out, double value)
{
    out.append(' ');
    if (!std::isfinite(value)) value = 0; // what readers refuse
    constexpr std::size_t most = 32;
    char* const begin = out.room(most);
    const auto [end, error] = std::to_chars(begin, begin + most, value + 0.0,
                                            std::chars_format::general, significantDigits);
    out.advance(error == std::errc() ? static_cast<std::size_t>(end - begin) : 0);
}

void appendInteger(TextWriter& out, std::uint64_t value)
{
    out.append(std::to_string(value));
}

/// A name that stays on its line.
std::string onOneLine(std::string name, std::uint32_t index)
{
    for (char& c : name)
        if (static_cast<unsigned char>(c) < ' ' || c == '#' || c == '\\') c = '_';
    const std::string_view rest = trimmed(name); // blanks around it are not read
    return rest.empty() ? defaultObjectName(index) : std::string(rest);
}

class ObjWriter {
public:
    ObjWriter(const Model& model, const TextureList* textures)
        : model_(model), textures_(textures), names_(objNames(model))
    {
    }

    void writeObject(TextWriter& out, std::uint32_t index, const Matrix& placement)
    {
        const Mesh& mesh = model_.meshes[model_.objects[index].mesh];
        if (mesh.polygonCount == 0) return;
        out.append("o " + names_[index] + "\n");
        for (std::uint32_t v = 0; v < mesh.vertexCount; ++v) {
            const Real3 at = drawnAt(model_.vertices[mesh.vertexTable + v], placement);
            out.append('v');
            appendNumber(out, at[0]);
            appendNumber(out, -at[1]);
            appendNumber(out, -at[2]);
            out.append('\n');
        }
        bool smooth = false;
        const bool isMirrored = isMirroring(placement);
        out.append("s off\n");
        for (std::uint32_t p = 0; p < mesh.polygonCount; ++p) {
            const PolygonAttribute& attribute = model_.attributes[mesh.attributeTable + p];
            if (differentCorners(model_.polygons[mesh.polygonTable + p]).size() < 3) continue;
            if (isLightGouraud(attribute) != smooth) {
                smooth = !smooth;
                out.append(smooth ? "s 1\n" : "s off\n");
            }
            const Look look = lookOf(attribute, shownSlot(attribute, textures_));
            const auto [at, isNew] = looks_.try_emplace(look, looks_.size());
            if (look_ != at->second) out.append("usemtl " + look.name() + "\n");
            look_ = at->second;
            writeFace(out, model_.polygons[mesh.polygonTable + p], attribute, look, isMirrored);
        }
        firstVertex_ += mesh.vertexCount;
    }

    std::string materials(const std::string& folder) const
    {
        TextWriter out;
        for (const auto& [look, number] : looks_) {
            out.append("newmtl " + look.name() + "\nKd");
            for (const int component :
                 {redOf(look.colour), greenOf(look.colour), blueOf(look.colour)})
                // It multiplies the picture.
                appendNumber(out, look.slot ? 1 : stretched(component) / 255.0);
            out.append(look.isTranslucent ? "\nd 0.5" : "\nd 1");
            out.append(look.isLit ? "\nillum 1\n" : "\nillum 0\n");
            if (look.slot) out.append("map_Kd " + folder + slotNumber(*look.slot) + ".png\n");
        }
        return std::string(out.view());
    }

    std::vector<std::uint16_t> slots() const
    {
        std::vector<std::uint16_t> slots;
        for (const auto& [look, number] : looks_)
            if (look.slot && (slots.empty() || slots.back() != *look.slot))
                slots.push_back(*look.slot);
        return slots; // in ascending order, as the looks are
    }

private:
    /// The first corner stays the first, the others follow backwards. Of a mirrored object they run
    /// backwards already, as it is drawn.
    void writeFace(TextWriter& out, const Polygon& polygon, const PolygonAttribute& attribute,
                   const Look& look, bool isMirrored)
    {
        std::vector<std::uint16_t> corners = differentCorners(polygon);
        if (!isMirrored) std::reverse(corners.begin() + 1, corners.end());
        if (look.slot)
            for (const std::uint16_t corner : corners) {
                const auto at = std::find(polygon.corner.begin(), polygon.corner.end(), corner);
                const PictureCorner place =
                    pictureCorner(attribute, static_cast<std::size_t>(at - polygon.corner.begin()));
                out.append(place.isRight ? "vt 1 " : "vt 0 ");
                out.append(place.isLow ? "0\n" : "1\n");
                ++uvCount_;
            }
        out.append('f');
        for (std::size_t i = 0; i < corners.size(); ++i) {
            out.append(' ');
            appendInteger(out, firstVertex_ + corners[i]);
            if (!look.slot) continue;
            out.append('/');
            appendInteger(out, uvCount_ - corners.size() + i + 1);
        }
        out.append('\n');
    }

    const Model& model_;
    const TextureList* textures_;
    std::map<Look, std::size_t> looks_;
    std::vector<std::string> names_; ///< of the objects
    std::size_t look_ = static_cast<std::size_t>(-1);
    std::uint64_t firstVertex_ = 1, uvCount_ = 0;
};

} // namespace

std::vector<std::string> objNames(const Model& model)
{
    std::vector<std::string> names(model.objectCount);
    std::set<std::string> taken; // a name that came again would continue its object
    for (std::uint32_t i = 0; i < model.objectCount; ++i) {
        if (model.meshes[model.objects[i].mesh].polygonCount == 0) continue;
        const std::string stem = names[i] = onOneLine(model.names[i], i);
        for (int number = 2; !taken.insert(names[i]).second; ++number)
            names[i] = stem + '.' + std::to_string(number);
    }
    return names;
}

Message writeObj(std::vector<ExportedFile>& files, const Model& model, const TextureList* textures,
                 const std::string& title)
{
    const std::vector<Matrix> placements = placementsOf(model);
    if (placements.size() != model.objectCount) return Message::outOfMemory;
    ObjWriter writer(model, textures);
    TextWriter text;
    text.append("# Facetor\nmtllib " + title + ".mtl\n");
    for (std::uint32_t i = 0; i < model.objectCount; ++i)
        writer.writeObject(text, i, placements[i]);
    files.push_back({title + ".obj", bytesOf(text.view())});
    files.push_back({title + ".mtl", bytesOf(writer.materials(title + ".textures/"))});
    for (const std::uint16_t slot : writer.slots()) {
        files.push_back(
            {title + ".textures/" + slotNumber(slot) + ".png", encodeTexture(*textures, slot)});
        if (files.back().bytes.empty()) return Message::outOfMemory;
    }
    return Message::none;
}

} // namespace facetor
