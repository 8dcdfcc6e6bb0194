#include "commands.h"

#include "base/text.h"
#include "image/image_codec.h"
#include "image/picture.h"
#include "input_file.h"
#include "json.h"
#include "model/model_file.h"
#include "outputs.h"
#include "png.h"
#include "texture/texture_file.h"
#include "view/draw_order.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <utility>

namespace facetor {

namespace {

/// Ends what startEngine() began, also on the way out of a failure.
class RunningEngine {
public:
    RunningEngine() = default;
    ~RunningEngine() { stopEngine(engine); }
    RunningEngine(const RunningEngine&) = delete;
    RunningEngine& operator=(const RunningEngine&) = delete;

    Engine engine;
};

/// Sets the view up as the editor has it after opening the model and a few commands.
void placeView(View& view, Engine& engine, const Model& model, const RenderOptions& options)
{
    view.cameraPosition = options.camera;
    view.viewAngle = options.viewAngle;
    view.perspective = !options.parallel;
    view.lightDirection = options.light;
    view.lightColour = options.lightColour;
    view.ambientColour = options.ambientColour;
    view.backgroundColour = options.backgroundColour;
    view.dragging = options.draw != DragDrawMode::full;
    view.dragDrawMode = options.draw;
    engine.settings.pickedColour = options.pickedColour;
    view.drawnPolygons = options.first.value_or(allPolygons);
    startView(view, engine);
    if (options.fit)
        fitModel(view, engine, model, options.size);
    else
        view.viewScale = options.viewScale;
    view.modelRotation = options.rotation;
    buildViewMatrix(view, engine, ViewDirectionUse::ignore);
    if (options.view) applyFixedView(view, engine, *options.view);
}

/// Draws the frame so often and says how long the whole of it took.
void drawRepeatedly(View& view, Engine& engine, const Model& model, const RenderOptions& options,
                    Progress progress)
{
    using Clock = std::chrono::steady_clock;
    std::vector<std::int64_t> durations;
    durations.reserve(options.repeat);
    ProgressLine line(progress, "frames", options.repeat);
    for (std::uint32_t i = 0; i < options.repeat; ++i) {
        line.show(i);
        view.frameNeedsDrawing = true;
        const Clock::time_point start = Clock::now();
        paintFrame(view, engine, model, options.size);
        durations.push_back(
            std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start).count());
    }
    line.clear();
    std::sort(durations.begin(), durations.end());
    std::fprintf(reportStream(options.output),
                 "frame: median %s us, min %s us, %s polygons drawn\n",
                 std::to_string(durations[durations.size() / 2]).c_str(),
                 std::to_string(durations.front()).c_str(),
                 std::to_string(std::min(engine.entryCount, view.drawnPolygons)).c_str());
}

template <typename Store>
Message readInto(Run& run, Store& store, const std::string& path, Reason& reason,
                 Message (*read)(Store&, const ByteReader&, Reason*))
{
    FileWindow window;
    const std::optional<ByteReader> in = openInput(run, window, path, reason);
    return in ? read(store, *in, &reason) : Message::cannotOpenFile;
}

/// The list as the frame was drawn, far to near.
Bytes orderOf(const Engine& engine, const Model& model)
{
    Json list = Json::array();
    for (const OrderedPolygon& polygon : orderedPolygons(engine, model))
        list.push_back({{"object", polygon.object},
                        {"polygon", polygon.polygon},
                        {"depth", toJson(polygon.depth)},
                        {"sort", polygon.sort == sortNearest    ? "min"
                                 : polygon.sort == sortFarthest ? "max"
                                                                : "cen"}});
    return bytesOf(toText(list) + "\n");
}

/// The frame that was painted as the options want to see it. The surface may be lost.
Picture shownPicture(Engine& engine, const Model& model, const RenderOptions& options)
{
    Picture picture = pictureOf(engine.surface);
    if (options.overdraw || options.transparent) {
        const auto counts = countWrites(engine, model, options.first.value_or(allPolygons));
        for (std::size_t i = 0; i < counts.size(); ++i) {
            constexpr int step = 32; // of grey, for each time
            if (options.overdraw)
                std::fill_n(picture.rgba.data() + i * 4, 3,
                            static_cast<std::uint8_t>(std::min(counts[i] * step, 255)));
            if (options.transparent && counts[i] == 0) picture.rgba[i * 4 + 3] = 0;
        }
    }
    return enlarged(std::move(picture), options.zoom);
}

/// Says on the standard output how a picture differs from one in a file.
int compareWith(Run& run, const Picture& picture, const std::string& path)
{
    Reason reason;
    const std::optional<Bytes> file = readWholeInput(run, path, largestImageFile, reason);
    if (!file) return reportFailure(run, path, Message::cannotOpenFile, reason);
    Picture old;
    if (!decodePicture(old, *file, reason.text))
        return reportFailure(run, path, Message::formatNotSupported, reason);
    const auto sizeOf = [](const Picture& p) {
        return std::to_string(p.width) + 'x' + std::to_string(p.height);
    };
    std::size_t different = 0;
    const bool sameSize = old.width == picture.width && old.height == picture.height;
    if (sameSize) {
        for (std::size_t i = 0; i < picture.rgba.size(); i += 4)
            if (!std::equal(picture.rgba.data() + i, picture.rgba.data() + i + 4,
                            old.rgba.data() + i))
                ++different;
        std::printf("%s pixels differ\n", std::to_string(different).c_str());
    } else {
        std::printf("sizes differ: %s, %s\n", sizeOf(picture).c_str(), sizeOf(old).c_str());
    }
    return finishReport(run, stdout, sameSize && different == 0 ? exitDone : exitFailed);
}

/// Whether the options agree with each other; what is wrong has been reported.
int checkRender(const Run& run, const RenderOptions& options)
{
    const auto wrong = [&](const std::string& what) {
        return reportWrongCommandLine(run, "render: " + what);
    };
    if (!options.compare.empty()) {
        if (!options.output.empty()) return wrong("--compare has no output");
        if (options.turn > 0 || !options.order.empty() || options.repeat > 0)
            return wrong("--turn, --order and --repeat mean nothing with --compare");
        if (!run.depfile.empty() || !run.standardKind.empty() || run.ifChanged)
            return wrong("--compare has no output for --to, --depfile or --if-changed");
    } else if (options.output.empty()) {
        return wrong("OUT.png or --compare is missing; see facetor-cli render --help");
    } else if (const int status = checkOutputKind(run, options.output, "render", "png");
               status != exitDone) {
        return status;
    }
    if (options.turn > 0 && options.output == standardStream)
        return wrong("--turn writes files, not the standard output");
    if (options.turn > 0 && (!options.order.empty() || options.repeat > 0))
        return wrong("--order and --repeat mean nothing with --turn");
    if (!options.order.empty() && options.order != standardStream &&
        !equalIgnoringCase(extensionOf(options.order), "json"))
        return wrong("--order writes .json files only, not \"" + options.order + "\"");
    std::vector<std::string> streams{options.model, options.textures, options.compare};
    if (std::count(streams.begin(), streams.end(), standardStream) > 1)
        return wrong("the standard input holds one file only");
    return exitDone;
}

/// "ship-007.png" of "ship.png".
std::string numbered(const std::string& path, std::uint32_t number)
{
    std::string digits = std::to_string(number);
    digits.insert(0, 3 - std::min<std::size_t>(digits.size(), 3), '0');
    return std::string(cutExtension(path)) + '-' + digits + '.' + std::string(extensionOf(path));
}

} // namespace

