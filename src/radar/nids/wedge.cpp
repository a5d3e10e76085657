#include "radar/nids/wedge.h"

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "lib/options/flags.h"
#include "plot/colour/levels.h"
#include "radar/common/cells.h"
#include "radar/nids/state.h"

namespace {

void fill(const PlotDomain &product, const std::array<Point, 5> &polygon, const Attribute &ink) {
    const CellFrame frame(product);
    CellCorners corners = polygon;
    for (Point &corner : corners) frame.line(corner, {}, std::span(&corner, 1));
    if (!frame.shows(corners)) return;
    GPH_fill_attr(&ink);
    gfill_area(corners);
}

} // namespace

int NIDS_plot_WEDGE(std::array<Point, 5> &polygon, const std::array<float, 4> &steps, float run,
                    float value) {
    if (FLAG_getplot(kPlotSummary) < 1) return -1;
    polygon[1].x += run * steps[0];
    polygon[1].y += run * steps[1];
    polygon[2].x += run * steps[2];
    polygon[2].y += run * steps[3];
    polygon[4] = polygon[0];
    if (!is_missing(value)) {
        Attribute ink;
        CONT_get_fill_attrib(ink, value);
        const int pattern = CONT_get_fill_pat();
        if (!is_missing(pattern)) ink.fill = pattern;
        if (ink.color != kColorBackground) fill(NIDS_state().info.domain, polygon, ink);
    }
    polygon[0].x += run * steps[0];
    polygon[0].y += run * steps[1];
    polygon[3].x += run * steps[2];
    polygon[3].y += run * steps[3];
    return 0;
}
