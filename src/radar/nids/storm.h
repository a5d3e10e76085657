#pragma once
/// Inside the Level III driver: storms read from the graphic pages.

#include <vector>

#include "graphics/core/types.h"
#include "radar/nids/plot.h"

/// A storm with its place on the plot (plot plane).
struct PlacedStorm {
    NidsStorm storm;
    Point place;
};

bool NIDS_is_strong(const NidsStorm &storm);

/// Collects the storms of page texts, keeping those that the options let through ("numplt", "strong").
class NidsStormReader {
public:
    NidsStormReader(int most, bool strong_only) : most_(most), strong_only_(strong_only) {}
    void line(std::string_view text);
    [[nodiscard]] const std::vector<NidsStorm> &storms() const { return storms_; }

private:
    int most_;
    bool strong_only_;
    int layout_ = 0;
    int count_ = 0;
    std::vector<NidsStorm> storms_;
};

/// What sizes storm symbols.
struct StormScale {
    float plot_scale = 1; ///< resource "plot_scale"
    float height = 1;     ///< vertical extent of the plot, plane units
    float radar_lat = 0;  ///< degrees
};

/// Draws one plot variable of a storm with the map of the plot in force.
void NIDS_draw_storm(const PlacedStorm &storm, const PlotVariable &variable, const StormScale &scale);
