#include <algorithm>
#include <limits>

#include "graphics/devices/common/dashes.h"
#include "graphics/devices/x11/display.h"
#include "graphics/devices/x11/state.h"

namespace {

/// Points that fit the smallest request a server may take.
constexpr std::size_t kMaxLinePoints = 16000;
/// Longer polygons than the server takes in one request are not drawn.
constexpr long kRequestHeaderWords = 4;
/// Outlines and dots kept back: as many as fit one request.
constexpr std::size_t kMostPending = 8000;

/// Up to this many points need no memory of their own.
constexpr std::size_t kFewPoints = 10;

/// Hands the points to `draw` as the server takes them.
template <class Draw> void with_points(std::span<const PixelPoint> points, Draw draw) {
    const auto convert = [](PixelPoint p) { return XPoint{p.x, p.y}; };
    const auto count = static_cast<int>(points.size());
    if (points.size() <= kFewPoints) {
        std::array<XPoint, kFewPoints> few;
        std::ranges::transform(points, few.begin(), convert);
        draw(few.data(), count);
        return;
    }
    std::vector<XPoint> many(points.size());
    std::ranges::transform(points, many.begin(), convert);
    draw(many.data(), count);
}

unsigned positive(int value) {
    return static_cast<unsigned>(std::max(value, 0));
}

bool ready(const X11Session *s) {
    return s != nullptr && s->drawable != kNoPixmap;
}

bool is_tiny(std::span<const PixelPoint> points) {
    const auto [left, right] = std::ranges::minmax_element(points, {}, &PixelPoint::x);
    const auto [top, bottom] = std::ranges::minmax_element(points, {}, &PixelPoint::y);
    return right->x - left->x <= 1 && bottom->y - top->y <= 1;
}

/// The corners of small cells fall on the same pixels again and again.
void add_dot(X11Session &s, PixelPoint p) {
    constexpr std::size_t kLookBack = 4;
    const std::size_t recent = std::min(s.dots.size(), kLookBack);
    const auto same = [p](const XRectangle &dot) { return dot.x == p.x && dot.y == p.y; };
    if (std::none_of(s.dots.end() - static_cast<std::ptrdiff_t>(recent), s.dots.end(), same))
        s.dots.push_back({p.x, p.y, 1, 1});
}

void fill_polygon(const X11Session &s, std::span<const PixelPoint> points) {
    const long limit = std::max(XExtendedMaxRequestSize(s.display()), XMaxRequestSize(s.display()));
    if (points.size() < 3 || static_cast<long>(points.size()) > limit - kRequestHeaderWords) return;
    with_points(points, [&s](XPoint *data, int count) {
        XFillPolygon(s.display(), s.drawable, s.context(RasterContext::fill), data, count, Nonconvex,
                     CoordModeOrigin);
    });
}

} // namespace

X11Session *x11_settled() {
    X11Session *const s = x11_session();
    if (s == nullptr) return nullptr;
    const GC fill = s->context(RasterContext::fill);
    if (!s->outlines.empty())
        XDrawSegments(s->display(), s->drawable, fill, s->outlines.data(),
                      static_cast<int>(s->outlines.size()));
    if (!s->dots.empty())
        XFillRectangles(s->display(), s->drawable, fill, s->dots.data(), static_cast<int>(s->dots.size()));
    s->outlines.clear();
    s->dots.clear();
    return s;
}

PixmapId gx11_create_pixmap(int width, int height) {
    X11Session *const s = x11_session();
    constexpr int kMaxSide = std::numeric_limits<short>::max();
    if (s == nullptr || width <= 0 || height <= 0 || width > kMaxSide || height > kMaxSide) return kNoPixmap;
    x11_begin_trial(s->display());
    const Pixmap id = XCreatePixmap(s->display(), s->like(), positive(width), positive(height),
                                    static_cast<unsigned>(s->depth));
    if (!x11_end_trial(s->display())) return kNoPixmap;
    s->pixmaps.emplace(id, PixmapRecord{XPixmap(s->display(), id), width, height});
    return id;
}

