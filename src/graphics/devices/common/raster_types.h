#pragma once
/// What the raster displays share: pixels, pixmaps, drawing contexts. Pixel rows count downwards from the
/// upper edge.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "graphics/core/types.h"

/// Which raster display stands behind the window device.
enum class RasterDisplay : int {
    none,
    x11,   ///< a window of an X server
    memory ///< a raster of the process's own, 24 bits deep
};

/// Pixel coordinates are clamped to -30000..30000 before they come here.
struct PixelPoint {
    std::int16_t x = 0, y = 0;
    friend bool operator==(const PixelPoint &, const PixelPoint &) = default;
};
struct PixelRect {
    int x = 0, y = 0, width = 0, height = 0;
};

/// A drawable picture of its own. 0: none.
using PixmapId = unsigned long;
inline constexpr PixmapId kNoPixmap = 0;

/// One drawing context for each primitive kind.
enum class RasterContext : int { line, marker, text, fill };
inline constexpr int kRasterContexts = 4;
inline constexpr int kSolidFill = -1; ///< instead of a pattern 0 to 19

/// A picture of another program to draw into, by numbers of the server.
struct ForeignPicture {
    unsigned long window = 0;   ///< whose owner hears messages; 0: the drawable, if that is a window
    unsigned long drawable = 0; ///< what is drawn into
    int width = 640, height = 512;
    unsigned long colormap = 0; ///< 0: that of the window
};

/// How a window is asked for.
struct RasterWish {
    std::string display;  ///< name of the X display; empty: the default
    std::string geometry; ///< "wxh+x+y" of the "geometry" resource; may be empty
    std::string title;    ///< shown with underscores as blanks
    std::string program;  ///< name for X resources
    int width = 640, height = 512, x = 100, y = 100;
    bool iconic = false;
    bool inverse = false; ///< dark on light
    bool private_colormap = false;
    std::optional<ForeignPicture> foreign; ///< instead of a window of the program's own
};
/// What came of it: the drawing area in pixels.
struct RasterWindow {
    int width = 0, height = 0;
    PixmapId base = kNoPixmap; ///< the backing pixmap, which holds the finished picture
    std::string title;         ///< of another program's window
};

/// A colour as the display has it.
struct RasterColor {
    long pixel = -1;
    Rgb actual;
};

/// Pixels of a pixmap, row after row, as the display stores them.
struct RasterImage {
    int width = 0, height = 0;
    int depth = 24, bits_per_pixel = 32, bytes_per_line = 0;
    bool msb_first = false; ///< byte order of a pixel
    bool mapped = false;    ///< pixels are indices into `colors`
    std::uint32_t red_mask = 0xFF0000, green_mask = 0x00FF00, blue_mask = 0x0000FF;
    std::vector<Rgb> colors;
    std::vector<std::byte> data; ///< height * bytes_per_line
};
