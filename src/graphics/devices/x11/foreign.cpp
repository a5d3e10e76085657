/// A window or pixmap of another program: drawn into, never owned. Its owner hears messages and shows what
/// has been drawn.

#include <cstring>
#include <optional>
#include <poll.h>

#include <X11/Xatom.h>

#include "graphics/core/error.h"
#include "graphics/devices/x11/display.h"
#include "graphics/devices/x11/state.h"

namespace {

constexpr const char *kOpen = "gopen_ws";

unsigned positive(int value) {
    return value > 0 ? static_cast<unsigned>(value) : 0;
}

bool refuse(const char *what, unsigned long id) {
    gerr_printf(kOpen, "no such %s: 0x%lx\n", what, id);
    return false;
}

/// What the server tells of a drawable.
struct Geometry {
    Window root = 0;
    unsigned width = 0, height = 0, depth = 0;
};

bool ask_geometry(Display *display, Drawable drawable, Geometry &geometry) {
    int x = 0, y = 0;
    unsigned border = 0;
    x11_begin_trial(display);
    const Status known = XGetGeometry(display, drawable, &geometry.root, &x, &y, &geometry.width,
                                      &geometry.height, &border, &geometry.depth);
    return x11_end_trial(display) && known != 0;
}

bool ask_window(Display *display, Window window, XWindowAttributes &attributes) {
    x11_begin_trial(display);
    const Status known = XGetWindowAttributes(display, window, &attributes);
    return x11_end_trial(display) && known != 0;
}

bool is_colormap(const X11Session &s, Colormap map) {
    XColor color{};
    x11_begin_trial(s.display());
    XQueryColor(s.display(), map, &color);
    return x11_end_trial(s.display());
}

/// The way in which pixels of the picture tell colours. False after a message when there is none.
bool choose_visual(X11Session &s, const Geometry &geometry, const XWindowAttributes *window) {
    for (int i = 0; i < XScreenCount(s.display()); ++i)
        if (XRootWindow(s.display(), i) == geometry.root) s.screen = i;
    s.depth = static_cast<int>(geometry.depth);
    XVisualInfo found{};
    if (window != nullptr && window->depth == s.depth)
        s.visual = window->visual;
    else if (XDefaultDepth(s.display(), s.screen) == s.depth)
        s.visual = XDefaultVisual(s.display(), s.screen);
    else if (XMatchVisualInfo(s.display(), s.screen, s.depth, TrueColor, &found) != 0)
        s.visual = found.visual;
    else {
        gerr_printf(kOpen, "no colours are known for a picture of depth %d\n", s.depth);
        return false;
    }
    return true;
}

/// The picture's own colour map: the one that was named, else that of its window.
bool choose_colors(X11Session &s, const ForeignPicture &picture, const XWindowAttributes *window) {
    if (picture.colormap != 0) {
        if (!is_colormap(s, picture.colormap)) return refuse("colour map", picture.colormap);
        s.own_colors = XColors(nullptr, picture.colormap);
    } else if (window != nullptr && window->colormap != None) {
        s.own_colors = XColors(nullptr, window->colormap);
    }
    return true;
}

bool adopt(X11Session &s, const ForeignPicture &picture) {
    Geometry geometry;
    if (!ask_geometry(s.display(), picture.drawable, geometry))
        return refuse("window or pixmap", picture.drawable);
    const Window window = picture.window != 0 ? picture.window : picture.drawable;
    XWindowAttributes attributes;
    const bool is_window = ask_window(s.display(), window, attributes);
    if (!is_window && picture.window != 0) return refuse("window", window);
    if (is_window) s.window = XWindow(nullptr, window);
    s.base = s.drawable = picture.drawable;
    s.pixmaps.emplace(picture.drawable,
                      PixmapRecord{XPixmap(nullptr, picture.drawable), static_cast<int>(geometry.width),
                                   static_cast<int>(geometry.height)});
    s.width = picture.width;
    s.height = picture.height;
    const XWindowAttributes *const of_window = is_window ? &attributes : nullptr;
    return choose_visual(s, geometry, of_window) && choose_colors(s, picture, of_window);
}

std::string window_name(const X11Session &s) {
    char *name = nullptr;
    if (!s.window || XFetchName(s.display(), s.window.get(), &name) == 0 || name == nullptr) return {};
    std::string result(name);
    XFree(name);
    return result;
}

/// Frames that the owner has added so far, as this program's windows tell.
std::optional<long> added_frames(const X11Session &s) {
    Atom type = None;
    int format = 0;
    unsigned long count = 0, left = 0;
    unsigned char *data = nullptr;
    constexpr int kLongFormat = 32;
    const int status = XGetWindowProperty(s.display(), s.window.get(), s.atom(XAtom::frames), 0, 1, False,
                                          XA_CARDINAL, &type, &format, &count, &left, &data);
    std::optional<long> frames;
    if (status == Success && data != nullptr && format == kLongFormat && count == 1) {
        long value = 0; // 32 bits are longs to the library
        std::memcpy(&value, data, sizeof value);
        frames = value;
    }
    if (data != nullptr) XFree(data);
    return frames;
}

/// The owner shows what its pixmap holds.
void ask_for_exposure(const X11Session &s, const PixelRect &area) {
    XEvent event{};
    event.xexpose.type = Expose;
    event.xexpose.window = s.window.get();
    event.xexpose.x = area.x;
    event.xexpose.y = area.y;
    event.xexpose.width = area.width;
    event.xexpose.height = area.height;
    XSendEvent(s.display(), s.window.get(), False, ExposureMask, &event);
}

} // namespace

