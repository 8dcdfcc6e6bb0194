#include "output/model_source.h"

#include "base/file.h"
#include "base/text.h"
#include "output/attribute_text.h"
#include "output/gouraud_count.h"
#include "output/source_text.h"
#include "output/target_layout.h"

#include <algorithm>
#include <span>
#include <vector>

namespace facetor {

namespace {

/// From so many polygons on, vertex indices take three columns. It is the polygons that count, not
/// the vertices.
constexpr std::uint32_t wideIndicesAbove = 100;

/// Room for a polygon's share of the text, in bytes, so that the text seldom moves while it grows.
constexpr std::size_t textPerPolygon = 400;

void appendPoints(TextWriter& text, const Vector3* points, std::uint32_t count)
{
    for (const Vector3& point : std::span(points, count)) {
        text.append("\tPOStoFIXED(");
        appendFixed(text, point.x, point.y, point.z);
        text.append("),\r\n");
    }
}

/// The names that the source is made with.
struct Names {
    std::vector<std::string> objects; ///< as parts of identifiers, one an object
    std::vector<std::string> comments;
    std::string base; ///< the file's, as part of identifiers
};

Names namesOf(const Model& model, std::string_view title, SourceNames names)
{
    const auto given = std::span(model.names).first(model.objectCount);
    Names made{toIdentifiers(given, names), {}, toIdentifier(cutExtension(title), names)};
    for (const std::string& name : given) made.comments.push_back(toComment(name, names));
    return made;
}

void appendHeader(TextWriter& text, const Model& model, std::string_view title,
                  const GouraudCounts& gouraud)
{
    appendHeaderStart(text, title);
    appendCountLine(text, "OBJECTS  = ", model.objectCount);
    appendCountLine(text, "VERTICES = ", model.totalVertexCount);
    appendCountLine(text, "POLYGONS = ", model.totalPolygonCount);
    if (gouraud.light > 0) appendCountLine(text, "GOUR_REAL= ", gouraud.light);
    if (gouraud.table > 0) appendCountLine(text, "GOUR_TBL = ", gouraud.table);
    appendHeaderEnd(text);
}

void appendGouraudDefine(TextWriter& text, std::string_view name, std::uint32_t firstTable)
{
    text.append("#define\t");
    text.append(name);
    text.append("(n)\t(");
    appendHex16(text, static_cast<std::uint16_t>(firstTable));
    text.append("+(n))\r\n");
}

/// The tables of all polygons for which `belongs` holds, in the order in which their attributes
/// number them.
void appendGouraudTable(TextWriter& text, const Model& model, std::string_view prefix,
                        std::string_view base, bool (*belongs)(const PolygonAttribute&))
{
    appendTableStart(text, "GOURAUDTBL", prefix, base);
    for (std::uint32_t k = 0; k < model.objectCount; ++k) {
        const Mesh& mesh = model.meshes[k];
        for (std::uint32_t p = 0; p < mesh.polygonCount; ++p) {
            const PolygonAttribute& attribute = model.attributes[mesh.attributeTable + p];
            if (!belongs(attribute)) continue;
            char separator = '{';
            text.append('\t');
            for (const Rgb555 colour : model.gouraud[attribute.gouraud].color) {
                text.append(separator);
                appendColour(text, colour);
                separator = ',';
            }
            text.append("},\r\n");
        }
    }
    appendTableEnd(text);
}

void appendGouraudSection(TextWriter& text, const Model& model, const std::string& base,
                          const GouraudCounts& gouraud)
{
    if (gouraud.light > 0) appendGouraudDefine(text, "GRreal", firstGouraudTable);
    if (gouraud.table > 0) appendGouraudDefine(text, "GRtbl", firstGouraudTable + gouraud.light);
    if (gouraud.light > 0) appendGouraudTable(text, model, "grreal", base, isLightGouraud);
    if (gouraud.table > 0) appendGouraudTable(text, model, "grtbl", base, isTableGouraud);
}

void appendPolygons(TextWriter& text, const Model& model, const Mesh& mesh)
{
    const std::size_t columns = mesh.polygonCount > wideIndicesAbove ? 3 : 2;
    for (std::uint32_t p = 0; p < mesh.polygonCount; ++p) {
        const Polygon& polygon = model.polygons[mesh.polygonTable + p];
        text.append("\tNORMAL(");
        appendFixed(text, polygon.normal.x, polygon.normal.y, polygon.normal.z);
        text.append("), VERTICES");
        char separator = '(';
        for (const std::uint16_t corner : polygon.corner) {
            text.append(separator);
            appendNumber(text, corner, columns);
            separator = ',';
        }
        text.append("),\r\n");
    }
}

/// How many of the Gouraud tables the attributes so far have named.
struct GouraudIndices {
    std::uint32_t light = 0, table = 0;
};

void appendMesh(TextWriter& text, const Model& model, const Names& names, std::uint32_t index,
                GouraudIndices& indices)
{
    const Mesh& mesh = model.meshes[index];
    const std::string& name = names.objects[index];
    text.append("/*\r\n *\tXPDATA : " + names.comments[index] + "\r\n");
    appendCountLine(text, "VERTICES = ", mesh.vertexCount);
    appendCountLine(text, "POLYGONS = ", mesh.polygonCount);
    text.append(" */\r\n\r\n");

    appendTableStart(text, "POINT", "point", name);
    appendPoints(text, model.vertices.data() + mesh.vertexTable, mesh.vertexCount);
    appendTableEnd(text);

    appendTableStart(text, "POLYGON", "polygon", name);
    appendPolygons(text, model, mesh);
    appendTableEnd(text);

    appendTableStart(text, "ATTR", "attribute", name);
    bool needsNormals = false;
    for (std::uint32_t p = 0; p < mesh.polygonCount; ++p) {
        const PolygonAttribute& attribute = model.attributes[mesh.attributeTable + p];
        needsNormals = needsNormals || isLightGouraud(attribute);
        text.append("\tATTRIBUTE(");
        appendAttribute(text, attribute, indices.light, indices.table);
        text.append("),\r\n");
    }
    appendTableEnd(text);

    if (needsNormals) {
        appendTableStart(text, "VECTOR", "normal", name);
        appendPoints(text, model.vertexNormals.data() + mesh.vertexNormalTable, mesh.vertexCount);
        appendTableEnd(text);
    }

    appendTableStart(text, "XPDATA", "xpdata", name);
    text.append("\tpoint_" + name + ", sizeof(point_" + name + ")/sizeof(POINT),\r\n");
    text.append("\tpolygon_" + name + ", sizeof(polygon_" + name + ")/sizeof(POLYGON),\r\n");
    text.append("\tattribute_" + name + ",\r\n");
    text.append(needsNormals ? "\tnormal_" + name + ",\r\n" : "\tNULL,\r\n");
    appendTableEnd(text);
}

void appendReference(TextWriter& text, const Names& names, std::uint32_t object)
{
    if (object == noObject)
        text.append("\tNULL,\r\n");
    else // one that the model does not have counts as the first
        text.append("\tobject_" + names.objects[object < names.objects.size() ? object : 0] +
                    ",\r\n");
}

void appendObject(TextWriter& text, const Model& model, const Names& names, std::uint32_t index)
{
    const Object& object = model.objects[index];
    const std::string& name = names.objects[index];
    appendTableStart(text, "OBJECT", "object", name);
    text.append("\t(PDATA*)xpdata_" + name + ",\r\n\tTRANSLATION(");
    appendFixed(text, object.translation.x, object.translation.y, object.translation.z);
    text.append("),\r\n\tROTATION(");
    appendFixed(text, angleToDegrees(object.rotation[0]), angleToDegrees(object.rotation[1]),
                angleToDegrees(object.rotation[2]));
    text.append("),\r\n\tSCALING(");
    appendFixed(text, object.scaling.x, object.scaling.y, object.scaling.z);
    text.append("),\r\n");
    appendReference(text, names, object.child);
    appendReference(text, names, object.next);
    appendTableEnd(text);
}

} // namespace

TextWriter formatModelSource(const Model& model, std::string_view title, SourceNames sourceNames)
{
    const Names names = namesOf(model, title, sourceNames);
    TextWriter text(4096 + std::size_t{model.totalPolygonCount} * textPerPolygon);
    const GouraudCounts gouraud = countGouraud(model);
    appendHeader(text, model, toComment(title, sourceNames), gouraud);
    if (gouraud.light + gouraud.table > 0) appendGouraudSection(text, model, names.base, gouraud);
    GouraudIndices indices;
    for (std::uint32_t k = 0; k < model.objectCount; ++k)
        appendMesh(text, model, names, k, indices);
    text.append("/*\r\n");
    appendCountLine(text, "OBJECTS = ", model.objectCount);
    text.append(" */\r\n\r\n");
    // Children and later siblings have higher numbers: what a table names stands before it.
    for (std::uint32_t k = model.objectCount; k-- > 0;) appendObject(text, model, names, k);
    return text;
}

Message writeModelSource(const Model& model, const std::string& path)
{
    try {
        const TextWriter text = formatModelSource(model, fileTitle(path));
        return writeFile(path, std::as_bytes(std::span(text.view())));
    } catch (const std::bad_alloc&) {
        return Message::outOfMemory;
    }
}

} // namespace facetor
