#include "exchange/obj_reader.h"

#include "base/text.h"
#include "model/model.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <unordered_map>

namespace facetor {

namespace {

/// So many triangles are twice as many polygons as could fit, were they all rejoined, and then some
/// are left for those without area.
constexpr std::size_t mostFaces = 16 * polygonCapacity;
constexpr std::uint32_t linesPerReport = 1024; ///< of progress

constexpr bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f';
}

std::string_view stripped(std::string_view text)
{
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return text;
}

/// The next word of a line, which is cut off it; empty at its end.
std::string_view nextWord(std::string_view& line)
{
    while (!line.empty() && isBlank(line.front())) line.remove_prefix(1);
    std::size_t size = 0;
    while (size < line.size() && !isBlank(line[size])) ++size;
    const std::string_view word = line.substr(0, size);
    line.remove_prefix(size);
    return word;
}

enum class Parsed { number, notFinite, noNumber };

/// A number, which may have a "+" in front.
Parsed parse(std::string_view word, double& value)
{
    if (word.starts_with('+') && !word.starts_with("+-")) word.remove_prefix(1);
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error == std::errc::result_out_of_range && end == word.data() + word.size()) {
        // Too small for a double is 0, too large is not finite.
        const std::size_t exponent = word.find_first_of("eE");
        if (exponent == std::string_view::npos || word[exponent + 1] != '-')
            return Parsed::notFinite;
        value = 0;
        return Parsed::number;
    }
    if (error != std::errc() || end != word.data() + word.size()) return Parsed::noNumber;
    return std::isfinite(value) ? Parsed::number : Parsed::notFinite;
}

bool parseNumber(std::string_view word, double& value)
{
    return parse(word, value) == Parsed::number;
}

std::string noFiniteNumber(std::string_view word)
{
    return '"' + std::string(cutText(word, 40)) + "\" is no finite number";
}

/// The lines of a text, those that end in a backslash joined with the next.
class Lines {
public:
    explicit Lines(std::string_view text) : rest_(withoutMark(text)) {}

    bool next(std::string_view& line)
    {
        if (rest_.empty()) return false;
        number_ = nextNumber_;
        line = take();
        if (line.ends_with('\\')) {
            joined_.clear();
            while (line.ends_with('\\')) {
                joined_.append(line.substr(0, line.size() - 1)).append(1, ' ');
                line = rest_.empty() ? std::string_view() : take();
            }
            line = joined_.append(line);
        }
        if (const std::size_t comment = line.find('#'); comment != std::string_view::npos)
            if (comment == 0 || isBlank(line[comment - 1])) line = line.substr(0, comment);
        return true;
    }

    /// Of the line that next() gave, the first being 1.
    std::uint32_t number() const { return number_; }
    /// Bytes behind it.
    std::size_t left() const { return rest_.size(); }

private:
    std::string_view take()
    {
        const std::size_t end = std::min(rest_.find('\n'), rest_.size());
        std::string_view line = rest_.substr(0, end);
        rest_.remove_prefix(std::min(end + 1, rest_.size()));
        if (line.ends_with('\r')) line.remove_suffix(1);
        ++nextNumber_;
        return line;
    }

    std::string_view rest_;
    std::string joined_;
    std::uint32_t number_ = 0, nextNumber_ = 1;
};

class ObjReader {
public:
    ObjReader(Scene& scene, const std::string& title, const AssetReader& assets, Reason& reason,
              const ImportProgress& progress)
        : scene_(scene), title_(title), assets_(assets), reason_(reason), progress_(progress)
    {
    }

    Message read(std::string_view text)
    {
        Lines lines(text);
        std::string_view line;
        while (lines.next(line)) {
            line_ = lines.number();
            if (line_ % linesPerReport == 0 &&
                !goesOn(progress_, 1 - double(lines.left()) / double(text.size()), reason_))
                return Message::formatNotSupported;
            const std::string_view keyword = nextWord(line);
            if (faceCount_ <= mostFaces) {
                if (!readLine(keyword, line)) return Message::formatNotSupported;
            } else if (keyword == "f" || keyword == "fo") {
                ++faceCount_; // what is far too large is read to its end only to say how large
            }
        }
        if (faceCount_ > mostFaces) {
            reason_.text = tooManyFaces(faceCount_);
            return Message::formatNotSupported;
        }
        if (scene_.faces.empty()) {
            reason_.text = "it has no face";
            return Message::formatNotSupported;
        }
        return checkIndices() ? finish() : Message::formatNotSupported;
    }

private:
    bool fail(std::uint32_t line, const std::string& what)
    {
        reason_.text = "line " + std::to_string(line) + ": " + what;
        return false;
    }

