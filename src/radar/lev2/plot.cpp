#include "radar/lev2/plot.h"

#include <algorithm>
#include <array>

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "lib/files/kept_input.h"
#include "lib/files/naming.h"
#include "lib/report/message.h"
#include "lib/report/process.h"
#include "lib/resources/database.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"
#include "lib/time/date.h"
#include "plot/background/background_map.h"
#include "plot/colour/levels.h"
#include "plot/map/current_map.h"
#include "plot/places/region.h"
#include "plot/session/labels.h"
#include "radar/common/driver.h"
#include "radar/lev2/reader.h"
#include "radar/lev2/volume_reader.h"

namespace {

constexpr int kMostRangeKm = 2000;

Lev2PlotState state;

bool wants_list() {
    const std::vector<std::string> variables = RES_getvals("variable");
    return std::ranges::any_of(variables,
                               [](const std::string &word) { return stricmp(word, kLev2ListWord) == 0; });
}

void close_volume() {
    if (state.open) LEV2_close_file();
    state.open = false;
}

PlotDomain radar_domain() {
    LEV2_get_domain(state.domain, state.info.lat, state.info.lon, static_cast<float>(state.range_km));
    MESS_print(kOut2, "Product domain: ");
    DOM_print(kOut1, state.domain);
    return state.domain;
}

int plot_newest(PlotDomain & /*domain*/) {
    return LEV2_plot_nextfile();
}

RadarSteps driver_steps() {
    RadarSteps steps{LEV2_open_volume, close_volume, radar_domain, [] { LEV2_plot_frame(); }};
    steps.mouse = LEV2_callback;
    steps.plot = LEV2_plot;
    if (state.options.refresh) steps.next_file = plot_newest;
    steps.strict = state.options.strict;
    return steps;
}

/// Prints the cuts of the first file.
void list_cuts() {
    std::string name;
    FILE_set_date(&state.base_date, name);
    if (!LEV2_open_volume(name)) VYX_exit(kExitNoFile);
    MESS_print(kPrint, "%s  %s\n", state.info.id.c_str(), DATE_make_label(state.info.date).c_str());
    LEV2_print_cuts(LEV2_list_cuts());
    close_volume();
}

using Param = ParamRow<Lev2PlotState>;
constexpr std::array kParams{
    Param{{"superres"}, [](Lev2PlotState &s, ParamValue) { s.superres = true; }},
    Param{{"range", PARAM_number, "a number of km"}, [](Lev2PlotState &s, ParamValue value) {
              const auto range = Scanner(value.value_or("")).integer();
              if (range && *range >= 1) s.range_km = std::min(*range, kMostRangeKm);
          }}};

} // namespace

Lev2PlotState &LEV2_state() {
    return state;
}

bool LEV2_open_volume(std::string_view name) {
    const std::string copy(name);
    close_volume();
    LEV2_forget_sweep();
    if (LEV2_open_file(name) != 1) return false;
    if (LEV2_get_header(state.info) != 0) {
        LEV2_close_file();
        MESS_print(kWarn, "LEV2_open_file: Unable to read file:%s\n", copy.c_str());
        return false;
    }
    state.open = true;
    if (state.options.strict && !wants_list() &&
        !(FILE_input_is_whole(copy) && LEV2_sweep_is_whole(LEV2_reader()))) {
        close_volume();
        MESS_print(kWarn, "LEV2_open_file: Incomplete volume:%s\n", copy.c_str());
        return false;
    }
    FILE_set_data_date(state.info.date);
    // The files of a series need not come from one radar.
    LEV2_get_domain(state.domain, state.info.lat, state.info.lon, static_cast<float>(state.range_km));
    return true;
}

std::span<const WordRule> LEV2_param_words() {
    static constexpr auto words = PARAM_rules(kParams);
    return words;
}

void LEV2_plot_param() {
    for (const std::string &given : RES_getvals("plot_param"))
        if (const std::string_view word = trimmed(given); !RADAR_option_word(word, state.options))
            PARAM_take(word, kParams, state);
}

void LEV2_check_variables() {
    for (const std::string &entry : RES_getvals("variable"))
        if (const std::string_view word = trimmed(entry); !word.empty() && stricmp(word, kLev2ListWord) != 0)
            LEV2_check_choice(word);
}

void LEV2_set_date(const DateRecord *date) {
    state.base_date = date != nullptr ? *date : FILE_get_date();
}

int LEV2_get_domain(PlotDomain &domain, float lat, float lon, float range) {
    constexpr float kStepNm = 0.54F; // a kilometre
    domain = PlotDomain{};
    DOM_init(domain);
    domain.proj = kProjPolar;
    domain.plat = domain.clat = lat;
    domain.plon = domain.clon = lon;
    domain.ny = static_cast<int>(2 * range + 1);
    domain.nx = static_cast<int>(3 * range + 1);
    const MapDomainScope scope(domain);
    domain.dx = domain.dy = MAP_factor(lat) * (kStepNm * kKmPerNauticalMile) / kKmPerPlaneUnit;
    return 1;
}

int LEV2_plot_frame() {
    MAP_draw(kMapUnderlay);
    LEV2_print_info();
    LEV2_plot_summary();
    RADAR_draw_bar();
    MAP_draw(kMapOverlay);
    PLT_labels();
    return 0;
}

void LEV2_print_info() {
    MESS_print(kMess, "\n");
}

void LEV2_callback(int /*kind*/, std::string_view event, float x, float y) {
    RADAR_on_event(event, x, y, LEV2_read_place);
}

int LEV2_plot_nextfile() {
    RADAR_next_file(driver_steps());
    return 0;
}

int LEV2_plot(PlotDomain &domain) {
    if (!RADAR_is_open()) {
        LEV2_plot_param();
        if (wants_list()) {
            list_cuts();
            return 0;
        }
    }
    RADAR_plot(driver_steps(), state.base_date, domain);
    return 0;
}