bool x11_open_foreign(const RasterWish &wish, RasterWindow &window) {
    X11Session *const session = x11_begin_session(wish);
    if (session == nullptr) return false;
    X11Session &s = *session;
    x11_watch_errors(true);
    s.foreign = true;
    if (!adopt(s, *wish.foreign)) {
        x11_end_session();
        return false;
    }
    const std::string name = window_name(s);
    s.title = x11_title(name.substr(0, name.find(" [")));
    x11_create_root_context(s);
    x11_create_drawing(s);
    window = {s.width, s.height, s.base, s.title};
    return true;
}

void gx11_leave_picture() {
    X11Session *const s = x11_settled();
    if (s == nullptr || !s->foreign) return;
    if (s->window && s->cursor >= 0) XUndefineCursor(s->display(), s->window.get());
    s->cursor = -1;
    // Colours of a map would go with the connection, and the picture be seen in others.
    if (s->visual->c_class != TrueColor) XSetCloseDownMode(s->display(), RetainTemporary);
    XSync(s->display(), False);
}

void gx11_clear_area(const PixelRect &area) {
    const X11Session *const s = x11_settled();
    if (s == nullptr || area.width <= 0 || area.height <= 0) return;
    XFillRectangle(s->display(), s->drawable, s->root_context.get(), area.x, area.y, positive(area.width),
                   positive(area.height));
}

void gx11_show_area(const PixelRect &area) {
    const X11Session *const s = x11_settled();
    if (s == nullptr) return;
    if (s->window && s->window.get() != s->base && area.width > 0 && area.height > 0) {
        XCopyArea(s->display(), s->base, s->window.get(), s->root_context.get(), area.x, area.y,
                  positive(area.width), positive(area.height), area.x, area.y);
        ask_for_exposure(*s, area);
    }
    XSync(s->display(), False);
}

bool gx11_tell_owner(int message) {
    const X11Session *const s = x11_settled();
    if (s == nullptr || !s->window) return false;
    constexpr int kByteFormat = 8;
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = s->window.get();
    event.xclient.message_type = XInternAtom(s->display(), "VYX_MESSAGE", False);
    event.xclient.format = kByteFormat;
    event.xclient.data.b[0] = static_cast<char>(message);
    XSendEvent(s->display(), s->window.get(), False, NoEventMask, &event);
    XFlush(s->display());
    return true;
}

bool gx11_ask_owner(int message, float seconds) {
    constexpr int kPollMilliseconds = 200;
    const X11Session *const s = x11_session();
    if (s == nullptr || !s->window) return false;
    // An owner that is busy has not set its mark yet: ours stands until it takes it away.
    const std::string before = window_name(*s);
    XStoreName(s->display(), s->window.get(), (before.substr(0, before.find(" [")) + " +").c_str());
    const std::optional<long> frames = added_frames(*s);
    if (!gx11_tell_owner(message)) return false;
    for (float waited = 0; waited < seconds; waited += kPollMilliseconds / 1000.0F) {
        poll(nullptr, 0, kPollMilliseconds);
        // A window of this program's tells by number: its title may change for other reasons.
        const std::optional<long> now = added_frames(*s);
        if (now && now != frames) return (*now & kNoFrameAdded) == 0;
        if (!now && !gx11_title_extra().starts_with('+')) return true;
    }
    XStoreName(s->display(), s->window.get(), before.c_str());
    return false;
}
