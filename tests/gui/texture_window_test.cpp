#include "gui/running_editor.h"
#include "resources/resource_ids.h"
#include "ui/window_data_win.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace facetor {

namespace {

/// The texture list window of a running editor, which is opened with it.
class Textures {
public:
    explicit Textures(const RunningEditor& editor) : editor_(editor)
    {
        editor.sendCommand(IDM_VIEW_TEXTURES);
        EXPECT_TRUE(window());
    }
    HWND window() const
    {
        return editor_.ask([](Editor& e) { return e.textureWindow.window; });
    }

private:
    const RunningEditor& editor_;
};

TEST(TextureWindow, ShowsTheList)
{
    const RunningEditor editor({"samples/ship.mx3", "samples/ship.mxt"});
    const Textures textures(editor);
    EXPECT_EQ(windowText(textures.window()), "Texture List");
    savePicture(editor.pictureOf(textures.window()), "textures");
}

} // namespace

} // namespace facetor
