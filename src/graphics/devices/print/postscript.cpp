#include "graphics/devices/print/postscript.h"

#include <array>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <utility>

#include "graphics/core/color_slots.h"
#include "graphics/core/error.h"
#include "graphics/core/state.h"
#include "graphics/devices/print/number_writer.h"
#include "graphics/devices/print/postscript_options.h"
#include "graphics/devices/print/postscript_page.h"
#include "lib/report/message.h"
#include "lib/text/strings.h"

namespace {

/// No grey level: an RGB colour is in force.
constexpr float kGrayIsRgb = -1;
constexpr float kBlack = 0, kWhite = 1, kLightGray = 0.7F;
/// Cached values that no drawing asks for.
constexpr int kNoColor = kMissing;

/// What the stream's graphics state holds, so that only changes are written. The initial values are those of
/// the prologue.
struct Ink {
    float gray = kBlack; ///< kGrayIsRgb while `rgb_slot` is in force
    int rgb_slot = kNoColor;
    float width = 1; ///< in units of "dot"
    int type = 1;
};

struct State {
    PrintWriter out;
    std::string name; ///< of the output, for messages
    /// Joins a file that stays without the program's prologue and trailer.
    bool bare = false;
    std::optional<PsTarget> joined; ///< the finished file that the drawing shares a page with
    PostScriptOptions settings;     ///< by the option setters, for every output to come
    PostScriptOptions options; ///< of the open output: the settings, environment and device specification
    Ink ink;
    /// By colour index; the last slot is the background.
    std::array<float, kColorSlots + 1> gray{};

