#include "plot/bar/color_bar.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "graphics/text/font.h"
#include "lib/resources/database.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"
#include "plot/colour/attribute.h"
#include "plot/colour/level_choice.h"
#include "plot/colour/level_line.h"
#include "plot/colour/levels.h"
#include "plot/session/layout.h"

namespace {

/// Heights in normalised device coordinates.
constexpr float kLargestHeight = 0.035F, kSmallestHeight = 0.01F;
constexpr float kTextHeight = 0.35F; ///< of the bar's height
constexpr float kLeftInset = 0.03F;  ///< of the view's width
constexpr float kViewGap = 0.15F;    ///< between view and bar, of the bar's height
constexpr int kMostLevels = 200;
/// About so many levels are labelled.
constexpr int kLabelledLevels = 15;
/// Labels shrink to this before some of them are left out.
constexpr float kSmallestShrink = 0.6F;
/// Room between neighbouring labels, of the text height.
constexpr float kLabelGap = 0.75F;
constexpr int kPatternStyle = 2, kSolidStyle = 1;

/// An explicit level.
struct GivenLevel {
    float value;       ///< where it begins
    std::size_t index; ///< among the fill attributes
};

/// The levels that the bar shows.
struct Levels {
    std::vector<GivenLevel> given; ///< empty: the levels are first + k x interval
    int count = 0;
    float first = 0, last = 0; ///< the last only without explicit values
    float interval = 0;
    std::size_t first_color = 0;

