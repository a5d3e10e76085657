#pragma once
/// Drawing what a station tells at its place, as its plot variables say.

#include <span>
#include <string>
#include <vector>

#include "graphics/core/types.h"
#include "plot/symbols/variables.h"

/// What is plotted at one place.
struct StationData {
    float x = kMissingF, y = kMissingF; ///< plane position
    float value = kMissingF;
    /// Second value of a pair, such as the speed of a motion; drawn behind a "/", or as a motion.
    float value2 = kMissingF;
    std::string text;   ///< drawn instead of the value when not empty
    std::string marker; ///< a marker ("+", "*", "plus", see ATTR_parse_marker) or a letter, at the very place
};

/// Clears position, values and text, or only values and text.
void RAW_data_init(StationData &data);
void RAW_data_init_val(StationData &data);
/// Prepares plotting: scale 1 gives the normal text height, a fiftieth of the height of the plot.
void RAW_plot_init(float scale);
/// Draws the record's text, value, motion or marker at its position, moved by the variable's offset. An arrow
/// of 25 knots is a twentieth of the plot high, as that of the movement legend. -1 when there is nothing to
/// draw.
int RAW_plot_data(const StationData &data, const PlotVariable &variable);

/// Length of the arrow of 25 knots, of the height of the plot, at scale 1.
inline constexpr float kVectorLength = 0.05F, kVectorKnots = 25;

/// What one station tells: drawn whole or not at all.
struct StationPlot {
    int priority = 0; ///< 0 comes first
    struct Item {
        StationData data;
        std::size_t variable; ///< of VAR_get_vars()
    };
    std::vector<Item> items;
};
/// Draws the stations by their priority, equal ones in their order; one that would cover an item of a station
/// drawn before is left out. Returns how many were.
int RAW_plot_stations(std::span<const StationPlot> stations);
