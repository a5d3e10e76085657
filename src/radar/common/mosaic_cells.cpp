#include "radar/common/mosaic_cells.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "graphics/kernel/kernel.h"

namespace {

constexpr int kCellsPerPiece = 10;
constexpr std::size_t kCorners = 4;
/// From one exact place to the next, plane units (25 km, a quarter of a degree).
constexpr float kLatticeStep = 0.25F;
constexpr float kMostPerStep = 1000.0F;
/// Neighbours of the lattice that lie further apart on the plot (plane units) have a seam between them.
constexpr float kWidestStep = 2.0F;

int cells_per_step(float size) {
    return static_cast<int>(std::clamp(kLatticeStep / size, 1.0F, kMostPerStep));
}

bool torn(const Point &a, const Point &b) {
    return is_missing(a.x) || is_missing(b.x) || std::abs(b.x - a.x) > kWidestStep ||
           std::abs(b.y - a.y) > kWidestStep;
}

Point between(const Point &a, const Point &b, float part) {
    return {a.x + part * (b.x - a.x), a.y + part * (b.y - a.y)};
}

constexpr Point kNowhere{kMissingF, kMissingF};

} // namespace

MosaicCells::MosaicCells(const CellFrame &frame, const MosaicGrid &grid, int run_length)
    : frame_(frame), grid_(grid), piece_(run_length > 0   ? run_length
                                         : frame.direct() ? kCellsPerPiece
                                                          : 1),
      stride_(cells_per_step(grid.dx)), height_(cells_per_step(grid.dy)),
      per_stride_(1.0F / static_cast<float>(stride_)) {
    const auto knots = static_cast<std::size_t>(grid.columns / stride_) + 2;
    for (Knots *row : {&upper_, &lower_, &top_, &bottom_}) row->resize(knots);
}

void MosaicCells::exact_row(int row, Knots &knots) const {
    const float y = grid_.y - static_cast<float>(row * height_) * grid_.dy;
    for (std::size_t i = 0; i < knots.size(); ++i) {
        const Point start{grid_.x + static_cast<float>(static_cast<int>(i) * stride_) * grid_.dx, y};
        frame_.line(start, {}, std::span(&knots[i], 1));
    }
}

void MosaicCells::set_edge(int line, Knots &knots) {
    const int row = line / height_;
    if (row != rows_at_) {
        if (row == rows_at_ + 1 && rows_at_ >= 0)
            std::swap(upper_, lower_);
        else
            exact_row(row, upper_);
        exact_row(row + 1, lower_);
        rows_at_ = row;
    }
    const float part = static_cast<float>(line % height_) / static_cast<float>(height_);
    for (std::size_t i = 0; i < knots.size(); ++i)
        knots[i] = torn(upper_[i], lower_[i]) ? kNowhere : between(upper_[i], lower_[i], part);
}

void MosaicCells::set_edges(int line) {
    if (line == edges_at_) return;
    if (line == edges_at_ + 1 && edges_at_ >= 0)
        std::swap(top_, bottom_);
    else
        set_edge(line, top_);
    set_edge(line + 1, bottom_);
    edges_at_ = line;
}

Point MosaicCells::on_edge(const Knots &knots, int line, int column) const {
    const float at = static_cast<float>(column) * per_stride_;
    const auto knot = static_cast<std::size_t>(at);
    const Point &a = knots[knot], &b = knots[knot + 1];
    if (!torn(a, b)) return between(a, b, at - static_cast<float>(knot));
    Point exact{};
    frame_.line(
        {grid_.x + static_cast<float>(column) * grid_.dx, grid_.y - static_cast<float>(line) * grid_.dy}, {},
        std::span(&exact, 1));
    return exact;
}

void MosaicCells::add_piece(int line, int column, int cells, std::uint8_t level) {
    corners_.push_back(on_edge(top_, line, column));
    corners_.push_back(on_edge(bottom_, line + 1, column));
    corners_.push_back(on_edge(bottom_, line + 1, column + cells));
    corners_.push_back(on_edge(top_, line, column + cells));
    levels_.push_back(level);
}

void MosaicCells::add_run(int line, const MosaicRun &run, bool in_pixels) {
    const int end = std::min(run.column + run.cells, grid_.columns);
    for (int column = run.column; column < end;) {
        const int next = in_pixels && frame_.direct() ? end
                         : in_pixels                  ? (column / stride_ + 1) * stride_
                                                      : column + piece_;
        const int cells = std::min(next, end) - column;
        add_piece(line, column, cells, run.level);
        column += cells;
    }
}

void MosaicCells::draw(int line, std::span<const MosaicRun> runs, const LevelInk &ink, const CellSink &sink) {
    corners_.clear();
    levels_.clear();
    const bool in_pixels = sink.take_pixels != nullptr && gtakes_pixels();
    for (const MosaicRun &run : runs) {
        if (ink[run.level].color < 0 || run.cells < 1) continue;
        set_edges(line);
        add_run(line, run, in_pixels);
    }
    if (levels_.empty()) return;
    if (in_pixels)
        fill_pixels(ink, sink);
    else
        fill_outlines(sink);
}

void MosaicCells::fill_outlines(const CellSink &sink) const {
    for (std::size_t i = 0; i < levels_.size(); ++i) {
        const Point *const c = &corners_[i * kCorners];
        const CellCorners outline{c[0], c[1], c[2], c[3], c[0]};
        if (frame_.shows(outline)) sink.take(sink.context, outline, levels_[i]);
    }
}

void MosaicCells::fill_pixels(const LevelInk &ink, const CellSink &sink) {
    gto_pixels(corners_, pixels_);
    const bool whole = frame_.shows_all(corners_);
    const PixelPoint *before = nullptr; ///< corners of the piece drawn before this one
    const Attribute *ink_before = nullptr;
    for (std::size_t i = 0; i < levels_.size(); ++i) {
        const Point *const c = &corners_[i * kCorners];
        const PixelPoint *const p = &pixels_[i * kCorners];
        if (!whole && !frame_.shows({c[0], c[1], c[2], c[3], c[0]})) continue;
        const Attribute &present = ink[levels_[i]];
        const bool seen_before =
            before != nullptr && CELL_same_ink(present, *ink_before) && std::equal(p, p + kCorners, before);
        if (!seen_before) sink.take_pixels(sink.context, {p[0], p[1], p[2], p[3], p[0]}, levels_[i]);
        before = p;
        ink_before = &present;
    }
}