    State() { gray[kBackgroundSlot] = kWhite; }
};

State state;

/// Slot of a colour index; kNoColor for an index without one.
int slot_of(int index) {
    if (index == kColorBackground) return kBackgroundSlot;
    return index >= 0 && index <= kBackgroundSlot ? index : kNoColor;
}

void put(std::string_view text) {
    state.out.text(text);
}

// Colour, width and type

void set_gray(float gray, std::string_view command) {
    if (state.ink.gray == gray) return;
    state.ink.gray = gray;
    state.ink.rgb_slot = kNoColor;
    put(command);
}

void set_black() {
    set_gray(kBlack, "0 setgray\n");
}

void set_white() {
    set_gray(kWhite, "1 setgray\n");
}

void set_gray_value(float gray) {
    if (state.ink.gray == gray) return;
    set_gray(gray, "");
    state.out.fixed(gray, 3);
    put(" setgray\n");
}

void set_rgb(int index) {
    Ink &ink = state.ink;
    const int slot = slot_of(index);
    if (slot == kNoColor || (ink.gray == kGrayIsRgb && ink.rgb_slot == slot)) return;
    ink.gray = kGrayIsRgb;
    ink.rgb_slot = slot;
    const Rgb color = gget_color_rgb(slot);
    for (const float component : {color.red, color.green, color.blue}) {
        state.out.fixed(component, 2);
        put(" ");
    }
    put("setrgbcolor\n");
}

// Print-only indices come in threes: plain, bold and very bold, of black, white and grey.

void set_print_color(int index) {
    switch ((index - kColorPrintFirst) / 3) {
    case 0: set_black(); return;
    case 1: set_white(); return;
    default: set_gray(kLightGray, ".7 setgray\n"); return;
    }
}

void set_color(int index) {
    if (is_print_only_color(index))
        set_print_color(index);
    else if (state.options.color)
        set_rgb(index);
    else
        set_black();
}

void set_fill_color(int index) {
    if (is_print_only_color(index))
        set_print_color(index);
    else if (state.options.color)
        set_rgb(index);
    else if (gstate().fill_print_solid)
        set_black();
    else if (index == kColorBackground)
        set_white();
    else
        set_gray_value(gps_get_gray(index));
}

void set_width(int index, float width) {
    const float thick = static_cast<float>(state.options.base_width) * width;
    const int boldness = print_boldness(index);
    const float bold = print_bold_factor(boldness, gstate().line_print_bold);
    const float written = boldness == 0 ? bold * thick : std::trunc(bold * thick);
    if (written == state.ink.width) return;
    state.ink.width = written;
    state.out.fixed(written, boldness == 0 ? 1 : 0);
    put(" dot lw\n");
}

void set_type(int type) {
    static constexpr std::array<std::string_view, 5> kDashes{
        "[] 0 setdash\n", "[6] 0 setdash\n", "[3 6] 0 setdash\n", "[6 6 3 6] 0 setdash\n", "[2] 0 setdash\n"};
    if (type < 1 || type > static_cast<int>(kDashes.size())) type = 1;
    if (type == state.ink.type) return;
    state.ink.type = type;
    put(kDashes[static_cast<std::size_t>(type - 1)]);
}

// Paths

void put_path(std::span<const Point> points) {
    put("np\n");
    std::string_view verb = " mv\n";
    for (const Point &point : points) {
        state.out.point(point, verb);
        verb = " ln\n";
    }
}

void put_comment(std::string_view keyword, int count) {
    put(keyword);
    state.out.integer(count);
    put("\n");
}

/// A closed path to be filled.
void put_area(std::span<const Point> points) {
    put_comment("%%FA:", static_cast<int>(points.size()));
    put_path(points);
    put("cp\n");
}

void put_title_comment(std::string_view keyword) {
    put(keyword);
    state.out.comment_text(gstate().title);
    put("\n");
}

// Prologue and trailer

void put_header(const EpsLayout &eps) {
    if (state.options.eps) {
        put("%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 ");
        state.out.integer(eps.width);
        put(" ");
        state.out.integer(eps.height);
        put("\n");
    } else {
        put("%!PS-Adobe-1.0\n");
    }
    put_title_comment("%%Title: VYX Graphics Display: ");
    put(kPsCreator);
    put("%%CreationDate: ");
    put(local_time_text());
    put("%%EndComments\n%%Postscript initialization\n");
}

/// What stands at the beginning of each page of a file.
void put_page_setup(const EpsLayout &eps) {
    if (!state.options.eps) {
        put("30 dict begin\n");
        put(kPsSave);
    }
    state.ink = Ink{};
    put(ps_page_setup(state.options, eps));
}

/// Where the page that is joined is set up alike, only colour and line begin anew; else all does.
void put_joint() {
    state.ink = Ink{};
    const std::string setup = ps_page_setup(state.options, {});
    if (!state.joined || state.joined->setup == setup) {
        put(ps_color_reset(state.options));
        put("1 dot lw\n[] 0 setdash\n");
    } else {
        put(kPsRestore);
        put(kPsSave);
        put(setup);
    }
}

void put_prologue(const DrawingArea &area) {
    const PostScriptOptions &options = state.options;
    if (state.bare || state.joined) {
        put_joint();
    } else {
        const EpsLayout eps = eps_layout(options, area);
        put_header(eps);
        if (!options.eps) put(ps_sheet_request(options));
        put_page_setup(eps);
    }
    put_title_comment("%%VYX Plot: ");
    // A clip of an encapsulated picture is undone by going back to this point.
    if (options.eps) put("gsave\n");
}

void put_trailer() {
    put(kPsPlotEnd);
    if (state.options.eps) put("grestore\n");
    if (state.bare) return;
    put(state.options.eps ? "showpage\n" : kPsPageEnd);
    put(kPsFileEnd);
}

bool refuse_appending(const char *why) {
    MESS_print(kError, "gps_open: %s: %s\n", why, state.name.c_str());
    return false;
}

/// Finds out what a file is that the drawing is to be appended to, and opens it for that. False after a
/// message when it cannot be.
bool join_file(PrintOutput &output) {
    if (state.options.eps) return refuse_appending("An encapsulated picture cannot be appended");
    PsTarget target = ps_look_at_target(output.name);
    switch (target.kind) {
    case PsTarget::Kind::absent: output.kind = PrintOutputKind::create; return true;
    case PsTarget::Kind::encapsulated:
        return refuse_appending("Nothing can be appended to an encapsulated picture");
    case PsTarget::Kind::foreign:
        MESS_print(kWarn, "gps_open: Not a finished file of this program, appended as it is: %s\n",
                   output.name.c_str());
        state.bare = true;
        return true;
    case PsTarget::Kind::finished: break;
    }
    if (target.sheet != ps_sheet(state.options))
        return refuse_appending(format_text("A page of %s points cannot be appended to one of %s",
                                            ps_sheet(state.options).c_str(), target.sheet.c_str())
                                    .c_str());
    if (!ps_take_off_end(output.name, target))
        return refuse_appending(format_text("Unable to change (%s)", std::strerror(errno)).c_str());
    state.joined = std::move(target);
    return true;
}

OutputFile open_output(PrintOutput output) {
    state.bare = false;
    state.joined.reset();
    const PrintOutput asked = output;
    if (output.kind == PrintOutputKind::append && !join_file(output)) return {};
    OutputFile file = open_print_output(output);
    if (!file && state.joined) ps_put_back_end(output.name, *state.joined);
    if (file) report_print_output(asked);
    return file;
}

void read_options(const std::vector<std::string> &spec) {
    PostScriptOptions &options = state.options;
    options = state.settings;
    options.page = kPostScriptPage;
    // Colour on white paper wants dark texts, as with the option "color".
    bool inverse = std::getenv("PSCOLOR") != nullptr;
    if (inverse) options.color = true;
    if (const char *words = std::getenv("vyxps_param")) apply_postscript_options(options, words, inverse);
    for (std::size_t field = 1; field < spec.size(); ++field)
        apply_postscript_options(options, spec[field], inverse);
    if (inverse) gset_inverse(1);
}

} // namespace

