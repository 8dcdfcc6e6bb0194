#include "cli/run_program.h"

#include "base/file.h"
#include "base/temporary_folder.h"
#include "image/picture.h"
#include "model/model_file.h"
#include "output/target_image.h"
#include "texture/texture_file.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <set>

namespace facetor {
namespace {

using Json = nlohmann::ordered_json;

class Cli : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(createModelStore(model), Message::none);
        cube = folder.file("cube.mx3");
        ASSERT_EQ(writeModelFile(model, cube), Message::none);
    }

    std::string put(const std::string& name, const Bytes& bytes) const
    {
        const std::string path = folder.file(name);
        EXPECT_EQ(writeFile(path, bytes), Message::none);
        return path;
    }

    Model model;
    TemporaryFolder folder;
    std::string cube;
};

std::string textOf(const std::string& path)
{
    const std::optional<Bytes> bytes = readFile(path);
    return bytes ? std::string(reinterpret_cast<const char*>(bytes->data()), bytes->size()) : "";
}

/// The long options that a text names.
std::set<std::string> optionsIn(const std::string& text)
{
    std::set<std::string> options;
    std::size_t at = 0, end = 0;
    while ((at = text.find("--", end)) != std::string::npos) {
        end = std::min(text.find_first_not_of("abcdefghijklmnopqrstuvwxyz-", at), text.size());
        if (end - at > 2) options.insert(text.substr(at, end - at));
    }
    return options;
}

TEST_F(Cli, TheManualPageAndTheCompletionKnowEveryOption)
{
    std::string help;
    for (const char* command : {"info", "check", "convert", "render", "scene", "report"}) {
        const ProgramRun run = runProgram({command, "--help"});
        EXPECT_NE(run.output.find("\nExamples:\n  facetor-cli " + std::string(command)),
                  std::string::npos)
            << run.output;
        help += run.output;
    }
    std::string page = textOf(FACETOR_CLI_SOURCES "/facetor-cli.1");
    std::erase(page, '\\'); // before every hyphen
    EXPECT_EQ(optionsIn(page), optionsIn(help));
    EXPECT_EQ(optionsIn(textOf(FACETOR_CLI_SOURCES "/completions/facetor-cli.bash")),
              optionsIn(help));
}

TEST_F(Cli, AWrongCommandLineIsExitTwoAndOneLine)
{
    const std::string out = folder.file("out.png");
    const std::vector<std::string> rows[] = {
        {},
        {"frobnicate"},
        {"info"},
        {"info", cube, "--xml"},
        {"check"},
        {"check", cube, "--strict"},
        {"check", cube, "--scale", "2"},
        {"convert", cube},
        {"convert", cube, out},
        {"convert", cube, folder.file("a.sal"), "--scale", "-1"},
        {"convert", cube, folder.file("a.mdl"), "--scale", "2"},
        {"convert", cube, folder.file("a.mdl"), "--to", "mdl"},
        {"convert", cube, folder.file("a.mdl"), "--header", cube},
        {"convert", cube, folder.file("a.sal"), "--header", folder.file("a.h")},
        {"convert", cube, "-", "--to", "mdl", "--depfile", folder.file("a.d")},
        {"scene", cube},
        {"convert", cube, cube, folder.file("a.mx3")},
        {"render", cube},
        {"render", cube, out, "--size", "641x480"},
        {"render", cube, out, "--size", "3x3"},
        {"render", cube, out, "--camera", "0,0,nan"},
        {"render", cube, out, "--camera", "0,0,700,1"},
        {"render", cube, out, "--rotate", "0,0,2147483648"},
        {"render", cube, out, "--view", "sideways"},
        {"render", cube, out, "--view-scale", "2"}, // counts only with --no-fit
        {"render", cube, out, "--angle", "180"},
        {"render", cube, out, "--light-color", "0,0,32"},
        {"render", cube, out, "--background", "0x10,0,0"},
        {"render", cube, out, "--repeat", "0"},
        {"render", cube, out, "--zoom", "9"},
        {"render", cube, out, "--compare", out},
        {"render", cube, "-", "--turn", "2"},
        {"render", cube, out, "--order", cube},
    };
    for (const auto& words : rows) {
        SCOPED_TRACE(testing::PrintToString(words));
        const ProgramRun run = runProgram(words);
        EXPECT_EQ(run.status, 2);
        EXPECT_TRUE(run.errors.starts_with("facetor-cli: ")) << run.errors;
        EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << run.errors;
        EXPECT_EQ(run.output, "");
    }
    EXPECT_EQ(folder.entryCount(), 1u) << "nothing was written";
}