    bool readLine(std::string_view keyword, std::string_view line)
    {
        if (keyword.empty()) return true;
        if (keyword == "v") return readPosition(line);
        if (keyword == "vt") return readUv(line);
        if (keyword == "vn") return readTriple(line, scene_.normals);
        if (keyword == "f" || keyword == "fo") return readFace(line);
        if (keyword == "o") {
            hasObjects_ = true;
            objectName_ = nameId(stripped(line));
        } else if (keyword == "g") {
            groupName_ = nameId(stripped(line));
        } else if (keyword == "s") {
            const std::string_view group = stripped(line);
            smooth_ = group != "0" && group != "off" && !group.empty();
        } else if (keyword == "usemtl") {
            useMaterial(std::string(stripped(line)));
        } else if (keyword == "mtllib") {
            return readLibraries(line);
        }
        return true;
    }

    bool readTriple(std::string_view& line, std::vector<Real3>& into)
    {
        Real3 values{};
        for (double& value : values)
            if (!readNumber(line, value)) return false;
        into.push_back(values);
        return true;
    }

    bool readNumber(std::string_view& line, double& value)
    {
        const std::string_view word = nextWord(line);
        if (word.empty()) return fail(line_, "a number is missing");
        return parseNumber(word, value) || fail(line_, noFiniteNumber(word));
    }

    /// Three coordinates, perhaps a weight, perhaps a colour.
    bool readPosition(std::string_view line)
    {
        if (!readTriple(line, scene_.positions)) return false;
        std::vector<double>& more = numbers_;
        more.clear();
        for (std::string_view rest = line; more.size() < 4;) {
            rest = stripped(rest);
            if (rest.empty()) break;
            if (!readNumber(rest, more.emplace_back())) return false;
        }
        for (const double component : scene_.positions.back())
            if (std::abs(component) > 3e38) return fail(line_, "a number is too large");
        const std::size_t colourAt = more.size() == 4 ? 1 : 0; // behind a weight
        if (more.size() >= 3) {
            colourOf_.resize(scene_.positions.size() - 1, noIndex);
            colourOf_.push_back(static_cast<std::uint32_t>(scene_.colours.size()));
            Real3 colour;
            for (std::size_t i = 0; i < 3; ++i)
                colour[i] = std::clamp(more[colourAt + i], 0.0, 1.0);
            scene_.colours.push_back(colour);
        }
        return true;
    }

    bool readUv(std::string_view line)
    {
        Real2 uv{};
        if (!readNumber(line, uv[0])) return false;
        double depth = 0; // of textures with three dimensions
        for (double* const more : {&uv[1], &depth})
            if (!stripped(line).empty() && !readNumber(line, *more)) return false;
        uv[1] = 1 - uv[1]; // from below
        scene_.uvs.push_back(uv);
        return true;
    }

    /// One index of a corner, counted from 1, or from the last one backwards with a minus.
    bool readIndex(std::string_view& word, std::size_t count, std::uint32_t& index)
    {
        long long value = 0;
        const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
        if (error != std::errc()) return fail(line_, "an index of a corner is no whole number");
        word.remove_prefix(static_cast<std::size_t>(end - word.data()));
        if (value < 0) value += static_cast<long long>(count) + 1;
        if (value < 1 || value > noIndex - 1LL) return fail(line_, "an index is out of range");
        index = static_cast<std::uint32_t>(value - 1);
        return true;
    }

    bool readFace(std::string_view line)
    {
        SceneFace face{
            static_cast<std::uint32_t>(scene_.corners.size()), 0, 0, material_, line_, smooth_};
        for (std::string_view word = nextWord(line); !word.empty(); word = nextWord(line)) {
            SceneCorner corner;
            if (!readIndex(word, scene_.positions.size(), corner.position)) return false;
            if (word.starts_with('/')) {
                word.remove_prefix(1);
                if (!word.empty() && word.front() != '/' &&
                    !readIndex(word, scene_.uvs.size(), corner.uv))
                    return false;
                if (word.starts_with('/')) {
                    word.remove_prefix(1);
                    if (!word.empty() && !readIndex(word, scene_.normals.size(), corner.normal))
                        return false;
                }
            }
            if (!word.empty()) return fail(line_, "a corner has the form v/vt/vn");
            scene_.corners.push_back(corner);
            ++face.cornerCount;
        }
        if (face.cornerCount >= 3) ++faceCount_;
        scene_.faces.push_back(face);
        namesOfFaces_.push_back({objectName_, groupName_});
        return true;
    }

