#include "graphics/kernel/window_device.h"

#include <cstdlib>
#include <string>

#include "graphics/core/state.h"
#include "graphics/devices/raster/display.h"
#include "graphics/devices/x11/display.h"
#include "graphics/kernel/raster_device.h"
#include "lib/report/message.h"
#include "lib/resources/database.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"

namespace {

struct State {
    int width = kDefaultWidth, height = kDefaultHeight; ///< of the next window, pixels
} state;

/// The first field of the device string names the display; this name is the memory display's.
constexpr std::string_view kMemoryDisplay = "memory";

/// Skips "+N" or "-N", where N may have a sign of its own. False when neither stands there.
bool skip_offset(Scanner &scan) {
    return (scan.rest().starts_with('+') || scan.rest().starts_with('-')) &&
           scan.literal(scan.rest().front()) && scan.integer().has_value();
}

/// "WxH+X+Y", "WxH" or "+X+Y". False after a message when such a window has no room for a picture; what
/// cannot be read is told and changes nothing.
bool check_window_geometry(const std::string &geometry) {
    constexpr int kLargestSide = 32767;
    Scanner scan(geometry);
    if (geometry.starts_with('=')) scan.literal('=');
    const bool sized = !scan.rest().empty() && is_digit(scan.rest().front());
    const int width = sized ? scan.integer().value_or(0) : 1;
    if (sized && !scan.rest().empty()) scan.literal(scan.rest().front() == 'X' ? 'X' : 'x');
    const int height = sized ? scan.integer().value_or(0) : 1;
    const bool read =
        !scan.failed() && (scan.at_end() || (skip_offset(scan) && skip_offset(scan) && scan.at_end()));
    if (!read) {
        MESS_print(kWarn, "geometry: Not understood: %s\n", geometry.c_str());
        return true;
    }
    if (width > 0 && height > 0 && width <= kLargestSide && height <= kLargestSide) return true;
    MESS_print(kError, "geometry: No picture has this size: %s\n", geometry.c_str());
    return false;
}

int open_window(std::string_view device_spec) {
    GraphicsState &s = gstate();
    if (std::getenv("vyxinverse") != nullptr) s.inverse = true;
    const std::string_view display = device_spec.substr(0, device_spec.find(','));
    const bool memory = stricmp(display, kMemoryDisplay) == 0;
    RasterWish wish;
    wish.display = display;
    if (const char *const geometry = RES_get("geometry")) wish.geometry = geometry;
    if (!wish.geometry.empty() && !check_window_geometry(wish.geometry)) return -1;
    wish.title = s.title;
    wish.program = s.program;
    wish.width = state.width;
    wish.height = state.height;
    int iconic = RES_get("icon") != nullptr ? 1 : 0;
    (void)RES_getval("icon", iconic, ResourceKind::switch_); // unset, the default stays
    wish.iconic = iconic != 0;
    wish.inverse = s.inverse;
    wish.private_colormap = s.local_colormap;
    RasterWindow window;
    if (!graster_open(memory ? RasterDisplay::memory : RasterDisplay::x11, wish, window)) return -1;
    s.win_width = window.width;
    s.win_height = window.height;
    s.win_x = s.win_y = 0;
    return 0;
}

int close_window() {
    graster_close();
    state = State{};
    return 0;
}

void init_background() {
    if (raster_store_background()) graster_clear(graster_base());
}

int new_picture() {
    return gclear_ws(1, 1);
}

} // namespace

constinit const Device kWindowDevice = [] {
    Device device = raster_device();
    device.window = true;
    device.open = open_window;
    device.close = close_window;
    device.new_page = new_picture;
    device.init_background = init_background;
    return device;
}();

void set_next_window_size(int width, int height) {
    state.width = width;
    state.height = height;
}
