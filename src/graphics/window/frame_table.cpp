#include "graphics/window/frame_table.h"

#include "graphics/devices/raster/display.h"
#include "graphics/kernel/kernel.h"

namespace {

struct State {
    FrameTable table;
} state;

} // namespace

FrameTable &gframe_table() {
    return state.table;
}

bool gframes_possible() {
    return gtype_is_WIN() && graster_drawable() != kNoPixmap;
}

bool is_frame_slot(int frame) {
    return frame >= 0 && frame < kMaxFrames;
}

Frame &gframe_slot(int frame) {
    return state.table.frames[static_cast<std::size_t>(frame)];
}

int gframe_number(int selector) {
    if (selector == kFrameLast) return state.table.count - 1;
    return selector == kFrameCurrent ? state.table.current : selector;
}

PixmapId gframe_pixmap(int selector) {
    if (selector == kFrameBase) return graster_base();
    const int frame = gframe_number(selector);
    return is_frame_slot(frame) ? gframe_slot(frame).pixmap : kNoPixmap;
}
