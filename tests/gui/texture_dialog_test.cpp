#include "app/commands.h"
#include "base/temporary_folder.h"
#include "commands/plug_in_commands.h"
#include "dialogs/transform_dialogs.h"
#include "driver/running_editor.h"
#include "gui/scarce_memory.h"
#include "resources/resource_ids.h"
#include "texture/numbered_texture.h"
#include "windows/slice_view.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <utility>
#include <vector>

namespace facetor {

namespace {

/// Starts a command of the texture list window and waits for its dialog or alert.
ShownAlert begin(const RunningEditor& editor, int command)
{
    editor.begin(
        [command](Editor& e) { (void)runCommand(e, CommandWindow::textures, command, 0); });
    return editor.waitForAlert();
}

/// A field or a button of a dialog and what is put into it: a text, or for nullptr a press.
struct Input {
    int control;
    const char* text;
};

void fill(const ShownAlert& dialog, const std::vector<Input>& inputs)
{
    for (const Input& input : inputs)
        if (input.text)
            SetDlgItemTextA(dialog.window, input.control, input.text);
        else
            SendDlgItemMessageA(dialog.window, input.control, BM_CLICK, 0, 0);
}

std::string textIn(const ShownAlert& dialog, int control)
{
    std::array<char, 64> text{};
    GetDlgItemTextA(dialog.window, control, text.data(), static_cast<int>(text.size()));
    return text.data();
}

constexpr char outOfMemory[] = "Cannot allocate enough memory to do this function.";
constexpr char notMultipleOf8[] = "Width of Texture should be multiple of 8. ";

TEST(TextureDialog, EachRefusesWhatItsRulesForbidAndRemembersItsSettings)
{
    const RunningEditor editor;
    for (const int command : {IDM_TEXTURE_FLIP, IDM_TEXTURE_ROTATE, IDM_TEXTURE_SCALE}) {
        (void)begin(editor, command);
        editor.dismiss("Texture data is empty. Nothing to edit. ");
    }
    editor.call([](Editor& e) { putNumbered(e.document.textures, 0, 16, 8); });
    struct Case {
        int command;
        std::vector<Input> inputs;
        const char* refusal;
    };
    const Case cases[] = {
        {IDM_TEXTURE_FLIP,
         {{IDC_FLIP_EXTENT, nullptr}, {IDC_FLIP_FROM, "6"}, {IDC_FLIP_TO, "5"}},
         "Data Error(\"From\">\"to\")"},
        {IDM_TEXTURE_FLIP, {{IDC_FLIP_EXTENT, nullptr}, {IDC_FLIP_FROM, "x"}}, "Data Error(From)"},
        {IDM_TEXTURE_FLIP,
         {{IDC_FLIP_EXTENT, nullptr}, {IDC_FLIP_TO, "99999999999"}},
         "Data Error(to)"},
        {IDM_TEXTURE_ROTATE, {{IDC_TURN_TO, "4097"}}, "Out of Polygons to edit!"},
        {IDM_TEXTURE_SCALE, {{IDC_SIZE_WIDTH, "12"}}, notMultipleOf8},
        {IDM_TEXTURE_SCALE, {{IDC_SIZE_WIDTH, "264"}}, "Out of Width to edit!"},
        {IDM_TEXTURE_SCALE, {{IDC_SIZE_HEIGHT, "257"}}, "Out of Height to edit!"},
        {IDM_TEXTURE_SCALE, {{IDC_SIZE_HEIGHT, ""}}, "Data Error(V)"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.refusal);
        const ShownAlert dialog = begin(editor, c.command);
        fill(dialog, c.inputs);
        EXPECT_EQ(editor.refusalOf(dialog), c.refusal);
        editor.closeDialog(dialog, IDCANCEL);
    }
    ShownAlert dialog = begin(editor, IDM_TEXTURE_ROTATE);
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog.window, IDC_TURN_FROM)));
    fill(dialog, {{IDC_TURN_HALF, nullptr}, {IDC_TURN_EXTENT, nullptr}, {IDC_TURN_TO, "7"}});
    EXPECT_TRUE(IsWindowEnabled(GetDlgItem(dialog.window, IDC_TURN_FROM)));
    savePicture(editor.pictureOf(dialog.window), "rotate-texture");
    EXPECT_TRUE(editor.press(dialog, IDOK)); // slot 1 is empty
    editor.dismiss("Texture data is empty. Nothing to edit. ");
    EXPECT_EQ(editor.ask([](Editor& e) { return numbersOf(e.document.textures, 0)[0]; }), 127);
    dialog = begin(editor, IDM_TEXTURE_ROTATE);
    EXPECT_EQ(textIn(dialog, IDC_TURN_TO), "7");
    EXPECT_EQ(IsDlgButtonChecked(dialog.window, IDC_TURN_HALF), UINT{BST_CHECKED});
    editor.closeDialog(dialog, IDCANCEL);
    editor.call([](Editor& e) { setTexturesChanged(e.document, false); });
}

