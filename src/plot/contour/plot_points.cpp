#include "plot/contour/plot_points.h"

#include <algorithm>
#include <cmath>

#include "graphics/kernel/helpers.h"
#include "plot/map/current_map.h"

namespace {

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

/// The neighbours of a point between two others, along its row or its column, lie at even numbers.
Point PlotPoints::compute(int i, int j) {
    const auto between = [this, i, j](const Point &a, const Point &b) {
        return torn(a, b) ? exact(static_cast<float>(i), static_cast<float>(j))
                          : Point{(a.x + b.x) / 2, (a.y + b.y) / 2};
    };
    if (!direct_ && fine_ && i % 2 == 1 && i + 1 < grid_.nx) return between(at(i - 1, j), at(i + 1, j));
    if (!direct_ && fine_ && j % 2 == 1 && j + 1 < grid_.ny) return between(at(i, j - 1), at(i, j + 1));
    return exact(static_cast<float>(i), static_cast<float>(j));
}

void PlotPoints::begin_row(Row &row, int j) const {
    row.number = j;
    row.points.assign(static_cast<std::size_t>(grid_.nx), Point{kUnknown, kUnknown});
}

Point PlotPoints::at(const GridPoint &point) {
    const auto i = static_cast<int>(point.i), j = static_cast<int>(point.j);
    const float right = point.i - static_cast<float>(i), down = point.j - static_cast<float>(j);
    if (right == 0 && down == 0) return at(i, j);
    if (direct_ || !fine_ || (right > 0 && down > 0)) return exact(point.i, point.j);
    const Point from = at(i, j), to = right > 0 ? at(i + 1, j) : at(i, j + 1);
    if (torn(from, to)) return exact(point.i, point.j);
    const float part = right + down; // one of them is 0
    return {from.x + part * (to.x - from.x), from.y + part * (to.y - from.y)};
}

bool PlotPoints::torn(const Point &a, const Point &b) {
    return is_missing(a.x) || is_missing(b.x) || std::abs(b.x - a.x) > kWidest ||
           std::abs(b.y - a.y) > kWidest;
}

bool PlotPoints::shows_cell(int i, int j) {
    if (direct_) return true;
    const Point a = at(i, j), b = at(i + 1, j), c = at(i + 1, j + 1), d = at(i, j + 1);
    return !torn(a, b) && !torn(b, c) && !torn(c, d) && !torn(d, a);
}

bool PlotPoints::reaches_window(std::span<const Point> outline) const {
    Point low = outline.front(), high = low;
    for (const Point &p : outline) {
        low = {std::min(low.x, p.x), std::min(low.y, p.y)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    }
    return high.x >= window_.xmin && low.x <= window_.xmax && high.y >= window_.ymin && low.y <= window_.ymax;
}
