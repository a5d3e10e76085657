#include "graphics/window/events.h"

#include <optional>
#include <utility>

#include "graphics/core/state.h"
#include "graphics/core/transform.h"
#include "graphics/devices/raster.h"
#include "graphics/devices/x11.h"
#include "graphics/kernel/kernel.h"
#include "graphics/window/frames.h"
#include "graphics/window/keys.h"
#include "graphics/window/rubber_band.h"
#include "lib/message.h"

namespace {

constexpr int kKeyEvent = 2, kButtonEvent = 3; ///< kinds that the callback knows
constexpr int kPointerCursor = 1, kDefaultBell = 50;
/// First data byte of a cooperating program's message.
enum Message : int { kAddFrame = 2, kFinish = 9 };

struct State {
    int input_mode = kInputIdle;
    bool processing = true;
    bool mapped = false, focus = false;
    bool exposed = false; ///< an exposure of the present run has been answered
    bool user_event = false;
    bool drawing = false;  ///< events come from the middle of a drawing
    bool new_size = false; ///< a size change waits for the end of the drawing
    int cursor = 0;
    std::optional<RasterEvent> held; ///< the press of the button that is held down
    MouseCallback callback = nullptr;
} state;

bool is_window() {
    return graster_display() == RasterDisplay::x11;
}

bool can_process() {
    return state.processing && is_window() && gtype_is_WIN();
}

bool awaits_input() {
    return state.input_mode != kInputIdle && !state.drawing;
}

/// Place in world coordinates of the current transform, whatever the zoom.
void tell(int kind, const std::string &name, float x, float y) {
    if (state.callback == nullptr) return;
    const int cursor = gset_cursor(kPointerCursor);
    state.callback(kind, name, xp_W(xZ_p(x)), yp_W(yZ_p(y)));
    gset_cursor(cursor);
}

void follow_size() {
    state.new_size = false;
    if (gresize_window(-1, -1) == 0) return;
    ginit_plot(PlotMode::resized);
    if (state.callback != nullptr)
        state.callback(kKeyEvent, "size", static_cast<float>(gstate().win_width),
                       static_cast<float>(gstate().win_height));
}

void on_expose() {
    if (!std::exchange(state.exposed, true)) graster_show();
}

void on_configure() {
    state.new_size = true;
    if (!state.drawing) follow_size();
}

/// A cooperating program draws into the last frame's pixmap: what it has drawn is moved to a frame before.
void add_frame() {
    gset_win_title_extra("+");
    if (gget_num_images() == 0) {
        gcreate_frame(0);
        gset_looping(1);
        gselect_frame(0);
    } else {
        const int last = gget_num_images() - 1;
        const int added = gcreate_frame(-1);
        if (added == last + 1) {
            gcopy_frame(added, last);
            gswitch_frame(added, last);
            gclear_frame(added);
        }
    }
    gset_win_title_extra("");
}

void on_message(int message) {
    if (message == kFinish) state.input_mode = kInputQuit;
    if (message == kAddFrame) add_frame();
}

void on_key(const RasterEvent &event) {
    if (state.input_mode == kInputIdle) return;
    if (is_quit_key(event)) {
        state.input_mode = kInputQuit;
    } else if (state.input_mode == kInputWaiting) {
        state.input_mode = kInputSeen;
    }
    if (!awaits_input()) return;
    state.user_event = true;
    if (!act_on_key(event)) return;
    if (event.key.empty() && !event.is_return) return; // a modifier alone has no name
    const PixelPoint pointer = gx11_pointer();
    tell(kKeyEvent, key_name(event), pointer.x, pointer.y);
}

void on_press(const RasterEvent &event) {
    if (!awaits_input()) return;
    state.held = event;
    act_on_button(event);
    band_press(event.x, event.y);
    tell(kButtonEvent, button_name(event, 'P'), static_cast<float>(event.x), static_cast<float>(event.y));
}

void on_release(const RasterEvent &event) {
    state.held.reset();
    if (!awaits_input()) {
        band_reset();
        return;
    }
    state.user_event = true;
    band_release();
    tell(kButtonEvent, button_name(event, 'R'), static_cast<float>(event.x), static_cast<float>(event.y));
}

/// Unlike a press or a release it is no user event, and the cursor stays: motions come by the hundred.
void on_motion(const RasterEvent &event) {
    band_move(event.x, event.y);
    if (!state.held || !awaits_input() || state.callback == nullptr) return;
    state.callback(kButtonEvent, button_name(*state.held, 'M'), xp_W(xZ_p(static_cast<float>(event.x))),
                   yp_W(yZ_p(static_cast<float>(event.y))));
}

void process_event(const RasterEvent &event) {
    state.user_event = false;
    if (event.kind != RasterEventKind::expose && event.kind != RasterEventKind::configure)
        state.exposed = false;
    switch (event.kind) {
    case RasterEventKind::expose: on_expose(); break;
    case RasterEventKind::map: state.mapped = true; break;
    case RasterEventKind::unmap: state.mapped = false; break;
    case RasterEventKind::focus_in: state.focus = true; break;
    case RasterEventKind::focus_out: state.focus = false; break;
    case RasterEventKind::configure: on_configure(); break;
    case RasterEventKind::message: on_message(event.message); break;
    case RasterEventKind::close: state.input_mode = kInputQuit; break;
    case RasterEventKind::key_press: on_key(event); break;
    case RasterEventKind::button_press: on_press(event); break;
    case RasterEventKind::button_release: on_release(event); break;
    case RasterEventKind::motion: on_motion(event); break;
    case RasterEventKind::other: break;
    }
}

/// Everything that waits; 1 is added for each user event.
int process_pending() {
    int users = 0;
    // An exposure of an earlier look is another run.
    state.exposed = false;
    while (can_process() && gx11_pending() > 0) {
        process_event(gx11_next_event());
        users += state.user_event ? 1 : 0;
    }
    // A running loop comes back to its round only after the frame's time, which may be long.
    if (users > 0) MESS_flush();
    return users;
}

} // namespace

