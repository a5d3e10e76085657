#include "graphics/window/surface.h"

#include <utility>

#include "graphics/devices/raster/display.h"
#include "graphics/devices/x11/display.h"
#include "graphics/kernel/kernel.h"

namespace {

constexpr int kDefaultBell = 50; ///< percent

struct State {
    int cursor = 0;
} state;

bool is_window() {
    return graster_display() == RasterDisplay::x11;
}

} // namespace

int gupdate_window() {
    if (graster_display() == RasterDisplay::none) return -1;
    graster_show();
    graster_sync();
    return 0;
}

void gset_win_title_extra(std::string_view text) {
    if (is_window()) gx11_set_title_extra(text);
}

std::string gget_win_title_extra() {
    return is_window() ? gx11_title_extra() : std::string();
}

void gbell(int percent) {
    if (!is_window()) return;
    gx11_bell(percent == 0 ? kDefaultBell : percent);
    gx11_sync();
}

int gset_cursor(int type) {
    if (!gtype_is_WIN_PIX()) return state.cursor;
    const int previous = std::exchange(state.cursor, type);
    if (is_window()) {
        gx11_set_cursor(type);
        gx11_sync();
    }
    return previous;
}

int gget_cursor_type() {
    return state.cursor;
}
