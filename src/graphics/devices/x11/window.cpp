#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <poll.h>
#include <vector>

#include "graphics/core/error.h"
#include "graphics/devices/common/fill_patterns.h"
#include "graphics/devices/x11/display.h"
#include "graphics/devices/x11/icon.h"
#include "graphics/devices/x11/state.h"
#include "graphics/text/window_font.h"

namespace {

constexpr const char *kOpen = "gopen_ws";
constexpr unsigned kBorderWidth = 5;
constexpr long kEventMask = KeyPressMask | KeyReleaseMask | ButtonPressMask | ButtonReleaseMask |
                            EnterWindowMask | LeaveWindowMask | ButtonMotionMask | ExposureMask |
                            StructureNotifyMask | FocusChangeMask;
constexpr std::string_view kClass = "Vyx";
/// How long a window manager may take to put up the window.
constexpr std::chrono::seconds kMapWait{5};

/// Where and how large the window is wanted, and whether the user said so.
struct Placement {
    int x, y, width, height;
    long hints = PPosition | PSize;
    int gravity = NorthWestGravity; ///< the corner of the window manager's frame that the place is for
};

/// Somebody else hears what windows ask for. Its frame takes the place of the window's border.
bool has_window_manager(const X11Session &s) {
    XWindowAttributes root;
    return XGetWindowAttributes(s.display(), XRootWindow(s.display(), s.screen), &root) != 0 &&
           (root.all_event_masks & SubstructureRedirectMask) != 0;
}

/// A place counted from the right or bottom edge: that corner of the frame stays there, whatever is put
/// around the window.
void place_from_edges(const X11Session &s, int given, Placement &p) {
    const bool from_right = (given & XNegative) != 0, from_bottom = (given & YNegative) != 0;
    if (!from_right && !from_bottom) return;
    // A window manager counts from the outside of the border that the window came with.
    const int border = has_window_manager(s) ? 2 * static_cast<int>(kBorderWidth) : 0;
    if (from_right) p.x += XDisplayWidth(s.display(), s.screen) - p.width - border;
    if (from_bottom) p.y += XDisplayHeight(s.display(), s.screen) - p.height - border;
    p.gravity = !from_bottom ? NorthEastGravity : from_right ? SouthEastGravity : SouthWestGravity;
}

Placement place(const X11Session &s, const RasterWish &wish) {
    Placement p{wish.x, wish.y, wish.width, wish.height};
    std::string geometry = wish.geometry;
    if (geometry.empty()) geometry = gx11_default("geometry").value_or("");
    int x = 0, y = 0;
    unsigned width = 0, height = 0;
    const int given = XParseGeometry(geometry.c_str(), &x, &y, &width, &height);
    constexpr unsigned kMaxSide = 32767;
    if ((given & WidthValue) != 0 && (given & HeightValue) != 0 && width > 0 && height > 0) {
        p.width = static_cast<int>(std::min(width, kMaxSide));
        p.height = static_cast<int>(std::min(height, kMaxSide));
        p.hints = (p.hints & ~PSize) | USSize;
    }
    if ((given & XValue) != 0 && (given & YValue) != 0) {
        p.x = x;
        p.y = y;
        place_from_edges(s, given, p);
        p.hints = (p.hints & ~PPosition) | USPosition;
    }
    return p;
}

bool create_window(X11Session &s, const Placement &p) {
    XSetWindowAttributes attributes{};
    attributes.background_pixel = s.background;
    attributes.border_pixel = s.foreground;
    attributes.backing_store = Always;
    attributes.event_mask = kEventMask;
    attributes.colormap = XDefaultColormap(s.display(), s.screen);
    constexpr unsigned long kGiven = CWBackPixel | CWBorderPixel | CWBackingStore | CWEventMask | CWColormap;
    x11_watch_errors(false);
    const Window id = XCreateWindow(s.display(), XRootWindow(s.display(), s.screen), p.x, p.y,
                                    static_cast<unsigned>(p.width), static_cast<unsigned>(p.height),
                                    kBorderWidth, CopyFromParent, InputOutput, nullptr, kGiven, &attributes);
    const bool created = id != 0 && x11_no_error(s.display());
    x11_watch_errors(true);
    if (!created) {
        gerr_printf(kOpen, "unable to open window\n");
        return false;
    }
    s.window = XWindow(s.display(), id);
    s.width = p.width;
    s.height = p.height;
    return true;
}

/// What the window manager is told.
void describe(X11Session &s, const RasterWish &wish, const Placement &p) {
    Display *const display = s.display();
    const Window window = s.window.get();
    XSizeHints size{};
    size.flags = p.hints | PWinGravity;
    size.win_gravity = p.gravity;
    size.x = p.x;
    size.y = p.y;
    size.width = p.width;
    size.height = p.height;
    XSetWMNormalHints(display, window, &size);

    const bool iconic = wish.iconic || gx11_default("iconic") == "on";
    const Pixmap icon = XCreateBitmapFromData(display, window, kIconBits.data(), kIconSize, kIconSize);
    // The icon belongs to the session like every other picture.
    s.pixmaps.emplace(icon, PixmapRecord{XPixmap(display, icon), kIconSize, kIconSize});
    XWMHints hints{};
    hints.flags = InputHint | StateHint | IconPixmapHint;
    hints.input = True;
    hints.initial_state = iconic ? IconicState : NormalState;
    hints.icon_pixmap = icon;
    XSetWMHints(display, window, &hints);

    std::string instance = s.program, class_name(kClass);
    XClassHint names{instance.data(), class_name.data()};
    XSetClassHint(display, window, &names);

    Atom close = s.atom(XAtom::delete_window);
    XSetWMProtocols(display, window, &close, 1);
    x11_set_owner(s);
    gx11_tell_frames(0, true);
}

/// Waits for the first sign of the window on the screen and leaves it in the queue.
void await_window(const X11Session &s) {
    XSync(s.display(), False);
    const auto end = std::chrono::steady_clock::now() + kMapWait;
    XEvent event;
    while (XCheckWindowEvent(s.display(), s.window.get(), ExposureMask | StructureNotifyMask, &event) ==
           False) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        if (left.count() <= 0) return;
        pollfd wait{XConnectionNumber(s.display()), POLLIN, 0};
        poll(&wait, 1, static_cast<int>(left.count()));
    }
    XPutBackEvent(s.display(), &event);
}

