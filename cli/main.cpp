// facetor-cli: Facetor without windows. This file is the command line; the commands have theirs.

#include "commands.h"
#include "option_values.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <functional>
#include <map>

namespace facetor {

namespace {

/// Adds an option whose text goes through one of the functions of option_values.h.
template <typename Value, typename Parse>
CLI::Option* addValue(CLI::App& command, const std::string& name, Value& value, Parse parse,
                      const std::string& form, const std::string& help)
{
    return command
        .add_option_function<std::string>(
            name,
            [&value, parse, name, form, help](const std::string& text) {
                const auto parsed = parse(text);
                if (!parsed)
                    throw CLI::ValidationError(name, "\"" + text + "\" is no " + form + " (" +
                                                         help + ")");
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
    for (const auto& [word, choice] : choices) form += (form.empty() ? "" : "|") + word;
    const auto parse = [choices](const std::string& text) -> std::optional<Choice> {
        const auto found = choices.find(text);
        if (found == choices.end()) return std::nullopt;
        return found->second;
    };
    addValue(command, name, value, parse, form, help);
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
void addCommon(CLI::App& command, Progress& progress)
{
    command.set_version_flag("--version", "facetor-cli " FACETOR_VERSION, "Print the version");
    command.add_flag_callback(
        "-q,--quiet", [&progress] { progress = Progress::silent; }, "Do not report progress");
}

constexpr char colourForm[] = "R,G,B";

// What rendering a frame and describing a scene have in common.

void addLight(CLI::App& command, Vector3& direction, Rgb555& colour, Rgb555& ambient)
{
    addValue(command, "--light", direction, parseVector, "X,Y,Z",
             "Light direction, used as given; default 0.577,0.577,0.577");
    addValue(command, "--light-color", colour, parseColour, colourForm,
             "Light colour, 0-31 each; default 31,31,31");
    addValue(command, "--ambient", ambient, parseColour, colourForm,
             "Ambient colour, 0-31 each; default 0,0,0");
}

void addBackground(CLI::App& command, Rgb555& colour)
{
    addValue(command, "--background", colour, parseColour, colourForm,
             "Background colour, 0-31 each; default 0,0,16");
}

void addViewAngle(CLI::App& command, Angle& angle)
{
    addValue(command, "--angle", angle, parseViewAngle, "DEGREES",
             "View angle, 1 to 179 degrees; default 16383 angle units, about 90 degrees");
}

using Action = std::function<int()>;

void addInfo(CLI::App& app, Progress& progress, Action& action)
{
    CLI::App* command = app.add_subcommand(
        "info", "Describe a model (.mx3), a texture list (.mxt) or a target image (.sal)");
    addCommon(*command, progress);
    struct Arguments {
        std::string path;
        bool json = false;
    };
    const auto arguments = std::make_shared<Arguments>();
    command->add_option("FILE", arguments->path, "The file to describe")->required();
    command->add_flag("--json", arguments->json, "Describe it in JSON");
    addExamples(*command,
                {{"facetor-cli info ship.mx3", "lists the objects of a model with their counts"},
                 {"facetor-cli info --json ship.mxt | jq .used",
                  "tells another program how many textures a list holds"},
                 {"facetor-cli info ship.sal", "shows which addresses of the console are filled"}});
    command->callback([&action, arguments] {
        action = [arguments] {
            return runInfo(arguments->path, arguments->json ? InfoFormat::json : InfoFormat::text);
        };
    });
}

void addCheck(CLI::App& app, Progress& progress, Action& action)
{
    CLI::App* command = app.add_subcommand("check", "Read files with all checks on");
    addCommon(*command, progress);
    const auto paths = std::make_shared<std::vector<std::string>>();
    command->add_option("FILE", *paths, "The files to read")->required();
    addExamples(*command,
                {{"facetor-cli check models/*.mx3 models/*.mxt",
                  "says \"ok\" or what is wrong, a line a file; exit status 1 if one is wrong"},
                 {"facetor-cli check models/*.mx3 > good.txt",
                  "keeps the lines of sound files in a file; the others go to the terminal"}});
    command->callback([&action, &progress, paths] {
        action = [&progress, paths] { return runCheck(*paths, progress); };
    });
}

void addConvert(CLI::App& app, Progress& progress, Action& action)
{
    CLI::App* command = app.add_subcommand(
        "convert", "Convert a file into what its new extension says:\n"
                   "  .mx3 to .mx3   reads a model and writes it again in the current layout\n"
                   "  .mx3 to .mdl   writes a model as C source\n"
                   "  .mx3 to .sal   writes a model's target image\n"
                   "  .mxt to .mxt   reads a texture list and writes it again\n"
                   "  .mxt to .txr   writes a texture list as C source\n"
                   "  .mxt to .sal   writes a texture list's target image");
    addCommon(*command, progress);
    const auto options = std::make_shared<ConvertOptions>();
    command->add_option("FILE", options->paths, "The input, then the output")
        ->required()
        ->expected(2, -1);
    addValue(*command, "--scale", options->scale, parseFloat, "S",
             "Scale of positions in a model's target image; default 1.0");
    addExamples(*command,
                {{"facetor-cli convert ship.mx3 ship.mdl",
                  "writes the C tables that a program of the console includes"},
                 {"facetor-cli convert ship.mxt ship.txr", "writes the textures that belong to it"},
                 {"facetor-cli convert ship.mx3 ship.sal --scale 0.5",
                  "writes the image that the monitor program loads, at half the size"},
                 {"facetor-cli convert old.mx3 new.mx3",
                  "brings a model of an earlier layout to today's"}});
    command->callback([&action, &progress, options] {
        action = [&progress, options] { return runConvert(*options, progress); };
    });
}

void addRender(CLI::App& app, Progress& progress, Action& action)
{
    CLI::App* command = app.add_subcommand(
        "render", "Draw one frame of a model as a PNG file, as the editor would");
    addCommon(*command, progress);
    const auto options = std::make_shared<RenderOptions>();
    command->add_option("MODEL", options->model, "The model (.mx3)")->required();
    command->add_option("OUT", options->output, "The picture (.png)")->required();
    command->add_option("--textures", options->textures,
                        "The texture list (.mxt) that the polygons refer to");
    addValue(*command, "--size", options->size, parseSize, "WxH",
             "Client area, 4x1 to 640x489; default 640x480");
    CLI::Option* noFit = command->add_flag_callback(
        "--no-fit", [options] { options->fit = false; },
        "Do not fit the model to the window: model centre 0, view scale 1");
    addValue(*command, "--camera", options->camera, parseVector, "X,Y,Z",
             "Camera position; default 0,0,700");
    addValue(*command, "--rotate", options->rotation, parseAngles, "AX,AY,AZ",
             "Model rotation in angle units, 65536 a turn; default 0,0,0");
    addChoice<std::optional<FixedView>, FixedView>(*command, "--view", options->view,
                                                   {{"forward", FixedView::forward},
                                                    {"back", FixedView::back},
                                                    {"left", FixedView::left},
                                                    {"right", FixedView::right},
                                                    {"top", FixedView::top},
                                                    {"bottom", FixedView::bottom}},
                                                   "One of the fixed views");
    addValue(*command, "--view-scale", options->viewScale, parseFloat, "S", "View scale; default 1")
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
    addValue(*command, "--picked", options->pickedColour, parseColour, colourForm,
             "Colour of picked polygons, 0-31 each; default 0,31,0");
    addChoice(*command, "--select", options->selectAll,
              std::map<std::string, bool>{{"all", true}, {"none", false}},
              "Which polygons are marked as picked; default none");
    addValue(
        *command, "--repeat", options->repeat,
        [](const std::string& text) { return parseInteger(text, 1, 1000000); }, "N",
        "Draw the whole frame N times, 1 to 1000000, and print how long it took");
    addExamples(*command,
                {{"facetor-cli render ship.mx3 ship.png --textures ship.mxt",
                  "draws the model as the editor shows it after opening both"},
                 {"facetor-cli render ship.mx3 top.png --view top --draw wire",
                  "draws its edges from above"},
                 {"facetor-cli render ship.mx3 turned.png --rotate 0,8192,0 --size 320x240",
                  "turns it by an eighth of a turn about the y axis, in a small picture"},
                 {"facetor-cli render ship.mx3 a.png --background 31,31,31 --select all",
                  "marks every polygon, on white"}});
    command->callback([&action, &progress, options] {
        action = [&progress, options] { return runRender(*options, progress); };
    });
}

void addScene(CLI::App& app, Progress& progress, Action& action)
{
    CLI::App* command = app.add_subcommand("scene", "Write the target image of a scene");
    addCommon(*command, progress);
    struct Arguments {
        SceneSettings scene;
        std::string output;
    };
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
    command->callback([&action, &progress, arguments] {
        action = [&progress, arguments] {
            return runScene(arguments->scene, arguments->output, progress);
        };
    });
}

int run(int argumentCount, const char* const* arguments)
{
    Progress progress = Progress::shown;
    Action action;
    CLI::App app("Facetor without windows: describes, checks, converts and renders its files",
                 "facetor-cli");
    app.require_subcommand(1);
    addExamples(app, {{"facetor-cli info ship.mx3", "what is in a file"},
                      {"facetor-cli check models/*", "whether files are sound"},
                      {"facetor-cli convert ship.mx3 ship.mdl", "a model as C source"},
                      {"facetor-cli render ship.mx3 ship.png --textures ship.mxt", "its picture"},
                      {"facetor-cli COMMAND --help", "what a command takes, with more examples"}});
    addCommon(app, progress);
    addInfo(app, progress, action);
    addCheck(app, progress, action);
    addConvert(app, progress, action);
    addRender(app, progress, action);
    addScene(app, progress, action);
    try {
        app.parse(argumentCount, arguments);
    } catch (const CLI::Success& answer) { // help or the version
        return app.exit(answer);
    } catch (const CLI::RequiredError& error) {
        const std::vector<CLI::App*> commands = app.get_subcommands();
        if (!commands.empty())
            return reportWrongCommandLine(std::string(error.what()) + "; see facetor-cli " +
                                          commands.front()->get_name() + " --help");
        const std::vector<std::string> words = app.remaining();
        return reportWrongCommandLine(
            (words.empty() ? "a command is missing" : "\"" + words.front() + "\" is no command") +
            "; see facetor-cli --help");
    } catch (const CLI::ParseError& error) {
        return reportWrongCommandLine(error.what());
    }
    return action();
}

} // namespace

} // namespace facetor

int main(int argumentCount, char** arguments)
{
    try {
        return facetor::run(argumentCount, arguments);
    } catch (const std::exception& error) { // memory ran out where nothing reports it
        std::fprintf(stderr, "facetor-cli: %s\n", error.what());
        return facetor::exitFailed;
    }
}
