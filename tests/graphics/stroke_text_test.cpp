// Stroke text: where the strokes of a string fall.

#include "graphics/text/stroke.h"

#include <string>
#include <vector>

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>
#include <unistd.h>

#include "graphics/core/state.h"
#include "graphics/core/stroke_output.h"
#include "graphics/text/font.h"
#include "lib/resources/database.h"

namespace {

namespace fs = std::filesystem;

struct Drawn {
    std::vector<std::vector<Point>> runs;
    std::vector<std::string> strings;
} drawn;

void take_begin(const Point &, std::string_view string) {
    drawn.strings.emplace_back(string);
}

void take_run(std::span<const Point> run) {
    drawn.runs.emplace_back(run.begin(), run.end());
}

/// A font of three glyphs: A a rising stroke 50 wide in a cell of 75, B the same with a cell of 51, C one
/// long run of 64 points.
class StrokeText : public testing::Test {
protected:
    void SetUp() override {
        const fs::path directory = fs::temp_directory_path() / ("vyx_stroke_" + std::to_string(getpid()));
        fs::create_directories(directory);
        std::ofstream file(directory / "t.fnt");
        file << "255 128 35 50 140 203 35 255 128 35 50 140 179 35 255 ";
        for (int i = 0; i < 64; ++i) file << i << " 35 ";
        file << "255 254";
        for (int c = 0; c < 256; ++c) file << ' ' << (c == 'A' ? 1 : c == 'B' ? 8 : c == 'C' ? 15 : -1);
        file.close();
        RES_put("file_path", directory.string());
        ASSERT_EQ(read_font("t.fnt"), 0);
        fs::remove_all(directory);
        gset_stroke_output({take_begin, take_run});
        drawn = {};
        attributes() = TextState{};
        attributes().height = 105; // one world unit per glyph unit
    }
    static TextState &attributes() { return gstate().text; }
    static void draw(const char *string) {
        drawn = {};
        EXPECT_EQ(text(string, 1000, 2000), 0);
    }
    /// First point of each run, less the position of the string.
    static std::vector<float> offsets() {
        std::vector<float> result;
        for (const auto &run : drawn.runs) result.push_back(run.front().x - 1000);
        return result;
    }
};

TEST_F(StrokeText, AdvancesByWidthSpaceAndPitch) {
    draw("AAB A");
    // 75 and 25 of space; 51 and 25; a space of 40 and 25
    EXPECT_EQ(offsets(), (std::vector<float>{0, 100, 200, 341}));
    EXPECT_EQ(drawn.strings, std::vector<std::string>{"AAB A"});
    EXPECT_EQ(drawn.runs[0], (std::vector<Point>{{1000, 2000}, {1050, 2105}}));
    EXPECT_EQ(gtext_width("AAB A"), 416);
    draw("A\x01\xFFzA"); // characters without glyph take no room
    EXPECT_EQ(offsets(), (std::vector<float>{0, 100}));
    EXPECT_EQ(gtext_width("A\x01z"), 75);
    attributes().expansion = 2;
    attributes().space = 0;
    draw("AA A");
    EXPECT_EQ(offsets(), (std::vector<float>{0, 150, 380}));
    attributes().expansion = 1;
    attributes().space = 0.5F;
    attributes().char_space = 2; // fixed pitch: (50 + 100) x 2
    draw("AB A");
    EXPECT_EQ(offsets(), (std::vector<float>{0, 300, 900}));
    EXPECT_EQ(gtext_width("AB A"), 1100);
    draw("");
    EXPECT_TRUE(drawn.strings.empty());
    EXPECT_EQ(gtext_width(""), 0);
}

TEST_F(StrokeText, AlignsInBothDirections) {
    attributes().horizontal = kAlignCenter;
    draw("B"); // 51 wide: half of it is rounded toward zero
    EXPECT_EQ(offsets(), std::vector<float>{-25});
    draw("AB"); // 75 + 25 + 51
    EXPECT_EQ(offsets(), (std::vector<float>{-75, 25}));
    attributes().horizontal = kAlignRight;
    attributes().expansion = 2;
    draw("AB");
    EXPECT_EQ(offsets(), (std::vector<float>{-302, -102}));
    attributes().expansion = 1;
    const std::vector<std::pair<int, float>> bottoms{
        {kAlignVNormal, 0}, {kAlignTop, -125},  {kAlignCap, -105}, {kAlignHalf, -50},
        {kAlignBase, 0},    {kAlignBottom, 35}, {99, 0},           {-1, 0}};
    for (const auto &[code, bottom] : bottoms) {
        attributes().vertical = code;
        draw("A");
        EXPECT_EQ(drawn.runs.at(0).at(0).y, 2000 + bottom) << code;
    }
}

TEST_F(StrokeText, TurnsWithTheUpVector) {
    attributes().up = {1, 0}; // downwards on the page
    draw("AA");
    EXPECT_EQ(drawn.runs.at(0), (std::vector<Point>{{1000, 2000}, {1105, 1950}}));
    EXPECT_EQ(drawn.runs.at(1).at(0), (Point{1000, 1900}));
    attributes().up = {0, -1}; // upside down
    draw("A");
    EXPECT_EQ(drawn.runs.at(0).at(1), (Point{950, 1895}));
}

TEST_F(StrokeText, SplitsLongRunsAtSharedPoints) {
    draw("C");
    std::vector<std::size_t> sizes;
    for (const auto &run : drawn.runs) sizes.push_back(run.size());
    EXPECT_EQ(sizes, (std::vector<std::size_t>{30, 30, 6}));
    for (std::size_t i = 1; i < drawn.runs.size(); ++i)
        EXPECT_EQ(drawn.runs[i - 1].back(), drawn.runs[i].front());
    EXPECT_EQ(drawn.runs.back().back().x, 1063);
}

TEST_F(StrokeText, DrawsNothingWithoutFont) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(read_font("none.fnt"), -1);
    testing::internal::GetCapturedStderr();
    draw("ABC");
    EXPECT_TRUE(drawn.runs.empty());
}

} // namespace
