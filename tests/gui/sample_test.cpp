#include "driver/running_editor.h"
#include "resources/resource_ids.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

namespace facetor {

namespace {

/// The first row of the model view that is looked at: a little more than any theme makes the tool
/// bar.
constexpr int toolBar = 30;

/// What is in a picture of the model view, between tool bar and status bar and within the frame
/// surface.
struct Shown {
    int left, top, right, bottom; ///< around all that is not background
    std::size_t colours;
};

Shown whatIsShown(const WindowPicture& picture)
{
    constexpr int statusBar = 24; // and a little more than any theme makes it
    const int width = std::min(picture.width, surfaceMaxWidth);
    const int height = std::min(picture.height - statusBar, surfaceMaxHeight);
    const std::uint32_t background = picture.at(0, toolBar);
    Shown shown{width, height, -1, -1, 0};
    std::set<std::uint32_t> colours;
    for (int y = toolBar; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            if (picture.at(x, y) == background) continue;
            colours.insert(picture.at(x, y));
            shown = {std::min(shown.left, x), std::min(shown.top, y), std::max(shown.right, x),
                     std::max(shown.bottom, y), 0};
        }
    shown.colours = colours.size();
    return shown;
}

std::string samplePath(const char* name, const char* extension)
{
    return std::string("samples/") + name + extension;
}

} // namespace

TEST(Samples, FitWindowsOfEverySizeWithTheirTextures)
{
    for (const char* name : {"ship", "prop", "max"}) {
        const RunningEditor editor({samplePath(name, ".mx3"), samplePath(name, ".mxt")});
        for (const auto& [width, height] : {std::pair{300, 240}, {640, 480}, {760, 560}}) {
            SCOPED_TRACE(testing::Message() << name << " at " << width << " x " << height);
            editor.resizeClient(width, height);
            const std::string path = samplePath(name, ".mx3");
            editor.open(path);
            const WindowPicture picture = editor.picture();
            savePicture(picture, std::string("sample-") + name + "-" + std::to_string(width));
            const Shown shown = whatIsShown(picture);
            EXPECT_GT(shown.left, 0);
            EXPECT_LT(shown.right, std::min(width, surfaceMaxWidth) - 1);
            EXPECT_GT(shown.right - shown.left, std::min(width, surfaceMaxWidth) / 4);
            EXPECT_GT(shown.colours, 20u) << "lit polygons and textures";
        }
    }
}

} // namespace facetor
