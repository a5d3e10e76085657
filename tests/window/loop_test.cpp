// The loop in a real window, under a virtual X server.

#include <set>

#include "window/window_program.h"

namespace {

class WindowLoop : public WindowProgram {};

TEST_F(WindowLoop, RunsPausesAndSteps) {
    start_loop(6);
    std::set<int> seen;
    EXPECT_TRUE(comes_true([&] { return seen.insert(frame()), seen.size() == 6; }, kDeadline));
    EXPECT_EQ(seen, (std::set<int>{0, 1, 2, 3, 4, 5}));

    ASSERT_TRUE(pause());
    const int first = frame();
    std::vector<Picture> pictures{eye_->picture()};
    for (int i = 1; i < 6; ++i) {
        press("alt+bracketright");
        ASSERT_TRUE(shows((first + i) % 6));
        pictures.push_back(eye_->picture());
        EXPECT_NE(pictures[static_cast<std::size_t>(i)], pictures[static_cast<std::size_t>(i - 1)]);
    }
    act("click 3");
    ASSERT_TRUE(shows(first)) << "button 3 shows the next frame, after the last the first";
    EXPECT_EQ(eye_->picture(), pictures[0]);
    press("alt+bracketleft");
    ASSERT_TRUE(shows((first + 5) % 6));
    EXPECT_EQ(eye_->picture(), pictures[5]);
    act("click 1");
    ASSERT_TRUE(shows((first + 4) % 6)) << "button 1 shows the one before";
    EXPECT_EQ(eye_->picture(), pictures[4]);
    act("click 2");
    EXPECT_TRUE(comes_true([&] { return frame() != (first + 4) % 6; }, kDeadline))
        << "button 2 starts the loop";
    press("Caps_Lock");
    press("alt+l");
    EXPECT_TRUE(comes_to_rest()) << "Caps Lock does not matter";
    press("Caps_Lock");
    for (const char *const stops : {"key Left", "click 5"}) {
        const int at = frame();
        press("alt+l");
        ASSERT_TRUE(comes_true([&] { return frame() != at; }, kDeadline));
        act(stops);
        EXPECT_TRUE(comes_to_rest()) << stops;
    }
    EXPECT_EQ(end("Return"), 0) << log();
}

TEST_F(WindowLoop, AFrameIsDeleted) {
    start_loop(3);
    ASSERT_TRUE(pause());
    while (frame() != 1) {
        const int next = (frame() + 1) % 3;
        press("alt+bracketright");
        ASSERT_TRUE(shows(next));
    }
    const Picture gone = eye_->picture();
    press("alt+d");
    const Picture left = settled(gone);
    EXPECT_EQ(frame(), 1) << "the later ones have moved down";
    press("alt+bracketright");
    ASSERT_TRUE(shows(0));
    const Picture other = eye_->picture();
    EXPECT_NE(other, gone);
    EXPECT_NE(other, left);
    press("alt+r");
    EXPECT_TRUE(comes_to_rest());
    EXPECT_EQ(frame(), 0) << "drawing again leads nowhere else";
    EXPECT_EQ(eye_->picture(), other);
    press("alt+l");
    std::set<int> seen;
    EXPECT_FALSE(
        comes_true([&] { return seen.insert(frame()), seen.count(2) != 0; }, std::chrono::seconds(3)));
    EXPECT_EQ(seen, (std::set<int>{0, 1}));
    EXPECT_EQ(end("alt+q"), 0) << log();
}

TEST_F(WindowLoop, ANewSizeStartsTheSeriesAgain) {
    start_loop(2);
    eye_->resize(500, 400);
    ASSERT_TRUE(comes_true([this] { return eye_->picture().width == 500; }, kDeadline));
    // Frames of the old size would leave the loop with a picture that is none of the two.
    ASSERT_TRUE(pause());
    const int at = frame();
    const Picture one = settled({});
    press("alt+bracketright");
    ASSERT_TRUE(shows(1 - at));
    EXPECT_NE(eye_->picture(), one);
    EXPECT_EQ(eye_->picture().height, 400);
    EXPECT_EQ(end("alt+q"), 0) << log();
}

TEST_F(WindowLoop, AZoomBoxIsPlottedInEveryFrame) {
    start_loop(2);
    ASSERT_TRUE(pause());
    std::array<Picture, 2> before, after;
    const auto look = [this](std::array<Picture, 2> &pictures) {
        const int shown = frame();
        if (shown >= 0) pictures.at(static_cast<std::size_t>(shown)) = eye_->picture();
    };
    look(before);
    const int other = 1 - frame();
    press("alt+bracketright");
    ASSERT_TRUE(shows(other));
    look(before);

    const int standing = frame();
    act(at(250, 200) + "keydown shift mousedown 1 " + at(350, 250) + "mouseup 1 keyup shift");
    settled(before.at(static_cast<std::size_t>(standing)));
    ASSERT_TRUE(comes_to_rest()) << "the loop stands as before";
    EXPECT_EQ(frame(), standing) << "and where it did";
    const auto look_at_both = [&] {
        look(after);
        press("Right");
        EXPECT_TRUE(shows(1 - standing));
        look(after);
        press("Left");
        EXPECT_TRUE(shows(standing));
    };
    look_at_both();
    EXPECT_NE(after[0], after[1]);
    for (std::size_t i = 0; i < 2; ++i) EXPECT_NE(after.at(i), before.at(i)) << "the zoom";
    const Picture zoomed = after.at(static_cast<std::size_t>(standing));
    press("alt+u");
    settled(zoomed);
    look_at_both();
    EXPECT_EQ(after, before) << "the whole again";
    EXPECT_EQ(end("alt+q"), 0) << log();
    EXPECT_TRUE(said("New domain: ")) << log();
    EXPECT_TRUE(said("Original domain: ")) << log();
}

TEST_F(WindowLoop, ABoxStaysOnTheScreenWhileTheLoopRuns) {
    start_loop(2);
    ASSERT_TRUE(pause());
    std::array<Picture, 2> plain;
    for (int looks = 0; looks < 2; ++looks) {
        const int shown = frame();
        plain.at(static_cast<std::size_t>(shown)) = eye_->picture();
        press("Right");
        ASSERT_TRUE(shows(1 - shown));
    }
    press("alt+l");
    act(at(250, 200) + "keydown shift mousedown 1 " + at(300, 220) + at(350, 250));
    for (const int wanted : {0, 1, 0}) {
        EXPECT_TRUE(comes_true(
            [&] {
                const int shown = frame();
                const Picture seen = eye_->picture();
                if (shown != wanted || frame() != wanted) return false;
                const Picture &without = plain.at(static_cast<std::size_t>(wanted));
                int edge = 0;
                for (int x = 255; x < 345; ++x) edge += seen.at(x, 200) != without.at(x, 200) ? 1 : 0;
                return edge > 60 && seen.at(300, 225) == without.at(300, 225);
            },
            kDeadline))
            << "over frame " << wanted;
    }
    act("key Escape mouseup 1 keyup shift");
    EXPECT_TRUE(comes_true([&] { return eye_->picture() == plain[0]; }, kDeadline)) << "no box any more";
    EXPECT_EQ(end("alt+q"), 0) << log();
    EXPECT_FALSE(said("New domain: ")) << log();
}

TEST_F(WindowLoop, AnIconShowsTheNextFramesWhenItOpens) {
    start_loop(2);
    eye_->unmap();
    eye_->map();
    std::set<int> seen;
    EXPECT_TRUE(comes_true([&] { return seen.insert(frame()), seen.size() == 2; }, kDeadline));
    ASSERT_TRUE(pause());
    const Picture before = eye_->picture();
    eye_->unmap();
    eye_->map();
    EXPECT_TRUE(comes_true([&] { return eye_->picture() == before; }, kDeadline));
    EXPECT_EQ(end("alt+q"), 0) << log();
}

TEST_F(WindowLoop, AServerThatGoesAwayEndsTheLoop) {
    start_loop(2);
    eye_.reset();
    server_->kill_now();
    EXPECT_EQ(program_->wait_for_end(kDeadline), 4) << log();
    EXPECT_TRUE(said("Fatal X11 Error\n")) << log();
}

TEST_F(WindowLoop, AServerThatGoesAwayEndsTheWait) {
    start_picture();
    eye_.reset();
    server_->kill_now();
    EXPECT_EQ(program_->wait_for_end(kDeadline), 4) << log();
    EXPECT_TRUE(said("Fatal X11 Error\n")) << log();
}

} // namespace
