// The plot session: frames, overlays, labels and plot parameters.

#include "plot/session/images.h"
#include "plot/session/labels.h"
#include "plot/session/layout.h"
#include "plot/session/plot_session.h"

#include "graphics/core/state.h"
#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "graphics/text/font.h"
#include "lib/files/naming.h"
#include "lib/report/process.h"
#include "plot/colour/levels.h"
#include "plot/map/settings.h"
#include "plot_page.h"

namespace {

class Session : public PlotPage {
protected:
    void SetUp() override {
        PlotPage::SetUp();
        RES_put("plot_param", "");
        RES_put("label", "");
    }
    std::vector<PageText> labels_of_page() {
        EXPECT_EQ(PLT_labels(), 0);
        return texts_of(close_page());
    }
};

DateRecord july_4() {
    DateRecord date;
    date.year = 2003;
    date.month = 7;
    date.day = 4;
    date.hour = 18;
    date.minute = 5;
    return date;
}

TEST_F(Session, NothingIsDrawn) {
    FLAG_set(kFlagPlotType, kPlotTypeNone);
    EXPECT_EQ(PLT_open(1), -1);
    EXPECT_EQ(PLT_reset(1), -1);
    EXPECT_EQ(PLT_close(), -1);
    FLAG_set(kFlagPlotType, 0);
    FLAG_resetplot(0);
    EXPECT_EQ(PLT_open(1), -1);
    EXPECT_EQ(gchk_graphics(), 0);
}

TEST_F(Session, ViewFollowsOffsetsAndAspect) {
    open_page(2);
    const Rect view = PLT_get_view(), page = GPH_get_view_size();
    EXPECT_NEAR(view.width() / view.height(), 2, 1e-4);
    EXPECT_EQ(PLT_get_work_type(), DeviceKind::ps);
    PLT_set_view_offset(0.1F);
    EXPECT_EQ(PLT_get_view_offset(), 0.1F);
    EXPECT_EQ(PLT_reset(1), 0);
    EXPECT_NEAR(PLT_get_view().ymin, 0.1F * page.ymax, 1e-4);
    EXPECT_NEAR(PLT_get_view().width(), PLT_get_view().height(), 1e-4);
    PLT_set_view_offsets(0, 0, 0, 0);
    EXPECT_EQ(PLT_panel(0), 0);
    EXPECT_NEAR(PLT_get_view().width(), PLT_get_view().height(), 1e-4) << "aspect 0 keeps the view's";
    close_page();
}

TEST_F(Session, AnUnwritablePageEndsTheProgram) {
    RES_put("device", "ps,/dev/full");
    FLAG_set(kFlagDevice, 4);
    const auto plot = [] {
        PLT_open(1);
        PLT_labels();
        PLT_close();
        VYX_exit(0);
    };
    EXPECT_EXIT(plot(), testing::ExitedWithCode(kExitSession), "");
    const auto leave = [] {
        PLT_open(1);
        PLT_exit(kExitNoFile);
    };
    EXPECT_EXIT(leave(), testing::ExitedWithCode(kExitNoFile), "");
}

TEST_F(Session, LabelFormats) {
    PLT_label_date(july_4());
    EXPECT_EQ(PLT_label_format("Radar_%y%m%d"), "Radar 030704");
    EXPECT_EQ(PLT_label_format("%d-%b %h:%n"), "04-JUL 18:05");
    EXPECT_EQ(PLT_label_format("100%%"), "100%");
    EXPECT_EQ(PLT_label_format("a%qb%"), "ab");
    EXPECT_EQ(PLT_label_format(""), "");
    PLT_label_for_time(6);
    EXPECT_EQ(PLT_label_format("%D|%V|%W"), "1805Z  4 JUL 03|00Z SAT  5 JUL 03|SAT  5 JUL 03");
    EXPECT_EQ(PLT_label_format("%f"), "6 hour");
    PLT_label_date(DateRecord{});
    EXPECT_EQ(PLT_label_format("<%y%m%b>"), "<>");
}

TEST_F(Session, LabelsOfOverlays) {
    PLT_label_up_left("first");
    EXPECT_EQ(PLT_next_overlay(), 1);
    PLT_label_up_left("second");
    EXPECT_EQ(PLT_get_label(0, 0), "first");
    EXPECT_EQ(PLT_get_label(0, 1), "second");
    PLT_label_up_left(std::string(69, 'x'));
    EXPECT_EQ(PLT_get_label(0, 1), "second") << "a label that is too long is not stored";
    PLT_init_labels();
    EXPECT_EQ(PLT_get_num_over(), 0);
    EXPECT_EQ(PLT_get_label(0, 0), "");

    PLT_set_overlay(0);
    PLT_set_label_type(-1);
    PLT_label_low_right("first");
    EXPECT_EQ(PLT_next_overlay(), 1);
    EXPECT_EQ(PLT_get_label_type(), -2);
    PLT_label_low_right("second");
    PLT_label_low_right("2nd");
    EXPECT_EQ(PLT_get_label(5, 0), "first 2nd") << "again in the same overlay: replaced";
    PLT_label_low_right(std::string(55, 'x'));
    EXPECT_EQ(PLT_get_label(5, 0), "first 2nd");

    PLT_set_overlay(9);
    EXPECT_EQ(PLT_get_num_over(), 5);
    EXPECT_EQ(PLT_next_overlay(), 6);
    EXPECT_EQ(PLT_next_overlay(), -1);
    PLT_set_label_type(0);
    PLT_label_up_left("nowhere");
    EXPECT_EQ(PLT_get_label(0, 6), "");
    PLT_set_num_overlay(-2);
    EXPECT_EQ(PLT_get_num_over(), 2);
    PLT_set_num_overlay(1000000);
    EXPECT_EQ(PLT_get_num_over(), 6);
    EXPECT_EQ(PLT_get_label(-1, 0), "");
    EXPECT_EQ(PLT_get_label(6, 0), "");
}

TEST_F(Session, LabelsStandAroundThePlot) {
    RES_put("label", "ul:My_%y,lr2:later,xx:none,ur,uc9:lost");
    PLT_label_date(july_4());
    CONT_set_bar(0);
    open_page();
    PLT_label_up_left("driver");
    PLT_label_up_right("right");
    PLT_label_low_left("low");
    const Rect view = PLT_get_view();
    const auto texts = labels_of_page();
    ASSERT_EQ(texts.size(), 3U);
    EXPECT_EQ(texts[0].text, "My 03");
    EXPECT_EQ(texts[1].text, "right");
    EXPECT_EQ(texts[2].text, "low");
    EXPECT_NEAR(texts[0].x, view.xmin + 0.01F * view.width(), 1e-3);
    EXPECT_NEAR(texts[1].x, view.xmax - 0.01F * view.width(), 1e-3);
    EXPECT_GT(texts[0].y, view.ymax);
    EXPECT_LT(texts[2].y, view.ymin);
}

TEST_F(Session, TheBarTakesTheLowerLeft) {
    CONT_set_bar(1);
    open_page();
    PLT_label_low_left("left");
    PLT_label_low_center("centre");
    PLT_label_low_right("right");
    const auto texts = labels_of_page();
    ASSERT_EQ(texts.size(), 1U);
    EXPECT_EQ(texts[0].text, "right");
}

TEST_F(Session, AShortLabelBesideTheBarKeepsItsSize) {
    open_page();
    PLT_label_low_right("right");
    std::vector<float> widths;
    for (const int bar : {0, 1}) {
        CONT_set_bar(bar);
        EXPECT_EQ(PLT_labels(), 0);
        widths.push_back(gtext_width("right")); // the label was drawn last
    }
    EXPECT_GT(widths[0], 0);
    EXPECT_EQ(widths[0], widths[1]);
    close_page();
}

TEST_F(Session, SwitchedOffComponentsAndFixedPositions) {
    RES_put("label", "ul:Title");
    CONT_set_bar(0);
    open_page();
    PLT_set_num_overlay(2);
    FLAG_setplot(kPlotTextUR, 0);
    PLT_label_up_right("off");
    PLT_label_up_center("on");
    PLT_set_overlay(1);
    PLT_label_up_left("second line");
    PLT_label_up_center("on too");
    const auto texts = labels_of_page();
    ASSERT_EQ(texts.size(), 3U);
    EXPECT_EQ(texts[0].text, "Title");
    EXPECT_EQ(texts[1].text, "on");
    EXPECT_EQ(texts[2].text, "on too");
    EXPECT_GT(texts[2].y, texts[1].y);
}

TEST_F(Session, LongLabelsShrinkUntilTheyStandApart) {
    CONT_set_bar(0);
    open_page();
    const std::string longest(68, 'W');
    PLT_label_up_left(longest);
    PLT_label_up_right(longest);
    PLT_label_low_left("short");
    EXPECT_EQ(PLT_labels(), 0);
    // The last line drawn was the lower one, with the normal height.
    const float normal = gtext_width(longest);
    EXPECT_GT(normal, PLT_get_view().width() / 2);
    FLAG_setplot(kPlotTextLL, 0);
    FLAG_setplot(kPlotTextLC, 0);
    PLT_label_low_right(longest);
    EXPECT_EQ(PLT_labels(), 0);
    EXPECT_LE(gtext_width(longest), PLT_get_view().xmax) << "it begins on the page";
    close_page();
}

TEST_F(Session, FullLabelsStandInside) {
    RES_put("plot_param", "fullab");
    CONT_set_bar(0);
    open_page();
    PLT_label_up_left("top");
    PLT_label_low_left("bottom");
    const Rect view = PLT_get_view();
    EXPECT_NEAR(view.ymin, GPH_get_view_size().ymin, 1e-5);
    const auto texts = labels_of_page();
    ASSERT_EQ(texts.size(), 2U);
    EXPECT_LT(texts[0].y, view.ymax);
    EXPECT_GT(texts[1].y, view.ymin);
}

/// The lines of all overlays share the band above the plot, and those below it the other one.
TEST_F(Session, LinesOfEveryOverlayHaveRoom) {
    CONT_set_bar(0);
    open_page();
    constexpr int kLines = 6;
    PLT_set_num_overlay(kLines);
    for (int i = 0; i < kLines; ++i) {
        PLT_set_overlay(i);
        PLT_label_up_left("above " + std::to_string(i));
        PLT_label_low_left("below " + std::to_string(i));
    }
    const Rect view = PLT_get_view(), page = GPH_get_view_size();
    EXPECT_NEAR(view.ymin - page.ymin, 0.04F * page.ymax, 1e-3);
    EXPECT_EQ(PLT_labels(), 0);
    const float height = gstate().text.height;
    const auto texts = texts_of(close_page());
    ASSERT_EQ(texts.size(), 2U * kLines);
    for (std::size_t i = 0; i < kLines; ++i) {
        const PageText &above = texts[i], &below = texts[kLines + i];
        EXPECT_GT(above.y, view.ymax) << above.text;
        EXPECT_LT(above.y + height, page.ymax) << above.text;
        EXPECT_LT(below.y, view.ymin) << below.text;
        EXPECT_GT(below.y - height, page.ymin - 1e-3F) << below.text;
        if (i == 0) continue;
        EXPECT_GT(std::abs(above.y - texts[i - 1].y), height);
        EXPECT_GT(std::abs(below.y - texts[kLines + i - 1].y), height);
    }
}

TEST_F(Session, WithoutRoomNoLabels) {
    RES_put("plot_param", "full");
    open_page();
    PLT_label_up_left("top");
    EXPECT_EQ(PLT_labels(), -1);
    EXPECT_TRUE(texts_of(close_page()).empty());
}

TEST_F(Session, PlotParameters) {
    RES_put("plot_param",
            "LALO=10,over=1:3,min_size=-5,bar=5:60,vp_size=2x2+1+0,INV,nonsense,,=,tz,shadow=0");
    open_page();
    EXPECT_EQ(MAP_get_latlon().lon_spacing, 10);
    EXPECT_EQ(PLT_get_overlay_base(), 1);
    EXPECT_EQ(PLT_get_num_over(), 3);
    EXPECT_EQ(FILE_get_min_size(), 0);
    EXPECT_EQ(CONT_get_bar(), 2);
    float max = 0, min = 0;
    CONT_get_bar_range(max, min);
    EXPECT_EQ(max, 60);
    EXPECT_EQ(min, 5);
    EXPECT_EQ(gget_inverse(), 1);
    const Rect page = GPH_get_view_size();
    EXPECT_NEAR(page.xmin, page.xmax / 2, 1e-4) << "second column";
    EXPECT_NEAR(page.ymin, page.ymax / 2, 1e-4) << "first row from the top";
    close_page();
}

TEST_F(Session, IncompletePanelsChangeNothing) {
    for (const char *param : {"vp_size=2x2+1", "vp_size=2x", "vp_size", "nobar"}) {
        RES_put("plot_param", param);
        open_page();
        EXPECT_EQ(GPH_get_view_size().xmin, 0) << param;
        close_page();
    }
    EXPECT_EQ(CONT_get_bar(), kBarOff);
}

TEST_F(Session, AFileDeviceHasNoImage) {
    RES_put("plot_param", "gif_inter,gif=/my.gif");
    RES_put("out_file", "png=" + scratch_.at("my.png"));
    open_page();
    testing::internal::CaptureStderr();
    EXPECT_EQ(PLT_dump(0), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "PLT_dump: Unable to write GIF file: /my.gif\nPLT_dump: Unable to write PNG file: " +
                  scratch_.at("my.png") + "\n");
    const auto close_and_end = [] {
        PLT_close();
        VYX_exit(0);
    };
    EXPECT_EXIT(close_and_end(), testing::ExitedWithCode(kExitSession), "") << "it was asked for";
    EXPECT_TRUE(page_text().ends_with("%%EOF\n")) << "the page is whole all the same";
}

} // namespace
