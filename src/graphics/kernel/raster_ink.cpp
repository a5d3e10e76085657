#include "graphics/kernel/raster_ink.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "graphics/core/color_slots.h"
#include "graphics/core/error.h"
#include "graphics/core/mapping.h"
#include "graphics/core/state.h"
#include "graphics/devices/raster/display.h"
#include "graphics/kernel/device_points.h"
#include "graphics/kernel/kernel.h"
#include "graphics/kernel/marker_shapes.h"
#include "graphics/text/stroke.h"

namespace {

constexpr int kSolidLine = 1;
constexpr int kAnyColor = -1; ///< asks the colour table for an index

/// World points come within the limits of pixels from their conversion.
PixelPoint world_pixel(const Mapping &map, const Point &world) {
    const Point device = world_to_pixel(map, world);
    return {static_cast<std::int16_t>(round_clamped(device.x)),
            static_cast<std::int16_t>(round_clamped(device.y))};
}

PixelPoint to_pixel(const Point &device) {
    return {static_cast<std::int16_t>(round_pixel(device.x)),
            static_cast<std::int16_t>(round_pixel(device.y))};
}

/// Hands the points in pixels to `ink`. -1 when memory is out.
template <typename Ink> int ink_pixels(const char *operation, std::span<const Point> world, Ink ink) {
    const Mapping map = gstate().map; // a copy: nothing that is written below can change it
    return ink_points<PixelPoint>(
        operation, world, [&map](const Point &p) { return world_pixel(map, p); }, ink);
}

/// The colour index that each context draws with.
std::array<std::pair<RasterContext, int>, kRasterContexts> context_colors() {
    const GraphicsState &s = gstate();
    return {{{RasterContext::line, s.line.color},
             {RasterContext::marker, s.marker.color},
             {RasterContext::text, s.text.color},
             {RasterContext::fill, s.fill.color}}};
}

void draw_marker(const MarkerShape &shape, const Point &centre, float half) {
    const float unit = shape.scaled ? half : 1;
    for (const std::span<const Point> path : shape.paths) {
        if (path.empty()) continue;
        std::array<PixelPoint, 13> pixels;
        std::transform(path.begin(), path.end(), pixels.begin(), [&](const Point &p) {
            return to_pixel({centre.x + p.x * unit, centre.y + p.y * unit});
        });
        if (path.size() == 1)
            graster_point(RasterContext::marker, pixels[0]);
        else
            graster_lines(RasterContext::marker, {pixels.data(), path.size()});
    }
}

void draw_markers(std::span<const Point> world, float half, float shift) {
    const GraphicsState &s = gstate();
    const MarkerShape &shape = marker_shape(s.marker.type);
    for (const Point &p : world) {
        const Point centre = world_to_pixel(s.map, p);
        draw_marker(shape, {centre.x + shift, centre.y + shift}, half);
    }
}

/// Draws in black, shifted by one pixel more each time, and leaves the context in its own colour.
template <typename Draw> void drop_shadow(RasterContext context, int color, Draw draw) {
    const int count = gstate().font_drop;
    if (count <= 0) return;
    raster_set_color(context, galloc_colr(kAnyColor, Rgb{}));
    for (int i = 0; i < count; ++i) draw(static_cast<float>(i));
    raster_set_color(context, color);
}

} // namespace

bool gtakes_pixels() {
    return gtype_is_WIN_PIX() && gget_redraw() == 0;
}

void gto_pixels(std::span<const Point> world, std::vector<PixelPoint> &pixels) {
    const Mapping map = gstate().map;
    pixels.resize(world.size());
    std::transform(world.begin(), world.end(), pixels.begin(),
                   [&map](const Point &p) { return world_pixel(map, p); });
}

PixelScale gpixel_scale() {
    const Mapping &map = gstate().map;
    Rect window, view;
    ginq_norm_tran(gstate().current_transform, window, view);
    const Point low = world_to_pixel(map, {window.xmin, window.ymin});
    const Point high = world_to_pixel(map, {window.xmax, window.ymax});
    const float x_per = (high.x - low.x) / window.width(), y_per = (high.y - low.y) / window.height();
    return {low.x - window.xmin * x_per, x_per, low.y - window.ymin * y_per, y_per};
}

void gfill_pixels(std::span<const PixelPoint> pixels) {
    if (!gtakes_pixels()) return;
    gnew_obj(ObjectType::fill_area, static_cast<int>(pixels.size()), 0, nullptr); // for the event pump
    graster_area(pixels);
}

int raster_polyline(const char *operation, std::span<const Point> world) {
    return ink_pixels(operation, world,
                      [](std::span<const PixelPoint> pixels) { graster_lines(RasterContext::line, pixels); });
}

int raster_fill_area(const char *operation, std::span<const Point> world) {
    return ink_pixels(operation, world, graster_area);
}

void raster_markers(std::span<const Point> world, float half) {
    drop_shadow(RasterContext::marker, gstate().marker.color,
                [&](float shift) { draw_markers(world, half, shift); });
    draw_markers(world, half, 0);
}

int raster_stroke(const char *operation, std::span<const Point> world) {
    return ink_pixels(operation, world,
                      [](std::span<const PixelPoint> pixels) { graster_lines(RasterContext::text, pixels); });
}

void raster_text(const Point &position, std::string_view string) {
    const Mapping &m = gstate().map;
    const float unit_x = safe_ratio(1, m.window_to_view.x * m.ws_to_device.x);
    const float unit_y = safe_ratio(1, m.window_to_view.y * m.ws_to_device.y);
    drop_shadow(RasterContext::text, gstate().text.color,
                [&](float shift) { text(string, position.x + shift * unit_x, position.y - shift * unit_y); });
    text(string, position.x, position.y);
}

void raster_clear_region(const Rect &world) {
    const Mapping &m = gstate().map;
    const PixelPoint a = world_pixel(m, {world.xmin, world.ymax});
    const PixelPoint b = world_pixel(m, {world.xmax, world.ymin});
    raster_set_color(RasterContext::fill, kColorBackground);
    graster_set_fill(kSolidFill);
    graster_rectangle(RasterContext::fill, {a.x, a.y, b.x - a.x + 1, b.y - a.y + 1});
    raster_set_color(RasterContext::fill, gstate().fill.color);
    raster_set_fill();
}

void raster_set_color(RasterContext context, int index) {
    graster_set_foreground(context, gget_color_ind(index));
}

void raster_set_line(RasterContext context, float width, int type) {
    graster_set_line(context, std::max(round_pixel(width), 0), type);
}

void raster_set_fill() {
    const FillState &fill = gstate().fill;
    graster_set_fill(fill.interior == kInteriorPattern ? fill.style : kSolidFill);
}

void raster_reset_contexts() {
    for (const auto &[context, color] : context_colors()) {
        graster_set_line(context, 0, kSolidLine);
        raster_set_color(context, color);
    }
    raster_set_fill();
}

void raster_recolor(int index) {
    for (const auto &[context, color] : context_colors())
        if (color == index) raster_set_color(context, color);
}
