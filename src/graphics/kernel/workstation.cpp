#include <cstdlib>
#include <string>

#include "graphics/core/state.h"
#include "graphics/core/stroke_output.h"
#include "graphics/devices/print/postscript.h"
#include "graphics/devices/raster/display.h"
#include "graphics/devices/x11/display.h"
#include "graphics/kernel/argument_checks.h"
#include "graphics/kernel/kernel.h"
#include "graphics/kernel/raster_ink.h"
#include "graphics/kernel/window_hooks.h"
#include "graphics/text/font.h"
#include "lib/report/message.h"
#include "lib/resources/database.h"
#include "lib/system/stream.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"

namespace {

struct State {
    Stream error_file;                                                ///< open only when a name was given
    int window_width = kDefaultWidth, window_height = kDefaultHeight; ///< of the next window, pixels
} state;

void begin_text(const Point &world, std::string_view text) {
    const TextState &attributes = gstate().text;
    switch (gstate().kind) {
    case DeviceKind::ps: gps_begin_text(world, text, attributes.color, attributes.width); break;
    case DeviceKind::win:
    case DeviceKind::none: break;
    }
}

/// PostScript is requested, but "vyxprint" sends it to a plotter.
bool print_goes_to_plotter() {
    const char *const printer = std::getenv("vyxprint");
    return printer != nullptr && stricmp(printer, "hpgl") == 0;
}

int open_postscript(std::string_view device_spec) {
    PrintPage page;
    if (gps_open(device_spec, page) != 0) return -1;
    GraphicsState &s = gstate();
    s.win_width = page.width;
    s.win_height = page.height;
    s.win_x = page.x;
    s.win_y = page.y;
    return 0;
}

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
    wish.width = state.window_width;
    wish.height = state.window_height;
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

void close_window() {
    graster_close();
    state.window_width = kDefaultWidth;
    state.window_height = kDefaultHeight;
}

int open_device(std::string_view device_spec, DeviceKind kind) {
    switch (kind) {
    case DeviceKind::ps:
        if (print_goes_to_plotter()) break;
        return open_postscript(device_spec);
    case DeviceKind::win: return open_window(device_spec);
    case DeviceKind::none: break;
    }
    gerr_printf("gopen_ws", "device not available in this version\n");
    return -1;
}

int close_device(DeviceKind kind) {
    switch (kind) {
    case DeviceKind::ps: return gps_close();
    case DeviceKind::win: close_window(); break;
    case DeviceKind::none: break;
    }
    return 0;
}

PlotMode plot_mode(DeviceKind kind) {
    switch (kind) {
    case DeviceKind::win: return PlotMode::window;
    case DeviceKind::ps: return PlotMode::postscript;
    case DeviceKind::none: break;
    }
    return PlotMode::none;
}

} // namespace

int gopen_gks(std::string_view file_name, int /*buffer_size*/) {
    if (!file_name.empty()) {
        state.error_file = FILE_open(file_name, "w");
        if (!state.error_file) return -1;
    }
    gstate().kernel_open = true;
    return 0;
}

int gclose_gks() {
    gstate().kernel_open = false;
    return state.error_file.close() ? 0 : -1;
}

int gopen_ws(int /*ws_id*/, std::string_view device_spec, DeviceKind kind) {
    GraphicsState &s = gstate();
    if (s.open) {
        gerr_printf("gopen_ws", "a workstation is already open\n");
        return -1;
    }
    if (open_device(device_spec, kind) != 0) return -1;
    s.kind = kind;
    s.open = true;
    clear_colors();
    ginit_objs(false); // the window is refreshed from its pixmap: who replays the list switches it on
    gset_stroke_output({begin_text, gdraw_stroke});
    ginit_plot(plot_mode(kind));
    gsetup_fonts();
    ginit_background();
    if (const auto opened = gwindow_hooks().opened; opened != nullptr && gtype_is_WIN_PIX()) opened();
    return 0;
}

int gclose_ws(int /*ws_id*/) {
    if (!workstation_open("gclose_ws")) return -1;
    GraphicsState &s = gstate();
    if (const auto delete_frames = gwindow_hooks().delete_frames) delete_frames();
    const int status = close_device(s.kind);
    gset_stroke_output({});
    ginit_objs(false);
    s.open = false;
    s.kind = DeviceKind::none;
    return status;
}

void gabandon_ws() {
    if (gstate().kind == DeviceKind::ps) gps_abandon();
}

int gactivate_ws(int /*ws_id*/) {
    return 0;
}

int gdeactivate_ws(int /*ws_id*/) {
    return 0;
}

int gclear_ws(int /*ws_id*/, int /*flag*/) {
    if (!workstation_open("gclear_ws")) return -1;
    if (!gtype_is_WIN()) return 0; // what a file device has written stays
    graster_clear(graster_base());
    gclear_objs();
    return 0;
}

int gnew_page() {
    switch (gstate().kind) {
    case DeviceKind::ps:
        if (gps_new_page() != 0) return -1;
        install_clip();
        return 0;
    case DeviceKind::win: return gclear_ws(1, 1);
    case DeviceKind::none: break;
    }
    return 0;
}

int gchk_graphics() {
    return gstate().open ? 1 : 0;
}

void ginit_plot(PlotMode mode) {
    if (mode == PlotMode::none) return;
    greset_line();
    greset_marker();
    greset_text();
    greset_fill();
    if (const auto init_loop = gwindow_hooks().init_loop) init_loop();
    ginit_tran(mode);
    if (gtype_is_WIN_PIX()) raster_reset_contexts();
}

void ginit_tran(PlotMode mode) {
    reset_transforms(mode == PlotMode::keep_view);
    install_clip();
}

void gset_win_size(int width, int height) {
    if (width <= 0 || height <= 0) return;
    if (!gtype_is_WIN_PIX()) {
        state.window_width = width;
        state.window_height = height;
        return;
    }
    gstate().win_width = width;
    gstate().win_height = height;
    ginit_tran(PlotMode::keep_view);
}

DeviceKind gget_win_type() {
    return gstate().kind;
}

bool gtype_is_WIN() {
    return gstate().kind == DeviceKind::win;
}

bool gtype_is_WIN_PIX() {
    return gtype_is_WIN();
}

bool gtype_is_PS() {
    return gstate().kind == DeviceKind::ps;
}

bool gtype_is_memory() {
    return gtype_is_WIN() && graster_display() == RasterDisplay::memory;
}

bool gtype_is_file() {
    return gtype_is_PS();
}
