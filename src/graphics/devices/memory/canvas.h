#pragma once
/// Inking of the memory display: pixel sets of lines and polygons as an X server chooses them.
///
/// A pixel is drawn when its centre, which has the whole-numbered coordinates, is inside the shape. A centre
/// on the outline is inside when the shape lies immediately to the right of it or, on a horizontal edge,
/// immediately below it.
/// Sources: thin_line, polygon, wide_line.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include "graphics/devices/common/dashes.h"
#include "graphics/devices/common/fill_patterns.h"
#include "graphics/devices/common/raster_types.h"

/// Where and with what to draw: the clip is inside the picture, its right and lower limits are outside it.
struct Canvas {
    std::uint32_t *pixels = nullptr; ///< row 0, column 0
    std::ptrdiff_t stride = 0;       ///< pixels a row
    int left = 0, top = 0, right = 0, bottom = 0;
    std::uint32_t color = 0;
    const FillPattern *stipple = nullptr; ///< only its set bits are drawn; null draws all

    [[nodiscard]] bool contains(int x, int y) const {
        return x >= left && x < right && y >= top && y < bottom;
    }
    [[nodiscard]] bool inked(int x, int y) const {
        return stipple == nullptr ||
               (((*stipple)[static_cast<unsigned>(y) % 8] >> (static_cast<unsigned>(x) % 8)) & 1) != 0;
    }
    /// A pixel inside the clip.
    void ink(int x, int y) const {
        if (inked(x, y)) pixels[y * stride + x] = color;
    }
    /// Pixels from `first` to before `end` of a row inside the clip.
    void span(int y, int first, int end) const {
        first = std::max(first, left);
        end = std::min(end, right);
        if (first >= end) return;
        std::uint32_t *const row = pixels + y * stride;
        if (stipple == nullptr) {
            std::fill(row + first, row + end, color);
            return;
        }
        for (int x = first; x < end; ++x)
            if (inked(x, y)) row[x] = color;
    }
};

/// Connected lines one pixel wide.
void canvas_thin_lines(const Canvas &canvas, std::span<const PixelPoint> points, DashLengths dashes);
/// Connected lines of a width from 1 on, with bevel joins; the ends of lines and dashes are square and stand
/// out by half the width when `projecting`.
void canvas_wide_lines(const Canvas &canvas, std::span<const PixelPoint> points, int width,
                       DashLengths dashes, bool projecting);
/// The inside of a polygon, even-odd, and its outline one pixel wide; it is closed where it is not.
void canvas_area(const Canvas &canvas, std::span<const PixelPoint> points);
