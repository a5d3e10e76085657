/// What the station plotter is given of a report.

#include <array>
#include <optional>

#include "plot/map/current_map.h"
#include "radar/common/storm_symbol.h"
#include "radar/rcm/plot.h"
#include "radar/rcm/state.h"

namespace {

void put_at_cell(const RcmGrid &grid, float column, float row, StationData &data) {
    const Point place = RCM_cell_place(grid, column, row);
    data.x = place.x;
    data.y = place.y;
}

void put_at_radar(StationData &data) {
    MAP_tran(data.x, data.y, RCM_state().lat, RCM_state().lon);
}

const char *status_text(RcmStatus status) {
    switch (status) {
    case RcmStatus::no_echoes: return "RADNE";
    case RcmStatus::maintenance: return "RADOM";
    case RcmStatus::normal:
    case RcmStatus::unknown: break;
    }
    return "";
}

const char *mode_text(RcmMode mode) {
    switch (mode) {
    case RcmMode::precipitation: return "PCPN";
    case RcmMode::clear_air: return "CLAR";
    case RcmMode::unknown: break;
    }
    return "";
}

const char *hail_text(RcmHail hail) {
    switch (hail) {
    case RcmHail::probable: return "P";
    case RcmHail::positive: return "H";
    case RcmHail::none:
    case RcmHail::unknown: break;
    }
    return "";
}

float given(int value) {
    return is_missing(value) ? kMissingF : static_cast<float>(value);
}

/// A field that the report has once, at the radar or, for the top, at its cell. False for other fields.
bool single_field(const RcmReport &report, std::string_view field, StationData &data) {
    if (field == "echotop") {
        if (is_missing(report.max_top)) return true;
        put_at_cell(RCM_grid(RCM_state().lat, RCM_state().lon), report.top_column, report.top_row, data);
        data.value = given(report.max_top);
        return true;
    }
    if (field == "city")
        data.text = report.id;
    else if (field == "stat")
        data.text = status_text(report.status);
    else if (field == "mode")
        data.text = mode_text(report.mode);
    else
        return false;
    put_at_radar(data);
    return true;
}

/// False for a field that storms do not have.
bool storm_field(const RcmStorm &storm, std::string_view field, StationData &data) {
    if (field == "id")
        data.text = storm.id;
    else if (field == "severe")
        data.value = given(storm.severe);
    else if (field == "hail")
        data.text = hail_text(storm.hail);
    else
        return RADAR_motion_field(field, storm.direction, storm.speed, data);
    return true;
}

} // namespace

int RCM_get_data(const RcmReport &report, int index, std::string_view field, StationData &data) {
    RAW_data_init(data);
    const auto entry = static_cast<std::size_t>(index);
    if (index < 0) return 0;
    if (single_field(report, field, data)) return index == 0 ? 1 : 0;
    const RcmGrid grid = RCM_grid(RCM_state().lat, RCM_state().lon);
    if (field == "tvs" || field == "meso") {
        const std::vector<RcmFeature> &features = field == "tvs" ? report.vortices : report.mesocyclones;
        if (entry >= features.size()) return 0;
        data.text = features[entry].id;
        put_at_cell(grid, features[entry].column, features[entry].row, data);
        return 1;
    }
    if (entry >= report.storms.size() || !storm_field(report.storms[entry], field, data)) return 0;
    put_at_cell(grid, report.storms[entry].column, report.storms[entry].row, data);
    return 1;
}
