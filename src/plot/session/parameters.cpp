#include "plot/session/parameters.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "graphics/devices/common/panel.h"
#include "graphics/devices/print/postscript.h"
#include "graphics/images/formats.h"
#include "graphics/images/image.h"
#include "graphics/kernel/foreign_device.h"
#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "graphics/text/font.h"
#include "graphics/window/loop.h"
#include "graphics/window/partner.h"
#include "lib/files/naming.h"
#include "lib/report/message.h"
#include "lib/report/process.h"
#include "lib/resources/database.h"
#include "lib/resources/list_words.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"
#include "lib/time/date.h"
#include "plot/colour/levels.h"
#include "plot/map/settings.h"
#include "plot/places/city.h"
#include "plot/places/region.h"
#include "plot/places/station_priority.h"
#include "plot/session/images.h"
#include "plot/session/labels.h"
#include "plot/session/layout.h"

namespace {

struct State {
    bool redraw = true;          ///< what is drawn is kept for a replay
    int shadow = 0;              ///< copies of the texts' drop shadow
    bool foreign_window = false; ///< something is asked of another program's window
    bool share = false;          ///< the window is handed over
} state;

constexpr int kDefaultShadow = 4;

bool is_panel(std::string_view value) {
    Scanner scan(value);
    scan.real();
    scan.literal('x');
    scan.real();
    for (int i = 0; i < 2; ++i) {
        scan.literal('+');
        scan.real();
    }
    return !scan.failed() && scan.at_end();
}

void set_overlays(std::string_view value) {
    Scanner scan(value);
    if (const auto base = scan.integer()) PLT_set_overlay_base(*base);
    scan.literal(':');
    if (const auto count = scan.integer()) PLT_set_num_overlay(*count);
}

void set_lat_lon_lines(std::string_view value) {
    Scanner scan(value);
    const auto lat = scan.real();
    scan.literal(':');
    const auto lon = scan.real();
    scan.literal(':');
    const auto extra = scan.integer();
    scan.literal(':');
    const auto dot = scan.integer();
    if (lat) MAP_latlon(dot.value_or(0), extra.value_or(0), *lat, lon.value_or(*lat));
}

void set_plot_skip(std::string_view value) {
    Scanner scan(value);
    const auto x = scan.integer();
    scan.literal(':');
    if (x) CONT_set_skip(*x, scan.integer().value_or(*x));
}

void set_plot_offset(std::string_view value) {
    Scanner scan(value);
    const auto x = scan.real();
    scan.literal(':');
    if (x) CONT_set_plot_offset(*x, scan.real().value_or(*x));
}

/// "columns x rows + column + row", rows counted from the top; a column count up to 1 makes all four
/// fractions of the page.
void set_panel(std::string_view value) {
    Scanner scan(value);
    const auto columns = scan.real();
    scan.literal('x');
    const auto rows = scan.real();
    scan.literal('+');
    const auto column = scan.real();
    scan.literal('+');
    const auto row = scan.real();
    if (scan.failed()) return;
    const PanelFractions panel = panel_fractions(*columns, *rows, *column, *row);
    if (!panel.meets_page()) {
        MESS_print(kError, "PLT_param_decode: No room in this panel: %s\n", std::string(value).c_str());
        VYX_exit(kExitGraphics);
    }
    GPH_set_view_size(panel.width, panel.height, panel.x, panel.y);
}

void set_bar(std::string_view value) {
    CONT_set_bar(2);
    Scanner scan(value);
    const auto min = scan.real();
    scan.literal(':');
    const auto max = scan.real();
    if (!scan.failed()) CONT_set_bar_range(*max, *min);
}

std::optional<int> number_in(ParamValue value) {
    return Scanner(value.value_or("")).integer();
}

void set_local_priority(State &, ParamValue value) {
    if (const auto number = number_in(value)) DOM_set_loc_prior(*number);
}

void set_shadow(State &s, ParamValue value) {
    const int copies = number_in(value).value_or(0);
    s.shadow = copies < 1 ? kDefaultShadow : copies;
}

void show_full_view(State &, ParamValue) {
    PLT_set_view_offset(0);
}

void show_full_labels(State &s, ParamValue value) {
    show_full_view(s, value);
    PLT_set_full_lab(1);
}

void set_ps_color(State &, ParamValue) {
    gps_set_colorPS(true);
    gset_inverse(1);
}

void set_rock(State &, ParamValue) {
    gset_loop_direction(kRockForward);
    PLT_rock_animation();
}

/// Without a value the word changes nothing.
void set_font(State &, ParamValue value) {
    if (value && !value->empty()) GPH_set_def_font(*value);
}

/// A setter that takes the value's text, empty without one.
template <void (*Set)(std::string_view)> void with_text(State &, ParamValue value) {
    Set(value.value_or(""));
}

/// A setter whose number the word itself means.
template <auto Set, int Number> void with(State &, ParamValue) {
    Set(Number);
}

void share_window(State &s, ParamValue value) {
    gshare_window(value.value_or(""));
    s.share = true;
}

template <PixMode Mode> void set_pix_mode(State &s, ParamValue) {
    gset_pix_mode(Mode);
    s.foreign_window = true;
}

template <DumpType Kind> void dump(State &, ParamValue value) {
    PLT_set_dump(Kind, value.value_or(""));
}

void set_min_size(State &, ParamValue value) {
    FILE_set_min_size(std::max(number_in(value).value_or(0), 0));
}

using Row = ParamRow<State>;
constexpr Row kMinSize{{"min_size", PARAM_integer, "a number of bytes"}, set_min_size};

/// The first row that fits wins.
constexpr std::array kParams{
    Row{{"full"}, show_full_view},
    Row{{"fullab"}, show_full_labels},
    Row{{"nopage"}, with<MESS_set_page, 0>},
    Row{{"page"}, with<MESS_set_page, 1>},
    Row{{"noredraw"}, [](State &s, ParamValue) { s.redraw = false; }},
    Row{{"id"}, with<CTY_set_id_type, 0>},
    Row{{"wmo"}, with<CTY_set_id_type, 1>},
    Row{{"cod_wmo"}, with<CTY_set_id_type, 2>},
    Row{{"tz", PARAM_text}, with_text<DATE_set_TZ>},
    Row{{"over", PARAM_one_or_two, "one or two numbers"}, with_text<set_overlays>},
    Row{{"lalo", PARAM_up_to_four, "up to four numbers"}, with_text<set_lat_lon_lines>},
    Row{{"plt_skip", PARAM_one_or_two, "one or two numbers"}, with_text<set_plot_skip>},
    Row{{"plt_off", PARAM_one_or_two, "one or two numbers"}, with_text<set_plot_offset>},
    Row{{"loc_pr", PARAM_integer, "a whole number"}, set_local_priority},
    Row{{"vp_size", is_panel, "COLUMNSxROWS+COLUMN+ROW"}, with_text<set_panel>},
    Row{{"font", PARAM_text}, set_font},
    Row{{"gif_inter"}, with<GIF_interlace, 1>},
    Row{{"gif_norm"}, with<GIF_interlace, 0>},
    Row{{"gif_trans"}, with<GIF_transparent, 1>},
    Row{{"inv"}, with<gset_inverse, 1>},
    Row{{"nolooptitle"}, with<gset_loop_title, 0>},
    Row{{"clear"}, set_pix_mode<PixMode::clear>},
    Row{{"new"}, set_pix_mode<PixMode::new_frame>},
    Row{{"kill"}, set_pix_mode<PixMode::finish>},
    Row{{"share", PARAM_integer, "a whole number"}, share_window},
    Row{{"lcmap"}, with<gset_local_colormap, 1>},
    Row{{"nolcmap"}, with<gset_local_colormap, 0>},
    Row{{"rwclr"}, with<gset_rw_colors, 1>},
    Row{{"norwclr"}, with<gset_rw_colors, 0>},
    Row{{"pscolor"}, set_ps_color},
    Row{{"psrev"}, [](State &, ParamValue) { gps_set_reverse(true); }},
    Row{{"bar", PARAM_two, "MIN:MAX"}, with_text<set_bar>},
    Row{{"nobar"}, with<CONT_set_bar, kBarOff>},
    Row{{"shadow", PARAM_integer, "a whole number"}, set_shadow},
    kMinSize,
    Row{{"anim", PARAM_text}, with_text<PLT_set_animation>},
    Row{{"rock"}, set_rock},
    Row{{"gif", PARAM_text}, dump<kDumpGif>},
    Row{{"png", PARAM_text}, dump<kDumpPng>},
    Row{{"img", PARAM_text}, dump<kDumpImg>},
    Row{{"xwd", PARAM_text}, dump<kDumpXwd>}};

/// What "out_file" takes.
constexpr std::array kOutputs{Row{{"gif", PARAM_text}, dump<kDumpGif>},
                              Row{{"png", PARAM_text}, dump<kDumpPng>}};

} // namespace