TEST_F(Cli, InfoDescribesAModelInJson)
{
    EXPECT_EQ(runProgram({"info", "--json", cube}).output,
              R"({"type":"model","version":"0x00011000","objects":1,"vertices":8,"polygons":6,)"
              R"("object":[{"index":0,"name":"Model00","depth":0,"child":null,"next":null,)"
              R"("vertices":8,"polygons":6,"translation":[0,0,0],"rotation":[0,0,0],)"
              R"("scaling":[1,1,1]}]})"
              "\n");

    model.objectCount = 2;
    model.objects[1] = model.objects[0];
    model.objects[1].mesh = 1;
    model.meshes[1] = {8, 0, 6, 0, 6, 8};
    model.objects[0].child = 1;
    model.objects[1].translation = {0.1f, -1.5f, 3e38f};
    model.objects[1].rotation = {16384, -1, 0};
    model.names[1] = "na\xFFme \"\xC3\xA9\"";
    const std::string path = put("two.MX3", writeModel(model));
    const Json json = Json::parse(runProgram({"info", path, "--json"}).output);
    EXPECT_EQ(json["object"][0]["child"], 1);
    EXPECT_EQ(json["object"][1]["depth"], 1);
    EXPECT_EQ(json["object"][1]["rotation"].dump(), "[16383,0,0]");
    EXPECT_EQ(json["object"][1]["translation"].dump(), "[0.1,-1.5,3e+38]")
        << "digits of the single, not those of its double";
    EXPECT_EQ(json["object"][1]["name"], "na\xEF\xBF\xBDme \"\xC3\xA9\"");
}

TEST_F(Cli, InfoDescribesATargetImage)
{
    using namespace std::string_view_literals;
    const std::string path = put("scene.sal", bytesOf("\0\xE0\x0A\x06\3\0\0\0abc"
                                                      "\xFE\xFF\xE7\x25\0\0\0\0"sv));
    EXPECT_EQ(runProgram({"info", "--json", path}).output,
              R"({"type":"image","blocks":[{"address":"0x060AE000","size":3},)"
              R"({"address":"0x25E7FFFE","size":0}]})"
              "\n");
    for (const std::string_view cut :
         {"\0\xE0\x0A\x06\3\0\0\0ab"sv, "\0\xE0\x0A\x06\3\0\0"sv, ""sv}) {
        const ProgramRun run = runProgram({"check", put("cut.sal", bytesOf(cut))});
        EXPECT_EQ(run.status, 1);
        EXPECT_NE(run.errors.find("block at offset 0"), std::string::npos) << run.errors;
    }
}

TEST_F(Cli, FailuresNameTheFileTheTextAndTheReason)
{
    const std::string missing = folder.file("missing.mx3");
    EXPECT_EQ(runProgram({"info", missing}).errors,
              "facetor-cli: " + missing + ": Cannot open File. (missing)\n");
    const std::string text = put("notes.txt", bytesOf("hello"));
    const ProgramRun unknown = runProgram({"info", text});
    EXPECT_EQ(unknown.status, 1);
    EXPECT_TRUE(unknown.errors.starts_with("facetor-cli: " + text +
                                           ": Sorry, this file format is not supported. ("))
        << unknown.errors;
    model.polygons[4].corner[1] = 8;
    const std::string corner = put("corner.mx3", writeModel(model));
    EXPECT_EQ(runProgram({"info", corner}).errors,
              "facetor-cli: " + corner +
                  ": Sorry, this file format is not supported. (object 0, chunk POLY at offset "
                  "576: polygon 4 names vertex 8 of 8)\n");
}

