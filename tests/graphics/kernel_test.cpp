#include <array>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

#include "graphics/core/stroke_output.h"
#include "graphics/kernel/helpers.h"
#include "graphics/kernel/identity.h"
#include "lib/options/flags.h"
#include "lib/report/process.h"
#include "lib/resources/database.h"
#include "page_fixture.h"

namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

class KernelTest : public PageTest {
protected:
    /// Transform 1 in points from the page's lower left.
    static void use_points() {
        const float side = 575; // the shorter side of the page, less one
        gset_win(1, {0, side, 0, side});
        gsel_norm_tran(1);
    }
    static void expect_no_junk(const std::string &text) {
        EXPECT_EQ(text.find("nan"), std::string::npos);
        EXPECT_EQ(text.find("inf"), std::string::npos);
    }
};

} // namespace

TEST_F(KernelTest, LinesAndAreasReachThePageInItsUnits) {
    open();
    use_points();
    mark();
    EXPECT_EQ(GPH_line(10, 20, 30.5F, 40), 0);
    EXPECT_EQ(GPH_frect(1, 2, 3, 4), 0);
    const std::string page = written();
    EXPECT_NE(page.find("%%PL:2\n"), std::string::npos);
    EXPECT_NE(page.find("np\n10.00 20.00 mv\n30.50 40.00 ln\nstroke\n"), std::string::npos);
    EXPECT_NE(page.find("%%FA:5\n"), std::string::npos);
    EXPECT_NE(page.find("1.00 2.00 mv\n3.00 2.00 ln\n3.00 4.00 ln\n1.00 4.00 ln\n"), std::string::npos);
}

/// The drawing area of the page lies where the geometry puts it, and all that is drawn with it.
TEST_F(KernelTest, ThePageIsShiftedByItsGeometry) {
    setenv("vyxps_geometry", "P2x2+1+0", 1); // the upper right quarter of 756 x 576 points
    open();
    unsetenv("vyxps_geometry");
    const float side = 287;
    gset_win(1, {0, side, 0, side});
    gsel_norm_tran(1);
    mark();
    GPH_line(10, 20, 30, 40);
    EXPECT_NE(written().find("np\n388.00 308.00 mv\n408.00 328.00 ln\nstroke\n"), std::string::npos);
}

TEST_F(KernelTest, WhatIsRefusedOrOutsideIsNeitherDrawnNorRecorded) {
    open();
    use_points();
    gset_redraw(1);
    mark();
    const ObjectRecord *const before = gfirst_obj();
    EXPECT_EQ(errors_of([] {
                  EXPECT_EQ(gpolyline(std::array{Point{1, 1}}), -1);
              }),
              "gpolyline: invalid number of points: 1\n");
    EXPECT_EQ(gfill_area({}), 0);
    EXPECT_EQ(gpolymarker({}), 0);
    EXPECT_EQ(gtext({5, 5}, ""), 0);
    EXPECT_EQ(gtext({kNan, 5}, "lost"), 0);
    EXPECT_EQ(GPH_line(-10, -10, -1, 700), 0);
    EXPECT_EQ(GPH_frect(600, 0, 700, 10), 0);
    EXPECT_EQ(GPH_mark(-50, 5), 0);
    EXPECT_EQ(before->next, nullptr);
    EXPECT_EQ(written(), "");
}

TEST_F(KernelTest, PatternsAreNotDrawnOnAPage) {
    open();
    gset_fill_int_style(2);
    gset_redraw(1);
    mark();
    EXPECT_EQ(GPH_frect(0, 0, 1, 1), 0);
    EXPECT_EQ(gfirst_obj()->next->type, ObjectType::fill_area);
    EXPECT_EQ(written(), "");
}

