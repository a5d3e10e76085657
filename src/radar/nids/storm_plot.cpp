/// Drawing storms: the composite symbol, forecast tracks, single attributes.

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "lib/text/strings.h"
#include "plot/colour/attribute.h"
#include "plot/map/current_map.h"
#include "plot/symbols/wind.h"
#include "radar/common/storm_symbol.h"
#include "radar/nids/storm.h"

namespace {

constexpr int kTrackSteps = 4;
constexpr float kHoursPerTrack = 2.0F;

constexpr StormMarker kSevereHail{"green", 3};
constexpr StormMarker kLikelyHail{"green", 5};
constexpr StormMarker kMesocyclone{"yellow", 4};
constexpr StormMarker kTornado{"red", 9};

bool moves(const NidsStorm &storm) {
    return storm.speed_kt > 0 && !is_missing(storm.direction);
}

void draw_composite(const PlacedStorm &placed, float height) {
    const NidsStorm &storm = placed.storm;
    std::vector<StormMarker> markers;
    const auto mark = [&markers](const StormMarker &marker) { markers.push_back(marker); };
    if (storm.posh > 74.0F)
        mark(kSevereHail);
    else if (storm.posh > 49.0F)
        mark(kLikelyHail);
    if (storm.meso > 0) mark(kMesocyclone);
    if (storm.tvs > 0) mark(kTornado);
    if (markers.empty()) mark(RADAR_plain_storm());
    StormSymbol symbol{.markers = markers, .left = storm.id, .right = {}};
    if (moves(storm)) {
        symbol.direction = storm.direction;
        symbol.speed_kt = storm.speed_kt;
    }
    if (storm.max_dbz > 0) symbol.right = format_text("%.0f", static_cast<double>(storm.max_dbz));
    RADAR_draw_storm(placed.place, symbol, height);
}

/// A way on the plot: degrees clockwise from up, and plane units.
struct TrackLine {
    float direction, length;
};

/// The way from the storm along a great circle. Where the plot does not show its end, or shows it on the
/// other side of a seam, the way sets out as it should and is as long as it is at the radar.
TrackLine track_line(const Point &from, float azimuth, float km, const StormScale &scale) {
    constexpr float longest = 20; // plane units
    Point end{kMissingF, kMissingF};
    MAP_offset(end.x, end.y, from.x, from.y, azimuth, km);
    const double right = static_cast<double>(end.x) - from.x, up = static_cast<double>(end.y) - from.y;
    const double length = std::hypot(right, up);
    if (length < longest)
        return {static_cast<float>(std::atan2(right, up) / kDegree), static_cast<float>(length)};
    return {MAP_dir_adj(azimuth, from.x, from.y), MAP_factor(scale.radar_lat) * km / kKmPerPlaneUnit};
}

/// Where the storm will be in the next two hours: the motion is where it comes from, the track leads away.
void draw_track(const PlacedStorm &placed, const StormScale &scale) {
    const NidsStorm &storm = placed.storm;
    if (!moves(storm)) return;
    const float km = kHoursPerTrack * storm.speed_kt * kKmPerNauticalMile;
    const TrackLine track = track_line(placed.place, storm.direction + 180.0F, km, scale);
    WIND_track(kTrackSteps, placed.place.x, placed.place.y, track.direction, track.length,
               0.1F * scale.plot_scale * scale.height);
}

/// A row of the attribute table: the storm's field, and when it counts as given.
struct StormField {
    std::string_view name;
    float NidsStorm::*field;
    bool positive_only;
};
constexpr std::array kFields{StormField{"hsize", &NidsStorm::hail_size_in, false},
                             StormField{"vil", &NidsStorm::vil, false},
                             StormField{"dbzm", &NidsStorm::max_dbz, false},
                             StormField{"dbzht", &NidsStorm::max_dbz_height, false},
                             StormField{"top", &NidsStorm::top, false},
                             StormField{"wave_dir", &NidsStorm::direction, true},
                             StormField{"move_spd", &NidsStorm::speed_kt, true}};

void set_probability(float value, StationData &record) {
    if (value <= 0) return;
    record.value = value;
    if (value > 75.0F)
        record.text = "*";
    else if (value > 50.0F)
        record.text = "X";
}

void set_flag(float flag, const char *text, StationData &record) {
    if (flag <= 0) return;
    record.value = 1.0F;
    record.text = text;
}

} // namespace

void NIDS_get_plot_data(const NidsStorm &storm, std::string_view variable, StationData &record) {
    RAW_data_init_val(record);
    const std::string_view name = variable.substr(0, variable.find('-'));
    if (name == "id") {
        record.text = storm.id;
    } else if (name == "tvs") {
        set_flag(storm.tvs, "TVS", record);
    } else if (name == "meso") {
        set_flag(storm.meso, "MESO", record);
    } else if (name == "posh") {
        set_probability(storm.posh, record);
    } else if (name == "poh") {
        set_probability(storm.poh, record);
    } else if (name == "mvmt" || name == "track") {
        if (storm.speed_kt <= 0) return;
        record.value = storm.direction;
        record.value2 = storm.speed_kt;
    } else {
        for (const StormField &row : kFields)
            if (row.name == name && (!row.positive_only || storm.*row.field > 0))
                record.value = storm.*row.field;
    }
}

void NIDS_draw_storm(const PlacedStorm &placed, const PlotVariable &variable, const StormScale &scale) {
    const std::string_view name = std::string_view(variable.name).substr(0, variable.name.find('-'));
    if (name == "comp") {
        draw_composite(placed, scale.height);
    } else if (name == "track") {
        draw_track(placed, scale);
    } else {
        StationData record;
        RAW_data_init(record);
        record.x = placed.place.x;
        record.y = placed.place.y;
        NIDS_get_plot_data(placed.storm, name, record);
        RAW_plot_data(record, variable);
    }
}
