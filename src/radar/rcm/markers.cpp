/// What is drawn over the grid: site, rings, storms, mesocyclones and vortices.

#include <array>
#include <string>

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "lib/options/flags.h"
#include "lib/resources/database.h"
#include "plot/colour/attribute.h"
#include "plot/map/current_map.h"
#include "plot/session/plot_session.h"
#include "plot/session/status_text.h"
#include "plot/symbols/variables.h"
#include "plot/symbols/watch.h"
#include "radar/common/storm_symbol.h"
#include "radar/rcm/plot.h"
#include "radar/rcm/state.h"

namespace {

constexpr StormMarker kPositiveHail{"lgreen", 3}, kProbableHail{"lgreen", 5}, kMesocyclone{"yellow", 4},
    kVortex{"lred", 7};

StormMarker marker_of(RcmHail hail) {
    switch (hail) {
    case RcmHail::positive: return kPositiveHail;
    case RcmHail::probable: return kProbableHail;
    case RcmHail::none:
    case RcmHail::unknown: break;
    }
    return RADAR_plain_storm();
}

/// What sizes text and symbols: the height of the plot, and the user's factor for text.
struct Scale {
    float height = 1, text = 1;
};

void draw_storm(const RcmStorm &storm, const Point &place, const Scale &scale) {
    const std::array markers{marker_of(storm.hail)};
    StormSymbol symbol{.markers = markers, .left = storm.id, .right = {}};
    if (!is_missing(storm.direction)) symbol.direction = static_cast<float>(storm.direction);
    if (!is_missing(storm.speed)) symbol.speed_kt = static_cast<float>(storm.speed);
    if (!is_missing(storm.severe)) symbol.right = std::to_string(storm.severe);
    RADAR_draw_storm(place, symbol, scale.height, scale.text);
}

/// Storms, then what turns in them.
void draw_features(const RcmReport &report, const Attribute &ink, const Scale &scale) {
    const RcmGrid grid = RCM_grid(RCM_state().lat, RCM_state().lon);
    const auto draw_at = [&grid](const RcmFeature &feature, const auto &draw) {
        const Point place = RCM_cell_place(grid, feature.column, feature.row);
        if (!is_missing(place.x)) draw(place);
    };
    for (const RcmStorm &storm : report.storms) {
        GPH_line_attr(&ink);
        GPH_fill_attr(&ink);
        GPH_text_attr(&ink, 1.0F);
        draw_at(storm, [&](const Point &place) { draw_storm(storm, place, scale); });
    }
    for (const RcmFeature &meso : report.mesocyclones)
        draw_at(meso, [](const Point &place) { RADAR_draw_marker(place, kMesocyclone); });
    for (const RcmFeature &vortex : report.vortices)
        draw_at(vortex, [](const Point &place) { RADAR_draw_marker(place, kVortex); });
}

void draw_station_fields(const RcmReport &report, const PlotVariable &variable) {
    const std::string_view field = std::string_view(variable.name).substr(0, variable.name.find('-'));
    StationData data;
    for (int index = 0; RCM_get_data(report, index, field, data) == 1; ++index) RAW_plot_data(data, variable);
}

} // namespace

int RCM_plot_data(const RcmReport &report) {
    if (FLAG_getplot(kPlotData) < 1) return -1;
    const RcmPlotState &state = RCM_state();
    Attribute ink;
    ATTRIB_get("color_data", ATTRIB_text_default(), ink);
    PLT_mess("RCM Extra");
    Point radar{kMissingF, kMissingF};
    MAP_tran(radar.x, radar.y, state.lat, state.lon);
    // Nothing of the lines that the map left behind.
    GPH_line_attr(nullptr);
    GPH_line_attr(&ink);
    GPH_mark_attr(&ink, 1.0F);
    Scale scale;
    scale.height = GPH_get_win(kDataTransform).height();
    (void)RES_getval("plot_scale", scale.text); // unset, the default stays
    RAW_plot_init(scale.text);
    RADAR_draw_site(state.options, radar.x, radar.y);
    if (RES_get("variable") != nullptr) (void)VAR_setup(kRcmVariableFile); // told where it fails
    for (int i = 0; i < VAR_get_num(); ++i) {
        const PlotVariable &variable = VAR_get(i);
        if (variable.name == "comp")
            draw_features(report, ink, scale);
        else if (variable.name != "watch")
            draw_station_fields(report, variable);
    }
    if (VAR_has("watch") == 1) WATCH_plot();
    return 0;
}
