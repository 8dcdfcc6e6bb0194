#include "output/model_source.h"

#include <gtest/gtest.h>

namespace facetor {

namespace {

struct Document {
    Model model;

    Document() { EXPECT_EQ(createModelStore(model), Message::none); }

    std::string source(std::string_view title = "cube.mdl") const
    {
        return std::string(formatModelSource(model, title).view());
    }
};

std::size_t count(const std::string& text, std::string_view part)
{
    std::size_t found = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++found;
    return found;
}

} // namespace

TEST(ModelSource, TheStartUpCubeIsWrittenLineByLine)
{
    const Document document;
    const char* expected =
        "/**********************************************\r\n"
        " *\tFACETOR DATA FILE 1995-1996/GRAPHICS TOOLS\r\n"
        " *\tcube.mdl\r\n"
        " *\tOBJECTS  = 1\r\n"
        " *\tVERTICES = 8\r\n"
        " *\tPOLYGONS = 6\r\n"
        " **********************************************/\r\n\r\n"
        "/*\r\n *\tXPDATA : Model00\r\n *\tVERTICES = 8\r\n *\tPOLYGONS = 6\r\n */\r\n\r\n"
        "POINT\tpoint_Model00[] = {\r\n"
        "\tPOStoFIXED(-50.0000,-50.0000,-50.0000),\r\n"
        "\tPOStoFIXED( 50.0000,-50.0000,-50.0000),\r\n"
        "\tPOStoFIXED( 50.0000, 50.0000,-50.0000),\r\n"
        "\tPOStoFIXED(-50.0000, 50.0000,-50.0000),\r\n"
        "\tPOStoFIXED(-50.0000,-50.0000, 50.0000),\r\n"
        "\tPOStoFIXED( 50.0000,-50.0000, 50.0000),\r\n"
        "\tPOStoFIXED( 50.0000, 50.0000, 50.0000),\r\n"
        "\tPOStoFIXED(-50.0000, 50.0000, 50.0000),\r\n"
        "};\r\n\r\n"
        "POLYGON\tpolygon_Model00[] = {\r\n"
        "\tNORMAL(  0.0000,  0.0000, -1.0000), VERTICES( 0, 1, 2, 3),\r\n"
        "\tNORMAL(  1.0000,  0.0000,  0.0000), VERTICES( 1, 5, 6, 2),\r\n"
        "\tNORMAL(  0.0000,  0.0000,  1.0000), VERTICES( 5, 4, 7, 6),\r\n"
        "\tNORMAL( -1.0000,  0.0000,  0.0000), VERTICES( 4, 0, 3, 7),\r\n"
        "\tNORMAL(  0.0000, -1.0000,  0.0000), VERTICES( 0, 4, 5, 1),\r\n"
        "\tNORMAL(  0.0000,  1.0000,  0.0000), VERTICES( 2, 6, 7, 3),\r\n"
        "};\r\n\r\n"
        "ATTR\tattribute_Model00[] = {\r\n";
    const std::string source = document.source();
    EXPECT_EQ(source.substr(0, std::string_view(expected).size()), expected);
    EXPECT_NE(source.find("\tATTRIBUTE(Single_Plane, SORT_CEN, No_Texture, C_RGB(31,31,31), "
                          "No_Gouraud, CL32KRGB|MESHoff, sprPolygon, UseLight),\r\n"),
              std::string::npos);
    EXPECT_EQ(source.substr(source.find("XPDATA\txpdata")),
              "XPDATA\txpdata_Model00[] = {\r\n"
              "\tpoint_Model00, sizeof(point_Model00)/sizeof(POINT),\r\n"
              "\tpolygon_Model00, sizeof(polygon_Model00)/sizeof(POLYGON),\r\n"
              "\tattribute_Model00,\r\n"
              "\tNULL,\r\n"
              "};\r\n\r\n"
              "/*\r\n *\tOBJECTS = 1\r\n */\r\n\r\n"
              "OBJECT\tobject_Model00[] = {\r\n"
              "\t(PDATA*)xpdata_Model00,\r\n"
              "\tTRANSLATION(  0.0000,  0.0000,  0.0000),\r\n"
              "\tROTATION(  0.0000,  0.0000,  0.0000),\r\n"
              "\tSCALING(  1.0000,  1.0000,  1.0000),\r\n"
              "\tNULL,\r\n"
              "\tNULL,\r\n"
              "};\r\n\r\n");
}

TEST(ModelSource, GouraudTablesFollowTheirKinds)
{
    struct Case {
        const char* reason;
        int light, table;
        const char* defines; ///< and the line that opens the first table
    };
    const Case cases[] = {
        {"only light", 2, 0,
         "#define\tGRreal(n)\t(0x1c38+(n))\r\nGOURAUDTBL\tgrreal_cube[] = {\r\n"},
        {"only tables", 0, 1,
         "#define\tGRtbl(n)\t(0x1c38+(n))\r\nGOURAUDTBL\tgrtbl_cube[] = {\r\n"},
        {"both", 3, 2,
         "#define\tGRreal(n)\t(0x1c38+(n))\r\n#define\tGRtbl(n)\t(0x1c3b+(n))\r\n"
         "GOURAUDTBL\tgrreal_cube[] = {\r\n"},
    };
    for (const Case& c : cases) {
        Document document;
        Model& model = document.model;
        for (int i = 0; i < 6; ++i) {
            std::uint32_t& flags = model.attributes[static_cast<std::size_t>(i)].flags;
            flags = polygonFace;
            if (i < c.light) flags |= gouraudShading | useLight;
            if (i >= 6 - c.table) flags |= gouraudShading;
        }
        model.gouraud[0].color = {0x8000, 0x7FFF, rgb555(1, 2, 3), 0};
        const std::string source = document.source();
        EXPECT_NE(source.find(c.defines), std::string::npos) << c.reason;
        EXPECT_EQ(count(source, "GOUR_REAL= "), c.light > 0 ? 1u : 0u) << c.reason;
        EXPECT_EQ(count(source, "GOUR_TBL = "), c.table > 0 ? 1u : 0u) << c.reason;
        EXPECT_EQ(count(source, "\t{C_RGB("), static_cast<std::size_t>(c.light + c.table));
        // Normals are written for the light alone.
        EXPECT_EQ(count(source, "VECTOR\tnormal_Model00[]"), c.light > 0 ? 1u : 0u) << c.reason;
        EXPECT_EQ(count(source, "\tnormal_Model00,\r\n"), c.light > 0 ? 1u : 0u) << c.reason;
        if (c.light > 0) {
            EXPECT_NE(source.find("\t{C_RGB( 0, 0, 0),C_RGB(31,31,31),C_RGB( 1, 2, 3),"
                                  "C_RGB( 0, 0, 0)},\r\n"),
                      std::string::npos);
        }
    }
    EXPECT_EQ(Document().source().find("GRreal"), std::string::npos);
}

TEST(ModelSource, TheWidthOfIndicesFollowsThePolygonCount)
{
    for (const std::uint32_t polygons : {100u, 101u}) {
        Document document;
        Model& model = document.model;
        for (std::uint32_t i = 6; i < polygons; ++i) model.polygons[i] = model.polygons[0];
        model.meshes[0].polygonCount = model.totalPolygonCount = polygons;
        const std::string source = document.source();
        EXPECT_EQ(count(source, "VERTICES( 0, 1, 2, 3)"), polygons == 100 ? 95u : 0u);
        EXPECT_EQ(count(source, "VERTICES(  0,  1,  2,  3)"), polygons == 100 ? 0u : 96u);
    }
}

TEST(ModelSource, ObjectsStandInReverseOrderAndNameTheirKin)
{
    Document document;
    Model& model = document.model;
    model.objectCount = 3;
    for (std::uint32_t i = 1; i < 3; ++i) {
        model.objects[i] = model.objects[0];
        model.objects[i].mesh = i;
        model.meshes[i] = {};
        model.names[i] = defaultObjectName(i);
    }
    model.objects[0].child = 1;
    model.objects[1].next = 2;
    model.objects[2].rotation = {16384, -16384, 1};
    const std::string source = document.source();
    const std::size_t last = source.find("OBJECT\tobject_Model02[]");
    const std::size_t first = source.find("OBJECT\tobject_Model00[]");
    EXPECT_LT(last, first);
    EXPECT_NE(source.find("\tROTATION( 89.9973,-89.9973,  0.0055),\r\n"), std::string::npos);
    EXPECT_NE(source.find("\tobject_Model01,\r\n\tNULL,\r\n};\r\n\r\n", first), std::string::npos);
    EXPECT_NE(source.find("\tNULL,\r\n\tobject_Model02,\r\n};\r\n\r\n", last), std::string::npos);
}

} // namespace facetor
