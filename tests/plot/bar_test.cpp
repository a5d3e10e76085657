// The colour bar: where it stands, which levels it shows, and that its numbers can be read.

#include "plot/bar/color_bar.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <optional>

#include "graphics/core/object_list.h"
#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "graphics/text/font.h"
#include "plot/colour/level_choice.h"
#include "plot/colour/levels.h"
#include "plot/session/layout.h"
#include "plot_page.h"

namespace {

class Bar : public PlotPage {
protected:
    void SetUp() override {
        PlotPage::SetUp();
        RES_put("color_fill", "");
        CONT_init();
        CONT_set_type(kContourFill);
    }
    int draw(std::string_view title = "") {
        GPH_trans(kViewTransform);
        const int result = CONT_draw_bar(1, title);
        GPH_trans(kDataTransform);
        return result;
    }
    static std::vector<std::string> strings(const std::vector<PageText> &texts) {
        std::vector<std::string> found;
        for (const PageText &text : texts) found.push_back(text.text);
        return found;
    }
};

TEST_F(Bar, ExplicitLevels) {
    open_page();
    CONT_set_fill_colors("-100:off,5:blue,10:lblue:la=ten,15:red", 0);
    ASSERT_EQ(draw("dBZ"), 0);
    const Rect view = PLT_get_view();
    const float left = view.xmin + 0.03F * view.width(), right = (view.xmin + view.xmax) / 2;
    const float y = view.ymin - 0.02F;
    EXPECT_EQ(CONT_get_bar_value(left + 0.001F, y), -100);
    EXPECT_EQ(CONT_get_bar_value((left + right) / 2 + 0.001F, y), 10);
    EXPECT_EQ(CONT_get_bar_value(right, y), 15);
    EXPECT_EQ(CONT_get_bar_value(right + 0.001F, y), kMissingF);
    EXPECT_EQ(CONT_get_bar_value(left, view.ymin), kMissingF);
    const auto texts = texts_of(close_page());
    EXPECT_EQ(strings(texts), (std::vector<std::string>{"-100", "5", "ten", "15", "dBZ"}));
    EXPECT_NEAR(texts[0].x, left, 1e-3);
    EXPECT_NEAR(texts[0].y, 0, 1e-3)
        << "at the bottom of the page, where there is less room than the bar would take";
    EXPECT_NEAR(texts[4].x, view.xmax, 1e-3);
}

/// The boxes stand side by side in the upper half of the bar, and a frame around all of them.
TEST_F(Bar, BoxesFillTheirFrame) {
    RES_put("color_fill", "");
    open_page();
    CONT_set_fill_colors("5:blue,10:lblue,15:red,20:green", 0);
    gclear_objs();
    gset_redraw(1);
    ASSERT_EQ(draw(), 0);
    const Rect view = PLT_get_view(), page = GPH_get_view_size();
    std::vector<Rect> boxes;
    std::optional<Rect> frame;
    for (const ObjectRecord *object = gfirst_obj(); object != nullptr; object = object->next) {
        if (object->type != ObjectType::fill_area && object->type != ObjectType::polyline) continue;
        std::vector<Point> points(static_cast<std::size_t>(object->value));
        std::memcpy(points.data(), object->data(), object->size);
        const auto [left, right] = std::ranges::minmax(points, {}, &Point::x);
        const auto [low, high] = std::ranges::minmax(points, {}, &Point::y);
        const Rect around{left.x, right.x, low.y, high.y};
        if (object->type == ObjectType::fill_area)
            boxes.push_back(around);
        else if (points.size() == 5)
            frame = around;
    }
    gset_redraw(0);
    close_page();
    ASSERT_EQ(boxes.size(), 4U);
    ASSERT_TRUE(frame);
    constexpr float tiny = 1e-5F;
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        EXPECT_NEAR(boxes[i].xmin, i == 0 ? frame->xmin : boxes[i - 1].xmax, tiny) << i;
        EXPECT_NEAR(boxes[i].ymin, frame->ymin, tiny) << i;
        EXPECT_NEAR(boxes[i].ymax, frame->ymax, tiny) << i;
        EXPECT_NEAR(boxes[i].width(), frame->width() / 4, tiny) << i;
    }
    EXPECT_NEAR(boxes.back().xmax, frame->xmax, tiny);
    EXPECT_NEAR(frame->xmin, view.xmin + 0.03F * view.width(), tiny);
    EXPECT_NEAR(frame->xmax, (view.xmin + view.xmax) / 2, tiny);
    // Bar and its gap to the view are as high as the room below the view, up to 0.035.
    const float room = std::min(view.ymin - page.ymin, 0.035F);
    EXPECT_NEAR(view.ymin - frame->ymax, 0.15F * room, tiny);
    EXPECT_NEAR(frame->height(), 0.85F * room / 2, tiny);
}

