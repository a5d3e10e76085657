#pragma once
/// Rectangles, ratios and the arithmetic from world through normalised device (NDC) to device units. Nothing
/// here knows of a device or of the state.

#include <span>

#include "graphics/core/types.h"

/// A rectangle with its extents at hand.
struct TransformRect {
    float xmin = 0, ymin = 0, xmax = 1, ymax = 1;
    float dx = 1, dy = 1; ///< xmax - xmin, ymax - ymin
};

struct Ratio {
    float x = 1, y = 1;
};

/// How the current transform reaches the device. The ratios follow the rectangles, see refresh_ratios.
struct Mapping {
    TransformRect window;    ///< world window of the current transform
    TransformRect viewport;  ///< its viewport, NDC
    TransformRect ws_window; ///< workstation window, NDC
    TransformRect device;    ///< where the workstation window lies on the device, device units
    Ratio window_to_view;    ///< viewport extent over window extent
    Ratio ws_to_device;      ///< device extent over workstation window extent
};

/// Raster clip rectangle, pixels.
struct ClipRect {
    short x = 0, y = 0;
    unsigned short width = 0, height = 0;
};

/// Limits of device coordinates: a raster device takes 16-bit ones, a print device stays printable.
inline constexpr float kPixelLimit = 30000, kPrintLimit = 100000;
/// What a print device's clip is wider on each side, device units.
inline constexpr float kClipMargin = 0.1F;

TransformRect make_transform_rect(const Rect &r);
Rect to_rect(const TransformRect &r);

/// The quotient, 0 where it is not finite.
float safe_ratio(float numerator, float denominator);
/// `to` extent over `from` extent; 0 where `from` has none.
Ratio extent_ratio(const TransformRect &from, const TransformRect &to);
void refresh_ratios(Mapping &map);

/// Where the workstation window lies on the device: in the corner of the viewport, as large as fits, its
/// aspect kept.
TransformRect fit_device(const TransformRect &ws_window, const TransformRect &ws_viewport, float win_x,
                         float win_y);

/// `value` within -limit to limit; not a number counts as the lower limit.
inline float clamp_coordinate(float value, float limit) {
    const float low = value > -limit ? value : -limit; // in this order: one instruction each, NaN included
    return low < limit ? low : limit;
}

inline Point world_to_ndc(const Mapping &m, Point p) {
    return {(p.x - m.window.xmin) * m.window_to_view.x + m.viewport.xmin,
            (p.y - m.window.ymin) * m.window_to_view.y + m.viewport.ymin};
}
/// Raster coordinates: rows grow downwards.
inline Point ndc_to_pixel(const Mapping &m, Point p) {
    return {clamp_coordinate((p.x - m.ws_window.xmin) * m.ws_to_device.x + m.device.xmin, kPixelLimit),
            clamp_coordinate((m.ws_window.ymax - p.y) * m.ws_to_device.y + m.device.ymin, kPixelLimit)};
}
/// Print coordinates: y grows upwards.
inline Point ndc_to_print(const Mapping &m, Point p) {
    return {clamp_coordinate((p.x - m.ws_window.xmin) * m.ws_to_device.x + m.device.xmin, kPrintLimit),
            clamp_coordinate((p.y - m.ws_window.ymin) * m.ws_to_device.y + m.device.ymin, kPrintLimit)};
}
inline Point world_to_print(const Mapping &m, Point p) {
    return ndc_to_print(m, world_to_ndc(m, p));
}
inline Point world_to_pixel(const Mapping &m, Point p) {
    return ndc_to_pixel(m, world_to_ndc(m, p));
}

/// A raster coordinate within the limits as an integer: half is added, then the fraction cut.
inline int round_clamped(float value) {
    // NOLINTNEXTLINE(bugprone-incorrect-roundings)
    return static_cast<int>(value + 0.5F);
}
inline int round_pixel(float value) {
    return round_clamped(clamp_coordinate(value, kPixelLimit));
}

ClipRect raster_clip(const Mapping &m);
/// The viewport in print units with its margin.
Rect print_clip(const Mapping &m);

/// 1 when the bounding box of the points meets the rectangle (touching counts). Not-a-number coordinates
/// count as outside.
[[nodiscard]] bool box_meets(std::span<const Point> points, const TransformRect &r, float margin_x = 0,
                             float margin_y = 0);
