#include <algorithm>
#include <cmath>

#include "graphics/core/state.h"
#include "graphics/devices/postscript.h"
#include "graphics/kernel/checks.h"
#include "graphics/kernel/kernel.h"
#include "lib/message.h"

namespace {

constexpr Rgb kWhite{1, 1, 1};

float clamp_component(float value) {
    return std::isnan(value) ? 0.0F : std::clamp(value, 0.0F, 1.0F);
}

/// The index that stands for "any": a near colour in use, else the next free index. -1 when all are taken.
int choose_index(const Rgb &c) {
    const double red = static_cast<double>(c.red), green = static_cast<double>(c.green),
                 blue = static_cast<double>(c.blue);
    const int near = find_near_color(c);
    if (near >= 0) {
        MESS_print(kDebug, "Used existing ind: %d (%.2f %.2f %.2f)\n", near, red, green, blue);
        return near;
    }
    const int next = gstate().max_color + 1;
    if (next >= kColorSlots) return -1;
    MESS_print(kDebug, "Allocated new ind: %d (%.2f %.2f %.2f)\n", next, red, green, blue);
    return next;
}

/// -1 for an index without slot.
int store_everywhere(int index, const Rgb &color) {
    if (store_color(index, color) != 0) return -1;
    gps_set_color_rep(index, color);
    return 0;
}

} // namespace

int gset_colr_rep(int /*ws*/, int index, const Rgb &color) {
    if (!workstation_open("gset_colr_rep")) return -1;
    if (is_print_only_color(index)) return 0;
    if (gis_valid_colr(index) == 0) {
        gerr_printf("gset_colr_rep", "invalid color index: %d\n", index);
        return -1;
    }
    const int stored = galloc_colr(index, color);
    if (stored < 0) return -1;
    gnew_obj(ObjectType::color, stored, sizeof color, &color);
    return 0;
}

int galloc_colr(int index, const Rgb &color) {
    const Rgb clamped{clamp_component(color.red), clamp_component(color.green), clamp_component(color.blue)};
    const int chosen = index < 0 ? choose_index(clamped) : index;
    if (chosen < 0 || store_everywhere(chosen, clamped) != 0) {
        gerr_printf("galloc_colr", "invalid color index: %d\n", index);
        return -1;
    }
    return chosen;
}

void gset_rw_colors(int flag) {
    gstate().rw_colors = flag != 0;
}

void gset_local_colormap(int flag) {
    gstate().local_colormap = flag != 0;
}

void ginit_background() {
    switch (gstate().kind) {
    case DeviceKind::ps: store_everywhere(kBackgroundSlot, kWhite); break;
    case DeviceKind::win:
    case DeviceKind::meta:
    case DeviceKind::hpgl:
    case DeviceKind::pix:
    case DeviceKind::none: break;
    }
}
