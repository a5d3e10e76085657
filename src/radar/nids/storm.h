#pragma once
/// Inside the Level III driver: storms read from the graphic pages.
/// Sources: storm_plot.

#include <vector>

#include "graphics/core/types.h"
#include "plot/symbols/station.h"

/// One line of a storm table.
struct NidsStorm {
    std::string id;
    float azimuth = kMissingF; ///< degrees
    float range_nm = kMissingF;
    float tvs = 0;           ///< 1 with a tornadic vortex signature
    float meso = 0;          ///< 1, or the number given
    float poh = 0, posh = 0; ///< probability of hail and of severe hail, percent
    float hail_size_in = 0;
    float vil = 0, max_dbz = 0, max_dbz_height = 0, spare = 0, top = 0;
    float direction = kMissingF, speed_kt = kMissingF; ///< motion
};

/// Parses one line of a storm table; `layout` (1 or 2) is switched by heading lines. False when no storm was
/// read.
[[nodiscard]] bool NIDS_storm_line(std::string_view line, int &layout, NidsStorm &storm);
/// Picks one storm attribute for a plot variable.
void NIDS_get_plot_data(const NidsStorm &storm, std::string_view variable, StationData &record);

/// A storm with its place on the plot (plot plane).
struct PlacedStorm {
    NidsStorm storm;
    Point place;
};

[[nodiscard]] bool NIDS_is_strong(const NidsStorm &storm);

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
