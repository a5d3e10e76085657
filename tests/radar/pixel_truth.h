#pragma once
/// Places on the earth with the level that independent decoders found there, against the pixels of a picture
/// in which every such level has a colour of its own.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "graphics/core/color_table.h"
#include "graphics/core/mapping.h"
#include "graphics/devices/raster.h"
#include "graphics/kernel/gph.h"
#include "graphics/kernel/kernel.h"
#include "lib/flag.h"
#include "lib/resource.h"
#include "plot/domain.h"
#include "plot/levels.h"
#include "plot/map.h"
#include "plot/session.h"
#include "radar/common/cells.h"
#include "radar/nids/image.h"
#include "radar/nids/plot.h"
#include "radar/nids/reader.h"
#include "real_files.h"
#include "tsv.h"

struct TruthPlace {
    float lat, lon;
    int level;
    bool same; ///< all its neighbours have the level
    float range_km, bin_km;
    int code; ///< of the product
};

inline std::map<std::string, std::vector<TruthPlace>> truth_by_file() {
    std::map<std::string, std::vector<TruthPlace>> files;
    for (const TsvRow &row : read_tsv(shared_dir() + "/samples/level3-points.tsv"))
        files[row.at("file")].push_back({std::stof(row.at("latitude")), std::stof(row.at("longitude")),
                                         std::stoi(row.at("level")), row.at("neighbours") == "same",
                                         std::stof(row.at("range_km")), std::stof(row.at("bin_km")),
                                         std::stoi(row.at("code"))});
    return files;
}

/// "-9:#000001,-8:#FFFFFF,...": a colour for the value of each place's level, white for all between.
inline std::string colors_of_levels(const std::array<float, kCellLevels> &values,
                                    const std::vector<TruthPlace> &places) {
    std::set<float> all(values.begin(), values.end()), used;
    all.erase(kMissingF);
    for (const TruthPlace &p : places) used.insert(values[static_cast<std::size_t>(p.level)]);
    std::string spec;
    bool white = false;
    unsigned number = 0;
    for (const float value : all) {
        const bool own = used.contains(value);
        if (!own && white) continue;
        white = !own;
        const unsigned color = own ? 0x404040U + 0x010305U * ++number : 0xFFFFFFU;
        std::array<char, 64> item{};
        std::snprintf(item.data(), item.size(), "%s%.7g:#%06X", spec.empty() ? "" : ",",
                      static_cast<double>(value) - std::fabs(static_cast<double>(value)) * 1e-6, color);
        spec += item.data();
    }
    return spec;
}

/// A latitude-longitude square of so many degrees around a place.
inline PlotDomain square_domain(float lat, float lon, float degrees) {
    constexpr int kPoints = 101;
    PlotDomain domain;
    domain.proj = kProjLatLon;
    domain.clat = lat;
    domain.clon = lon;
    domain.nx = domain.ny = kPoints;
    domain.dx = domain.dy = degrees / (kPoints - 1);
    return domain;
}

inline std::uint32_t pixel_in(const RasterImage &image, int x, int y) {
    std::uint32_t pixel = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        const auto at =
            static_cast<std::size_t>(y * image.bytes_per_line + x * 4) + (image.msb_first ? 3 - i : i);
        pixel |= std::to_integer<std::uint32_t>(image.data.at(at)) << (8 * i);
    }
    return pixel & 0xFFFFFF;
}

struct TruthCount {
    int looked = 0, wrong = 0;
};

/// Draws the file in the domain on the device that the resources name and looks at the places inside it.
inline TruthCount look_at_pixels(const std::string &path, const PlotDomain &domain,
                                 const std::vector<TruthPlace> &places) {
    TruthCount count;
    if (NIDS_open_file(path) != 1) return count;
    std::array<float, kCellLevels> values{};
    NIDS_level_values(NIDS_get_info().packet, values);
    RES_put("color_fill", colors_of_levels(values, places));
    PLT_open(DOM_aspect(domain));
    MAP_setup(domain);
    GPH_trans(2);
    NIDS_plot_summary();
    RasterImage image;
    graster_read(graster_base(), image);
    const auto background = static_cast<std::uint32_t>(gget_color_ind(kColorBackground));
    for (const TruthPlace &p : places) {
        Point plane;
        MAP_tran(plane.x, plane.y, p.lat, p.lon);
        const int x = round_pixel(xW_p(plane.x)), y = round_pixel(yW_p(plane.y));
        if (x < 0 || y < 0 || x >= image.width || y >= image.height) continue;
        Attribute ink;
        CONT_get_fill_attrib(ink, values[static_cast<std::size_t>(p.level)]);
        const std::uint32_t expected =
            ink.color < 0 ? background : static_cast<std::uint32_t>(gget_color_ind(ink.color));
        ++count.looked;
        if (pixel_in(image, x, y) != expected) ++count.wrong;
    }
    NIDS_close_file();
    GPH_end(1);
    return count;
}
