#pragma once
/// Runs of equal cells of a large grid, line by line, drawn as polygons. National mosaics have up to thirty
/// million cells, of which a picture shows a few pixels each: places are computed exactly on a lattice some
/// 25 km wide and lie between on straight lines (twelve metres off at most), each edge of a line once.

#include <cstdint>
#include <span>
#include <vector>

#include "radar/common/cells.h"

/// Equal cells side by side.
struct MosaicRun {
    int column = 0; ///< of the first cell, from 0
    int cells = 0;
    std::uint8_t level = 0; ///< which ink
};

/// Where the cells lie: edge `i` between columns at x + i * dx, edge `i` between lines at y - i * dy, in the
/// plane of the product's own projection.
struct MosaicGrid {
    float x = 0, y = 0, dx = 0, dy = 0;
    int columns = 0;
};

class MosaicCells {
public:
    /// `run_length`: cells of one polygon at most; 0 means ten where product and plot share their projection,
    /// else one. What takes pixels gets whole runs: their outlines are the same.
    MosaicCells(const CellFrame &frame, const MosaicGrid &grid, int run_length);

    /// Draws the runs of the line between edges `line` and `line` + 1; what reaches beyond the columns is not
    /// drawn. Quick when lines come in order.
    void draw(int line, std::span<const MosaicRun> runs, const LevelInk &ink, const CellSink &sink);

private:
    /// The points of an edge between two lines at every `stride_` columns; those between lie on straight
    /// lines.
    using Knots = std::vector<Point>;

    void exact_row(int row, Knots &knots) const;
    void set_edge(int line, Knots &knots);
    void set_edges(int line);
    [[nodiscard]] Point on_edge(const Knots &knots, int line, int column) const;
    void add_piece(int line, int column, int cells, std::uint8_t level);
    void add_run(int line, const MosaicRun &run, bool in_pixels);
    void fill_pixels(const LevelInk &ink, const CellSink &sink);
    void fill_outlines(const CellSink &sink) const;

    const CellFrame &frame_;
    MosaicGrid grid_;
    int piece_;           ///< cells of a polygon
    int stride_, height_; ///< columns and lines from one exact place to the next
    float per_stride_;    ///< strides in a column
    int rows_at_ = -1;    ///< number of the lattice row in upper_; lower_ is the next
    Knots upper_, lower_;
    int edges_at_ = -1; ///< line whose edges top_ and bottom_ are
    Knots top_, bottom_;
    std::vector<Point> corners_; ///< four for each piece of a line
    std::vector<std::uint8_t> levels_;
    std::vector<PixelPoint> pixels_;
};
