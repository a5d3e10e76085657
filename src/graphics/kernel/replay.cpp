#include <array>
#include <cstring>
#include <string_view>
#include <vector>

#include "graphics/kernel/kernel.h"

namespace {

template <typename T> T data_as(const ObjectRecord &record) {
    T value{};
    if (record.size >= sizeof value) std::memcpy(&value, record.data(), sizeof value);
    return value;
}

float real(const ObjectRecord &record) {
    return data_as<float>(record);
}

Rect rect(const ObjectRecord &record) {
    return data_as<Rect>(record);
}

std::vector<Point> points(const ObjectRecord &record) {
    std::vector<Point> result(record.size / sizeof(Point));
    if (!result.empty()) std::memcpy(result.data(), record.data(), result.size() * sizeof(Point));
    return result;
}

/// The text behind the first `skip` bytes of the data.
std::string_view text_behind(const ObjectRecord &record, std::size_t skip) {
    const auto *const bytes = reinterpret_cast<const char *>(record.data());
    return std::string_view(bytes, record.size).substr(skip);
}

void replay_text(const ObjectRecord &record) {
    gtext(data_as<Point>(record), text_behind(record, sizeof(Point)));
}

void replay_up(const ObjectRecord &record) {
    const auto up = data_as<Point>(record);
    gset_char_up_vec(up.x, up.y);
}

void replay_pair(const ObjectRecord &record, int (*operation)(int, int)) {
    const auto pair = data_as<std::array<int, 2>>(record);
    operation(pair[0], pair[1]);
}

/// A replay must not grow the list that it reads, and no event may empty that list under it.
class ReplayGuard {
public:
    ReplayGuard() : recording_(gset_redraw(0)), pump_(gset_event_pump(nullptr)) {}
    ~ReplayGuard() {
        gset_redraw(recording_);
        gset_event_pump(pump_);
    }
    ReplayGuard(const ReplayGuard &) = delete;
    ReplayGuard &operator=(const ReplayGuard &) = delete;

private:
    int recording_;
    EventPump pump_;
};

} // namespace

void gobj_redraw_funcs(const ObjectRecord &record) {
    const int value = record.value;
    switch (record.type) {
    case ObjectType::message: gmessage(value, text_behind(record, 0)); break;
    case ObjectType::ws_viewport: gset_ws_vp(value, rect(record)); break;
    case ObjectType::ws_window: gset_ws_win(value, rect(record)); break;
    case ObjectType::select_transform: gsel_norm_tran(value); break;
    case ObjectType::viewport: gset_vp(value, rect(record)); break;
    case ObjectType::window: gset_win(value, rect(record)); break;
    case ObjectType::color: gset_colr_rep(1, value, data_as<Rgb>(record)); break;
    case ObjectType::clear_region: gclear_region(rect(record)); break;
    case ObjectType::polyline: gpolyline(points(record)); break;
    case ObjectType::line_type: gset_linetype(value); break;
    case ObjectType::line_width: gset_linewidth(real(record)); break;
    case ObjectType::line_color: gset_line_colr_ind(value); break;
    case ObjectType::line_print_bold: gset_line_print_bold(value); break;
    case ObjectType::polymarker: gpolymarker(points(record)); break;
    case ObjectType::marker_type: gset_marker_type(value); break;
    case ObjectType::marker_size: gset_marker_size(real(record)); break;
    case ObjectType::marker_color: gset_marker_colr_ind(value); break;
    case ObjectType::marker_width: gset_marker_width(real(record)); break;
    case ObjectType::text: replay_text(record); break;
    case ObjectType::text_space: gset_space(real(record)); break;
    case ObjectType::text_char_space: gset_char_space(real(record)); break;
    case ObjectType::text_expansion: gset_expan(real(record)); break;
    case ObjectType::text_color: gset_text_colr_ind(value); break;
    case ObjectType::text_height: gset_char_ht(real(record)); break;
    case ObjectType::text_up: replay_up(record); break;
    case ObjectType::text_font: replay_pair(record, gset_fontprec); break;
    case ObjectType::text_align: replay_pair(record, gset_text_align); break;
    case ObjectType::text_width: gset_text_width(real(record)); break;
    case ObjectType::fill_area: gfill_area(points(record)); break;
    case ObjectType::fill_interior: gset_fill_int_style(value); break;
    case ObjectType::fill_style: gset_fill_style_ind(value); break;
    case ObjectType::fill_color: gset_fill_colr_ind(value); break;
    case ObjectType::fill_print_solid: gset_fill_print_solid(value); break;
    }
}

void gredraw_objs() {
    const ReplayGuard guard;
    for (const ObjectRecord *record = gfirst_obj(); record != nullptr; record = record->next)
        gobj_redraw_funcs(*record);
}