TEST_F(Cli, FailuresInJsonHaveTheSamePartsEach)
{
    const std::string bad = put("bad.mx3", bytesOf("MX3D")), missing = folder.file("missing.mx3");
    const Json cut = Json::parse(runProgram({"check", "--json", bad}).errors)["error"];
    EXPECT_EQ(cut["path"], bad);
    EXPECT_EQ(cut["message"], 19);
    EXPECT_EQ(cut["text"], "Sorry, this file format is not supported.");
    EXPECT_EQ(cut["offset"], 0);
    EXPECT_EQ(runProgram({"--json", "render", missing, folder.file("a.png")}).errors,
              R"({"error":{"path":")" + missing +
                  R"(","message":22,"text":"Cannot open File.","reason":"missing"}})"
                  "\n");
    const Json wrong = Json::parse(runProgram({"scene", "--frob", "--json"}).errors)["error"];
    EXPECT_TRUE(wrong["message"].is_null() && wrong["text"].is_string() && wrong.size() == 2);
}

TEST_F(Cli, StandardInputAndOutputStandForFiles)
{
    const ProgramRun source = runProgram({"convert", cube, "-", "--to", "mdl"});
    EXPECT_EQ(runProgram({"convert", cube, folder.file("cube.mdl")}).status, 0);
    EXPECT_TRUE(readFile(folder.file("cube.mdl")) == bytesOf(source.output));
    EXPECT_EQ(runProgram({"convert", "-", "-", "--to", "mx3"}, {}, cube).output,
              runProgram({"convert", cube, "-", "--to", "mx3"}).output);
    EXPECT_EQ(runProgram({"check", "-"}, {}, cube).output, "stdin: ok\n");
    const ProgramRun picture =
        runProgram({"render", "-", "-", "--size", "8x8", "--repeat", "1"}, {}, cube);
    EXPECT_TRUE(picture.output.starts_with("\x89PNG")) << picture.output;
    EXPECT_TRUE(picture.errors.starts_with("frame: ")) << picture.errors;
}

TEST_F(Cli, TheStandardInputIsToldByItsContent)
{
    const std::string image = folder.file("cube.sal");
    ASSERT_EQ(runProgram({"convert", cube, image}).status, 0);
    const struct {
        std::string input, to, start; ///< what the output begins with
    } rows[] = {
        {cube, "glb", "glTF"},
        {cube, "obj", "# Facetor\nmtllib stdout.mtl\no Model00\n"},
        {"samples/lighthouse.obj", "mx3", "MX3D"},
        {image, "mx3", "MX3D"},
        {"samples/lighthouse-sea.png", "mxt", "MXTX"},
    };
    for (const auto& [input, to, start] : rows) {
        const ProgramRun run = runProgram({"convert", "-", "-", "--to", to}, {}, input);
        EXPECT_EQ(run.status, 0) << run.errors;
        EXPECT_TRUE(run.output.starts_with(start)) << input << ' ' << to;
    }
}

TEST_F(Cli, AHeaderDeclaresWhatTheSourceDefines)
{
    const std::string source = folder.file("a.mdl"), header = folder.file("1 a.h");
    ASSERT_EQ(runProgram({"convert", cube, source, "--header", header}).status, 0);
    const std::optional<Bytes> text = readFile(header);
    ASSERT_TRUE(text);
    const std::string_view lines(reinterpret_cast<const char*>(text->data()), text->size());
    EXPECT_EQ(lines.substr(lines.find("#ifndef")),
              "#ifndef H_1_A_H_\r\n#define H_1_A_H_\r\n\r\n"
              "extern POINT\tpoint_Model00[];\r\nextern POLYGON\tpolygon_Model00[];\r\n"
              "extern ATTR\tattribute_Model00[];\r\nextern XPDATA\txpdata_Model00[];\r\n"
              "extern OBJECT\tobject_Model00[];\r\n\r\n#endif\r\n");
}

