#include "view/select_more.h"

#include "view/view.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace facetor {

namespace {

/// Object 0: squares 0, 1, 2 in a row that share corners, and 3 beside them whose left corners lie
/// where the right ones of 2 do; 4 apart. Object 1: 5, in the place of 4.
struct Row {
    Model model;
    HiddenPolygons hidden;

    Row()
    {
        EXPECT_EQ(createModelStore(model), Message::none);
        model.objectCount = 2;
        model.objects[1] = model.objects[0];
        model.objects[0].next = model.objects[1].mesh = 1;
        model.meshes[0] = {0, 16, 0, 5, 0, 0};
        model.meshes[1] = {16, 4, 5, 1, 5, 16};
        model.totalVertexCount = 20;
        model.totalPolygonCount = 6;
        const auto column = [&](std::uint16_t first, float x) {
            model.vertices[first] = {x, 0, 0};
            model.vertices[first + 1u] = {x, 1, 0};
        };
        for (std::uint16_t i = 0; i < 4; ++i) column(static_cast<std::uint16_t>(2 * i), i);
        column(8, 3), column(10, 4), column(12, 6), column(14, 7), column(16, 6), column(18, 7);
        const std::uint16_t left[] = {0, 2, 4, 8, 12, 0};
        for (std::uint32_t i = 0; i < 6; ++i) {
            const std::uint16_t l = left[i];
            for (std::uint16_t c = 0; c < 4; ++c)
                model.polygons[i].corner[c] = static_cast<std::uint16_t>(l + c);
            model.attributes[i] = {0, sortCentre, 0, 0, polygonFace, i};
        }
    }

    void mark(const std::string& digits)
    {
        for (std::uint32_t i = 0; i < 6; ++i)
            model.attributes[i].flags =
                polygonFace |
                (digits.find(static_cast<char>('0' + i)) != std::string::npos ? picked
                                                                              : polygonFace);
    }

    std::string marked() const
    {
        std::string digits;
        for (std::uint32_t i = 0; i < 6; ++i)
            if (isPicked(model.attributes[i])) digits += std::to_string(i);
        return digits;
    }
};

} // namespace

TEST(SelectMore, CommandsMarkWhatTheySay)
{
    using Command = std::function<void(Row&)>;
    const Command invert = [](Row& r) { invertSelection(r.model, r.hidden); };
    const Command grow = [](Row& r) { growSelection(r.model, r.hidden); };
    const Command shrink = [](Row& r) { shrinkSelection(r.model, r.hidden); };
    const auto connected = [](Mark mark) {
        return Command([=](Row& r) { selectConnected(r.model, r.hidden, mark); });
    };
    const Command joined = [](Row& r) { selectConnectedTo(r.model, r.hidden, 4, Mark::set); };
    const Command drop = [](Row& r) { dropHidden(r.model, r.hidden); };
    const Command object = [](Row& r) { selectObjects(r.model, r.hidden, 1, 2, Mark::set); };
    const Command showAgain = [](Row& r) {
        hidePicked(r.model, r.hidden);
        EXPECT_EQ(r.marked(), "");
        showHidden(r.model, r.hidden);
    };
    struct Case {
        const char* name;
        const Command& command;
        const char *before, *hidden, *after;
    };
    const Case cases[] = {
        {"invert", invert, "03", "", "1245"},
        {"what is hidden keeps its mark", invert, "03", "34", "1235"},
        {"grow", grow, "1", "", "012"},
        {"grow over corners in one place", grow, "2", "", "123"},
        {"grow not into another object", grow, "4", "", "4"},
        {"grow not over a hidden one", grow, "0", "1", "0"},
        {"shrink", shrink, "0124", "", "014"},
        {"shrink keeps what is whole", shrink, "0123", "", "0123"},
        {"connected", connected(Mark::set), "0", "", "0123"},
        {"connected up to a hidden one", connected(Mark::set), "0", "2", "01"},
        {"connected taken away", connected(Mark::clear), "034", "3", "3"},
        {"connected to one that is not marked", joined, "0", "", "04"},
        {"an object", object, "0", "", "05"},
        {"hidden ones let go", drop, "034", "35", "04"},
        {"out of sight and back", showAgain, "04", "5", "045"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Row row;
        row.mark(c.before);
        for (const char* digit = c.hidden; *digit; ++digit)
            row.hidden.set(static_cast<std::size_t>(*digit - '0'));
        c.command(row);
        EXPECT_EQ(row.marked(), c.after);
    }
}

TEST(SelectMore, LikenessIsOfColourTextureOrAll)
{
    Row row;
    const auto look = [&](std::uint32_t i, std::uint16_t texture, Rgb555 colour,
                          std::uint32_t flags) {
        row.model.attributes[i] = {0, sortCentre, texture, colour, flags, i};
    };
    look(0, 7, 0x8001, textureMap | picked);
    look(1, 7, 0x0001, textureMap | flipHorizontal);
    look(2, 7, 0x0001, polygonFace); // its texture does not count
    look(3, 8, 0x0001, textureMap);
    look(4, 7, 0x0001, textureMap);
    look(5, 7, 0x0002, textureMap);
    for (const auto& [likeness, expected] : {std::pair{Likeness::colour, "01234"},
                                             {Likeness::texture, "0145"},
                                             {Likeness::attribute, "04"}}) {
        row.mark("");
        look(0, 7, 0x8001, textureMap | picked);
        look(1, 7, 0x0001, textureMap | flipHorizontal);
        for (const std::uint32_t i : {3u, 4u, 5u}) row.model.attributes[i].flags = textureMap;
        selectLike(row.model, row.hidden, likeness, Mark::set);
        EXPECT_EQ(row.marked(), expected);
        selectLike(row.model, row.hidden, likeness, Mark::clear);
        EXPECT_EQ(row.marked(), "");
    }
}

TEST(SelectMore, WhatIsHiddenIsNotInTheFrame)
{
    Row row;
    Engine engine;
    ASSERT_EQ(startEngine(engine), Message::none);
    ASSERT_EQ(createModelStore(row.model), Message::none); // the start-up cube
    View view;
    startView(view, engine);
    listFrame(view, engine, row.model, {640, 480});
    ASSERT_EQ(engine.entryCount, 1u);
    view.hidden.set(engine.entries[0].attribute);
    listFrame(view, engine, row.model, {640, 480});
    EXPECT_EQ(engine.entryCount, 0u);
}

} // namespace facetor
