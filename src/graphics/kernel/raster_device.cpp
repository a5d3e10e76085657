#include "graphics/kernel/raster_device.h"

#include <string>

#include "graphics/core/state.h"
#include "graphics/devices/raster/display.h"
#include "graphics/devices/x11/display.h"
#include "graphics/kernel/argument_checks.h"
#include "lib/report/message.h"
#include "lib/resources/database.h"

namespace {

constexpr Rgb kWhite{1, 1, 1}, kBlack{};

/// The colour of that name; without one, or for one that nobody knows, the display's own.
Rgb background_named(std::string_view name) {
    const Rgb plain = gstate().inverse ? kWhite : kBlack;
    if (name.empty() || gis_default_background(name)) return plain;
    Rgb color = plain;
    (void)gnamed_color(name, color); // unknown, the plain one stays
    return color;
}

} // namespace

bool raster_store_background() {
    const char *const resource = RES_get("background");
    std::string name = resource != nullptr ? resource : "";
    if (name.empty()) name = gx11_default("background").value_or("");
    if (gstore_color(kBackgroundSlot, background_named(name)) != 0) return false;
    const ColorSlot &slot = gstate().colors[kBackgroundSlot];
    constexpr float kFull = 65535;
    const auto level = [](float component) { return static_cast<int>(component * kFull); };
    for (const char *const what : {"Allocated", "Queried"})
        MESS_print(kDebug, "%s BG Color: %d (%5d %5d %5d)\n", what, slot.pixel, level(slot.rgb.red),
                   level(slot.rgb.green), level(slot.rgb.blue));
    graster_set_background(slot.pixel);
    return !gis_default_background(name);
}

void raster_install_clip() {
    const ClipRect &clip = gstate().clip;
    graster_set_clip({clip.x, clip.y, clip.width, clip.height});
}

int raster_clear(const char * /*operation*/, const Rect &world) {
    raster_clear_region(world);
    return 0;
}
