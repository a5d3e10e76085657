#pragma once
/// The parts of one entry of a map list, such as "-s+20:states.map:blue:w2" or "[20,50,-130,-60,80]". Beside
/// the source: only the map background reads them.

#include <optional>
#include <string_view>

/// A body that begins with one of these is no map file.
inline constexpr std::string_view kMapLatLonPrefix = "lalo:";
/// An image, placed in the map's panel or in the whole view.
inline constexpr std::string_view kMapImagePrefix = "im:", kViewImagePrefix = "if:", kMetafilePrefix = "mf:";
/// Kinds of entries that name a metafile or raw data.
[[nodiscard]] bool is_foreign_body(std::string_view body);

/// The pass bit of the item's prefix: 1 for "-", 2 for "+", 4 without one. Removes the prefix.
int take_map_pass(std::string_view &item);

/// A block of the list for one region.
struct RegionGuard {
    bool unconditional = true;                      ///< three or fewer numbers were written
    float south = 0, north = 0, west = 0, east = 0; ///< degrees, ordered
    float max_height = 1000;                        ///< plane units

    [[nodiscard]] bool matches(float lat, float lon, float height) const;
};
/// The guard of an item that begins with "["; nothing for other items.
[[nodiscard]] std::optional<RegionGuard> parse_region_guard(std::string_view item);

/// Removes the size conditions in front of an item; true when a plot of this height (plane units) meets them
/// all.
[[nodiscard]] bool take_size_conditions(std::string_view &item, float height);

/// Name and attributes of a map file item; the attributes are empty when none are given.
struct MapFileItem {
    std::string_view file, attributes;
};
MapFileItem parse_map_file_item(std::string_view body);

/// What follows "im:" or "if:": "file", "file:colour:x:y" or "file::x:y".
struct MapImageItem {
    std::string_view file;
    std::string_view transparent; ///< name of the colour that is not drawn; may be empty
    int x = 0, y = 0;             ///< pixels, negative from the far edge
};
MapImageItem parse_image_item(std::string_view text);

/// Spacings in degrees and attributes of what follows "lalo:".
struct LatLonItem {
    float lat_spacing = 5, lon_spacing = 5;
    std::string_view attributes;
};
LatLonItem parse_latlon_item(std::string_view text);
