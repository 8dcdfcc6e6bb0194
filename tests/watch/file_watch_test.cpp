#include "watch/file_watch.h"

#include <gtest/gtest.h>

#include <functional>

namespace facetor {

namespace {

constexpr FileStamp first{true, 10, 1000}, second{true, 10, 500}, gone{};

/// Looks at a file twice a second, as the editor does, and counts what comes of it.
struct Watcher {
    FileWatch watch;
    WatchFacts facts;
    std::uint64_t now = 10000;
    int reads = 0, questions = 0;
    bool readable = true, wanted = true;
    std::optional<FileStamp> meanwhile; ///< what becomes of "a" while the question stands

    explicit Watcher(WatchedPart part, FileStamp known = first)
    {
        watch.watch(part, {{"a", known}, {"b", known}});
    }
    void run(const FileStamp& a, const FileStamp& b, std::uint64_t milliseconds)
    {
        for (const std::uint64_t end = now + milliseconds; now < end; now += 100) {
            watch.see("a", a, now);
            watch.see("b", b, now);
            const auto action = watch.next(facts, now);
            if (!action) continue;
            if (action->asks) {
                ++questions;
                if (meanwhile) watch.see("a", *meanwhile, now);
                if (!wanted) {
                    watch.decline(*action);
                    continue;
                }
                watch.agree(*action);
            }
            ++reads;
            if (readable)
                watch.watch(action->part, {{"a", a}, {"b", b}});
            else
                (void)watch.fail(*action, now);
        }
    }
};

TEST(FileWatch, ReadsWhatHasSettledOnceAndAsksOnceForEachChange)
{
    struct Case {
        const char* name;
        std::function<void(Watcher&)> run;
        int reads, questions;
    };
    const auto edited = [](Watcher& w) { w.facts.isEdited.fill(true); };
    const Case cases[] = {
        {"nothing", [](Watcher& w) { w.run(first, first, 5000); }, 0, 0},
        {"a change, with a clock set back", [](Watcher& w) { w.run(second, first, 5000); }, 1, 0},
        {"not before it has settled",
         [](Watcher& w) {
             for (std::int64_t i = 0; i < 20; ++i) w.run({true, 10, i}, first, 200);
         },
         0, 0},
        {"it is what it was again",
         [](Watcher& w) {
             w.run(second, first, 200);
             w.run(first, first, 5000);
         },
         0, 0},
        {"away, and another one comes back",
         [](Watcher& w) {
             w.run(gone, gone, 60000);
             w.run(second, second, 5000);
         },
         1, 0},
        {"away, and the same comes back",
         [](Watcher& w) {
             w.run(gone, gone, 60000);
             w.run(first, first, 5000);
         },
         0, 0},
        {"not while a dialog is up",
         [](Watcher& w) {
             w.facts.isIdle = false;
             w.run(second, first, 5000);
         },
         0, 0},
        {"edited: no is once for a change",
         [&](Watcher& w) {
             edited(w);
             w.wanted = false;
             w.run(second, first, 5000);
             w.run({true, 11, 7}, first, 5000);
         },
         0, 2},
        {"edited: no is for what the question was about",
         [&](Watcher& w) {
             edited(w);
             w.wanted = false;
             w.meanwhile = FileStamp{true, 11, 7};
             w.run(second, first, 400);
             w.run(*w.meanwhile, first, 5000);
         },
         0, 2},
        {"edited: and holds where the file was away meanwhile",
         [&](Watcher& w) {
             edited(w);
             w.wanted = false;
             w.meanwhile = gone;
             w.run(second, first, 5000);
         },
         0, 1},
        {"edited: yes, though it takes attempts",
         [&](Watcher& w) {
             edited(w);
             w.readable = false;
             w.run(second, first, 1500);
             w.readable = true;
             w.run(second, first, 5000);
         },
         4, 1},
        {"what cannot be read is given up until it changes",
         [](Watcher& w) {
             w.readable = false;
             w.run(second, first, 60000);
             w.readable = true;
             w.run({true, 11, 7}, first, 5000);
         },
         watchAttempts + 1, 0},
        {"another file of the part is missing for a while",
         [](Watcher& w) {
             w.run(second, gone, 1500);
             EXPECT_EQ(w.reads, 0);
             w.run(second, second, 5000);
         },
         1, 0},
        {"and stays so", [](Watcher& w) { w.run(second, gone, 5000); }, 1, 0},
    };
    for (const Case& current : cases) {
        SCOPED_TRACE(current.name);
        Watcher watcher(WatchedPart::source);
        current.run(watcher);
        EXPECT_EQ(watcher.reads, current.reads);
        EXPECT_EQ(watcher.questions, current.questions);
    }
}

TEST(FileWatch, AsksBeforeAFileThatWasNotThere)
{
    Watcher watcher(WatchedPart::model, gone);
    watcher.run(first, gone, 5000);
    EXPECT_EQ(watcher.questions, 1);
}

TEST(FileWatch, WhatIsLeftStaysKnownUntilItIsWatchedAgain)
{
    FileWatch watch;
    watch.watch(WatchedPart::model, {{"a", first}});
    watch.watch(WatchedPart::model, {{"b", second}});
    EXPECT_EQ(watch.left(WatchedPart::model), (std::vector<WatchedFile>{{"a", first}}));
    watch.watch(WatchedPart::model, {{"a", second}});
    EXPECT_EQ(watch.left(WatchedPart::model), (std::vector<WatchedFile>{{"b", second}}));
}

TEST(FileWatch, PicturesAreReadEachByItself)
{
    Watcher watcher(WatchedPart::pictures);
    watcher.watch.see("a", second, 100);
    watcher.watch.see("b", second, 300);
    watcher.watch.see("a", second, 400);
    watcher.watch.see("b", second, 400);
    const auto action = watcher.watch.next({}, 400);
    ASSERT_TRUE(action);
    ASSERT_EQ(action->changed.size(), 1u);
    EXPECT_EQ(action->changed.front().path, "a");
}

} // namespace

} // namespace facetor
