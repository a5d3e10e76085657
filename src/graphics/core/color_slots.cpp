#include "graphics/core/color_slots.h"

#include <algorithm>
#include <cmath>

#include "graphics/core/state.h"

namespace {

/// Sum of the component differences below which two colours are taken for one.
constexpr float kNearColor = 0.01F;

/// Null for an index that has no slot.
ColorSlot *slot_of(int index) {
    if (index == kColorBackground) index = kBackgroundSlot;
    if (index < 0 || index > kBackgroundSlot) return nullptr;
    return &gstate().colors[static_cast<std::size_t>(index)];
}

} // namespace

bool is_print_only_color(int index) {
    return index >= kColorPrintFirst && index <= kColorPrintLast;
}

int gis_valid_colr(int index) {
    return (index >= kColorBackground && index <= kBackgroundSlot) || is_print_only_color(index) ? 1 : 0;
}

int gget_color_ind(int index) {
    const ColorSlot *slot = slot_of(index);
    return slot == nullptr ? kPixelUnset : slot->pixel;
}

Rgb gget_color_rgb(int index) {
    const ColorSlot *slot = slot_of(index);
    return slot == nullptr ? Rgb{} : slot->rgb;
}

int store_color(int index, const Rgb &color) {
    ColorSlot *slot = slot_of(index);
    if (slot == nullptr) return -1;
    slot->rgb = color;
    if (slot->pixel == kPixelUnset) slot->pixel = kPixelPrintOnly;
    if (index < kBackgroundSlot) gstate().max_color = std::max(gstate().max_color, index);
    return 0;
}

int find_near_color(const Rgb &color) {
    const GraphicsState &s = gstate();
    for (int index = s.max_color; index >= 0; --index) {
        const ColorSlot &slot = s.colors[static_cast<std::size_t>(index)];
        const float difference = std::fabs(slot.rgb.red - color.red) +
                                 std::fabs(slot.rgb.green - color.green) +
                                 std::fabs(slot.rgb.blue - color.blue);
        if (slot.pixel != kPixelUnset && difference < kNearColor) return index;
    }
    return -1;
}

void clear_colors() {
    gstate().colors.fill(ColorSlot{});
    gstate().max_color = -1;
}

int gget_inverse() {
    return gstate().inverse ? 1 : 0;
}
void gset_inverse(int flag) {
    gstate().inverse = flag != 0;
}
