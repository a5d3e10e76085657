#include "radar/rcm/plot.h"

#include <algorithm>
#include <array>
#include <cerrno>

#include "graphics/kernel/helpers.h"
#include "lib/files/kept_input.h"
#include "lib/files/naming.h"
#include "lib/options/flags.h"
#include "lib/report/message.h"
#include "lib/report/misfits.h"
#include "lib/resources/database.h"
#include "lib/resources/prompt.h"
#include "lib/text/strings.h"
#include "plot/background/background_map.h"
#include "plot/colour/levels.h"
#include "plot/places/city.h"
#include "plot/session/labels.h"
#include "plot/symbols/variables.h"
#include "plot/symbols/watch.h"
#include "radar/common/driver.h"
#include "radar/common/input.h"
#include "radar/rcm/reader.h"
#include "radar/rcm/state.h"

namespace {

using namespace std::string_view_literals;

constexpr const char *kCityFile = "rad.cty";
constexpr std::size_t kIdLetters = 3, kMostIdBytes = 9;

RcmPlotState state;

/// Four letters of the world's list name the same radar as the three of the country's.
std::string_view national_id(std::string_view id) {
    return id.size() == kIdLetters + 1 ? id.substr(1) : id;
}

bool is_chosen(std::string_view id) {
    return stricmp(id, state.id) == 0 || stricmp(national_id(id), national_id(state.id)) == 0;
}

/// Where the report's radar is: by the city database, else as the report tells.
bool find_place(const RcmReport &report) {
    if (CTY_get_loc(kCityFile, state.id, state.lat, state.lon) == 1 ||
        CTY_get_loc(kCityFile, report.id, state.lat, state.lon) == 1)
        return true;
    state.lat = report.lat;
    state.lon = report.lon;
    return !is_missing(state.lat);
}

bool choose_place(const RcmReport &report) {
    if (find_place(report)) return true;
    MESS_print(kWarn, "RCM_open_file: The place of radar %s is not known\n", report.id.c_str());
    return false;
}

bool refuse(const char *why, std::string_view name) {
    RCM_close_file();
    MESS_print(kWarn, "RCM_open_file: %s:%s\n", why, std::string(name).c_str());
    return false;
}

/// Opens the file and reads the report of the chosen radar.
bool open_report(std::string_view name) {
    const std::string copy(name);
    if (RCM_open_file(copy) != 1) return false;
    bool found = false;
    {
        // What a report lacks is told once, however often a window draws it.
        const MessagePause told_before(state.told == copy ? kError | kWarn : 0U);
        found = RCM_read_report(state.report) == 1;
    }
    state.told = copy;
    if (!found)
        return refuse(state.id.empty() ? "No report" : ("No report of radar " + state.id).c_str(), copy);
    if (state.options.strict && !(state.report.whole && FILE_input_is_whole(copy)))
        return refuse("Incomplete report", copy);
    if (!choose_place(state.report)) {
        RCM_close_file();
        return false;
    }
    RCM_print(kOut2, state.report);
    FILE_set_data_date(state.report.date);
    return true;
}

PlotDomain radar_domain() {
    constexpr int kPoints = 100;
    PlotDomain domain = RCM_grid(state.lat, state.lon).plane;
    domain.nx = domain.ny = kPoints;
    return domain;
}

int plot_newest(PlotDomain & /*domain*/) {
    return RCM_plot_nextfile();
}

RadarSteps driver_steps() {
    RadarSteps steps{open_report, [] { RCM_close_file(); }, radar_domain, [] { RCM_plot_frame(); }};
    steps.mouse = RCM_callback;
    steps.plot = RCM_plot;
    if (state.options.refresh) steps.next_file = plot_newest;
    steps.strict = state.options.strict;
    return steps;
}

/// "graph" and "nograph" are words of every bulletin's plot, and mean nothing for this one.
constexpr std::array kParams{WordRule{"graph"}, WordRule{"nograph"}};

bool is_usable_id(std::string_view answer) {
    const auto is_letter = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
    return answer.size() == kIdLetters && is_letter(answer.front());
}

std::string upper_case(std::string_view text) {
    std::string upper(text);
    for (char &c : upper)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return upper;
}

} // namespace