// Opening and closing

int gps_open(std::string_view device_spec, DrawingArea &page) {
    constexpr float points_per_hundredth_inch = 0.72F;
    const std::vector<std::string> spec = split_device_spec(device_spec);
    const PrintOutput output =
        parse_print_output(print_file_name(spec, {"vyxps_print", "PSPRINT"}, "vyx.ps"));
    read_options(spec);
    page = postscript_area(state.options.page);
    if (!place_by_geometry(print_geometry({"vyxps_geometry", "PSGEOMETRY"}),
                           {points_per_hundredth_inch, 0, 0}, page))
        return -1;
    state.name = output.name;
    OutputFile file = open_output(output);
    if (!file) {
        gerr_printf("gopen_ws", "unable to open postscript file\n");
        return -1;
    }
    state.out.open(std::move(file));
    put_prologue(page);
    return 0;
}

int gps_close() {
    if (!state.out.is_open()) return 0;
    put_trailer();
    if (!state.out.close()) {
        MESS_print(kError, "gps_close: Error writing postscript file: %s: %s\n", state.name.c_str(),
                   state.out.fault().c_str());
        if (state.joined) ps_put_back_end(state.name, *state.joined);
        return -1;
    }
    MESS_print(kMess, "Created Postscript file\n");
    return 0;
}

void gps_abandon() {
    if (!state.out.is_open()) return;
    state.out.abandon();
    if (state.joined) ps_put_back_end(state.name, *state.joined);
}

int gps_new_page() {
    if (!state.out.is_open()) return 0;
    if (state.options.eps || state.bare) {
        MESS_print(kWarn, "gps_new_page: One page only in an encapsulated or appended file: %s\n",
                   state.name.c_str());
        return -1;
    }
    put(kPsPlotEnd);
    put(kPsPageEnd);
    put_page_setup({});
    put_title_comment("%%VYX Plot: ");
    return 0;
}

// Drawing