    /// An index may be of something that comes later, so they are held against the counts here.
    bool checkIndices()
    {
        const auto isIn = [](std::uint32_t index, std::size_t count) {
            return index == noIndex || index < count;
        };
        colourOf_.resize(scene_.colours.empty() ? 0 : scene_.positions.size(), noIndex);
        for (const SceneFace& face : scene_.faces)
            for (std::uint32_t i = 0; i < face.cornerCount; ++i) {
                SceneCorner& corner = scene_.corners[face.firstCorner + i];
                if (!isIn(corner.position, scene_.positions.size()) ||
                    !isIn(corner.uv, scene_.uvs.size()) ||
                    !isIn(corner.normal, scene_.normals.size()))
                    return fail(face.line, "an index is out of range");
                if (!colourOf_.empty()) corner.colour = colourOf_[corner.position];
            }
        return true;
    }

    /// Gives the faces their objects, now that it is known whether `o` names them or `g`.
    Message finish()
    {
        for (std::size_t i = 0; i < firstUse_.size(); ++i)
            if (firstUse_[i] != 0 && !isDefined_[i])
                scene_.notes.push_back(
                    {firstUse_[i], "there is no material \"" + scene_.materials[i].name + "\""});
        const auto titled = nameIds_.find(title_);
        const std::uint32_t titleId =
            titled == nameIds_.end() ? static_cast<std::uint32_t>(names_.size()) : titled->second;
        std::vector<std::uint32_t> objectOf(names_.size() + 1, noIndex);
        for (std::size_t i = 0; i < scene_.faces.size(); ++i) {
            const std::uint32_t name =
                hasObjects_ ? namesOfFaces_[i].object : namesOfFaces_[i].group;
            std::uint32_t& object = objectOf[name == noIndex ? titleId : name];
            if (object == noIndex) {
                object = static_cast<std::uint32_t>(scene_.objects.size());
                scene_.objects.emplace_back().name =
                    name == noIndex ? title_ : std::string(names_[name]);
            }
            scene_.faces[i].object = object;
        }
        return Message::none;
    }

    std::uint32_t nameId(std::string_view name)
    {
        name = name.substr(0, name.find('\0'));
        if (name.empty()) return noIndex;
        const auto [known, isNew] =
            nameIds_.try_emplace(std::string(name), static_cast<std::uint32_t>(names_.size()));
        if (isNew) names_.push_back(known->first);
        return known->second;
    }

    void useMaterial(const std::string& name)
    {
        if (name.empty()) {
            material_ = noIndex;
            return;
        }
        material_ = materialNamed(name);
        std::uint32_t& line = firstUse_[material_];
        if (line == 0) line = line_;
    }

    /// Also one that is not defined, or not yet: faces that name different ones stay apart.
    std::uint32_t materialNamed(const std::string& name)
    {
        const auto next = static_cast<std::uint32_t>(scene_.materials.size());
        const auto [at, isNew] = materials_.try_emplace(name, next);
        if (isNew) {
            scene_.materials.emplace_back().name = name;
            firstUse_.push_back(0);
            isDefined_.push_back(false);
        }
        return at->second;
    }

    /// One file whose name may have blanks, or several.
    bool readLibraries(std::string_view line)
    {
        std::string reason;
        const std::string whole(stripped(line));
        if (const auto file = assets_(whole, reason)) return readMaterials(*file, whole);
        std::string_view rest = line;
        std::size_t found = 0;
        std::vector<std::pair<std::string, std::string>> missing;
        for (std::string_view word = nextWord(rest); !word.empty(); word = nextWord(rest)) {
            if (word == whole) break;
            if (const auto file = assets_(std::string(word), reason)) {
                if (!readMaterials(*file, std::string(word))) return false;
                ++found;
            } else {
                missing.emplace_back(word, reason);
            }
        }
        if (found == 0) {
            (void)assets_(whole, reason);
            missing.assign(1, {whole, reason});
        }
        for (const auto& [name, why] : missing)
            scene_.notes.push_back({line_, "material file \"" + name + "\": " + why});
        return true;
    }

    bool readMaterials(const Bytes& file, const std::string& name);
    void readMap(SceneMaterial& material, std::string_view line);

    Scene& scene_;
    const std::string& title_;
    const AssetReader& assets_;
    Reason& reason_;
    const ImportProgress& progress_;

