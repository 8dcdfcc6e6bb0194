#include "cli/run_program.h"

#include "base/file.h"
#include "base/temporary_folder.h"
#include "model/model_file.h"
#include "output/model_source.h"
#include "output/target_image.h"
#include "output/texture_source.h"
#include "texture/texture_file.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#define STBI_ONLY_PNG
#define STBI_NO_STDIO
#define STBI_NO_FAILURE_STRINGS
#include <stb/stb_image.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <set>

namespace facetor {
namespace {

using Json = nlohmann::ordered_json;

Bytes bytesOf(std::string_view text)
{
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

/// An RGB picture, top row first.
struct Picture {
    int width = 0, height = 0;
    std::vector<std::uint8_t> rgb;

    std::array<int, 3> at(int x, int y) const
    {
        const std::uint8_t* pixel = rgb.data() + (y * width + x) * 3;
        return {pixel[0], pixel[1], pixel[2]};
    }
    /// How many pixels are of each colour.
    std::map<std::array<int, 3>, int> colours() const
    {
        std::map<std::array<int, 3>, int> counts;
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) ++counts[at(x, y)];
        return counts;
    }
};

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

    /// Renders the cube with more options and decodes the picture.
    Picture rendered(std::vector<std::string> options) const
    {
        const std::string path = folder.file("picture.png");
        options.insert(options.begin(), {"render", cube, path});
        const ProgramRun run = runProgram(options);
        EXPECT_EQ(run.status, 0) << run.errors;
        const std::optional<Bytes> png = readFile(path);
        Picture picture;
        if (!png) return picture;
        int channels = 0;
        stbi_uc* pixels = stbi_load_from_memory(reinterpret_cast<const stbi_uc*>(png->data()),
                                                static_cast<int>(png->size()), &picture.width,
                                                &picture.height, &channels, 0);
        EXPECT_NE(pixels, nullptr);
        EXPECT_EQ(channels, 3);
        if (pixels && channels == 3)
            picture.rgb.assign(pixels, pixels + picture.width * picture.height * 3);
        stbi_image_free(pixels);
        return picture;
    }

