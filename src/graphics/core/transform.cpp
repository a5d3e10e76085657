#include "graphics/core/transform.h"

#include "graphics/core/mapping.h"
#include "graphics/core/state.h"

namespace {

float fit_start(AspectMode mode, float low, float high, float extent) {
    switch (mode) {
    case AspectMode::centre: return low + (high - low - extent) / 2;
    case AspectMode::maximum: return high - extent;
    case AspectMode::origin: break;
    }
    return 0;
}

bool is_transform(int number) {
    return number >= 0 && number < kTransformCount;
}

} // namespace

Rect gset_aspect(const Rect &region, AspectMode x_mode, AspectMode y_mode, float w, float h) {
    float width = region.width(), height = region.height();
    if (safe_ratio(h, height) > safe_ratio(w, width))
        width = safe_ratio(height * w, h);
    else
        height = safe_ratio(width * h, w);
    const float x = fit_start(x_mode, region.xmin, region.xmax, width);
    const float y = fit_start(y_mode, region.ymin, region.ymax, height);
    return {x, x + width, y, y + height};
}

void reset_transforms(bool keep_view) {
    GraphicsState &s = gstate();
    if (!keep_view) {
        s.map.ws_window = TransformRect{};
        s.windows.fill(TransformRect{});
        s.viewports.fill(TransformRect{});
        s.current_transform = 0;
    }
    s.ws_viewport = make_transform_rect(
        {0, static_cast<float>(s.win_width - 1), 0, static_cast<float>(s.win_height - 1)});
    refresh_mapping();
}

void refresh_mapping() {
    GraphicsState &s = gstate();
    const auto current = static_cast<std::size_t>(s.current_transform);
    s.map.window = s.windows[current];
    s.map.viewport = s.viewports[current];
    s.map.device =
        fit_device(s.map.ws_window, s.ws_viewport, static_cast<float>(s.win_x), static_cast<float>(s.win_y));
    refresh_ratios(s.map);
    s.clip = raster_clip(s.map);
}

float xW_NDC(float x) {
    return world_to_ndc(gstate().map, {x, 0}).x;
}
float yW_NDC(float y) {
    return world_to_ndc(gstate().map, {0, y}).y;
}
float xNDC_p(float x) {
    return ndc_to_pixel(gstate().map, {x, 0}).x;
}
float yNDC_p(float y) {
    return ndc_to_pixel(gstate().map, {0, y}).y;
}
float xNDC_ps(float x) {
    return ndc_to_print(gstate().map, {x, 0}).x;
}
float yNDC_ps(float y) {
    return ndc_to_print(gstate().map, {0, y}).y;
}
float xW_p(float x) {
    return xNDC_p(xW_NDC(x));
}
float yW_p(float y) {
    return yNDC_p(yW_NDC(y));
}
float xW_ps(float x) {
    return xNDC_ps(xW_NDC(x));
}
float yW_ps(float y) {
    return yNDC_ps(yW_NDC(y));
}

float xp_W(float x) {
    const Mapping &m = gstate().map;
    const float ndc = safe_ratio(x - m.device.xmin, m.ws_to_device.x) + m.ws_window.xmin;
    return safe_ratio(ndc - m.viewport.xmin, m.window_to_view.x) + m.window.xmin;
}

float yp_W(float y) {
    const Mapping &m = gstate().map;
    const float ndc = m.ws_window.ymax - safe_ratio(y - m.device.ymin, m.ws_to_device.y);
    return safe_ratio(ndc - m.viewport.ymin, m.window_to_view.y) + m.window.ymin;
}

float xW_trans(int from, int to, float x) {
    if (!is_transform(from) || !is_transform(to)) return kMissingF;
    const GraphicsState &s = gstate();
    const auto a = static_cast<std::size_t>(from), b = static_cast<std::size_t>(to);
    const float ndc =
        (x - s.windows[a].xmin) * safe_ratio(s.viewports[a].dx, s.windows[a].dx) + s.viewports[a].xmin;
    return (ndc - s.viewports[b].xmin) * safe_ratio(s.windows[b].dx, s.viewports[b].dx) + s.windows[b].xmin;
}

float yW_trans(int from, int to, float y) {
    if (!is_transform(from) || !is_transform(to)) return kMissingF;
    const GraphicsState &s = gstate();
    const auto a = static_cast<std::size_t>(from), b = static_cast<std::size_t>(to);
    const float ndc =
        (y - s.windows[a].ymin) * safe_ratio(s.viewports[a].dy, s.windows[a].dy) + s.viewports[a].ymin;
    return (ndc - s.viewports[b].ymin) * safe_ratio(s.windows[b].dy, s.viewports[b].dy) + s.windows[b].ymin;
}

int gpts_in_win(std::span<const Point> points) {
    return box_meets(points, gstate().map.window) ? 1 : 0;
}
