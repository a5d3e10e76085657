#pragma once
/// What is under the pointer: the value of the cell drawn there, where on the earth it is, and how high the
/// beam stands over it. One road for all radar drivers; a driver gives the cell of the file that is seen.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "lib/text/missing.h"
#include "plot/projection/sphere.h"

/// What a driver's file holds at a place.
struct RadarReading {
    std::string value; ///< with its unit, or in words ("no data"); empty where the product has no values
    float number = kMissingF; ///< the value alone; missing for words
    float lat = kMissingF, lon = kMissingF;
    float azimuth = kMissingF, range_km = kMissingF; ///< from the radar; missing for what has none
    float beam_m = kMissingF; ///< height of the beam's centre; missing for what has no one tilt
    bool above_radar = false; ///< the height counts from the radar, whose own is not known, not from the sea
};

inline constexpr std::string_view kNoDataWords = "no data", kBelowWords = "no data (below threshold)",
                                  kRangeFoldedWords = "range folded",
                                  kOutsideWords = "no data (out of range)";

/// Height of a beam's centre above sea level, metres: the beam leaves an antenna `antenna_m` high at
/// `elevation` degrees and is bent as by an earth whose radius is four thirds of the real one.
double RADAR_beam_height(double range_km, double elevation, double antenna_m);
/// Sets azimuth and range of the reading's place, as seen from a radar.
void RADAR_set_way(const SphereOrigin &radar, RadarReading &reading);
/// "45.5 dBZ"; the unit may be empty.
std::string RADAR_value_text(float value, std::string_view unit);
/// What one of the six intensities of a summary's grid says; above them is no echo, 255 no report.
void RADAR_set_level(std::uint8_t level, RadarReading &reading);
/// "45.5 dBZ  lat 38.3826 lon -91.9359  az 252.5 dist 114.51 km  beam 2345 m"
std::string RADAR_reading_text(const RadarReading &reading);

/// Reads the value at lat and lon, which are set, from the file, and sets the rest. False, with why in
/// `value`, when the file cannot be read.
using RadarReader = bool (*)(const std::string &file, RadarReading &reading);

/// What is under point (x, y) of the plot, when the event asks for it: "v-Alt", a button pressed without
/// shift, or moved while held. Nothing for other events. Where the frames of a loop are what a button acts
/// on, its press alone asks for nothing.
[[nodiscard]] std::optional<RadarReading> RADAR_read(std::string_view event, float x, float y,
                                                     RadarReader read);
/// What keys and buttons of a radar's window do: the value and the place under the pointer are told, a box
/// becomes the domain, a change of size draws again. `print_place` prints the place on "v-Alt" instead of
/// PLT_print_location.
void RADAR_on_event(std::string_view event, float x, float y, RadarReader read,
                    const std::function<void()> &print_place = {});
/// Tells what was read: "v-Alt" at the terminal and in the window's title, a held button in the title until
/// it is released and then, once, at the terminal.
void RADAR_tell(std::string_view event, const std::optional<RadarReading> &reading);
