#include "commands.h"

#include "input_file.h"
#include "model/model_file.h"
#include "outputs.h"
#include "png.h"
#include "texture/texture_file.h"

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
    std::fprintf(
        reportStream(options.output), "frame: median %s us, min %s us, %s polygons drawn\n",
        std::to_string(durations[durations.size() / 2]).c_str(),
        std::to_string(durations.front()).c_str(), std::to_string(engine.entryCount).c_str());
}

template <typename Store>
Message readInto(Run& run, Store& store, const std::string& path, Reason& reason,
                 Message (*read)(Store&, const ByteReader&, Reason*))
{
    FileWindow window;
    const std::optional<ByteReader> in = openInput(run, window, path, reason);
    return in ? read(store, *in, &reason) : Message::cannotOpenFile;
}

} // namespace

int runRender(Run& run, const RenderOptions& options)
{
    if (const int status = checkOutputKind(run, options.output, "render", "png");
        status != exitDone)
        return status;
    if (options.model == standardStream && options.textures == standardStream)
        return reportWrongCommandLine(run, "render: the standard input holds one file only");
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

    Bytes png = encodePng(engine.surface);
    if (png.empty()) return reportFailure(run, options.model, Message::outOfMemory);
    return writeOutput(run, {options.output, std::move(png), {}});
}

} // namespace facetor