    Model model;
    TemporaryFolder folder;
    std::string cube;
};

TEST_F(Cli, EveryLevelHasHelpAndAVersion)
{
    for (const char* command : {"", "info", "check", "convert", "render", "scene"}) {
        SCOPED_TRACE(command);
        std::vector<std::string> words;
        if (*command) words.push_back(command);
        words.push_back("--version");
        const ProgramRun version = runProgram(words);
        EXPECT_EQ(version.status, 0);
        EXPECT_EQ(version.output, "facetor-cli " FACETOR_VERSION "\n");
        words.back() = "--help";
        const ProgramRun help = runProgram(words);
        EXPECT_EQ(help.status, 0);
        EXPECT_NE(help.output.find("--version"), std::string::npos);
        EXPECT_EQ(help.errors, "");
    }
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
    for (const char* command : {"info", "check", "convert", "render", "scene"}) {
        const ProgramRun run = runProgram({command, "--help"});
        EXPECT_NE(run.output.find("\nExamples:\n  facetor-cli " + std::string(command)),
                  std::string::npos)
            << run.output;
        help += run.output;
    }
    const auto textOf = [](const char* name) {
        const std::optional<Bytes> bytes = readFile(FACETOR_CLI_SOURCES "/" + std::string(name));
        return bytes ? std::string(reinterpret_cast<const char*>(bytes->data()), bytes->size())
                     : std::string();
    };
    std::string page = textOf("facetor-cli.1");
    std::erase(page, '\\'); // before every hyphen
    EXPECT_EQ(optionsIn(page), optionsIn(help));
    EXPECT_EQ(optionsIn(textOf("completions/facetor-cli.bash")), optionsIn(help));
}

TEST_F(Cli, LongWorkIsCountedOnATerminal)
{
    const std::vector<std::string> words = {"render", cube, folder.file("a.png"), "--repeat",
                                            "1000000"};
    const std::string seen = errorsOnTerminal(words, " of 1000000 frames");
    EXPECT_NE(seen.find(" of 1000000 frames"), std::string::npos) << seen;

    std::vector<std::string> quiet = {"check", "-q"}, many = {"check"};
    for (int i = 0; i < 3; ++i) {
        quiet.push_back(cube);
        many.push_back(cube);
    }
    EXPECT_EQ(errorsOnTerminal(quiet, {}), "");
    EXPECT_EQ(errorsOnTerminal(many, {}), "") << "what is done at once is not counted";
}

TEST_F(Cli, AWrongCommandLineIsExitTwoAndOneLine)
{
    const std::string out = folder.file("out.png");
    const std::vector<std::string> rows[] = {
        {},
        {"frobnicate"},
        {"info"},
        {"info", cube, cube},
        {"info", cube, "--xml"},
        {"check"},
        {"convert", cube},
        {"convert", cube, out},
        {"convert", cube, folder.file("noextension")},
        {"convert", cube, cube, folder.file("a.mx3")},
        {"render", cube},
        {"render", cube, out, "--size", "641x480"},
        {"render", cube, out, "--size", "640x490"},
        {"render", cube, out, "--size", "3x3"},
        {"render", cube, out, "--size", "640"},
        {"render", cube, out, "--size", "64 x48"},
        {"render", cube, out, "--camera", "0,0"},
        {"render", cube, out, "--camera", "0,0,nan"},
        {"render", cube, out, "--camera", "0,0,inf"},
        {"render", cube, out, "--camera", "0,0,1e39"},
        {"render", cube, out, "--camera", "0,0,700,1"},
        {"render", cube, out, "--camera", "0,0,700mm"},
        {"render", cube, out, "--rotate", "1.5,0,0"},
        {"render", cube, out, "--rotate", "0,0,2147483648"},
        {"render", cube, out, "--view", "sideways"},
        {"render", cube, out, "--view-scale", "2"}, // counts only with --no-fit
        {"render", cube, out, "--angle", "0"},
        {"render", cube, out, "--angle", "180"},
        {"render", cube, out, "--draw", "solid"},
        {"render", cube, out, "--light", "1,2"},
        {"render", cube, out, "--light-color", "0,0,32"},
        {"render", cube, out, "--ambient", "-1,0,0"},
        {"render", cube, out, "--background", "0x10,0,0"},
        {"render", cube, out, "--picked", ""},
        {"render", cube, out, "--select", "some"},
        {"render", cube, out, "--repeat", "0"},
        {"render", cube, out, "--repeat", "many"},
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

TEST_F(Cli, InfoDescribesATextureList)
{
    TextureList list;
    ASSERT_EQ(list.create(), Message::none);
    for (const std::uint32_t slot : {0u, 2u}) {
        PageArray<Rgb555> pixels;
        ASSERT_TRUE(pixels.allocate(16 * 8));
        list.set(slot, 16, 8, std::move(pixels));
    }
    const std::string path = put("list.mxt", writeTextures(list));
    EXPECT_EQ(runProgram({"info", "--json", path}).output,
              R"({"type":"textures","used":3,"textures":[{"slot":0,"width":16,"height":8},)"
              R"({"slot":2,"width":16,"height":8}]})"
              "\n");
    EXPECT_EQ(runProgram({"info", path}).output, "texture list: 3 slots used\n"
                                                 "slot 0: 16 x 8\nslot 2: 16 x 8\n");
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
              "facetor-cli: " + missing + ": Cannot open File.\n");
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

TEST_F(Cli, CheckReadsEveryFileAndFailsWhenOneDoes)
{
    const std::string bad = put("bad.mx3", bytesOf("MX3D"));
    const ProgramRun run = runProgram({"check", cube, bad, cube});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.output, cube + ": ok\n" + cube + ": ok\n");
    EXPECT_TRUE(run.errors.starts_with("facetor-cli: " + bad + ": Sorry")) << run.errors;
    EXPECT_EQ(runProgram({"check", "-q", cube}).output, cube + ": ok\n") << "no mere progress";
}

TEST_F(Cli, AnOutputThatTakesNothingIsAFailure)
{
    const std::string picture = folder.file("picture.png");
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"info", cube},
          {"info", "--json", cube},
          {"check", cube},
          {"render", cube, picture, "--size", "8x8", "--repeat", "1"}}) {
        SCOPED_TRACE(words[0]);
        const ProgramRun run = runProgram(words, "/dev/full");
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.errors, "facetor-cli: standard output: Cannot create File.\n");
    }
    EXPECT_FALSE(readFile(picture)) << "a failed command writes nothing";
}

