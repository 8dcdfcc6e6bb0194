#include "exchange/keep_attributes.h"

#include "base/text.h"
#include "exchange/model_import.h"
#include "exchange/model_points.h"
#include "exchange/obj_writer.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <string>
#include <unordered_map>

namespace facetor {

namespace {

/// A model with its points as they are drawn.
struct Drawn {
    const Model& model;
    std::vector<Matrix> placements = placementsOf(model);

    Real3 point(std::uint32_t object, std::uint16_t corner) const
    {
        const Mesh& mesh = model.meshes[model.objects[object].mesh];
        return drawnAt(model.vertices[mesh.vertexTable + corner], placements[object]);
    }
    const Polygon& polygon(std::uint32_t object, std::uint32_t index) const
    {
        return model.polygons[meshOf(object).polygonTable + index];
    }
    const Mesh& meshOf(std::uint32_t object) const
    {
        return model.meshes[model.objects[object].mesh];
    }
};

double distance(const Real3& a, const Real3& b)
{
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

/// The model's largest extent as drawn.
double sizeOf(const Drawn& drawn)
{
    Real3 least{1e300, 1e300, 1e300}, most{-1e300, -1e300, -1e300};
    for (std::uint32_t i = 0; i < drawn.model.objectCount; ++i)
        for (std::uint32_t v = 0; v < drawn.meshOf(i).vertexCount; ++v) {
            const Real3 at = drawn.point(i, static_cast<std::uint16_t>(v));
            for (std::size_t k = 0; k < 3; ++k) {
                least[k] = std::min(least[k], at[k]);
                most[k] = std::max(most[k], at[k]);
            }
        }
    return std::max({0.0, most[0] - least[0], most[1] - least[1], most[2] - least[2]});
}

/// A polygon's different corners, and where they are.
struct Outline {
    std::vector<std::uint16_t> corners;
    std::vector<Real3> points;
    Real3 centre{};
};

/// A polygon the other way round, each corner with what it shows.
Polygon turnedRound(Polygon polygon)
{
    std::swap(polygon.corner[0], polygon.corner[1]);
    std::swap(polygon.corner[2], polygon.corner[3]);
    return polygon;
}

Outline outlineOf(const Drawn& drawn, std::uint32_t object, std::uint32_t index, bool isTurned)
{
    Outline outline;
    const Polygon& polygon = drawn.polygon(object, index);
    outline.corners = differentCorners(isTurned ? turnedRound(polygon) : polygon);
    for (const std::uint16_t corner : outline.corners) {
        outline.points.push_back(drawn.point(object, corner));
        for (std::size_t k = 0; k < 3; ++k)
            outline.centre[k] +=
                outline.points.back()[k] / static_cast<double>(outline.corners.size());
    }
    return outline;
}

/// How many corners further the second outline has to begin to lie best on the first, and how far
/// its furthest corner is then. Needs outlines of as many corners.
std::pair<std::size_t, double> bestTurn(const Outline& a, const Outline& b)
{
    std::pair<std::size_t, double> best{0, 1e300};
    for (std::size_t turn = 0; turn < b.points.size(); ++turn) {
        double furthest = 0;
        for (std::size_t i = 0; i < a.points.size(); ++i)
            furthest =
                std::max(furthest, distance(a.points[i], b.points[(i + turn) % b.points.size()]));
        if (furthest < best.second) best = {turn, furthest};
    }
    return best;
}

/// Which old polygon each imported one of an object is, or noIndex. Those imported count the other
/// way round when they are turned.
class ObjectMatch {
public:
    ObjectMatch(const Drawn& old, std::uint32_t oldObject, const Drawn& imported,
                std::uint32_t object, bool isTurned, double tolerance)
        : tolerance_(tolerance)
    {
        for (std::uint32_t p = 0; p < old.meshOf(oldObject).polygonCount; ++p)
            olds_.push_back(outlineOf(old, oldObject, p, false));
        for (std::uint32_t p = 0; p < imported.meshOf(object).polygonCount; ++p)
            fresh_.push_back(outlineOf(imported, object, p, isTurned));
        oldOf.assign(fresh_.size(), noIndex);
        isTaken_.resize(olds_.size());
        matchByPlace();
        matchByOrder();
    }

    /// Corners of an imported polygon in the order of its old one's.
    std::array<std::uint16_t, 4> cornersLike(const Polygon& old, std::uint32_t index) const
    {
        const Outline &was = olds_[oldOf[index]], &is = fresh_[index];
        const std::size_t turn = bestTurn(was, is).first;
        std::array<std::uint16_t, 4> corners;
        for (std::size_t i = 0; i < 4; ++i) {
            const auto at = std::find(was.corners.begin(), was.corners.end(), old.corner[i]);
            const auto k = static_cast<std::size_t>(at - was.corners.begin());
            corners[i] = is.corners[(k + turn) % is.corners.size()];
        }
        return corners;
    }

    std::vector<std::uint32_t> oldOf;

private:
    void take(std::uint32_t index, std::uint32_t old)
    {
        oldOf[index] = old;
        isTaken_[old] = true;
    }

    void matchByPlace()
    {
        // Centres by slabs along x, a few tolerances thick each.
        const double slab = std::max(tolerance_ * 4, 1e-30);
        std::multimap<double, std::uint32_t> byX;
        for (std::uint32_t p = 0; p < olds_.size(); ++p) byX.emplace(olds_[p].centre[0], p);
        for (std::uint32_t i = 0; i < fresh_.size(); ++i) {
            const double x = fresh_[i].centre[0];
            for (auto at = byX.lower_bound(x - slab); at != byX.end() && at->first <= x + slab;
                 ++at) {
                const std::uint32_t p = at->second;
                if (isTaken_[p] || olds_[p].corners.size() != fresh_[i].corners.size() ||
                    distance(olds_[p].centre, fresh_[i].centre) > slab ||
                    bestTurn(olds_[p], fresh_[i]).second > tolerance_)
                    continue;
                take(i, p);
                break;
            }
        }
    }

    void matchByOrder()
    {
        std::vector<std::uint32_t> left;
        for (std::uint32_t p = 0; p < olds_.size(); ++p)
            if (!isTaken_[p]) left.push_back(p);
        if (left.size() !=
            static_cast<std::size_t>(std::count(oldOf.begin(), oldOf.end(), noIndex)))
            return;
        std::size_t next = 0;
        for (std::uint32_t i = 0; i < fresh_.size(); ++i) {
            if (oldOf[i] != noIndex) continue;
            const std::uint32_t p = left[next++];
            if (olds_[p].corners.size() == fresh_[i].corners.size()) take(i, p);
        }
    }

    double tolerance_;
    std::vector<Outline> olds_, fresh_;
    std::vector<bool> isTaken_;
};

/// Where an object of the result comes from; noIndex for neither.
struct Source {
    std::uint32_t old, imported;
};

class Keeping {
public:
    Keeping(Model& result, const Model& old, const Model& imported, KeptPolygons& polygons)
        : result_(result), old_{old}, imported_{imported}, polygons_(polygons),
          tolerance_(1e-4 * std::max(sizeOf(old_), sizeOf(imported_)))
    {
    }

    Message run(Reason& reason)
    {
        std::map<std::string, std::uint32_t> byName;
        for (std::uint32_t i = 0; i < imported_.model.objectCount; ++i)
            byName.emplace(imported_.model.names[i], i);
        std::vector<bool> isUsed(imported_.model.objectCount);
        if (old_.model.objectCount > 0) addOld(0, noIndex, byName, isUsed);
        for (std::uint32_t i = 0; i < imported_.model.objectCount; ++i)
            if (!isUsed[i]) addImported(i);
        if (sources_.size() > objectCapacity) {
            reason.text = std::to_string(sources_.size()) + " objects where " +
                          std::to_string(objectCapacity) + " fit";
            return Message::formatNotSupported;
        }
        fill();
        return Message::none;
    }

private:
    /// The imported object of an old one's name, as it is or as another program's file gives it
    /// back, that is nobody else's yet; or noIndex.
    std::uint32_t importedOf(std::uint32_t old, const std::map<std::string, std::uint32_t>& byName,
                             const std::vector<bool>& isUsed) const
    {
        const std::string& own = old_.model.names[old];
        const std::string& written = objNames_[old].empty() ? own : objNames_[old];
        for (const std::string_view name :
             {std::string_view(own), cutText(own, longestImportedName),
              cutText(written, longestImportedName)}) {
            const auto found = byName.find(std::string(name));
            if (found != byName.end() && !isUsed[found->second]) return found->second;
        }
        return noIndex;
    }

    /// Adds an old object and its siblings with all below them; true when one of them stays.
    bool addOld(std::uint32_t first, std::uint32_t parent,
                const std::map<std::string, std::uint32_t>& byName, std::vector<bool>& isUsed)
    {
        bool stays = false;
        for (std::uint32_t i = first; i != noObject; i = old_.model.objects[i].next) {
            const std::uint32_t imported = importedOf(i, byName, isUsed);
            if (imported != noIndex) isUsed[imported] = true;
            const auto index = static_cast<std::uint32_t>(sources_.size());
            sources_.push_back({i, imported});
            parents_.push_back(parent);
            const std::uint32_t child = old_.model.objects[i].child;
            const bool below = child != noObject && addOld(child, index, byName, isUsed);
            if (imported == noIndex && !below && old_.meshOf(i).polygonCount > 0) {
                sources_.pop_back(); // the last one: nothing below it stayed
                parents_.pop_back();
                polygons_.gone += old_.meshOf(i).polygonCount;
                continue;
            }
            if (imported == noIndex) polygons_.gone += old_.meshOf(i).polygonCount;
            stays = true;
        }
        return stays;
    }

    /// A new object goes to the top: behind its siblings, where it is drawn as it was imported.
    void addImported(std::uint32_t index)
    {
        sources_.push_back({noIndex, index});
        parents_.push_back(noIndex);
    }

    void fill()
    {
        std::uint32_t vertexCount = 0, polygonCount = 0;
        for (std::uint32_t i = 0; i < sources_.size(); ++i) {
            const Source& source = sources_[i];
            Object& object = result_.objects[i];
            object = {i,         noObject,       noObject,    {0, 0, 0}, {0, 0, 0},
                      {1, 1, 1}, identityMatrix, objectShown, 0};
            if (source.old != noIndex) {
                object = old_.model.objects[source.old];
                object.mesh = i;
                object.child = object.next = noObject;
            }
            result_.names[i] = source.old != noIndex ? old_.model.names[source.old]
                                                     : imported_.model.names[source.imported];
            Mesh& mesh = result_.meshes[i];
            mesh = {vertexCount, 0, polygonCount, 0, polygonCount, vertexCount};
            if (source.imported == noIndex) continue;
            mesh.vertexCount = imported_.meshOf(source.imported).vertexCount;
            mesh.polygonCount = imported_.meshOf(source.imported).polygonCount;
            fillVertices(mesh, source);
            fillPolygons(mesh, source);
            vertexCount += mesh.vertexCount;
            polygonCount += mesh.polygonCount;
        }
        result_.objectCount = static_cast<std::uint32_t>(sources_.size());
        result_.totalVertexCount = vertexCount;
        result_.totalPolygonCount = polygonCount;
        for (std::uint32_t i = result_.objectCount; i < objectCapacity; ++i)
            result_.names[i].clear();
        linkObjects(result_, parents_);
    }

    /// Out of the imported object's space into the old one's.
    void fillVertices(const Mesh& mesh, const Source& source)
    {
        const Mesh& from = imported_.meshOf(source.imported);
        const Matrix& placed = imported_.placements[source.imported];
        const Matrix& place = source.old == noIndex ? identityMatrix : old_.placements[source.old];
        const std::array<Real3, 3> inverse = invertedAxes(place);
        const std::array<Real3, 3> unplaced = invertedAxes(placed);
        const bool isSame = place.element == placed.element;
        for (std::uint32_t v = 0; v < mesh.vertexCount; ++v) {
            Vertex& vertex = result_.vertices[mesh.vertexTable + v];
            VertexNormal& normal = result_.vertexNormals[mesh.vertexNormalTable + v];
            vertex = imported_.model.vertices[from.vertexTable + v];
            normal = imported_.model.vertexNormals[from.vertexNormalTable + v];
            if (isSame) continue; // to the last bit
            Real3 at = drawnAt(vertex, placed);
            for (std::size_t k = 0; k < 3; ++k) at[k] -= double{place.row(3)[k]};
            const Real3 given{double{normal.x}, double{normal.y}, double{normal.z}};
            Real3 drawn{}, local{}, turned{};
            for (std::size_t i = 0; i < 3; ++i)
                for (std::size_t k = 0; k < 3; ++k) {
                    local[k] += at[i] * inverse[i][k];
                    drawn[k] += given[i] * unplaced[k][i];
                }
            for (std::size_t i = 0; i < 3; ++i)
                for (std::size_t k = 0; k < 3; ++k) turned[k] += drawn[i] * double{place.row(k)[i]};
            const auto single = [](const Real3& r) {
                return Vector3{static_cast<float>(r[0]), static_cast<float>(r[1]),
                               static_cast<float>(r[2])};
            };
            vertex = single(local);
            normal = normalised(single(turned));
        }
    }

    void fillPolygons(const Mesh& mesh, const Source& source)
    {
        const Mesh& from = imported_.meshOf(source.imported);
        std::optional<ObjectMatch> match;
        const Matrix& place = source.old == noIndex ? identityMatrix : old_.placements[source.old];
        // Where one of the two spaces mirrors the other, corners run the other way in it.
        const bool isTurned =
            isMirroring(place) != isMirroring(imported_.placements[source.imported]);
        if (source.old != noIndex)
            match.emplace(old_, source.old, imported_, source.imported, isTurned, tolerance_);
        std::uint32_t kept = 0;
        for (std::uint32_t p = 0; p < mesh.polygonCount; ++p) {
            const std::uint32_t to = mesh.polygonTable + p;
            Polygon& polygon = result_.polygons[to];
            polygon = imported_.model.polygons[from.polygonTable + p];
            const std::uint32_t old = match ? match->oldOf[p] : noIndex;
            if (old == noIndex) {
                result_.attributes[to] = imported_.model.attributes[from.attributeTable + p];
                result_.gouraud[to] =
                    imported_.model
                        .gouraud[imported_.model.attributes[from.attributeTable + p].gouraud];
                if (isTurned) turnFresh(to);
                polygons_.fresh.push_back({to, from.polygonTable + p});
            } else {
                const Mesh& was = old_.meshOf(source.old);
                const PolygonAttribute& attribute = old_.model.attributes[was.attributeTable + old];
                result_.attributes[to] = attribute;
                result_.gouraud[to] = old_.model.gouraud[attribute.gouraud];
                const auto corners = match->cornersLike(old_.polygon(source.old, old), p);
                if (!isTurned && corners == polygon.corner)
                    polygons_.same.push_back({to, from.polygonTable + p});
                polygon.corner = corners;
                ++kept;
            }
            result_.attributes[to].gouraud = to;
            polygon.normal = computeFaceNormal(polygon, result_.vertices.data() + mesh.vertexTable);
        }
        polygons_.kept += kept;
        if (source.old != noIndex) polygons_.gone += old_.meshOf(source.old).polygonCount - kept;
    }

    /// With its picture and colours staying where they are drawn.
    void turnFresh(std::uint32_t index)
    {
        result_.polygons[index] = turnedRound(result_.polygons[index]);
        PolygonAttribute& attribute = result_.attributes[index];
        if ((attribute.flags & textureMap) != 0) attribute.flags ^= flipHorizontal;
        auto& colour = result_.gouraud[index].color;
        std::swap(colour[0], colour[1]);
        std::swap(colour[2], colour[3]);
    }

    Model& result_;
    const Drawn old_, imported_;
    const std::vector<std::string> objNames_ = objNames(old_.model); ///< of the old objects
    KeptPolygons& polygons_;
    double tolerance_;
    std::vector<Source> sources_;
    std::vector<std::uint32_t> parents_; ///< parallel to it
};

} // namespace

Message keepAttributes(Model& result, const Model& old, const Model& imported,
                       KeptPolygons& polygons, Reason& reason)
{
    polygons = {};
    return Keeping(result, old, imported, polygons).run(reason);
}

} // namespace facetor
