#pragma once
/// The kernel's primitives and attributes on a raster display (devices/raster.h): world points to pixels,
/// attribute state to drawing contexts. All draw with the present attributes.

#include <span>
#include <string_view>

#include "graphics/core/types.h"
#include "graphics/devices/common/raster_types.h"

/// -1 after a report for `operation` when memory is out.
int raster_polyline(const char *operation, std::span<const Point> world);
/// The area and its outline, in the same ink.
int raster_fill_area(const char *operation, std::span<const Point> world);
void raster_markers(std::span<const Point> world, float half);
/// A run of strokes of a text.
int raster_stroke(const char *operation, std::span<const Point> world);
/// A string with its drop shadow.
void raster_text(const Point &position, std::string_view string);
/// Fills a world rectangle with the background.
void raster_clear_region(const Rect &world);

/// Attributes of one context.
void raster_set_color(RasterContext context, int index);
void raster_set_line(RasterContext context, float width, int type);
/// Interior style and pattern of the state.
void raster_set_fill();
/// Every context as at the start of a plot: the thinnest solid lines, solid areas, the colours of the state.
void raster_reset_contexts();
/// A colour index has another pixel: the contexts that draw with it take it.
void raster_recolor(int index);
