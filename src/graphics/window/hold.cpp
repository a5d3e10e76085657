#include "graphics/window/hold.h"
#include "graphics/window/frames.h"
#include "graphics/window/loop.h"
#include "graphics/window/rubber_band.h"
#include "graphics/window/surface.h"

#include <algorithm>
#include <chrono>

#include "graphics/devices/raster/display.h"
#include "graphics/kernel/kernel.h"
#include "graphics/kernel/window_hooks.h"
#include "graphics/window/events.h"
#include "graphics/window/frame_table.h"
#include "graphics/window/partner.h"
#include "lib/report/message.h"
#include "lib/report/process.h"

namespace {

enum HoldCursor : int { kPointless = 0, kLoops = 3, kStands = 4, kSelects = 6, kBusy = 8 };
constexpr int kBellPercent = 50;

constexpr float kIconRest = 0.1F;   ///< seconds
constexpr float kSleepSlice = 0.2F; ///< seconds between two looks at the events

/// By a clock that nobody sets.
class Refresh {
public:
    static bool wanted() { return gframe_table().refresh_seconds > 0; }
    /// Seconds until the callback is due; 0 when it is.
    [[nodiscard]] float remaining() const {
        return std::max(std::chrono::duration<float>(next() - Clock::now()).count(), 0.0F);
    }
    /// Calls the callback when its time has come. Turns that were missed are not made up for.
    void check() {
        const FrameTable &t = gframe_table();
        if (!wanted() || t.refresh == nullptr || Clock::now() < next()) return;
        while (next() <= Clock::now()) last_ = next();
        t.refresh();
    }

private:
    using Clock = std::chrono::steady_clock;
    [[nodiscard]] Clock::time_point next() const {
        return last_ + std::chrono::seconds(gframe_table().refresh_seconds);
    }
    Clock::time_point last_ = Clock::now(); ///< when it was due last, or the hold began
};

bool animated(const FrameTable &t) {
    return t.count >= 2 && t.looping;
}

void show_cursor(int cursor) {
    if (gget_cursor_type() != cursor) gset_cursor(cursor);
}

void show_next_frame() {
    show_cursor(kLoops);
    const FrameTable &t = gframe_table();
    const int shown = t.current;
    gloop_sleep();
    if (gget_input_mode() == kInputQuit || !animated(t)) return;
    if (gis_mapped() == 0) {
        gwait_events(kIconRest);     // an icon needs no pictures, nor the processor
    } else if (t.current == shown) { // else somebody has shown a frame meanwhile, which has its time now
        gdisplay_frame(ginc_frame(0));
        band_show();
    }
    VYX_init_time();
    gcheck_event();
}

/// Where nothing can come from the display a blocking wait would return at once, again and again.
void wait_for_event() {
    if (gget_cache() == 0) (void)VYX_sleep(kIconRest);
    gwait_event();
}

void hold_round(Refresh &refresh) {
    const FrameTable &t = gframe_table();
    MESS_flush();
    gupdate_shared();
    if (animated(t)) {
        show_next_frame();
    } else {
        show_cursor(t.count >= 2 ? kStands : kSelects);
        if (Refresh::wanted())
            gwait_events(refresh.remaining());
        else
            wait_for_event();
    }
    if (gget_input_mode() != kInputQuit) refresh.check();
}

/// Drawing follows the opening of a window.
void show_busy() {
    graster_sync();
    gbegin_events();
    gpump_events();
    gfollow_size();
    gset_cursor(kBusy);
    gupdate_shared();
}

void end_window() {
    gend_sharing();
    gdelete_all_frames();
}

/// What a new plot forgets.
void init_window() {
    ginit_events();
    ginit_loop();
}

} // namespace

void gsetup_window() {
    gset_window_hooks({ghold, init_window, show_busy, end_window});
    gset_event_pump(gpump_events);
}

int gloop_sleep() {
    const FrameTable &t = gframe_table();
    const int shown = t.current;
    if (shown < 0 || shown >= t.count) return -1;
    const auto remaining = [shown] { return gget_frame_delay(shown) - VYX_elapse_time(); };
    const bool looping = t.looping;
    for (float rest = remaining(); rest > 0; rest = remaining()) {
        gwait_events(std::min(rest, kSleepSlice));
        if (gget_input_mode() == kInputQuit) break;
        if (t.looping != looping || t.current != shown) break; // the loop has been stopped or led elsewhere
    }
    return 0;
}

int ghold(int /*flag*/) {
    const auto held = [] { return gtype_is_WIN() && graster_display() == RasterDisplay::x11; };
    if (!held() || !gframes_possible()) return 0;
    gupdate_window();
    gpump_events(); // keys of before the hold mean nothing, except those that end it
    if (!gquit_wanted()) gset_input_mode(kInputWaiting);
    gcheck_event();
    if (gget_looping() != 0) VYX_init_time();
    Refresh refresh;
    while (gget_input_mode() != kInputQuit && held()) hold_round(refresh);
    gset_input_mode(kInputIdle);
    gbegin_events();
    gbell(kBellPercent);
    gset_cursor(kPointless);
    graster_sync();
    return 1;
}
