#pragma once
/// Enlarges a part of an image by repeating its pixels.

#include "graphics/devices/common/raster_types.h"

/// An image of the same size and layout whose upper left pixel is (left, top) of `image`, each pixel repeated
/// `zoom` times in both directions. What lies beyond the edge repeats the edge. Pixels of 1, 4, 8, 16, 24 and
/// 32 bits; an image of another kind, or one with too little data, comes back as it is.
RasterImage replicate_pixels(const RasterImage &image, int left, int top, int zoom);