/// Words that are no levels stand behind the eight levels of some products.
TEST_F(Bar, LevelsThatNoValueGetsAreNotShown) {
    open_page();
    const std::array<float, 11> words{-90, 0, 4, 8, 12, 16, 20, -90, -100, -100, -100};
    CONT_set_values(words);
    CONT_set_fill_colors("off,blue,lblue,cyan,lcyan,green,lgreen,brown,yellow,red,white", 0);
    ASSERT_EQ(draw(), 0);
    const Rect view = PLT_get_view();
    const float left = view.xmin + 0.03F * view.width(), right = (view.xmin + view.xmax) / 2;
    for (int box = 0; box < 7; ++box) {
        const float x = left + (static_cast<float>(box) + 0.5F) * (right - left) / 7;
        const float value = CONT_get_bar_value(x, view.ymin - 0.02F);
        EXPECT_EQ(value, words[static_cast<std::size_t>(box)]);
        Attribute data;
        CONT_get_fill_attrib(data, value);
        EXPECT_EQ(CONT_get_bar_color(x, view.ymin - 0.02F), data.color) << value;
    }
    EXPECT_EQ(strings(texts_of(close_page())),
              (std::vector<std::string>{"-90", "0", "4", "8", "12", "16", "20"}));
}

/// Picture and bar of colours alone: the same steps, in the first picture as in the second.
TEST_F(Bar, ColoursAloneCoverTheDriversLevels) {
    constexpr std::string_view own = "-100:off,5:blue,10:lblue,15:red";
    const std::array<float, 6> words{-90, 5, 10, 15, -100, -100};
    const struct {
        const char *colors, *interval, *base;
        float first, step;
    } cases[]{{"blue-red", "", "", 4, 2},
              {"red,green,blue,white", "", "", 4, 4},
              {"blue-red", "3", "", 3, 3},
              {"blue-red", "2", "5", 5, 2}};
    for (const auto &c : cases) {
        for (const bool thresholds : {false, true}) {
            if (thresholds && std::string_view(c.colors).find('-') == std::string_view::npos) continue;
            RES_put("color_fill", c.colors);
            RES_put("con_interval", c.interval);
            RES_put("con_base", c.base);
            for (int picture = 1; picture <= 2; ++picture) {
                SCOPED_TRACE(testing::Message() << c.colors << " " << c.interval << " " << picture);
                open_page();
                CONT_choose_levels({thresholds ? std::string_view("off,blue,lblue,red") : own,
                                    thresholds ? std::span<const float>(words) : std::span<const float>()});
                Attribute low, first, second;
                CONT_get_fill_attrib(low, c.first - 0.5F);
                CONT_get_fill_attrib(first, c.first);
                CONT_get_fill_attrib(second, c.first + c.step);
                ASSERT_EQ(draw(), 0);
                const Rect view = PLT_get_view();
                const float left = view.xmin + 0.03F * view.width(), y = view.ymin - 0.02F;
                EXPECT_EQ(low.color, kColorBackground);
                EXPECT_EQ(CONT_get_bar_value(left, y), c.first);
                EXPECT_EQ(CONT_get_bar_color(left, y), first.color);
                EXPECT_EQ(CONT_get_intrvl(), c.step);
                EXPECT_NE(second.color, first.color);
                close_page();
            }
        }
    }
    RES_put("con_interval", "");
    RES_put("con_base", "");
}