std::span<const WordRule> PLT_param_words() {
    static constexpr auto words = PARAM_rules(kParams);
    return words;
}

void PLT_param_min_size() {
    for (const std::string &item : RES_getvals("plot_param"))
        PARAM_take(trimmed(item), std::array{kMinSize}, state);
}

void PLT_param_decode() {
    for (const std::string &item : RES_getvals("plot_param")) PARAM_take(trimmed(item), kParams, state);
    for (const std::string &item : RES_getvals("out_file")) PARAM_take(trimmed(item), kOutputs, state);
}

void PLT_param_apply() {
    // Nobody asks for the metafile of a picture that is written as an image.
    if (!state.redraw || PLT_wants_image()) {
        gset_redraw(0);
        gclear_objs();
    }
    if (state.share && (!gtype_is_WIN() || gtype_is_memory()))
        MESS_print(kWarn, "plot_param: Only a window of an X server can be drawn into by others: share\n");
    if (state.foreign_window && gget_win_type() != DeviceKind::pix)
        MESS_print(kWarn,
                   "plot_param: \"clear\", \"new\" and \"kill\" mean windows of other programs (-de w)\n");
    if (state.shadow > 0 && !gtype_is_WIN_PIX())
        MESS_print(kWarn, "plot_param: Only pictures of pixels have shadows: shadow\n");
    if (state.shadow > 0) gset_font_drop(state.shadow);
}
