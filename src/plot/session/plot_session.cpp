#include "plot/session/plot_session.h"

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "graphics/window/events.h"
#include "lib/options/flags.h"
#include "lib/report/message.h"
#include "lib/report/process.h"
#include "lib/resources/database.h"
#include "plot/session/graphics_setup.h"
#include "plot/session/images.h"
#include "plot/session/labels.h"
#include "plot/session/layout.h"
#include "plot/session/outcome.h"
#include "plot/session/parameters.h"

namespace {

struct State {
    int ws_id = 1;
    DeviceKind device = DeviceKind::none;
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
    Rect panel = PLT_get_view_offsets();
    PLT_set_view(panel);
    if (PLT_nothing_to_draw()) return -1;
    GPH_setup(state.ws_id, state.device, panel, aspect);
    PLT_set_view(panel);
    PLT_param_apply();
    return 0;
}

int PLT_reset(float aspect) {
    Rect panel = PLT_get_view_offsets();
    PLT_set_view(panel);
    const int type = PLT_get_label_type();
    if (type != 0) PLT_set_label_type(type > 0 ? 1 : -1);
    if (PLT_nothing_to_draw()) return -1;
    GPH_reset(state.ws_id, state.device, panel, aspect);
    PLT_set_view(panel);
    return 0;
}

int PLT_panel(float aspect) {
    const Rect view = PLT_get_view();
    const float current = view.height() > 0 ? view.width() / view.height() : 1.0F;
    Rect panel = PLT_get_view_offsets();
    GPH_panel(state.ws_id, panel, aspect == 0 ? current : aspect);
    PLT_set_view(panel);
    return 0;
}

int PLT_close() {
    if (PLT_nothing_to_draw()) {
        if (!PLT_finish_images()) PLT_miss_picture();
        const ExitStatus status = PLT_take_outcome();
        if (status != kExitOk) VYX_exit(status);
        return -1;
    }
    const bool held = window_stays();
    // Files and pictures are finished in the foreground, so that the exit status tells of them.
    if (held && FLAG_batch() == 1 && VYX_back_proc(PLT_outcome()) == 0) VYX_exit(kExitSession);
    GPH_trans(kDataTransform);
    if (held) GPH_hold(1);
    const bool images = PLT_finish_images();
    gclear_ws(state.ws_id, 1);
    const bool pages = GPH_end(state.ws_id) >= 0;
    const ExitStatus status = PLT_take_outcome();
    if (status != kExitOk) VYX_exit(status);
    if (!pages || !images) VYX_exit(kExitSession);
    PLT_init_labels();
    return 0;
}

void PLT_end_without_memory() {
    MESS_print(kError, "%s: Out of memory\n", RES_get_progname().c_str());
    if (gchk_graphics() == 1) {
        (void)PLT_finish_images(); // the status tells of less than is missing already
        (void)GPH_end(state.ws_id);
    }
    VYX_exit(kExitNoMemory);
}

bool PLT_keeps_frames() {
    const bool nobody_looks = gtype_is_memory() && FLAG_batch() == 1;
    return gtype_is_WIN() && !PLT_wants_image() && !nobody_looks;
}

void PLT_exit(int status) {
    if (status != kExitOk) gabandon_ws();
    (void)GPH_end(state.ws_id); // the status tells already
    VYX_exit(status);
}

DeviceKind PLT_get_work_type() {
    return state.device;
}