    std::uint32_t line_ = 0;
    bool hasObjects_ = false, smooth_ = false;
    std::uint32_t objectName_ = noIndex, groupName_ = noIndex, material_ = noIndex;
    std::unordered_map<std::string, std::uint32_t> nameIds_;
    std::vector<std::string> names_;
    struct Names {
        std::uint32_t object, group;
    };
    std::vector<Names> namesOfFaces_;
    std::size_t faceCount_ = 0;           ///< those of at least three corners
    std::vector<std::uint32_t> colourOf_; ///< of each position
    std::vector<double> numbers_;
    std::map<std::string, std::uint32_t> materials_;
    std::vector<std::uint32_t> firstUse_; ///< line of each material's first usemtl, or 0
    std::vector<bool> isDefined_;         ///< parallel to it: by a newmtl
};

bool ObjReader::readMaterials(const Bytes& file, const std::string& name)
{
    Lines lines({reinterpret_cast<const char*>(file.data()), file.size()});
    std::string_view line;
    SceneMaterial unnamed; // of lines before the first name
    SceneMaterial* material = &unnamed;
    // What is no number belongs to a form that is not read, like that of a spectral curve.
    bool isRefused = false;
    const auto isNumber = [&](std::string_view word, double& value) {
        const Parsed parsed = parse(word, value);
        if (parsed == Parsed::notFinite) {
            isRefused = true;
            reason_.text = "material file \"" + name + "\": line " +
                           std::to_string(lines.number()) + ": " + noFiniteNumber(word);
        }
        return parsed == Parsed::number;
    };
    const auto readColour = [&] {
        Real3 colour;
        if (!isNumber(nextWord(line), colour[0])) return;
        colour[1] = colour[2] = colour[0]; // one number means all three
        if (const std::string_view green = nextWord(line); !green.empty())
            if (!isNumber(green, colour[1]) || !isNumber(nextWord(line), colour[2])) return;
        for (std::size_t i = 0; i < 3; ++i) material->colour[i] = std::clamp(colour[i], 0.0, 1.0);
    };
    while (lines.next(line)) {
        const std::string_view keyword = nextWord(line);
        if (keyword == "newmtl") {
            const std::uint32_t index = materialNamed(std::string(stripped(line)));
            // The first of a name counts.
            material = isDefined_[index] ? &unnamed : &scene_.materials[index];
            isDefined_[index] = true;
            continue;
        }
        if (keyword.starts_with("map_Kd")) {
            readMap(*material, line);
            continue;
        }
        double value = 0;
        if (keyword == "Kd") {
            readColour();
        } else if (keyword == "d" || keyword == "Tr") {
            std::string_view word = nextWord(line);
            if (word == "-halo") word = nextWord(line);
            if (isNumber(word, value)) material->opacity = keyword == "d" ? value : 1 - value;
        } else if (keyword == "illum") {
            if (isNumber(nextWord(line), value)) material->unlit = value == 0;
        }
        if (isRefused) return false;
    }
    return true;
}

/// "map_Kd [options] name": options begin with a minus and have as many values as numbers follow.
void ObjReader::readMap(SceneMaterial& material, std::string_view line)
{
    line = stripped(line);
    while (line.starts_with('-')) {
        std::string_view rest = line;
        const std::string_view option = nextWord(rest);
        double number = 0;
        if (option == "-clamp") {
            const bool clamped = nextWord(rest) == "on";
            material.wrapU = material.wrapV = clamped ? Wrap::clamp : Wrap::repeat;
        } else if (option == "-blendu" || option == "-blendv" || option == "-cc" ||
                   option == "-imfchan" || option == "-type" || option == "-texres") {
            nextWord(rest);
        } else {
            for (int i = 0; i < 3; ++i) {
                std::string_view after = rest;
                if (!parseNumber(nextWord(after), number)) break;
                rest = after;
            }
        }
        line = stripped(rest);
    }
    std::string name(line);
    std::replace(name.begin(), name.end(), '\\', '/');
    if (name.starts_with("./")) name.erase(0, 2);
    if (!name.empty()) material.picture = addPicture(scene_, name, line_, assets_);
}

} // namespace

bool looksLikeObj(std::string_view text)
{
    Lines lines(text);
    std::string_view line;
    while (lines.next(line)) {
        const std::string_view word = nextWord(line);
        if (word.empty()) continue;
        static constexpr std::string_view keywords[] = {"v", "vt", "vn",     "f",     "o",
                                                        "g", "s",  "mtllib", "usemtl"};
        return std::find(std::begin(keywords), std::end(keywords), word) != std::end(keywords);
    }
    return false;
}

Message readObj(Scene& scene, std::string_view text, const std::string& title,
                const AssetReader& assets, Reason& reason, const ImportProgress& progress)
{
    return ObjReader(scene, title, assets, reason, progress).read(text);
}

} // namespace facetor