TEST_F(KernelTest, MarkersAreDrawnInDeviceUnits) {
    open();
    use_points();
    gset_marker_size(2.5F); // 18 points, half 9
    gset_marker_type(2);
    mark();
    GPH_mark(100, 100);
    gset_marker_type(1);
    GPH_mark(200, 200);
    gset_marker_type(4);
    GPH_mark(-5, 300); // reaches into the window
    gset_marker_type(10);
    GPH_mark(300, 300); // no such shape
    const std::string page = written();
    EXPECT_NE(
        page.find(
            "np\n91.00 100.00 mv\n109.00 100.00 ln\nstroke\nnp\n100.00 109.00 mv\n100.00 91.00 ln\nstroke\n"),
        std::string::npos);
    EXPECT_NE(
        page.find(
            "200.00 200.00 mv\n201.00 200.00 ln\n201.00 201.00 ln\n200.00 201.00 ln\n200.00 200.00 ln\n"),
        std::string::npos);
    EXPECT_NE(page.find("4.00 300.00 mv\n"), std::string::npos);
    EXPECT_EQ(occurrences(page, "stroke\n"), 4U);
}

/// The triangle stands on its base, its inverse on its tip: on a page as in a window.
TEST_F(KernelTest, MarkersStandUprightOnAPage) {
    open();
    use_points();
    gset_marker_size(2.5F);
    mark();
    gset_marker_type(7);
    GPH_mark(100, 100);
    gset_marker_type(9);
    GPH_mark(200, 200);
    const std::string page = written();
    EXPECT_NE(page.find("np\n91.00 91.00 mv\n109.00 91.00 ln\n100.00 109.00 ln\n91.00 91.00 ln\n"),
              std::string::npos);
    EXPECT_NE(page.find("np\n191.00 209.00 mv\n209.00 209.00 ln\n200.00 191.00 ln\n191.00 209.00 ln\n"),
              std::string::npos);
}

TEST_F(KernelTest, UnusableNumbersNeverReachThePage) {
    open();
    mark();
    std::vector<Point> points{
        {0.5F, 0.5F}, {kNan, 0.5F}, {1e30F, -1e30F}, {0, std::numeric_limits<float>::infinity()}};
    gpolyline(points);
    gfill_area(points);
    gpolymarker(points);
    points.resize(40, {0.25F, kNan});
    gpolyline(points);
    gset_win(0, {0, 0, kNan, 1});
    gset_vp(0, {kNan, 1, 0, std::numeric_limits<float>::infinity()});
    gset_ws_win(1, {0, 0, 0, 0});
    gset_ws_vp(1, {kNan, kNan, 0, 1});
    GPH_line(0, 0, 1, 1);
    GPH_fcircle(0, 0, kNan);
    expect_no_junk(written());
}

TEST_F(KernelTest, ClipFollowsTheViewport) {
    open();
    gset_vp(2, {0.5F, 1, 0, 0.5F});
    mark();
    gsel_norm_tran(2);
    gsel_norm_tran(2);
    const std::string page = written();
    EXPECT_EQ(occurrences(page, "initclip\n"), 1U);
    EXPECT_NE(page.find("287.40 -0.10 mv\n"), std::string::npos);
    EXPECT_NE(page.find("575.10 287.60 ln\n"), std::string::npos);
}

