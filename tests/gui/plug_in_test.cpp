#include "texture/texture_commands_win.h"

#include "base/file.h"
#include "base/temporary_folder.h"
#include "gui/running_editor.h"
#include "resources/resource_ids.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace facetor {

namespace {

TEST(PlugIns, AnImageGoesIntoTheCurrentSlot)
{
    const RunningEditor editor;
    const std::string path = std::filesystem::absolute("tests/images/pictures/bmp555.bmp").string();
    editor.call([&](Editor& e) { e.document.textures.current = 3; });
    editor.begin([](Editor& e) { runTextureCommand(e, IDM_TEXTURE_IMPORT, 0); });
    ASSERT_TRUE(editor.fillFileDialog(path, 1));
    ASSERT_TRUE(waitUntil([&] {
        return editor.ask([](Editor& e) { return e.document.textures.usedCount(); }) == 4;
    }));
}

} // namespace

} // namespace facetor
