#include "get_color/colour_dialog.h"

#include "get_color/colour_part_window.h"
#include "get_color/control_ids.h"
#include "ui/handles.h"

#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace facetor {

namespace {

constexpr int pageSteps = 4;      ///< of a channel, for Page Up and Page Down
constexpr int fieldPageSteps = 8; ///< arrow steps that Page Up and Page Down make in the field

/// What the dialog works on until OK.
struct ColourDialog {
    Rgb555 given;
    RecentColours& recent;
    ChosenColour chosen{};
    int recentMark = 0;      ///< the recent colour that the keyboard is on
    bool refreshing = false; ///< the numbers are being written, not typed
    PartSize fieldSize{};    ///< of the pixels below
    std::vector<std::uint32_t> fieldPixels{};
};

/// The controls of a channel.
struct ChannelControls {
    Channel channel;
    int strip, number, spin;
};

constexpr ChannelControls channels[] = {
    {Channel::red, IDC_RED_STRIP, IDC_RED_NUMBER, IDC_RED_SPIN},
    {Channel::green, IDC_GREEN_STRIP, IDC_GREEN_NUMBER, IDC_GREEN_SPIN},
    {Channel::blue, IDC_BLUE_STRIP, IDC_BLUE_NUMBER, IDC_BLUE_SPIN},
};

/// A field that holds the whole colour as a text.
struct ColourText {
    int control;
    std::size_t longest; ///< with "0x"
    std::string (*format)(Rgb555);
    std::optional<Rgb555> (*parse)(std::string_view);
};

constexpr ColourText texts[] = {
    {IDC_WORD, 6, formatWord, parseWord},
    {IDC_HEX, 8, formatHex, parseHex},
};

ColourDialog& stateOf(HWND dialog)
{
    return *reinterpret_cast<ColourDialog*>(GetWindowLongPtrA(dialog, DWLP_USER));
}

/// The channel that a strip shows; nullptr for another control.
const ChannelControls* findStrip(int control)
{
    const auto* found = std::ranges::find(channels, control, &ChannelControls::strip);
    return found == std::end(channels) ? nullptr : found;
}

int valueStep(const Hsv& hsv)
{
    return static_cast<int>(std::lround(hsv.value * (channelSteps - 1)));
}

Hsv withValueStep(Hsv hsv, int step)
{
    hsv.value = static_cast<float>(std::clamp(step, 0, channelSteps - 1)) / (channelSteps - 1);
    return hsv;
}

// Drawing.

void fill(HDC dc, const RECT& area, Rgb555 colour)
{
    const auto [red, green, blue] = toScreenColour(colour);
    const UniqueHandle<HBRUSH, DeleteObject> brush(CreateSolidBrush(RGB(red, green, blue)));
    FillRect(dc, &area, brush.get());
}

/// A cell with a gap to the next one, so that the steps can be told apart.
void drawCell(const PartPaint& paint, RECT cell, Rgb555 colour)
{
    const RECT gap{cell.right - 1, cell.top, cell.right, cell.bottom};
    FillRect(paint.dc, &gap, GetSysColorBrush(COLOR_BTNFACE));
    if (cell.right < paint.size.width) --cell.right;
    fill(paint.dc, cell, colour);
}

/// A frame that is seen on every colour: black, and white inside.
void drawMark(HDC dc, RECT area)
{
    FrameRect(dc, &area, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    InflateRect(&area, -1, -1);
    FrameRect(dc, &area, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
}

RECT columnOf(int cell, int count, PartSize size)
{
    const PixelRun run = cellRun(cell, count, size.width);
    return {run.begin, 0, run.end, size.height};
}

/// The value strip's cells, the brightest on top.
RECT rowOf(int step, PartSize size)
{
    const PixelRun run = cellRun(channelSteps - 1 - step, channelSteps, size.height);
    return {0, run.begin, size.width, run.end};
}

void drawStrip(const PartPaint& paint, const ColourDialog& state, Channel channel)
{
    const Rgb555 colour = state.chosen.colour;
    for (int step = 0; step < channelSteps; ++step)
        drawCell(paint, columnOf(step, channelSteps, paint.size),
                 withChannel(colour, channel, step));
    drawMark(paint.dc, columnOf(channelOf(colour, channel), channelSteps, paint.size));
}

void drawValueStrip(const PartPaint& paint, const ColourDialog& state)
{
    const Hsv& hsv = state.chosen.hsv;
    for (int step = 0; step < channelSteps; ++step)
        fill(paint.dc, rowOf(step, paint.size), toRgb555(withValueStep(hsv, step)));
    RECT mark = rowOf(valueStep(hsv), paint.size);
    InflateRect(&mark, 0, 1); // a cell is too low for a mark inside it
    drawMark(paint.dc, mark);
}

void drawFieldPart(const PartPaint& paint, ColourDialog& state)
{
    const PartSize size = paint.size;
    if (state.fieldSize.width != size.width || state.fieldSize.height != size.height) {
        state.fieldPixels = drawField(size);
        state.fieldSize = size;
    }
    BITMAPINFO info{};
    info.bmiHeader = {
        sizeof(BITMAPINFOHEADER), size.width, -size.height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    SetDIBitsToDevice(paint.dc, 0, 0, static_cast<DWORD>(size.width),
                      static_cast<DWORD>(size.height), 0, 0, 0, static_cast<UINT>(size.height),
                      state.fieldPixels.data(), &info, DIB_RGB_COLORS);
    const PartPoint point = fieldPoint(state.chosen.hsv, size);
    drawMark(paint.dc, {point.x - 4, point.y - 4, point.x + 5, point.y + 5});
}

void drawSample(const PartPaint& paint, const ColourDialog& state)
{
    fill(paint.dc, columnOf(0, 2, paint.size), state.chosen.colour);
    fill(paint.dc, columnOf(1, 2, paint.size), state.given);
}

void drawRecent(HWND part, const PartPaint& paint, const ColourDialog& state)
{
    const auto used = inUse(state.recent);
    const int cells = static_cast<int>(state.recent.colours.size());
    for (int i = 0; i < cells; ++i) {
        const RECT cell = columnOf(i, cells, paint.size);
        if (i < static_cast<int>(used.size()))
            fill(paint.dc, cell, used[static_cast<std::size_t>(i)]);
        else
            FillRect(paint.dc, &cell, GetSysColorBrush(COLOR_BTNFACE));
        const RECT line{cell.right - 1, cell.top, cell.right, cell.bottom};
        if (i + 1 < cells) FillRect(paint.dc, &line, GetSysColorBrush(COLOR_BTNSHADOW));
    }
    if (GetFocus() == part && !used.empty())
        drawMark(paint.dc, columnOf(state.recentMark, cells, paint.size));
}

void drawPart(HWND dialog, ColourDialog& state, int control, const PartPaint& paint)
{
    if (const ChannelControls* strip = findStrip(control)) drawStrip(paint, state, strip->channel);
    switch (control) {
    case IDC_FIELD: drawFieldPart(paint, state); return;
    case IDC_VALUE: drawValueStrip(paint, state); return;
    case IDC_SAMPLE: drawSample(paint, state); return;
    case IDC_RECENT: drawRecent(GetDlgItem(dialog, control), paint, state); return;
    default: return;
    }
}

// Choosing.

/// The step in a number field; none while it holds no number.
std::optional<int> numberIn(HWND dialog, int control)
{
    std::array<char, 8> text{}; // longer than the field's limit
    const UINT length =
        GetDlgItemTextA(dialog, control, text.data(), static_cast<int>(text.size()));
    return parseStep({text.data(), length});
}

/// Shows the chosen colour everywhere but in the number field that the user is typing into.
void refresh(HWND dialog, ColourDialog& state, int typedInto = 0)
{
    state.refreshing = true;
    for (const ChannelControls& controls : channels) {
        const int step = channelOf(state.chosen.colour, controls.channel);
        if (controls.number != typedInto && numberIn(dialog, controls.number) != step)
            SetDlgItemInt(dialog, controls.number, static_cast<UINT>(step), FALSE);
        InvalidateRect(GetDlgItem(dialog, controls.strip), nullptr, FALSE);
    }
    for (const ColourText& text : texts)
        if (text.control != typedInto)
            SetDlgItemTextA(dialog, text.control, text.format(state.chosen.colour).c_str());
    state.refreshing = false;
    for (const int control : {IDC_FIELD, IDC_VALUE, IDC_SAMPLE, IDC_RECENT})
        InvalidateRect(GetDlgItem(dialog, control), nullptr, FALSE);
}

void chooseRecent(ColourDialog& state, int index)
{
    const auto used = inUse(state.recent);
    if (index < 0 || index >= static_cast<int>(used.size())) return;
    state.recentMark = index;
    choose(state.chosen, used[static_cast<std::size_t>(index)]);
}

void pointAt(ColourDialog& state, int control, const PartPointing& at)
{
    ChosenColour& chosen = state.chosen;
    if (const ChannelControls* strip = findStrip(control))
        choose(chosen, withChannel(chosen.colour, strip->channel,
                                   cellAt(at.point.x, channelSteps, at.size.width)));
    switch (control) {
    case IDC_FIELD: choose(chosen, fieldHsv(at.point, at.size, chosen.hsv.value)); return;
    case IDC_VALUE:
        choose(chosen,
               withValueStep(chosen.hsv,
                             channelSteps - 1 - cellAt(at.point.y, channelSteps, at.size.height)));
        return;
    case IDC_SAMPLE: // the old colour can be taken back
        if (cellAt(at.point.x, 2, at.size.width) == 1) choose(chosen, state.given);
        return;
    case IDC_RECENT:
        chooseRecent(state, cellAt(at.point.x, static_cast<int>(state.recent.colours.size()),
                                   at.size.width));
        return;
    default: return;
    }
}

/// Where a key leads from one of `count` steps; `page` is how far Page Up and Page Down lead.
int stepAfterKey(int step, WPARAM key, int count, int page)
{
    switch (key) {
    case VK_LEFT:
    case VK_DOWN: step -= 1; break;
    case VK_RIGHT:
    case VK_UP: step += 1; break;
    case VK_PRIOR: step += page; break;
    case VK_NEXT: step -= page; break;
    case VK_HOME: step = 0; break;
    case VK_END: step = count - 1; break;
    default: break;
    }
    return std::clamp(step, 0, count - 1);
}

/// Moves in the field by as much as a step of a channel: a sector of the hue circle has as many.
Hsv fieldAfterKey(Hsv hsv, WPARAM key)
{
    constexpr float hueStep = 1.0f / (6 * channelSteps), saturationStep = 1.0f / (channelSteps - 1);
    switch (key) {
    case VK_LEFT: hsv.hue -= hueStep; break;
    case VK_RIGHT: hsv.hue += hueStep; break;
    case VK_HOME: hsv.hue -= fieldPageSteps * hueStep; break;
    case VK_END: hsv.hue += fieldPageSteps * hueStep; break;
    case VK_UP: hsv.saturation += saturationStep; break;
    case VK_DOWN: hsv.saturation -= saturationStep; break;
    case VK_PRIOR: hsv.saturation += fieldPageSteps * saturationStep; break;
    case VK_NEXT: hsv.saturation -= fieldPageSteps * saturationStep; break;
    default: break;
    }
    hsv.hue -= std::floor(hsv.hue);
    hsv.saturation = std::clamp(hsv.saturation, 0.0f, 1.0f);
    return hsv;
}

void keyIn(ColourDialog& state, int control, WPARAM key)
{
    ChosenColour& chosen = state.chosen;
    if (const ChannelControls* strip = findStrip(control)) {
        const int step = channelOf(chosen.colour, strip->channel);
        choose(chosen, withChannel(chosen.colour, strip->channel,
                                   stepAfterKey(step, key, channelSteps, pageSteps)));
    }
    switch (control) {
    case IDC_FIELD: choose(chosen, fieldAfterKey(chosen.hsv, key)); return;
    case IDC_VALUE:
        choose(chosen, withValueStep(chosen.hsv, stepAfterKey(valueStep(chosen.hsv), key,
                                                              channelSteps, pageSteps)));
        return;
    case IDC_RECENT: {
        const int count = static_cast<int>(inUse(state.recent).size());
        if (count == 0) return;
        state.recentMark = stepAfterKey(state.recentMark, key, count, count);
        if (key == VK_SPACE) chooseRecent(state, state.recentMark);
        return;
    }
    default: return;
    }
}

void onNumber(HWND dialog, ColourDialog& state, int control, int notification)
{
    const auto* controls = std::ranges::find(channels, control, &ChannelControls::number);
    if (controls == std::end(channels) || state.refreshing) return;
    if (notification == EN_KILLFOCUS) refresh(dialog, state);
    if (notification != EN_CHANGE) return;
    const auto number = numberIn(dialog, control);
    if (!number) return; // empty while it is being typed
    choose(state.chosen, withChannel(state.chosen.colour, controls->channel, *number));
    refresh(dialog, state, control);
}

void onText(HWND dialog, ColourDialog& state, int control, int notification)
{
    const auto* text = std::ranges::find(texts, control, &ColourText::control);
    if (text == std::end(texts) || state.refreshing) return;
    if (notification == EN_KILLFOCUS) refresh(dialog, state);
    if (notification != EN_CHANGE) return;
    std::array<char, 16> typed{};
    const UINT length =
        GetDlgItemTextA(dialog, control, typed.data(), static_cast<int>(typed.size()));
    const auto colour = text->parse({typed.data(), length});
    if (!colour) return; // while it is being typed
    choose(state.chosen, *colour);
    refresh(dialog, state, control);
}

// The dialog.

void fillDialog(HWND dialog, ColourDialog& state)
{
    for (const ColourText& text : texts)
        SendDlgItemMessageA(dialog, text.control, EM_SETLIMITTEXT, text.longest, 0);
    for (const ChannelControls& controls : channels) {
        SendDlgItemMessageA(dialog, controls.number, EM_SETLIMITTEXT, 2, 0);
        SendDlgItemMessageA(dialog, controls.spin, UDM_SETRANGE32, 0, channelSteps - 1);
    }
    choose(state.chosen, state.given);
    refresh(dialog, state);
}

void onCommand(HWND dialog, ColourDialog& state, int control, int notification)
{
    if (control == IDOK) remember(state.recent, state.chosen.colour);
    if (control == IDOK || control == IDCANCEL)
        EndDialog(dialog, control);
    else {
        onNumber(dialog, state, control, notification);
        onText(dialog, state, control, notification);
    }
}

INT_PTR CALLBACK colourProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrA(dialog, DWLP_USER, lParam);
        fillDialog(dialog, stateOf(dialog));
        return TRUE;
    }
    if (!GetWindowLongPtrA(dialog, DWLP_USER)) return FALSE; // what comes before it
    ColourDialog& state = stateOf(dialog);
    const int control = LOWORD(wParam);
    switch (message) {
    case WM_COMMAND: onCommand(dialog, state, control, HIWORD(wParam)); return TRUE;
    case messageDrawPart:
        drawPart(dialog, state, control, *reinterpret_cast<const PartPaint*>(lParam));
        return TRUE;
    case messagePartPoint:
        pointAt(state, control, *reinterpret_cast<const PartPointing*>(lParam));
        refresh(dialog, state);
        return TRUE;
    case messagePartKey:
        keyIn(state, control, static_cast<WPARAM>(lParam));
        refresh(dialog, state);
        return TRUE;
    default: return FALSE;
    }
}

} // namespace

Rgb555 chooseColour(HINSTANCE instance, HWND owner, Rgb555 given, RecentColours& recent)
{
    const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_UPDOWN_CLASS};
    InitCommonControlsEx(&classes);
    const ColourPartClass partClass(instance);
    ColourDialog state{given, recent};
    const INT_PTR button = DialogBoxParamA(instance, "IDD_GET_COLOR", owner, colourProcedure,
                                           reinterpret_cast<LPARAM>(&state));
    if (button != IDOK) return given;
    return static_cast<Rgb555>(state.chosen.colour | (given & opaqueBit));
}

} // namespace facetor