void gps_polyline(std::span<const Point> device, int color, float width, int type) {
    put_comment("%%PL:", static_cast<int>(device.size()));
    set_width(color, width);
    set_color(color);
    set_type(type);
    put_path(device);
    put("stroke\n");
}

void gps_fill_area(std::span<const Point> device, int color) {
    put_area(device);
    set_fill_color(color);
    put("fill\n");
}

void gps_stroke(std::span<const Point> device) {
    // A path of one point leaves no ink; a line of one dot does.
    constexpr float dot = 0.33F;
    if (device.size() == 1) {
        const Point start = device.front();
        put_path(std::array{start, Point{start.x + dot, start.y}});
    } else {
        put_path(device);
    }
    put("stroke\n");
}

void gps_begin_markers(int count, int color, float width) {
    put_comment("%%PM:", count);
    set_width(color, width);
    set_color(color);
    set_type(1);
}

void gps_begin_text(const Point &world, std::string_view text, int color, float width) {
    put("%%TE:");
    for (const float coordinate : {world.x, world.y}) {
        state.out.fixed(coordinate, PrintWriter::kMaxDecimals);
        put(" ");
    }
    state.out.comment_text(text);
    put("\n");
    set_width(color, width);
    set_color(color);
    set_type(1);
}

void gps_clear_region(std::span<const Point> device) {
    put_area(device);
    if (state.options.color)
        set_rgb(kColorBackground);
    else
        set_white(); // even where areas are filled black
    put("fill\n");
}

void gps_clip(const Rect &device) {
    // An encapsulated picture must not undo the clip of the page it stands on.
    if (state.options.eps) {
        put("grestore\ngsave\n");
        state.ink = Ink{};
    } else {
        put("initclip\n");
    }
    put_path(std::array{Point{device.xmin, device.ymin}, Point{device.xmax, device.ymin},
                        Point{device.xmax, device.ymax}, Point{device.xmin, device.ymax}});
    put("cp\nclip\n");
}

void gps_message(std::string_view text) {
    put("%%Message: ");
    state.out.comment_text(text);
    put("\n");
}

constexpr float kPointsPerPixel = 0.72F;
const PrintInk kPostScriptInk{.marker_unit = kPointsPerPixel,
                              .open = gps_open,
                              .close = gps_close,
                              .abandon = gps_abandon,
                              .new_page = gps_new_page,
                              .clip = gps_clip,
                              .polyline = gps_polyline,
                              .fill_area = gps_fill_area,
                              .begin_markers = gps_begin_markers,
                              .begin_text = gps_begin_text,
                              .stroke = gps_stroke,
                              .clear_region = gps_clear_region,
                              .message = gps_message};

// Colours and options

void gps_set_color_rep(int index, const Rgb &color) {
    const int slot = slot_of(index);
    if (slot == kNoColor) return;
    const float gray = (0.9F * color.red + color.green + 0.8F * color.blue) / 2.7F;
    state.gray[static_cast<std::size_t>(slot)] = state.settings.reverse ? 1 - gray : gray;
    if (state.ink.rgb_slot == slot) state.ink.rgb_slot = kNoColor;
}

float gps_get_gray(int index) {
    const int slot = slot_of(index);
    return slot == kNoColor ? kBlack : state.gray[static_cast<std::size_t>(slot)];
}

void gps_set_EPS(bool on) {
    state.settings.eps = on;
}

void gps_set_orient(bool portrait) {
    state.settings.portrait = portrait;
}

void gps_set_scale(float scale) {
    if (scale >= kSmallestScale && scale <= kLargestScale) state.settings.scale = scale;
}

void gps_set_colorPS(bool on) {
    state.settings.color = on;
}

void gps_set_reverse(bool on) {
    state.settings.reverse = on;
}

void gps_set_base_width(int width) {
    if (width >= 0 && width <= kLargestBaseWidth) state.settings.base_width = width;
}
