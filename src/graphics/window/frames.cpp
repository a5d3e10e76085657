#include "graphics/window/frames.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>

#include "graphics/core/error.h"
#include "graphics/core/object_list.h"
#include "graphics/core/state.h"
#include "graphics/devices/raster/display.h"
#include "graphics/window/frame_table.h"
#include "graphics/window/surface.h"
#include "graphics/window/zoom.h"
#include "lib/report/message.h"

namespace {

struct State {
    FrameTable &table = gframe_table();
    bool titled = false; ///< the window's title tells a frame or a note
    bool noted = false;  ///< it tells a note
} state;

void set_pixmap(int selector, PixmapId pixmap) {
    if (selector == kFrameBase)
        graster_set_base(pixmap);
    else
        gframe_slot(gframe_number(selector)).pixmap = pixmap;
}

PixelRect drawing_area() {
    const GraphicsState &s = gstate();
    return {s.win_x, s.win_y, s.win_width, s.win_height};
}

void copy_pixmap(PixmapId from, PixmapId to) {
    const PixelRect area = drawing_area();
    graster_copy(from, to, area, area.x, area.y);
}

/// Nothing may draw into a pixmap that is gone.
void free_pixmap(PixmapId &pixmap) {
    const PixmapId gone = std::exchange(pixmap, kNoPixmap);
    if (gone == kNoPixmap || graster_display() == RasterDisplay::none) return;
    if (graster_drawable() == gone) graster_set_drawable(graster_base());
    graster_free_pixmap(gone);
}

/// Takes frame `frame` out of the row; the later ones move down.
void remove_from_row(int frame) {
    FrameTable &t = state.table;
    const bool only = t.count == 1; // its pixmap serves the next frame 0
    if (only) return;
    free_pixmap(gframe_slot(frame).pixmap);
    auto *const first = t.frames.begin() + frame;
    auto *const end = t.frames.begin() + t.count;
    std::move(first + 1, end, first);
    gframe_slot(t.count - 1) = Frame{kNoPixmap, t.delay, {}};
    if (frame == t.count - 1) gframe_slot(frame - 1).delay = t.last_delay;
}

/// "[3]"; empty when titles do not tell the frame.
std::string frame_title(int frame) {
    if (!state.table.titles || state.table.count == 0) return {};
    return "[" + std::to_string(frame) + "]";
}

void show_frame_title(int frame) {
    const std::string title = frame_title(frame);
    if (!title.empty() || state.noted) gset_win_title_extra(title);
    state.titled = !title.empty();
    state.noted = false;
}

void clear_frame_title() {
    if (std::exchange(state.titled, false)) gset_win_title_extra("");
    state.noted = false;
}

} // namespace

void ginit_loop() {
    for (Frame &frame : state.table.frames) {
        free_pixmap(frame.pixmap);
        frame.delay = kFirstDelay;
        frame.source.clear();
    }
    state.table.count = 0;
    state.table.place = gget_frame_place();
    state.table.current = -1;
    clear_frame_title();
}

int gcreate_frame(int frame) {
    if (!gframes_possible()) return 0;
    FrameTable &t = state.table;
    const int n = frame < 0 ? t.count : frame;
    if (!is_frame_slot(n)) {
        gerr_printf("gcreate_frame", "no room for frame %d\n", n);
        return 0;
    }
    if (gframe_slot(n).pixmap == kNoPixmap) {
        const PixelRect area = drawing_area();
        gframe_slot(n).pixmap = graster_create_pixmap(area.x + area.width, area.y + area.height);
    }
    if (gframe_slot(n).pixmap == kNoPixmap) {
        gerr_printf("gcreate_frame", "no memory for frame %d\n", n);
        return 0;
    }
    graster_clear(gframe_slot(n).pixmap);
    gframe_slot(n).source.clear();
    if (n > 0) gframe_slot(n - 1).delay = t.delay;
    if (is_frame_slot(t.count)) gframe_slot(t.count).delay = t.last_delay;
    MESS_print(kOut4, "Created frame: %d-%ld\n", t.count, static_cast<long>(gframe_slot(n).pixmap));
    if (n == t.count) ++t.count;
    return n;
}

