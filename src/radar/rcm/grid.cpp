/// Where the cells of a report lie, and how they are drawn.

#include <algorithm>
#include <cmath>

#include "graphics/kernel/helpers.h"
#include "lib/options/flags.h"
#include "lib/time/date.h"
#include "plot/colour/level_choice.h"
#include "plot/map/current_map.h"
#include "plot/session/labels.h"
#include "plot/session/status_text.h"
#include "radar/common/level_lists.h"
#include "radar/rcm/plot.h"
#include "radar/rcm/state.h"

namespace {

/// Grids of radar summaries: polar stereographic, cut out around a place.
PlotDomain summary_domain(float lat, float lon, int nx, int ny, float spacing) {
    PlotDomain domain;
    domain.proj = kProjPolar;
    domain.plat = 90;
    domain.plon = -105;
    domain.clat = lat;
    domain.clon = lon;
    domain.nx = nx;
    domain.ny = ny;
    domain.dx = domain.dy = spacing;
    return domain;
}

PlotDomain national_domain() {
    return summary_domain(39.7642F, -97.1467F, 113, 89, 0.47596F);
}

/// Levels above the highest that is drawn say why there is no echo.
std::uint8_t drawn_level(std::uint8_t coded) {
    return coded > kSummaryTop ? 0 : coded;
}

} // namespace

RcmGrid RCM_grid(float lat, float lon) {
    constexpr float kBoxesBefore = 12; // the radar lies in the 13th of 26
    RcmGrid grid;
    grid.plane = summary_domain(lat, lon, kRcmGridSize, kRcmGridSize, kRcmCellSize);
    const MapDomainScope scope(national_domain());
    float i = 0, j = 0;
    Point radar;
    MAP_tran(radar.x, radar.y, lat, lon);
    MAP_grid_untran(i, j, radar.x, radar.y);
    MAP_grid_tran(grid.x, grid.y, std::trunc(i - kBoxesBefore), std::trunc(j - kBoxesBefore));
    return grid;
}

Point RCM_cell_place(const RcmGrid &grid, float column, float row) {
    constexpr float kHalf = 0.5F;
    Point place{grid.x + (column + kHalf) * kRcmCellSize, grid.y - (row + kHalf) * kRcmCellSize};
    CellFrame(grid.plane).line(place, {}, std::span(&place, 1));
    return place;
}

void RCM_draw_grid(const RcmReport &report, const CellSink *other_sink) {
    std::array<float, kCellLevels> values{};
    for (std::size_t level = 0; level < kCellLevels; ++level)
        values[level] = static_cast<float>(drawn_level(static_cast<std::uint8_t>(level)));
    const LevelInk ink = CELL_ink(values);
    CellFiller filler(ink);
    const CellSink sink = other_sink != nullptr ? *other_sink : filler.sink();
    const RcmGrid grid = RCM_grid(RCM_state().lat, RCM_state().lon);
    const CellFrame frame(grid.plane);
    BoxCells boxes(frame);
    for (std::size_t row = 0; row < kRcmGridSize; ++row)
        for (std::size_t column = 0; column < kRcmGridSize;) {
            const std::uint8_t level = report.cells[column][row];
            std::size_t end = column + 1;
            while (end < kRcmGridSize && report.cells[end][row] == level) ++end;
            if (ink[level].color >= 0)
                boxes.draw(grid.x + static_cast<float>(column) * kRcmCellSize,
                           grid.y - static_cast<float>(row) * kRcmCellSize, kRcmCellSize,
                           static_cast<int>(end - column), level, sink);
            column = end;
        }
}

int RCM_plot_summary() {
    const RcmReport &report = RCM_state().report;
    GPH_trans(kDataTransform);
    PLT_label_up_left("RCM Base Reflectivity");
    PLT_label_up_right(DATE_make_label(report.date));
    PLT_label_date(report.date);
    PLT_mess("RCM Sum");
    CONT_choose_levels({kSummaryLevels, {}, kSummaryBase, kSummaryInterval, 0, kSummaryTop});
    if (FLAG_getplot(kPlotSummary) > 0) RCM_draw_grid(report, nullptr);
    return 0;
}
