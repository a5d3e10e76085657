#include <array>
#include <cmath>
#include <cstdarg>
#include <numbers>
#include <string>

#include "graphics/core/state.h"
#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "lib/text/missing.h"
#include "lib/text/strings.h"

namespace {

constexpr int kPrecision = 2; ///< stroke precision
constexpr float kRecordSpacing = 0.25F;

using ClosedBox = std::array<Point, 5>;

ClosedBox closed_box(float x1, float y1, float x2, float y2) {
    return {Point{x1, y1}, Point{x2, y1}, Point{x2, y2}, Point{x1, y2}, Point{x1, y1}};
}

/// One point every ten degrees; the last is the first.
using Circle = std::array<Point, 37>;

Circle circle(float x, float y, float radius) {
    constexpr double kStep = 10 * std::numbers::pi / 180;
    Circle points;
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        const double angle = kStep * static_cast<double>(i);
        points[i] = {x + radius * static_cast<float>(std::cos(angle)),
                     y + radius * static_cast<float>(std::sin(angle))};
    }
    points.back() = points.front();
    return points;
}

/// A record's size times the scale, or the scale itself.
float scaled_size(float size, float scale) {
    return is_missing(size) ? scale : size * scale;
}

} // namespace

int GPH_line(float x1, float y1, float x2, float y2) {
    return gpolyline(std::array{Point{x1, y1}, Point{x2, y2}});
}

int GPH_mark(float x, float y) {
    return gpolymarker(std::array{Point{x, y}});
}

int GPH_rect(float x1, float y1, float x2, float y2) {
    return gpolyline(closed_box(x1, y1, x2, y2));
}

int GPH_frect(float x1, float y1, float x2, float y2) {
    return gfill_area(closed_box(x1, y1, x2, y2));
}

int GPH_border(const Rect &r) {
    return GPH_rect(r.xmin, r.ymin, r.xmax, r.ymax);
}

int GPH_circle(float x, float y, float radius) {
    return gpolyline(circle(x, y, radius));
}

int GPH_fcircle(float x, float y, float radius) {
    return gfill_area(circle(x, y, radius));
}

int GPH_pprint(const Point &position, std::string_view text) {
    return gtext(position, text);
}

int GPH_pprintf(const Point &position, const char *format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const std::string text = vformat_text(format, arguments);
    va_end(arguments);
    return gtext(position, text);
}

int GPH_printf(float x, float y, const char *format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const std::string text = vformat_text(format, arguments);
    va_end(arguments);
    return gtext({x, y}, text);
}

int GPH_line_attr(const Attribute *record) {
    if (record == nullptr) {
        gset_linetype(1);
        gset_linewidth(0);
        return 0;
    }
    if (record->color >= 0) gset_line_colr_ind(record->color);
    if (!is_missing(record->style)) gset_linetype(record->style);
    if (!is_missing(record->width)) gset_linewidth(record->width);
    return 0;
}

int GPH_mark_attr(const Attribute *record, float scale) {
    if (record == nullptr) {
        const MarkerState plain;
        gset_marker_type(plain.type);
        gset_marker_size(plain.size);
        gset_marker_width(plain.width);
        return 0;
    }
    if (record->color >= 0) gset_marker_colr_ind(record->color);
    if (!is_missing(record->style)) gset_marker_type(record->style);
    if (!is_missing(record->height) || scale > 0) gset_marker_size(scaled_size(record->height, scale));
    if (!is_missing(record->width)) gset_marker_width(record->width);
    return 0;
}

int GPH_text_attr(const Attribute *record, float height) {
    if (record == nullptr) {
        gset_text_width(0);
        gset_expan(1);
        return -1;
    }
    if (record->color >= 0) gset_text_colr_ind(record->color);
    gset_char_ht(scaled_size(record->height, height));
    if (!is_missing(record->width)) gset_text_width(record->width);
    if (!is_missing(record->expansion)) gset_expan(record->expansion);
    if (!is_missing(record->font)) gset_fontprec(record->font, kPrecision);
    gset_space(kRecordSpacing);
    return 0;
}

int GPH_fill_attr(const Attribute *record) {
    if (record == nullptr) return gset_fill_int_style(kInteriorSolid);
    if (record->color >= 0) gset_fill_colr_ind(record->color);
    if (is_missing(record->fill)) return 0;
    if (record->fill == 0) return gset_fill_int_style(kInteriorSolid);
    if (gset_fill_style_ind(record->fill) != 0) return -1;
    return gset_fill_int_style(kInteriorPattern);
}

int GPH_text_align(int horizontal, int vertical) {
    return gset_text_align(horizontal, vertical);
}

void GPH_get_text_align(int &horizontal, int &vertical) {
    horizontal = gstate().text.horizontal;
    vertical = gstate().text.vertical;
}
