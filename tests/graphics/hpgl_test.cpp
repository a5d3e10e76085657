/// The plotter device: what it writes for each primitive, its wrappings, pages and appended drawings.

#include "graphics/devices/print/hpgl.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <vector>

#include <gtest/gtest.h>

#include "graphics/core/state.h"
#include "graphics/devices/print/postscript.h"
#include "lib/scratch_dir.h"

namespace {

constexpr std::string_view kPclBegin = "\033E\033%1B\033&l1O\n", kPclEnd = "\033%0A\033E";

class Hpgl : public testing::Test {
protected:
    Hpgl() {
        for (const char *name : {"vyxhp_out", "vyxhp_param", "vyxhp_geometry"}) unsetenv(name);
        gps_set_reverse(false);
    }
    void open(const std::string &options = "", const std::string &name = "x.hpgl") {
        ASSERT_EQ(kHpglInk.open(
                      (name[0] == '+' ? "+" + files_.at(name.substr(1)) : files_.at(name)) + options, page_),
                  0);
    }
    std::string written() {
        EXPECT_EQ(kHpglInk.close(), 0);
        return files_.read("x.hpgl");
    }
    /// What stands between the pen's set-up and the end.
    std::string drawn() {
        const std::string all = written();
        const std::size_t begin = all.find("LT;\n") + 4;
        return all.substr(begin, all.find("SP;PG;") - begin);
    }
    ScratchDir files_;
    DrawingArea page_;
};

TEST_F(Hpgl, WrapsThePlotAsItsOptionsSay) {
    open();
    EXPECT_EQ(page_.width, 10150);
    EXPECT_EQ(page_.height, 7612);
    EXPECT_EQ(page_.x, 10);
    EXPECT_EQ(written(),
              std::string(kPclBegin) + "IN;SP1;PA;\nPW0.2;SV;LT;\nSP;PG;\n" + std::string(kPclEnd));
    open(",nopcl,port,lwidth=0.5");
    EXPECT_EQ(written(), "IN;SP1;PA;\nRO90;\nPW0.5;SV;LT;\nSP;PG;\n");
    open(",lj,rot=180,a4");
    EXPECT_EQ(page_.width, 11357);
    EXPECT_NE(written().find("IN;SP1;PA;\nRO90;\nRO180;\nPW"), std::string::npos);
    setenv("vyxhp_param", "nopcl,roll=36", 1);
    open(",land");
    EXPECT_EQ(page_.width, 36032);
    EXPECT_EQ(page_.height, 23345);
    EXPECT_EQ(written(), "IN;SP1;PA;\nPW0.2;SV;LT;\nSP;PG;\n");
}

TEST_F(Hpgl, WritesPrimitivesAndOnlyWhatChanges) {
    open(",nopcl");
    kHpglInk.polyline(std::array{Point{1, 2}, Point{3.6F, -4}}, 1, 1, 1);
    kHpglInk.polyline(std::array{Point{0, 0}, Point{5, 5}}, 504, 2, 3);
    gps_set_color_rep(3, {1, 0, 0});
    kHpglInk.fill_area(std::array{Point{0, 0}, Point{9, 0}, Point{9, 9}}, 3);
    kHpglInk.fill_area(std::array{Point{0, 0}, Point{9, 0}, Point{9, 9}}, 3);
    kHpglInk.clear_region(std::array{Point{0, 0}, Point{9, 0}, Point{9, 9}});
    kHpglInk.clip({10, 20, 30, 40});
    kHpglInk.begin_text({}, "A", 1, 1);
    kHpglInk.stroke(std::array{Point{7, 8}});
    EXPECT_EQ(drawn(), "PU1,2;PD4,-4;\n"
                       "PW0.8;\nSV1,0;\nLT5,8,1;\nPU0,0;PD5,5;\n"
                       "FT10,67;\nPU0,0;PM0;PD9,0;PD9,9;PM1;PM2;FP;\nPU0,0;PM0;PD9,0;PD9,9;PM1;PM2;FP;\n"
                       "FT10,0;\nPU0,0;PM0;PD9,0;PD9,9;PM1;PM2;FP;\n"
                       "IW 10,30,20,40;\n"
                       "PW0.2;\nSV;\nLT;\nPU7,8;PD7,8;\n");
    open(",nopcl,scale=2");
    std::vector<Point> many(23, {1, 1});
    kHpglInk.polyline(many, 1, 1, 1);
    const std::string lines = drawn();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 3);
    EXPECT_TRUE(lines.starts_with("PU2,2;PD2,2;"));
}

TEST_F(Hpgl, DrawingsJoinAndPagesFollow) {
    const std::array line{Point{1, 1}, Point{2, 2}};
    open();
    kHpglInk.polyline(line, 1, 1, 1);
    ASSERT_EQ(kHpglInk.new_page(), 0);
    kHpglInk.polyline(line, 1, 3, 1);
    const std::string first = written();
    const std::string page = std::string(kPclBegin) + "IN;SP1;PA;\nPW0.2;SV;LT;\n",
                      end = "SP;PG;\n\033%0A\033E";
    const std::string pages = page + "PU1,1;PD2,2;\n" + end + page + "PW0.6;\nPU1,1;PD2,2;\n";
    EXPECT_EQ(first, pages + end);
    open("", "+x.hpgl");
    kHpglInk.polyline(line, 1, 1, 1);
    EXPECT_EQ(written(), pages + "PW0.2;SV;LT;\nPU1,1;PD2,2;\n" + end);
    open("", "+new.hpgl"); // nothing to join
    ASSERT_EQ(kHpglInk.close(), 0);
    EXPECT_EQ(files_.read("new.hpgl"), page + end);
    files_.write("x.hpgl", "PU5,5;\n");
    open("", "+x.hpgl");
    EXPECT_EQ(kHpglInk.new_page(), -1);
    EXPECT_EQ(written(), "PU5,5;\nSP1;PA;\nPW0.2;SV;LT;\n"); // begins with its pen, ends as it is
    files_.write("x.hpgl", pages + end);
    open("", "+x.hpgl");
    kHpglInk.polyline(line, 1, 1, 1);
    kHpglInk.abandon();
    EXPECT_EQ(files_.read("x.hpgl"), pages + end);
}

} // namespace