RcmPlotState &RCM_state() {
    return state;
}

std::span<const WordRule> RCM_param_words() {
    return kParams;
}

void RCM_prompt_id() {
    constexpr int kMostPrompts = 5, kMostAnswerBytes = 10;
    state.id.clear();
    if (const char *given = RES_get("identifier"); given != nullptr && *given != '\0') {
        state.id = trimmed(given).substr(0, kMostIdBytes);
        return;
    }
    if (FLAG_batch() == 1) return;
    for (int i = 0; i < kMostPrompts; ++i) {
        const std::string answer =
            VYX_prompts("Enter station to be used in the analysis: ", kMostAnswerBytes);
        if (!is_usable_id(answer)) continue;
        state.id = upper_case(answer);
        return;
    }
    MESS_print(kWarn, "RCM_prompt_id: No station has been chosen\n");
}

void RCM_set_date(const DateRecord *date) {
    state.base_date = date != nullptr ? *date : FILE_get_date();
}

int RCM_open_file(std::string_view name) {
    const std::string copy(name);
    RCM_close_file();
    state.stream = RADAR_open_input(copy);
    if (!state.stream) {
        const int fault = errno;
        MESS_print(kWarn, "RCM_open_file: Unable to open file:%s\n", copy.c_str());
        MESS_print_fault(kWarn, "RCM_open_file", copy, fault);
        return 0;
    }
    if (CONT_get_bar() != kBarOff) CONT_set_bar(1);
    return 1;
}

int RCM_close_file() {
    state.stream = Stream();
    return 1;
}

bool RCM_find_report(Stream &stream, RcmReport &report) {
    for (int read = 0; (read = RCM_read_site(stream, report)) >= 0;)
        if (read == 1 && (is_chosen(report.id) || (state.id.empty() && FLAG_batch() == 1))) return true;
    return false;
}

int RCM_read_report(RcmReport &report) {
    if (!state.stream || !RCM_find_report(state.stream, report)) return 0;
    if (state.id.empty()) state.id = report.id;
    return 1;
}

void RCM_plot_param() {
    state.options = {};
    for (const std::string &given : RES_getvals("plot_param"))
        (void)RADAR_option_word(trimmed(given), state.options); // words of others are told elsewhere
}

void RCM_check_variables() {
    static constexpr std::array words{"comp"sv,    "watch"sv,  "city"sv, "stat"sv, "mode"sv,
                                      "echotop"sv, "tvs"sv,    "meso"sv, "id"sv,   "hail"sv,
                                      "mvmt"sv,    "severe"sv, "dir"sv,  "spd"sv};
    for (const std::string &entry : RES_getvals("variable")) {
        const std::string_view text = trimmed(entry), name = text.substr(0, text.find('-'));
        if (!name.empty() && std::ranges::find(words, name) == words.end())
            WORD_unknown("variable", name, words);
    }
}

int RCM_plot_frame() {
    MAP_draw(kMapUnderlay);
    RCM_plot_summary();
    RADAR_draw_bar();
    MAP_draw(kMapOverlay);
    (void)RCM_plot_data(state.report); // nothing where the data are not asked for
    PLT_labels();
    return 0;
}

void RCM_callback(int /*kind*/, std::string_view event, float x, float y) {
    RADAR_on_event(event, x, y, RCM_read_place);
}

int RCM_plot_nextfile() {
    RADAR_next_file(driver_steps());
    return 0;
}

int RCM_plot(PlotDomain &domain) {
    if (!RADAR_is_open()) {
        const std::vector<std::string> variables = RES_getvals("variable");
        if (std::ranges::find(variables, "watch") != variables.end()) WATCH_decode(state.base_date);
        RCM_plot_param();
    }
    RADAR_plot(driver_steps(), state.base_date, domain);
    return 0;
}
