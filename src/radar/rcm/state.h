#pragma once
/// State of the coded messages' driver, for its own files.
/// Sources: plot.

#include <string>
#include <string_view>

#include "lib/system/stream.h"
#include "plot/domain/plot_domain.h"
#include "radar/common/cells.h"
#include "radar/common/options.h"
#include "radar/rcm/report.h"

/// Describes the variables.
inline constexpr std::string_view kRcmVariableFile = "rcm.var";

/// Size of a cell, plane units.
inline constexpr float kRcmCellSize = 0.11899F;

/// Where the cells of a report lie: the grid's own plane, and its upper left corner there.
struct RcmGrid {
    PlotDomain plane;
    float x = kMissingF, y = kMissingF;
};

struct RcmPlotState {
    Stream stream;
    std::string id;                         ///< of the radar that is asked for, at most 9 characters
    float lat = kMissingF, lon = kMissingF; ///< of the radar
    RcmReport report;                       ///< of the open file
    DateRecord base_date;                   ///< requested date
    std::string told;                       ///< the file of which was told what it lacks
    RadarOptions options;
};
RcmPlotState &RCM_state();

/// The grid of a radar at a place: a quarter of the national grid's spacing, its corner on that grid.
RcmGrid RCM_grid(float lat, float lon);
/// The middle of a cell, plot units; missing where the plot does not show it.
Point RCM_cell_place(const RcmGrid &grid, float column, float row);
/// The chosen radar's report of a stream that stands at its first byte. False when it has none.
[[nodiscard]] bool RCM_find_report(Stream &stream, RcmReport &report);
