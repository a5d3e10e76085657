#include "graphics/window/loop.h"

#include <algorithm>

#include "graphics/devices/raster/display.h"
#include "graphics/window/frame_table.h"
#include "graphics/window/surface.h"
#include "lib/report/message.h"

namespace {

constexpr float kShortest = 0.05F, kLongest = 5;      ///< seconds of a loop delay of equal steps
constexpr int kLoopingCursor = 3, kStoppedCursor = 4; ///< see gset_cursor

bool rocking(const FrameTable &t) {
    return t.direction >= kRockBack;
}

/// The last frame has a time of its own until the pace has been changed in proportion.
void set_delay(float seconds, bool faster) {
    FrameTable &t = gframe_table();
    t.delay = seconds;
    for (int i = 0; i + 1 < t.count; ++i) t.frames[static_cast<std::size_t>(i)].delay = seconds;
    if (t.proportional) {
        t.last_delay = seconds * (kLastDelay / kFirstDelay);
        if (t.count > 0) t.frames[static_cast<std::size_t>(t.count - 1)].delay = t.last_delay;
    }
    MESS_print(kOut4, "Loop delay %s to: %2.2f\n", faster ? "decremented" : "incremented",
               static_cast<double>(seconds));
}

} // namespace

int ginc_frame(int step) {
    FrameTable &t = gframe_table();
    if (t.count == 0) return -1;
    const int last = t.count - 1;
    if (step == 0) step = t.direction % 2 != 0 ? 1 : -1;
    int next = t.current + step;
    MESS_print(kDebug, "INC: %d-%d %d-%d\n", step, t.direction, t.current, next);
    if (next > last) {
        next = rocking(t) ? std::max(last - 1, 0) : 0;
        if (rocking(t)) t.direction = kRockBack;
    } else if (next < 0) {
        next = rocking(t) ? std::min(1, last) : last;
        if (rocking(t)) t.direction = kRockForward;
    }
    return next;
}

int ginc_loop_delay(float delta) {
    FrameTable &t = gframe_table();
    set_delay(std::max(t.delay + delta, 0.0F), delta < 0);
    return 0;
}

int gscale_loop_delay(float factor) {
    FrameTable &t = gframe_table();
    t.proportional = true;
    set_delay(std::clamp(t.delay * factor, kShortest, kLongest), factor < 1);
    return 0;
}

int gget_looping() {
    return gframe_table().looping ? 1 : 0;
}

float gget_loop_delay() {
    return gframe_table().delay;
}

int gset_looping(int flag) {
    if (!gframes_possible()) return 0;
    gframe_table().looping = flag == 1;
    gset_cursor(flag == 1 ? kLoopingCursor : kStoppedCursor);
    MESS_print(kOut4, flag == 1 ? "Looping initiated\n" : "Looping stopped\n");
    return 0;
}

int gtoggle_loop(int flag) {
    if (!gframes_possible()) return 0;
    const bool on = flag == 0 || flag == 1 ? flag == 1 : !gframe_table().looping;
    gset_looping(on ? 1 : 0);
    graster_sync();
    return 0;
}

void gset_loop_title(int flag) {
    gframe_table().titles = flag != 0;
}

void gset_loop_direction(int direction) {
    gframe_table().direction = std::clamp<int>(direction, kLoopBack, kRockForward);
}

void gset_refresh_callback(int seconds, void (*function)()) {
    gframe_table().refresh_seconds = std::max(seconds, 0);
    gframe_table().refresh = function;
}

void gset_delete_callback(void (*function)(int frame)) {
    gframe_table().deleted = function;
}
