/// All attributes at once: put back, or told to whoever keeps the record of a picture.

#include "graphics/core/state.h"
#include "graphics/kernel/kernel.h"

namespace {

void set_line(const LineState &wanted, const LineState &present) {
    if (wanted.type != present.type) gset_linetype(wanted.type);
    if (wanted.width != present.width) gset_linewidth(wanted.width);
    if (wanted.color != present.color) gset_line_colr_ind(wanted.color);
}

void set_marker(const MarkerState &wanted, const MarkerState &present) {
    if (wanted.type != present.type) gset_marker_type(wanted.type);
    if (wanted.size != present.size) gset_marker_size(wanted.size);
    if (wanted.width != present.width) gset_marker_width(wanted.width);
    if (wanted.color != present.color) gset_marker_colr_ind(wanted.color);
}

void set_text(const TextState &wanted, const TextState &present) {
    if (wanted.color != present.color) gset_text_colr_ind(wanted.color);
    gset_text_width(wanted.width);
    gset_char_ht(wanted.height);
    gset_expan(wanted.expansion);
    gset_space(wanted.space);
    gset_char_space(wanted.char_space);
    gset_text_align(wanted.horizontal, wanted.vertical);
    gset_char_up_vec(wanted.up.x, wanted.up.y);
    gset_fontprec(wanted.font, wanted.precision);
}

void set_fill(const FillState &wanted, const FillState &present) {
    if (wanted.interior != present.interior) gset_fill_int_style(wanted.interior);
    if (wanted.style != present.style) gset_fill_style_ind(wanted.style);
    if (wanted.color != present.color) gset_fill_colr_ind(wanted.color);
}

void record_transforms() {
    const GraphicsState &s = gstate();
    record_rect(ObjectType::ws_window, 1, to_rect(s.map.ws_window));
    for (int n = 0; n < kTransformCount; ++n) {
        record_rect(ObjectType::window, n, to_rect(s.windows[static_cast<std::size_t>(n)]));
        record_rect(ObjectType::viewport, n, to_rect(s.viewports[static_cast<std::size_t>(n)]));
    }
    record_value(ObjectType::select_transform, s.current_transform);
}

void record_colors() {
    for (int index = 0; index <= gstate().max_color && index < kColorSlots; ++index) {
        const ColorSlot &slot = gstate().colors[static_cast<std::size_t>(index)];
        if (slot.pixel != kPixelUnset) gnew_obj(ObjectType::color, index, sizeof slot.rgb, &slot.rgb);
    }
}

/// In a window an index that nothing has been stored for yet is that of a beginning, and cannot be asked for.
void record_color_index(ObjectType type, int index) {
    const bool known = is_print_only_color(index) || gget_color_ind(index) != kPixelUnset;
    if (known || !gtype_is_WIN_PIX()) record_value(type, index);
}

void record_attributes() {
    const GraphicsState &s = gstate();
    record_value(ObjectType::line_type, s.line.type);
    record_float(ObjectType::line_width, s.line.width);
    record_color_index(ObjectType::line_color, s.line.color);
    record_value(ObjectType::line_print_bold, s.line_print_bold);
    record_value(ObjectType::marker_type, s.marker.type);
    record_float(ObjectType::marker_size, s.marker.size);
    record_float(ObjectType::marker_width, s.marker.width);
    record_color_index(ObjectType::marker_color, s.marker.color);
    record_color_index(ObjectType::text_color, s.text.color);
    record_float(ObjectType::text_width, s.text.width);
    record_float(ObjectType::text_height, s.text.height);
    record_float(ObjectType::text_expansion, s.text.expansion);
    record_float(ObjectType::text_space, s.text.space);
    record_float(ObjectType::text_char_space, s.text.char_space);
    record_ints(ObjectType::text_align, s.text.horizontal, s.text.vertical);
    gnew_obj(ObjectType::text_up, 1, sizeof s.text.up, &s.text.up);
    record_ints(ObjectType::text_font, s.text.font, s.text.precision);
    record_value(ObjectType::fill_interior, s.fill.interior);
    record_value(ObjectType::fill_style, s.fill.style);
    record_color_index(ObjectType::fill_color, s.fill.color);
    record_value(ObjectType::fill_print_solid, s.fill_print_solid);
}

} // namespace

AttributeSet gget_attributes() {
    const GraphicsState &s = gstate();
    return {s.line, s.marker, s.text, s.fill};
}

void gset_attributes(const AttributeSet &wanted) {
    const GraphicsState &s = gstate();
    set_line(wanted.line, s.line);
    set_marker(wanted.marker, s.marker);
    set_text(wanted.text, s.text);
    set_fill(wanted.fill, s.fill);
}

void grecord_state() {
    record_transforms();
    record_colors();
    record_attributes();
}
