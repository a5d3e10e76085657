#include "radar/common/cells.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "plot/colour/levels.h"
#include "plot/map/current_map.h"

namespace {

constexpr std::size_t kBoxesPerPiece = 10;
/// Exact points of a grid line stand this far apart (plane units, 12 km): less than five metres of sagitta
/// between them.
constexpr float kKnotDistance = 0.12F;
/// Stretches of drawn bins with fewer others between them share their edges.
constexpr std::size_t kSmallGap = 32;
constexpr float kMostBetweenKnots = 1000.0F;
/// No cell is wider than this (plane units); a wider outline crosses the seam of the projection.
constexpr float kWidestCell = 20.0F;

} // namespace

bool CELL_same_ink(const Attribute &a, const Attribute &b) {
    return a.color == b.color && a.fill == b.fill;
}

bool CELL_draws(float value) {
    Attribute ink;
    CONT_get_fill_attrib(ink, value);
    return ink.color >= 0;
}

LevelInk CELL_ink(std::span<const float, kCellLevels> values) {
    LevelInk ink;
    const int pattern = CONT_get_fill_pat();
    for (std::size_t level = 0; level < kCellLevels; ++level) {
        CONT_get_fill_attrib(ink[level], values[level]);
        if (!is_missing(pattern)) ink[level].fill = pattern;
    }
    return ink;
}

CellFiller::CellFiller(const LevelInk &ink) : ink_(ink) {
    for (std::size_t level = 0; level < kCellLevels; ++level) {
        const auto same = [&](const Attribute &other) { return CELL_same_ink(other, ink[level]); };
        kind_[level] = static_cast<std::uint8_t>(std::ranges::find_if(ink, same) - ink.begin());
    }
}

void CellFiller::take(void *context, const CellCorners &corners, std::uint8_t level) {
    static_cast<CellFiller *>(context)->set_ink(level);
    gfill_area(corners);
}

void CellFiller::take_pixels(void *context, const CellPixels &corners, std::uint8_t level) {
    static_cast<CellFiller *>(context)->set_ink(level);
    gfill_pixels(corners);
}

void CellFiller::set_ink(std::uint8_t level) {
    if (present_ == kind_[level]) return;
    GPH_fill_attr(&ink_[level]);
    present_ = kind_[level];
}

CellFrame::CellFrame(const PlotDomain &product, float lat, float lon) : CellFrame(product) {
    around_radar_ = true;
    radar_ = SphereOrigin(lat, lon);
}

CellFrame::CellFrame(const PlotDomain &product)
    : product_(product), plot_(MAP_get_domain()), window_(GPH_get_win(kDataTransform)),
      direct_(DOM_comp_proj(product, plot_) == 1) {}

Point CellFrame::plot_of_radar_point(const Point &grid) const {
    const SpherePoint place = radar_.at(grid.x, grid.y);
    Point plane{kMissingF, kMissingF};
    MAP_tran(plane.x, plane.y, static_cast<float>(place.lat), static_cast<float>(place.lon));
    return plane;
}

Point CellFrame::plot_of_plane_point(const Point &grid) const {
    if (direct_) return grid;
    Point plane{kMissingF, kMissingF};
    MAP_domain_tran(product_, plot_, plane.x, plane.y, grid.x, grid.y);
    return plane;
}

Point CellFrame::to_plot(const Point &grid) const {
    return around_radar_ ? plot_of_radar_point(grid) : plot_of_plane_point(grid);
}

void CellFrame::line(const Point &start, const Point &step, std::span<Point> out) const {
    const auto grid_point = [&](std::size_t i) {
        const auto k = static_cast<float>(i);
        return Point{start.x + k * step.x, start.y + k * step.y};
    };
    const float length = std::max(std::hypot(step.x, step.y), kKnotDistance / kMostBetweenKnots);
    const auto stride = static_cast<std::size_t>(std::max(1.0F, kKnotDistance / length));
    if (out.empty()) return;
    out[0] = to_plot(grid_point(0));
    for (std::size_t knot = 0; knot + 1 < out.size();) {
        const std::size_t next = std::min(knot + stride, out.size() - 1);
        out[next] = to_plot(grid_point(next));
        const Point a = out[knot];
        const Point b = out[next];
        const bool torn = is_missing(a.x) || is_missing(b.x) || std::abs(b.x - a.x) > kWidestCell ||
                          std::abs(b.y - a.y) > kWidestCell;
        for (std::size_t i = knot + 1; i < next; ++i) {
            const float part = static_cast<float>(i - knot) / static_cast<float>(next - knot);
            out[i] =
                torn ? to_plot(grid_point(i)) : Point{a.x + part * (b.x - a.x), a.y + part * (b.y - a.y)};
        }
        knot = next;
    }
}

Point CellFrame::grid_point(float lat, float lon) const {
    if (around_radar_) {
        const SphereOrigin::Way way = radar_.to(static_cast<double>(lat), static_cast<double>(lon));
        return {static_cast<float>(way.east), static_cast<float>(way.north)};
    }
    const MapDomainScope scope(product_);
    Point plane{kMissingF, kMissingF};
    MAP_tran(plane.x, plane.y, lat, lon);
    return plane;
}

