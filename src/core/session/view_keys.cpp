#include "session/view_keys.h"

#include "session/command_numbers.h"

#include <algorithm>
#include <iterator>

namespace facetor {

namespace {

enum class Shift { up, down, either }; // with either, the command itself asks for Shift

struct ViewKey {
    unsigned key;
    Shift shift;
    int command;
};

constexpr unsigned numberPad = 0x60;

// The digits lie on the number pad as the sides that they show.
constexpr ViewKey keys[] = {
    {'F', Shift::up, IDM_VIEW_FIT},
    {'F', Shift::down, IDM_VIEW_FIT_PICKED},
    {'I', Shift::up, IDM_SELECT_INVERT},
    {'G', Shift::up, IDM_SELECT_GROW},
    {'G', Shift::down, IDM_SELECT_SHRINK},
    {'C', Shift::either, IDM_SELECT_CONNECTED},
    {'O', Shift::either, IDM_SELECT_SAME_COLOUR},
    {'T', Shift::either, IDM_SELECT_SAME_TEXTURE},
    {'A', Shift::either, IDM_SELECT_SAME_ATTRIBUTE},
    {'H', Shift::up, IDM_HIDE_PICKED},
    {'H', Shift::down, IDM_SHOW_HIDDEN},
    {'1', Shift::up, IDM_VIEW_ZOOM_1},
    {'2', Shift::up, IDM_VIEW_ZOOM_2},
    {'3', Shift::up, IDM_VIEW_ZOOM_3},
    {numberPad + 5, Shift::up, IDM_CAMERA_FORWARD},
    {numberPad + 0, Shift::up, IDM_CAMERA_BACK},
    {numberPad + 4, Shift::up, IDM_CAMERA_LEFT},
    {numberPad + 6, Shift::up, IDM_CAMERA_RIGHT},
    {numberPad + 8, Shift::up, IDM_CAMERA_TOP},
    {numberPad + 2, Shift::up, IDM_CAMERA_BOTTOM},
};

} // namespace

int viewKeyCommand(unsigned key, bool shift)
{
    const auto* found = std::ranges::find_if(keys, [&](const ViewKey& known) {
        return known.key == key &&
               (known.shift == Shift::either || (known.shift == Shift::down) == shift);
    });
    return found != std::end(keys) ? found->command : 0;
}

} // namespace facetor
