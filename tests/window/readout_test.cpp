// The value under the pointer in a real window: at the terminal at once, and in the title.

#include <cmath>

#include "window/window_program.h"

namespace {

class WindowReadOut : public WindowProgram {
protected:
    [[nodiscard]] std::string title() const { return eye_->title(eye_->window()); }
    [[nodiscard]] bool title_has(std::string_view words) const {
        return comes_true([&] { return title().find(words) != std::string::npos; }, kDeadline);
    }
    /// The last reading that the program has told so far.
    struct Told {
        int count = 0;
        double lat = 0, lon = 0, azimuth = 0, km = 0;
        std::string line;
    };
    [[nodiscard]] Told told() const {
        Told last;
        std::istringstream lines(log());
        for (std::string line; std::getline(lines, line);) {
            const std::size_t at = line.find("  lat ");
            Told t;
            if (at == std::string::npos ||
                std::sscanf(line.c_str() + at, "  lat %lf lon %lf  az %lf dist %lf km", &t.lat, &t.lon,
                            &t.azimuth, &t.km) != 4)
                continue;
            t.line = line;
            t.count = last.count + 1;
            last = t;
        }
        return last;
    }
    /// Presses the key until a further reading is told, while the program runs.
    Told ask() const {
        const int before = told().count;
        press("alt+v");
        EXPECT_TRUE(comes_true([&] { return told().count > before; }, kDeadline)) << log();
        return told();
    }
};

TEST_F(WindowReadOut, IsThatOfTheFrameThatIsSeen) {
    start_loop(3);
    ASSERT_TRUE(pause());
    // North-east of the radar, at azimuth 45: frames 0 and 1 have a storm there, frame 2 has not.
    point_at(kWidth / 2 + 60, kHeight / 2 - 60);
    for (int i = 0; i < 3; ++i) {
        const Told here = ask();
        EXPECT_NEAR(here.azimuth, 45, 5);
        const bool storm = frame() < 2;
        EXPECT_TRUE(here.line.starts_with(storm ? "45 dBZ  " : "no data  ")) << frame() << here.line;
        EXPECT_TRUE(title_has("] " + here.line)) << "the title goes on telling the frame: " << title();
        const int next = (frame() + 1) % 3;
        press("alt+bracketright");
        ASSERT_TRUE(shows(next));
        EXPECT_EQ(title().find("lat"), std::string::npos) << "the next picture is another";
    }
    while (frame() != 1) act("click 3");
    const int before = told().count;
    std::filesystem::remove(series_[1]);
    press("alt+v");
    EXPECT_TRUE(title_has("file not read: it is gone")) << title();
    EXPECT_TRUE(said("it is gone: " + series_[1])) << log();
    EXPECT_EQ(told().count, before);
    EXPECT_EQ(end("Return"), 0) << log();
}

TEST_F(WindowReadOut, FollowsTheHeldButton) {
    start_picture();
    const std::string plain = title();
    act(at(kWidth / 2 + 60, kHeight / 2 - 60) + "mousedown 1");
    ASSERT_TRUE(title_has("45 dBZ")) << title();
    act(at(kWidth / 2 - 60, kHeight / 2 - 60));
    ASSERT_TRUE(title_has("no data")) << title();
    EXPECT_EQ(told().count, 0) << "the terminal is not filled while it moves";
    act("mouseup 1");
    EXPECT_TRUE(comes_true([&] { return title() == plain; }, kDeadline)) << title();
    EXPECT_TRUE(comes_true([&] { return told().count == 1; }, kDeadline)) << log();
    EXPECT_TRUE(told().line.starts_with("no data"));
    EXPECT_EQ(end("Return"), 0) << log();
}

TEST_F(WindowReadOut, MagnifiedPixelsReadTheSamePlace) {
    const Picture whole = start_picture();
    const int x = kWidth / 2 + 60, y = kHeight / 2 - 60;
    point_at(x, y);
    const Told first = ask();
    EXPECT_TRUE(first.line.find("beam ") != std::string::npos) << first.line;
    point_at(x + 1, y);
    const double pixel = std::abs(ask().lon - first.lon);
    EXPECT_GT(pixel, 0);

    point_at(x, y);
    press("alt+z");
    const Picture twice = settled(whole);
    // The middle of the window shows the pixel around which it was magnified.
    point_at(kWidth / 2, kHeight / 2);
    press("alt+z");
    const Picture fourfold = settled(twice);
    const Told magnified = ask();
    EXPECT_NEAR(magnified.lon, first.lon, 1.5 * pixel);
    EXPECT_NEAR(magnified.lat, first.lat, 1.5 * pixel);
    point_at(kWidth / 2 + 3, kHeight / 2);
    EXPECT_EQ(ask().line, magnified.line) << "four pixels of the window are one of the picture";
    point_at(kWidth / 2 + 4, kHeight / 2);
    EXPECT_NEAR(ask().lon, magnified.lon + pixel, 0.2 * pixel);
    press("alt+u");
    EXPECT_EQ(settled(fourfold), whole);
    EXPECT_EQ(end("Return"), 0) << log();
}

} // namespace
