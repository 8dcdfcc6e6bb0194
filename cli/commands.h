#pragma once

#include "report.h"

#include "base/angle.h"
#include "base/colour.h"
#include "base/geometry.h"
#include "output/target_image.h"
#include "view/view.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace facetor {

// One function a command. Each returns the program's exit status and has reported what failed.

enum class InfoFormat { text, json };

/// Describes a file on the standard output.
int runInfo(const std::string& path, InfoFormat format);

/// Reads every file and says of each "PATH: ok" or what is wrong with it.
int runCheck(const std::vector<std::string>& paths, Progress progress);

struct ConvertOptions {
    std::vector<std::string> paths; ///< the input, then the output
    float scale = 1.0f;             ///< of positions in a model's target image
};

/// Reads `paths` but the last and writes the last; the extensions say what becomes of what.
int runConvert(const ConvertOptions& options, Progress progress);

/// Writes a scene's target image.
int runScene(const SceneSettings& scene, const std::string& output, Progress progress);

/// What `render` is asked for; the defaults are those of a freshly started editor.
struct RenderOptions {
    std::string model;
    std::string output;
    std::string textures; ///< empty: none
    ClientSize size{640, 480};
    bool fit = true;
    Vector3 camera{0, 0, 700};
    std::array<Angle, 3> rotation{};
    std::optional<FixedView> view;
    float viewScale = 1.0f; ///< counts without fit
    Angle viewAngle = defaultViewAngle;
    bool parallel = false;
    DragDrawMode draw = DragDrawMode::full;
    Vector3 light{0.577f, 0.577f, 0.577f};
    Rgb555 lightColour = rgb555(31, 31, 31);
    Rgb555 ambientColour = rgb555(0, 0, 0);
    Rgb555 backgroundColour = rgb555(0, 0, 16);
    Rgb555 pickedColour = rgb555(0, 31, 0);
    bool selectAll = false;
    std::uint32_t repeat = 0; ///< 0: once, without saying how long it took
};

/// Draws one frame of a model into a PNG file.
int runRender(const RenderOptions& options, Progress progress);

} // namespace facetor