    [[nodiscard]] float value(int i) const {
        if (!given.empty()) return given[static_cast<std::size_t>(i)].value;
        return first + static_cast<float>(i) * interval;
    }
    [[nodiscard]] int color_index(int i) const {
        if (!given.empty()) return static_cast<int>(given[static_cast<std::size_t>(i)].index);
        return (static_cast<int>(first_color) + i) % CONT_get_color_num();
    }
};

/// A box as it was drawn: the levels may be others by the time the user points at it.
struct Box {
    float value;
    int color; ///< -1 for an empty box
};

struct State {
    Levels levels;
    Rect limits; ///< of the bar, NDC
    float box_width = 0;
    std::vector<Box> boxes;
} state;

struct Attributes {
    Attribute text, box;
};

Attributes bar_attributes() {
    Attributes attributes;
    ATTRIB_get("color_text", ATTRIB_text_default(), attributes.text);
    ATTRIB_get("color_cont", ATTRIB_text_default(), attributes.box);
    if (!is_missing(CONT_get_fill_pat())) attributes.box.fill = CONT_get_fill_pat();
    return attributes;
}

/// Range of the bar, with the user's base and interval applied.
void choose_range(float &max, float &min) {
    float bar_max = 0, bar_min = 0;
    CONT_get_range(max, min);
    CONT_get_bar_range(bar_max, bar_min);
    const bool forced = !is_missing(bar_max);
    if (forced) max = bar_max;
    if (!is_missing(bar_min)) min = bar_min;

    float interval = kMissingF;
    if (is_missing(CONT_get_intrvl()) && RES_getval("con_interval", interval)) CONT_set_intrvl(interval);
    const UserBase user = CONT_user_base();
    if (user.min && !forced) min = *user.min;
    if (user.max && !forced) max = *user.max;
    if (user.base && !(user.min && forced)) CONT_set_base(*user.base);
}

std::optional<int> level_count(float levels) {
    if (!(levels >= 1.0F) || levels >= static_cast<float>(kMostLevels + 1)) return std::nullopt;
    return static_cast<int>(levels);
}

/// Those levels that a value can get: of a list that does not ascend throughout (words of a product that are
/// no levels stand behind eight levels) the last one takes all that begins at the largest value.
std::optional<Levels> explicit_levels() {
    const auto all = CONT_get_values();
    const auto values = all.first(std::min(all.size(), static_cast<std::size_t>(CONT_get_num_cont())));
    Levels levels;
    for (std::size_t i = 0; i + 1 < values.size(); ++i)
        if (values[i] < values[i + 1]) levels.given.push_back({values[i], i});
    if (!values.empty()) levels.given.push_back({*std::ranges::max_element(values), values.size() - 1});
    levels.count = static_cast<int>(levels.given.size());
    levels.interval = values.size() > 1 ? values[1] - values[0] : 1.0F;
    if (levels.count < 1 || levels.count > kMostLevels || levels.interval == 0) return std::nullopt;
    return levels;
}

std::optional<Levels> regular_levels(float max, float min) {
    if (is_missing(max)) return std::nullopt;
    if (is_missing(min)) min = 0;
    if (CONT_get_intrvl() <= 0) CONT_set_intrvl(CONT_calc_intrvl(CONT_get_color_num() - 1, max, min));
    const float step = CONT_get_intrvl();
    const float base = is_missing(CONT_get_base()) ? 0.0F : CONT_get_base();
    Levels levels;
    levels.interval = step;
    if (max < min) {
        levels.first = max;
        levels.last = min;
    } else {
        levels.first = std::floor((min - base) / step) * step + base;
        levels.last = std::floor((max - base) / step + 1) * step + base;
        if (max - base == levels.last) levels.last += step;
    }
    const auto count = level_count((levels.last - levels.first + 0.01F) / step);
    if (!count) return std::nullopt;
    levels.count = *count;
    const float color_base = is_missing(CONT_get_base()) ? levels.first : base;
    const auto color = CONT_level_index(levels.first, color_base, step);
    if (!color) return std::nullopt;
    levels.first_color = *color;
    return levels;
}

std::optional<Levels> choose_levels() {
    float max = kMissingF, min = kMissingF;
    choose_range(max, min);
    if (CONT_get_color_num() < 1) return std::nullopt;
    return CONT_get_values().empty() ? regular_levels(max, min) : explicit_levels();
}

/// The bar below the view, or inside it when labels stand there too; nothing when there is no room.
std::optional<Rect> place_bar() {
    const Rect view = PLT_get_view();
    const bool inside = PLT_get_full_lab() != 0;
    float height = std::min(view.ymin - GPH_get_view_size().ymin, kLargestHeight);
    if (inside) height = kLargestHeight;
    if (!(height >= kSmallestHeight)) return std::nullopt;
    const float left = view.xmin + kLeftInset * view.width();
    const float right = (view.xmin + view.xmax) / 2;
    if (!(right > left)) return std::nullopt;
    const float gap = kViewGap * height;
    if (inside) return Rect{left, right, view.ymin + gap, view.ymin + height};
    return Rect{left, right, view.ymin - height, view.ymin - gap};
}

/// Height on which the text size rests: the bar with its gap to the view.
float full_height(const Rect &bar) {
    return bar.height() / (1 - kViewGap);
}

float middle(const Rect &bar) {
    return (bar.ymin + bar.ymax) / 2;
}

/// A forced pattern comes before the level's own, as it does for the data.
int box_pattern(const Attribute &level, const Attribute &box) {
    if (!is_missing(CONT_get_fill_pat())) return CONT_get_fill_pat();
    if (!is_missing(level.fill)) return level.fill;
    return is_missing(box.fill) ? 0 : box.fill;
}

void fill_box(const Rect &box, const Attribute &level, int pattern) {
    if (level.color == kColorBackground) return;
    gset_fill_colr_ind(level.color);
    gset_fill_int_style(pattern == 0 ? kSolidStyle : kPatternStyle);
    if (pattern != 0) gset_fill_style_ind(pattern);
    const std::array corners{Point{box.xmin, box.ymin}, Point{box.xmax, box.ymin}, Point{box.xmax, box.ymax},
                             Point{box.xmin, box.ymax}, Point{box.xmin, box.ymin}};
    gfill_area(corners);
}

void draw_edge(const Rect &box, const Attribute &level, const Attribute &box_attribute, float value) {
    if (level.color == kColorBackground) return;
    CONT_line_attr(level, box_attribute, value);
    const std::array edge{Point{box.xmax, box.ymin}, Point{box.xmax, box.ymax}};
    gpolyline(edge);
}

void draw_boxes(const Attribute &box_attribute) {
    const int type = CONT_get_type();
    const bool filled = type >= kContourFill && type <= kContourValues;
    const bool lined = type == kContourLines || type == kContourFillLines;
    for (int i = 0; i < state.levels.count; ++i) {
        Attribute level;
        CONT_get_fill_attrib_ind(state.levels.color_index(i), level);
        const float left = state.limits.xmin + static_cast<float>(i) * state.box_width;
        const Rect box{left, left + state.box_width, middle(state.limits), state.limits.ymax};
        state.boxes.push_back({state.levels.value(i), level.color});
        if (filled) fill_box(box, level, box_pattern(level, box_attribute));
        if (lined) draw_edge(box, level, box_attribute, state.levels.value(i));
    }
    gset_fill_int_style(kSolidStyle);
}

struct BarLabel {
    float x = 0; ///< centre, NDC
    std::string text;
};

std::string level_label(int level) {
    const bool explicit_value = !state.levels.given.empty();
    const std::string given =
        explicit_value ? CONT_get_label(state.levels.color_index(level)) : std::string();
    return given.empty() ? set_num(state.levels.value(level), 2, 0) : given;
}

/// Factor, at most 1, by which text of the current height must shrink to keep two neighbouring labels apart.
float shrink_to_fit(const BarLabel &left, const BarLabel &right, float text_height) {
    const float needed = (gtext_width(left.text) + gtext_width(right.text)) / 2 + kLabelGap * text_height;
    return std::min(1.0F, (right.x - left.x) / needed);
}

float shrink_to_fit(const std::vector<BarLabel> &labels, float text_height) {
    float factor = 1;
    for (std::size_t i = 1; i < labels.size(); ++i)
        factor = std::min(factor, shrink_to_fit(labels[i - 1], labels[i], text_height));
    return factor;
}

/// Labels of every `step`-th level and, without explicit values, of the end of the last one.
std::vector<BarLabel> make_labels(int step, float text_height) {
    std::vector<BarLabel> labels;
    for (int i = 0; i < state.levels.count; i += step)
        labels.push_back({state.limits.xmin + static_cast<float>(i) * state.box_width, level_label(i)});
    if (!state.levels.given.empty()) return labels;
    const BarLabel last{state.limits.xmax, set_num(state.levels.last, 2, 0)};
    // Unless the count divides evenly, the end comes sooner than the next label would.
    if (labels.size() > 1 && state.levels.count % step != 0 &&
        shrink_to_fit(labels.back(), last, text_height) < 1)
        labels.pop_back();
    labels.push_back(last);
    return labels;
}

void draw_labels(const Attribute &text) {
    const float height = kTextHeight * full_height(state.limits);
    GPH_text_attr(&text, height);
    GPH_text_align(kAlignCenter, kAlignBase);
    const int every = state.levels.count / kLabelledLevels + 1;
    int step = every;
    std::vector<BarLabel> labels = make_labels(step, height);
    float factor = shrink_to_fit(labels, height);
    while (factor < kSmallestShrink && step < state.levels.count) {
        step += every;
        labels = make_labels(step, height);
        factor = shrink_to_fit(labels, height);
    }
    GPH_text_attr(&text, height * factor);
    for (const BarLabel &label : labels) GPH_pprint({label.x, state.limits.ymin}, label.text);
}

/// Null outside the bar.
const Box *box_under(float x, float y) {
    const Rect &bar = state.limits;
    const bool inside = x >= bar.xmin && x <= bar.xmax && y >= bar.ymin && y <= bar.ymax;
    if (state.boxes.empty() || !inside) return nullptr;
    const auto number = static_cast<std::size_t>((x - bar.xmin) / state.box_width);
    return &state.boxes[std::min(number, state.boxes.size() - 1)];
}

} // namespace

int CONT_draw_bar(int orientation, std::string_view title) {
    state = State{};
    // Only the horizontal bar is known.
    if (orientation != 1) return -1;
    const Attributes attributes = bar_attributes();
    const auto levels = choose_levels();
    const auto limits = place_bar();
    if (!levels || !limits) return -1;
    state.levels = *levels;
    state.limits = *limits;
    state.box_width = limits->width() / static_cast<float>(levels->count);

    draw_boxes(attributes.box);
    draw_labels(attributes.text);
    GPH_line_attr(nullptr);
    GPH_line_attr(&attributes.text);
    GPH_rect(state.limits.xmin, state.limits.ymax, state.limits.xmax, middle(state.limits));
    if (!title.empty()) {
        const Rect view = PLT_get_view();
        GPH_text_align(kAlignRight, kAlignTop);
        GPH_printf(view.xmax, view.ymin - 0.01F, "%s", std::string(title).c_str());
    }
    return 0;
}

float CONT_get_bar_value(float x, float y) {
    const Box *const box = box_under(x, y);
    return box == nullptr ? kMissingF : box->value;
}

int CONT_get_bar_color(float x, float y) {
    const Box *const box = box_under(x, y);
    return box == nullptr ? kColorBackground : box->color;
}
