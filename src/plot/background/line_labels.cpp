#include "plot/background/line_labels.h"

#include <algorithm>
#include <cmath>

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "graphics/text/font.h"
#include "lib/text/strings.h"
#include "plot/map/occupied_places.h"

namespace {

/// Moves a label clear of one on whose middle it stands, in text heights.
constexpr float kLift = 0.75F;
constexpr float kHalfCircle = 180; ///< degrees
constexpr int kMostLines = 3600;
/// So few may collide before a wider step is chosen: where meridians meet no step would do.
constexpr std::size_t kFewOf = 10;

Rect box_of(const LineLabel &label) {
    const float width = gtext_width(label.text), height = gtext_height(), gap = height / 4;
    const float left = label.horizontal == kAlignLeft ? label.place.x : label.place.x - width / 2;
    const float low = label.vertical == kAlignBase ? label.place.y : label.place.y - height / 2;
    return {left - gap, left + width + gap, low, low + height};
}

bool meets_any(const Rect &box, const std::vector<Rect> &taken) {
    return std::ranges::any_of(taken, [&](const Rect &other) { return rects_meet(box, other); });
}

std::vector<LineLabel> every(int step, const std::vector<LineLabel> &labels) {
    std::vector<LineLabel> kept;
    std::ranges::copy_if(labels, std::back_inserter(kept),
                         [step](const LineLabel &label) { return label.line % step == 0; });
    return kept;
}

std::size_t collisions(const std::vector<LineLabel> &labels) {
    std::vector<Rect> taken;
    std::size_t count = 0;
    for (const LineLabel &label : labels) {
        const Rect box = box_of(label);
        count += meets_any(box, taken) ? 1U : 0U;
        taken.push_back(box);
    }
    return count;
}

bool is_whole(float number) {
    return std::abs(number - std::round(number)) < 1e-3F;
}

/// Degrees that go evenly into a degree, or whole ones that go evenly into the circle.
bool is_round(float degrees) {
    return is_whole(1 / degrees) || (is_whole(degrees) && is_whole(kHalfCircle / degrees));
}

/// With every second, third ... label; empty when none of the steps is wide enough.
std::vector<LineLabel> thinned(const std::vector<LineLabel> &labels, float spacing, bool round_steps) {
    for (int step = 1; step < kMostLines; ++step) {
        if (round_steps && step > 1 && !is_round(spacing * static_cast<float>(step))) continue;
        std::vector<LineLabel> kept = every(step, labels);
        if (collisions(kept) * kFewOf <= kept.size()) return kept;
    }
    return {};
}

} // namespace

std::string degree_text(float degrees) {
    constexpr int most_decimals = 3;
    std::string text = format_text("%.*f", most_decimals, static_cast<double>(degrees));
    while (text.ends_with('0')) text.pop_back();
    if (text.ends_with('.')) text.pop_back();
    return text;
}

bool LineLabels::take(const LineLabel &label) {
    const Rect box = box_of(label);
    if (meets_any(box, taken_)) return false;
    taken_.push_back(box);
    GPH_text_align(label.horizontal, label.vertical);
    gtext(label.place, label.text);
    return true;
}

void LineLabels::draw_at_edge(const std::vector<LineLabel> &labels, float spacing) {
    std::vector<LineLabel> kept = thinned(labels, spacing, true);
    if (kept.empty()) kept = thinned(labels, spacing, false);
    for (const LineLabel &label : kept) take(label);
}

void LineLabels::draw_along(const std::vector<LineLabel> &labels) {
    for (LineLabel label : labels) {
        if (take(label)) continue;
        label.place.y += kLift * gtext_height();
        take(label);
    }
}
