// Fill levels: lists and files of levels, the lookup of a value, intervals.

#include "plot/colour/levels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "lib/resources/database.h"
#include "lib/scratch_dir.h"
#include "plot/colour/named_colors.h"

namespace {

class Levels : public testing::Test {
protected:
    void SetUp() override {
        scratch_.write(
            "vyx.clr",
            "black 0 0 0\nwhite 1 1 1\ngreen 0 1 0\nred 1 0 0\nbrown 1 1 0\nlblue 0 1 1\nblue 0 0 1\n");
        RES_put("file_path", scratch_.path());
        RES_put("color_fill", "");
        RES_put("color_table", "");
        RES_put("plot_param", "");
        CLR_clear_table();
        CLR_read_table("");
        CONT_init();
    }
    static int color_of(float value) {
        Attribute record;
        CONT_get_fill_attrib(record, value);
        return record.color;
    }
    static std::vector<int> colors() {
        std::vector<int> found;
        for (int i = 0; i < CONT_get_color_num(); ++i) {
            Attribute record;
            CONT_get_fill_attrib_ind(i, record);
            found.push_back(record.color);
        }
        return found;
    }
    static std::vector<float> values() { return {CONT_get_values().begin(), CONT_get_values().end()}; }
    ScratchDir scratch_;
};

constexpr int kBlack = 0, kWhite = 1, kGreen = 2, kRed = 3, kLblue = 5, kBlue = 6;

TEST_F(Levels, ValuesAndColors) {
    EXPECT_EQ(CONT_set_fill_colors("-100:off,5:blue,10:lblue", 0), 0);
    EXPECT_EQ(CONT_get_num_cont(), 3);
    EXPECT_EQ(values(), (std::vector<float>{-100, 5, 10}));
    EXPECT_EQ(color_of(7), kBlue);
    EXPECT_EQ(color_of(4), kColorBackground);
    EXPECT_EQ(color_of(5), kBlue) << "a level begins with its value";
    EXPECT_EQ(color_of(25), kLblue);
    EXPECT_EQ(color_of(-200), kColorBackground);
    EXPECT_EQ(color_of(kMissingF), kColorBackground);
    EXPECT_EQ(color_of(std::nanf("")), kColorBackground);
    EXPECT_EQ(color_of(std::numeric_limits<float>::infinity()), kColorBackground);
    EXPECT_EQ(CONT_get_label(1), "5");

    EXPECT_EQ(CONT_set_fill_colors("red,green", 0), -1) << "the first choice wins";
    EXPECT_EQ(CONT_set_values(std::array{1.0F}), -1);
    CONT_set_cutoff(20, kMissingF);
    EXPECT_EQ(color_of(25), kColorBackground);
    CONT_set_cutoff(kMissingF, 6);
    EXPECT_EQ(color_of(5.5F), kColorBackground);
    EXPECT_EQ(color_of(20), kLblue);
}

TEST_F(Levels, ValuesBetweenAreInterpolated) {
    CONT_set_fill_colors("0:red,blue,green,30:white,black", 0);
    EXPECT_EQ(values(), (std::vector<float>{0, 10, 20, 30}));
    EXPECT_EQ(CONT_get_num_cont(), 5);
    EXPECT_EQ(CONT_get_intrvl(), 10);
    EXPECT_EQ(color_of(15), kBlue);
    EXPECT_EQ(color_of(1e30F), kWhite) << "a level behind the last value is never reached";
}

TEST_F(Levels, RangesOfColors) {
    CONT_set_fill_colors("red-blue", 0);
    EXPECT_EQ(colors(), (std::vector<int>{3, 4, 5, 6}));
    EXPECT_TRUE(values().empty());
    CONT_reset_fill_set();
    CONT_set_fill_colors("blue:w2-red,end,white", 0);
    EXPECT_EQ(colors(), (std::vector<int>{6, 5, 4, 3})) << "downwards, and no further than the end";
    Attribute record;
    CONT_get_fill_attrib_ind(3, record);
    EXPECT_EQ(record.width, 2);
    CONT_reset_fill_set();
    CONT_set_fill_colors("0-2147483647,red", 0);
    EXPECT_EQ(CONT_get_color_num(), kMaxLevels);
}

TEST_F(Levels, RegularLevelsRepeatTheirColors) {
    CONT_set_fill_colors("black,white,green,red,3,4,5,6", 0);
    EXPECT_EQ(color_of(5), kColorBackground) << "no interval yet";
    CONT_set_intrvl(5);
    CONT_set_base(0);
    EXPECT_EQ(color_of(42), kBlack);
    EXPECT_EQ(color_of(4.999F), kWhite) << "the edge is tolerant";
    EXPECT_EQ(color_of(-1), 6);
    CONT_set_intrvl(0);
    EXPECT_EQ(color_of(5), kColorBackground);
    CONT_set_intrvl(1e-30F);
    EXPECT_EQ(color_of(1e30F), kColorBackground);
}

TEST_F(Levels, ThresholdsTakeColorsWithoutValues) {
    const std::array thresholds{0.0F, 5.0F, 12.0F, kMissingF, 99.0F};
    EXPECT_EQ(CONT_set_values(thresholds), 0);
    EXPECT_EQ(CONT_get_num_cont(), 3);
    CONT_set_fill_colors("off,red,green", 0);
    EXPECT_EQ(values(), (std::vector<float>{0, 5, 12}));
    EXPECT_EQ(color_of(6), kRed);
    EXPECT_EQ(color_of(50), kGreen);
    CONT_reset_fill_set();
    CONT_reset_values();
    EXPECT_TRUE(values().empty());
    EXPECT_EQ(CONT_set_values({}), 0);
    EXPECT_EQ(CONT_get_num_cont(), 0);
    CONT_set_values(std::vector<float>(1000, 1.0F));
    EXPECT_EQ(CONT_get_num_cont(), kMaxLevels);
    CONT_set_fill_colors("red,green", 0);
    EXPECT_EQ(color_of(1), kGreen);
}

TEST_F(Levels, LabelsOfLevels) {
    CONT_set_fill_colors("5:red:la=a-b:c,10.50:green:w2,blue:la=much too long,20:la=end", 0);
    EXPECT_EQ(CONT_get_label(0), "a-b:c");
    EXPECT_EQ(CONT_get_label(1), "10.50");
    EXPECT_EQ(CONT_get_label(2), "much too ");
    EXPECT_EQ(CONT_get_label(3), "end");
    EXPECT_EQ(CONT_get_label(-1), "");
    EXPECT_EQ(CONT_get_label(999), "");
    EXPECT_EQ(colors(), (std::vector<int>{kRed, kGreen, kBlue, kColorBackground}));
}

TEST_F(Levels, TheUserReplacesTheList) {
    RES_put("color_fill", "1:white,2:black");
    CONT_set_fill_colors("red,green", 1);
    EXPECT_EQ(colors(), (std::vector<int>{kRed, kGreen})) << "not when the caller insists";
    CONT_reset_fill_set();
    CONT_set_fill_colors("red,green", 0);
    EXPECT_EQ(colors(), (std::vector<int>{kWhite, kBlack}));
    for (const char *none : {"default", "MISS", ""}) {
        RES_put("color_fill", none);
        CONT_reset_fill_set();
        CONT_set_fill_colors("red,green", 0);
        EXPECT_EQ(colors(), (std::vector<int>{kRed, kGreen})) << none;
    }
}

TEST_F(Levels, WithoutListTheTableOrTheDefaultServes) {
    CONT_set_fill_colors("", 0);
    EXPECT_EQ(CONT_get_color_num(), 15);
    RES_put("color_table", "vyx.clr");
    CLR_read_table("");
    CONT_reset_fill_set();
    CONT_set_fill_colors("", 0);
    EXPECT_EQ(colors(), (std::vector<int>{0, 1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(CONT_set_fill_colors("red,green", 0), -1);
}

TEST_F(Levels, Files) {
    scratch_.write("my.lev", "# comment\n@ comment\n\n  -10:red:la=low \r\ngreen\n10:blue\n" +
                                 std::string(200, 'x') + "\n");
    CONT_set_fill_colors("my.lev", 0);
    EXPECT_EQ(values(), (std::vector<float>{-10, 0, 10}));
    EXPECT_EQ(CONT_get_label(0), "low");
    EXPECT_EQ(CONT_get_color_num(), 4);
    CONT_reset_fill_set();
    testing::internal::CaptureStderr();
    EXPECT_EQ(CONT_set_fill_colors("missing.lev", 0), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "CONT_set_fill_colors: Unable to read contour level file: missing.lev\n"
              "CONT_set_fill_colors: missing.lev: No such file or directory\n");
    EXPECT_EQ(CONT_set_fill_colors("red,green", 0), 0) << "the colours are not chosen yet";
    std::string many;
    for (int i = 0; i < 1000; ++i) many += std::to_string(i) + ":red\n";
    scratch_.write("many.lev", many);
    CONT_reset_fill_set();
    CONT_set_fill_colors("many.lev", 0);
    EXPECT_EQ(CONT_get_color_num(), kMaxLevels);
    EXPECT_EQ(color_of(5000), kRed);
}

TEST_F(Levels, ProgramsFilesAreOrderedAndDrawn) {
    RES_put("file_path", std::string(VYX_SOURCE_DIR) + "/data");
    for (const char *file : {"ref.lev", "vel.lev", "width.lev", "precip.lev", "vil.lev", "tops.lev",
                             "zdr.lev", "cc.lev", "kdp.lev", "class.lev"}) {
        CLR_read_table("");
        CONT_reset_fill_set();
        CONT_set_fill_colors(file, 0);
        EXPECT_GE(CONT_get_color_num(), 8) << file;
        EXPECT_EQ(values().size(), static_cast<std::size_t>(CONT_get_color_num())) << file;
        EXPECT_TRUE(std::ranges::is_sorted(CONT_get_values())) << file;
        for (int color : colors()) EXPECT_GE(color, 0) << file;
    }
}

TEST_F(Levels, PlotParameters) {
    RES_put("plot_param", "fill=hat,conmin=3,conmax=12.5,conmax,fill=,full");
    CONT_param_decode();
    EXPECT_EQ(CONT_get_fill_pat(), 9);
    CONT_set_fill_colors("0:red,10:green", 0);
    EXPECT_EQ(color_of(2), kColorBackground);
    EXPECT_EQ(color_of(3), kRed);
    EXPECT_EQ(color_of(13), kColorBackground);
    CONT_set_type(kContourFillOld);
    EXPECT_EQ(CONT_get_type(), kContourFill);
}

TEST(Intervals, AreRounded) {
    EXPECT_FLOAT_EQ(CONT_calc_intrvl(4, 37, 0), 10);
    EXPECT_FLOAT_EQ(CONT_calc_intrvl(4, 170, 0), 50);
    EXPECT_FLOAT_EQ(CONT_calc_intrvl(2, 3000, 0), 2000);
    EXPECT_FLOAT_EQ(CONT_calc_intrvl(4, 1, 0), 0.3F);
    EXPECT_FLOAT_EQ(CONT_calc_intrvl(0, 7.2F, 0), 8);
    EXPECT_FLOAT_EQ(CONT_calc_intrvl(10, 1, 0), 0.1F);
    EXPECT_FLOAT_EQ(CONT_calc_intrvl(4, 5, 5), 1);
    EXPECT_FLOAT_EQ(CONT_calc_intrvl(4, 0, 8), -2);
    EXPECT_FLOAT_EQ(CONT_calc_intrvl(1, 0.00002F, 0), 0.00002F);
}

} // namespace
