#include "radar/summary/fields.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>

#include "plot/map/current_map.h"
#include "plot/symbols/variables.h"
#include "radar/common/storm_symbol.h"

namespace {

using namespace std::string_view_literals;

/// The status of a radar, where the configuration tells one: "NE", also as "PPINE".
std::string status_of(const MdrReport &report) {
    constexpr std::string_view kScope = "PPI";
    std::string_view word = report.configuration;
    if (word.starts_with(kScope)) word.remove_prefix(kScope.size());
    for (const std::string_view status : {"NE"sv, "OM"sv, "NA"sv})
        if (word == status) return std::string(status);
    return {};
}

std::string precipitation_of(const MdrReport &report, bool types, bool intensity) {
    std::string text;
    for (const MdrReport::Coverage &coverage : report.coverage) {
        if (types) text += coverage.types;
        if (intensity) text += MDR_intensity_sign(coverage.intensity);
    }
    return text;
}

const MdrReport::Movement *movement_of(const MdrReport &report, char type) {
    const auto found = std::ranges::find_if(report.movements, [type](const MdrReport::Movement &movement) {
        return !is_missing(movement.direction) && (type == ' ' || movement.type == type);
    });
    return found == report.movements.end() ? nullptr : &*found;
}

/// The kind of movement that a variable asks for; ' ' any.
std::optional<char> movement_type(std::string_view field) {
    if (field == "amv") return 'A';
    if (field == "lmv") return 'L';
    if (field == "cmv") return 'C';
    if (field == "mvmt" || field == "dir" || field == "spd") return ' ';
    return std::nullopt;
}

int take_movement(const MdrReport &report, std::string_view field, char type, StationData &data) {
    const MdrReport::Movement *const movement = movement_of(report, type);
    if (movement == nullptr) return 0;
    data.value = field == "spd" ? movement->speed_kt : movement->direction;
    if (field != "spd" && field != "dir") data.value2 = movement->speed_kt;
    return 1;
}

} // namespace

std::string_view MDR_intensity_sign(int code) {
    constexpr std::array<std::string_view, 10> kSigns{"", "-", "", "+", "++", "X", "XX", "", "", "U"};
    return code >= 0 && code < static_cast<int>(kSigns.size()) ? kSigns[static_cast<std::size_t>(code)] : "";
}

std::span<const std::string_view> RAD_field_names() {
    static constexpr std::array names{"id"sv,      "reg"sv,   "conf"sv,  "stat"sv, "type"sv, "int"sv,
                                      "prec"sv,    "cover"sv, "trend"sv, "top"sv,  "amv"sv,  "lmv"sv,
                                      "cmv"sv,     "mvmt"sv,  "dir"sv,   "spd"sv,  "city"sv, "mode"sv,
                                      "echotop"sv, "tvs"sv,   "meso"sv,  "hail"sv, "watch"sv};
    return names;
}

int MDR_get_data(const MdrReport &report, std::string_view variable, StationData &data) {
    const std::string_view field = VAR_base_name(variable);
    RAW_data_init_val(data);
    if (const auto type = movement_type(field)) return take_movement(report, field, *type, data);
    if (field == "top")
        data.value = report.top;
    else if (field == "cover")
        data.value = report.coverage.empty() ? kMissingF : report.coverage.front().tenths;
    else if (field == "id")
        data.text = report.id;
    else if (field == "reg")
        data.text = report.region;
    else if (field == "stat")
        data.text = status_of(report);
    else if (field == "conf")
        data.text = status_of(report).empty() ? report.configuration : "";
    else if (field == "trend")
        data.text = report.trend;
    else if (field == "type" || field == "int" || field == "prec")
        data.text = precipitation_of(report, field != "int", field != "type");
    return data.text.empty() && is_missing(data.value) ? 0 : 1;
}

namespace {

float given(int value) {
    return is_missing(value) ? kMissingF : static_cast<float>(value);
}

void put_at(float lat, float lon, StationData &data) {
    data.x = data.y = kMissingF;
    if (!is_missing(lat) && !is_missing(lon)) MAP_tran(data.x, data.y, lat, lon);
}

const char *status_word(RcmRecord::Status status) {
    switch (status) {
    case RcmRecord::Status::not_available: return "NA";
    case RcmRecord::Status::no_echoes: return "NE";
    case RcmRecord::Status::maintenance: return "OM";
    case RcmRecord::Status::unknown: break;
    }
    return "";
}

const char *mode_letter(RcmRecord::Mode mode) {
    switch (mode) {
    case RcmRecord::Mode::precipitation: return "P";
    case RcmRecord::Mode::clear_air: return "C";
    case RcmRecord::Mode::unknown: break;
    }
    return "";
}

/// What a record has once; nothing for other fields.
std::optional<int> take_single(const RcmRecord &record, std::string_view field, StationData &data) {
    if (field == "city")
        data.text = record.id;
    else if (field == "stat")
        data.text = status_word(record.status);
    else if (field == "mode")
        data.text = mode_letter(record.mode);
    else if (field == "echotop") {
        data.value = given(record.top);
        put_at(record.top_lat, record.top_lon, data);
    } else {
        return std::nullopt;
    }
    return data.text.empty() && is_missing(data.value) ? 0 : 1;
}

int take_storm(const RcmRecord::Storm &storm, std::string_view field, StationData &data) {
    constexpr int kHail = 1, kSevereHail = 2;
    if (field == "id")
        data.text = storm.id;
    else if (field == "top")
        data.value = given(storm.top);
    else if (field == "hail") {
        data.value = static_cast<float>(storm.hail);
        if (storm.hail == kHail) data.marker = "+";
        if (storm.hail == kSevereHail) data.marker = "*";
        if (data.marker.empty()) data.value = kMissingF; // no hail is nothing to show
    } else if (!RADAR_motion_field(field, storm.direction, storm.speed, data)) {
        return 0;
    }
    put_at(storm.lat, storm.lon, data);
    return 1;
}

} // namespace

int RCM_get_data(const RcmRecord &record, int item, std::string_view variable, StationData &data) {
    const std::string_view field = VAR_base_name(variable);
    const auto entry = static_cast<std::size_t>(item);
    RAW_data_init_val(data);
    if (item < 0) return 0;
    if (item > 0 && (field == "city" || field == "stat" || field == "mode" || field == "echotop")) return 0;
    if (const auto single = take_single(record, field, data)) return *single;
    if (field == "tvs" || field == "meso") {
        const auto &features = field == "tvs" ? record.vortices : record.mesocyclones;
        if (entry >= features.size()) return 0;
        data.marker = field == "tvs" ? "T" : "M";
        put_at(features[entry].lat, features[entry].lon, data);
        return 1;
    }
    return entry < record.storms.size() ? take_storm(record.storms[entry], field, data) : 0;
}