void gx11_free_pixmap(PixmapId pixmap) {
    X11Session *const s = x11_settled();
    if (s == nullptr) return;
    s->pixmaps.erase(pixmap);
    if (s->base == pixmap) s->base = kNoPixmap;
    if (s->drawable == pixmap) s->drawable = s->base;
}

void gx11_copy(PixmapId from, PixmapId to, const PixelRect &source, int x, int y) {
    const X11Session *const s = x11_settled();
    if (s == nullptr || x11_pixmap(*s, from) == nullptr || x11_pixmap(*s, to) == nullptr) return;
    if (source.width <= 0 || source.height <= 0) return;
    XCopyArea(s->display(), from, to, s->root_context.get(), source.x, source.y, positive(source.width),
              positive(source.height), x, y);
}

void gx11_clear(PixmapId pixmap) {
    const X11Session *const s = x11_settled();
    const PixmapRecord *const record = s == nullptr ? nullptr : x11_pixmap(*s, pixmap);
    if (record == nullptr) return;
    XFillRectangle(s->display(), pixmap, s->root_context.get(), 0, 0, positive(record->width),
                   positive(record->height));
}

void gx11_set_drawable(PixmapId pixmap) {
    if (X11Session *const s = x11_settled()) s->drawable = pixmap;
}

PixmapId gx11_drawable() {
    const X11Session *const s = x11_session();
    return s == nullptr ? kNoPixmap : s->drawable;
}

void gx11_set_base(PixmapId pixmap) {
    if (X11Session *const s = x11_session()) s->base = pixmap;
}

PixmapId gx11_base() {
    const X11Session *const s = x11_session();
    return s == nullptr ? kNoPixmap : s->base;
}

void gx11_show() {
    const X11Session *const s = x11_settled();
    const PixmapRecord *const record = s == nullptr ? nullptr : x11_pixmap(*s, s->base);
    if (record == nullptr || s->foreign) return; // another's window is shown where the picture ends
    XCopyArea(s->display(), s->base, s->window.get(), s->root_context.get(), 0, 0, positive(record->width),
              positive(record->height), 0, 0);
    XFlush(s->display());
}

void gx11_set_clip(const PixelRect &clip) {
    const X11Session *const s = x11_settled();
    if (s == nullptr) return;
    XRectangle area{static_cast<short>(clip.x), static_cast<short>(clip.y),
                    static_cast<unsigned short>(positive(clip.width)),
                    static_cast<unsigned short>(positive(clip.height))};
    for (const XDrawing &context : s->contexts)
        XSetClipRectangles(s->display(), context.get(), 0, 0, &area, 1, YXBanded);
}

void gx11_set_foreground(RasterContext context, long pixel) {
    const X11Session *const s = context == RasterContext::fill ? x11_settled() : x11_session();
    if (s == nullptr || pixel < 0) return;
    XSetForeground(s->display(), s->context(context), static_cast<unsigned long>(pixel));
}

void gx11_set_line(RasterContext context, int width, int type) {
    const X11Session *const s = x11_session();
    if (s == nullptr) return;
    const DashLengths dashes = dash_lengths(type);
    XSetLineAttributes(s->display(), s->context(context), positive(width),
                       dashes.empty() ? LineSolid : LineOnOffDash, s->caps[static_cast<std::size_t>(context)],
                       JoinBevel);
    if (dashes.empty()) return;
    const std::string lengths(dashes.begin(), dashes.end()); // the server's own type
    XSetDashes(s->display(), s->context(context), 0, lengths.data(), static_cast<int>(lengths.size()));
}

void gx11_set_fill(int pattern) {
    const X11Session *const s = x11_settled();
    if (s == nullptr) return;
    const GC fill = s->context(RasterContext::fill);
    if (pattern < 0 || static_cast<std::size_t>(pattern) >= kPatterns) {
        XSetFillStyle(s->display(), fill, FillSolid);
        return;
    }
    XSetStipple(s->display(), fill, s->patterns[static_cast<std::size_t>(pattern)].get());
    XSetFillStyle(s->display(), fill, FillStippled);
}

