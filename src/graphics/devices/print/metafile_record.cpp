#include <array>
#include <cstring>

#include "graphics/devices/print/metafile.h"

namespace {

template <typename T> T data_as(std::span<const std::byte> data) {
    T value{};
    if (data.size() >= sizeof value) std::memcpy(&value, data.data(), sizeof value);
    return value;
}

void put_real(PrintWriter &out, float value, std::string_view after = "") {
    out.fixed(value, PrintWriter::kMaxDecimals);
    out.text(after);
}

void put_integer(PrintWriter &out, std::string_view keyword, int value) {
    out.text(keyword);
    out.text(" ");
    out.integer(value);
    out.text("\n");
}

void put_value(PrintWriter &out, std::string_view keyword, std::span<const std::byte> data) {
    out.text(keyword);
    out.text(" ");
    put_real(out, data_as<float>(data), "\n");
}

void put_rect(PrintWriter &out, std::span<const std::byte> data) {
    const auto rect = data_as<Rect>(data);
    put_real(out, rect.xmin, " ");
    put_real(out, rect.ymin, " ");
    put_real(out, rect.xmax, " ");
    put_real(out, rect.ymax, "\n");
}

void put_numbered_rect(PrintWriter &out, std::string_view keyword, int number,
                       std::span<const std::byte> data) {
    out.text(keyword);
    out.text(" ");
    out.integer(number);
    out.text(" ");
    put_rect(out, data);
}

void put_pair(PrintWriter &out, std::string_view keyword, std::span<const std::byte> data) {
    const auto pair = data_as<std::array<int, 2>>(data);
    out.text(keyword);
    out.text(" ");
    out.integer(pair[0]);
    out.text(" ");
    out.integer(pair[1]);
    out.text("\n");
}

void put_point(PrintWriter &out, const Point &point, std::string_view after) {
    put_real(out, point.x, ",");
    put_real(out, point.y, after);
}

/// Four points a line; of a polyline the last line ends as a line does, of others only when it is not full.
void put_points(PrintWriter &out, std::string_view keyword, std::span<const std::byte> data, bool polyline) {
    constexpr std::size_t kPerLine = 4;
    const std::size_t count = data.size() / sizeof(Point);
    out.text(keyword);
    out.text(" ");
    out.integer(static_cast<int>(count));
    out.text(" ");
    for (std::size_t i = 0; i < count; ++i) {
        put_point(out, data_as<Point>(data.subspan(i * sizeof(Point))), " ");
        const bool last = i + 1 == count;
        if ((i + 1) % kPerLine == 0 && !(polyline && last)) out.text("\n   ");
    }
    if (polyline || count % kPerLine != 0) out.text("\n");
}

std::string_view text_of(std::span<const std::byte> data) {
    return {reinterpret_cast<const char *>(data.data()), data.size()};
}

void put_text(PrintWriter &out, std::span<const std::byte> data) {
    if (data.size() < sizeof(Point)) return;
    out.text("TE ");
    put_point(out, data_as<Point>(data), " ");
    out.comment_text(text_of(data.subspan(sizeof(Point))));
    out.text("\n");
}

void put_color(PrintWriter &out, int index, std::span<const std::byte> data) {
    const auto color = data_as<Rgb>(data);
    out.text("CLR 1 ");
    out.integer(index);
    for (const float component : {color.red, color.green, color.blue}) {
        out.text(" ");
        put_real(out, component);
    }
    out.text("\n");
}

} // namespace

void meta_write_record(PrintWriter &out, ObjectType type, int value, std::span<const std::byte> data) {
    switch (type) {
    case ObjectType::message:
        out.text("ME ");
        out.comment_text(text_of(data));
        out.text("\n");
        break;
    case ObjectType::ws_viewport: put_numbered_rect(out, "WS_VP", value, data); break;
    case ObjectType::ws_window: put_numbered_rect(out, "WS_WIN", value, data); break;
    case ObjectType::select_transform: put_integer(out, "TR", value); break;
    case ObjectType::viewport: put_numbered_rect(out, "VP", value, data); break;
    case ObjectType::window: put_numbered_rect(out, "WIN", value, data); break;
    case ObjectType::color: put_color(out, value, data); break;
    case ObjectType::clear_region:
        out.text("CLR_REG ");
        put_rect(out, data);
        break;
    case ObjectType::polyline: put_points(out, "PL", data, true); break;
    case ObjectType::line_type: put_integer(out, "PL_TYPE", value); break;
    case ObjectType::line_width: put_value(out, "PL_LW", data); break;
    case ObjectType::line_color: put_integer(out, "PL_CLR", value); break;
    case ObjectType::polymarker: put_points(out, "PM", data, false); break;
    case ObjectType::marker_type: put_integer(out, "PM_TYPE", value); break;
    case ObjectType::marker_size: put_value(out, "PM_SIZE", data); break;
    case ObjectType::marker_color: put_integer(out, "PM_CLR", value); break;
    case ObjectType::marker_width: put_value(out, "PM_WDTH", data); break;
    case ObjectType::text: put_text(out, data); break;
    case ObjectType::text_space: put_value(out, "TE_SPC", data); break;
    case ObjectType::text_char_space: put_value(out, "TE_CSPC", data); break;
    case ObjectType::text_expansion: put_value(out, "TE_EXP", data); break;
    case ObjectType::text_color: put_integer(out, "TE_CLR", value); break;
    case ObjectType::text_height: put_value(out, "TE_HGHT", data); break;
    case ObjectType::text_up:
        out.text("TE_UP ");
        put_point(out, data_as<Point>(data), "\n");
        break;
    case ObjectType::text_font: put_pair(out, "TE_FNT", data); break;
    case ObjectType::text_align: put_pair(out, "TE_ALGN", data); break;
    case ObjectType::text_width: put_value(out, "TE_WDTH", data); break;
    case ObjectType::fill_area: put_points(out, "FA", data, false); break;
    case ObjectType::fill_interior: put_integer(out, "FA_INT", value); break;
    case ObjectType::fill_style: put_integer(out, "FA_ST", value); break;
    case ObjectType::fill_color: put_integer(out, "FA_CLR", value); break;
    case ObjectType::line_print_bold:
    case ObjectType::fill_print_solid: break;
    }
}