bool CellFrame::shows(const CellCorners &c) const {
    if (is_missing(c[0].x) || is_missing(c[1].x) || is_missing(c[2].x) || is_missing(c[3].x)) return false;
    const auto [x_low, x_high] = std::minmax({c[0].x, c[1].x, c[2].x, c[3].x});
    if (x_high < window_.xmin || x_low > window_.xmax || x_high - x_low > kWidestCell) return false;
    const auto [y_low, y_high] = std::minmax({c[0].y, c[1].y, c[2].y, c[3].y});
    return y_high >= window_.ymin && y_low <= window_.ymax && y_high - y_low <= kWidestCell;
}

bool CellFrame::shows_all(std::span<const Point> points) const {
    if (window_.width() > kWidestCell || window_.height() > kWidestCell)
        return false; // then a seam may tear cells inside the window
    Point low = points.front(), high = low;
    for (const Point &p : points) {
        low = {std::min(low.x, p.x), std::min(low.y, p.y)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    }
    return low.x >= window_.xmin && high.x <= window_.xmax && low.y >= window_.ymin && high.y <= window_.ymax;
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
    for (std::size_t i = skip; i < levels.size();) {
        if (ink[levels[i]].color < 0) {
            ++i;
            continue;
        }
        std::size_t end = i + 1; // behind the last drawn bin
        for (std::size_t k = end; k < levels.size() && k - end < kSmallGap; ++k)
            if (ink[levels[k]].color >= 0) end = k + 1;
        draw_stretch(i, levels.subspan(i, end - i), ink, sink);
        i = end;
    }
}

void RadialCells::draw_stretch(std::size_t begin, std::span<const std::uint8_t> levels, const LevelInk &ink,
                               const CellSink &sink) {
    const std::size_t corners = levels.size() + 1;
    const double range =
        static_cast<double>(first_) + static_cast<double>(begin) * static_cast<double>(step_);
    const auto edge = [&](double sine, double cosine, std::vector<Point> &points) {
        points.resize(corners);
        frame_.line({static_cast<float>(range * sine), static_cast<float>(range * cosine)},
                    {static_cast<float>(step_ * sine), static_cast<float>(step_ * cosine)}, points);
    };
    edge(sin_a_, cos_a_, edge_a_);
    edge(sin_b_, cos_b_, edge_b_);
    if (sink.take_pixels != nullptr && gtakes_pixels())
        fill_pixels(levels, ink, sink);
    else
        fill_outlines(levels, ink, sink);
}

void RadialCells::fill_outlines(std::span<const std::uint8_t> levels, const LevelInk &ink,
                                const CellSink &sink) {
    for (std::size_t i = 0; i < levels.size(); ++i) {
        if (ink[levels[i]].color < 0) continue;
        const CellCorners cell = corners_of(i);
        if (frame_.shows(cell)) sink.take(sink.context, cell, levels[i]);
    }
}

void RadialCells::fill_pixels(std::span<const std::uint8_t> levels, const LevelInk &ink,
                              const CellSink &sink) {
    gto_pixels(edge_a_, pixels_a_);
    gto_pixels(edge_b_, pixels_b_);
    const bool whole = frame_.shows_all(edge_a_) && frame_.shows_all(edge_b_);
    bool drawn_before = false; // the bin before this one
    for (std::size_t i = 0; i < levels.size(); ++i) {
        const Attribute &present = ink[levels[i]];
        const bool drawn = present.color >= 0 && (whole || frame_.shows(corners_of(i)));
        if (drawn && !(drawn_before && CELL_same_ink(present, ink[levels[i - 1]]) && adds_nothing(i)))
            sink.take_pixels(sink.context,
                             {pixels_a_[i], pixels_a_[i + 1], pixels_b_[i + 1], pixels_b_[i], pixels_a_[i]},
                             levels[i]);
        drawn_before = drawn;
    }
}

CellCorners RadialCells::corners_of(std::size_t bin) const {
    return {edge_a_[bin], edge_a_[bin + 1], edge_b_[bin + 1], edge_b_[bin], edge_a_[bin]};
}

/// A bin shorter than a pixel whose both ends fall where the bin before it ended: that one has drawn them.
bool RadialCells::adds_nothing(std::size_t bin) const {
    const PixelPoint a = pixels_a_[bin], b = pixels_b_[bin];
    return a == pixels_a_[bin + 1] && b == pixels_b_[bin + 1] && std::abs(a.x - b.x) <= 1 &&
           std::abs(a.y - b.y) <= 1;
}

void BoxCells::draw(float x, float y_top, float size, int count, std::uint8_t level, const CellSink &sink) {
    if (count < 1) return;
    const auto boxes = static_cast<std::size_t>(count);
    top_.resize(boxes + 1);
    bottom_.resize(boxes + 1);
    frame_.line({x, y_top}, {size, 0.0F}, top_);
    frame_.line({x, y_top - size}, {size, 0.0F}, bottom_);
    const std::size_t piece = frame_.direct() ? kBoxesPerPiece : 1;
    for (std::size_t left = 0; left < boxes; left += piece) {
        const std::size_t right = std::min(left + piece, boxes);
        const CellCorners cell{top_[left], top_[right], bottom_[right], bottom_[left], top_[left]};
        if (frame_.shows(cell)) sink.take(sink.context, cell, level);
    }
}
