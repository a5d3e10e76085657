#include "plot/session/parameters.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "graphics/devices/common/panel.h"
#include "graphics/devices/print/postscript.h"
#include "graphics/images/formats.h"
#include "graphics/images/image.h"
#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "graphics/text/font.h"
#include "graphics/window/loop.h"
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
    bool redraw = true; ///< what is drawn is kept for a replay
    int shadow = 0;     ///< copies of the texts' drop shadow
} state;

constexpr int kDefaultShadow = 4;

enum class Param {
    full,
    full_labels,
    no_page,
    page,
    no_redraw,
    id_name,
    id_wmo,
    id_coded_wmo,
    time_zone,
    overlays,
    lat_lon_lines,
    plot_skip,
    plot_offset,
    local_priority,
    panel,
    font,
    gif_interlaced,
    gif_plain,
    gif_transparent,
    loop_untitled,
    pixmap_mode,
    inverse,
    local_colors,
    shared_colors,
    rw_colors,
    ro_colors,
    ps_color,
    ps_reverse,
    bar,
    no_bar,
    shadow,
    min_size,
    animation,
    rock,
    gif,
    png,
    img,
    xwd
};

struct ParamWord {
    std::string_view word;
    bool prefix; ///< a value may follow the word and one separator character
    Param param;
};
/// The first word that fits wins.
constexpr std::array kParamWords{ParamWord{"full", false, Param::full},
                                 ParamWord{"fullab", false, Param::full_labels},
                                 ParamWord{"nopage", false, Param::no_page},
                                 ParamWord{"page", false, Param::page},
                                 ParamWord{"noredraw", false, Param::no_redraw},
                                 ParamWord{"id", false, Param::id_name},
                                 ParamWord{"wmo", false, Param::id_wmo},
                                 ParamWord{"cod_wmo", false, Param::id_coded_wmo},
                                 ParamWord{"tz", true, Param::time_zone},
                                 ParamWord{"over", true, Param::overlays},
                                 ParamWord{"lalo", true, Param::lat_lon_lines},
                                 ParamWord{"plt_skip", true, Param::plot_skip},
                                 ParamWord{"plt_off", true, Param::plot_offset},
                                 ParamWord{"loc_pr", true, Param::local_priority},
                                 ParamWord{"vp_size", true, Param::panel},
                                 ParamWord{"font", true, Param::font},
                                 ParamWord{"gif_inter", false, Param::gif_interlaced},
                                 ParamWord{"gif_norm", false, Param::gif_plain},
                                 ParamWord{"gif_trans", false, Param::gif_transparent},
                                 ParamWord{"inv", false, Param::inverse},
                                 ParamWord{"nolooptitle", false, Param::loop_untitled},
                                 ParamWord{"clear", false, Param::pixmap_mode},
                                 ParamWord{"new", false, Param::pixmap_mode},
                                 ParamWord{"kill", false, Param::pixmap_mode},
                                 ParamWord{"lcmap", false, Param::local_colors},
                                 ParamWord{"nolcmap", false, Param::shared_colors},
                                 ParamWord{"rwclr", false, Param::rw_colors},
                                 ParamWord{"norwclr", false, Param::ro_colors},
                                 ParamWord{"pscolor", false, Param::ps_color},
                                 ParamWord{"psrev", false, Param::ps_reverse},
                                 ParamWord{"bar", true, Param::bar},
                                 ParamWord{"nobar", false, Param::no_bar},
                                 ParamWord{"shadow", true, Param::shadow},
                                 ParamWord{"min_size", true, Param::min_size},
                                 ParamWord{"anim", true, Param::animation},
                                 ParamWord{"rock", false, Param::rock},
                                 ParamWord{"gif", true, Param::gif},
                                 ParamWord{"png", true, Param::png},
                                 ParamWord{"img", true, Param::img},
                                 ParamWord{"xwd", true, Param::xwd}};

/// What the value behind a word must be; words that are not named here take any text, or none.
struct ValueRule {
    Param param;
    bool (*fits)(std::string_view value);
    std::string_view wanted;
};

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

constexpr std::array kValueRules{ValueRule{Param::overlays, PARAM_one_or_two, "one or two numbers"},
                                 ValueRule{Param::lat_lon_lines, PARAM_up_to_four, "up to four numbers"},
                                 ValueRule{Param::plot_skip, PARAM_one_or_two, "one or two numbers"},
                                 ValueRule{Param::plot_offset, PARAM_one_or_two, "one or two numbers"},
                                 ValueRule{Param::local_priority, PARAM_integer, "a whole number"},
                                 ValueRule{Param::panel, is_panel, "COLUMNSxROWS+COLUMN+ROW"},
                                 ValueRule{Param::bar, PARAM_two, "MIN:MAX"},
                                 ValueRule{Param::shadow, PARAM_integer, "a whole number"},
                                 ValueRule{Param::min_size, PARAM_integer, "a number of bytes"}};