void set_up_colors(X11Session &s, const RasterWish &wish) {
    const bool asked = wish.private_colormap || std::getenv("LOCAL_CMAP") != nullptr ||
                       std::getenv("vyxlocal_cmap") != nullptr;
    if (!asked) return;
    s.own_colors = XColors(s.display(), XCreateColormap(s.display(), s.window.get(), s.visual, AllocNone));
    XSetWindowColormap(s.display(), s.window.get(), s.own_colors.get());
}

/// The window manager may have given another size than the one asked for.
void adopt_size(X11Session &s) {
    (void)gx11_window_size(s.width, s.height); // unknown, the size asked for stays
    const PixmapRecord *const base = x11_pixmap(s, s.base);
    if (base != nullptr && base->width == s.width && base->height == s.height) return;
    gx11_free_pixmap(s.base);
    s.base = s.drawable = gx11_create_pixmap(s.width, s.height);
}

} // namespace

namespace {

/// The server has no memory for the picture.
bool give_up(int width, int height) {
    gerr_printf(kOpen, "no memory for a picture of %d x %d pixels\n", width, height);
    gerr_printf(kOpen, "unable to open window\n");
    x11_end_session();
    return false;
}

} // namespace

bool gx11_open(const RasterWish &wish, RasterWindow &window) {
    if (wish.foreign) return x11_open_foreign(wish, window);
    X11Session *const session = x11_begin_session(wish);
    if (session == nullptr) return false;
    X11Session &s = *session;
    const Placement placement = place(s, wish);
    if (!create_window(s, placement)) {
        x11_end_session();
        return false;
    }
    gx11_set_title(wish.title.empty() ? s.title : wish.title);
    describe(s, wish, placement);
    x11_create_root_context(s);
    s.base = s.drawable = gx11_create_pixmap(s.width, s.height);
    if (s.base == kNoPixmap) return give_up(s.width, s.height);
    XMapWindow(s.display(), s.window.get());
    await_window(s);
    set_up_colors(s, wish);
    adopt_size(s);
    if (s.base == kNoPixmap) return give_up(s.width, s.height);
    XClearWindow(s.display(), s.window.get());
    gx11_clear(s.base);
    x11_create_drawing(s);
    window = {s.width, s.height, s.base, {}};
    return true;
}

void gx11_close() {
    X11Session *const s = x11_settled();
    if (s == nullptr) return;
    if (!s->foreign) XUnmapWindow(s->display(), s->window.get());
    XSync(s->display(), False);
    x11_end_session();
}

std::optional<std::string> gx11_default(std::string_view option) {
    X11Session *const s = x11_session();
    if (s == nullptr) return std::nullopt;
    const char *const value = XGetDefault(s->display(), s->program.c_str(), std::string(option).c_str());
    if (value == nullptr) return std::nullopt;
    return std::string(value);
}

void gx11_set_cursor(int type) {
    X11Session *const s = x11_session();
    if (s == nullptr || !s->window || type < 0 || static_cast<std::size_t>(type) >= kCursors) return;
    s->cursor = type;
    XDefineCursor(s->display(), s->window.get(), s->cursors[static_cast<std::size_t>(type)].get());
}

void gx11_bell(int percent) {
    const X11Session *const s = x11_session();
    constexpr int kLoudest = 100;
    if (s != nullptr) XBell(s->display(), std::clamp(percent, -kLoudest, kLoudest));
}

void gx11_resize(int width, int height) {
    const X11Session *const s = x11_session();
    if (s == nullptr || width <= 0 || height <= 0) return;
    XClearWindow(s->display(), s->window.get());
    XResizeWindow(s->display(), s->window.get(), static_cast<unsigned>(width), static_cast<unsigned>(height));
}

bool gx11_window_size(int &width, int &height) {
    X11Session *const s = x11_session();
    XWindowAttributes attributes;
    if (s == nullptr || !s->window || XGetWindowAttributes(s->display(), s->window.get(), &attributes) == 0)
        return false;
    s->width = width = attributes.width;
    s->height = height = attributes.height;
    return true;
}

unsigned long gx11_window_id() {
    const X11Session *const s = x11_session();
    return s == nullptr ? 0 : s->window.get();
}

unsigned long gx11_colormap_id() {
    const X11Session *const s = x11_session();
    return s == nullptr ? 0 : s->colors();
}

RasterCounts gx11_counts() {
    const X11Session *const s = x11_session();
    return s == nullptr ? RasterCounts{} : RasterCounts{s->pixmaps.size(), x11_error_count()};
}

void gx11_provoke_error() {
    const X11Session *const s = x11_session();
    if (s == nullptr) return;
    XFreePixmap(s->display(), XRootWindow(s->display(), s->screen));
    XSync(s->display(), False);
}
