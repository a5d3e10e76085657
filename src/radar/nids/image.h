#pragma once
/// Inside the Level III driver: the product image.

#include "radar/common/cells.h"
#include "radar/common/options.h"
#include "radar/nids/product.h"

struct NidsBlocks;
class NidsReader;

[[nodiscard]] bool NIDS_is_radial(int packet);
[[nodiscard]] bool NIDS_is_raster(int packet);

/// Where the cells of an image lie.
struct NidsImageGrid {
    CellFrame frame;
    float bin;    ///< size of a bin or box, grid units
    Point centre; ///< of a raster, the common corner of its four middle boxes

    /// The upper left corner of a raster.
    [[nodiscard]] Point raster_corner(const NidsInfo &info) const;
};
NidsImageGrid NIDS_image_grid(const NidsBlocks &blocks, const NidsInfo &info);
/// Bins next to the radar that the user does not want drawn.
std::size_t NIDS_clutter_bins(const RadarOptions &options);

/// The levels of the current radial, bin by bin.
void NIDS_radial_levels(NidsReader &reader, int packet, std::vector<std::uint8_t> &levels);
/// Value of each level of a packet of the image, in the product's unit.
void NIDS_image_values(const NidsReader &reader, int packet, std::span<float, kCellLevels> values);

/// Chooses level values and colours for the product.
void NIDS_choose_levels(const NidsInfo &info);

/// Walks the packets of the open product's image, the first one's header being read, and draws what they
/// hold. Cells go to `sink`, or are filled when it is null.
void NIDS_walk_image(NidsReader &reader, const NidsInfo &info, const RadarOptions &options,
                     const CellSink *sink);
/// Draws the image of the open product. 0.
int NIDS_plot_summary();
