/// What the radars report, drawn at their places.

#include <algorithm>
#include <vector>

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "lib/options/flags.h"
#include "lib/report/message.h"
#include "lib/resources/database.h"
#include "plot/background/background_map.h"
#include "plot/colour/attribute.h"
#include "plot/map/current_map.h"
#include "plot/session/labels.h"
#include "plot/symbols/station.h"
#include "plot/symbols/variables.h"
#include "plot/symbols/watch.h"
#include "radar/summary/fields.h"
#include "radar/summary/plot.h"
#include "radar/summary/reader.h"
#include "radar/summary/state.h"

namespace {

constexpr std::size_t kLetters = 3; ///< of a station in the country's own list
constexpr float kLeastRingNm = 10;

/// Radars have letters of the world's list in the database: "KLSX" for "LSX", "PAHG" for "AHG".
bool find_station(const std::string &id, CityStation &station) {
    if (CTY_search(id, station) == 1) return true;
    if (id.size() == kLetters + 1) return CTY_search(id.substr(1), station) == 1;
    if (id.size() != kLetters) return false;
    for (const char first : {'K', 'P', 'T'})
        if (CTY_search(first + id, station) == 1) return true;
    return false;
}

int place_report(const std::string &id, CityStation &station) {
    if (find_station(id, station)) return 1;
    MESS_print(kDebug, "Not in database: %s\n", id.c_str());
    return 0;
}

/// The stations of the current domain, read anew when it has become another.
void store_stations() {
    constexpr int kShortRecords = 2, kPriority = 3;
    RadPlotState &state = RAD_state();
    const PlotDomain &domain = MAP_get_domain();
    if (state.stations && DOM_comp(*state.stations, domain) == 1) return;
    state.stations = domain;
    (void)CTY_store("rad.cty", kShortRecords, *state.stations, kPriority); // told where it fails
}

void draw_surroundings(const CityStation &station, const Attribute &ink) {
    const RadOptions &options = RAD_state().options;
    if (options.ring_nm >= kLeastRingNm) {
        GPH_line_attr(nullptr);
        GPH_line_attr(&ink);
        MAP_draw_circle(station.x, station.y, options.ring_nm * kKmPerNauticalMile);
    }
    if (!options.common.site) return;
    Attribute marker = ink;
    marker.style = ATTR_parse_marker("plus");
    GPH_mark_attr(&marker, 1.0F);
    GPH_mark(station.x, station.y);
}

bool is_watch(const PlotVariable &variable) {
    return variable.name == "watch";
}

/// The chosen variables of a report, as far as it has them: one that it lacks ends them.
void add_report(const MdrReport &report, const CityStation &station, std::vector<StationPlot> &plots) {
    StationPlot plot{.priority = station.priority, .items = {}};
    const auto &variables = VAR_get_vars();
    for (std::size_t i = 0; i < variables.size(); ++i) {
        if (is_watch(variables[i]) || !VAR_is_type_PLOT(variables[i])) continue;
        StationData data;
        data.x = station.x;
        data.y = station.y;
        if (MDR_get_data(report, variables[i].name, data) == 0) break;
        plot.items.push_back({std::move(data), i});
    }
    plots.push_back(std::move(plot));
}

/// The items of a record at each of their places.
void add_record(const RcmRecord &record, const CityStation &station, std::vector<StationPlot> &plots) {
    const RadOptions &options = RAD_state().options;
    if (options.hide_clear && record.mode == RcmRecord::Mode::clear_air) return;
    const std::size_t first = plots.size();
    const auto &variables = VAR_get_vars();
    for (std::size_t i = 0; i < variables.size(); ++i) {
        if (is_watch(variables[i]) || !VAR_is_type_PLOT(variables[i])) continue;
        for (int item = 0; item < options.most_items; ++item) {
            StationData data;
            data.x = station.x;
            data.y = station.y;
            if (RCM_get_data(record, item, variables[i].name, data) == 0) break;
            // What stands at one place is drawn together.
            auto at = std::find_if(plots.begin() + static_cast<std::ptrdiff_t>(first), plots.end(),
                                   [&data](const StationPlot &plot) {
                                       const StationData &other = plot.items.front().data;
                                       return other.x == data.x && other.y == data.y;
                                   });
            if (at == plots.end())
                at = plots.insert(at, StationPlot{.priority = station.priority, .items = {}});
            at->items.push_back({std::move(data), i});
        }
    }
}

/// Reads every report whose station is known, draws what surrounds it, and collects what it shows.
template <typename Report, typename Read, typename Add>
std::vector<StationPlot> collect(const Attribute &ink, Read read_report, Add add) {
    std::vector<StationPlot> plots;
    Report report;
    CityStation station;
    for (int read = 0; (read = read_report(report, station)) >= 0;) {
        if (read == 0) continue;
        draw_surroundings(station, ink);
        add(report, station, plots);
    }
    return plots;
}

void draw_reports() {
    Attribute ink;
    ATTRIB_get("color_data", ATTRIB_text_default(), ink);
    float scale = 1;
    (void)RES_getval("plot_scale", scale); // unset, the default stays
    RAW_plot_init(scale);
    GPH_mark_attr(&ink, 1.0F);
    store_stations();
    const bool digitized = RAD_state().info.kind == SummaryKind::digitized;
    const std::vector<StationPlot> plots = digitized ? collect<MdrReport>(ink, MDR_read_report, add_report)
                                                     : collect<RcmRecord>(ink, RCM_read_report, add_record);
    if (const int left_out = RAW_plot_stations(plots); left_out > 0)
        MESS_print(kMess,
                   "RAD_plot_data: %d of %zu places are left out, where they would cover others; a smaller "
                   "plot_scale shows more\n",
                   left_out, plots.size());
}

} // namespace

int MDR_read_report(MdrReport &report, CityStation &station) {
    int next = -1;
    if (MDR_read(RAD_state().file, report, false, next) != 0) return -1;
    return place_report(report.id, station);
}

int RCM_read_report(RcmRecord &record, CityStation &station) {
    if (RCM_read(RAD_state().file, record) != 1) return -1;
    return place_report(record.id, station);
}

int RAD_plot_data() {
    if (FLAG_getplot(kPlotData) < 1) return -1;
    GPH_trans(kDataTransform);
    const bool watches = VAR_has("watch") == 1;
    if (watches) WATCH_plot();
    if (!watches || VAR_get_num() > 1) draw_reports();
    return 0;
}