int runRender(Run& run, const RenderOptions& options)
{
    if (const int status = checkRender(run, options); status != exitDone) return status;
    Model model;
    TextureList textures;
    RunningEngine running;
    Engine& engine = running.engine;
    for (const Message message : {createModelStore(model), textures.create(), startEngine(engine)})
        if (message != Message::none) return reportFailure(run, options.model, message);

    Reason reason;
    Message message = readInto(run, model, options.model, reason, readModel);
    if (message != Message::none) return reportFailure(run, options.model, message, reason);
    if (!options.textures.empty()) {
        message = readInto(run, textures, options.textures, reason, readTextures);
        if (message != Message::none) return reportFailure(run, options.textures, message, reason);
    }
    engine.settings.textures = textures.slots();
    if (options.selectAll)
        for (std::uint32_t i = 0; i < model.totalPolygonCount; ++i)
            model.attributes[i].flags |= picked;

    View view;
    placeView(view, engine, model, options);
    if (options.repeat > 0) {
        drawRepeatedly(view, engine, model, options, run.progress);
        // Before the picture is written: a failed command writes none.
        if (const int status = finishReport(run, reportStream(options.output), exitDone);
            status != exitDone)
            return status;
    } else {
        paintFrame(view, engine, model, options.size);
    }

    std::vector<Output> outputs;
    if (!options.order.empty()) outputs.push_back({options.order, orderOf(engine, model), {}});
    const Alpha alpha = options.transparent ? Alpha::kept : Alpha::left;
    for (std::uint32_t i = 0; i < std::max(options.turn, 1u); ++i) {
        if (i > 0) {
            const std::uint64_t angle = std::uint64_t{i} * fullTurn / options.turn;
            RenderOptions turned = options;
            turned.rotation[1] =
                static_cast<Angle>(static_cast<std::uint32_t>(options.rotation[1]) +
                                   static_cast<std::uint32_t>(angle));
            placeView(view, engine, model, turned);
            paintFrame(view, engine, model, options.size);
        }
        const Picture picture = shownPicture(engine, model, options);
        if (!options.compare.empty()) return compareWith(run, picture, options.compare);
        Bytes png = encodePng(picture, alpha);
        if (png.empty()) return reportFailure(run, options.model, Message::outOfMemory);
        outputs.insert(
            outputs.begin() + i,
            {options.turn > 0 ? numbered(options.output, i) : options.output, std::move(png), {}});
    }
    return writeOutputs(run, outputs);
}

} // namespace facetor
