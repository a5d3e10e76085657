#include "plot/contour/plot_points.h"

#include <algorithm>
#include <cmath>

#include "graphics/kernel/helpers.h"
#include "plot/map/current_map.h"

namespace {

constexpr float kUnknown = -9998;
/// Plane units, 12 km.
constexpr float kFine = 0.12F;
/// No two neighbours are farther apart, plane units; else the seam of the projection lies between them.
constexpr float kWidest = 20.0F;

Rect grid_limits(const PlotDomain &grid) {
    const MapDomainScope scope(grid);
    return MAP_get_limits();
}

} // namespace

PlotPoints::PlotPoints(const PlotDomain &grid)
    : grid_(grid), plot_(MAP_get_domain()), window_(GPH_get_win(kDataTransform)),
      direct_(DOM_comp_proj(grid, plot_) == 1), fine_(std::max(grid.dx, grid.dy) <= kFine) {
    const Rect limits = grid_limits(grid);
    left_ = limits.xmin;
    top_ = limits.ymax;
}

Point PlotPoints::exact(float i, float j) const {
    const Point grid{left_ + i * grid_.dx, top_ - j * grid_.dy};
    if (direct_) return grid;
    Point plot{kMissingF, kMissingF};
    MAP_domain_tran(grid_, plot_, plot.x, plot.y, grid.x, grid.y);
    return plot;
}

PlotPoints::Row &PlotPoints::row_for(int j) {
    Row &row = rows_[j % 2];
    if (row.number != j) {
        row.number = j;
        row.points.assign(static_cast<std::size_t>(grid_.nx), Point{kUnknown, kUnknown});
    }
    return row;
}

Point PlotPoints::grid_point(int i, int j) {
    Point &point = row_for(j).points[static_cast<std::size_t>(i)];
    if (point.x == kUnknown) point = exact(static_cast<float>(i), static_cast<float>(j));
    return point;
}

Point PlotPoints::at(const GridPoint &point) {
    const auto i = static_cast<int>(point.i), j = static_cast<int>(point.j);
    const float right = point.i - static_cast<float>(i), down = point.j - static_cast<float>(j);
    if (right == 0 && down == 0) return grid_point(i, j);
    if (direct_ || !fine_ || (right > 0 && down > 0)) return exact(point.i, point.j);
    const Point from = grid_point(i, j), to = right > 0 ? grid_point(i + 1, j) : grid_point(i, j + 1);
    if (torn(from, to)) return exact(point.i, point.j);
    const float part = right + down; // one of them is 0
    return {from.x + part * (to.x - from.x), from.y + part * (to.y - from.y)};
}

bool PlotPoints::torn(const Point &a, const Point &b) {
    return is_missing(a.x) || is_missing(b.x) || std::abs(b.x - a.x) > kWidest ||
           std::abs(b.y - a.y) > kWidest;
}

bool PlotPoints::shows(std::span<const Point> outline) const {
    Point low = outline.front(), high = low;
    for (std::size_t k = 0; k < outline.size(); ++k) {
        const Point &p = outline[k];
        if (torn(p, outline[(k + 1) % outline.size()])) return false;
        low = {std::min(low.x, p.x), std::min(low.y, p.y)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    }
    return high.x >= window_.xmin && low.x <= window_.xmax && high.y >= window_.ymin && low.y <= window_.ymax;
}
