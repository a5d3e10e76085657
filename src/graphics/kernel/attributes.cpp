#include <cmath>

#include "graphics/core/state.h"
#include "graphics/kernel/argument_checks.h"
#include "graphics/kernel/kernel.h"
#include "graphics/kernel/raster_ink.h"
#include "graphics/text/font.h"

namespace {

constexpr int kSolidLine = 1;

/// Hands a changed attribute to the drawing context of a raster display.
void apply(ObjectType type) {
    if (!gtype_is_WIN_PIX()) return;
    const GraphicsState &s = gstate();
    switch (type) {
    case ObjectType::line_type:
    case ObjectType::line_width: raster_set_line(RasterContext::line, s.line.width, s.line.type); break;
    case ObjectType::line_color: raster_set_color(RasterContext::line, s.line.color); break;
    case ObjectType::marker_width: raster_set_line(RasterContext::marker, s.marker.width, kSolidLine); break;
    case ObjectType::marker_color: raster_set_color(RasterContext::marker, s.marker.color); break;
    case ObjectType::text_width: raster_set_line(RasterContext::text, s.text.width, kSolidLine); break;
    case ObjectType::text_color: raster_set_color(RasterContext::text, s.text.color); break;
    case ObjectType::fill_color: raster_set_color(RasterContext::fill, s.fill.color); break;
    case ObjectType::fill_interior:
    case ObjectType::fill_style: raster_set_fill(); break;
    default: break; // the others are no business of a drawing context
    }
}

int store(int &target, int value, ObjectType type) {
    if (target == value) return 0;
    target = value;
    record_value(type, value);
    apply(type);
    return 0;
}

int store(float &target, float value, ObjectType type) {
    if (target == value) return 0;
    target = value;
    record_float(type, value);
    apply(type);
    return 0;
}

/// A number from 0 up; not a number and infinities are no sizes.
bool is_size(float value) {
    return std::isfinite(value) && value >= 0;
}

/// PostScript's thinnest line is of the base width.
float device_width(float width) {
    return gtype_is_PS() && width == 0 ? 1 : width;
}

int set_color(const char *operation, int &target, int index, ObjectType type) {
    if (!workstation_open(operation)) return -1;
    const std::optional<int> drawn = drawable_color(operation, index);
    return drawn ? store(target, *drawn, type) : -1;
}

int set_number(const char *operation, int &target, int value, ObjectType type) {
    return workstation_open(operation) ? store(target, value, type) : -1;
}

int set_real(const char *operation, float &target, float value, ObjectType type) {
    if (!workstation_open(operation)) return -1;
    if (!std::isfinite(value)) {
        gerr_printf(operation, "invalid value: %f\n", static_cast<double>(value));
        return -1;
    }
    return store(target, value, type);
}

} // namespace

int gset_linetype(int type) {
    if (!workstation_open("gset_linetype")) return -1;
    if (type < 0) {
        gerr_printf("gset_linetype", "invalid line type: %d\n", type);
        return -1;
    }
    return store(gstate().line.type, type, ObjectType::line_type);
}

int gset_linewidth(float width) {
    if (!workstation_open("gset_linewidth")) return -1;
    if (!is_size(width)) {
        gerr_printf("gset_linewidth", "invalid line width: %f\n", static_cast<double>(width));
        return -1;
    }
    return store(gstate().line.width, device_width(width), ObjectType::line_width);
}

int gset_line_colr_ind(int index) {
    return set_color("gset_line_colr_ind", gstate().line.color, index, ObjectType::line_color);
}

int gset_line_print_bold(int factor) {
    return set_number("gset_line_print_bold", gstate().line_print_bold, factor, ObjectType::line_print_bold);
}

int gset_marker_type(int type) {
    return set_number("gset_marker_type", gstate().marker.type, type, ObjectType::marker_type);
}

int gset_marker_size(float size) {
    if (!workstation_open("gset_marker_size")) return -1;
    if (!is_size(size)) {
        gerr_printf("gset_marker_size", "invalid marker size: %f\n", static_cast<double>(size));
        return -1;
    }
    return store(gstate().marker.size, size, ObjectType::marker_size);
}

int gset_marker_width(float width) {
    if (!workstation_open("gset_marker_width")) return -1;
    if (!is_size(width)) {
        gerr_printf("gset_marker_width", "invalid marker width: %f\n", static_cast<double>(width));
        return -1;
    }
    return store(gstate().marker.width, width, ObjectType::marker_width);
}

