#include <algorithm>
#include <array>
#include <cmath>

#include <X11/keysym.h>
#include <poll.h>

#include "graphics/devices/x11/display.h"
#include "graphics/devices/x11/state.h"

namespace {

constexpr int kMaxKeyText = 80;

void read_modifiers(unsigned state, RasterEvent &out) {
    out.alt = (state & Mod1Mask) != 0;
    out.shift = (state & ShiftMask) != 0;
    out.control = (state & ControlMask) != 0;
}

NamedKey named_key(KeySym symbol) {
    switch (symbol) {
    case XK_Escape: return NamedKey::escape;
    case XK_Left:
    case XK_KP_Left: return NamedKey::left;
    case XK_Right:
    case XK_KP_Right: return NamedKey::right;
    case XK_Up:
    case XK_KP_Up: return NamedKey::up;
    case XK_Down:
    case XK_KP_Down: return NamedKey::down;
    default: return NamedKey::none;
    }
}

RasterEvent key_event(XKeyEvent &event) {
    RasterEvent out;
    out.kind = RasterEventKind::key_press;
    out.x = event.x;
    out.y = event.y;
    read_modifiers(event.state, out);
    event.state &= ~static_cast<unsigned>(LockMask); // Caps Lock must not turn a command into another key
    std::array<char, kMaxKeyText> text{};
    KeySym symbol = NoSymbol;
    const int length = XLookupString(&event, text.data(), kMaxKeyText, &symbol, nullptr);
    out.key.assign(text.data(), static_cast<std::size_t>(length));
    out.is_return = symbol == XK_Return || symbol == XK_KP_Enter;
    out.named = named_key(symbol);
    return out;
}

RasterEvent button_event(const XButtonEvent &event, RasterEventKind kind) {
    RasterEvent out;
    out.kind = kind;
    out.x = event.x;
    out.y = event.y;
    out.button = static_cast<int>(event.button);
    read_modifiers(event.state, out);
    return out;
}

/// Drops the motions that wait behind this one: only the last place counts.
RasterEvent motion_event(Display *display, XEvent &event) {
    while (XCheckTypedEvent(display, MotionNotify, &event) != False) {
    }
    RasterEvent out;
    out.kind = RasterEventKind::motion;
    out.x = event.xmotion.x;
    out.y = event.xmotion.y;
    return out;
}

RasterEvent message_event(const X11Session &s, const XClientMessageEvent &event) {
    RasterEvent out;
    if (event.message_type == s.atom(XAtom::protocols)) {
        if (static_cast<Atom>(event.data.l[0]) == s.atom(XAtom::delete_window))
            out.kind = RasterEventKind::close;
        return out;
    }
    constexpr int kByteFormat = 8;
    if (event.format != kByteFormat) return out;
    out.kind = RasterEventKind::message;
    out.message = static_cast<unsigned char>(event.data.b[0]);
    return out;
}

RasterEvent configure_event(const X11Session &s, const XConfigureEvent &event) {
    RasterEvent out;
    if (event.window != s.window.get()) return out;
    out.kind = RasterEventKind::configure;
    out.width = event.width;
    out.height = event.height;
    return out;
}

RasterEvent plain(RasterEventKind kind) {
    RasterEvent out;
    out.kind = kind;
    return out;
}

} // namespace

int gx11_pending() {
    const X11Session *const s = x11_session();
    return s == nullptr ? 0 : XPending(s->display());
}

bool gx11_wait(float seconds) {
    const X11Session *const s = x11_settled();
    if (s == nullptr) return false;
    if (XPending(s->display()) > 0) return true;
    constexpr float kLongest = 3600; // seconds; whoever waits for longer asks again
    const float wait = std::ceil(std::clamp(seconds, 0.0F, kLongest) * 1000);
    pollfd connection{XConnectionNumber(s->display()), POLLIN, 0};
    poll(&connection, 1, static_cast<int>(wait));
    return XPending(s->display()) > 0;
}

RasterEvent gx11_next_event() {
    const X11Session *const s = x11_settled();
    if (s == nullptr) return {};
    XEvent event;
    XNextEvent(s->display(), &event);
    switch (event.type) {
    case Expose: return plain(RasterEventKind::expose);
    case MapNotify: return plain(RasterEventKind::map);
    case UnmapNotify: return plain(RasterEventKind::unmap);
    case ConfigureNotify: return configure_event(*s, event.xconfigure);
    case DestroyNotify:
        if (event.xdestroywindow.window == s->window.get()) x11_window_gone();
        return {};
    case EnterNotify:
        gx11_set_cursor(s->cursor); // a cooperating program may have shown its own
        return {};
    case ClientMessage: return message_event(*s, event.xclient);
    case KeyPress: return key_event(event.xkey);
    case ButtonPress: return button_event(event.xbutton, RasterEventKind::button_press);
    case ButtonRelease: return button_event(event.xbutton, RasterEventKind::button_release);
    case MotionNotify: return motion_event(s->display(), event);
    case MappingNotify: XRefreshKeyboardMapping(&event.xmapping); return {};
    default: return {};
    }
}

PixelPoint gx11_pointer() {
    const X11Session *const s = x11_session();
    if (s == nullptr || !s->window) return {};
    Window root = 0, child = 0;
    int root_x = 0, root_y = 0, x = 0, y = 0;
    unsigned buttons = 0;
    XQueryPointer(s->display(), s->window.get(), &root, &child, &root_x, &root_y, &x, &y, &buttons);
    return {static_cast<std::int16_t>(x), static_cast<std::int16_t>(y)};
}