void gx11_lines(RasterContext context, std::span<const PixelPoint> points) {
    const X11Session *const s = x11_settled();
    if (!ready(s) || points.size() < 2) return;
    // Each part begins where the one before it ended.
    for (std::size_t first = 0; first + 1 < points.size(); first += kMaxLinePoints - 1) {
        const auto part = points.subspan(first, std::min(kMaxLinePoints, points.size() - first));
        with_points(part, [&](XPoint *data, int count) {
            XDrawLines(s->display(), s->drawable, s->context(context), data, count, CoordModeOrigin);
        });
    }
}

void gx11_point(RasterContext context, PixelPoint point) {
    const X11Session *const s = x11_settled();
    if (!ready(s)) return;
    XDrawPoint(s->display(), s->drawable, s->context(context), point.x, point.y);
}

void gx11_area(std::span<const PixelPoint> points) {
    X11Session *const s = x11_session();
    if (!ready(s) || points.size() < 2) return;
    if (is_tiny(points)) {
        // Nothing lies between neighbouring pixels: the corners are all there is of so small an area.
        for (const PixelPoint p : points) add_dot(*s, p);
    } else {
        fill_polygon(*s, points);
        PixelPoint from = points.back();
        for (const PixelPoint to : points) {
            if (!(from == to)) s->outlines.push_back({from.x, from.y, to.x, to.y});
            from = to;
        }
    }
    if (s->outlines.size() + s->dots.size() >= kMostPending) x11_settled();
}

void gx11_rectangle(RasterContext context, const PixelRect &rect) {
    const X11Session *const s = x11_settled();
    if (!ready(s) || rect.width <= 0 || rect.height <= 0) return;
    XFillRectangle(s->display(), s->drawable, s->context(context), rect.x, rect.y, positive(rect.width),
                   positive(rect.height));
}

void gx11_outline(int kind, PixelPoint a, PixelPoint b, bool invert) {
    const X11Session *const s = x11_settled();
    if (s == nullptr || !s->window) return;
    const GC line = s->context(RasterContext::line);
    XGCValues before{}, now{};
    XGetGCValues(s->display(), line, GCForeground, &before); // the library knows
    before.function = GXcopy;
    now.function = invert ? GXxor : GXcopy;
    // Background becomes ink and ink background. A full colour map may have no such two: all bits turn then.
    const unsigned long swap = s->ink ^ s->background;
    now.foreground = !invert ? s->ink : swap != 0 ? swap : XAllPlanes();
    XChangeGC(s->display(), line, GCFunction | GCForeground, &now);
    if (kind == 1) {
        XDrawLine(s->display(), s->window.get(), line, a.x, a.y, b.x, b.y);
    } else {
        const auto [left, right] = std::minmax(a.x, b.x);
        const auto [top, bottom] = std::minmax(a.y, b.y);
        XDrawRectangle(s->display(), s->window.get(), line, left, top, positive(right - left),
                       positive(bottom - top));
    }
    XChangeGC(s->display(), line, GCFunction | GCForeground, &before);
    XFlush(s->display());
}

bool gx11_load_font(std::string_view name) {
    X11Session *const s = x11_session();
    if (s == nullptr) return false;
    XFontStruct *const font = XLoadQueryFont(s->display(), std::string(name).c_str());
    if (font == nullptr) return false;
    s->font = XFont(s->display(), font);
    XSetFont(s->display(), s->context(RasterContext::text), font->fid);
    return true;
}

int gx11_text_width(std::string_view text) {
    const X11Session *const s = x11_session();
    if (s == nullptr || !s->font) return 0;
    return XTextWidth(s->font.get(), text.data(), static_cast<int>(text.size()));
}

int gx11_font_ascent() {
    const X11Session *const s = x11_session();
    return s == nullptr || !s->font ? 0 : s->font.get()->ascent;
}

int gx11_font_descent() {
    const X11Session *const s = x11_session();
    return s == nullptr || !s->font ? 0 : s->font.get()->descent;
}

void gx11_draw_string(int x, int y, std::string_view text) {
    const X11Session *const s = x11_settled();
    if (!ready(s) || !s->font) return;
    XDrawString(s->display(), s->drawable, s->context(RasterContext::text), x, y, text.data(),
                static_cast<int>(text.size()));
}