TEST_F(Cli, AWrongWordIsNamedAndAWrongValueGetsItsRange)
{
    const std::string see = "; see facetor-cli ";
    for (const auto& [words, text] :
         {std::pair{std::vector{"frobnicate", "x"}, "\"frobnicate\" is no command" + see},
          {{}, "a command is missing" + see},
          {{"info"}, "FILE is required" + see + "info "}})
        EXPECT_EQ(runProgram({words.begin(), words.end()}).errors,
                  "facetor-cli: " + text + "--help\n");
    const std::string error =
        runProgram({"render", cube, folder.file("a.png"), "--angle", "180"}).errors;
    EXPECT_NE(error.find("--angle"), std::string::npos) << error;
    EXPECT_NE(error.find("\"180\""), std::string::npos) << error;
    EXPECT_NE(error.find("1 to 179 degrees"), std::string::npos) << error;
}

TEST_F(Cli, ConvertWritesTheCurrentLayout)
{
    const Bytes current = writeModel(model);
    Bytes older = current;
    older[9] = std::byte{0x00}; // version 0x00010000, whose OBJT has no matrix
    older.erase(older.begin() + 272, older.begin() + 320);
    const std::string source = put("older.mx3", older), output = folder.file("new.mx3");
    const ProgramRun run = runProgram({"convert", source, output});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, "wrote " + output + "\n");
    EXPECT_EQ(readFile(output), current);
    EXPECT_EQ(runProgram({"-q", "convert", source, source}).output, "") << "in place, quietly";
    EXPECT_EQ(readFile(source), current);
}

TEST_F(Cli, ConvertWritesAModelAsTheEditorsSource)
{
    const std::string output = folder.file("cube.MDL");
    EXPECT_EQ(runProgram({"convert", cube, output}).status, 0);
    ASSERT_EQ(readModelFile(model, cube), Message::none); // with the face normals of its corners
    EXPECT_TRUE(readFile(output) == bytesOf(formatModelSource(model, "cube.MDL").view()));
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
    PageArray<Rgb555> pixels;
    ASSERT_TRUE(pixels.allocate(264));
    list.set(0, 264, 1, std::move(pixels));
    const std::string wide = put("wide.mxt", writeTextures(list)), none = folder.file("none.sal");
    EXPECT_NE(runProgram({"convert", wide, none}).errors.find("texture 0 is 264 texels wide"),
              std::string::npos);
    EXPECT_FALSE(readFile(none));
}

TEST_F(Cli, ConvertKeepsTheSlotsOfATextureList)
{
    TextureList list;
    ASSERT_EQ(list.create(), Message::none);
    PageArray<Rgb555> pixels;
    ASSERT_TRUE(pixels.allocate(8 * 2));
    for (std::size_t i = 0; i < 16; ++i) pixels[i] = static_cast<Rgb555>(i * 4321);
    list.set(100, 8, 2, std::move(pixels));
    const Bytes bytes = writeTextures(list);
    const std::string source = put("list.mxt", bytes), output = folder.file("again.mxt");
    EXPECT_EQ(runProgram({"convert", source, output}).status, 0);
    EXPECT_EQ(readFile(output), bytes);
    const std::string asSource = folder.file("list.TXR");
    EXPECT_EQ(runProgram({"convert", source, asSource}).status, 0);
    EXPECT_TRUE(readFile(asSource) == bytesOf(formatTextureSource(list, asSource).view()));

    Bytes empty(bytes.begin(), bytes.begin() + 264);
    empty[12] = std::byte{0}; // no chunks
    const ProgramRun run = runProgram({"convert", put("empty.mxt", empty), output});
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.errors.find("Texture data is empty. Nothing to edit. "), std::string::npos);
    EXPECT_EQ(readFile(output), bytes) << "the old output stands";
}

TEST_F(Cli, AFailureLeavesNoOutputAndAnOldOneAsItWas)
{
    const std::string bad = put("bad.mx3", bytesOf("MX3D"));
    const std::string old = put("old.mx3", bytesOf("old contents"));
    const std::string oldPicture = put("old.png", bytesOf("old picture"));
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
        {"render", cube, folder.path().string()},
        {"render", cube, "/dev/full"},
        {"scene", "/dev/full"},
        {"scene", folder.path().string()},
        {"convert", cube, folder.file("missing/new.sal")},
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
}

