#include "radar/common/readout.h"
#include "plot/session/view.h"

#include <cmath>

#include "graphics/core/transform.h"
#include "graphics/kernel/helpers.h"
#include "graphics/window/frames.h"
#include "lib/files/kept_input.h"
#include "lib/options/flags.h"
#include "lib/report/message.h"
#include "lib/text/strings.h"
#include "plot/map/current_map.h"
#include "radar/common/driver.h"
#include "radar/common/level_lists.h"

namespace {

struct State {
    std::string held;       ///< the last reading of the button that is held
    std::string unreadable; ///< the file that was told last
};
State state;

bool with_button(std::string_view event, char what) {
    return event.size() >= 4 && event[0] == 'B' && event[2] == '-' && event[3] == what;
}

bool asks(std::string_view event) {
    if (event == "v-Alt") return true;
    if (event.find("-Shft") != std::string_view::npos) return false; // a box is drawn
    if (with_button(event, 'M')) return true;
    const bool for_loop = gget_num_images() > 1 && event.find("-Alt") == std::string_view::npos;
    return with_button(event, 'P') && !for_loop;
}

/// The place of the pixel that is seen: magnified, one of the picture covers many of the window.
Point seen_place(float x, float y) {
    constexpr float kRounding = 0.01F; ///< pixels
    const auto whole = [](float pixel) { return std::floor(pixel + kRounding); };
    return {xp_W(whole(xW_p(x))), yp_W(whole(yW_p(y)))};
}

/// Why the file that is seen cannot be read; empty when it can.
std::string obstacle(const std::string &file) {
    if (file.empty()) return "no file is shown";
    if (!FILE_can_reread(file)) return "it cannot be read twice";
    switch (RADAR_file_now(file)) {
    case RadarFileNow::as_drawn: return {};
    case RadarFileNow::changed: return "it has changed since it was drawn";
    case RadarFileNow::gone: return "it is gone";
    }
    return {};
}

bool read_file(const std::string &file, RadarReader read, RadarReading &reading) {
    std::string why = obstacle(file);
    if (why.empty()) {
        if (read(file, reading)) {
            state.unreadable.clear();
            return true;
        }
        why = reading.value;
    }
    if (state.unreadable != file) MESS_print(kWarn, "RADAR_read: %s: %s\n", why.c_str(), file.c_str());
    state.unreadable = file;
    reading.value = "file not read: " + why;
    return false;
}

} // namespace

double RADAR_beam_height(double range_km, double elevation, double antenna_m) {
    // Doviak and Zrnic, Doppler Radar and Weather Observations, equation 2.28b: over an earth of 4/3 of its
    // radius the beam, bent by the standard atmosphere, is straight.
    constexpr double kMetresPerKm = 1e3;
    constexpr double kBentRadius = 4.0 / 3.0 * kEarthRadiusKm * kMetresPerKm;
    const double range = range_km * kMetresPerKm;
    return std::sqrt(range * range + kBentRadius * kBentRadius +
                     2 * range * kBentRadius * std::sin(elevation * kDegree)) -
           kBentRadius + antenna_m;
}

void RADAR_set_way(const SphereOrigin &radar, RadarReading &reading) {
    constexpr double kRound = 360;
    const SphereOrigin::Way way =
        radar.to(static_cast<double>(reading.lat), static_cast<double>(reading.lon));
    const double azimuth = std::atan2(way.east, way.north) / kDegree;
    reading.azimuth = static_cast<float>(azimuth < 0 ? azimuth + kRound : azimuth);
    reading.range_km =
        static_cast<float>(std::hypot(way.east, way.north) * static_cast<double>(kKmPerPlaneUnit));
}

std::string RADAR_value_text(float value, std::string_view unit) {
    // Four digits tell any two levels apart. No "-0".
    std::string text = format_text("%.4g", static_cast<double>(value == 0 ? 0.0F : value));
    if (!unit.empty()) text += " " + std::string(unit);
    return text;
}

void RADAR_set_level(std::uint8_t level, RadarReading &reading) {
    constexpr std::uint8_t kNoReport = 255;
    if (level == kNoReport) {
        reading.value = kNoDataWords;
    } else if (level == 0) {
        reading.value = kBelowWords;
    } else if (level > kSummaryTop) {
        reading.value = format_text("no echo (level %d)", static_cast<int>(level));
    } else {
        reading.number = level;
        reading.value = format_text("level %d", static_cast<int>(level));
    }
}

std::string RADAR_reading_text(const RadarReading &reading) {
    std::string text = reading.value;
    const auto add = [&text](const std::string &part) { text += (text.empty() ? "" : "  ") + part; };
    const auto wide = [](float value) { return static_cast<double>(value); };
    if (!is_missing(reading.lat)) add(format_text("lat %.4f lon %.4f", wide(reading.lat), wide(reading.lon)));
    if (!is_missing(reading.range_km))
        add(format_text("az %.1f dist %.2f km", wide(reading.azimuth), wide(reading.range_km)));
    if (!is_missing(reading.beam_m))
        add(format_text("beam %.0f m", wide(reading.beam_m)) + (reading.above_radar ? " above radar" : ""));
    return text;
}

std::optional<RadarReading> RADAR_read(std::string_view event, float x, float y, RadarReader read) {
    if (!asks(event) || !is_map_projection(MAP_get_proj())) return {};
    RadarReading reading;
    const Point place = seen_place(x, y);
    const Rect plot = GPH_get_win(kDataTransform);
    const bool inside =
        place.x >= plot.xmin && place.x <= plot.xmax && place.y >= plot.ymin && place.y <= plot.ymax;
    const bool on_map = inside && MAP_untran(reading.lat, reading.lon, place.x, place.y) == 1;
    if (!on_map) {
        reading.lat = reading.lon = kMissingF;
        reading.value = "outside the map";
    } else if (FLAG_getplot(kPlotSummary) > 0) {
        read_file(RADAR_seen_file(), read, reading);
    }
    return reading;
}

void RADAR_tell(std::string_view event, const std::optional<RadarReading> &reading) {
    if (reading) {
        const std::string text = RADAR_reading_text(*reading);
        gshow_note(text);
        if (event == "v-Alt")
            MESS_print(kPrint, "%s\n", text.c_str());
        else
            state.held = text;
    } else if (with_button(event, 'R') && !state.held.empty()) {
        MESS_print(kPrint, "%s\n", state.held.c_str());
        state.held.clear();
        gshow_note("");
    }
}

void RADAR_on_event(std::string_view event, float x, float y, RadarReader read,
                    const std::function<void()> &print_place) {
    const std::optional<RadarReading> reading = RADAR_read(event, x, y, read);
    if (print_place)
        print_place();
    else
        PLT_print_location(event, x, y);
    RADAR_tell(event, reading);
    PLT_plot_zoom(event, x, y);
    PLT_plot_resize(event);
}