TEST_F(KernelTest, ReplayDrawsTheSamePageAndRecordsNothing) {
    open();
    gset_redraw(1);
    mark();
    const auto draw = [] {
        gset_colr_rep(1, 3, {1, 0, 0});
        gset_win(2, {0, 10, 0, 10});
        gset_vp(2, {0, 1, 0, 0.5F});
        gset_ws_win(1, {0, 1, 0, 0.75F});
        gsel_norm_tran(2);
        gset_linetype(4);
        gset_linewidth(2);
        gset_line_colr_ind(506);
        gset_line_print_bold(3);
        GPH_circle(5, 5, 2);
        gset_marker_type(9);
        gset_marker_size(2);
        gset_marker_width(2);
        gset_marker_colr_ind(3);
        GPH_mark(4, 4);
        gset_text_colr_ind(3);
        gset_char_ht(1);
        gset_text_align(2, 3);
        gset_char_up_vec(1, 1);
        gtext({5, 5}, "AB");
        gset_fill_colr_ind(3);
        GPH_frect(1, 1, 2, 2);
        gclear_region({3, 4, 3, 4});
        gset_fill_print_solid(1);
        GPH_frect(1, 1, 2, 2);
        gset_fill_int_style(2);
        gset_fill_style_ind(4);
        gmessage(3, "told");
    };
    draw();
    std::size_t records = 0;
    for (const ObjectRecord *r = gfirst_obj(); r != nullptr; r = r->next) ++records;
    EXPECT_EQ(records, 29U); // the mark among them
    ginit_tran(PlotMode::postscript);
    greset_line();
    greset_marker();
    greset_text();
    greset_fill();
    gset_redraw(0);
    gset_line_print_bold(1);
    gset_fill_print_solid(0);
    gset_redraw(1);
    gredraw_objs();
    EXPECT_EQ(gget_redraw(), 1);
    std::size_t after = 0;
    for (const ObjectRecord *r = gfirst_obj(); r != nullptr; r = r->next) ++after;
    EXPECT_EQ(after, records);

    const std::string page = written();
    const std::size_t second = page.find("%%Message: mark");
    ASSERT_NE(second, std::string::npos);
    // Only the state that the stream is in differs; every shape is there twice.
    const std::string first_half = page.substr(0, second), second_half = page.substr(second);
    for (const char *part : {"%%PL:", "%%PM:", "%%FA:", "%%TE:", " mv\n", " ln\n", "stroke\n", "fill\n"}) {
        SCOPED_TRACE(part);
        const std::size_t clip_again = std::string(part) == " mv\n"   ? 1
                                       : std::string(part) == " ln\n" ? 3
                                                                      : 0;
        EXPECT_EQ(occurrences(first_half, part) - clip_again, occurrences(second_half, part));
    }
}

/// Every attribute of text is recorded: what a replay writes stands letter by letter where it stood.
TEST_F(KernelTest, ReplayedTextStandsWhereItStood) {
    RES_put("file_path", std::string(VYX_SOURCE_DIR) + "/data"); // for the fonts
    open();
    use_points();
    gset_redraw(1);
    gset_char_ht(20);
    const auto draw = [](float y, void (*set)()) {
        set();
        gtext({10, y}, "L L");
    };
    draw(10, [] { gset_space(1.5F); });
    draw(50, [] { gset_expan(2); });
    draw(90, [] { gset_char_space(1); });
    draw(130, [] { gset_text_width(3); });
    draw(170, [] { gset_text_align(kAlignRight, kAlignCap); });
    mark();
    greset_text();
    greset_line();
    gset_redraw(0);
    gset_redraw(1);
    gredraw_objs();
    (void)gclose_ws(1);
    std::ostringstream all;
    all << std::ifstream(path_).rdbuf();
    const std::string page = all.str();
    const auto strokes = [](const std::string &part) {
        std::vector<std::string> found;
        std::istringstream in(part);
        for (std::string line; std::getline(in, line);)
            if (line.ends_with(" mv") || line.ends_with(" ln") ||
                (!found.empty() && line.ends_with("dot lw")))
                found.push_back(line);
        return found;
    };
    const std::size_t second = page.find("%%Message: mark");
    const std::size_t first_text = page.find("%%TE:"), second_text = page.find("%%TE:", second);
    ASSERT_NE(second_text, page.npos);
    const auto original = strokes(page.substr(first_text, second - first_text));
    EXPECT_GE(original.size(), 5U * 2 * 3);
    EXPECT_EQ(strokes(page.substr(second_text)), original);
}

TEST_F(KernelTest, StrokesOfTextReachTheDeviceThatIsOpen) {
    const std::array run{Point{10, 10}, Point{20, 30}};
    gstroke_run(run); // nothing is open, nothing happens
    open();
    use_points();
    gset_text_colr_ind(503);
    mark();
    gstroke_begin({10, 10}, "L");
    gstroke_run(run);
    const std::string page = written();
    EXPECT_EQ(page, "%%TE:10.000000 10.000000 L\n1 setgray\nnp\n10.00 10.00 mv\n20.00 30.00 ln\nstroke\n");
    gstroke_run(run);
}