int gset_marker_colr_ind(int index) {
    return set_color("gset_marker_colr_ind", gstate().marker.color, index, ObjectType::marker_color);
}

int gset_text_colr_ind(int index) {
    return set_color("gset_text_colr_ind", gstate().text.color, index, ObjectType::text_color);
}

int gset_text_width(float width) {
    if (!workstation_open("gset_text_width")) return -1;
    if (!is_size(width)) {
        gerr_printf("gset_text_width", "invalid text width: %f\n", static_cast<double>(width));
        return -1;
    }
    return store(gstate().text.width, device_width(width), ObjectType::text_width);
}

int gset_char_ht(float height) {
    if (!workstation_open("gset_char_ht")) return -1;
    if (!is_size(height)) {
        gerr_printf("gset_char_ht", "invalid character height: %f\n", static_cast<double>(height));
        return -1;
    }
    return store(gstate().text.height, height, ObjectType::text_height);
}

int gset_expan(float expansion) {
    if (!workstation_open("gset_expan")) return -1;
    if (!is_size(expansion)) {
        gerr_printf("gset_expan", "invalid expansion factor: %f\n", static_cast<double>(expansion));
        return -1;
    }
    return store(gstate().text.expansion, expansion, ObjectType::text_expansion);
}

int gset_space(float spacing) {
    return set_real("gset_space", gstate().text.space, spacing, ObjectType::text_space);
}

int gset_char_space(float spacing) {
    return set_real("gset_char_space", gstate().text.char_space, spacing, ObjectType::text_char_space);
}

int gset_text_align(int horizontal, int vertical) {
    if (!workstation_open("gset_text_align")) return -1;
    TextState &text = gstate().text;
    if (text.horizontal == horizontal && text.vertical == vertical) return 0;
    text.horizontal = horizontal;
    text.vertical = vertical;
    record_ints(ObjectType::text_align, horizontal, vertical);
    return 0;
}

int gset_char_up_vec(float x, float y) {
    if (!workstation_open("gset_char_up_vec")) return -1;
    const float length = std::hypot(x, y);
    if (!std::isfinite(length) || length == 0) {
        gerr_printf("gset_char_up_vec", "invalid up vector: %f %f\n", static_cast<double>(x),
                    static_cast<double>(y));
        return -1;
    }
    const Point up{x / length, y / length};
    if (gstate().text.up == up) return 0;
    gstate().text.up = up;
    gnew_obj(ObjectType::text_up, 1, sizeof up, &up);
    return 0;
}

int gset_fontprec(int font, int precision) {
    if (!workstation_open("gset_fontprec")) return -1;
    TextState &text = gstate().text;
    if (text.font == font && text.precision == precision) return 0;
    if (text.font != font && gload_font(font) != 0) return -1;
    text.font = font;
    text.precision = precision;
    record_ints(ObjectType::text_font, font, precision);
    return 0;
}

int gset_font_drop(int count) {
    if (!workstation_open("gset_font_drop")) return -1;
    gstate().font_drop = count;
    return 0;
}

int gset_fill_int_style(int style) {
    return set_number("gset_fill_int_style", gstate().fill.interior, style, ObjectType::fill_interior);
}

int gset_fill_style_ind(int index) {
    if (!workstation_open("gset_fill_style_ind")) return -1;
    if (index < 0 || index > kFillStyleMax) {
        gerr_printf("gset_fill_style_ind", "invalid style index: %d\n", index);
        return -1;
    }
    return store(gstate().fill.style, index, ObjectType::fill_style);
}

int gset_fill_colr_ind(int index) {
    return set_color("gset_fill_colr_ind", gstate().fill.color, index, ObjectType::fill_color);
}

int gset_fill_print_solid(int flag) {
    return set_number("gset_fill_print_solid", gstate().fill_print_solid, flag, ObjectType::fill_print_solid);
}

void greset_line() {
    gstate().line = LineState{};
}

void greset_marker() {
    gstate().marker = MarkerState{};
}

void greset_text() {
    const int font = gstate().text.font;
    gstate().text = TextState{};
    // The font that is loaded is the one that the attributes name.
    if (gstate().open && font != gstate().text.font)
        (void)gload_font(gstate().text.font); // what cannot be loaded is told, the strokes stay
}

void greset_fill() {
    gstate().fill = FillState{};
}
