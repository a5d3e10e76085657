#pragma once
/// Runs of a mosaic whose cells are smaller than a pixel: the last cell over a pixel is the one seen, so the
/// level of each pixel is kept until all lines have come, and inked once.

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "radar/common/mosaic_lattice.h"

/// Equal cells side by side.
struct MosaicRun {
    int column = 0; ///< of the first cell, from 0
    int cells = 0;
    std::uint8_t level = 0; ///< which ink
};

class MosaicDots {
public:
    /// `cells`: how many of a line are at most as long as a pixel.
    MosaicDots(const CellFrame &frame, const MosaicGrid &grid, const PixelScale &scale, const Rect &window,
               int cells);

    /// How many cells of a line are as long as a pixel, where the plot shows them; 0 when one is longer, or
    /// higher.
    [[nodiscard]] static int cells_in_dot(const CellFrame &frame, const MosaicGrid &grid,
                                          const PixelScale &scale, const Rect &window);
    /// Inks that hide what was drawn before; with others the order of cells shows.
    [[nodiscard]] static bool hide(const LevelInk &ink);

    /// Takes the runs of the line between edges `line` and `line` + 1.
    void take(int line, std::span<const MosaicRun> runs, const LevelInk &ink);
    /// Inks the pixels, and forgets them.
    void finish(const CellSink &sink);

private:
    /// x and y of an upper and of a lower corner, pixels from the plot's first: they are computed at once.
    using Corners [[gnu::vector_size(4 * sizeof(float))]] = float;
    /// A stretch between two knots of a line: where its edges begin and how they go on from column to column.
    struct Stretch {
        Corners begin{}, step{};
        bool shown = false;
    };

    void set_stretches(int line);
    void set_stretch(std::size_t i);
    void mark(const Stretch &stretch, int column, std::uint8_t level);

    MosaicLattice lattice_;
    int cells_;
    int left_ = 0, top_ = 0; ///< the plot's first pixel
    unsigned width_ = 0, height_ = 0;
    bool line_shown_ = false;
    std::vector<Stretch> stretches_;
    std::vector<std::uint8_t> levels_; ///< one above the level of each pixel, 0 for none
};
