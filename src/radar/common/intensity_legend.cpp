#include "radar/common/intensity_legend.h"

#include <algorithm>
#include <array>

#include "graphics/core/transform.h"
#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "graphics/text/font.h"
#include "lib/options/flags.h"
#include "lib/text/strings.h"
#include "plot/bar/color_bar.h"
#include "plot/colour/attribute.h"
#include "plot/colour/levels.h"
#include "plot/session/layout.h"

namespace {

constexpr std::array<int, 6> kIntensities{20, 30, 40, 45, 50, 55};
constexpr float kSmallestRoom = 0.01F, kLargestRoom = 0.02F; ///< NDC
constexpr float kTextPart = 0.75F;                           ///< of the room
constexpr float kTitleWidth = 9.5F;                          ///< of the room
constexpr float kInset = 0.01F;
constexpr float kStepHeights = 4, kBoxHeights = 2; ///< from label to label, and from label to box
constexpr std::string_view kTitle = "Intensities (Dbz):";
constexpr float kLabelHeights = 1.7F; ///< width of a label at most

/// Where the legend was drawn last; flashing looks there.
struct Legend {
    bool drawn = false;
    float left = 0, top = 0; ///< of the first label
    float step = 0, height = 0;
};
Legend legend;

float factor(float given) {
    return is_missing(given) ? 1 : given;
}

float step_of(int level) {
    return static_cast<float>(level - 1) * legend.step;
}

void draw_box(int level) {
    Attribute ink;
    CONT_get_fill_attrib(ink, static_cast<float>(level));
    if (ink.color < 0) return;
    const float x = legend.left + step_of(level) + kBoxHeights * legend.height, y = legend.top;
    const float right = x + legend.height, low = y - legend.height;
    GPH_fill_attr(&ink);
    gfill_area(std::array{Point{x, y}, Point{right, y}, Point{right, low}, Point{x, low}, Point{x, y}});
}

} // namespace

float RAD_intensity_dbz(int level) {
    const int index = std::clamp(level, 1, static_cast<int>(kIntensities.size())) - 1;
    return static_cast<float>(kIntensities[static_cast<std::size_t>(index)]);
}

namespace {

void draw_title(const Rect &view, float room) {
    const float size = std::min(room, kLargestRoom);
    Attribute text;
    ATTRIB_get("color_text", ATTRIB_text_default(), text);
    const float scale = factor(text.height), height = kTextPart * size * scale;
    const float wide = kTitleWidth * size * scale * factor(text.expansion);
    // As far below the plot as the room allows, but no lower than it ends.
    const float top = view.ymin - std::clamp(room - height, 0.0F, kInset);
    text.height = kMissingF; // it is in the height
    GPH_text_attr(&text, height);
    GPH_text_align(kAlignLeft, kAlignTop);
    GPH_pprint({view.xmin + kInset, top}, kTitle);
    // A font may be wider than the place of the title.
    const float left = view.xmin + std::max(wide, kInset + gtext_width(kTitle) + height / 2);
    legend = {true, left, top, kStepHeights * height, height};
    // The labels end before their boxes.
    const float fit = kLabelHeights * height / std::max(gtext_width("55"), height);
    text.expansion = factor(text.expansion) * std::min(fit, 1.0F);
    GPH_text_attr(&text, height);
}

} // namespace

void RAD_draw_bar() {
    legend.drawn = false;
    if (FLAG_getplot(kPlotText) < 1 && CONT_get_bar() <= 0) return;
    GPH_trans(kViewTransform);
    const Rect view = PLT_get_view();
    const float room = view.ymin - GPH_get_view_size().ymin;
    if (room >= kSmallestRoom) {
        draw_title(view, room);
        for (int level = 1; level <= static_cast<int>(kIntensities.size()); ++level) {
            GPH_pprint({legend.left + step_of(level), legend.top},
                       format_text("%d", kIntensities[static_cast<std::size_t>(level - 1)]));
            draw_box(level);
        }
    }
    GPH_trans(kDataTransform);
}

int RAD_flash_levels(std::string_view event, float x, float y) {
    if (!event.starts_with("f-Al") || !legend.drawn) return 0;
    const float across = xW_trans(kDataTransform, kViewTransform, x) - legend.left;
    const float below = legend.top - yW_trans(kDataTransform, kViewTransform, y);
    const float last = legend.step * static_cast<float>(kIntensities.size());
    if (across < 0 || across >= last || below < 0 || below > legend.height) return -1;
    Attribute ink;
    CONT_get_fill_attrib(ink, static_cast<float>(static_cast<int>(across / legend.step) + 1));
    return CONT_flash_color(ink.color);
}
