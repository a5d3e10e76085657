#include "graphics/core/color_slots.h"
#include "graphics/core/transform.h"
#include "graphics/kernel/helpers.h"
#include "graphics/window/events.h"
#include "graphics/window/surface.h"
#include "plot/bar/color_bar.h"
#include "plot/colour/named_colors.h"

int CONT_flash_value(std::string_view event, float x, float y) {
    if (!event.starts_with("f-Al")) return 0;
    return CONT_flash_color(CONT_get_bar_color(xW_trans(kDataTransform, kViewTransform, x),
                                               yW_trans(kDataTransform, kViewTransform, y)));
}

int CONT_flash_color(int color) {
    constexpr int flashes = 4;
    constexpr float half_period = 0.5F; ///< seconds
    if (color < 0 || color >= CLR_get_num()) return -1;
    const Rgb own = CLR_get_rgb(color);
    const int own_pixel = gget_color_ind(color);
    bool undisturbed = true;
    for (int i = 0; i < flashes && undisturbed; ++i) {
        // With a cell of its own the colour changes wherever it shows.
        GPH_set_color(color, 0, 0, 0);
        gshow_recolored(own_pixel, gget_color_ind(color));
        undisturbed = !gwait_undisturbed(half_period);
        GPH_set_color(color, own.red, own.green, own.blue);
        gupdate_window();
        undisturbed = undisturbed && !gwait_undisturbed(half_period);
    }
    return 0;
}
