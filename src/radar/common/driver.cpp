#include "radar/common/driver.h"

#include <string>

#include "graphics/kernel/kernel.h"
#include "lib/file_naming.h"
#include "lib/file_series.h"
#include "lib/message.h"
#include "lib/process.h"
#include "plot/map.h"
#include "plot/map_settings.h"
#include "plot/session.h"

namespace {

/// Opens the first file of the series that can be read and leaves it open; its name, empty when there is
/// none.
std::string open_first(const RadarSteps &steps, const DateRecord &base_date) {
    std::string name;
    FILE_set_date(&base_date, name);
    FILE_first(base_date);
    const bool series = FILE_get_num_file() != 0;
    do {
        if (steps.open_file(name) == 1) return name;
    } while (series && FILE_get_next(name) == 1);
    return {};
}

/// Draws every file that can be read; `open` is open already.
void draw_series(const RadarSteps &steps, const DateRecord &base_date, std::string open) {
    FILE_first(base_date);
    const bool series = FILE_get_num_file() != 0;
    bool drawn = false;
    std::string name;
    while (FILE_get_next(name) == 1) {
        const bool ready = name == open || steps.open_file(name) == 1;
        open.clear();
        if (!ready && !series) PLT_exit(kExitNoFile);
        if (!ready) continue;
        if (drawn && gnew_page() != 0) break;
        steps.plot_frame();
        steps.close_file();
        drawn = true;
    }
    steps.close_file();
}

} // namespace

int RADAR_plot(const RadarSteps &steps, DateRecord base_date, PlotDomain &domain) {
    const std::string first = open_first(steps, base_date);
    if (first.empty()) VYX_exit(kExitNoFile);
    const PlotDomain product = steps.product_domain();
    // A product without a place on the earth (a wind profile) has only its own screen to stand on.
    if (is_missing(domain.proj) || !is_map_projection(product.proj)) domain = product;

    PLT_open(DOM_aspect(domain));
    if (gchk_graphics() == 1) MAP_setup(domain);
    MAP_fill_cont(0);
    draw_series(steps, base_date, first);
    PLT_close();
    return 0;
}
