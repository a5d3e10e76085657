#include "graphics/core/mapping.h"

#include <algorithm>
#include <cmath>
#include <limits>

float safe_ratio(float numerator, float denominator) {
    const float ratio = numerator / denominator;
    return std::isfinite(ratio) ? ratio : 0.0F;
}

TransformRect make_transform_rect(const Rect &r) {
    return {r.xmin, r.ymin, r.xmax, r.ymax, r.xmax - r.xmin, r.ymax - r.ymin};
}

Rect to_rect(const TransformRect &r) {
    return {r.xmin, r.xmax, r.ymin, r.ymax};
}

Ratio extent_ratio(const TransformRect &from, const TransformRect &to) {
    return {safe_ratio(to.dx, from.dx), safe_ratio(to.dy, from.dy)};
}

void refresh_ratios(Mapping &map) {
    map.window_to_view = extent_ratio(map.window, map.viewport);
    map.ws_to_device = extent_ratio(map.ws_window, map.device);
}

TransformRect fit_device(const TransformRect &ws_window, const TransformRect &ws_viewport, float win_x,
                         float win_y) {
    const Ratio scale = extent_ratio(ws_window, ws_viewport);
    float dx = ws_viewport.dx, dy = ws_viewport.dy;
    if (scale.x > scale.y)
        dx = safe_ratio(ws_viewport.dy * ws_window.dx, ws_window.dy);
    else
        dy = safe_ratio(ws_viewport.dx * ws_window.dy, ws_window.dx);
    const float x = win_x + ws_viewport.xmin, y = win_y + ws_viewport.ymin;
    return {x, y, x + dx, y + dy, dx, dy};
}

ClipRect raster_clip(const Mapping &m) {
    const Point upper_left = ndc_to_pixel(m, {m.viewport.xmin, m.viewport.ymax});
    const Point lower_right = ndc_to_pixel(m, {m.viewport.xmax, m.viewport.ymin});
    const int x = round_pixel(upper_left.x), y = round_pixel(upper_left.y);
    // An inverted viewport has nothing inside.
    const auto extent = [](float end, int start) {
        return static_cast<unsigned short>(std::max(0.0F, end - static_cast<float>(start) + 1.5F));
    };
    return {static_cast<short>(x), static_cast<short>(y), extent(lower_right.x, x), extent(lower_right.y, y)};
}

Rect print_clip(const Mapping &m) {
    const Point low = ndc_to_print(m, {m.viewport.xmin, m.viewport.ymin});
    const Point high = ndc_to_print(m, {m.viewport.xmax, m.viewport.ymax});
    return {low.x - kClipMargin, high.x + kClipMargin, low.y - kClipMargin, high.y + kClipMargin};
}

bool box_meets(std::span<const Point> points, const TransformRect &r, float margin_x, float margin_y) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    Point low{infinity, infinity}, high{-infinity, -infinity};
    for (const Point &p : points) {
        low = {std::min(low.x, p.x), std::min(low.y, p.y)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    }
    return high.x >= std::min(r.xmin, r.xmax) - margin_x && low.x <= std::max(r.xmin, r.xmax) + margin_x &&
           high.y >= std::min(r.ymin, r.ymax) - margin_y && low.y <= std::max(r.ymin, r.ymax) + margin_y;
}