TEST_F(KernelTest, PanelIsFittedIntoTheUsedView) {
    open();
    GPH_set_maxview(1);
    const float high = 575.0F / 755.0F;
    EXPECT_FLOAT_EQ(GPH_get_view_size().ymax, high);
    EXPECT_FLOAT_EQ(GPH_get_win(1).ymax, high);
    EXPECT_EQ(gstate().current_transform, 0);
    EXPECT_FLOAT_EQ(gstate().map.device.dx, 755); // the whole page
    EXPECT_FLOAT_EQ(gstate().map.device.dy, 575);

    GPH_set_view_size(0.5F, 1, 0.5F, 0);
    Rect panel{0.1F, 0.1F, 0, 0}; // margins left, right, bottom, top
    GPH_panel(1, panel, 1);
    EXPECT_FLOAT_EQ(panel.xmin, 0.55F);
    EXPECT_FLOAT_EQ(panel.xmax, 0.95F);
    EXPECT_FLOAT_EQ(panel.height(), 0.4F);
    EXPECT_FLOAT_EQ((panel.ymin + panel.ymax) / 2, high / 2);
    EXPECT_EQ(GPH_get_win(3), panel);
    Rect window, viewport;
    ginq_norm_tran(2, window, viewport);
    EXPECT_EQ(viewport, panel);
}

TEST_F(KernelTest, BeginAndEndOfAPlot) {
    int ws = 0;
    DeviceKind device = DeviceKind::ps;
    FLAG_set(kFlagDevice, 1);
    GPH_set_win_title("Storm title");
    EXPECT_EQ(GPH_begin(ws, path_.string(), device), 0);
    EXPECT_EQ(ws, 1);
    EXPECT_EQ(gchk_graphics(), 1);
    EXPECT_EQ(GPH_printf(0.5F, 0.5F, "%s %d", "x", 5), 0);
    EXPECT_EQ(gget_redraw(), 0);
    EXPECT_EQ(errors_of([this] { EXPECT_EQ(gopen_ws(1, path_.string(), DeviceKind::ps), -1); }),
              "gopen_ws: a workstation is already open\n");
    EXPECT_EQ(GPH_end(ws), 0);
    EXPECT_EQ(FLAG_get(kFlagDevice), 4);
    EXPECT_EQ(gget_win_type(), DeviceKind::none);
    std::ostringstream page;
    page << std::ifstream(path_).rdbuf();
    EXPECT_NE(page.str().find("%%VYX Plot: Storm title\n"), std::string::npos);
}

TEST_F(KernelTest, TheDeviceIsAskedForWhenNoneIsChosen) {
    const std::string replies = path_.string() + ".replies";
    std::ofstream(replies) << "Postscript\n";
    ASSERT_NE(std::freopen(replies.c_str(), "r", stdin), nullptr);
    int ws = 0;
    DeviceKind device = DeviceKind::none;
    testing::internal::CaptureStdout();
    GPH_begin(ws, path_.string(), device);
    EXPECT_EQ(testing::internal::GetCapturedStdout().find("Display (D) or Postscript (P): "), 0U);
    EXPECT_EQ(device, DeviceKind::ps);
    EXPECT_EQ(FLAG_get(kFlagDevice), 4);
    (void)GPH_end(ws);
    EXPECT_EQ(FLAG_get(kFlagDevice), 0); // the next plot asks again
    std::filesystem::remove(replies);
}

TEST_F(KernelTest, StartUpFailuresEndTheProgram) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto begin = [](const std::string &spec, DeviceKind device) {
        int ws = 0;
        GPH_begin(ws, spec, device);
    };
    EXPECT_EXIT(begin("/nonexistent\n/directory/page.ps", DeviceKind{2}),
                testing::ExitedWithCode(kExitGraphics),
                "gopen_ws: device not available in this version\nGPH_begin: Error opening workstation\n");
    EXPECT_EXIT(begin("/dev/null/page.ps", DeviceKind::ps), testing::ExitedWithCode(kExitGraphics),
                "gopen_ws: unable to open postscript file\nGPH_begin: Error opening workstation\n");
    setenv("vyxprint", "HPGL", 1);
    EXPECT_EXIT(begin("/dev/null/page.ps", DeviceKind::ps), testing::ExitedWithCode(kExitGraphics),
                "gopen_ws: unable to open HPGL file\n");
    unsetenv("vyxprint");
    EXPECT_FALSE(std::filesystem::exists(path_));
}