TEST_F(Cli, AHeaderAndItsSourceCompileTogetherInBothLanguages)
{
    // Braces within a table are left out by the layout of the sources.
    const std::string compiler = "g++ -Wall -Wextra -Werror -Wno-missing-braces -fsyntax-only "
                                 "-include tests/cli/console_library.h -include ";
    const std::string log = folder.file("log");
    for (const char* input : {"samples/prop.mx3", "samples/ship.mx3", "samples/ship.mxt"}) {
        SCOPED_TRACE(input);
        const std::string end = std::string(input).ends_with("mxt") ? ".txr" : ".mdl";
        const std::string source = folder.file("a" + end), header = folder.file("a.h");
        ASSERT_EQ(runProgram({"convert", input, source, "--header", header, "--c-names"}).status,
                  0);
        for (const char* language : {" -x c -std=c99 ", " -x c++ -std=c++11 "}) {
            const std::string line = compiler + header + language + source + " >" + log + " 2>&1";
            EXPECT_EQ(std::system(line.c_str()), 0) << language << textOf(log).substr(0, 2000);
        }
    }
}

TEST_F(Cli, PicturesOutsideTheModelsFolderNeedTheirFolderNamed)
{
    const std::string art = folder.file("art"), shape = folder.file("a/a.obj");
    for (const std::string& path : {art, folder.file("a")}) std::filesystem::create_directory(path);
    put("art/p.tga",
        bytesOf(std::string("\0\0\2\0\0\0\0\0\0\0\0\0\10\0\1\0\30\0", 18) + std::string(24, 'x')));
    put("a/a.obj", bytesOf("mtllib a.mtl\nusemtl m\nv 0 0 0\nv 1 0 0\nv 0 1 0\n"
                           "vt 0 0\nf 1/1 2/1 3/1\n"));
    for (const char* name : {"../art/p.tga", "p.tga", "C:\\art\\p.tga", "/home/x/p.tga"}) {
        put("a/a.mtl", bytesOf(std::string("newmtl m\nmap_Kd ") + name + "\n"));
        std::vector<std::string> words = {
            "convert", "--json", shape, folder.file("a.mx3"), "--textures", folder.file("a.mxt")};
        EXPECT_EQ(Json::parse(runProgram(words).output)["textures"], 0) << name;
        words.insert(words.end(), {"--assets", art});
        EXPECT_EQ(Json::parse(runProgram(words).output)["textures"], 1) << name;
    }
}

TEST_F(Cli, AnUnchangedOutputIsNotTouchedAndMakeLearnsWhatWasRead)
{
    const std::string output = folder.file("a $b#c.mdl"), rule = folder.file("rule.d");
    const std::vector<std::string> words = {"convert",      cube,        output,
                                            "--if-changed", "--depfile", rule};
    ASSERT_EQ(runProgram(words).status, 0);
    const auto old = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
    std::filesystem::last_write_time(output, old);
    EXPECT_EQ(runProgram(words).output, "unchanged " + output + "\n");
    EXPECT_EQ(std::filesystem::last_write_time(output), old);
    EXPECT_EQ(readFile(rule), bytesOf(folder.file("a\\ $$b\\#c.mdl: \\\n  ") + cube + "\n"));
}

TEST_F(Cli, AnOutputThatTakesNothingIsAFailure)
{
    const std::string picture = folder.file("picture.png");
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"info", cube},
          {"check", cube},
          {"render", cube, picture, "--size", "8x8", "--repeat", "1"}}) {
        SCOPED_TRACE(words[0]);
        const ProgramRun run = runProgram(words, "/dev/full");
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.errors, "facetor-cli: standard output: Cannot create File. (disk full)\n");
    }
    EXPECT_FALSE(readFile(picture)) << "a failed command writes nothing";
}

TEST_F(Cli, ConvertAndSceneWriteTargetImages)
{
    const std::string output = folder.file("cube.sal");
    EXPECT_EQ(runProgram({"convert", cube, output, "--scale", "0.5"}).status, 0);
    ASSERT_EQ(readModelFile(model, cube), Message::none); // with the face normals of its corners
    EXPECT_EQ(readFile(output), formatModelImage(model, 0.5f));
    EXPECT_EQ(runProgram({"scene", output}).status, 0);
    EXPECT_EQ(readFile(output), formatSceneImage({}));
    EXPECT_EQ(runProgram({"-q", "scene", output, "--light", "0,-1,0.5", "--light-color", "1,2,3",
                          "--ambient", "4,5,6", "--background", "7,8,9", "--angle", "60"})
                  .status,
              0);
    EXPECT_EQ(readFile(output),
              formatSceneImage(
                  {{0, -1, 0.5f}, rgb555(1, 2, 3), 10922, rgb555(4, 5, 6), rgb555(7, 8, 9)}));
    TextureList list;
    ASSERT_EQ(list.create(), Message::none);
    Texels pixels;
    ASSERT_TRUE(pixels.allocate(264));
    list.set(0, 264, 1, std::move(pixels));
    const std::string wide = put("wide.mxt", writeTextures(list)), none = folder.file("none.sal");
    EXPECT_NE(runProgram({"convert", wide, none}).errors.find("texture 0 is 264 texels wide"),
              std::string::npos);
    EXPECT_FALSE(readFile(none));
}

