#include <array>
#include <string>

#include "graphics/devices/x11/state.h"
#include "lib/report/message.h"
#include "lib/report/process.h"

namespace {

constexpr int kMaxErrors = 25;
constexpr int kMaxErrorText = 80;

struct State {
    bool print = true;
    bool seen = false; ///< an error since the watch began
    int count = 0;
} state;

std::string error_text(Display *display, int code) {
    std::array<char, kMaxErrorText + 1> text{};
    XGetErrorText(display, code, text.data(), kMaxErrorText);
    return text.data();
}

std::string request_name(Display *display, int opcode) {
    std::array<char, kMaxErrorText + 1> name{};
    const std::string number = std::to_string(opcode);
    XGetErrorDatabaseText(display, "XRequest", number.c_str(), number.c_str(), name.data(), kMaxErrorText);
    return name.data();
}

/// The window has gone, or the picture of another program, and no event has been read that says so.
bool misses_window(const XErrorEvent &event) {
    const X11Session *const s = x11_session();
    if (s == nullptr) return false;
    const bool window = s->window && event.resourceid == s->window.get();
    const bool picture = s->foreign && event.resourceid == s->base;
    return (window || picture) && (event.error_code == BadWindow || event.error_code == BadDrawable);
}

int on_error(Display *display, XErrorEvent *event) {
    if (misses_window(*event)) x11_window_gone();
    state.seen = true;
    if (!state.print) return 0;
    ++state.count;
    MESS_print(kWarn, "X11 error: %s in %s\n", error_text(display, event->error_code).c_str(),
               request_name(display, event->request_code).c_str());
    if (state.count < kMaxErrors) return 0;
    MESS_print(kError, "X11 error: too many errors\n");
    // Nothing may be asked of the server from here; it frees everything when the connection goes.
    x11_abandon();
    VYX_exit(kExitGraphics);
}

int on_lost_connection(Display * /*display*/) {
    x11_abandon();
    MESS_print(kError, "Fatal X11 Error\n");
    VYX_exit(kExitGraphics);
}

} // namespace

void x11_window_gone() {
    x11_abandon();
    MESS_print(kError, "X11 window was destroyed by another program\n");
    VYX_exit(kExitGraphics);
}

void x11_install_handlers() {
    XSetErrorHandler(on_error);
    XSetIOErrorHandler(on_lost_connection);
}

void x11_watch_errors(bool print) {
    state = State{};
    state.print = print;
}

bool x11_no_error(Display *display) {
    XSync(display, False);
    return !state.seen;
}

void x11_begin_trial(Display *display) {
    XSync(display, False); // errors of earlier requests are none of the trial's
    state.seen = false;
    state.print = false;
}

bool x11_end_trial(Display *display) {
    XSync(display, False);
    state.print = true;
    return !state.seen;
}

int x11_error_count() {
    return state.count;
}