TEST_F(Cli, PathsAreBytesOfUtf8)
{
    const std::string source = put("mod\xC3\xA8le \xE6\xA8\xA1.mx3", writeModel(model));
    const std::string output = folder.file("\xE6\xA8\xA1.png");
    EXPECT_EQ(runProgram({"check", source}).output, source + ": ok\n");
    EXPECT_EQ(runProgram({"render", source, output, "-q"}).status, 0);
    EXPECT_TRUE(readFile(output).has_value());
}

TEST_F(Cli, RenderDrawsTheFrameSurface)
{
    const Picture picture = rendered({});
    EXPECT_EQ(picture.width, 640);
    EXPECT_EQ(picture.height, 480);
    EXPECT_EQ(picture.at(0, 0), (std::array<int, 3>{0, 0, 128})) << "the background";
    const auto middle = picture.at(320, 240); // the white front face, with light
    EXPECT_EQ(middle[0], middle[1]);
    EXPECT_EQ(middle[1], middle[2]);
    EXPECT_GT(middle[0], 128);
    for (const auto& [colour, count] : picture.colours())
        for (const int component : colour) EXPECT_EQ(component % 8, 0) << component;
}

TEST_F(Cli, RenderOptionsChangeThePicture)
{
    using Colour = std::array<int, 3>;
    const Picture plain = rendered({});
    EXPECT_EQ(rendered({"--background", "31,0,1"}).at(0, 0), (Colour{248, 0, 8}));
    // No face is lit more than none: full ambient light gives every component its most.
    EXPECT_EQ(rendered({"--ambient", "31,0,0", "--light", "0,0,0"}).at(320, 240),
              (Colour{248, 248, 248}));
    EXPECT_GT(rendered({"--select", "all"}).colours()[(Colour{0, 248, 0})], 100);
    EXPECT_GT(rendered({"--select", "all", "--picked", "1,2,3"}).colours()[(Colour{8, 16, 24})],
              100);
    EXPECT_TRUE(rendered({"--select", "none"}).rgb == plain.rgb);
    for (const std::vector<std::string>& options :
         std::vector<std::vector<std::string>>{{"--view", "back"},
                                               {"--view", "left"},
                                               {"--view", "top"},
                                               {"--rotate", "5000,6000,7000"},
                                               {"--no-fit"},
                                               {"--draw", "wire"},
                                               {"--light", "0,0,-1"},
                                               {"--light-color", "10,20,31"},
                                               {"--no-fit", "--parallel"},
                                               {"--no-fit", "--angle", "120"},
                                               {"--no-fit", "--view-scale", "3"},
                                               {"--no-fit", "--camera", "50,-20.5,600"}}) {
        SCOPED_TRACE(testing::PrintToString(options));
        const Picture changed = rendered(options);
        EXPECT_TRUE(changed.rgb != plain.rgb);
        EXPECT_GT(changed.colours().size(), 1u) << "the cube is still in view";
    }
}

TEST_F(Cli, RenderMapsTheTexturesOfTheList)
{
    for (std::uint32_t i = 0; i < 6; ++i) {
        model.attributes[i].flags = textureMap;
        model.attributes[i].texture = 7;
    }
    const std::string textured = put("textured.mx3", writeModel(model));
    TextureList list;
    ASSERT_EQ(list.create(), Message::none);
    PageArray<Rgb555> pixels;
    ASSERT_TRUE(pixels.allocate(8 * 8));
    std::fill(pixels.begin(), pixels.end(), Rgb555{0x8000 | 21 << 10 | 3 << 5 | 9});
    list.set(7, 8, 8, std::move(pixels));
    const std::string textures = put("list.mxt", writeTextures(list));
    cube = textured;
    EXPECT_GT(rendered({"--textures", textures}).colours()[(std::array<int, 3>{168, 24, 72})],
              1000);
}

TEST_F(Cli, RenderSaysHowLongRepeatedFramesTook)
{
    const ProgramRun run =
        runProgram({"-q", "render", cube, folder.file("a.png"), "--repeat", "5", "--no-fit"});
    unsigned median = 0, least = 0, polygons = 0;
    ASSERT_EQ(std::sscanf(run.output.c_str(), "frame: median %u us, min %u us, %u polygons drawn",
                          &median, &least, &polygons),
              3)
        << run.output;
    EXPECT_GE(median, least);
    EXPECT_EQ(polygons, 1u) << "one face looks at the camera";
}

} // namespace
} // namespace facetor
