// facetor-cli: Facetor without windows. This file is the command line; the commands have theirs.

#include "commands.h"
#include "option_values.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <limits>
#include <map>
#include <new>
#include <span>

namespace facetor {

namespace {

/// Adds an option whose text goes through one of the functions of option_values.h. `what` names
/// the values that it takes, like "a number above 0".
template <typename Value, typename Parse>
CLI::Option* addValue(CLI::App& command, const std::string& name, Value& value, Parse parse,
                      const std::string& form, const std::string& what, const std::string& help)
{
    return command
        .add_option_function<std::string>(
            name,
            [&value, parse, name, what](const std::string& text) {
                const auto parsed = parse(text);
                if (!parsed) throw CLI::ValidationError(name, "\"" + text + "\" is not " + what);
                value = *parsed;
            },
            help)
        ->type_name(form);
}

/// Adds an option that takes one of a few words.
template <typename Value, typename Choice>
void addChoice(CLI::App& command, const std::string& name, Value& value,
               const std::map<std::string, Choice>& choices, const std::string& help)
{
    std::string form;
    std::string words;
    for (const auto& [word, choice] : choices) {
        form += (form.empty() ? "" : "|") + word;
        words += (words.empty() ? "one of " : ", ") + word;
    }
    const auto parse = [choices](const std::string& text) -> std::optional<Choice> {
        const auto found = choices.find(text);
        if (found == choices.end()) return std::nullopt;
        return found->second;
    };
    addValue(command, name, value, parse, form, words, help);
}

/// Ends the help of a level with command lines to try, each with a line on what it does.
void addExamples(CLI::App& command,
                 std::initializer_list<std::pair<const char*, const char*>> examples)
{
    std::string text = "Examples:";
    for (const auto& [line, purpose] : examples)
        text += std::string("\n  ") + line + "\n      " + purpose;
    command.footer(text);
}

/// Adds what every level takes.
void addCommon(CLI::App& command, Run& run)
{
    command.set_version_flag("--version", "facetor-cli " FACETOR_VERSION, "Print the version");
    command.add_flag_callback(
        "-q,--quiet", [&run] { run.progress = Progress::silent; }, "Do not report progress");
    command.add_flag_callback(
        "--json", [&run] { run.errors = ErrorFormat::json; }, "Report a failure in JSON");
}

/// Adds what every command that writes a file takes.
void addOutput(CLI::App& command, Run& run)
{
    command
        .add_option("--to", run.standardKind,
                    "Extension that says what is written to the standard output")
        ->type_name("EXT");
    command.add_flag("--if-changed", run.ifChanged,
                     "Do not touch an output whose bytes would be the same");
    command
        .add_option("--depfile", run.depfile,
                    "Also write a make rule: the output and every file that was read")
        ->type_name("FILE");
}

constexpr char colourForm[] = "R,G,B";
constexpr char colourWords[] = "three whole numbers of 0 to 31, like 31,16,0";
constexpr char vectorWords[] = "three numbers, like 0,0.5,-700";

// What rendering a frame and describing a scene have in common.

void addLight(CLI::App& command, Vector3& direction, Rgb555& colour, Rgb555& ambient)
{
    addValue(command, "--light", direction, parseVector, "X,Y,Z", vectorWords,
             "Light direction, used as given; default 0.577,0.577,0.577");
    addValue(command, "--light-color", colour, parseColour, colourForm, colourWords,
             "Light colour, 0-31 each; default 31,31,31");
    addValue(command, "--ambient", ambient, parseColour, colourForm, colourWords,
             "Ambient colour, 0-31 each; default 0,0,0");
}

void addBackground(CLI::App& command, Rgb555& colour)
{
    addValue(command, "--background", colour, parseColour, colourForm, colourWords,
             "Background colour, 0-31 each; default 0,0,16");
}

void addViewAngle(CLI::App& command, Angle& angle)
{
    addValue(command, "--angle", angle, parseViewAngle, "DEGREES", "an angle of 1 to 179 degrees",
             "View angle, 1 to 179 degrees; default 16383 angle units, about 90 degrees");
}

using Action = std::function<int()>;

void addInfo(CLI::App& app, Run& run, Action& action)
{
    CLI::App* command = app.add_subcommand(
        "info", "Describe a model (.mx3), a texture list (.mxt) or a target image (.sal)");
    addCommon(*command, run);
    const auto path = std::make_shared<std::string>();
    command->add_option("FILE", *path, "The file to describe; - for the standard input")
        ->required();
    command->get_option("--json")->description("Describe it, and report a failure, in JSON");
    addExamples(*command,
                {{"facetor-cli info ship.mx3", "lists the objects of a model with their counts"},
                 {"facetor-cli info --json ship.mxt | jq .used",
                  "tells another program how many textures a list holds"},
                 {"facetor-cli info ship.sal", "shows which addresses of the console are filled"}});
    command->callback([&action, &run, path] {
        action = [&run, path] {
            return runInfo(run, *path,
                           run.errors == ErrorFormat::json ? InfoFormat::json : InfoFormat::text);
        };
    });
}

void addCheck(CLI::App& app, Run& run, Action& action)
{
    CLI::App* command = app.add_subcommand("check", "Read files with all checks on");
    addCommon(*command, run);
    const auto options = std::make_shared<CheckOptions>();
    command->add_option("FILE", options->paths, "The files to read")->required();
    CLI::Option* target = command->add_flag(
        "--target", options->target,
        "Also warn of what the target cannot show; a list behind a model is judged with it");
    command->add_flag("--strict", options->strict, "Exit status 1 also for warnings")
        ->needs(target);
    addValue(*command, "--scale", options->scale, parsePositive, "S", "a number above 0",
             "Scale of positions in the model's target image; default 1.0")
        ->needs(target);
    command->get_option("--json")->description(
        "Report a failure in JSON; with --target everything");
    addExamples(*command,
                {{"facetor-cli check models/*.mx3 models/*.mxt",
                  "says \"ok\" or what is wrong, a line a file; exit status 1 if one is wrong"},
                 {"facetor-cli check models/*.mx3 > good.txt",
                  "keeps the lines of sound files in a file; the others go to the terminal"},
                 {"facetor-cli check --target --strict ship.mx3 ship.mxt",
                  "also fails where the target could not show the ship as it is"},
                 {"facetor-cli check --target --json ship.mx3 | jq '.[0].budget.polygons.used'",
                  "tells another program how full the target gets"}});
    command->callback(
        [&action, &run, options] { action = [&run, options] { return runCheck(run, *options); }; });
}

void addConvert(CLI::App& app, Run& run, Action& action)
{
    CLI::App* command = app.add_subcommand(
        "convert",
        "Convert a file into what its new extension says:\n"
        "  .mx3 to .mx3   reads a model and writes it again in the current layout\n"
        "  .mx3 to .mdl   writes a model as C source\n"
        "  .mx3 to .sal   writes a model's target image\n"
        "  .mxt to .mxt   reads a texture list and writes it again\n"
        "  .mxt to .txr   writes a texture list as C source\n"
        "  .mxt to .sal   writes a texture list's target image\n"
        "  .mx3 [.mxt] to .obj   writes a model, its materials and its pictures\n"
        "  .mx3 [.mxt] to .glb   writes all of them into one file, for viewers too\n"
        "  .mx3 .mxt to .sal     writes both target images into one file\n"
        "  pictures to .mxt      makes a texture list of PNG, BMP, TGA, JPEG, GIF\n"
        "  .sal to .mx3, .mxt    reads the model or the textures of a target image back\n"
        "  .mxt to FOLDER/       writes every texture as a PNG file\n"
        "  .obj, .gltf, .glb to .mx3   makes a model of another program's, with its materials");
    addCommon(*command, run);
    const auto options = std::make_shared<ConvertOptions>();
    addOutput(*command, run);
    command->add_option("FILE", options->paths,
                        "The input, then the output; - for the standard input or output");
    addValue(*command, "--scale", options->scale, parsePositive, "S", "a number above 0",
             "Scale of positions in a model's target image or in an import; default 1.0");
    addChoice<std::optional<UpAxis>, UpAxis>(*command, "--up", options->up,
                                             {{"y", UpAxis::y}, {"z", UpAxis::z}},
                                             "Import: the axis that points up; default y");
    command->add_flag("--keep-triangles", options->keepTriangles,
                      "Import: do not rejoin pairs of triangles that make a quad");
    command
        ->add_option("--textures", options->textures,
                     "Import: where the pictures go as a texture list (.mxt)")
        ->type_name("OUT.mxt");
    command
        ->add_option("--onto", options->onto,
                     "Import: the model (.mx3) whose attributes and hierarchy stay")
        ->type_name("OLD.mx3");
    command
        ->add_option("--assets", options->assets,
                     "Import: another folder that material files and pictures may lie in")
        ->type_name("DIR");
    addValue(*command, "--max-texture", options->largestTexture, parseTextureSize, "WxH",
             "a width of 8 to 256 that is a multiple of 8 and a height of 1 to 256, like 64x64",
             "Import: the largest size of a texture; default 64x64");
    addChoice<std::optional<Dither>, Dither>(
        *command, "--dither", options->dither,
        {{"none", Dither::none}, {"ordered", Dither::ordered}, {"diffuse", Dither::diffuse}},
        "Import, pictures: how colours become 15 bits; default none");
    command->add_flag(
        "--fit", options->fit,
        "Pictures: scale down to at most 256x256 and a width that is a multiple of 8");
    addValue(
        *command, "--first", options->first,
        [](const std::string& text) -> std::optional<std::uint32_t> {
            const auto slot = parseInteger(text, 0, textureSlotCount - 1);
            if (!slot) return std::nullopt;
            return static_cast<std::uint32_t>(*slot);
        },
        "N", "a slot of 0 to 4095", "Pictures: the slot to begin at; default 0");
    command->add_flag("--numbered", options->numbered,
                      "Pictures: the slot is the number that ends the file's name");
    addValue(*command, "--transparent", options->transparent, parseColour, colourForm, colourWords,
             "Pictures: the colour that is transparent, 0-31 each, in place of alpha");
    command
        ->add_option("--into", options->into,
                     "Pictures: the list (.mxt) whose other slots stay as they are")
        ->type_name("OLD.mxt");
    command->add_flag_callback(
        "--c-names", [options] { options->names = SourceNames::identifiers; },
        "Make every name in C source an identifier, different objects different ones");
    command
        ->add_option("--header", options->header,
                     "C source: also write a header that declares every table in it")
        ->type_name("FILE");
    addExamples(
        *command,
        {{"facetor-cli convert ship.mx3 ship.mdl",
          "writes the C tables that a program of the console includes"},
         {"facetor-cli convert ship.mxt ship.txr", "writes the textures that belong to it"},
         {"facetor-cli convert ship.mx3 ship.mdl --c-names --header ship.h",
          "also declares the tables, for source files that only name them"},
         {"facetor-cli convert ship.mx3 ship.sal --scale 0.5",
          "writes the image that the monitor program loads, at half the size"},
         {"facetor-cli convert ship.obj ship.mx3 --scale 100 --up z",
          "imports a model made in meters with z up"},
         {"facetor-cli convert ship.obj ship.mx3 --textures ship.mxt --max-texture 32x32",
          "also cuts its pictures into the textures that its polygons show"},
         {"facetor-cli convert ship.obj ship.mx3 --onto ship.mx3",
          "brings in a geometry that has changed, and keeps all attributes"},
         {"facetor-cli convert grass.png stone.png ground.mxt --fit --dither diffuse",
          "makes a list of two textures"},
         {"facetor-cli convert ship.mxt pictures/", "writes every texture as a PNG file"},
         {"facetor-cli convert pictures/*.png ship.mxt --numbered --into ship.mxt",
          "takes them back into their slots"},
         {"facetor-cli convert ship.mx3 ship.mxt ship.obj", "for modellers"},
         {"facetor-cli convert ship.mx3 ship.mxt ship.glb",
          "for modellers and viewers; from it come the same model and list again"},
         {"facetor-cli convert old.mx3 new.mx3", "brings a model of an earlier layout to today's"},
         {"facetor-cli convert ship.mx3 ship.mdl --if-changed --depfile ship.d",
          "for make: leaves an unchanged output alone and says what it depends on"},
         {"unzip -p art.zip ship.mx3 | facetor-cli convert - - --to mdl > ship.mdl",
          "reads from one program and writes for another"}});
    command->callback([&action, &run, options] {
        action = [&run, options] { return runConvert(run, *options); };
    });
}

void addRender(CLI::App& app, Run& run, Action& action)
{
    CLI::App* command = app.add_subcommand(
        "render", "Draw one frame of a model as a PNG file, as the editor would");
    addCommon(*command, run);
    addOutput(*command, run);
    const auto options = std::make_shared<RenderOptions>();
    command->add_option("MODEL", options->model, "The model (.mx3)")->required();
    command->add_option("OUT", options->output, "The picture (.png); not with --compare");
    command->add_option("--textures", options->textures,
                        "The texture list (.mxt) that the polygons refer to");
    addValue(*command, "--size", options->size, parseSize, "WxH",
             "a size of 4x1 to 640x489, like 320x240",
             "Client area, 4x1 to 640x489; default 640x480");
    CLI::Option* noFit = command->add_flag_callback(
        "--no-fit", [options] { options->fit = false; },
        "Do not fit the model to the window: model centre 0, view scale 1");
    addValue(*command, "--camera", options->camera, parseVector, "X,Y,Z", vectorWords,
             "Camera position; default 0,0,700");
    addValue(*command, "--rotate", options->rotation, parseAngles, "AX,AY,AZ",
             "three whole numbers, like 0,16384,0",
             "Model rotation in angle units, 65536 a turn; default 0,0,0");
    addChoice<std::optional<FixedView>, FixedView>(*command, "--view", options->view,
                                                   {{"forward", FixedView::forward},
                                                    {"back", FixedView::back},
                                                    {"left", FixedView::left},
                                                    {"right", FixedView::right},
                                                    {"top", FixedView::top},
                                                    {"bottom", FixedView::bottom}},
                                                   "One of the fixed views");
    addValue(*command, "--view-scale", options->viewScale, parseFloat, "S", "a number",
             "View scale; default 1")
        ->needs(noFit);
    addViewAngle(*command, options->viewAngle);
    command->add_flag("--parallel", options->parallel, "Parallel projection");
    addChoice(*command, "--draw", options->draw,
              std::map<std::string, DragDrawMode>{{"full", DragDrawMode::full},
                                                  {"flat", DragDrawMode::flat},
                                                  {"wire", DragDrawMode::wire}},
              "Draw mode; default full");
    addLight(*command, options->light, options->lightColour, options->ambientColour);
    addBackground(*command, options->backgroundColour);
    addValue(*command, "--picked", options->pickedColour, parseColour, colourForm, colourWords,
             "Colour of picked polygons, 0-31 each; default 0,31,0");
    addChoice(*command, "--select", options->selectAll,
              std::map<std::string, bool>{{"all", true}, {"none", false}},
              "Which polygons are marked as picked; default none");
    addValue(
        *command, "--repeat", options->repeat,
        [](const std::string& text) { return parseInteger(text, 1, 1000000); }, "N",
        "a whole number of 1 to 1000000",
        "Draw the whole frame N times, 1 to 1000000, and print how long it took");
    command
        ->add_option("--order", options->order,
                     "Also write the sorted list, far to near: object, polygon, depth, Z-sort rule")
        ->type_name("FILE.json");
    const auto addCount = [&](const std::string& name, auto& value, std::int32_t least,
                              std::int32_t most, const std::string& help) {
        addValue(
            *command, name, value,
            [least, most](const std::string& text) -> std::optional<std::uint32_t> {
                const auto number = parseInteger(text, least, most);
                if (!number) return std::nullopt;
                return static_cast<std::uint32_t>(*number);
            },
            "N", "a whole number of " + std::to_string(least) + " to " + std::to_string(most),
            help);
    };
    addCount("--first", options->first, 0, std::numeric_limits<std::int32_t>::max(),
             "Draw only the first N polygons of that list");
    addCount("--zoom", options->zoom, 1, 8, "Enlarge the picture, 1 to 8 times");
    command->add_flag("--transparent", options->transparent,
                      "An alpha channel, 0 where nothing was drawn");
    addCount("--turn", options->turn, 1, 1000,
             "Draw N pictures of a turn about the y axis, OUT-000.png and so on");
    command
        ->add_option("--compare", options->compare,
                     "Write nothing, say how many pixels differ from a picture; exit status 1 "
                     "unless none does")
        ->type_name("OLD.png");
    command->add_flag("--overdraw", options->overdraw,
                      "Show how often each pixel was written: 32 of grey for each time");
    addExamples(*command,
                {{"facetor-cli render ship.mx3 ship.png --textures ship.mxt",
                  "draws the model as the editor shows it after opening both"},
                 {"facetor-cli render ship.mx3 top.png --view top --draw wire",
                  "draws its edges from above"},
                 {"facetor-cli render ship.mx3 turned.png --rotate 0,8192,0 --size 320x240",
                  "turns it by an eighth of a turn about the y axis, in a small picture"},
                 {"facetor-cli render ship.mx3 a.png --background 31,31,31 --select all",
                  "marks every polygon, on white"},
                 {"facetor-cli render ship.mx3 turn.png --turn 16 --transparent",
                  "makes turn-000.png to turn-015.png, to be laid over something"},
                 {"facetor-cli render ship.mx3 --compare ship.png || echo changed",
                  "tells whether the model still looks as it did"},
                 {"facetor-cli render ship.mx3 a.png --first 20 --order ship.json",
                  "draws the twenty farthest polygons and lists all of them"},
                 {"facetor-cli render ship.mx3 hot.png --overdraw",
                  "shows where the console draws one over the other"}});
    command->callback([&action, &run, options] {
        action = [&run, options] { return runRender(run, *options); };
    });
}

void addScene(CLI::App& app, Run& run, Action& action)
{
    CLI::App* command = app.add_subcommand("scene", "Write the target image of a scene");
    addCommon(*command, run);
    struct Arguments {
        SceneSettings scene;
        std::string output;
    };
    addOutput(*command, run);
    const auto arguments = std::make_shared<Arguments>();
    SceneSettings& scene = arguments->scene;
    command->add_option("OUT", arguments->output, "The target image (.sal)")->required();
    addLight(*command, scene.lightDirection, scene.lightColour, scene.ambientColour);
    addBackground(*command, scene.backgroundColour);
    addViewAngle(*command, scene.viewAngle);
    addExamples(
        *command,
        {{"facetor-cli scene scene.sal", "writes a freshly started editor's scene"},
         {"facetor-cli scene dusk.sal --light 1,0.2,0 --light-color 31,20,10 --ambient 4,4,8",
          "orange light, bluish shadows"}});
    command->callback([&action, &run, arguments] {
        action = [&run, arguments] { return runScene(run, arguments->scene, arguments->output); };
    });
}

void addReport(CLI::App& app, Run& run, Action& action)
{
    CLI::App* command = app.add_subcommand(
        "report", "Write an HTML page about a model: views, limits, warnings, textures");
    addCommon(*command, run);
    addOutput(*command, run);
    struct Arguments {
        std::vector<std::string> paths;
        float scale = 1;
    };
    const auto arguments = std::make_shared<Arguments>();
    command->add_option("FILE", arguments->paths,
                        "The model (.mx3), perhaps its texture list (.mxt), then the page (.html)");
    addValue(*command, "--scale", arguments->scale, parsePositive, "S", "a number above 0",
             "Scale of positions in the model's target image; default 1.0");
    addExamples(*command, {{"facetor-cli report ship.mx3 ship.mxt ship.html",
                            "makes one page with everything in it, for a review"},
                           {"facetor-cli report ship.mx3 ship.html --if-changed",
                            "leaves a page alone that would be the same"}});
    command->callback([&action, &run, arguments] {
        action = [&run, arguments] { return runReport(run, arguments->paths, arguments->scale); };
    });
}

/// Whether failures are to be in JSON also of a command line that cannot be parsed.
bool asksForJson(int argumentCount, const char* const* arguments)
{
    const std::span<const char* const> words(arguments, static_cast<std::size_t>(argumentCount));
    const auto end = std::find(words.begin(), words.end(), std::string_view("--"));
    return std::find(words.begin(), end, std::string_view("--json")) != end;
}

/// What is wrong with a command line, in words.
std::string describe(const CLI::App& app, const CLI::ParseError& error)
{
    const std::vector<CLI::App*> commands =
        const_cast<CLI::App&>(app).get_subcommands(); // a list of pointers, nothing changes
    const std::string level = commands.empty() ? "" : commands.front()->get_name() + ' ';
    const std::string see = "; see facetor-cli " + level + "--help";
    if (error.get_name() == "RequiredError") {
        if (!commands.empty()) return error.what() + see;
        const std::vector<std::string> words = app.remaining();
        return (words.empty() ? "a command is missing"
                              : "\"" + words.front() + "\" is no command") +
               see;
    }
    if (error.get_name() == "ArgumentMismatch") {
        const std::string what = error.what(); // "--size: 1 required WxH missing"
        return what.substr(0, what.find(':')) + " needs a value behind it" + see;
    }
    return error.what();
}

int run(int argumentCount, const char* const* arguments)
{
    Run run;
    if (asksForJson(argumentCount, arguments)) run.errors = ErrorFormat::json;
    Action action;
    CLI::App app("Facetor without windows: describes, checks, converts and renders its files",
                 "facetor-cli");
    app.require_subcommand(1);
    addExamples(app, {{"facetor-cli info ship.mx3", "what is in a file"},
                      {"facetor-cli check models/*", "whether files are sound"},
                      {"facetor-cli convert ship.mx3 ship.mdl", "a model as C source"},
                      {"facetor-cli render ship.mx3 ship.png --textures ship.mxt", "its picture"},
                      {"facetor-cli COMMAND --help", "what a command takes, with more examples"}});
    addCommon(app, run);
    addInfo(app, run, action);
    addCheck(app, run, action);
    addConvert(app, run, action);
    addRender(app, run, action);
    addScene(app, run, action);
    addReport(app, run, action);
    try {
        app.parse(argumentCount, arguments);
    } catch (const CLI::Success& answer) { // help or the version
        return app.exit(answer);
    } catch (const CLI::ParseError& error) {
        return reportWrongCommandLine(run, describe(app, error));
    }
    try {
        return action();
    } catch (const std::bad_alloc&) { // where nothing else reports it
        return reportFailure(run, "facetor-cli", Message::outOfMemory);
    }
}

} // namespace

} // namespace facetor

int main(int argumentCount, char** arguments)
{
    try {
        return facetor::run(argumentCount, arguments);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "facetor-cli: %s\n", error.what());
        return facetor::exitFailed;
    }
}
