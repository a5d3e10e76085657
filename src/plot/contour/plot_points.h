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
    /// their order. Between two grid points less than twelve kilometres apart it lies on the straight line
    /// between theirs (five metres off at most).
    [[nodiscard]] Point at(const GridPoint &point);
    /// An outline that the plot shows: no point is missing, no seam of the projection tears it, and it
    /// reaches into the window.
    [[nodiscard]] bool shows(std::span<const Point> outline) const;
    /// A seam of the projection lies between neighbours, or one is missing.
    [[nodiscard]] static bool torn(const Point &a, const Point &b);

private:
    [[nodiscard]] Point exact(float i, float j) const;
    [[nodiscard]] Point grid_point(int i, int j);
    struct Row {
        int number = -1;
        std::vector<Point> points; ///< not yet known: kUnknown in x
    };
    Row &row_for(int j);

    PlotDomain grid_, plot_;
    Rect window_;      ///< of the plot
    float left_, top_; ///< of the grid's first point, its own plane
    bool direct_;      ///< grid and plot share their projection
    bool fine_;        ///< points are so near each other that what lies between is on a straight line
    Row rows_[2];
};
