#include "exchange/model_import.h"

#include "exchange/obj_reader.h"

#include <gtest/gtest.h>

#include <map>

namespace facetor {
namespace {

/// An OBJ with the files that it names, read and made a model of.
struct Import {
    Model model;
    TextureList textures;
    ImportReport report;
    Reason reason;
    Message message;

    explicit Import(std::string_view text, std::map<std::string, std::string> files = {},
                    const ImportOptions& options = {})
    {
        Scene scene;
        const AssetReader assets = [&](const std::string& name, std::string& why) {
            const auto found = files.find(name);
            why = "missing";
            if (found == files.end()) return std::optional<Bytes>();
            return std::optional(bytesOf(found->second));
        };
        EXPECT_EQ(createModelStore(model), Message::none);
        EXPECT_EQ(textures.create(), Message::none);
        message = readObj(scene, text, "title", assets, reason);
        if (message == Message::none)
            message = buildModel(model, &textures, scene, options, report, reason);
        EXPECT_TRUE(isSafeToDraw(model));
    }
};

constexpr char square[] = "v 0 0 0\nv 2 0 0\nv 2 2 0\nv 0 2 0\nv 4 0 0\nv 4 2 0\nv 1 3 0\n";

TEST(ModelImport, MakesPolygonsOfFaces)
{
    static const struct {
        const char* faces;
        std::uint32_t quads, triangles, rejoined, split, dropped;
    } rows[] = {
        {"f 1 2 3 4\n", 1, 0, 0, 0, 0},
        {"f 1 2 3\n", 0, 1, 0, 0, 0},
        {"f 1 2 3\nf 1 3 4\n", 1, 0, 1, 0, 0},
        {"f 1 2 3\ns 1\nf 1 3 4\n", 1, 0, 1, 0, 0},
        {"f 1 2 3\nf 3 1 4\n", 0, 2, 0, 0, 0}, // turned over
        {"f 1 2 3\nusemtl other\nf 1 3 4\n", 0, 2, 0, 0, 0},
        {"vt 0 0\nvt 1 1\nf 1/1 2/1 3/2\nf 1/1 3/1 4/1\n", 0, 2, 0, 0, 0}, // a seam
        {"f 1 2 4\nf 4 2 3\nf 2 5 3\nf 3 5 6\n", 2, 0, 2, 0, 0},           // not across the middle
        {"f 2 3 4\nf 1 2 4\nf 4 3 7\n", 1, 1, 1, 0, 0},
        {"f 1 5 6 3 7 4\n", 2, 0, 0, 1, 0},
        {"f 1 1 2 3 4 4\n", 1, 0, 0, 1, 0}, // repeated corners
        {"f 1 2 5\nf 1 2\nf 1 2 3\n", 0, 1, 0, 0, 2},
        {"f 1 2 3 2\nf 2 3 2 1\nf 3 2 1 2 3 4\nf 1 2 3 4\n", 1, 0, 0, 0, 3}, // there and back
        {"f 1 2 3 4 1 7\nf 5 1 2 3 4 1\nf 1 2 5 2 3 4\n", 3, 0, 0, 3, 0},    // detours
        {"f -7 -6 -5 -4\n", 1, 0, 0, 0, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.faces);
        const Import made(std::string(square) + row.faces);
        EXPECT_EQ(made.message, Message::none) << made.reason.text;
        EXPECT_EQ(made.report.quads, row.quads);
        EXPECT_EQ(made.report.triangles, row.triangles);
        EXPECT_EQ(made.report.rejoined, row.rejoined);
        EXPECT_EQ(made.report.split, row.split);
        EXPECT_EQ(made.report.dropped, row.dropped);
    }
}

TEST(ModelImport, StandsUprightWithItsColoursAndNames)
{
    const Import made("mtllib a.mtl\nmtllib gone.mtl\nv 0 0 0\nv 1 0 0 1 0 0\nv 1 2 3\ng x\n"
                      "f 1 1 3 2\no Wing\nusemtl glass\nf 1/ 2// 3\no title\nf 3 2 1\no Wing\n"
                      "s 1\nf 1 3 2\n",
                      {{"a.mtl", "\xEF\xBB\xBFnewmtl glass\nKd 1 0.5 0\nd 0.5\n"}},
                      {2, UpAxis::z, Triangles::keep, {}});
    ASSERT_EQ(made.message, Message::none) << made.reason.text;
    const Model& model = made.model;
    ASSERT_EQ(model.objectCount, 2u);
    EXPECT_EQ(model.names[0], "title");
    EXPECT_EQ(model.names[1], "Wing");
    EXPECT_EQ(model.meshes[1].polygonCount, 2u);
    EXPECT_EQ(model.objects[0].next, 1u);
    const Vertex& third = model.vertices[model.meshes[1].vertexTable + 2];
    EXPECT_EQ(third.x, 2);
    EXPECT_EQ(third.y, -6);
    EXPECT_EQ(third.z, 4);
    EXPECT_EQ(model.polygons[2].corner, (std::array<std::uint16_t, 4>{0, 2, 1, 1}));
    const PolygonAttribute& glass = model.attributes[2];
    EXPECT_EQ(glass.color, 0x8000 | rgb555(31, 16, 0));
    EXPECT_EQ(glass.flags & translucentMode, translucentMode);
    EXPECT_TRUE(isTableGouraud(glass)); // a corner has a colour
    ASSERT_EQ(made.report.notes.size(), 1u);
    EXPECT_EQ(made.report.notes[0].line, 2u);
}

TEST(ModelImport, SaysWhyAFileIsRefused)
{
    std::string many = square;
    for (int i = 0; i < 4097; ++i) many += "f 1 2 3\n";
    const std::pair<std::string, const char*> rows[] = {
        {"v 0 0 0\n", "it has no face"},
        {"v 0 nan 0\n", "line 1: \"nan\" is no finite number"},
        {"\nv 0 1e999 0\n", "line 2: \"1e999\" is no finite number"},
        {"v 0 0\n", "line 1: a number is missing"},
        {"vt 0 0 inf\n", "line 1: \"inf\" is no finite number"},
        {"mtllib m\n", "material file \"m\": line 2: \"nan\" is no finite number"},
        {"v 0 0 0\nf 1 1 2\n", "line 2: an index is out of range"},
        {"v 0 0 0\nf 1 \\\n 1 0\n", "line 2: an index is out of range"},
        {"v 0 0 0\nf 1/1 1 1\n", "line 2: an index is out of range"},
        {"f -1 1 1\n", "line 1: an index is out of range"},
        {many, "4097 polygons where 4096 fit"},
    };
    for (const auto& [text, why] : rows) {
        const Import made(text, {{"m", "newmtl a\nKd 0 nan 0\n"}});
        EXPECT_EQ(made.message, Message::formatNotSupported);
        EXPECT_EQ(made.reason.text, why);
        EXPECT_EQ(made.model.names[0], "Model00") << "what stood there still does";
    }
}

TEST(ModelImport, ShowsAWholePictureInEveryOrderThroughOneSlot)
{
    // 16 x 8 pixels, each of another colour.
    std::string picture("\0\0\2\0\0\0\0\0\0\0\0\0\20\0\10\0\40\50", 18);
    for (int i = 0; i < 128; ++i)
        picture += {static_cast<char>(i / 16 * 8), static_cast<char>(i % 16 * 8), '\10', '\377'};
    std::string text = "mtllib m\nusemtl p\nv 0 0 0\nv 2 0 0\nv 2 2 0\nv 0 2 0\n"
                       "vt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\nvt .5 0\nvt .5 1\n";
    for (int start = 0; start < 4; ++start)
        for (const int step : {1, 3}) {
            text += "f";
            for (int i = 0; i < 4; ++i)
                text +=
                    " " + std::to_string(i + 1) + "/" + std::to_string((start + i * step) % 4 + 1);
            text += "\n";
        }
    text += "f 1/1 2/5 3/6 4/4\n"; // the left half
    const Import made(text, {{"m", "newmtl p\nmap_Kd a.tga\n"}, {"a.tga", picture}});
    ASSERT_EQ(made.message, Message::none) << made.reason.text;
    EXPECT_EQ(made.report.textures, 2u);
    EXPECT_EQ(made.report.shared, 7u);
    ASSERT_EQ(made.textures.slot(0).width, 16);
    ASSERT_EQ(made.textures.slot(0).height, 8);
    EXPECT_EQ(made.textures.slot(0).pixels[17], opaqueBit | rgb555(1, 1, 1));
    EXPECT_EQ(made.textures.slot(1).pixels[9], opaqueBit | rgb555(1, 1, 1));
    for (std::uint32_t p = 0; p < 8; ++p) {
        const int start = static_cast<int>(p / 2), step = p % 2 == 0 ? 1 : 3;
        const PolygonAttribute& attribute = made.model.attributes[p];
        EXPECT_EQ(attribute.texture, 0);
        for (std::size_t k = 0; k < 4; ++k) {
            std::size_t shown = k; // of left top, right top, right bottom, left bottom
            if ((attribute.flags & flipHorizontal) != 0) shown ^= 1;
            if ((attribute.flags & flipVertical) != 0) shown = 3 - shown;
            const int corner = made.model.polygons[p].corner[k]; // vertices are as in the file
            EXPECT_EQ((start + corner * step) % 4, 3 - static_cast<int>(shown)) << p << ' ' << k;
        }
    }
}

} // namespace
} // namespace facetor
