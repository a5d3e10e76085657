#include "radar/summary/plot.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>
#include <vector>

#include "graphics/kernel/helpers.h"
#include "lib/files/kept_input.h"
#include "lib/files/naming.h"
#include "lib/options/flags.h"
#include "lib/report/message.h"
#include "lib/report/misfits.h"
#include "lib/report/process.h"
#include "lib/resources/database.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"
#include "lib/time/date.h"
#include "plot/background/background_map.h"
#include "plot/colour/attribute.h"
#include "plot/colour/levels.h"
#include "plot/session/labels.h"
#include "plot/session/layout.h"
#include "plot/session/outcome.h"
#include "plot/symbols/station.h"
#include "plot/symbols/variables.h"
#include "plot/symbols/watch.h"
#include "plot/symbols/wind.h"
#include "radar/common/driver.h"
#include "radar/common/intensity_legend.h"
#include "radar/summary/fields.h"
#include "radar/summary/reader.h"
#include "radar/summary/state.h"

namespace {

constexpr std::string_view kVariableFile = "rad.var";

RadPlotState state;

/// Tells once what the open file lacks. True when that is nothing.
bool tell_faults(const std::string &name) {
    const std::vector<std::string> faults = RAD_faults(state.file);
    const bool whole = FILE_input_is_whole(name) && faults.empty();
    if (std::exchange(state.told, name) == name) return whole;
    for (const std::string &fault : faults)
        MESS_print(kWarn, "RAD_open_file: %s: %s\n", name.c_str(), fault.c_str());
    return whole;
}

bool refuse(const std::string &name, int fault) {
    MESS_print(kError, "Unable to open file:%s\n", name.c_str());
    if (!RAD_fault().empty())
        MESS_print(kError, "RAD_open_file: %s: %s\n", name.c_str(), RAD_fault().c_str());
    else
        MESS_print_fault(kError, "RAD_open_file", name, fault);
    return false;
}

const char *summary_name(SummaryKind kind) {
    return kind == SummaryKind::coded_message ? "Radar Coded Message summary"
                                              : "Manually Digitized Radar summary";
}

/// The upper left labels tell the variables, each in a line of its own.
void label_variables() {
    PLT_set_overlay(0);
    if (state.info.kind != SummaryKind::none) PLT_label_up_left(summary_name(state.info.kind));
    for (const PlotVariable &variable : VAR_get_vars()) {
        if (!VAR_is_type_PLOT(variable) || !VAR_is_LABEL(variable)) continue;
        PLT_label_up_left(VAR_make_var_form_datatype(variable));
        if (PLT_next_overlay() < 0) WORD_tell("variable", "there is no room for the labels of all variables");
    }
}

/// The time in the file, else that of its name.
DateRecord date_of_file() {
    return is_missing(state.info.date.year) ? FILE_get_date() : state.info.date;
}

void label_date() {
    const DateRecord date = date_of_file();
    const bool known = !is_missing(date.year);
    const std::string label = known ? DATE_make_label(date) : std::string();
    PLT_label_up_right(label);
    MESS_print(kMess, "Date: %s\n", known ? label.c_str() : "not known");
    FILE_set_data_date(date);
}

int plot_newest(PlotDomain & /*domain*/) {
    return RAD_plot_nextfile();
}

RadarSteps driver_steps() {
    RadarSteps steps{[](std::string_view name) { return RAD_open_file(name) == 1; }, [] { RAD_close_file(); },
                     [] { return RAD_grid_domain(state.info.kind); }, [] { RAD_plot_frame(); }};
    steps.mouse = RAD_callback;
    steps.plot = RAD_plot;
    if (state.options.common.refresh) steps.next_file = plot_newest;
    steps.strict = state.options.common.strict;
    return steps;
}

void set_ring(RadOptions &options, ParamValue radius) {
    constexpr float kLeast = 10;
    Scanner scan(radius.value_or(""));
    options.ring_nm = std::max(scan.real().value_or(kDefaultRingNm), kLeast);
    if (scan.rest().starts_with(':'))
        WORD_tell("plot_param", format_text("\"%s\" of dist is not drawn, a station has one circle",
                                            std::string(scan.rest().substr(1)).c_str()));
}

using Row = ParamRow<RadOptions>;
constexpr std::array kParams{Row{{"dist", PARAM_number, "a distance"}, set_ring},
                             Row{{"nodist"}, [](RadOptions &o, ParamValue) { o.ring_nm = 0; }},
                             Row{{"numplt", PARAM_integer, "a number of storms"},
                                 [](RadOptions &o, ParamValue value) {
                                     if (value)
                                         o.most_items = Scanner(*value).integer().value_or(o.most_items);
                                 }},
                             Row{{"noclar"}, [](RadOptions &o, ParamValue) { o.hide_clear = true; }},
                             Row{{"slabel"}, [](RadOptions &o, ParamValue) { o.watch_label = true; }}};

/// The kind of the chosen file decides which variables the menu offers.
void choose_model() {
    const MessagePause told_when_plotted(~kPrint);
    const std::string name = FILE_get_filename();
    int kind = 0;
    const int file = FILE_exist(name) == 0 ? -1 : RAD_open(name, kind);
    if (file < 0) return;
    RadarInfo info;
    RAD_getinfo(file, info); // what it lacks leaves the kind open
    RAD_close(file);
    if (info.kind != SummaryKind::none)
        VAR_set_model_str(info.kind == SummaryKind::coded_message ? "rcm" : "mdr");
}

int ask_variable() {
    choose_model();
    (void)VAR_read_menu(); // an empty menu still has the way back
    std::vector<std::string> names;
    const int chosen = VAR_menu("\n        Variable Menu\n", "Enter the variable: ", names);
    if (chosen == kMenuBack) return 0;
    if (chosen < 0 && chosen != kMissing) VYX_exit(kExitOk);
    (void)VAR_setup(names); // their number is known
    return chosen;
}

} // namespace

