// A national grid of 449 x 353 levels with echo over a third of the country: its bands, lines and values as a
// picture of 1000 x 800 pixels in memory.

#include <cmath>
#include <vector>

#include <benchmark/benchmark.h>

#include "graphics/kernel/helpers.h"
#include "lib/options/flags.h"
#include "lib/report/message.h"
#include "lib/resources/database.h"
#include "plot/colour/level_choice.h"
#include "plot/colour/levels.h"
#include "plot/contour/contour.h"
#include "plot/map/current_map.h"
#include "plot/session/plot_session.h"
#include "radar/common/level_lists.h"
#include "radar/summary/state.h"

namespace {

std::vector<float> echo(const PlotDomain &grid) {
    std::vector<float> field;
    for (int j = 0; j < grid.ny; ++j)
        for (int i = 0; i < grid.nx; ++i) {
            const double value = 2.6 * std::sin(i * 0.11) * std::cos(j * 0.09) +
                                 1.3 * std::sin((i + j) * 0.31) + 0.8 * std::sin(i * 0.9) * std::cos(j * 0.8);
            field.push_back(static_cast<float>(std::min(6.0, std::max(0.0, std::floor(value * 2)))));
        }
    return field;
}

PlotDomain country(int proj) {
    PlotDomain domain = RAD_grid_domain(SummaryKind::coded_message);
    domain.proj = proj;
    if (proj != kProjPolar) domain.plat = domain.plon = kMissingF;
    domain.nx = 61;
    domain.ny = 49;
    domain.dx = domain.dy = 1;
    return domain;
}

void draw(benchmark::State &state, int type, int proj) {
    MESS_set(0, 0);
    FLAG_resetplot(1);
    FLAG_set(kFlagDevice, 1);
    RES_put("device", "d,memory");
    RES_put("file_path", VYX_SOURCE_DIR "/data");
    RES_put("geometry", "1000x800");
    RES_put("plot_param", "full,nobar");
    const PlotDomain domain = country(proj);
    PLT_open(DOM_aspect(domain));
    MAP_setup(domain);
    const PlotDomain grid = RAD_grid_domain(SummaryKind::coded_message);
    const std::vector<float> field = echo(grid);
    CONT_init();
    CONT_choose_levels({kSummaryLevels, {}, kSummaryBase, kSummaryInterval, 0, kSummaryTop});
    CONT_set_type(type);
    for (auto _ : state)
        if (CONT_draw_contour(field, grid) != 0) return state.SkipWithError("not drawn");
    (void)GPH_end(1);
}

BENCHMARK_CAPTURE(draw, bands_own, kContourFill, kProjPolar)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(draw, bands_latlon, kContourFill, kProjLatLon)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(draw, lines_own, kContourLines, kProjPolar)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(draw, values_own, kContourValues, kProjPolar)->Unit(benchmark::kMillisecond);

} // namespace
