#pragma once
/// A field on a grid, drawn as filled bands between levels, as contour lines with labels, or as values.
/// Sources: draw, fill, lines, values.

#include <span>

#include "plot/domain/plot_domain.h"

/// Draws a field of grid.nx by grid.ny values, rows from the top of the grid, x fastest, onto the current map
/// in transform 2, by the levels, type, cut-offs and dash rule that are set (plot/colour/levels.h). A value
/// stands at a grid point (MAP_grid_tran of the grid's domain: i, j from 0); between the points of a cell it
/// varies as along its edges. Missing values (kMissingF, or not finite) leave holes: no cell that touches one
/// is drawn. 0; -1 after a warning when field and grid do not fit each other, or there are more levels than
/// can be drawn.
int CONT_draw_contour(std::span<const float> field, const PlotDomain &grid);
