#pragma once
/// Places of a mosaic's grid on the plot: exact on a lattice some 25 km wide, between on straight lines
/// (twelve metres off at most).

#include <vector>

#include "graphics/kernel/kernel.h"
#include "radar/common/cells.h"

/// Where the cells lie: edge `i` between columns at x + i * dx, edge `i` between lines at y - i * dy, in the
/// plane of the product's own projection.
struct MosaicGrid {
    float x = 0, y = 0, dx = 0, dy = 0;
    int columns = 0, lines = 0;
};

class MosaicLattice {
public:
    /// Points come in plot units, or in pixels where a scale is given.
    MosaicLattice(const CellFrame &frame, const MosaicGrid &grid, const PixelScale *scale);

    /// Makes the edges of a line the present ones. Quick when lines come in order.
    void set_line(int line);
    /// The end of column `column`'s left side at the upper or lower edge of the present line.
    [[nodiscard]] Point upper(int column) const { return on_edge(top_, line_, column); }
    [[nodiscard]] Point lower(int column) const { return on_edge(bottom_, line_ + 1, column); }

    /// Columns from one exact place to the next.
    [[nodiscard]] int stride() const { return stride_; }
    /// The points of the present line's edges at every stride() columns, the last beyond the grid. Missing
    /// where the plot cannot show them or a seam of the projection lies nearby.
    using Knots = std::vector<Point>;
    [[nodiscard]] const Knots &top() const { return top_; }
    [[nodiscard]] const Knots &bottom() const { return bottom_; }
    /// Points on neighbouring knots have a seam between them, or one is missing.
    [[nodiscard]] bool torn(const Point &a, const Point &b) const;

private:
    [[nodiscard]] Point exact(int column, int line) const;
    void exact_row(int row, Knots &knots) const;
    void set_edge(int line, Knots &knots);
    [[nodiscard]] Point on_edge(const Knots &knots, int line, int column) const;

    const CellFrame &frame_;
    MosaicGrid grid_;
    PixelScale scale_;    ///< to the units of the points
    float widest_;        ///< neighbours of the lattice are nearer, unless a seam lies between them
    int stride_, height_; ///< columns and lines from one exact place to the next
    float per_stride_;    ///< strides in a column
    int row_ = -1;        ///< number of the lattice row in above_; below_ is the next
    Knots above_, below_;
    int line_ = -1; ///< the present line
    Knots top_, bottom_;
};