WordRule described(const ParamWord &row) {
    const auto rule = std::ranges::find(kValueRules, row.param, &ValueRule::param);
    if (!row.prefix) return {row.word};
    if (rule == kValueRules.end()) return {row.word, PARAM_text};
    return {row.word, rule->fits, rule->wanted};
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

/// `value` is what follows the word and one separator; empty when nothing does.
void apply(Param param, std::string_view value) {
    const std::optional<int> number = Scanner(value).integer();
    switch (param) {
    case Param::full: PLT_set_view_offset(0); break;
    case Param::full_labels:
        PLT_set_view_offset(0);
        PLT_set_full_lab(1);
        break;
    case Param::no_page: MESS_set_page(0); break;
    case Param::page: MESS_set_page(1); break;
    case Param::no_redraw: state.redraw = false; break;
    case Param::id_name: CTY_set_id_type(0); break;
    case Param::id_wmo: CTY_set_id_type(1); break;
    case Param::id_coded_wmo: CTY_set_id_type(2); break;
    case Param::time_zone: DATE_set_TZ(value); break;
    case Param::overlays: set_overlays(value); break;
    case Param::lat_lon_lines: set_lat_lon_lines(value); break;
    case Param::plot_skip: set_plot_skip(value); break;
    case Param::plot_offset: set_plot_offset(value); break;
    case Param::local_priority:
        if (number) DOM_set_loc_prior(*number);
        break;
    case Param::panel: set_panel(value); break;
    case Param::font:
        if (!value.empty()) GPH_set_def_font(value);
        break;
    case Param::gif_interlaced: GIF_interlace(1); break;
    case Param::gif_plain: GIF_interlace(0); break;
    case Param::gif_transparent: GIF_transparent(1); break;
    case Param::loop_untitled: gset_loop_title(0); break;
    case Param::pixmap_mode: break; // concerns the window of another program
    case Param::inverse: gset_inverse(1); break;
    case Param::local_colors: gset_local_colormap(1); break;
    case Param::shared_colors: gset_local_colormap(0); break;
    case Param::rw_colors: gset_rw_colors(1); break;
    case Param::ro_colors: gset_rw_colors(0); break;
    case Param::ps_color:
        gps_set_colorPS(true);
        gset_inverse(1);
        break;
    case Param::ps_reverse: gps_set_reverse(true); break;
    case Param::bar: set_bar(value); break;
    case Param::no_bar: CONT_set_bar(kBarOff); break;
    case Param::shadow: state.shadow = number.value_or(0) < 1 ? kDefaultShadow : *number; break;
    case Param::min_size: FILE_set_min_size(std::max(number.value_or(0), 0)); break;
    case Param::animation: PLT_set_animation(value); break;
    case Param::rock:
        gset_loop_direction(kRockForward);
        PLT_rock_animation();
        break;
    case Param::gif: PLT_set_dump(kDumpGif, value); break;
    case Param::png: PLT_set_dump(kDumpPng, value); break;
    case Param::img: PLT_set_dump(kDumpImg, value); break;
    case Param::xwd: PLT_set_dump(kDumpXwd, value); break;
    }
}

} // namespace

std::span<const WordRule> PLT_param_words() {
    static const std::vector<WordRule> words = [] {
        std::vector<WordRule> rows;
        for (const ParamWord &row : kParamWords) rows.push_back(described(row));
        return rows;
    }();
    return words;
}

void PLT_param_min_size() {
    constexpr std::string_view word = "min_size";
    for (const std::string &item : RES_getvals("plot_param"))
        if (const std::string_view text = trimmed(item); begins_with(text, word))
            apply(Param::min_size, keyword_value(text, word).value_or(""));
}

void PLT_param_decode() {
    for (const std::string &given : RES_getvals("plot_param")) {
        const std::string item(trimmed(given));
        for (const ParamWord &word : kParamWords) {
            if (word.prefix ? !begins_with(item, word.word) : stricmp(item, word.word) != 0) continue;
            apply(word.param, keyword_value(item, word.word).value_or(""));
            break;
        }
    }
    for (const std::string &item : RES_getvals("out_file")) {
        if (begins_with(item, "gif")) PLT_set_dump(kDumpGif, keyword_value(item, "gif").value_or(""));
        if (begins_with(item, "png")) PLT_set_dump(kDumpPng, keyword_value(item, "png").value_or(""));
    }
}

void PLT_param_apply() {
    if (!state.redraw) gset_redraw(0);
    if (state.shadow > 0) gset_font_drop(state.shadow);
}
