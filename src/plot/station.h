#pragma once
/// Station plots as far as storms need them: the variables to plot and the drawing of one value or text.

#include <string>
#include <string_view>

#include "graphics/core/types.h"

/// What is plotted at one place.
struct StationData {
    float x = kMissingF, y = kMissingF; ///< plane position
    float value = kMissingF;
    float value2 = kMissingF;           ///< second value of a pair (motion speed)
    std::string text;                   ///< drawn instead of the value when not empty
};

/// How a plot variable is drawn, from a variable file; see data/nids.var.
struct PlotVariable {
    std::string name;
    std::string format = "%.0f"; ///< printf format with one %f conversion
    float dx = 0, dy = 0;        ///< offset from the place, text heights
    std::string color;           ///< attribute string; empty: the data colour
};

/// The variables named by the resource "variable" that the file describes (searched along "file_path"); unknown
/// names get the plain format. Returns their number.
int VAR_setup(std::string_view file);
int VAR_get_num();
const PlotVariable &VAR_get(int index);
const std::string &VAR_get_name(int index);
/// 1 when a variable of that name is to be plotted.
int VAR_has(std::string_view name);
void VAR_set_model_str(std::string_view model);

void RAW_data_init(StationData &data);
void RAW_data_init_val(StationData &data);
/// Prepares plotting: scale 1 gives the normal text height.
void RAW_plot_init(float scale);
/// Draws the record's text or value in a variable's format at its position. -1 when there is nothing to draw.
int RAW_plot_data(const StationData &data, const PlotVariable &variable);
