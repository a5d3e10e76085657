/// The values of grid points, and the points themselves.

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "graphics/text/font.h"
#include "lib/text/strings.h"
#include "plot/background/background_map.h"
#include "plot/colour/attribute.h"
#include "plot/colour/levels.h"
#include "plot/contour/draw.h"

namespace {

constexpr float kTextHeight = 0.015F;                 ///< part of the plot's height
constexpr float kCrossSize = 0.004F, kCrossApart = 2; ///< of the plot's height; of the cross
constexpr float kApart = 1.3F;                        ///< from text to text, of their size
constexpr int kDigits = 3;

/// The widest of the values, as it is written.
float widest_text(const Field &field) {
    float min = INFINITY, max = -INFINITY;
    for (int j = 0; j < field.rows(); ++j)
        for (const float value : field.row(j))
            if (Field::is_given(value)) {
                min = std::min(min, value);
                max = std::max(max, value);
            }
    return std::max(gtext_width(set_num(min, kDigits, 0)), gtext_width(set_num(max, kDigits, 0)));
}

bool is_inside(const Point &point, const Rect &window) {
    return !is_missing(point.x) && point.x >= window.xmin && point.x <= window.xmax &&
           point.y >= window.ymin && point.y <= window.ymax;
}

/// The smallest distance of neighbouring grid points, along rows or columns, inside the window.
float point_distance(const Field &field, PlotPoints &points, const Rect &window, int right, int down) {
    float least = INFINITY;
    for (int j = 0; j + down < field.rows(); ++j)
        for (int i = 0; i + right < field.columns(); ++i) {
            const Point a = points.at({static_cast<float>(i), static_cast<float>(j)});
            if (!is_inside(a, window)) continue;
            const Point b = points.at({static_cast<float>(i + right), static_cast<float>(j + down)});
            if (!PlotPoints::torn(a, b)) least = std::min(least, std::hypot(b.x - a.x, b.y - a.y));
        }
    return least;
}

int stride_for(float size, float distance, int skip) {
    const float stride = std::ceil(kApart * size / distance);
    constexpr float kMost = 1 << 15;
    return std::max(skip, static_cast<int>(std::clamp(stride, 1.0F, kMost)));
}

template <typename Draw>
void for_points(const Field &field, PlotPoints &points, const Rect &window, int right, int down, Draw draw) {
    for (int j = 0; j < field.rows(); j += down)
        for (int i = 0; i < field.columns(); i += right) {
            const Point place = points.at({static_cast<float>(i), static_cast<float>(j)});
            if (is_inside(place, window)) draw(place, field.at(i, j));
        }
}

} // namespace

void CONT_draw_values(const Field &field, PlotPoints &points) {
    Attribute ink;
    ATTRIB_get("color_cont", ATTRIB_text_default(), ink);
    if (ink.color < 0) return;
    GPH_text_attr(&ink, kTextHeight * MAP_get_vert());
    GPH_text_align(kAlignCenter, kAlignHalf);
    const Rect window = GPH_get_win(kDataTransform);
    const auto [skip_x, skip_y] = CONT_get_skip();
    const float width = widest_text(field);
    const int right = stride_for(width, point_distance(field, points, window, 1, 0), skip_x);
    const int down = stride_for(gtext_height(), point_distance(field, points, window, 0, 1), skip_y);
    // None reaches over the border.
    const float edge = kApart * width / 2, rim = kApart * gtext_height() / 2;
    const Rect inner{window.xmin + edge, window.xmax - edge, window.ymin + rim, window.ymax - rim};
    for_points(field, points, inner, right, down, [](const Point &place, float value) {
        Attribute level;
        if (!Field::is_given(value)) return;
        CONT_get_fill_attrib(level, value);
        if (level.color >= 0) gtext(place, set_num(value, kDigits, 0));
    });
}

void CONT_draw_grid_points(const Field &field, PlotPoints &points) {
    Attribute ink;
    ATTRIB_get("color_grid", "red", ink);
    if (ink.color < 0) return;
    GPH_line_attr(nullptr);
    GPH_line_attr(&ink);
    const Rect window = GPH_get_win(kDataTransform);
    const float size = kCrossApart * kCrossSize * MAP_get_vert(), half = kCrossSize * MAP_get_vert() / 2;
    const int right = stride_for(size, point_distance(field, points, window, 1, 0), 1);
    const int down = stride_for(size, point_distance(field, points, window, 0, 1), 1);
    for_points(field, points, window, right, down, [half](const Point &place, float) {
        GPH_line(place.x - half, place.y, place.x + half, place.y);
        GPH_line(place.x, place.y - half, place.x, place.y + half);
    });
}
