#include "radar/common/mosaic_cells.h"

#include <algorithm>

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"

namespace {

constexpr int kCellsPerPiece = 10;
constexpr std::size_t kCorners = 4;

} // namespace

MosaicCells::MosaicCells(const CellFrame &frame, const MosaicGrid &grid, int run_length, const LevelInk &ink,
                         const CellSink &sink)
    : frame_(frame), ink_(ink), sink_(sink), in_pixels_(sink.take_pixels != nullptr && gtakes_pixels()),
      lattice_(frame, grid, nullptr), piece_(run_length > 0   ? run_length
                                             : frame.direct() ? kCellsPerPiece
                                                              : 1) {
    if (!in_pixels_) return;
    piece_ = frame.direct() ? grid.columns : lattice_.stride();
    const PixelScale scale = gpixel_scale();
    const Rect window = GPH_get_win(kDataTransform);
    const int cells = MosaicDots::cells_in_dot(frame, grid, scale, window);
    if (cells > 0 && MosaicDots::hide(ink)) dots_.emplace(frame, grid, scale, window, cells);
}

void MosaicCells::add_piece(int column, int cells, std::uint8_t level) {
    corners_.push_back(lattice_.upper(column));
    corners_.push_back(lattice_.lower(column));
    corners_.push_back(lattice_.lower(column + cells));
    corners_.push_back(lattice_.upper(column + cells));
    levels_.push_back(level);
}

/// In pixels pieces end where the edges bend.
void MosaicCells::add_run(const MosaicRun &run) {
    const int end = run.column + run.cells;
    for (int column = run.column; column < end;) {
        const int next = in_pixels_ ? (column / piece_ + 1) * piece_ : column + piece_;
        const int cells = std::min(next, end) - column;
        add_piece(column, cells, run.level);
        column += cells;
    }
}

void MosaicCells::draw(int line, std::span<const MosaicRun> runs) {
    if (dots_) return dots_->take(line, runs, ink_);
    corners_.clear();
    levels_.clear();
    for (const MosaicRun &run : runs) {
        if (ink_[run.level].color < 0) continue;
        lattice_.set_line(line);
        add_run(run);
    }
    if (levels_.empty()) return;
    if (in_pixels_)
        fill_pixels();
    else
        fill_outlines();
}

void MosaicCells::finish() {
    if (dots_) dots_->finish(sink_);
}

void MosaicCells::fill_outlines() const {
    for (std::size_t i = 0; i < levels_.size(); ++i) {
        const Point *const c = &corners_[i * kCorners];
        const CellCorners outline{c[0], c[1], c[2], c[3], c[0]};
        if (frame_.shows(outline)) sink_.take(sink_.context, outline, levels_[i]);
    }
}

void MosaicCells::fill_pixels() {
    gto_pixels(corners_, pixels_);
    for (std::size_t i = 0; i < levels_.size(); ++i) {
        const Point *const c = &corners_[i * kCorners];
        const PixelPoint *const p = &pixels_[i * kCorners];
        if (frame_.shows({c[0], c[1], c[2], c[3], c[0]}))
            sink_.take_pixels(sink_.context, {p[0], p[1], p[2], p[3], p[0]}, levels_[i]);
    }
}
