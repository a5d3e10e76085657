/// The grid of levels, drawn as a field, and read under the pointer.

#include <array>
#include <cmath>
#include <new>

#include "graphics/kernel/helpers.h"
#include "lib/options/flags.h"
#include "lib/report/message.h"
#include "lib/report/misfits.h"
#include "lib/resources/database.h"
#include "lib/text/strings.h"
#include "plot/colour/level_choice.h"
#include "plot/colour/levels.h"
#include "plot/contour/contour.h"
#include "plot/map/current_map.h"
#include "radar/common/intensity_legend.h"
#include "radar/common/level_lists.h"
#include "radar/summary/plot.h"
#include "radar/summary/reader.h"
#include "radar/summary/state.h"

namespace {

/// Levels of thunderstorms without a strength of their own: drawn as the weakest.
constexpr std::uint8_t kUnratedLow = 8, kUnratedHigh = 9;

std::uint8_t drawn_level(std::uint8_t level) {
    return level == kUnratedLow || level == kUnratedHigh ? std::uint8_t{1} : level;
}

float field_value(std::uint8_t level) {
    return level == kSummaryMissing ? 0.0F : static_cast<float>(drawn_level(level));
}

/// Plot types of summaries besides those of every contour plot.
constexpr int kContourOld = 51, kNumbers = 54, kFillOld = 55, kDashedLines = 13, kNegativeDashed = 14;

/// What a plot type draws.
struct TypeRow {
    int type;
    int contour; ///< type of the contour plot
    int dash;    ///< rule of its lines
    bool legend;
    float interval;
};
constexpr std::array kTypes{TypeRow{kContourLines, kContourLines, 0, false, 1},
                            TypeRow{kDashedLines, kContourLines, 1, false, 1},
                            TypeRow{kNegativeDashed, kContourLines, -1, false, 1},
                            TypeRow{kContourOld, kContourLines, 0, false, 2},
                            TypeRow{kContourFill, kContourFill, 0, false, 1},
                            TypeRow{kContourFillOld, kContourFill, 0, true, 1},
                            TypeRow{kFillOld, kContourFill, 0, true, 1},
                            TypeRow{kContourFillLines, kContourFillLines, 0, false, 1},
                            TypeRow{kContourValues, kContourValues, 0, false, 1},
                            TypeRow{kNumbers, kContourValues, 0, false, 1}};

const TypeRow &plot_type() {
    constexpr std::size_t kUsual = 5;
    const int type = FLAG_get(kFlagPlotType);
    for (const TypeRow &row : kTypes)
        if (row.type == type) return row;
    if (const char *word = RES_get("plot_type"); word != nullptr && !is_missing(type))
        WORD_tell("plot_type", format_text("\"%s\" is not for radar summaries, they are filled", word));
    return kTypes[kUsual];
}

} // namespace

PlotDomain RAD_grid_domain(SummaryKind kind) {
    constexpr float kLongitude = -105;
    PlotDomain grid;
    DOM_init(grid);
    grid.proj = kProjPolar;
    grid.plat = 90;
    grid.plon = kLongitude;
    if (kind == SummaryKind::coded_message) {
        grid.clat = 39.71121F;
        grid.clon = -97.09452F;
        grid.nx = 449;
        grid.ny = 353;
        grid.dx = grid.dy = 0.11899F;
    } else {
        grid.clat = 40.02738F;
        grid.clon = -96.10690F;
        grid.nx = 120;
        grid.ny = 90;
        grid.dx = grid.dy = 0.47596F;
    }
    return grid;
}

std::vector<float> RAD_grid_field(const RadarInfo &info, const PlotDomain &grid) {
    std::vector<float> field;
    field.reserve(static_cast<std::size_t>(grid.nx) * static_cast<std::size_t>(grid.ny));
    for (int y = 0; y < grid.ny; ++y)
        for (int x = 0; x < grid.nx; ++x) field.push_back(field_value(info.grid.at(x, y)));
    return field;
}

int RAD_plot_summary() {
    if (FLAG_getplot(kPlotSummary) < 1) return -1;
    const RadarInfo &info = RAD_state().info;
    if (info.kind == SummaryKind::none) return -1;
    const PlotDomain grid = RAD_grid_domain(info.kind);
    const std::vector<float> field = [&info, &grid] {
        try {
            return RAD_grid_field(info, grid);
        } catch (const std::bad_alloc &) {
            MESS_print(kError, "No memory for radar summary field\n");
            throw; // the series ends with the pictures before, status 3
        }
    }();
    const TypeRow &type = plot_type();
    GPH_trans(kDataTransform);
    CONT_init();
    CONT_choose_levels({.colors = kSummaryLevels,
                        .values = {},
                        .base = kSummaryBase,
                        .interval = type.interval,
                        .range_min = 0,
                        .range_max = kSummaryTop});
    CONT_set_type(type.contour);
    CONT_set_dash(type.dash);
    (void)CONT_draw_contour(field, grid); // told where it fails
    if (type.legend) RAD_draw_bar();
    return 0;
}

bool RAD_read_place(const std::string &file, RadarReading &reading) {
    const MessagePause told(~kPrint); // all that is to be said of the file was said when it was drawn
    int kind = 0;
    const int number = RAD_open(file, kind);
    RadarInfo info;
    if (number < 0) {
        reading.value = "it cannot be read";
        return false;
    }
    RAD_getinfo(number, info); // what it lacks leaves a grid without echo
    RAD_close(number);
    const PlotDomain grid = RAD_grid_domain(info.kind);
    const MapDomainScope scope(grid);
    float x = kMissingF, y = kMissingF, i = kMissingF, j = kMissingF;
    reading.value = kOutsideWords;
    if (info.kind == SummaryKind::none || MAP_tran(x, y, reading.lat, reading.lon) != 1) return true;
    MAP_grid_untran(i, j, x, y);
    const auto column = static_cast<int>(std::lround(i)), row = static_cast<int>(std::lround(j));
    if (column >= 0 && column < grid.nx && row >= 0 && row < grid.ny)
        RADAR_set_level(drawn_level(info.grid.at(column, row)), reading);
    return true;
}
