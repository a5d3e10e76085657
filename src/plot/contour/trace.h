#pragma once
/// The lines of a value through a field, joined across its cells.

#include <vector>

#include "plot/contour/field.h"

struct ContourLine {
    std::vector<GridPoint> points;
    bool closed = false; ///< the last point joins the first; it is not repeated
};

/// Lines between values below and from the threshold on, as CONT_walk_bands draws bands: where bands meet,
/// lines run. They end at the field's edge and at cells with missing corners.
std::vector<ContourLine> CONT_trace_lines(const Field &field, float threshold);
