#pragma once
/// The one way from cells of a radar's own grid (bins of a radial, boxes of a raster) to filled polygons on
/// the plot. The hot road of the program: corners are made once per edge, levels are looked up in tables,
/// nothing is allocated per cell, and what draws nothing is not converted.

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "graphics/core/types.h"
#include "plot/domain.h"

inline constexpr std::size_t kCellLevels = 256;
/// A cell outline: four corners, closed by repeating the first.
using CellCorners = std::array<Point, 5>;

/// Fill attributes of each data level; a negative colour draws nothing.
using LevelInk = std::array<Attribute, kCellLevels>;

/// Takes one outline (plot plane) of a drawn level.
struct CellSink {
    void (*take)(void *context, const CellCorners &corners, std::uint8_t level);
    void *context;
};

/// Fill attributes of level values: CONT_get_fill_attrib for each, with a forced fill pattern applied.
LevelInk CELL_ink(std::span<const float, kCellLevels> values);

/// Fills outlines through the kernel; sets the attributes when the level changes.
class CellFiller {
public:
    explicit CellFiller(const LevelInk &ink) : ink_(ink) {}
    CellSink sink() { return {&CellFiller::take, this}; }

private:
    static void take(void *context, const CellCorners &corners, std::uint8_t level);
    const LevelInk &ink_;
    int level_ = -1;
};

/// Brings points of a radar's own plane onto the plot.
class CellFrame {
public:
    /// The plot is the current map domain; the radar stands at `lat`, `lon` (degrees).
    CellFrame(const PlotDomain &product, float lat, float lon);

    /// Product and plot share their projection: the planes are one.
    [[nodiscard]] bool direct() const { return direct_; }
    /// The radar in the product plane.
    [[nodiscard]] Point radar() const { return radar_; }
    /// An azimuth (degrees) turned to the product plane's y axis at the radar.
    [[nodiscard]] float plane_azimuth(float azimuth) const { return azimuth + turn_; }
    /// Product plane to plot plane, in place; points that the plot cannot show become missing.
    void to_plot(std::span<Point> points) const;
    /// False for an outline that the plot cannot show whole, that lies outside the window, or that a seam of
    /// the projection tears apart.
    [[nodiscard]] bool shows(const CellCorners &corners) const;

private:
    PlotDomain product_;
    PlotDomain plot_;
    Rect window_; ///< of the plot, plot plane
    Point radar_;
    float turn_ = 0;
    bool direct_ = true;
};

/// The bins of one radial.
class RadialCells {
public:
    explicit RadialCells(const CellFrame &frame) : frame_(frame) {}

    /// Draws the bins of one radial: bin i spans `first` + i * `step` to `first` + (i + 1) * `step` (plane
    /// units) between two azimuths (degrees from the plane's y axis); bins below `skip` are not drawn.
    void draw(float azimuth_a, float azimuth_b, float first, float step, std::span<const std::uint8_t> levels,
              std::size_t skip, const LevelInk &ink, const CellSink &sink);

private:
    void draw_stretch(std::size_t begin, std::size_t end, std::span<const std::uint8_t> levels,
                      const CellSink &sink);

    const CellFrame &frame_;
    std::vector<Point> edges_; ///< corners of a stretch of drawn bins: first edge, then second edge
    double sin_a_ = 0, cos_a_ = 0, sin_b_ = 0, cos_b_ = 0;
    float first_ = 0, step_ = 0;
};

/// Draws `count` boxes of one level of a raster row from x rightwards, between y_top and y_top - size
/// (product plane), in pieces: up to ten boxes when product and plot share their projection, else box by box.
void CELL_draw_boxes(const CellFrame &frame, float x, float y_top, float size, int count, std::uint8_t level,
                     const CellSink &sink);
