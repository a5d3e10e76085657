#pragma once
/// Which part of the earth a plot can show, roughly: most of a map's lines lie elsewhere and need no
/// projection.

#include <span>

#include "plot/background/line_file.h"

class MapReach {
public:
    /// Of the current map domain and its window.
    MapReach();
    /// True when no line between the points can cross the plot. False when in doubt.
    [[nodiscard]] bool misses(std::span<const MapPoint> points) const;

private:
    bool limited_ = false; ///< without limits everything may be shown
    float lat_ = 0, lon_ = 0;
    float lat_reach_ = 0, lon_reach_ = 0; ///< degrees from the centre
};
