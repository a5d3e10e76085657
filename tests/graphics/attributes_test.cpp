#include <cmath>
#include <limits>
#include <string>

#include "graphics/kernel/device.h"
#include "graphics/kernel/helpers.h"
#include "page_fixture.h"

namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

class AttributesTest : public PageTest {
protected:
    /// As on a window, as far as attributes are concerned.
    static void pretend_window() {
        gstate().kind = DeviceKind::win;
        gstate().device = gdevice_of(DeviceKind::win);
    }
    static void pretend_page() {
        gstate().kind = DeviceKind::ps;
        gstate().device = gdevice_of(DeviceKind::ps);
    }
};

} // namespace

TEST_F(AttributesTest, RefusedValuesSayWhyAndChangeNothing) {
    open();
    gset_redraw(1);
    struct Case {
        int (*set)();
        const char *message;
    };
    const Case cases[] = {
        {[] { return gset_linetype(-1); }, "gset_linetype: invalid line type: -1\n"},
        {[] { return gset_linewidth(-2); }, "gset_linewidth: invalid line width: -2.000000\n"},
        {[] { return gset_linewidth(kNan); }, "gset_linewidth: invalid line width: "},
        {[] { return gset_marker_size(-1); }, "gset_marker_size: invalid marker size: -1.000000\n"},
        {[] { return gset_marker_width(-1); }, "gset_marker_width: invalid marker width: -1.000000\n"},
        {[] { return gset_char_ht(-1); }, "gset_char_ht: invalid character height: -1.000000\n"},
        {[] { return gset_expan(-1); }, "gset_expan: invalid expansion factor: -1.000000\n"},
        {[] { return gset_text_width(-1); }, "gset_text_width: invalid text width: -1.000000\n"},
        {[] { return gset_fill_style_ind(20); }, "gset_fill_style_ind: invalid style index: 20\n"},
        {[] { return gset_line_colr_ind(257); }, "gset_line_colr_ind: invalid color index: 257\n"},
        {[] { return gset_text_colr_ind(-2); }, "gset_text_colr_ind: invalid color index: -2\n"},
        {[] { return gset_fill_colr_ind(509); }, "gset_fill_colr_ind: invalid color index: 509\n"},
        {[] { return gset_colr_rep(1, 499, {}); }, "gset_colr_rep: invalid color index: 499\n"},
        {[] { return gsel_norm_tran(6); }, "gsel_norm_tran: invalid transformation number: 6\n"},
        {[] { return gset_char_up_vec(0, 0); }, "gset_char_up_vec: "},
        {[] { return gset_char_space(kNan); }, "gset_char_space: "},
    };
    for (const Case &c : cases) {
        int status = 0;
        const std::string said = errors_of([&] { status = c.set(); });
        EXPECT_EQ(status, -1) << c.message;
        EXPECT_EQ(said.substr(0, std::string(c.message).size()), c.message);
    }
    EXPECT_EQ(gfirst_obj(), nullptr);
    EXPECT_EQ(gstate().line.type, 1);
    EXPECT_EQ(gstate().fill.style, 1);
    EXPECT_EQ(gstate().text.up, (Point{0, 1}));
}

TEST_F(AttributesTest, ClosedKernelIsSilentAndAClosedWorkstationIsReported) {
    EXPECT_EQ(errors_of([] { EXPECT_EQ(gset_linetype(2), -1); }), "");
    (void)gopen_gks("", 0);
    EXPECT_EQ(errors_of([] { EXPECT_EQ(gset_linetype(2), -1); }), "gset_linetype: GKS not opened\n");
    EXPECT_EQ(errors_of([] { EXPECT_EQ(gtext({0, 0}, "a"), -1); }), "gtext: GKS not opened\n");
    EXPECT_EQ(gchk_graphics(), 0);
}

TEST_F(AttributesTest, TheCurrentValueIsNotRecordedAgain) {
    open();
    gset_redraw(1);
    gset_linetype(1);
    gset_char_ht(0.01F);
    gset_text_align(0, 0);
    gset_char_up_vec(0, 5);
    gset_fill_colr_ind(1);
    gset_linewidth(0); // a page draws width 0 as 1, which is current
    gset_text_width(0);
    gsel_norm_tran(0);
    EXPECT_EQ(gfirst_obj(), nullptr);

    gset_linewidth(3);
    ASSERT_NE(gfirst_obj(), nullptr);
    EXPECT_EQ(gfirst_obj()->type, ObjectType::line_width);
    EXPECT_EQ(gfirst_obj()->next, nullptr);
    gset_linewidth(0);
    EXPECT_EQ(gstate().line.width, 1);
}