TEST_F(Bar, RegularLevels) {
    open_page();
    CONT_set_fill_colors("lblue,lcyan,lgreen,yellow,lred", 0);
    CONT_set_base(0);
    CONT_set_intrvl(4);
    CONT_set_range(15, 0);
    ASSERT_EQ(draw(), 0);
    EXPECT_EQ(strings(texts_of(close_page())), (std::vector<std::string>{"0", "4", "8", "12", "16"}));
}

TEST_F(Bar, ManyLevelsAreLabelledNowAndThen) {
    open_page();
    CONT_set_fill_colors("blue,lblue,red", 0);
    CONT_set_base(0);
    CONT_set_intrvl(1);
    CONT_set_range(30.5F, 0);
    ASSERT_EQ(draw(), 0);
    const auto texts = texts_of(close_page());
    ASSERT_GE(texts.size(), 10U);
    EXPECT_EQ(texts[1].text, "3");
    EXPECT_EQ(texts.back().text, "31");
    EXPECT_EQ(texts[texts.size() - 2].text, "27") << "the label beside the last gives way";
}

TEST_F(Bar, WideLabelsStandApart) {
    for (const char *list :
         {"-1000:red,-900:blue,-800:red,-700:blue,-600:red,-500:blue,-400:red,-300:blue,-200:red,"
          "-100:blue,0:red,100:blue,200:red,300:blue",
          "1:red:la=wide text,2:blue:la=more text,3:red:la=wide text,4:blue:la=more text,"
          "5:red:la=wide text,6:blue:la=more text,7:red:la=wide text,8:blue:la=more text"}) {
        open_page();
        CONT_reset_fill_set();
        CONT_set_fill_colors(list, 0);
        ASSERT_EQ(draw(), 0);
        // The text height that the bar has chosen is still in force.
        GPH_trans(kViewTransform);
        std::map<std::string, float> width_of;
        for (int i = 0; i < CONT_get_num_cont(); ++i)
            width_of[CONT_get_label(i)] = gtext_width(CONT_get_label(i));
        const auto texts = texts_of(close_page());
        ASSERT_GE(texts.size(), 3U);
        EXPECT_LT(texts.size(), static_cast<std::size_t>(CONT_get_num_cont())) << "left out, not made tiny";
        for (std::size_t i = 1; i < texts.size(); ++i) {
            const float widths = width_of[texts[i - 1].text] + width_of[texts[i].text];
            EXPECT_GT(widths, 0);
            EXPECT_GT(texts[i].x - texts[i - 1].x, widths / 2) << texts[i].text;
        }
    }
}

TEST_F(Bar, NoBarWithoutUsableLevels) {
    open_page();
    EXPECT_EQ(draw(), -1) << "no colours";
    CONT_set_fill_colors("red,green", 0);
    EXPECT_EQ(draw(), -1) << "no range";
    CONT_set_range(1000, 0);
    CONT_set_intrvl(1);
    EXPECT_EQ(draw(), -1) << "too many";
    CONT_set_intrvl(1e-38F);
    EXPECT_EQ(draw(), -1);
    CONT_set_intrvl(kMissingF);
    EXPECT_EQ(draw(), 0) << "an interval is found";
    CONT_reset_fill_set();
    CONT_set_fill_colors("5:red,5:green", 0);
    EXPECT_EQ(draw(), -1) << "no interval";
    EXPECT_EQ(CONT_get_bar_value(0.2F, 0.02F), kMissingF);
    close_page();
}

TEST_F(Bar, UserChoosesTheRange) {
    RES_put("con_interval", "5");
    RES_put("con_base", ">10,<30");
    open_page();
    CONT_set_fill_colors("red,green,blue", 0);
    CONT_set_range(100, 0);
    ASSERT_EQ(draw(), 0);
    EXPECT_EQ(strings(texts_of(close_page())),
              (std::vector<std::string>{"10", "15", "20", "25", "30", "35"}));
    EXPECT_EQ(CONT_get_base(), 10);
}

TEST_F(Bar, NeedsRoom) {
    RES_put("plot_param", "full");
    open_page();
    CONT_set_fill_colors("5:red,10:green", 0);
    EXPECT_EQ(draw(), -1);
    close_page();
}

} // namespace
