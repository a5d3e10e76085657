#include "graphics/kernel/helpers.h"

#include <array>
#include <string>

#include "graphics/core/state.h"
#include "graphics/devices/x11/display.h"
#include "graphics/kernel/kernel.h"
#include "graphics/kernel/window_hooks.h"
#include "lib/options/flags.h"
#include "lib/report/message.h"
#include "lib/report/process.h"
#include "lib/resources/database.h"
#include "lib/resources/prompt.h"
#include "lib/system/stream.h"

namespace {

struct State {
    float size_x = 1, size_y = 1, offset_x = 0, offset_y = 0; ///< used part, fractions of the view
    float view_x = 1, view_y = 1;                             ///< whole view, NDC
    int given_device = 0; ///< what opened the workstation: the device flag goes back to it
} state;

constexpr int kWorkstation = 1;
constexpr int kReplyLength = 11; ///< ten characters

DeviceKind ask_device() {
    const std::string reply = VYX_prompts("Display (D) or Postscript (P): ", kReplyLength);
    const int code = RES_set_device(reply);
    FLAG_set(kFlagDevice, code);
    return static_cast<DeviceKind>(code);
}

void open_or_exit(std::string_view device_spec, DeviceKind kind) {
    if (gopen_gks("", 10000) != 0) {
        MESS_print(kError, "GPH_begin: Error opening Kernel System\n");
        VYX_exit(kExitGraphics);
    }
    if (gopen_ws(kWorkstation, device_spec, kind) != 0) {
        MESS_print(kError, "GPH_begin: Error opening workstation\n");
        VYX_exit(kExitGraphics);
    }
}

} // namespace

int GPH_begin(int &ws_id, std::string_view device_spec, DeviceKind &device) {
    constexpr std::string_view kStaleErrors = "vyxgks.err";
    if (FILE_exist(kStaleErrors) != 0) (void)FILE_delete(kStaleErrors); // another user's may stay
    ws_id = kWorkstation;
    const bool opens = gchk_graphics() == 0;
    if (opens) state.given_device = static_cast<int>(device);
    if (device == DeviceKind::none) device = ask_device();
    if (opens) open_or_exit(device_spec, device);
    device = gget_win_type();
    gactivate_ws(ws_id);
    return 0;
}

int GPH_end(int ws_id) {
    gdeactivate_ws(ws_id);
    const int status = gclose_ws(ws_id);
    gclose_gks();
    FLAG_set(kFlagDevice, state.given_device);
    return status;
}

int GPH_hold(int flag) {
    const auto hold = gwindow_hooks().hold;
    if (gtype_is_WIN()) gx11_set_owner(); // the program may have gone into the background
    return hold != nullptr && gtype_is_WIN() ? hold(flag) : 0;
}

void GPH_set_view_size(float size_x, float size_y, float offset_x, float offset_y) {
    state.size_x = size_x;
    state.size_y = size_y;
    state.offset_x = offset_x;
    state.offset_y = offset_y;
}

Rect GPH_get_view_size() {
    return {state.offset_x * state.view_x, (state.offset_x + state.size_x) * state.view_x,
            state.offset_y * state.view_y, (state.offset_y + state.size_y) * state.view_y};
}

void GPH_set_maxview(int ws_id) {
    ginq_maxview(ws_id, state.view_x, state.view_y);
    const Rect view{0, state.view_x, 0, state.view_y};
    gsel_norm_tran(kNdcTransform);
    gset_ws_win(ws_id, view);
    gset_win(kViewTransform, view);
    gset_vp(kViewTransform, view);
}

int GPH_panel(int /*ws_id*/, Rect &panel, float aspect) {
    const State &v = state;
    const Rect region{(v.size_x * panel.xmin + v.offset_x) * v.view_x,
                      (v.size_x + v.offset_x - v.size_x * panel.xmax) * v.view_x,
                      (v.size_y * panel.ymin + v.offset_y) * v.view_y,
                      (v.size_y + v.offset_y - v.size_y * panel.ymax) * v.view_y};
    const bool given = aspect != 0;
    const float w = given ? aspect : v.size_x * v.view_x, h = given ? 1 : v.size_y * v.view_y;
    panel = gset_aspect(region, AspectMode::centre, AspectMode::centre, w, h);
    for (const int transform : {kDataTransform, kSecondTransform}) {
        gset_win(transform, panel);
        gset_vp(transform, panel);
    }
    GPH_line_attr(nullptr);
    GPH_fill_attr(nullptr);
    GPH_mark_attr(nullptr, 1);
    GPH_text_attr(nullptr, 1);
    return 0;
}

int GPH_trans(int transform) {
    return gsel_norm_tran(transform);
}

Rect GPH_get_win(int transform) {
    Rect window, viewport;
    ginq_norm_tran(transform, window, viewport);
    return window;
}

int GPH_set_color(int index, float red, float green, float blue) {
    const Rgb color{red, green, blue};
    const int used = index < 0 ? galloc_colr(index, color) : index;
    return used < 0 || gset_colr_rep(kWorkstation, used, color) != 0 ? -1 : used;
}