TEST_F(Cli, CheckWarnsOfWhatTheTargetCannotShow)
{
    TextureList list;
    ASSERT_EQ(list.create(), Message::none);
    Texels pixels;
    ASSERT_TRUE(pixels.allocate(8 * 256));
    list.set(1, 8, 256, std::move(pixels));
    model.names[0] = "a b";
    model.attributes[4].flags = textureMap;
    const std::string named = put("a b.mx3", writeModel(model));
    const std::string high = put("high.mxt", writeTextures(list)), bad = folder.file("bad.mx3");
    const ProgramRun plain = runProgram({"check", "--target", named, high, cube});
    EXPECT_EQ(plain.status, 0);
    EXPECT_EQ(plain.output,
              named + ": ok\n" + named +
                  ": warning name-c: object 0 \"a b\": its name is no identifier of C\n" + named +
                  ": warning slot-empty: object 0 \"a b\", polygon 4: it shows slot 0, which is "
                  "empty\n" +
                  high + ": ok\n" + high +
                  ": warning texture-height: slot 1: 256 rows high; at most 255 can be sent\n" +
                  high + ": warning texture-unused: slot 1: no polygon shows it\n" + cube +
                  ": ok\n");
    EXPECT_EQ(runProgram({"check", "--target", "--strict", named}).status, 1);
    EXPECT_EQ(runProgram({"check", "--target", "--strict", cube}).status, 0);
    EXPECT_EQ(runProgram({"check", "--target", "--scale", "1000", "--strict", cube}).status, 1);
    const Json empty = Json::parse(runProgram({"check", "--target", "--json", named, high}).output);
    EXPECT_EQ(empty[0]["warnings"][1].dump(),
              R"({"code":"slot-empty","object":0,"polygon":4,"slot":0,"text":"object 0 \"a b\", )"
              R"(polygon 4: it shows slot 0, which is empty"})");
    const ProgramRun run = runProgram({"check", "--target", "--json", high, bad, cube});
    EXPECT_EQ(run.status, 1);
    const Json array = Json::parse(run.output);
    EXPECT_EQ(array[0].dump(),
              R"({"path":")" + high +
                  R"(","ok":true,"warnings":[{"code":"texture-height","slot":1,"text":"slot 1: )"
                  R"(256 rows high; at most 255 can be sent"}],"budget":)"
                  R"({"textures":{"used":2,"limit":2048},)"
                  R"("textureBytes":{"used":4224,"limit":458752}}})");
    EXPECT_EQ(array[1].dump(), R"({"path":")" + bad + R"(","ok":false,"error":{"path":")" + bad +
                                   R"(","message":22,"text":"Cannot open File.",)"
                                   R"("reason":"missing"}})");
    EXPECT_EQ(array[2]["budget"]["gouraud"].dump(), R"({"used":0,"limit":968})");
    EXPECT_EQ(array[2]["budget"]["imageBytes"], formatModelImage(model, 1).size());
    const ProgramRun refused = runProgram({"convert", high, folder.file("high.sal")});
    EXPECT_EQ(refused.status, 1);
    EXPECT_NE(refused.errors.find("slot 1: 256 rows"), std::string::npos) << refused.errors;
}

