#pragma once
/// The X11 device's one state and the owners of its server resources; inside the device.

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include "graphics/devices/common/raster_types.h"

/// Owns one resource of the server.
template <class Id, auto Free> class XResource {
public:
    XResource() = default;
    XResource(Display *display, Id id) : display_(display), id_(id) {}
    XResource(XResource &&other) noexcept
        : display_(std::exchange(other.display_, nullptr)), id_(std::exchange(other.id_, Id{})) {}
    XResource &operator=(XResource &&other) noexcept {
        if (this != &other) {
            release();
            display_ = std::exchange(other.display_, nullptr);
            id_ = std::exchange(other.id_, Id{});
        }
        return *this;
    }
    XResource(const XResource &) = delete;
    XResource &operator=(const XResource &) = delete;
    ~XResource() { release(); }
    [[nodiscard]] Id get() const { return id_; }
    explicit operator bool() const { return id_ != Id{}; }

private:
    void release() {
        if (display_ != nullptr && id_ != Id{}) Free(display_, id_);
    }
    Display *display_ = nullptr;
    Id id_{};
};

using XPixmap = XResource<Pixmap, XFreePixmap>;
using XDrawing = XResource<GC, XFreeGC>;
using XCursor = XResource<Cursor, XFreeCursor>;
using XColors = XResource<Colormap, XFreeColormap>;
using XWindow = XResource<Window, XDestroyWindow>;
using XFont = XResource<XFontStruct *, XFreeFont>;

struct XDisplayClose {
    void operator()(Display *display) const { XCloseDisplay(display); }
};
struct XImageFree {
    void operator()(XImage *image) const { XDestroyImage(image); }
};
using XImageHandle = std::unique_ptr<XImage, XImageFree>;

/// In the property of added frames: the last one asked for could not be.
inline constexpr long kNoFrameAdded = 0x40000000;

/// Deepest pixels that go through a colour map.
inline constexpr int kMaxMappedDepth = 12;
inline constexpr std::size_t kPatterns = 20;
inline constexpr std::size_t kCursors = 9;
inline constexpr std::size_t kMaxTitle = 59, kMaxProgram = 19;

/// Names that the server keeps numbers for.
enum class XAtom : std::size_t {
    protocols,
    delete_window,
    net_name,
    net_icon_name,
    net_pid,
    utf8_string,
    frames, ///< how many were added for cooperating programs
    count
};

struct PixmapRecord {
    XPixmap pixmap;
    int width = 0, height = 0;
};

/// Everything that lives with one connection. Members are freed from the last to the first.
struct X11Session {
    std::unique_ptr<Display, XDisplayClose> connection;
    int screen = 0;
    int depth = 0;
    Visual *visual = nullptr;
    XColors own_colors;        ///< private colormap, when asked for
    XWindow window;            ///< not owned, or none, where the picture is another program's
    bool foreign = false;      ///< it is
    int width = 0, height = 0; ///< of the window
    int cursor = -1;           ///< type shown, -1 before any
    unsigned long foreground = 0, background = 0;
    unsigned long ink = 0;                 ///< black or white, which of them is seen on the background
    std::set<unsigned long> own_cells;     ///< read-write cells of this program
    std::set<unsigned long> foreign_cells; ///< cells that were found to be another program's alone
    bool told_full = false;
    std::string title = "X11_Graph", program = "X11_Graph";
    std::array<Atom, static_cast<std::size_t>(XAtom::count)> atoms{};

    XDrawing root_context; ///< copies and clears; foreground is the background colour
    std::array<XDrawing, kRasterContexts> contexts;
    std::array<int, kRasterContexts> caps{CapButt, CapButt, CapProjecting, CapButt};
    std::array<XPixmap, kPatterns> patterns;
    std::array<XCursor, kCursors> cursors;
    XFont font;

    /// Outlines and single pixels of areas in the present fill ink that the server has not been told yet:
    /// among themselves their order does not matter.
    std::vector<XSegment> outlines;
    std::vector<XRectangle> dots; ///< points would not take the fill pattern

    std::map<Pixmap, PixmapRecord> pixmaps;
    Pixmap base = kNoPixmap, drawable = kNoPixmap;

    [[nodiscard]] Display *display() const { return connection.get(); }
    [[nodiscard]] Colormap colors() const {
        return own_colors ? own_colors.get() : XDefaultColormap(display(), screen);
    }
    /// What pixmaps and contexts of this session are made like.
    [[nodiscard]] Drawable like() const { return window ? window.get() : base; }
    [[nodiscard]] Atom atom(XAtom which) const { return atoms[static_cast<std::size_t>(which)]; }
    [[nodiscard]] GC context(RasterContext which) const {
        return contexts[static_cast<std::size_t>(which)].get();
    }
};

/// Connects. Null after a message, or while another session is open.
X11Session *x11_begin_session(const RasterWish &wish);
void x11_end_session();
/// The context of copies and clears; then the others, patterns, cursors and fonts.
void x11_create_root_context(X11Session &session);
void x11_create_drawing(X11Session &session);
/// Takes a picture of another program to draw into.
[[nodiscard]] bool x11_open_foreign(const RasterWish &wish, RasterWindow &window);

/// Null while no connection is open.
X11Session *x11_session();
/// The same after the server has been told every area: for what must come behind them.
X11Session *x11_settled();
/// Forgets a connection without a word to the server, because there can be none any more.
void x11_abandon();
/// Null for a picture that is not of this session.
const PixmapRecord *x11_pixmap(const X11Session &session, PixmapId id);

/// The title as it is kept: UTF-8, at most kMaxTitle characters.
std::string x11_title(std::string_view text);
/// Tells which process of which machine the window belongs to.
void x11_set_owner(const X11Session &session);

/// Every cell of the colour map.
std::vector<XColor> x11_map_cells(const X11Session &session);

// Errors
/// Protocol errors are counted from here on, and printed or not.
void x11_watch_errors(bool print);
/// Waits for the server's answer to everything sent. True when none was an error since x11_watch_errors.
[[nodiscard]] bool x11_no_error(Display *display);
/// Between these errors are neither printed nor counted; true when there was none.
void x11_begin_trial(Display *display);
[[nodiscard]] bool x11_end_trial(Display *display);
int x11_error_count();
/// Ends the program, because somebody else has destroyed its window.
[[noreturn]] void x11_window_gone();
/// Installs the handlers of protocol errors and of a lost connection.
void x11_install_handlers();
