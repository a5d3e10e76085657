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

/// The product's domain from the first file of the series that can be read. False when there is none.
bool read_first_header(const RadarSteps &steps, const DateRecord &base_date, PlotDomain &product) {
    std::string name;
    FILE_set_date(&base_date, name);
    FILE_first(base_date);
    const bool series = FILE_get_num_file() != 0;
    do {
        if (steps.open_file(name) == 1) {
            product = steps.product_domain();
            steps.close_file();
            return true;
        }
    } while (series && FILE_get_next(name) == 1);
    return false;
}

/// Draws every file that can be read; the number of frames drawn.
int draw_series(const RadarSteps &steps, const DateRecord &base_date) {
    FILE_first(base_date);
    const bool series = FILE_get_num_file() != 0;
    int frame = 0;
    std::string name;
    while (FILE_get_next(name) == 1) {
        if (steps.open_file(name) != 1) {
            if (!series) PLT_exit(kExitNoFile);
            continue;
        }
        if (frame > 0 && gnew_page() != 0) {
            steps.close_file();
            break;
        }
        steps.plot_frame();
        steps.close_file();
        ++frame;
    }
    return frame;
}

} // namespace

int RADAR_plot(const RadarSteps &steps, DateRecord base_date, PlotDomain &domain) {
    PlotDomain product;
    if (!read_first_header(steps, base_date, product)) VYX_exit(kExitNoFile);
    // A product without a place on the earth (a wind profile) has only its own screen to stand on.
    if (is_missing(domain.proj) || !is_map_projection(product.proj)) domain = product;

    PLT_open(DOM_aspect(domain));
    if (gchk_graphics() == 1) MAP_setup(domain);
    MAP_fill_cont(0);
    draw_series(steps, base_date);
    PLT_close();
    return 0;
}
