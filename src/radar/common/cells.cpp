#include "radar/common/cells.h"

#include <algorithm>
#include <cmath>

#include "graphics/kernel/gph.h"
#include "graphics/kernel/kernel.h"
#include "plot/levels.h"
#include "plot/map.h"

namespace {

constexpr int kBoxesPerPiece = 10;
/// No cell is wider than this (plane units); a wider outline crosses the seam of the projection.
constexpr float kWidestCell = 20.0F;

} // namespace

LevelInk CELL_ink(std::span<const float, kCellLevels> values) {
    LevelInk ink;
    const int pattern = CONT_get_fill_pat();
    for (std::size_t level = 0; level < kCellLevels; ++level) {
        CONT_get_fill_attrib(ink[level], values[level]);
        if (!is_missing(pattern)) ink[level].fill = pattern;
    }
    return ink;
}

void CellFiller::take(void *context, const CellCorners &corners, std::uint8_t level) {
    auto &self = *static_cast<CellFiller *>(context);
    if (self.level_ != level) {
        GPH_fill_attr(&self.ink_[level]);
        self.level_ = level;
    }
    gfill_area(corners);
}

CellFrame::CellFrame(const PlotDomain &product, float lat, float lon)
    : product_(product), plot_(MAP_get_domain()), window_(GPH_get_win(2)),
      direct_(DOM_comp_proj(product, plot_) == 1) {
    const MapDomainScope scope(product_);
    MAP_tran(radar_.x, radar_.y, lat, lon);
    turn_ = MAP_dir_adj(0.0F, radar_.x, radar_.y);
}

void CellFrame::to_plot(std::span<Point> points) const {
    if (direct_) return;
    {
        const MapDomainScope scope(product_);
        for (Point &p : points) {
            Point place{kMissingF, kMissingF};
            MAP_untran(place.x, place.y, p.x, p.y);
            p = place;
        }
    }
    for (Point &p : points) {
        if (is_missing(p.x)) continue;
        Point plane{kMissingF, kMissingF};
        MAP_tran(plane.x, plane.y, p.x, p.y);
        p = plane;
    }
}

bool CellFrame::shows(const CellCorners &c) const {
    if (!direct_ && (is_missing(c[0].x) || is_missing(c[1].x) || is_missing(c[2].x) || is_missing(c[3].x)))
        return false;
    const auto [x_low, x_high] = std::minmax({c[0].x, c[1].x, c[2].x, c[3].x});
    if (x_high < window_.xmin || x_low > window_.xmax) return false;
    if (!direct_ && x_high - x_low > kWidestCell) return false;
    const auto [y_low, y_high] = std::minmax({c[0].y, c[1].y, c[2].y, c[3].y});
    return y_high >= window_.ymin && y_low <= window_.ymax;
}

void RadialCells::draw(float azimuth_a, float azimuth_b, float first, float step,
                       std::span<const std::uint8_t> levels, std::size_t skip, const LevelInk &ink,
                       const CellSink &sink) {
    const double a = azimuth_a * kDegree;
    const double b = azimuth_b * kDegree;
    sin_a_ = std::sin(a);
    cos_a_ = std::cos(a);
    sin_b_ = std::sin(b);
    cos_b_ = std::cos(b);
    first_ = first;
    step_ = step;
    const auto drawn = [&](std::size_t i) { return ink[levels[i]].color >= 0; };
    for (std::size_t i = skip; i < levels.size();) {
        if (!drawn(i)) {
            ++i;
            continue;
        }
        std::size_t end = i + 1;
        while (end < levels.size() && drawn(end)) ++end;
        draw_stretch(i, end, levels, sink);
        i = end;
    }
}

void RadialCells::draw_stretch(std::size_t begin, std::size_t end, std::span<const std::uint8_t> levels,
                               const CellSink &sink) {
    const std::size_t corners = end - begin + 1;
    edges_.resize(2 * corners);
    const std::span edge_a = std::span(edges_).first(corners);
    const std::span edge_b = std::span(edges_).last(corners);
    const Point radar = frame_.radar();
    for (std::size_t i = 0; i < corners; ++i) {
        const double range =
            static_cast<double>(first_) + static_cast<double>(begin + i) * static_cast<double>(step_);
        edge_a[i] = {static_cast<float>(radar.x + range * sin_a_),
                     static_cast<float>(radar.y + range * cos_a_)};
        edge_b[i] = {static_cast<float>(radar.x + range * sin_b_),
                     static_cast<float>(radar.y + range * cos_b_)};
    }
    frame_.to_plot(edges_);
    for (std::size_t i = 0; i + 1 < corners; ++i) {
        const CellCorners cell{edge_a[i], edge_a[i + 1], edge_b[i + 1], edge_b[i], edge_a[i]};
        if (frame_.shows(cell)) sink.take(sink.context, cell, levels[begin + i]);
    }
}

void CELL_draw_boxes(const CellFrame &frame, float x, float y_top, float size, int count, std::uint8_t level,
                     const CellSink &sink) {
    const int piece = frame.direct() ? kBoxesPerPiece : 1;
    const float y_bottom = y_top - size;
    for (int done = 0; done < count; done += piece) {
        const float left = x + static_cast<float>(done) * size;
        const float right = x + static_cast<float>(std::min(done + piece, count)) * size;
        CellCorners cell{Point{left, y_top}, Point{right, y_top}, Point{right, y_bottom},
                         Point{left, y_bottom}, Point{left, y_top}};
        frame.to_plot(std::span(cell).first(4));
        cell[4] = cell[0];
        if (frame.shows(cell)) sink.take(sink.context, cell, level);
    }
}
