#pragma once
/// The one way from cells of a radar's own grid (bins of a radial, boxes of a raster) to filled polygons on
/// the plot. The hot road of the program: corners are made once per edge, levels are looked up in tables,
/// nothing is allocated per cell, and what draws nothing is not converted.

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "graphics/core/types.h"
#include "graphics/devices/common/raster_types.h"
#include "plot/domain/plot_domain.h"
#include "plot/projection/sphere.h"

inline constexpr std::size_t kCellLevels = 256;
/// Each bin reaches a little over the next radial, so that no gap shows between them.
inline constexpr float kRadialOverlapDeg = 0.01F;
/// A cell outline: four corners, closed by repeating the first.
using CellCorners = std::array<Point, 5>;

/// Fill attributes of each data level; a negative colour draws nothing.
using LevelInk = std::array<Attribute, kCellLevels>;

using CellPixels = std::array<PixelPoint, 5>;

/// True when the two fill alike.
[[nodiscard]] bool CELL_same_ink(const Attribute &a, const Attribute &b);

/// Takes one outline (plot plane) of a drawn level. `take_pixels`, when given, takes it in pixels instead,
/// where the kernel does.
struct CellSink {
    void (*take)(void *context, const CellCorners &corners, std::uint8_t level);
    void *context;
    void (*take_pixels)(void *context, const CellPixels &corners, std::uint8_t level) = nullptr;
};

/// A value has a colour: its cells are drawn.
[[nodiscard]] bool CELL_draws(float value);

/// Fill attributes of level values: CONT_get_fill_attrib for each, with a forced fill pattern applied.
LevelInk CELL_ink(std::span<const float, kCellLevels> values);

/// Fills outlines through the kernel; sets the attributes when they change from one outline to the next.
class CellFiller {
public:
    explicit CellFiller(const LevelInk &ink);
    CellSink sink() { return {&CellFiller::take, this, &CellFiller::take_pixels}; }

private:
    void set_ink(std::uint8_t level);
    static void take_pixels(void *context, const CellPixels &corners, std::uint8_t level);
    static void take(void *context, const CellCorners &corners, std::uint8_t level);
    const LevelInk &ink_;
    std::array<std::uint8_t, kCellLevels> kind_{}; ///< the first level with the same ink
    int present_ = -1;                             ///< kind that the kernel has been told
};

/// Brings points of a grid onto the plot, which is the current map domain.
class CellFrame {
public:
    /// A grid around a radar: points count in plane units (100 km) east and north of it along great circles.
    /// `product` is the product's own domain.
    CellFrame(const PlotDomain &product, float lat, float lon);
    /// A grid that lies in the plane of the product's own projection.
    explicit CellFrame(const PlotDomain &product);

    /// Product and plot share their projection.
    [[nodiscard]] bool direct() const { return direct_; }
    /// The points start + i * step of a straight line of the grid, as plot points; points that the plot
    /// cannot show are missing. Between points some kilometres apart the line is straight on the plot: a
    /// metre is not seen.
    void line(const Point &start, const Point &step, std::span<Point> out) const;
    /// The point of the grid at a place on the earth; missing where the product's plane does not show it.
    [[nodiscard]] Point grid_point(float lat, float lon) const;
    /// False for an outline that the plot cannot show whole, that lies outside the window, or that a seam of
    /// the projection tears apart.
    [[nodiscard]] bool shows(const CellCorners &corners) const;
    /// True when every outline between these points is sure to be shown: all lie in a window without seams.
    [[nodiscard]] bool shows_all(std::span<const Point> points) const;

private:
    [[nodiscard]] Point to_plot(const Point &grid) const;
    [[nodiscard]] Point plot_of_radar_point(const Point &grid) const;
    [[nodiscard]] Point plot_of_plane_point(const Point &grid) const;

    PlotDomain product_;
    PlotDomain plot_;
    Rect window_; ///< of the plot, plot plane
    bool around_radar_ = false;
    bool direct_ = true;
    SphereOrigin radar_;
};

/// The bins of one radial.
class RadialCells {
public:
    explicit RadialCells(const CellFrame &frame) : frame_(frame) {}

    /// Draws the bins of one radial: bin i spans `first` + i * `step` to `first` + (i + 1) * `step` (plane
    /// units) between two azimuths (degrees from north); bins below `skip` are not drawn.
    void draw(float azimuth_a, float azimuth_b, float first, float step, std::span<const std::uint8_t> levels,
              std::size_t skip, const LevelInk &ink, const CellSink &sink);

private:
    /// Bins from number `begin` on.
    void draw_stretch(std::size_t begin, std::span<const std::uint8_t> levels, const LevelInk &ink,
                      const CellSink &sink);
    /// Both fill the bins between the edges of the present stretch.
    void fill_outlines(std::span<const std::uint8_t> levels, const LevelInk &ink, const CellSink &sink);
    void fill_pixels(std::span<const std::uint8_t> levels, const LevelInk &ink, const CellSink &sink);
    [[nodiscard]] CellCorners corners_of(std::size_t bin) const;
    [[nodiscard]] bool adds_nothing(std::size_t bin) const;

    const CellFrame &frame_;
    std::vector<Point> edge_a_, edge_b_; ///< corners of a stretch of bins
    std::vector<PixelPoint> pixels_a_, pixels_b_;
    double sin_a_ = 0, cos_a_ = 0, sin_b_ = 0, cos_b_ = 0;
    float first_ = 0, step_ = 0;
};

/// The boxes of a raster.
class BoxCells {
public:
    explicit BoxCells(const CellFrame &frame) : frame_(frame) {}

    /// Draws `count` boxes of one level of a row from x rightwards, between y_top and y_top - size (grid), in
    /// pieces: up to ten boxes when product and plot share their projection, else box by box.
    void draw(float x, float y_top, float size, int count, std::uint8_t level, const CellSink &sink);

private:
    const CellFrame &frame_;
    std::vector<Point> top_, bottom_;
};
