#pragma once
/// Which parts of a grid's cells lie between two thresholds: marching squares. A cell's value varies linearly
/// along its sides, and a threshold cuts the cell straight from side to side. A cell whose opposite corners
/// lie higher than both others, a saddle, is four triangles around its middle, which has the mean of the
/// corners: so that decides which corners are joined. Neighbours share the points of their common side, so
/// bands have no seams.

#include <span>
#include <vector>

#include "plot/contour/field.h"

struct BandSink {
    virtual ~BandSink() = default;
    /// False for the cell below and to the right of a grid point when nothing of it is to be drawn.
    virtual bool wants(int i, int j) = 0;
    /// The outline, not closed, of an area between thresholds `band` - 1 and `band`; band 0 lies below the
    /// first, the last one from the last on. It covers what is in the band of several cells of a row, and of
    /// these has every point that lies on one of their sides. Of a row bands come in ascending order.
    virtual void take(int band, std::span<const GridPoint> outline) = 0;
};

/// Walks the cells of a field, row by row. `thresholds` ascend; of the bands (one more than thresholds) those
/// that are not `drawn` are passed over, and so are cells with a missing corner. A value at a threshold lies
/// in the band above.
void CONT_walk_bands(const Field &field, std::span<const float> thresholds, const std::vector<bool> &drawn,
                     BandSink &sink);
