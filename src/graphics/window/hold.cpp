/// The hold loop: keeps the window alive after the plot until the user ends it.

#include "graphics/devices/raster.h"
#include "graphics/kernel/kernel.h"
#include "graphics/kernel/window_hooks.h"
#include "graphics/window/events.h"
#include "graphics/window/frame_table.h"
#include "lib/calendar.h"
#include "lib/message.h"
#include "lib/process.h"

namespace {

enum HoldCursor : int { kPointless = 0, kLoops = 3, kStands = 4, kSelects = 6, kBusy = 8 };
constexpr int kBellPercent = 50;

/// How long the loop rests while nothing happens: short at first, so that keys act at once.
constexpr float kBriskRest = 0.1F, kIdleRest = 0.5F; ///< seconds
constexpr int kBriskRounds = 50;

class Refresh {
public:
    Refresh() : next_(DATE_get_time() + gframe_table().refresh_seconds) {}
    static bool wanted() { return gframe_table().refresh_seconds > 0; }
    /// Calls the callback when its time has come.
    void check() {
        const FrameTable &t = gframe_table();
        if (!wanted() || t.refresh == nullptr || DATE_get_time() < next_) return;
        t.refresh();
        next_ += t.refresh_seconds;
    }

private:
    std::int64_t next_; ///< seconds since 1970
};

bool animated(const FrameTable &t) {
    return t.count >= 2 && t.looping;
}

void show_cursor(int cursor) {
    if (gget_cursor_type() != cursor) gset_cursor(cursor);
}

void show_next_frame() {
    show_cursor(kLoops);
    gloop_sleep();
    if (gget_input_mode() == kInputQuit) return;
    if (gis_mapped() != 0)
        gdisplay_frame(ginc_frame(0));
    else
        VYX_sleep(kBriskRest); // an icon needs no pictures, nor the processor
    VYX_init_time();
    gcheck_event();
}

void rest(int &idle_rounds) {
    VYX_sleep(idle_rounds < kBriskRounds ? kBriskRest : kIdleRest);
    idle_rounds = gcheck_event() > 0 ? 0 : idle_rounds + 1;
}

/// Where nothing can come from the display a blocking wait would return at once, again and again.
void wait_for_event() {
    if (gget_cache() == 0) VYX_sleep(kBriskRest);
    gwait_event();
}

void hold_round(Refresh &refresh, int &idle_rounds) {
    const FrameTable &t = gframe_table();
    MESS_flush();
    if (animated(t)) {
        show_next_frame();
        idle_rounds = 0;
    } else {
        show_cursor(t.count >= 2 ? kStands : kSelects);
        if (Refresh::wanted())
            rest(idle_rounds);
        else
            wait_for_event();
    }
    refresh.check();
}

/// Drawing follows the opening of a window.
void show_busy() {
    graster_sync();
    gcheck_event();
    gset_cursor(kBusy);
}

/// What a new plot forgets.
void init_window() {
    ginit_events();
    ginit_loop();
}

} // namespace

void gsetup_window() {
    gset_window_hooks({ghold, init_window, show_busy, gdelete_all_frames});
    gset_event_pump(gpump_events);
}

int ghold(int /*flag*/) {
    const auto held = [] { return gtype_is_WIN() && graster_display() == RasterDisplay::x11; };
    if (!held() || !gframes_possible()) return 0;
    gupdate_window();
    gcheck_event();
    if (gget_looping() != 0) VYX_init_time();
    gset_input_mode(kInputWaiting);
    Refresh refresh;
    int idle_rounds = 0;
    while (gget_input_mode() != kInputQuit && held()) hold_round(refresh, idle_rounds);
    gset_input_mode(kInputIdle);
    gbell(kBellPercent);
    gset_cursor(kPointless);
    graster_sync();
    return 1;
}