TEST_F(AttributesTest, UpVectorBecomesAUnitVector) {
    open();
    EXPECT_EQ(gset_char_up_vec(3, -4), 0);
    EXPECT_FLOAT_EQ(gstate().text.up.x, 0.6F);
    EXPECT_FLOAT_EQ(gstate().text.up.y, -0.8F);
}

TEST_F(AttributesTest, ColoursOnPageAndWindow) {
    open();
    EXPECT_EQ(gset_line_colr_ind(507), 0); // a page takes print-only and unstored indices
    EXPECT_EQ(gstate().line.color, 507);
    EXPECT_EQ(gset_fill_colr_ind(77), 0);

    pretend_window();
    EXPECT_EQ(errors_of([] { EXPECT_EQ(gset_fill_colr_ind(3), -1); }),
              "gset_fill_colr_ind: color index not initialized\n");
    gstate().colors[1].pixel = 0xFF;
    EXPECT_EQ(gset_line_colr_ind(500), 0);
    EXPECT_EQ(gstate().line.color, 1);
    pretend_page();
}

TEST_F(AttributesTest, ColourIndicesAreFoundOrAllocated) {
    open();
    EXPECT_EQ(gset_colr_rep(1, 4, {1, 0.5F, 0}), 0);
    EXPECT_EQ(gget_color_ind(4), -2);
    EXPECT_EQ(gget_color_ind(3), -1);
    EXPECT_EQ(gget_color_rgb(-1), (Rgb{1, 1, 1})); // the page
    EXPECT_EQ(GPH_set_color(-1, 1, 0.504F, 0), 4);
    EXPECT_EQ(GPH_set_color(-1, 0, 0, 0), 5); // an index never stored is no black
    EXPECT_EQ(GPH_set_color(9, 0, 0, 0), 9);
    EXPECT_EQ(GPH_set_color(-1, 0.001F, 0, 0), 9); // the last of two near ones
    EXPECT_EQ(gset_colr_rep(1, 503, {0, 1, 0}), 0);
    EXPECT_EQ(gget_color_rgb(503), Rgb{});
    GPH_set_color(255, 0.5F, 0.5F, 0.5F);
    EXPECT_EQ(GPH_set_color(-1, 0, 1, 1), -1); // none is free
    EXPECT_EQ(GPH_set_color(20, kNan, 7, -7), 20);
    EXPECT_EQ(gget_color_rgb(20), (Rgb{0, 1, 0}));
}

TEST_F(AttributesTest, RecordsSetWhatTheyHold) {
    open();
    gset_linewidth(4);
    gset_linetype(3);
    const Attribute unset;
    GPH_line_attr(&unset);
    EXPECT_EQ(gstate().line.type, 3);
    EXPECT_EQ(gstate().line.width, 4);
    EXPECT_EQ(gstate().line.color, 1);
    GPH_line_attr(nullptr);
    EXPECT_EQ(gstate().line.type, 1);
    EXPECT_EQ(gstate().line.width, 1);

    Attribute record;
    record.color = 7;
    record.height = 2;
    record.style = 6;
    record.fill = 12;
    record.expansion = 0.8F;
    GPH_mark_attr(&record, 1.5F);
    EXPECT_EQ(gstate().marker.color, 7);
    EXPECT_EQ(gstate().marker.type, 6);
    EXPECT_EQ(gstate().marker.size, 3);
    GPH_mark_attr(&unset, 0.5F);
    EXPECT_EQ(gstate().marker.size, 0.5F);
    GPH_mark_attr(&unset, 0);
    EXPECT_EQ(gstate().marker.size, 0.5F);

    gset_space(1);
    EXPECT_EQ(GPH_text_attr(&record, 0.02F), 0);
    EXPECT_FLOAT_EQ(gstate().text.height, 0.04F);
    EXPECT_EQ(gstate().text.expansion, 0.8F);
    EXPECT_EQ(gstate().text.space, 0.25F);
    GPH_text_attr(&unset, 0.03F);
    EXPECT_EQ(gstate().text.height, 0.03F);
    EXPECT_EQ(GPH_text_attr(nullptr, 0.1F), -1);
    EXPECT_EQ(gstate().text.expansion, 1);
    EXPECT_EQ(gstate().text.height, 0.03F);

    GPH_fill_attr(&record);
    EXPECT_EQ(gstate().fill.interior, kInteriorPattern);
    EXPECT_EQ(gstate().fill.style, 12);
    GPH_fill_attr(&unset);
    EXPECT_EQ(gstate().fill.interior, kInteriorPattern);
    record.fill = 0;
    GPH_fill_attr(&record);
    EXPECT_EQ(gstate().fill.interior, kInteriorSolid);
}
