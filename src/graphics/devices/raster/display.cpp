#include "graphics/devices/raster/display.h"

#include <type_traits>
#include <utility>

#include "graphics/devices/memory/display.h"
#include "graphics/devices/x11/display.h"

namespace {

struct State {
    RasterDisplay display = RasterDisplay::none;
} state;

/// The verb of the open display. Without one, an empty result.
template <auto X11, auto Memory, typename... Arguments> auto verb(Arguments &&...arguments) {
    using Result = std::invoke_result_t<decltype(Memory), Arguments...>;
    switch (state.display) {
    case RasterDisplay::x11: return X11(std::forward<Arguments>(arguments)...);
    case RasterDisplay::memory: return Memory(std::forward<Arguments>(arguments)...);
    case RasterDisplay::none: break;
    }
    return Result();
}

} // namespace

bool graster_open(RasterDisplay display, const RasterWish &wish, RasterWindow &window) {
    if (state.display != RasterDisplay::none) return false;
    state.display = display;
    if (verb<gx11_open, gmem_open>(wish, window)) return true;
    state.display = RasterDisplay::none;
    return false;
}

void graster_close() {
    verb<gx11_close, gmem_close>();
    state.display = RasterDisplay::none;
}

RasterDisplay graster_display() {
    return state.display;
}

PixmapId graster_create_pixmap(int width, int height) {
    return verb<gx11_create_pixmap, gmem_create_pixmap>(width, height);
}

void graster_free_pixmap(PixmapId pixmap) {
    verb<gx11_free_pixmap, gmem_free_pixmap>(pixmap);
}

void graster_copy(PixmapId from, PixmapId to, const PixelRect &source, int x, int y) {
    verb<gx11_copy, gmem_copy>(from, to, source, x, y);
}

void graster_clear(PixmapId pixmap) {
    verb<gx11_clear, gmem_clear>(pixmap);
}

void graster_set_drawable(PixmapId pixmap) {
    verb<gx11_set_drawable, gmem_set_drawable>(pixmap);
}

PixmapId graster_drawable() {
    return verb<gx11_drawable, gmem_drawable>();
}

void graster_set_base(PixmapId pixmap) {
    verb<gx11_set_base, gmem_set_base>(pixmap);
}

PixmapId graster_base() {
    return verb<gx11_base, gmem_base>();
}

void graster_show() {
    verb<gx11_show, gmem_show>();
}

void graster_set_clip(const PixelRect &clip) {
    verb<gx11_set_clip, gmem_set_clip>(clip);
}

void graster_set_foreground(RasterContext context, long pixel) {
    verb<gx11_set_foreground, gmem_set_foreground>(context, pixel);
}

void graster_set_line(RasterContext context, int width, int type) {
    verb<gx11_set_line, gmem_set_line>(context, width, type);
}

void graster_set_fill(int pattern) {
    verb<gx11_set_fill, gmem_set_fill>(pattern);
}

void graster_lines(RasterContext context, std::span<const PixelPoint> points) {
    verb<gx11_lines, gmem_lines>(context, points);
}

void graster_point(RasterContext context, PixelPoint point) {
    verb<gx11_point, gmem_point>(context, point);
}

void graster_area(std::span<const PixelPoint> points) {
    verb<gx11_area, gmem_area>(points);
}

void graster_rectangle(RasterContext context, const PixelRect &rect) {
    verb<gx11_rectangle, gmem_rectangle>(context, rect);
}

RasterColor graster_alloc_color(int index, const Rgb &color, long pixel) {
    return verb<gx11_alloc_color, gmem_alloc_color>(index, color, pixel);
}

void graster_set_background(long pixel) {
    verb<gx11_set_background, gmem_set_background>(pixel);
}

bool graster_read(PixmapId pixmap, RasterImage &image) {
    return verb<gx11_read, gmem_read>(pixmap, image);
}

std::span<const std::uint8_t> graster_lend(PixmapId pixmap, RasterImage &image) {
    if (state.display != RasterDisplay::memory) return {};
    return gmem_lend(pixmap, image);
}

void graster_write(PixmapId pixmap, const RasterImage &image, std::span<const std::uint8_t> mask, int x,
                   int y) {
    verb<gx11_write, gmem_write>(pixmap, image, mask, x, y);
}

void graster_sync() {
    verb<gx11_sync, gmem_sync>();
}