TEST_F(Cli, NoDoorWritesAnImageThatOverwritesTheTargetsMemory)
{
    TextureList list;
    ASSERT_EQ(list.create(), Message::none);
    const auto fill = [&](std::uint32_t slot, std::uint16_t width, std::uint16_t height) {
        Texels pixels;
        ASSERT_TRUE(pixels.allocate(std::size_t{width} * height));
        list.set(slot, width, height, std::move(pixels));
    };
    const auto putList = [&](const std::string& name) {
        const std::string path = put(name, writeTextures(list));
        list.clearAll();
        return path;
    };
    fill(2048, 8, 8);
    const std::string many = putList("many.mxt");
    for (std::uint32_t i = 0; i < 7; ++i) fill(i, 256, 128);
    fill(7, 8, 64); // 449 KiB
    const std::string large = putList("large.mxt");
    fill(0, 8, 256);
    const std::string high = putList("high.mxt");
    for (std::uint32_t i = 0; i < 969; ++i) {
        model.polygons[i] = model.polygons[0];
        model.attributes[i] = {0, 0, 0, 0, polygonFace | gouraudShading, i};
    }
    model.meshes[0].polygonCount = model.totalPolygonCount = 969;
    const std::string shaded = put("shaded.mx3", writeModel(model));
    const struct {
        std::string input, says;
        std::vector<std::string> pair; ///< makes one image with it
    } rows[] = {
        {many, "2049 textures", {cube, many}},
        {large, "459776 bytes of texels", {cube, large}},
        {high, "256 rows", {cube, high}},
        {shaded, "969 Gouraud polygons", {shaded, "samples/prop.mxt"}},
    };
    const std::string out = folder.file("out.sal");
    for (const auto& [input, says, pair] : rows)
        for (const ProgramRun& run :
             {runProgram({"convert", input, out}), runProgram({"convert", pair[0], pair[1], out}),
              runProgram({"convert", "-", "-", "--to", "sal"}, {}, input)}) {
            EXPECT_EQ(run.status, 1);
            EXPECT_EQ(run.output, "");
            EXPECT_NE(run.errors.find(says), std::string::npos) << run.errors;
            EXPECT_FALSE(readFile(out));
        }
}

TEST_F(Cli, AFailureLeavesNoOutputAndAnOldOneAsItWas)
{
    const std::string bad = put("bad.mx3", bytesOf("MX3D"));
    const std::string old = put("old.mx3", bytesOf("old contents"));
    const std::string oldPicture = put("old.png", bytesOf("old picture"));
    const std::string link = folder.file("link.png"), modelLink = folder.file("link.sal");
    std::filesystem::create_symlink(cube, link);
    std::filesystem::create_hard_link(cube, modelLink);
    std::filesystem::create_directory(folder.file("folder.png"));
    const std::optional<Bytes> cubeBytes = readFile(cube);
    const std::size_t entries = folder.entryCount();
    const std::vector<std::string> rows[] = {
        {"convert", bad, folder.file("new.mx3")},
        {"convert", bad, old},
        {"convert", folder.file("missing.mx3"), old},
        {"convert", cube, folder.file("missing/new.mx3")},
        {"render", bad, folder.file("new.png")},
        {"render", bad, oldPicture},
        {"render", cube, oldPicture, "--textures", bad},
        {"render", cube, oldPicture, "--textures", folder.file("missing.mxt")},
        {"render", cube, folder.file("folder.png")},
        {"render", cube, link},
        {"render", cube, oldPicture, "--depfile", cube},
        {"render", cube, oldPicture, "--depfile", oldPicture},
        {"convert", cube, modelLink},
        {"convert", cube, folder.file("new.sal"), "--scale", "1000"}, // 50 becomes 50000
        {"convert", cube, folder.file("missing/new.sal")},
        {"convert", "samples/prop.mxt", folder.file("made/"), "--depfile",
         folder.file("folder.png")},
    };
    for (const auto& words : rows) {
        SCOPED_TRACE(testing::PrintToString(words));
        const ProgramRun run = runProgram(words);
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << run.errors;
    }
    EXPECT_EQ(folder.entryCount(), entries);
    EXPECT_EQ(readFile(old), bytesOf("old contents"));
    EXPECT_EQ(readFile(oldPicture), bytesOf("old picture"));
    EXPECT_EQ(readFile(cube), cubeBytes);
}

