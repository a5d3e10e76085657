#include "graphics/window/events.h"
#include "graphics/window/loop.h"
#include "graphics/window/surface.h"
#include "graphics/window/zoom.h"

#include <algorithm>
#include <chrono>
#include <deque>
#include <optional>
#include <utility>

#include "graphics/core/state.h"
#include "graphics/core/transform.h"
#include "graphics/devices/raster/display.h"
#include "graphics/devices/x11/display.h"
#include "graphics/kernel/kernel.h"
#include "graphics/window/frames.h"
#include "graphics/window/keys.h"
#include "graphics/window/partner.h"
#include "graphics/window/rubber_band.h"
#include "lib/report/message.h"
#include "lib/report/process.h"

namespace {

constexpr int kKeyEvent = 2, kButtonEvent = 3; ///< kinds that the callback knows
constexpr int kPointerCursor = 1;
/// First data byte of a cooperating program's message.
enum Message : int { kAddFrame = 2, kFinish = 9 };

/// What keeps the program from acting on events; they come all the same.
enum class Busy : int { no, drawing, waiting };

struct State {
    int input_mode = kInputIdle;
    bool processing = true;
    bool mapped = false;
    bool exposed = false; ///< an exposure of the present run has been answered
    bool ended = false;   ///< the user wants the window to go
    Busy busy = Busy::no;
    bool new_size = false; ///< a size change waits
    /// Waits until the program is not busy; the last of a drawing may have stopped it.
    std::deque<RasterEvent> kept;
    bool stoppable = false, follows_size = false; ///< see StoppableDrawing
    bool view_wanted = false;                     ///< a key that is kept has stopped the drawing
    std::optional<RasterEvent> held;              ///< the press of the button that is held down
    MouseCallback callback = nullptr;
    ViewKey view_key = nullptr;
} state;

bool is_window() {
    return gtype_is_WIN() && graster_display() == RasterDisplay::x11;
}

bool can_process() {
    return state.processing && is_window();
}

bool awaits_input() {
    return state.input_mode != kInputIdle && state.busy == Busy::no;
}

/// Place in world coordinates of the current transform, whatever the zoom.
void tell(int kind, const std::string &name, float x, float y) {
    if (state.callback == nullptr) return;
    const int cursor = gset_cursor(kPointerCursor);
    state.callback(kind, name, xp_W(xZ_p(x)), yp_W(yZ_p(y)));
    gset_cursor(cursor);
}

void follow_size() {
    if (!gfollow_size()) return;
    if (state.callback != nullptr)
        state.callback(kKeyEvent, "size", static_cast<float>(gstate().win_width),
                       static_cast<float>(gstate().win_height));
}

void on_expose() {
    if (std::exchange(state.exposed, true)) return;
    if (!gshow_partner_frame()) graster_show();
    band_show();
}

void on_configure(const RasterEvent &event) {
    const GraphicsState &s = gstate();
    // An event from elsewhere or of a window that has just opened may tell no size.
    if (event.width <= 0 || event.height <= 0) return;
    state.new_size = event.width != s.win_width || event.height != s.win_height;
    if (state.new_size && state.busy == Busy::no) follow_size();
}

void quit() {
    state.ended = true;
    state.input_mode = kInputQuit;
}

/// The frames of a picture that is being drawn are not moved about under it: the partner waits.
void on_message(const RasterEvent &event) {
    if (event.message == kFinish) return quit();
    if (event.message != kAddFrame) return;
    if (state.busy != Busy::no)
        state.kept.push_back(event);
    else
        gadd_partner_frame();
}

/// A key that comes while the program is busy. Before the window is held only the end is heard.
void keep_key(const RasterEvent &event) {
    if (is_quit_key(event)) return quit();
    if (state.input_mode == kInputIdle) return;
    state.kept.push_back(event);
    if (state.busy == Busy::drawing && state.view_key != nullptr && state.view_key(key_name(event)))
        state.view_wanted = true;
}

/// True for a user event that has been acted on.
bool on_key(const RasterEvent &event) {
    if (state.busy != Busy::no) {
        keep_key(event);
        return false;
    }
    if (state.input_mode == kInputIdle) return false;
    if (is_quit_key(event)) {
        quit();
    } else if (state.input_mode == kInputWaiting) {
        state.input_mode = kInputSeen;
    }
    // A box that is being drawn ends first; the callback, which began it, hears of it.
    const bool ends_box = is_escape(event) && band_cancel();
    if (!ends_box && !act_on_key(event)) return true;
    if (event.key.empty() && !event.is_return) return true; // a modifier alone has no name
    const PixelPoint pointer = gx11_pointer();
    tell(kKeyEvent, ends_box ? event.key : key_name(event), pointer.x, pointer.y);
    return true;
}

void on_press(const RasterEvent &event) {
    if (state.busy == Busy::waiting) state.kept.push_back(event);
    if (!awaits_input()) return;
    state.held = event;
    act_on_button(event);
    if (!is_wheel(event)) band_press(event.x, event.y);
    tell(kButtonEvent, button_name(event, 'P'), static_cast<float>(event.x), static_cast<float>(event.y));
}

bool on_release(const RasterEvent &event) {
    // A box that a refresh has come upon is not lost.
    if (state.busy == Busy::waiting || (state.busy == Busy::drawing && band_is_set())) {
        state.kept.push_back(event);
        return false;
    }
    state.held.reset();
    if (!awaits_input()) {
        band_reset();
        return false;
    }
    if (!is_wheel(event)) band_release();
    tell(kButtonEvent, button_name(event, 'R'), static_cast<float>(event.x), static_cast<float>(event.y));
    return true;
}

/// Unlike a press or a release it is no user event, and the cursor stays: motions come by the hundred.
void on_motion(const RasterEvent &event) {
    band_move(event.x, event.y);
    if (!state.held || !awaits_input() || state.callback == nullptr) return;
    state.callback(kButtonEvent, button_name(*state.held, 'M'), xp_W(xZ_p(static_cast<float>(event.x))),
                   yp_W(yZ_p(static_cast<float>(event.y))));
}

/// True for a user event that has been acted on.
bool process_event(const RasterEvent &event) {
    if (event.kind != RasterEventKind::expose && event.kind != RasterEventKind::configure)
        state.exposed = false;
    switch (event.kind) {
    case RasterEventKind::expose: on_expose(); break;
    case RasterEventKind::map: state.mapped = true; break;
    case RasterEventKind::unmap: state.mapped = false; break;
    case RasterEventKind::configure: on_configure(event); break;
    case RasterEventKind::message: on_message(event); break;
    case RasterEventKind::close: quit(); break;
    case RasterEventKind::key_press: return on_key(event);
    case RasterEventKind::button_press: on_press(event); break;
    case RasterEventKind::button_release: return on_release(event);
    case RasterEventKind::motion: on_motion(event); break;
    case RasterEventKind::other: break;
    }
    return false;
}

/// What was kept comes before what waits on the connection.
bool next_event(RasterEvent &event) {
    if (state.busy == Busy::no && !state.kept.empty()) {
        event = std::move(state.kept.front());
        state.kept.pop_front();
        return true;
    }
    if (gx11_pending() <= 0) return false;
    event = gx11_next_event();
    return true;
}

/// Everything that waits. Number of user events.
int process_pending() {
    int users = 0;
    // An exposure of an earlier look is another run.
    state.exposed = false;
    for (RasterEvent event; can_process() && next_event(event);)
        if (process_event(event)) ++users;
    // A running loop comes back to its round only after the frame's time, which may be long.
    if (users > 0) MESS_flush();
    return users;
}

bool is_anything_kept() {
    return state.ended || state.new_size || !state.kept.empty();
}

/// Lets events come without acting on them.
void process_busily(Busy busy) {
    const Busy outer = std::exchange(state.busy, busy);
    process_pending();
    state.busy = outer;
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
    if (is_anything_kept()) return gcheck_event();
    state.exposed = false;
    const int first = process_event(gx11_next_event()) ? 1 : 0;
    return first + process_pending();
}

int gcheck_event() {
    if (!can_process()) return 0;
    if (state.new_size && state.busy == Busy::no) follow_size();
    return process_pending();
}

int gwait_events(float seconds) {
    if (!can_process())
        (void)VYX_sleep(seconds); // none without a time
    else if (!is_anything_kept())
        (void)gx11_wait(seconds); // what came is looked at below
    return gcheck_event();
}

bool gwait_undisturbed(float seconds) {
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::duration<float>(seconds);
    const auto remaining = [end] { return std::chrono::duration<float>(end - Clock::now()).count(); };
    for (float rest = seconds; rest > 0; rest = remaining()) {
        if (can_process())
            (void)gx11_wait(rest); // what came is looked at below
        else
            (void)VYX_sleep(rest); // none when the time is over
        process_busily(Busy::waiting);
        if (is_anything_kept()) return true;
    }
    return false;
}

void gpump_events() {
    if (!can_process()) return;
    process_busily(Busy::drawing);
    const bool useless = state.ended || state.view_wanted || (state.new_size && state.follows_size);
    if (state.stoppable && useless) throw DrawingStopped{};
}

StoppableDrawing::StoppableDrawing(bool follows_size) {
    state.stoppable = true;
    state.follows_size = follows_size;
    state.view_wanted = false;
}

StoppableDrawing::~StoppableDrawing() {
    state.stoppable = false;
}

void gset_view_key(ViewKey function) {
    state.view_key = function;
}

bool gquit_wanted() {
    return state.ended;
}

bool gview_wanted() {
    return state.view_wanted;
}

bool gfollow_size() {
    state.new_size = false;
    if (gresize_window(-1, -1) == 0) return false;
    ginit_plot(PlotMode::resized);
    return true;
}

void gbegin_events() {
    state.ended = state.new_size = state.view_wanted = false;
    state.kept.clear();
}

void ginit_events() {
    band_reset();
    greset_zoom();
    state.exposed = false;
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
    gsuspend_zoom(); // what is kept of the picture is not magnified
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
