#pragma once
/// How a field is drawn by the levels that are set. Beside contour.cpp.

#include <span>

#include "graphics/core/types.h"
#include "plot/contour/field.h"
#include "plot/contour/plot_points.h"
#include "plot/domain/plot_domain.h"

/// Fills the bands between ascending thresholds with the inks of the levels.
void CONT_fill_bands(const Field &field, std::span<const float> thresholds, PlotPoints &points);
/// Draws the line of each threshold, in the colour of the level that begins there or, over filled bands, in
/// that of the resource "color_cont", and its labels.
void CONT_draw_lines(const Field &field, std::span<const float> thresholds, bool over_bands,
                     const PlotDomain &grid, PlotPoints &points);
/// Writes the values of grid points, as many as can be read beside each other.
void CONT_draw_values(const Field &field, PlotPoints &points);
/// Marks the grid points, as many as can be told apart.
void CONT_draw_grid_points(const Field &field, PlotPoints &points);
