#include "watch/reread.h"

#include "texture/numbered_texture.h"
#include "watch/picture_store.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace facetor {

namespace {

TEST(Reread, MarksFollowTheNamesOfObjects)
{
    Model before, next;
    ASSERT_EQ(createModelStore(before), Message::none);
    ASSERT_EQ(createModelStore(next), Message::none);
    before.attributes[1].flags |= picked;
    before.attributes[5].flags |= picked;
    before.objects[0].flags &= ~objectShown;
    next.meshes[0].polygonCount = next.totalPolygonCount = 4;
    next.attributes[3].flags |= picked;
    carryMarks(next, before);
    for (std::uint32_t p = 0; p < 4; ++p) EXPECT_EQ(isPicked(next.attributes[p]), p == 1);
    EXPECT_EQ(next.objects[0].flags & objectShown, 0u);
    next.names[0] = "another";
    next.objects[0].flags |= objectShown;
    carryMarks(next, before);
    EXPECT_NE(next.objects[0].flags & objectShown, 0u);
}

TEST(Reread, OfAListWhatCameFromElsewhereStays)
{
    TextureList list, file, reread;
    for (TextureList* each : {&list, &file, &reread}) ASSERT_EQ(each->create(), Message::none);
    putNumbered(list, 7, 8, 8, 7);
    const TextureList before = list;
    for (const std::uint32_t slot : {1u, 2u})
        putNumbered(list, slot, 8, 8, static_cast<int>(slot) * 64);
    const SlotSet ofFile = replacedSlots(before, list);
    EXPECT_EQ(ofFile, usedSlots(list) & ~usedSlots(before));
    putNumbered(reread, 2, 8, 8, 2);
    putNumbered(reread, 9, 8, 8, 9);
    mergeReread(list, reread, ofFile);
    for (std::uint32_t slot = 0; slot < 12; ++slot)
        EXPECT_EQ(list.isEmpty(slot), slot != 2 && slot != 7 && slot != 9) << slot;
}

TEST(PictureLinks, GoWithTheTextureAndEndWithAnEdit)
{
    TextureList list;
    ASSERT_EQ(list.create(), Message::none);
    PictureLinks links;
    const FileStamp stamp{true, 5, -7};
    for (const std::uint32_t slot : {0u, 1u, 2u}) {
        putNumbered(list, slot, 8, 8, static_cast<int>(slot) * 64);
        linkPicture(links, list,
                    {slot, "Png.dll", "C:\\a picture " + std::to_string(slot) + ".png", stamp, 0});
    }
    list.moveTexture(2, 3);
    list.moveTexture(1, 2);
    list.pixels(0)[0] ^= 1;
    const auto slotsOf = [](const PictureLinks& live) {
        std::vector<std::pair<std::uint32_t, char>> slots;
        for (const PictureLink& link : live)
            slots.emplace_back(link.slot, link.path[link.path.size() - 5]);
        std::ranges::sort(slots);
        return slots;
    };
    using Slots = std::vector<std::pair<std::uint32_t, char>>;
    EXPECT_EQ(slotsOf(liveLinks(links, list)), (Slots{{2, '1'}, {3, '2'}}));
    list.pixels(0)[0] ^= 1; // stepped back over
    EXPECT_EQ(slotsOf(liveLinks(links, list)), (Slots{{0, '0'}, {2, '1'}, {3, '2'}}));

    PictureStore store;
    for (std::size_t i = 0; i <= rememberedLists; ++i)
        rememberLinks(store, "C:\\list " + std::to_string(i) + ".mxt", links);
    const std::string text = formatPictures(store);
    EXPECT_EQ(formatPictures(parsePictures(text)), text);
    EXPECT_EQ(linksOf(parsePictures(text), "c:\\LIST 1.mxt"), links);
    EXPECT_TRUE(linksOf(store, "C:\\list 0.mxt").empty()) << "the oldest";
    const PictureStore strange = parsePictures(
        "Facetor pictures 1\nSlot 1 2 3 4 p|x\nList l\nSlot 4096 2 3 4 p|x\n"
        "Slot 1 2 3 p|x\nSlot 1 2 3 4 x\nSlot 1 2 3 4 p|\nSlot -1 2 3 4 p|x\nSlot 1 2 3 4 p|a b");
    ASSERT_EQ(strange.lists.size(), 1u);
    EXPECT_EQ(strange.lists[0].links, (PictureLinks{{1, "p", "a b", {true, 3, 4}, 2}}));
}

} // namespace

} // namespace facetor
