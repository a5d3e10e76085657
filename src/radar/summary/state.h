#pragma once
/// State of the summaries' driver, for its own files, and where the grids lie.
/// Sources: plot.

#include <optional>
#include <string>
#include <vector>

#include "plot/domain/plot_domain.h"
#include "plot/places/city.h"
#include "radar/common/options.h"
#include "radar/summary/summary.h"

struct RadOptions {
    RadarOptions common;
    float ring_nm = 0;        ///< radius of the circles around stations; below 10 none
    int most_items = 100;     ///< of one variable and record
    bool hide_clear = false;  ///< records of clear air plot nothing
    bool watch_label = false; ///< watch boxes have labels
};

struct RadPlotState {
    RadarInfo info; ///< of the open file
    int file = -1;
    DateRecord base_date;
    RadOptions options;
    bool prompting = false;
    bool variables_read = false;
    std::string told;                   ///< the file of which was told what it lacks
    std::optional<PlotDomain> stations; ///< whose stations are stored
};
RadPlotState &RAD_state();

/// The domain of a summary's grid.
PlotDomain RAD_grid_domain(SummaryKind kind);
/// The grid as a field, rows from the north.
std::vector<float> RAD_grid_field(const RadarInfo &info, const PlotDomain &grid);

/// The next report, or record, whose station the stored table knows. 1; 0 when it is to be passed over; -1 at
/// the end.
[[nodiscard]] int MDR_read_report(MdrReport &report, CityStation &station);
[[nodiscard]] int RCM_read_report(RcmRecord &record, CityStation &station);