/// What a frame looks like is frozen elsewhere; here, each option reaches it.
TEST_F(Cli, EveryOptionOfRenderChangesThePicture)
{
    const auto rendered = [&](std::vector<std::string> options) {
        options.insert(options.begin(), {"render", cube, "-"});
        const ProgramRun run = runProgram(options);
        EXPECT_EQ(run.status, 0) << run.errors;
        return run.output;
    };
    const std::string plain = rendered({}), unfitted = rendered({"--no-fit"});
    EXPECT_EQ(rendered({"--select", "none"}), plain);
    std::set<std::string> pictures{plain, unfitted};
    const std::vector<std::string> rows[] = {
        {"--view", "back"},
        {"--view", "left"},
        {"--view", "top"},
        {"--rotate", "5000,6000,7000"},
        {"--draw", "wire"},
        {"--light", "0,0,-1"},
        {"--light-color", "10,20,3"},
        {"--ambient", "31,0,0", "--view", "left"},
        {"--background", "31,0,1"},
        {"--select", "all"},
        {"--size", "320x200"},
        {"--select", "all", "--picked", "1,2,3"},
        {"--no-fit", "--parallel"},
        {"--no-fit", "--angle", "120"},
        {"--no-fit", "--view-scale", "3"},
        {"--no-fit", "--camera", "50,-20.5,600"},
        {"--first", "0"},
        {"--zoom", "2"},
        {"--transparent"},
        {"--overdraw"},
    };
    for (const auto& row : rows)
        EXPECT_TRUE(pictures.insert(rendered(row)).second) << testing::PrintToString(row);
}

TEST_F(Cli, RenderListsAndComparesAndTurns)
{
    const std::string picture = folder.file("a.png"), order = folder.file("a.json");
    // Two squares that face the camera, the nearer one over a quarter of the farther one.
    model.vertices[0] = {-10, -10, 0}, model.vertices[1] = {10, -10, 0};
    model.vertices[2] = {10, 10, 0}, model.vertices[3] = {-10, 10, 0};
    for (std::size_t i = 0; i < 4; ++i)
        model.vertices[4 + i] = {model.vertices[i].x + 10, model.vertices[i].y + 10, -5};
    model.polygons[0].corner = {0, 1, 2, 3};
    model.polygons[1].corner = {4, 5, 6, 7};
    model.attributes[1].sort = sortFarthest;
    model.meshes[0].polygonCount = model.totalPolygonCount = 2;
    const std::string path = put("squares.mx3", writeModel(model));
    const std::vector<std::string> view{"render",     path,     picture, "--no-fit",
                                        "--parallel", "--size", "64x64"};
    const auto with = [&](std::vector<std::string> words, std::vector<std::string> more) {
        words.insert(words.end(), more.begin(), more.end());
        return runProgram(words);
    };
    EXPECT_EQ(with(view, {"--order", order}).status, 0);
    const std::optional<Bytes> list = readFile(order);
    ASSERT_TRUE(list);
    const Json json =
        Json::parse(std::string_view(reinterpret_cast<const char*>(list->data()), list->size()));
    EXPECT_EQ(json.size(), 2u);
    EXPECT_EQ(json[0]["polygon"], 0);
    EXPECT_EQ(json[0]["sort"], "cen");
    EXPECT_EQ(json[1]["sort"], "max");
    EXPECT_EQ(json[0]["depth"].get<double>() - json[1]["depth"].get<double>(), 5);

    std::vector<std::string> compare = view;
    compare.erase(compare.begin() + 2);
    compare.insert(compare.end(), {"--compare", picture});
    const struct {
        std::vector<std::string> more;
        std::string says;
    } rows[] = {
        {{}, "0 pixels differ\n"},
        {{"--first", "1"}, "441 pixels differ\n"}, // the nearer square has 21 x 21 pixels
        {{"--zoom", "3"}, "sizes differ: 192x192, 64x64\n"},
    };
    for (const auto& [more, says] : rows) {
        const ProgramRun run = with(compare, more);
        EXPECT_EQ(run.output, says);
        EXPECT_EQ(run.errors, "");
        EXPECT_EQ(run.status, says[0] == '0' ? 0 : 1);
    }

    EXPECT_EQ(with(view, {"--overdraw", "--transparent"}).status, 0);
    const std::optional<Bytes> file = readFile(picture);
    Picture counts;
    std::string reason;
    ASSERT_TRUE(file && decodePicture(counts, *file, reason));
    const auto pixel = [&](std::size_t x, std::size_t y) {
        const std::uint8_t* at = counts.rgba.data() + (y * counts.width + x) * 4;
        return std::array<int, 2>{at[0], at[3]};
    };
    EXPECT_EQ(pixel(0, 0), (std::array{0, 0}));
    EXPECT_EQ(pixel(25, 25), (std::array{32, 255}));
    EXPECT_EQ(pixel(37, 37), (std::array{64, 255}));

    EXPECT_EQ(with(view, {"--turn", "4"}).status, 0);
    const std::optional<Bytes> third = readFile(folder.file("a-002.png"));
    EXPECT_EQ(with(view, {"--rotate", "0,32768,0"}).status, 0);
    EXPECT_TRUE(third && third == readFile(picture));
}

