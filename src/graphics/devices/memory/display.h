#pragma once
/// A raster of the process's own, 24 bits deep, behind the verbs of raster.h: same names and arguments. It
/// needs no server, yet its pixels are those that an X server would set. A pixel is 0xRRGGBB. There is no
/// window: showing and synchronising do nothing. While it is closed every verb does nothing.

#include <span>

#include "graphics/devices/common/raster_types.h"

/// The size is that of the wish's geometry, else the wish's own. False after a message when there is no room
/// for such a picture or the display is open already.
[[nodiscard]] bool gmem_open(const RasterWish &wish, RasterWindow &window);
/// Frees every pixmap.
void gmem_close();

/// kNoPixmap when a side is not 1 to 32767 or memory is out.
PixmapId gmem_create_pixmap(int width, int height);
void gmem_free_pixmap(PixmapId pixmap);
void gmem_copy(PixmapId from, PixmapId to, const PixelRect &source, int x, int y);
void gmem_clear(PixmapId pixmap);
void gmem_set_drawable(PixmapId pixmap);
PixmapId gmem_drawable();
void gmem_set_base(PixmapId pixmap);
PixmapId gmem_base();
void gmem_show();

void gmem_set_clip(const PixelRect &clip);
void gmem_set_foreground(RasterContext context, long pixel);
void gmem_set_line(RasterContext context, int width, int type);
void gmem_set_fill(int pattern);

void gmem_lines(RasterContext context, std::span<const PixelPoint> points);
void gmem_point(RasterContext context, PixelPoint point);
void gmem_area(std::span<const PixelPoint> points);
void gmem_rectangle(RasterContext context, const PixelRect &rect);

RasterColor gmem_alloc_color(int index, const Rgb &color, long pixel);
void gmem_set_background(long pixel);

[[nodiscard]] bool gmem_read(PixmapId pixmap, RasterImage &image);
std::span<const std::uint8_t> gmem_lend(PixmapId pixmap, RasterImage &image);
void gmem_write(PixmapId pixmap, const RasterImage &image, std::span<const std::uint8_t> mask, int x, int y);
void gmem_sync();