void gset_mouse_callback(MouseCallback function) {
    state.callback = function;
}

void gset_input_mode(int mode) {
    state.input_mode = mode == kInputWaiting ? kInputWaiting : kInputIdle;
}

int gget_input_mode() {
    return state.input_mode;
}

int gwait_event() {
    if (!can_process()) return 0;
    if (state.new_size) {
        follow_size();
        return gcheck_event();
    }
    state.exposed = false;
    process_event(gx11_next_event());
    const int first = state.user_event ? 1 : 0;
    return first + process_pending();
}

int gcheck_event() {
    if (!can_process()) return 0;
    if (state.new_size && !state.drawing) follow_size();
    return process_pending();
}

void gpump_events() {
    const bool outer = std::exchange(state.drawing, true);
    gcheck_event();
    state.drawing = outer;
}

void ginit_events() {
    band_reset();
    greset_zoom();
    state.exposed = false;
    state.user_event = false;
}

int gset_cache(int flag) {
    return std::exchange(state.processing, flag != 0) ? 1 : 0;
}

int gget_cache() {
    return state.processing ? 1 : 0;
}

int gis_mapped() {
    return state.mapped ? 1 : 0;
}

int gupdate_window() {
    if (graster_display() == RasterDisplay::none) return -1;
    graster_show();
    graster_sync();
    return 0;
}

int gresize_window(int width, int height) {
    if (!is_window()) return 0;
    GraphicsState &s = gstate();
    if (width > 0 && height > 0)
        gx11_resize(width, height);
    else if (!gx11_window_size(width, height) || (width == s.win_width && height == s.win_height))
        return 0;
    const PixmapId old = graster_base(), base = graster_create_pixmap(width, height);
    if (base == kNoPixmap) {
        gerr_printf("gresize_window", "no memory for a picture of %d x %d pixels\n", width, height);
        return 0;
    }
    greset_zoom();
    gdelete_all_frames();
    graster_clear(base);
    graster_copy(old, base, {0, 0, s.win_width, s.win_height}, 0, 0);
    graster_set_base(base);
    graster_set_drawable(base);
    graster_free_pixmap(old);
    s.win_width = width;
    s.win_height = height;
    return 1;
}

void gset_win_title_extra(std::string_view text) {
    if (is_window()) gx11_set_title_extra(text);
}

std::string gget_win_title_extra() {
    return is_window() ? gx11_title_extra() : std::string();
}

void gbell(int percent) {
    if (!is_window()) return;
    gx11_bell(percent == 0 ? kDefaultBell : percent);
    gx11_sync();
}

int gset_cursor(int type) {
    if (!gtype_is_WIN_PIX()) return state.cursor;
    const int previous = std::exchange(state.cursor, type);
    if (is_window()) {
        gx11_set_cursor(type);
        gx11_sync();
    }
    return previous;
}

int gget_cursor_type() {
    return state.cursor;
}
