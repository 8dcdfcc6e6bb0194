#include "windows/further_status.h"

#include "output/target_image.h"
#include "state/editor.h"
#include "ui/handles.h"
#include "ui/status_bar.h"
#include "ui/window_data.h"
#include "view/selection.h"

#include <windows.h>

#include <array>
#include <string>
#include <utility>

namespace facetor {

namespace {

constexpr std::array countEdges{100, 200, 300}; // right edges in pixels
constexpr int pickedPart = 3, texelPart = 4, modifiedPart = 5;

/// Room for "Picked = 4096" and "Texture bytes = 458752", at 96 dots an inch.
constexpr int pickedWidth = 90, texelWidth = 170;
constexpr int plainResolution = 96;

} // namespace

HWND createMainStatusBar(HWND mainWindow)
{
    const int resolution = GetDeviceCaps(WindowDc(mainWindow).get(), LOGPIXELSX);
    const int pickedEnd = countEdges.back() + MulDiv(pickedWidth, resolution, plainResolution);
    const int texelEnd = pickedEnd + MulDiv(texelWidth, resolution, plainResolution);
    constexpr int toTheEnd = -1;
    const std::array edges{countEdges[0], countEdges[1], countEdges[2],
                           pickedEnd,     texelEnd,      toTheEnd};
    return createStatusBar(mainWindow, edges);
}

void refreshFurtherStatus(Editor& editor)
{
    const Document& document = editor.document;
    const FurtherStatus now{countPicked(document.model), texelBytes(document.textures),
                            isModelChanged(document) || areTexturesChanged(document)};
    if (!editor.statusBar || editor.furtherStatus == now) return;
    editor.furtherStatus = now;
    const auto show = [&](int part, Word word, std::uint64_t number) {
        setStatusText(editor.statusBar, part,
                      loadCatalogueText(editor.mainWindow, word) + " = " + std::to_string(number));
    };
    show(pickedPart, Word::statusPicked, now.pickedPolygons);
    show(texelPart, Word::budgetTexels, now.texelBytes);
    setStatusText(editor.statusBar, modifiedPart,
                  now.modified ? loadCatalogueText(editor.mainWindow, Word::statusModified)
                               : std::string());
}

} // namespace facetor
