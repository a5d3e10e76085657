#pragma once
/// Runs of equal cells of a large grid, line by line, drawn as polygons. National mosaics have up to thirty
/// million cells, of which a picture shows a few pixels each.

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "radar/common/mosaic_dots.h"
#include "radar/common/mosaic_lattice.h"

class MosaicCells {
public:
    /// `run_length`: cells of one polygon at most; 0 means ten where product and plot share their projection,
    /// else one. What takes pixels gets whole runs: their outlines are the same.
    MosaicCells(const CellFrame &frame, const MosaicGrid &grid, int run_length, const LevelInk &ink,
                const CellSink &sink);

    /// Draws the runs of the line between edges `line` and `line` + 1. Quick when lines come in order. Runs
    /// end within the columns of the grid.
    void draw(int line, std::span<const MosaicRun> runs);
    /// All lines have come.
    void finish();

private:
    void add_piece(int column, int cells, std::uint8_t level);
    void add_run(const MosaicRun &run);
    void fill_pixels();
    void fill_outlines() const;

    const CellFrame &frame_;
    const LevelInk &ink_;
    const CellSink &sink_;
    bool in_pixels_;
    MosaicLattice lattice_;
    int piece_;                      ///< cells of a polygon
    std::optional<MosaicDots> dots_; ///< cells are smaller than pixels
    std::vector<Point> corners_;     ///< four for each piece of a line
    std::vector<std::uint8_t> levels_;
    std::vector<PixelPoint> pixels_;
};
