#pragma once
/// Level III products of the simulated evening.

#include <cstdint>
#include <string>
#include <vector>

#include "samples/level3.h"
#include "samples/scene.h"

namespace samples {

/// First volume of the evening: 2003-07-04 22:00 UTC.
inline constexpr std::int64_t kFirstVolume = 1057356000;
inline constexpr int kVolumeMinutes = 6;

/// A product with the name of its kind ("N0R") and how it is wrapped.
struct NamedProduct {
    std::string kind;
    Level3Product product;
    Framing framing;
    Compression compression;
};

Level3Product reflectivity(double minutes);         ///< 19: run-length radial, 16 levels
Level3Product velocity(double minutes);             ///< 27
Level3Product digital_reflectivity(double minutes); ///< 94
Level3Product digital_velocity(double minutes);     ///< 99
Level3Product super_reflectivity(double minutes);   ///< 153: half-degree radials of 250 m bins
Level3Product composite(double minutes); ///< 37: raster, storm table with fixed columns on its pages
Level3Product echo_tops(double minutes); ///< 41: raster
Level3Product liquid(double minutes);    ///< 57: raster
Level3Product hour_rain(double minutes); ///< 78: run-length radial
Level3Product precipitation_array(double minutes); ///< 81
Level3Product wind_profile(double minutes);        ///< 48: lines, texts, barbs
Level3Product hail_composite(double minutes);      ///< 36: the older storm table with hail words
Level3Product mosaic(double minutes);              ///< 103 of a national source: raster on a Lambert grid

/// Every kind once.
std::vector<NamedProduct> all_products(double minutes);

/// Lines of the two storm table layouts, headings first.
std::vector<std::string> storm_table(const Scene &scene);
std::vector<std::string> hail_table(const Scene &scene);

} // namespace samples