int gselect_frame(int frame) {
    if (!gframes_possible()) return 0;
    const PixmapId pixmap = gframe_pixmap(frame);
    if (pixmap == kNoPixmap) return 0;
    graster_set_drawable(pixmap);
    // Frames are never replayed, and what was kept of the picture before them is not what is seen.
    gset_redraw(0);
    gclear_objs();
    MESS_print(kOut4, "Selected frame: %d\n", gframe_number(frame));
    return 1;
}

int gdisplay_frame(int frame) {
    if (!gframes_possible()) return 0;
    const int n = frame < 0 ? std::max(state.table.current, 0) : frame;
    if (!is_frame_slot(n)) return 0;
    if (gget_zoom() >= 2)
        gzoom(n, -1, -1, -1, 1);
    else if (gframe_slot(n).pixmap != kNoPixmap)
        copy_pixmap(gframe_slot(n).pixmap, graster_base());
    gupdate_window();
    show_frame_title(n);
    MESS_print(kDebug, "Display frame: %d\n", n);
    state.table.current = n;
    return 1;
}

int gdelete_frame(int frame) {
    if (!gframes_possible()) return 0;
    FrameTable &t = state.table;
    const int n = gframe_number(frame);
    if (!is_frame_slot(n)) return 0;
    if (n >= t.count) {
        if (n > 0) free_pixmap(gframe_slot(n).pixmap);
        return 0;
    }
    remove_from_row(n);
    --t.count;
    if (t.count == 0) {
        clear_frame_title();
        greset_zoom();
        graster_clear(graster_base());
        gupdate_window();
    }
    const bool was_current = t.current == n;
    if (t.current == t.count) --t.current;
    if (t.count > 0 && was_current) gdisplay_frame(t.current);
    return 1;
}

void gdelete_all_frames() {
    for (Frame &frame : state.table.frames) free_pixmap(frame.pixmap);
}

int gcopy_frame(int to, int from) {
    if (!gframes_possible()) return 0;
    const PixmapId target = gframe_pixmap(to), source = gframe_pixmap(from);
    if (target == kNoPixmap || source == kNoPixmap) return 0;
    copy_pixmap(source, target);
    gset_frame_source(to, gget_frame_source(from));
    MESS_print(kDebug, "Copy frame: %d->%d\n", gframe_number(from), gframe_number(to));
    return 1;
}

int gclear_frame(int frame) {
    if (!gframes_possible()) return 0;
    const PixmapId pixmap = gframe_pixmap(frame);
    if (pixmap == kNoPixmap) return 0;
    graster_clear(pixmap);
    return 1;
}

int gswitch_frame(int a, int b) {
    if (!gframes_possible()) return 0;
    const PixmapId first = gframe_pixmap(a), second = gframe_pixmap(b);
    if (first == kNoPixmap || second == kNoPixmap) return 0;
    // The drawable is a pixmap: it goes where its pixmap goes, whatever a new base does to it.
    const PixmapId drawable = graster_drawable();
    const std::string source = gget_frame_source(a);
    set_pixmap(a, second);
    set_pixmap(b, first);
    gset_frame_source(a, gget_frame_source(b));
    gset_frame_source(b, source);
    graster_set_drawable(drawable);
    return 1;
}

int gget_num_images() {
    return state.table.count;
}

int gget_cur_frame() {
    return state.table.current;
}

void gset_frame_source(int frame, std::string_view source) {
    if (const int n = gframe_number(frame); is_frame_slot(n)) gframe_slot(n).source = source;
}

std::string gget_frame_source(int frame) {
    const int n = gframe_number(frame);
    return is_frame_slot(n) ? gframe_slot(n).source : std::string();
}

void gshow_note(std::string_view text) {
    if (text.empty() && !state.noted) return;
    std::string title = frame_title(state.table.current);
    if (!title.empty() && !text.empty()) title += ' ';
    gset_win_title_extra(title + std::string(text));
    state.noted = !text.empty();
    state.titled = !title.empty() || state.noted;
}

int gget_frame_place() {
    return state.table.current >= 0 ? state.table.current : state.table.place;
}

PixmapId gget_frame_id(int frame) {
    return gframe_pixmap(frame);
}

float gget_frame_delay(int frame) {
    const int n = gframe_number(frame);
    return is_frame_slot(n) ? gframe_slot(n).delay : 0.0F;
}
