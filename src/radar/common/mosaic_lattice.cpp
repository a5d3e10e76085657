#include "radar/common/mosaic_lattice.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

/// From one exact place to the next, plane units (25 km, a quarter of a degree).
constexpr float kLatticeStep = 0.25F;
constexpr float kMostPerStep = 1000.0F;
/// Neighbours of the lattice that lie further apart on the plot (plot units) have a seam between them.
constexpr float kWidestStep = 2.0F;

int cells_per_step(float size) {
    return static_cast<int>(std::clamp(kLatticeStep / size, 1.0F, kMostPerStep));
}

Point between(const Point &a, const Point &b, float part) {
    return {a.x + part * (b.x - a.x), a.y + part * (b.y - a.y)};
}

constexpr Point kNowhere{kMissingF, kMissingF};

} // namespace

MosaicLattice::MosaicLattice(const CellFrame &frame, const MosaicGrid &grid, const PixelScale *scale)
    : frame_(frame), grid_(grid), scale_(scale != nullptr ? *scale : PixelScale{0, 1, 0, 1}),
      widest_(kWidestStep * std::max(std::abs(scale_.x_per), std::abs(scale_.y_per))),
      stride_(cells_per_step(grid.dx)), height_(cells_per_step(grid.dy)),
      per_stride_(1.0F / static_cast<float>(stride_)) {
    const auto knots = static_cast<std::size_t>(grid.columns / stride_) + 2;
    for (Knots *row : {&above_, &below_, &top_, &bottom_}) row->resize(knots);
}

bool MosaicLattice::torn(const Point &a, const Point &b) const {
    return is_missing(a.x) || is_missing(b.x) || std::abs(b.x - a.x) > widest_ ||
           std::abs(b.y - a.y) > widest_;
}

Point MosaicLattice::exact(int column, int line) const {
    Point point{};
    frame_.line(
        {grid_.x + static_cast<float>(column) * grid_.dx, grid_.y - static_cast<float>(line) * grid_.dy}, {},
        std::span(&point, 1));
    if (is_missing(point.x)) return kNowhere;
    return {scale_.x_at + point.x * scale_.x_per, scale_.y_at + point.y * scale_.y_per};
}

void MosaicLattice::exact_row(int row, Knots &knots) const {
    for (std::size_t i = 0; i < knots.size(); ++i)
        knots[i] = exact(static_cast<int>(i) * stride_, row * height_);
}

void MosaicLattice::set_edge(int line, Knots &knots) {
    const int row = line / height_;
    if (row != row_) {
        if (row == row_ + 1 && row_ >= 0)
            std::swap(above_, below_);
        else
            exact_row(row, above_);
        exact_row(row + 1, below_);
        row_ = row;
    }
    const float part = static_cast<float>(line % height_) / static_cast<float>(height_);
    for (std::size_t i = 0; i < knots.size(); ++i)
        knots[i] = torn(above_[i], below_[i]) ? kNowhere : between(above_[i], below_[i], part);
}

void MosaicLattice::set_line(int line) {
    if (line == line_) return;
    if (line == line_ + 1 && line_ >= 0)
        std::swap(top_, bottom_);
    else
        set_edge(line, top_);
    set_edge(line + 1, bottom_);
    line_ = line;
}

Point MosaicLattice::on_edge(const Knots &knots, int line, int column) const {
    const float at = static_cast<float>(column) * per_stride_;
    const auto knot = static_cast<std::size_t>(at);
    const Point &a = knots[knot], &b = knots[knot + 1];
    return torn(a, b) ? exact(column, line) : between(a, b, at - static_cast<float>(knot));
}
