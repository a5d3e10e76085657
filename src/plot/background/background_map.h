#pragma once
/// The map background: map files, latitude-longitude lines, range circles. All in transform 2.
/// Sources: grid_lines.

#include <string_view>

class Stream;

inline constexpr int kMapUnderlay = 1; ///< pass before the data
inline constexpr int kMapOverlay = 6;  ///< pass after the data

/// Draws the map of the current domain for one pass. Returns 0.
int MAP_draw(int mask);
/// Draws one map item; 0, or -1 when it was skipped or its file is missing.
int MAP_process(std::string_view item);
/// Draws the records of an open map file: 0 at a zero-count record, -1 at the end of the file, 1 without
/// reading when the projection is no map projection.
int MAP_map(Stream &stream);
int MAP_lines(float lat_spacing, float lon_spacing);
/// Circle of 49 points around plane point (x, y), radius in km on the earth's surface.
void MAP_draw_circle(float x, float y, float km);
/// Height of the world window of transform 2, plane units.
float MAP_get_vert();
