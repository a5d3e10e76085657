/// A connection with what drawing needs: contexts, patterns, cursors, fonts; for a window of the program's
/// own and for pictures of others.

#include <algorithm>
#include <array>
#include <memory>
#include <string>

#include "graphics/core/error.h"
#include "graphics/devices/common/fill_patterns.h"
#include "graphics/devices/x11/display.h"
#include "graphics/devices/x11/state.h"
#include "graphics/text/window_font.h"

namespace {

/// Shapes of the X cursor font by cursor type.
constexpr std::array<unsigned, kCursors> kCursorShapes{0, 68, 52, 38, 50, 86, 130, 152, 150};
constexpr int kPatternSide = 8;

struct State {
    std::unique_ptr<X11Session> session;
    X11Session *abandoned = nullptr; ///< never freed: the program is ending, and the server cannot be asked
} state;

bool connect(X11Session &s, const RasterWish &wish) {
    x11_install_handlers();
    s.connection.reset(XOpenDisplay(wish.display.empty() ? nullptr : wish.display.c_str()));
    if (!s.connection) {
        gerr_printf("gopen_ws", "unable to connect to display\n");
        return false;
    }
    s.screen = XDefaultScreen(s.display());
    s.depth = XDefaultDepth(s.display(), s.screen);
    s.visual = XDefaultVisual(s.display(), s.screen);
    const unsigned long black = XBlackPixel(s.display(), s.screen),
                        white = XWhitePixel(s.display(), s.screen);
    s.background = wish.inverse ? white : black;
    s.foreground = s.ink = wish.inverse ? black : white;
    return true;
}

void intern_names(X11Session &s) {
    // In the order of XAtom. The library takes names that it could change, and does not.
    std::array<const char *, static_cast<std::size_t>(XAtom::count)> names{
        "WM_PROTOCOLS", "WM_DELETE_WINDOW", "_NET_WM_NAME", "_NET_WM_ICON_NAME",
        "_NET_WM_PID",  "UTF8_STRING",      "VYX_FRAMES"};
    XInternAtoms(s.display(), const_cast<char **>(names.data()), static_cast<int>(names.size()), False,
                 s.atoms.data());
}

void create_patterns(X11Session &s) {
    for (std::size_t i = 0; i < kPatterns; ++i) {
        std::array<char, kPatternSide> rows{};
        std::ranges::transform(kFillPatterns[i], rows.begin(),
                               [](std::uint8_t row) { return static_cast<char>(row); });
        const Pixmap id =
            XCreateBitmapFromData(s.display(), s.like(), rows.data(), kPatternSide, kPatternSide);
        s.patterns[i] = XPixmap(s.display(), id);
    }
}

void create_contexts(X11Session &s) {
    Display *const display = s.display();
    XGCValues values{};
    values.function = GXcopy;
    values.foreground = s.foreground;
    values.background = s.background;
    values.join_style = JoinBevel;
    // Copies between pixmaps of ours never miss a part; the events that would say so are not wanted.
    values.graphics_exposures = False;
    for (std::size_t i = 0; i < s.contexts.size(); ++i) {
        values.cap_style = s.caps[i];
        s.contexts[i] = XDrawing(display, XCreateGC(display, s.like(),
                                                    GCFunction | GCForeground | GCBackground | GCCapStyle |
                                                        GCJoinStyle | GCGraphicsExposures,
                                                    &values));
    }
}

void create_cursors(X11Session &s) {
    for (std::size_t i = 0; i < kCursors; ++i)
        s.cursors[i] = XCursor(s.display(), XCreateFontCursor(s.display(), kCursorShapes[i]));
}

std::string font_list() {
    return gx11_default("font_list").value_or("");
}

} // namespace

X11Session *x11_session() {
    return state.session.get();
}

void x11_abandon() {
    state.abandoned = state.session.release(); // its destructors would talk to the server
}

const PixmapRecord *x11_pixmap(const X11Session &session, PixmapId id) {
    const auto found = session.pixmaps.find(id);
    return found == session.pixmaps.end() ? nullptr : &found->second;
}

X11Session *x11_begin_session(const RasterWish &wish) {
    if (state.session) return nullptr;
    state.session = std::make_unique<X11Session>();
    X11Session &s = *state.session;
    if (!wish.program.empty()) s.program = wish.program.substr(0, kMaxProgram);
    if (!connect(s, wish)) {
        x11_end_session();
        return nullptr;
    }
    intern_names(s);
    return &s;
}

void x11_end_session() {
    gset_window_fonts({});
    state.session.reset();
}

void x11_create_drawing(X11Session &s) {
    create_cursors(s);
    create_patterns(s);
    create_contexts(s);
    gset_window_fonts(
        {font_list, gx11_load_font, gx11_text_width, gx11_font_ascent, gx11_font_descent, gx11_draw_string});
}

void x11_create_root_context(X11Session &s) {
    XGCValues values{};
    values.foreground = s.background;
    values.graphics_exposures = False;
    s.root_context =
        XDrawing(s.display(), XCreateGC(s.display(), s.like(), GCForeground | GCGraphicsExposures, &values));
}