RadPlotState &RAD_state() {
    return state;
}

std::span<const WordRule> RAD_param_words() {
    static constexpr auto words = PARAM_rules(kParams);
    return words;
}

void RAD_set_date(const DateRecord *date) {
    state.base_date = date != nullptr ? *date : FILE_get_date();
}

void RAD_set_prompt_variable(int flag) {
    state.prompting = flag != 0;
}

int RAD_prompt_variable() {
    if (!std::exchange(state.variables_read, true)) VAR_open_file(kVariableFile); // told where it fails
    if (!state.prompting) return 0;
    if (RES_get("variable") != nullptr) {
        state.prompting = false;
        (void)VAR_setup(RES_getvals("variable")); // none is no error
        return 1;
    }
    if (FLAG_batch() == 1) {
        state.prompting = false;
        (void)VAR_setup(std::span<const std::string>());
        return kMissing;
    }
    return ask_variable();
}

void RAD_check_variables() {
    for (const std::string &entry : RES_getvals("variable")) {
        const std::string_view name = VAR_base_name(trimmed(entry));
        if (!name.empty() && std::ranges::find(RAD_field_names(), name) == RAD_field_names().end())
            WORD_unknown("variable", name, RAD_field_names());
    }
}

void RAD_plot_param() {
    state.options = {};
    for (const std::string &given : RES_getvals("plot_param")) {
        const std::string_view word = trimmed(given);
        if (!PARAM_take(word, kParams, state.options))
            (void)RADAR_option_word(word, state.options.common); // words of others are told elsewhere
    }
    WATCH_set_label(state.options.watch_label ? 1 : 0);
}

int RAD_open_file(std::string_view name) {
    const std::string copy(name);
    RAD_close_file();
    int kind = 0;
    state.file = RAD_open(copy, kind);
    if (state.file < 0) return refuse(copy, errno) ? 1 : 0;
    state.info = RadarInfo();
    RAD_getinfo(state.file, state.info); // what it lacks is told
    const bool is_summary = state.info.kind != SummaryKind::none;
    if (!is_summary) MESS_print(kWarn, "RAD_open_file: %s: The file has no radar summary\n", copy.c_str());
    const bool whole = tell_faults(copy) && is_summary;
    if (!whole && state.options.common.strict) {
        MESS_print(kError, "RAD_open_file: Incomplete file:%s\n", copy.c_str());
        RAD_close_file();
        return 0;
    }
    label_date();
    return 1;
}

int RAD_close_file() {
    RAD_close(state.file);
    state.file = -1;
    return 1;
}

int RAD_plot_frame() {
    GPH_trans(kDataTransform);
    if (state.info.kind == SummaryKind::none) PLT_miss_picture(); // told when it was opened
    label_variables();
    if (VAR_has("watch") == 1) WATCH_decode(date_of_file());
    CONT_init();
    CONT_param_decode();
    const bool over_map = CONT_get_line_look().over_map;
    MAP_draw(kMapUnderlay);
    if (over_map) MAP_draw(kMapOverlay);
    RAD_plot_summary();
    if (!over_map) MAP_draw(kMapOverlay);
    RAD_plot_data();
    RAD_draw_label();
    return 0;
}

int RAD_draw_label() {
    constexpr float kInset = 0.01F, kBelow = 0.018F, kTextHeight = 0.015F;
    Attribute text;
    ATTRIB_get("color_text", ATTRIB_text_default(), text);
    PLT_labels();
    const bool shown = FLAG_getplot(kPlotText) > 0 || CONT_get_bar() >= 1;
    if (FLAG_getplot(kPlotData) < 1 || VAR_get_num() < 1 || VAR_base_name(VAR_get_name(0)) != "amv" ||
        !shown || text.color < 0)
        return 0;
    float scale = 1;
    (void)RES_getval("plot_scale", scale); // unset, the default stays
    GPH_trans(kViewTransform);
    const Rect view = PLT_get_view();
    const float length = scale * kVectorLength * view.height(), y = view.ymin - kBelow;
    constexpr float kWesterly = 270;
    GPH_line_attr(nullptr);
    GPH_line_attr(&text);
    GPH_text_attr(&text, kTextHeight);
    GPH_text_align(kAlignRight, kAlignHalf);
    WIND_vect(view.xmax - kInset - length, y, kWesterly, length);
    GPH_pprint({view.xmax - 2 * kInset - length, y}, "Area Movement: 25 knts");
    GPH_trans(kDataTransform);
    return 0;
}

void RAD_callback(int /*kind*/, std::string_view event, float x, float y) {
    RADAR_on_event(event, x, y, RAD_read_place);
    RAD_flash_levels(event, x, y);
}

int RAD_plot_nextfile() {
    RADAR_next_file(driver_steps());
    return 0;
}

int RAD_plot(PlotDomain &domain) {
    if (!RADAR_is_open()) {
        RAD_plot_param();
        state.stations.reset();
    }
    RADAR_plot(driver_steps(), state.base_date, domain);
    return 0;
}
