#pragma once
/// Which parts of a grid's cells lie between two thresholds: marching squares. A cell's value varies linearly
/// along its sides, and a threshold cuts the cell straight from side to side. A cell whose opposite corners
/// lie higher than both others, a saddle, is four triangles around its middle, which has the mean of the
/// corners: so that decides which corners are joined. Neighbours share the points of their common side, so
/// bands have no seams.

#include <span>
#include <vector>

#include "plot/contour/field.h"

/// Outlines, not closed, of areas between thresholds `band` - 1 and `band`; band 0 lies below the first, the
/// last one from the last on. A strip covers several equal cells of a row.
struct BandSink {
    virtual ~BandSink() = default;
    virtual void take(int band, std::span<const GridPoint> outline) = 0;
    /// Cells `first` to `end` - 1 of the row below grid row `row` lie in one band.
    virtual void take_strip(int band, int row, int first, int end) = 0;
};

/// Walks the cells of a field, row by row. `thresholds` ascend; of the bands (one more than thresholds) those
/// that are not `drawn` are passed over, and so are cells with a missing corner. A value at a threshold lies
/// in the band above.
void CONT_walk_bands(const Field &field, std::span<const float> thresholds, const std::vector<bool> &drawn,
                     BandSink &sink);
