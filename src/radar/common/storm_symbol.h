#pragma once
/// The symbol of a storm, wherever its storms are told: markers by what it is, a barb of its motion, and two
/// texts beside it.

#include <span>
#include <string>
#include <string_view>

#include "graphics/core/types.h"
#include "plot/symbols/station.h"

struct StormMarker {
    const char *color;
    int type;
};
/// A storm about which nothing else is known, in a colour that shows on the background: white shows on a dark
/// one only.
StormMarker RADAR_plain_storm();
void RADAR_draw_marker(const Point &place, const StormMarker &marker);

/// Fills the data of a field of a storm's motion, "dir" (degrees it comes from), "spd" (knots) or "mvmt"
/// (both); missing numbers leave it empty. False for other fields.
[[nodiscard]] bool RADAR_motion_field(std::string_view field, int direction, int speed, StationData &data);

struct StormSymbol {
    std::span<const StormMarker> markers;
    float direction = kMissingF, speed_kt = kMissingF; ///< degrees it comes from; missing: no barb
    std::string left, right;                           ///< texts above the place
};
/// Draws it with the attributes of lines and texts in force. `height` is that of the plot, plane units;
/// `text` scales the texts.
void RADAR_draw_storm(const Point &place, const StormSymbol &symbol, float height, float text = 1);