TEST(TextureDialog, TransformsChangeTheCurrentTextureAndAreUndone)
{
    const RunningEditor editor;
    editor.call([](Editor& e) { putNumbered(e.document.textures, 0, 16, 8); });
    const auto first = [&] {
        return editor.ask([](Editor& e) {
            return std::pair(int{e.document.textures.slot(0).width},
                             numbersOf(e.document.textures, 0)[0]);
        });
    };
    struct Case {
        int command;
        std::vector<Input> inputs;
        std::pair<int, int> expected; ///< width and first texel
    };
    const Case cases[] = {
        {IDM_TEXTURE_FLIP,
         {{IDC_FLIP_HORIZONTAL, nullptr}, {IDC_FLIP_VERTICAL, nullptr}},
         {16, 127}},
        {IDM_TEXTURE_ROTATE,
         {{IDC_TURN_CLOCKWISE, nullptr}, {IDC_TURN_FROM, "of no account"}},
         {8, 112}},
        {IDM_TEXTURE_SCALE, {{IDC_SIZE_DOUBLE, nullptr}}, {32, 0}},
        {IDM_TEXTURE_SCALE, {{IDC_SIZE_HALVE, nullptr}, {IDC_SIZE_SMOOTH, nullptr}}, {8, 0}},
    };
    for (const auto& [command, inputs, expected] : cases) {
        SCOPED_TRACE(command);
        const ShownAlert dialog = begin(editor, command);
        fill(dialog, inputs);
        if (command == IDM_TEXTURE_SCALE) {
            EXPECT_EQ(textIn(dialog, IDC_SIZE_OLD_WIDTH), " 16 ->");
        }
        savePicture(editor.pictureOf(dialog.window), "transform-" + std::to_string(command));
        editor.closeDialog(dialog, IDOK);
        EXPECT_EQ(first(), expected);
        EXPECT_TRUE(editor.ask([](Editor& e) { return areTexturesChanged(e.document); }));
        editor.sendCommand(IDM_EDIT_UNDO);
        EXPECT_EQ(first(), std::pair(16, 0));
        EXPECT_TRUE(editor.ask([](Editor& e) { return e.document.undo.isEmpty(); }));
    }
    editor.call([](Editor& e) { putNumbered(e.document.textures, 0, 16, 12); });
    const ShownAlert dialog = begin(editor, IDM_TEXTURE_ROTATE);
    EXPECT_TRUE(editor.press(dialog, IDOK));
    editor.dismiss(notMultipleOf8);

    editor.call([](Editor& e) { putNumbered(e.document.textures, 0, 256, 256); });
    {
        const ScarceMemory scarce(256 * 256);
        EXPECT_TRUE(editor.press(begin(editor, IDM_TEXTURE_ROTATE), IDOK));
        editor.dismiss(outOfMemory);
    }
    EXPECT_EQ(first(), std::pair(256, 0));
    editor.call([](Editor& e) {
        setTexturesChanged(e.document, false);
        setModelChanged(e.document, false);
    });
}

