#include <cstdlib>
#include <string>

#include "graphics/core/state.h"
#include "graphics/core/stroke_output.h"
#include "graphics/devices/print/print_ink.h"
#include "graphics/devices/raster/display.h"
#include "graphics/devices/x11/display.h"
#include "graphics/kernel/argument_checks.h"
#include "graphics/kernel/device.h"
#include "graphics/kernel/kernel.h"
#include "graphics/kernel/raster_ink.h"
#include "graphics/kernel/window_device.h"
#include "graphics/kernel/window_hooks.h"
#include "graphics/text/font.h"
#include "lib/system/stream.h"
#include "lib/text/strings.h"

namespace {

struct State {
    Stream error_file; ///< open only when a name was given
} state;

/// Who looks at a window may want its picture as a metafile. A raster in memory has nobody who asks.
bool keeps_objects() {
    if (!gtype_is_WIN() || gtype_is_memory()) return false;
    // The environment goes before the X resource, and is asked where the list begins.
    return std::getenv("vyxredraw") != nullptr || stricmp(gx11_default("redraw").value_or(""), "no") != 0;
}

void begin_text(const Point &world, std::string_view text) {
    gdevice().begin_text(world, text);
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
    const Device *const device = gdevice_of(kind);
    if (device == nullptr) {
        gerr_printf("gopen_ws", "device not available in this version\n");
        return -1;
    }
    if (device->open(device_spec) != 0) return -1;
    s.kind = kind;
    s.device = device;
    s.open = true;
    clear_colors();
    ginit_objs(keeps_objects());
    gset_stroke_output({begin_text, gdraw_stroke});
    ginit_plot(device->mode);
    gsetup_fonts();
    device->init_background();
    const PrintInk *const ink = device->ink;
    const bool joins = ink != nullptr && ink->joins_drawing != nullptr && ink->joins_drawing();
    if (gget_redraw() != 0 || joins) grecord_state();
    if (const auto opened = gwindow_hooks().opened; opened != nullptr && gtype_is_WIN_PIX()) opened();
    return 0;
}

int gclose_ws(int /*ws_id*/) {
    if (!workstation_open("gclose_ws")) return -1;
    GraphicsState &s = gstate();
    if (const auto delete_frames = gwindow_hooks().delete_frames) delete_frames();
    const int status = gdevice().close();
    gset_stroke_output({});
    ginit_objs(false);
    s.open = false;
    s.kind = DeviceKind::none;
    s.device = nullptr;
    return status;
}

void gabandon_ws() {
    gdevice().abandon();
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
    if (gget_redraw() != 0) grecord_state();
    return 0;
}

int gnew_page() {
    return gdevice().new_page();
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
        set_next_window_size(width, height);
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
    return gdevice().window;
}

bool gtype_is_WIN_PIX() {
    return gdevice().raster;
}

bool gtype_is_PS() {
    return gstate().kind == DeviceKind::ps;
}

bool gtype_is_memory() {
    return gtype_is_WIN() && graster_display() == RasterDisplay::memory;
}
