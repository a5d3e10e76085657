#include "radar/nids/plot.h"

#include <algorithm>
#include <array>
#include <cerrno>

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "lib/files/kept_input.h"
#include "lib/files/naming.h"
#include "lib/report/message.h"
#include "lib/report/misfits.h"
#include "lib/resources/database.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"
#include "plot/background/background_map.h"
#include "plot/bar/color_bar.h"
#include "plot/colour/levels.h"
#include "plot/map/current_map.h"
#include "plot/session/labels.h"
#include "plot/symbols/variables.h"
#include "plot/symbols/watch.h"
#include "radar/common/beam_location.h"
#include "radar/common/driver.h"
#include "radar/nids/image.h"
#include "radar/nids/product_reader.h"
#include "radar/nids/reader.h"
#include "radar/nids/state.h"
#include "radar/nids/survey.h"

namespace {

using namespace std::string_view_literals;

NidsPlotState &state = NIDS_state();

/// Unset fields of the date take the product's.
void complete_date(DateRecord &date, const DateRecord &product) {
    const auto take = [](int &field, int value) {
        if (is_missing(field)) field = value;
    };
    take(date.year, product.year);
    take(date.month, product.month);
    take(date.day, product.day);
    take(date.hour, product.hour);
    take(date.minute, product.minute);
}

/// The product's domain; one without a bin size gets the view of an ordinary radar picture, so that its map
/// and storms have a place.
PlotDomain view_domain() {
    constexpr float kOrdinaryBinNm = 0.54F;
    PlotDomain domain = state.info.domain;
    if (domain.dx > 0) return domain;
    const MapDomainScope scope(domain);
    domain.dx = domain.dy = MAP_factor(domain.clat) * kOrdinaryBinNm * kKmPerNauticalMile / kKmPerPlaneUnit;
    return domain;
}

/// Tells once, however often a window draws a file anew, what of it is missing or not drawn. False for a cut
/// file of which nothing is left to draw, or that the user wants whole.
bool survey_file(const std::string &name) {
    NidsSurvey survey = NIDS_survey(NIDS_reader(), state.info);
    if (survey.damage.empty() && !FILE_input_is_whole(name)) survey.damage = "its input ended early";
    if (NIDS_get_header(state.info) != 1) return false;
    if (name != state.surveyed) NIDS_tell_survey(survey, state.info, name);
    state.surveyed = name;
    return survey.complete() || (state.info.packet != 0 && !state.options.strict);
}

int plot_newest(PlotDomain & /*domain*/) {
    return NIDS_plot_nextfile();
}

RadarSteps driver_steps() {
    RadarSteps steps{[](std::string_view name) { return NIDS_open_file(name) == 1; },
                     [] { NIDS_close_file(); }, view_domain, [] { NIDS_plot_frame(); }};
    steps.mouse = NIDS_callback;
    steps.plot = NIDS_plot;
    if (state.options.refresh) steps.next_file = plot_newest;
    steps.strict = state.options.strict;
    return steps;
}

using Param = ParamRow<NidsPlotState>;
constexpr std::array kParams{
    Param{{"graph"}, [](NidsPlotState &s, ParamValue) { s.graph = true; }},
    Param{{"nograph"}, [](NidsPlotState &s, ParamValue) { s.graph = false; }},
    Param{{"strong"}, [](NidsPlotState &s, ParamValue) { s.strong_only = true; }},
    Param{{"numplt", PARAM_integer, "a number of storms"}, [](NidsPlotState &s, ParamValue value) {
              const auto count = Scanner(value.value_or("")).integer();
              if (count && *count >= 0) s.most_storms = *count;
          }}};

} // namespace

const NidsInfo &NIDS_get_info() {
    return state.info;
}

std::span<const WordRule> NIDS_param_words() {
    static constexpr auto words = PARAM_rules(kParams);
    return words;
}

void NIDS_plot_param() {
    for (const std::string &given : RES_getvals("plot_param"))
        if (const std::string_view word = trimmed(given); !RADAR_option_word(word, state.options))
            PARAM_take(word, kParams, state);
}

void NIDS_check_variables() {
    static constexpr std::array words{"comp"sv,  "track"sv, "id"sv,       "tvs"sv,      "meso"sv,  "posh"sv,
                                      "poh"sv,   "hsize"sv, "vil"sv,      "dbzm"sv,     "dbzht"sv, "top"sv,
                                      "table"sv, "mvmt"sv,  "wave_dir"sv, "move_spd"sv, "watch"sv};
    const std::vector<std::string> wanted = RES_getvals("variable");
    if (wanted.empty()) return;
    const std::vector<std::string> described = VAR_known_names(kVariableFile);
    std::vector<std::string_view> known(words.begin(), words.end());
    known.insert(known.end(), described.begin(), described.end());
    for (const std::string &entry : wanted) {
        const std::string_view text = trimmed(entry), name = text.substr(0, text.find('-'));
        if (!name.empty() && std::ranges::find(known, name) == known.end())
            WORD_unknown("variable", name, known);
    }
}

void NIDS_set_date(const DateRecord *date) {
    state.base_date = date != nullptr ? *date : FILE_get_date();
}

int NIDS_open_file(std::string_view name) {
    const std::string copy(name);
    NIDS_close_file();
    NIDS_forget_image();
    if (!NIDS_open_stream(name)) {
        const int fault = errno;
        MESS_print(kWarn, "NIDS_open_file: Unable to open file:%s\n", copy.c_str());
        MESS_print_fault(kWarn, "NIDS_open_file", copy, fault);
        return 0;
    }
    if (NIDS_get_header(state.info) != 1) {
        NIDS_close_stream();
        MESS_print(kWarn, "NIDS_open_file: Unable to read file:%s\n", copy.c_str());
        return 0;
    }
    state.open = true;
    if (!survey_file(copy)) {
        NIDS_close_file();
        MESS_print(kWarn, "NIDS_open_file: Unable to read file:%s\n", copy.c_str());
        return 0;
    }
    state.file_date = state.base_date;
    complete_date(state.file_date, state.info.date);
    FILE_set_data_date(state.info.date);
    if (CONT_get_bar() != kBarOff) CONT_set_bar(1);
    return 1;
}

int NIDS_close_file() {
    if (!state.open) return 0;
    NIDS_close_stream();
    state.open = false;
    return 1;
}

int NIDS_rewind_file() {
    return state.open && NIDS_get_header(state.info) == 1 ? 1 : 0;
}

int NIDS_plot_frame() {
    MAP_draw(kMapUnderlay);
    NIDS_print_info(state.info);
    NIDS_plot_summary();
    RADAR_draw_bar();
    MAP_draw(kMapOverlay);
    (void)NIDS_plot_data(); // nothing where the data are not asked for
    PLT_labels();
    return 0;
}

void NIDS_callback(int /*kind*/, std::string_view event, float x, float y) {
    RADAR_on_event(event, x, y, NIDS_read_place, [=] {
        NIDS_print_loc_elev(event, x, y, state.info.domain.clat, state.info.domain.clon,
                            state.info.elevation);
    });
    CONT_flash_value(event, x, y);
}

int NIDS_plot_nextfile() {
    RADAR_next_file(driver_steps());
    return 0;
}

int NIDS_plot(PlotDomain &domain) {
    if (!RADAR_is_open()) {
        const std::vector<std::string> variables = RES_getvals("variable");
        if (std::ranges::find(variables, "watch") != variables.end()) WATCH_decode(state.base_date);
        NIDS_plot_param();
    }
    RADAR_plot(driver_steps(), state.base_date, domain);
    return 0;
}