TEST(TextureDialog, SlicingMakesATextureForEachPickedPolygonInEveryOffsetMode)
{
    const TemporaryFolder folder;
    const RunningEditor editor({"samples\\ship.mx3"});
    editor.resizeClient(640, 420);
    for (const char* text :
         {"No Selected polygons could be found. ", "Texture data is empty. Nothing to edit. "}) {
        (void)begin(editor, IDM_TEXTURE_SLICE);
        editor.dismiss(text);
        editor.sendCommand(IDM_SELECT_ALL);
    }
    editor.call([](Editor& e) { // of a photograph
        e.document.textures.current = 50;
        EXPECT_TRUE(importTexturePath(e, "tests\\images\\pictures\\photo.jpg") ==
                    CommandOutcome::done);
    });
    const auto open = [&] { // past the warning that it cannot be undone
        const ShownAlert warning = begin(editor, IDM_TEXTURE_SLICE);
        EXPECT_EQ(warning.icon, "question");
        EXPECT_TRUE(editor.press(warning, IDNO));
        return editor.waitForAlert();
    };
    EXPECT_TRUE(editor.press(begin(editor, IDM_TEXTURE_SLICE), IDCANCEL));
    EXPECT_TRUE(editor.press(begin(editor, IDM_TEXTURE_SLICE), IDYES));
    EXPECT_TRUE(editor.cancelFileDialog()); // what was to be saved and is not ends it
    editor.call([](Editor& e) { setTexturesChanged(e.document, true); });
    EXPECT_FALSE(editor.findAlert().window);
    EXPECT_TRUE(editor.press(begin(editor, IDM_TEXTURE_SLICE), IDYES));
    EXPECT_TRUE(editor.fillFileDialog(folder.file("kept.mxt"), 1));
    editor.closeDialog(editor.waitForAlert(), IDCANCEL);
    EXPECT_FALSE(editor.ask([](Editor& e) { return areTexturesChanged(e.document); }));
    EXPECT_EQ(folder.entryCount(), 1u);

    ShownAlert dialog = open();
    savePicture(editor.pictureOf(dialog.window), "slice-dialog");
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog.window, IDC_SLICE_ID)));
    fill(dialog, {{IDC_SLICE_CHOSEN, nullptr}, {IDC_SLICE_ID, "0"}});
    EXPECT_EQ(editor.refusalOf(dialog), "Data Error(ID < CurrentID)");
    fill(dialog, {{IDC_SLICE_ID, "9"}, {IDC_SLICE_WIDTH, "20"}});
    EXPECT_EQ(editor.refusalOf(dialog), notMultipleOf8);
    fill(dialog, {{IDC_SLICE_WIDTH, "256"}, {IDC_SLICE_HEIGHT, "256"}, {IDC_SLICE_ID, "100"}});
    {
        const ScarceMemory scarce(256 * 256);
        EXPECT_TRUE(editor.press(dialog, IDOK));
        editor.dismiss(outOfMemory);
    }
    EXPECT_EQ(editor.ask([](Editor& e) { return e.document.textures.usedCount(); }), 51u);

    // From above, with the photograph behind a part of the ship, and nothing but textures on it.
    constexpr InclusiveRectangle place{220, 130, 460, 310};
    editor.sendCommand(IDM_CAMERA_TOP);
    editor.call([&](Editor& e) {
        e.slice.place = place;
        for (PolygonAttribute& attribute : e.document.model.attributes)
            attribute.flags &= picked | polygonFace;
        toggleShowSliced(e);
    });
    const auto strays = [&](const WindowPicture& shown) { // pixels that are not the photograph's
        return editor.ask([&](Editor& e) {
            const TextureSlot& photo = e.document.textures.slot(50);
            int count = 0;
            for (int y = place.top; y < place.bottom; ++y)
                for (int x = place.left; x < place.right; ++x) {
                    const Rgb555 texel =
                        photo.pixels[(y - place.top) * photo.height / 180 * photo.width +
                                     (x - place.left) * photo.width / 240];
                    const std::uint32_t rgb = shown.at(x, y);
                    const auto apart = [&](int component, unsigned shift) {
                        return std::abs(component * 8 - static_cast<int>(rgb >> shift & 0xFF)) > 48;
                    };
                    count += apart(redOf(texel), 16) || apart(greenOf(texel), 8) ||
                             apart(blueOf(texel), 0);
                }
            return count;
        });
    };
    const WindowPicture before = editor.picture();
    savePicture(before, "slicing");
    EXPECT_GT(strays(before), 10000);
    const std::pair<int, const char*> modes[] = {{IDC_SLICE_TRANSPARENT, "transparent"},
                                                 {IDC_SLICE_REPEAT, "repeat"},
                                                 {IDC_SLICE_WRAP, "wrap"}};
    for (const bool smooth : {false, true})
        for (const auto& [mode, name] : modes) {
            dialog = open();
            fill(dialog, {{IDC_SLICE_CHOSEN, nullptr},
                          {IDC_SLICE_ID, "100"},
                          {mode, nullptr},
                          {IDC_SLICE_WIDTH, "64"},
                          {IDC_SLICE_HEIGHT, "64"}});
            CheckDlgButton(dialog.window, IDC_SLICE_SMOOTH, smooth ? BST_CHECKED : BST_UNCHECKED);
            editor.closeDialog(dialog, IDOK);
            editor.call([](Editor& e) {
                const Model& model = e.document.model;
                EXPECT_EQ(e.document.textures.usedCount(), 100 + model.totalPolygonCount);
                std::vector<bool> given(model.totalPolygonCount);
                for (std::uint32_t i = 0; i < model.totalPolygonCount; ++i) {
                    EXPECT_TRUE(model.attributes[i].flags & textureMap);
                    given.at(model.attributes[i].texture - 100u) = true;
                }
                EXPECT_EQ(std::ranges::count(given, false), 0) << "each has its own";
                EXPECT_TRUE(areTexturesChanged(e.document));
            });
            editor.sendCommand(IDM_SELECT_CLEAR);
            const WindowPicture after = editor.picture();
            EXPECT_LT(strays(after), 600) << "the ship is where it was, and not to be seen";
            savePicture(after, std::string("sliced-") + name + (smooth ? "-smooth" : ""));
            editor.sendCommand(IDM_SELECT_ALL);
        }
    editor.call([](Editor& e) {
        setTexturesChanged(e.document, false);
        setModelChanged(e.document, false);
    });
}

} // namespace

} // namespace facetor
