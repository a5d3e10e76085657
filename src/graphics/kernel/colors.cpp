#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>

#include "graphics/core/state.h"
#include "graphics/devices/print/postscript.h"
#include "graphics/devices/raster/display.h"
#include "graphics/devices/x11/display.h"
#include "graphics/kernel/argument_checks.h"
#include "graphics/kernel/kernel.h"
#include "graphics/kernel/raster_ink.h"
#include "lib/report/message.h"
#include "lib/resources/database.h"
#include "lib/text/strings.h"

namespace {

struct State {
    ColorLookup lookup = nullptr;
} state;

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

} // namespace

int gstore_color(int index, const Rgb &color) {
    if (store_color(index, color) != 0) return -1;
    gps_set_color_rep(index, color);
    if (!gtype_is_WIN_PIX()) return 0;
    ColorSlot &slot = gstate().colors[static_cast<std::size_t>(index)];
    const long present = slot.pixel >= 0 ? slot.pixel : kPixelUnset;
    const long pixel = graster_alloc_color(index, color, present).pixel;
    slot.pixel = pixel >= 0 ? static_cast<int>(pixel) : static_cast<int>(present);
    return pixel >= 0 ? 0 : -1;
}

// What stands in the picture stays.
bool gis_default_background(std::string_view name) {
    constexpr std::array<std::string_view, 3> words{"none", "def", "over"};
    return std::ranges::any_of(words, [&](std::string_view word) { return stricmp(name, word) == 0; });
}

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
    if (gtype_is_WIN_PIX()) raster_recolor(stored);
    return 0;
}

int galloc_colr(int index, const Rgb &color) {
    const Rgb clamped{clamp_component(color.red), clamp_component(color.green), clamp_component(color.blue)};
    const int chosen = index < 0 ? choose_index(clamped) : index;
    if (chosen < 0 || gstore_color(chosen, clamped) != 0) {
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

void gset_color_lookup(ColorLookup lookup) {
    state.lookup = lookup;
}

bool gnamed_color(std::string_view name, Rgb &color) {
    if (state.lookup != nullptr && state.lookup(name, color)) return true;
    const std::optional<Rgb> known = gx11_parse_color(name);
    if (known) color = *known;
    return known.has_value();
}
