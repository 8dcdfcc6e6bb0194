#pragma once

#include "report.h"

#include "base/angle.h"
#include "base/colour.h"
#include "base/geometry.h"
#include "exchange/model_import.h"
#include "output/source_names.h"
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
int runInfo(Run& run, const std::string& path, InfoFormat format);

struct CheckOptions {
    std::vector<std::string> paths;
    bool target = false;        ///< also what the target cannot show
    bool strict = false;        ///< a warning is a failure
    std::optional<float> scale; ///< of positions in the model's image; none: 1
};

/// Reads every file and says of each "PATH: ok" or what is wrong with it. With `target` warnings
/// follow, or all is said as one JSON array; a texture list behind a model is judged with it.
int runCheck(Run& run, const CheckOptions& options);

struct ConvertOptions {
    std::vector<std::string> paths; ///< the inputs, then the output
    std::optional<float> scale;     ///< of positions in an image or an import; none: 1
    std::optional<UpAxis> up;       ///< the file's, of an import; none: y
    bool keepTriangles = false;     ///< of an import
    std::string onto;               ///< the model that an import takes attributes from
    std::string textures;           ///< where an import's textures go; empty: nowhere
    std::optional<std::array<std::uint32_t, 2>> largestTexture; ///< width and height
    std::optional<Dither> dither;
    std::string assets; ///< another folder that an import's material files and pictures lie in
    // Of pictures.
    bool fit = false;                   ///< scaled down to a size that textures have
    bool numbered = false;              ///< the slot is the number that ends the name
    std::optional<std::uint32_t> first; ///< slot to begin at; none: 0
    std::optional<Rgb555> transparent;  ///< in place of alpha
    std::string into;                   ///< the list whose other slots stay; empty: none
    // Of C sources.
    SourceNames names = SourceNames::asTheyAre;
    std::string header; ///< where the declarations go; empty: nowhere
};

/// Reads `paths` but the last and writes the last; the extensions say what becomes of what.
int runConvert(Run& run, const ConvertOptions& options);

/// Writes a scene's target image.
int runScene(Run& run, const SceneSettings& scene, const std::string& output);

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
    std::uint32_t repeat = 0;           ///< 0: once, without saying how long it took
    std::string order;                  ///< where the sorted list goes as JSON; empty: nowhere
    std::optional<std::uint32_t> first; ///< of the sorted list are drawn; none: all
    std::uint32_t zoom = 1;             ///< 1 to 8
    bool transparent = false;           ///< alpha is 0 where nothing was drawn
    std::uint32_t turn = 0;             ///< pictures of a turn; 0: one without a number
    std::string compare;                ///< the picture to compare with; empty: one is written
    bool overdraw = false;              ///< shows how often pixels were written
};

/// Draws one frame of a model, or a turn of them, into PNG files, or compares it with one.
int runRender(Run& run, const RenderOptions& options);

/// Writes an HTML page about a model and perhaps its texture list; `paths` are these and the page.
int runReport(Run& run, const std::vector<std::string>& paths, float scale);

} // namespace facetor
