#include "base/single_precision.h"
#include "model/model_file.h"
#include "texture/texture_file.h"
#include "view/selection.h"
#include "view/view.h"
#include "view/view_tools.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace facetor {

namespace {

struct Editor {
    Model model;
    Engine engine;
    View view;
    TextureList textures;
    std::uint64_t frames = 14695981039346656037u; ///< the hash of all of them

    void paint(ClientSize client = {640, 480})
    {
        view.frameNeedsDrawing = true;
        EXPECT_TRUE(paintFrame(view, engine, model, client));
        for (std::uint32_t i = 0; i < engine.surface.pixelCount(); ++i)
            frames = (frames ^ (engine.surface.pixels()[i] & 0x7FFFu)) * 1099511628211u;
    }
};

} // namespace

/// What every way of looking at the samples shows, from matrices to pixels: taken when the parts of
/// it were tested by themselves. `facetor-cli render` shows what a change of it looks like.
TEST(Frames, OfTheSamplesAreFrozen)
{
    const SinglePrecision single;
    const std::pair<std::string, std::uint64_t> samples[] = {
        {"ship", 0x6EE617431D8EACB0}, {"prop", 0xB5D6AB61C66BF61F}, {"max", 0xB96961B0F40466DB}};
    for (const auto& [name, expected] : samples) {
        const auto editor = std::make_unique<Editor>();
        auto& [model, engine, view, textures, frames] = *editor;
        ASSERT_EQ(createModelStore(model), Message::none);
        ASSERT_EQ(textures.create(), Message::none);
        ASSERT_EQ(startEngine(engine), Message::none);
        ASSERT_EQ(readModelFile(model, "samples/" + name + ".mx3"), Message::none);
        ASSERT_EQ(readTextureFile(textures, "samples/" + name + ".mxt"), Message::none);
        engine.settings.textures = textures.slots();
        startView(view, engine);
        editor->paint();
        fitModel(view, engine, model, {640, 480});
        for (const bool perspective : {true, false}) {
            view.perspective = perspective;
            for (const FixedView side : {FixedView::forward, FixedView::back, FixedView::left,
                                         FixedView::right, FixedView::top, FixedView::bottom}) {
                applyFixedView(view, engine, side);
                editor->paint();
            }
            const ScreenPoint cursor{400, 300};
            applyViewTool(view, engine, ViewTool::rotateModel, {37, -21, cursor, false});
            editor->paint();
            applyViewTool(view, engine, ViewTool::rotateModel, {5, 40, cursor, true});
            applyViewTool(view, engine, ViewTool::translateModel, {-3, 8, cursor, false});
            applyViewTool(view, engine, ViewTool::translateModel, {0, -4, cursor, true});
            view.viewAngle += 3000;
            view.lightColour = rgb555(31, 20, 10);
            view.lightDirection = {-0.6f, 0, 0.8f};
            view.ambientColour = rgb555(3, 2, 9);
            editor->paint({500, 300});
            view.dragging = true;
            for (const DragDrawMode mode :
                 {DragDrawMode::wire, DragDrawMode::full, DragDrawMode::flat}) {
                view.dragDrawMode = mode;
                applyViewTool(view, engine, ViewTool::scaleModel, {6, 2, cursor, false});
                editor->paint();
            }
            view.dragging = false;
            selectAll(model, perspective ? Mark::set : Mark::clear);
            editor->paint();
        }
        EXPECT_EQ(frames, expected) << name;
    }
}

} // namespace facetor
