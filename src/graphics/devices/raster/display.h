#pragma once
/// The raster displays behind one set of verbs. Each verb is written once for each display (x11.h: gx11_...,
/// memory.h: gmem_...), with the same name and arguments, and chosen here by one switch over RasterDisplay.

#include <span>
#include <string_view>

#include "graphics/devices/common/raster_types.h"

/// Opens a display. False after a message when it cannot be opened.
[[nodiscard]] bool graster_open(RasterDisplay display, const RasterWish &wish, RasterWindow &window);
void graster_close();
RasterDisplay graster_display();

// Pixmaps
PixmapId graster_create_pixmap(int width, int height);
void graster_free_pixmap(PixmapId pixmap);
/// Copies `source` of one pixmap to (x, y) of another.
void graster_copy(PixmapId from, PixmapId to, const PixelRect &source, int x, int y);
/// Fills the whole pixmap with the background.
void graster_clear(PixmapId pixmap);
/// The pixmap that primitives draw into, and the one that the window shows.
void graster_set_drawable(PixmapId pixmap);
PixmapId graster_drawable();
void graster_set_base(PixmapId pixmap);
PixmapId graster_base();
/// Shows the base pixmap in the window.
void graster_show();

// Contexts
void graster_set_clip(const PixelRect &clip);
void graster_set_foreground(RasterContext context, long pixel);
/// Width 0 is the thinnest line; type 1 solid, 2 to 5 dashed.
void graster_set_line(RasterContext context, int width, int type);
/// kSolidFill, or a pattern of the pattern table.
void graster_set_fill(int pattern);

// Drawing
/// Connected lines.
void graster_lines(RasterContext context, std::span<const PixelPoint> points);
void graster_point(RasterContext context, PixelPoint point);
/// Fills a polygon (even-odd) with the fill context and draws its outline with the thinnest line of the same
/// context. The outline is closed where the polygon is not.
void graster_area(std::span<const PixelPoint> points);
void graster_rectangle(RasterContext context, const PixelRect &rect);

// Colours
/// `pixel`: the index's present pixel, -1 for a new one. A pixel of -1 in the result: no colour was to be
/// had.
RasterColor graster_alloc_color(int index, const Rgb &color, long pixel);
void graster_set_background(long pixel);

// Images
/// The whole pixmap. False when it cannot be read.
[[nodiscard]] bool graster_read(PixmapId pixmap, RasterImage &image);
/// The pixels of a pixmap where they stand, good until something is drawn, and their layout in `image`; empty
/// when the display must be read instead.
std::span<const std::uint8_t> graster_lend(PixmapId pixmap, RasterImage &image);
/// Puts an image of the display's own layout at (x, y); where `mask` is given (one byte a pixel), only where
/// it is not 0.
void graster_write(PixmapId pixmap, const RasterImage &image, std::span<const std::uint8_t> mask, int x,
                   int y);
/// Waits until the display has done everything asked of it.
void graster_sync();
