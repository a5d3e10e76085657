#include "graphics/devices/print/hpgl.h"

#include <array>
#include <cstdlib>
#include <string>

#include "graphics/core/color_slots.h"
#include "graphics/core/error.h"
#include "graphics/core/state.h"
#include "graphics/devices/print/hpgl_options.h"
#include "graphics/devices/print/joined_file.h"
#include "graphics/devices/print/number_writer.h"
#include "graphics/devices/print/postscript.h"
#include "lib/report/message.h"

namespace {

constexpr std::string_view kPclBegin = "\033E\033%1B\033&l1O\n", kPclEnd = "\033%0A\033E";
constexpr std::string_view kBegin = "IN;SP1;PA;\n", kEnd = "SP;PG;\n";

/// What the plotter holds, so that only changes are written.
struct Pen {
    float width = -1; ///< millimetres
    int type = 1;
    int shading = 0; ///< which kind of line colour: 0 black, 1 white, 2 grey
    float fill = -1; ///< per cent; kFillSolid for a solid fill
};
constexpr float kFillSolid = -2;

struct State {
    PrintWriter out;
    JoinedFile file;
    HpglOptions options;
    Pen pen;
};
State state;

void put(std::string_view text) {
    state.out.text(text);
}

void put_number(float value, int decimals) {
    state.out.fixed(value, decimals);
}

void put_point(std::string_view verb, const Point &point) {
    put(verb);
    put_number(point.x * state.options.scale, 0);
    put(",");
    put_number(point.y * state.options.scale, 0);
    put(";");
}

std::string page_end() {
    return std::string(kEnd) + std::string(state.options.pcl == PclWrap::none ? "" : kPclEnd);
}

std::string page_begin() {
    const HpglOptions &options = state.options;
    std::string text(options.pcl == PclWrap::none ? "" : kPclBegin);
    text += kBegin;
    if (options.pcl == PclWrap::laser) text += "RO90;\n";
    if (options.rotation != 0) text += "RO" + std::to_string(options.rotation) + ";\n";
    return text;
}

void put_pen_setup() {
    state.pen = Pen{};
    state.pen.width = state.options.base_width;
    put("PW");
    put_number(state.options.base_width, 1);
    put(";SV;LT;\n");
}

// Width, colour and type

void set_width(int index, float width) {
    const int boldness = print_boldness(index);
    const float bold = print_bold_factor(boldness, gstate().line_print_bold);
    const float written = bold * (width == 0 ? 1.0F : width) * state.options.base_width;
    if (written == state.pen.width) return;
    state.pen.width = written;
    put("PW");
    put_number(written, 1);
    put(";\n");
}

/// Print-only indices come in threes of black, white and grey; every other line is black.
void set_color(int index) {
    static constexpr std::array<std::string_view, 3> kScreens{"SV;\n", "SV1,0;\n", "SV1,30;\n"};
    const int shading = is_print_only_color(index) ? (index - kColorPrintFirst) / 3 : 0;
    if (shading == state.pen.shading) return;
    state.pen.shading = shading;
    put(kScreens[static_cast<std::size_t>(shading)]);
}

void set_type(int type) {
    static constexpr std::array<std::string_view, 5> kTypes{"LT;\n", "LT2,5,1;\n", "LT5,8,1;\n",
                                                            "LT6,10,1;\n", "LT2,1,1;\n"};
    if (type < 1 || type > static_cast<int>(kTypes.size())) type = 1;
    if (type == state.pen.type) return;
    state.pen.type = type;
    put(kTypes[static_cast<std::size_t>(type - 1)]);
}

void set_fill(float percent) {
    if (percent == state.pen.fill) return;
    state.pen.fill = percent;
    if (percent == kFillSolid) {
        put("FT1;\n");
        return;
    }
    put("FT10,");
    put_number(percent, 0);
    put(";\n");
}

void set_fill_color(int index) {
    constexpr float kPercent = 100;
    constexpr std::array<float, 3> kPrintOnly{kPercent, 0, 30}; // black, white, grey
    if (is_print_only_color(index))
        set_fill(kPrintOnly[static_cast<std::size_t>(index - kColorPrintFirst) / 3]);
    else if (gstate().fill_print_solid)
        set_fill(kFillSolid);
    else if (index == kColorBackground)
        set_fill(0);
    else
        set_fill(kPercent - kPercent * gps_get_gray(index));
}

// Opening and closing

int open(std::string_view device_spec, DrawingArea &page) {
    constexpr float units_per_hundredth_inch = 10.15F;
    const std::vector<std::string> spec = split_device_spec(device_spec);
    const PrintOutput output = parse_print_output(print_file_name(spec, {"vyxhp_out"}, "vyx.hpgl"));
    state.options = HpglOptions{};
    state.options.page = kHpglPage;
    if (const char *words = std::getenv("vyxhp_param")) apply_hpgl_options(state.options, words);
    for (std::size_t field = 1; field < spec.size(); ++field) apply_hpgl_options(state.options, spec[field]);
    page = hpgl_area(state.options.page);
    if (!place_by_geometry(print_geometry({"vyxhp_geometry"}),
                           {units_per_hundredth_inch, kHpglOrigin, kHpglOrigin}, page))
        return -1;
    OutputFile file = state.file.open(output, {page_begin(), page_end(), "HPGL file", true}, "ghpgl_open");
    if (!file) {
        gerr_printf("gopen_ws", "unable to open HPGL file\n");
        return -1;
    }
    report_print_output(output);
    state.out.open(std::move(file));
    if (state.file.begins()) put(page_begin());
    if (state.file.is_bare()) put("SP1;PA;\n"); // whatever the file before left the pen in
    put_pen_setup();
    return 0;
}

int close() {
    if (!state.out.is_open()) return 0;
    if (!state.file.is_bare()) put(page_end());
    return state.file.close(state.out, "ghpgl_close");
}

void abandon() {
    state.file.abandon(state.out);
}

int new_page() {
    if (!state.out.is_open()) return 0;
    if (state.file.is_bare()) {
        MESS_print(kWarn, "ghpgl_new_page: One page only in an appended file: %s\n",
                   state.file.name().c_str());
        return -1;
    }
    put(page_end());
    put(page_begin());
    put_pen_setup();
    return 0;
}

// Drawing

/// A move and draws, with a line end behind every so many points.
void put_path(std::span<const Point> points, std::size_t points_per_line) {
    std::size_t count = 0;
    for (const Point &point : points) {
        put_point(count == 0 ? "PU" : "PD", point);
        if (++count % points_per_line == 0 && count < points.size()) put("\n");
    }
    put("\n");
}

void polyline(std::span<const Point> device, int color, float width, int type) {
    constexpr std::size_t kPerLine = 10;
    set_width(color, width);
    set_color(color);
    set_type(type);
    put_path(device, kPerLine);
}

void put_area(std::span<const Point> device) {
    put_point("PU", device.front());
    put("PM0;");
    for (const Point &point : device.subspan(1)) put_point("PD", point);
    put("PM1;PM2;FP;\n");
}

void fill_area(std::span<const Point> device, int color) {
    if (device.empty()) return;
    set_fill_color(color);
    put_area(device);
}

void begin_markers(int /*count*/, int color, float width) {
    set_width(color, width);
    set_color(color);
    set_type(1);
}

void begin_text(const Point & /*world*/, std::string_view /*text*/, int color, float width) {
    begin_markers(0, color, width);
}

void stroke(std::span<const Point> device) {
    constexpr std::size_t kPerLine = 30;
    if (device.size() == 1) // a pen that only moves leaves nothing
        put_path(std::array{device.front(), device.front()}, kPerLine);
    else
        put_path(device, kPerLine);
}

void clear_region(std::span<const Point> device) {
    set_fill(0);
    put_area(device);
}

void clip(const Rect &device) {
    const float scale = state.options.scale;
    put("IW ");
    bool first = true;
    for (const float edge : {device.xmin, device.ymin, device.xmax, device.ymax}) {
        if (!first) put(",");
        put_number(edge * scale, 0);
        first = false;
    }
    put(";\n");
}

void message(std::string_view /*text*/) {} // a plotter has no comments

constexpr float kUnitsPerPixel = 10.15F;

} // namespace

const PrintInk kHpglInk{.marker_unit = kUnitsPerPixel,
                        .open = open,
                        .close = close,
                        .abandon = abandon,
                        .new_page = new_page,
                        .clip = clip,
                        .polyline = polyline,
                        .fill_area = fill_area,
                        .begin_markers = begin_markers,
                        .begin_text = begin_text,
                        .stroke = stroke,
                        .clear_region = clear_region,
                        .message = message};
