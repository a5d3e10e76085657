#include "graphics/core/transform.h"
#include "graphics/kernel/gph.h"
#include "graphics/window/events.h"
#include "lib/missing.h"
#include "lib/process.h"
#include "plot/bar.h"
#include "plot/color_table.h"
#include "plot/levels.h"

int CONT_flash_value(std::string_view event, float x, float y) {
    constexpr int data_transform = 2, bar_transform = 1;
    constexpr int flashes = 4;
    constexpr float half_period = 0.5F; ///< seconds
    if (!event.starts_with("f-Al")) return 0;
    const float value = CONT_get_bar_value(xW_trans(data_transform, bar_transform, x),
                                           yW_trans(data_transform, bar_transform, y));
    if (is_missing(value)) return -1;
    Attribute level;
    CONT_get_fill_attrib(level, value);
    if (level.color < 0 || level.color >= CLR_get_num()) return -1;
    const Rgb own = CLR_get_rgb(level.color);
    for (int i = 0; i < flashes; ++i) {
        GPH_set_color(level.color, 0, 0, 0);
        VYX_sleep(half_period);
        GPH_set_color(level.color, own.red, own.green, own.blue);
        VYX_sleep(half_period);
    }
    return 0;
}
