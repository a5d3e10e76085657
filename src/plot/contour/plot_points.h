#pragma once
/// Points of a grid on the plot.

#include <span>
#include <vector>

#include "graphics/core/types.h"
#include "plot/contour/field.h"
#include "plot/domain/plot_domain.h"

class PlotPoints {
public:
    /// The current map domain is the plot.
    explicit PlotPoints(const PlotDomain &grid);

    /// A point's place on the plot plane; missing where the plot cannot show it. Quick for points of rows in
    /// their order. Where grid points are no more than twelve kilometres apart every second one is exact, and
    /// what lies between is on straight lines (twelve metres off at most).
    [[nodiscard]] Point at(const GridPoint &point);
    /// The place of a grid point.
    [[nodiscard]] Point at(int i, int j) {
        Point &point = row_for(j).points[static_cast<std::size_t>(i)];
        if (point.x == kUnknown) point = compute(i, j);
        return point;
    }
    /// Grid and plot share their projection: rows are straight on the plot.
    [[nodiscard]] bool direct() const { return direct_; }
    /// The plot shows the corners of the cell below and to the right of a grid point, and no seam of the
    /// projection tears it.
    [[nodiscard]] bool shows_cell(int i, int j);
    /// An outline without missing points reaches into the window.
    [[nodiscard]] bool reaches_window(std::span<const Point> outline) const;
    /// A seam of the projection lies between neighbours, or one is missing.
    [[nodiscard]] static bool torn(const Point &a, const Point &b);

private:
    static constexpr float kUnknown = -9998; ///< in x of a point that has not been asked for
    [[nodiscard]] Point exact(float i, float j) const;
    [[nodiscard]] Point compute(int i, int j);
    struct Row {
        int number = -1;
        std::vector<Point> points;
    };
    Row &row_for(int j) {
        Row &row = rows_[static_cast<unsigned>(j) % kRows];
        if (row.number != j) begin_row(row, j);
        return row;
    }
    void begin_row(Row &row, int j) const;

    PlotDomain grid_, plot_;
    Rect window_;      ///< of the plot
    float left_, top_; ///< of the grid's first point, its own plane
    bool direct_;      ///< grid and plot share their projection
    bool fine_;        ///< points are so near each other that what lies between is on a straight line
    static constexpr unsigned kRows = 4;
    Row rows_[kRows];
};
