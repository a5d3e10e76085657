#pragma once
/// Drawing one value or text at a place, as its plot variable says.

#include <string>

#include "graphics/core/types.h"
#include "plot/symbols/variables.h"

/// What is plotted at one place.
struct StationData {
    float x = kMissingF, y = kMissingF; ///< plane position
    float value = kMissingF;
    float value2 = kMissingF; ///< second value of a pair, such as the speed of a motion; drawn behind a "/"
    std::string text;         ///< drawn instead of the value when not empty
};

/// Clears position, values and text, or only values and text.
void RAW_data_init(StationData &data);
void RAW_data_init_val(StationData &data);
/// Prepares plotting: scale 1 gives the normal text height, a fiftieth of the height of the plot.
void RAW_plot_init(float scale);
/// Draws the record's text or value at its position, moved by the variable's offset. -1 when there is nothing
/// to draw.
int RAW_plot_data(const StationData &data, const PlotVariable &variable);