TEST_F(Cli, TheManualsBuildScriptsDoNothingTheSecondTime)
{
    const std::string page = textOf("docs/manual/build-scripts.html");
    const auto example = [&](const std::string& id, const std::string& name) {
        std::size_t begin = page.find("<pre id=\"" + id);
        ASSERT_NE(begin, std::string::npos) << id;
        begin = page.find('\n', begin) + 1;
        std::string text = page.substr(begin, page.find("</pre>", begin) - begin);
        for (std::size_t at; (at = text.find("&lt;")) != std::string::npos;)
            text.replace(at, 4, "<");
        put(name, bytesOf(text));
    };
    example("makefile", "Makefile");
    example("cmakelists", "CMakeLists.txt");
    for (const auto& entry : std::filesystem::directory_iterator("samples"))
        if (entry.path().filename().string().starts_with("lighthouse"))
            std::filesystem::copy(entry.path(), folder.path());
    const std::string in = "cd " + folder.path().string() + " && ", log = " >log 2>&1";
    const std::string make = in + "make -j2 CLI=" FACETOR_CLI + log;
    const std::string ninja = in + "ninja -C b" + log;
    const std::string configure = in + "cmake -G Ninja -S . -B b -DFACETOR_CLI=" FACETOR_CLI + log;
    ASSERT_EQ(std::system(make.c_str()), 0) << textOf(folder.file("log"));
    ASSERT_EQ(std::system(make.c_str()), 0);
    EXPECT_EQ(textOf(folder.file("log")), "make: Nothing to be done for 'all'.\n");
    ASSERT_EQ(std::system((configure + " && " + ninja).c_str()), 0) << textOf(folder.file("log"));
    ASSERT_EQ(std::system(ninja.c_str()), 0);
    EXPECT_NE(textOf(folder.file("log")).find("no work to do"), std::string::npos);
    for (const char* name : {"lighthouse.sal", "lighthouse.mdl", "lighthouse.txr"})
        EXPECT_EQ(readFile(folder.file(name)), readFile(folder.file("b/" + std::string(name))));
}

TEST_F(Cli, AReportIsOnePageWithEverythingInIt)
{
    model.names[0] = "<a&b>";
    std::swap(model.polygons[2].corner[1], model.polygons[2].corner[2]); // crossed
    const std::string path = put("cube.mx3", writeModel(model)), page = folder.file("a.html");
    EXPECT_EQ(runProgram({"report", path, "samples/prop.mxt", page}).status, 0);
    const std::string text = textOf(page);
    EXPECT_EQ(text.find("<a&b>"), std::string::npos);
    for (const char* part : {"&lt;a&amp;b&gt;", "<code>quad-crossed</code>", "slot 4", "of 968"})
        EXPECT_NE(text.find(part), std::string::npos) << part;
    for (const char* other : {"<script", "http", "url(", "<link"}) // none but the page itself
        EXPECT_EQ(text.find(other), std::string::npos) << other;
    EXPECT_EQ(runProgram({"report", path, path, page}).status, 1);
    EXPECT_EQ(runProgram({"report", path, folder.file("a.htm")}).status, 2);
}

} // namespace
} // namespace facetor
