#include "plot/session/plot_session.h"

#include <algorithm>
#include <cstdarg>
#include <utility>

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "lib/options/flags.h"
#include "lib/report/message.h"
#include "lib/report/process.h"
#include "lib/resources/database.h"
#include "lib/text/strings.h"
#include "plot/map/current_map.h"
#include "plot/session/graphics_setup.h"
#include "plot/session/images.h"
#include "plot/session/parameters.h"

namespace {

constexpr std::size_t kMessageLength = 263;
/// Margin for labels and bar below and above the plot, NDC.
constexpr float kLabelBand = 0.04F;
constexpr unsigned kLocationLevel = 8;
constexpr int kStatusMessage = 1;

struct State {
    int ws_id = 1;
    DeviceKind device = DeviceKind::none;
    Rect offsets{0, 0, kLabelBand, kLabelBand}; ///< left, right, bottom, top
    float offset = 0;                           ///< last given to PLT_set_view_offset
    Rect view;                                  ///< plot area, NDC
    int full_labels = 0;
    ExitStatus status = kExitOk; ///< what the session ends with: a picture is not there, or memory ran out
} state;

/// A window of an X server that the user looks at when all is drawn, unless it has been closed by then.
bool window_stays() {
    return gtype_is_WIN() && !gtype_is_memory() && !PLT_wants_image() && !gquit_wanted();
}

} // namespace

bool PLT_nothing_to_draw() {
    return FLAG_getplot(kPlotAny) == 0 || FLAG_get(kFlagPlotType) == kPlotTypeNone;
}

int PLT_open(float aspect) {
    PLT_param_decode();
    state.view = state.offsets;
    if (PLT_nothing_to_draw()) return -1;
    GPH_setup(state.ws_id, state.device, state.view, aspect);
    PLT_param_apply();
    return 0;
}

int PLT_reset(float aspect) {
    state.view = state.offsets;
    const int type = PLT_get_label_type();
    if (type != 0) PLT_set_label_type(type > 0 ? 1 : -1);
    if (PLT_nothing_to_draw()) return -1;
    GPH_reset(state.ws_id, state.device, state.view, aspect);
    return 0;
}

int PLT_panel(float aspect) {
    const float current = state.view.height() > 0 ? state.view.width() / state.view.height() : 1.0F;
    state.view = state.offsets;
    GPH_panel(state.ws_id, state.view, aspect == 0 ? current : aspect);
    return 0;
}

int PLT_close() {
    if (PLT_nothing_to_draw()) {
        if (!PLT_finish_images()) PLT_miss_picture();
        const ExitStatus status = std::exchange(state.status, kExitOk);
        if (status != kExitOk) VYX_exit(status);
        return -1;
    }
    const bool held = window_stays();
    // Files and pictures are finished in the foreground, so that the exit status tells of them.
    if (held && FLAG_batch() == 1 && VYX_back_proc(state.status) == 0) VYX_exit(kExitSession);
    GPH_trans(2);
    if (held) GPH_hold(1);
    const bool images = PLT_finish_images();
    gclear_ws(state.ws_id, 1);
    const bool pages = GPH_end(state.ws_id) >= 0;
    const ExitStatus status = std::exchange(state.status, kExitOk);
    if (status != kExitOk) VYX_exit(status);
    if (!pages || !images) VYX_exit(kExitSession);
    PLT_init_labels();
    return 0;
}

void PLT_miss_picture() {
    state.status = std::max(state.status, kExitSession);
}

void PLT_lack_memory() {
    state.status = kExitNoMemory;
}

void PLT_end_without_memory() {
    MESS_print(kError, "%s: Out of memory\n", RES_get_progname().c_str());
    if (gchk_graphics() == 1) {
        PLT_finish_images();
        GPH_end(state.ws_id);
    }
    VYX_exit(kExitNoMemory);
}

bool PLT_keeps_frames() {
    const bool nobody_looks = gtype_is_memory() && FLAG_batch() == 1;
    return gtype_is_WIN_PIX() && !PLT_wants_image() && !nobody_looks;
}

void PLT_exit(int status) {
    if (status != kExitOk) gabandon_ws();
    GPH_end(state.ws_id);
    VYX_exit(status);
}

void PLT_set_view_offset(float offset) {
    state.offset = offset;
    state.offsets = {0, 0, offset, offset};
}

void PLT_set_view_offsets(float left, float right, float bottom, float top) {
    state.offsets = {left, right, bottom, top};
}

float PLT_get_view_offset() {
    return state.offset;
}

Rect PLT_get_view_offsets() {
    return state.offsets;
}

Rect PLT_get_view() {
    return state.view;
}

DeviceKind PLT_get_work_type() {
    return state.device;
}

void PLT_set_full_lab(int on) {
    state.full_labels = on;
}

int PLT_get_full_lab() {
    return state.full_labels;
}

int PLT_mess(const char *format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::string text = vformat_text(format, arguments);
    va_end(arguments);
    text.resize(std::min(text.size(), kMessageLength));
    return gmessage(kStatusMessage, text);
}

int PLT_print_location(std::string_view event, float x, float y) {
    if (event != "v-Alt") return 0;
    float lat = kMissingF, lon = kMissingF;
    MAP_untran(lat, lon, x, y);
    const auto wide = [](float value) { return static_cast<double>(value); };
    MESS_print(kLocationLevel, "Lat: %6.2f Lon: %7.2f XY: %6.2f %6.2f Pixel: %6.2f %6.2f\n", wide(lat),
               wide(lon), wide(x), wide(y), wide(xW_p(x)), wide(yW_p(y)));
    return 0;
}
