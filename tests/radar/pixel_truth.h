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

#include <gtest/gtest.h>

#include "graphics/core/color_slots.h"
#include "graphics/core/mapping.h"
#include "graphics/devices/raster/display.h"
#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "lib/options/flags.h"
#include "lib/resources/database.h"
#include "plot/colour/levels.h"
#include "plot/domain/plot_domain.h"
#include "plot/map/current_map.h"
#include "plot/session/plot_session.h"
#include "radar/common/cells.h"
#include "radar/nids/image.h"
#include "radar/nids/plot.h"
#include "radar/nids/reader.h"
#include "real_files.h"
#include "tsv.h"

inline constexpr float kKmPerDegree = 111.2F;

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
    GPH_trans(kDataTransform);
    NIDS_plot_summary();
    RasterImage image;
    (void)graster_read(graster_base(), image);
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
    (void)GPH_end(1);
    return count;
}

/// Plots go to this device, the picture alone.
inline void prepare_truth(const std::string &device) {
    FLAG_resetplot(1);
    FLAG_set(kFlagDevice, 1);
    RES_put("plot_param", "full,nobar");
    RES_put("device", device);
    RES_put("file_path", std::string(VYX_SOURCE_DIR) + "/data");
}

inline std::string level3_sample(const std::string &file) {
    return shared_dir() + "/samples/level3/" + file;
}

inline void set_picture_side(float pixels) {
    const std::string side = std::to_string(static_cast<int>(pixels));
    RES_put("geometry", side + "x" + side);
}

/// Places whose neighbours have the same level, in the whole picture, a pixel half a bin wide where memory
/// allows; and in the middle of it enlarged, where bins are narrower than such a pixel: at most one in a
/// hundred is wrong.
inline void check_places_alike(const std::string &file, const std::vector<TruthPlace> &places) {
    constexpr float kMostPixels = 3000;
    constexpr float kNarrowPixels = 40; ///< range at which three radials are two pixels wide
    std::vector<TruthPlace> alike;
    std::ranges::copy_if(places, std::back_inserter(alike), &TruthPlace::same);
    ASSERT_EQ(NIDS_open_file(level3_sample(file)), 1);
    const NidsInfo info = NIDS_get_info();
    const float reach = std::ranges::max(alike, {}, &TruthPlace::range_km).range_km;
    const float side = std::clamp(4.4F * reach / alike[0].bin_km, 600.0F, kMostPixels);
    set_picture_side(side);
    const auto middle = std::ranges::partition(
        alike, [&](const TruthPlace &p) { return p.range_km > kNarrowPixels * 2.9F * reach / side; });
    std::vector<TruthPlace> near(middle.begin(), middle.end());
    alike.resize(alike.size() - near.size());
    const float degrees = 2.9F * reach / kKmPerDegree;
    int looked = 0, wrong = 0;
    for (const auto &[part, width] : {std::pair{&alike, degrees}, std::pair{&near, degrees / 4}}) {
        if (part->empty()) continue;
        const PlotDomain domain = square_domain(info.domain.clat, info.domain.clon, width);
        const TruthCount count = look_at_pixels(level3_sample(file), domain, *part);
        EXPECT_EQ(count.looked, static_cast<int>(part->size())) << file;
        looked += count.looked;
        wrong += count.wrong;
    }
    EXPECT_LE(wrong * 100, looked) << file << ": " << wrong << " of " << looked;
}

/// The other places, in a picture whose pixels are a third of a bin around the densest of them. Nearer to the
/// radar its bins are narrower than that.
inline void check_places_apart(const std::string &file, const std::vector<TruthPlace> &places) {
    constexpr float kSide = 1800;
    constexpr int kHalfDegreeProduct = 153;
    set_picture_side(kSide);
    std::vector<TruthPlace> others;
    std::ranges::copy_if(places, std::back_inserter(others), [](const TruthPlace &p) {
        const float bins_as_wide_as_long = p.code == kHalfDegreeProduct ? 115 : 58;
        return !p.same && p.range_km > bins_as_wide_as_long * p.bin_km;
    });
    if (others.empty()) return;
    const float degrees = kSide * others[0].bin_km / 3 / kKmPerDegree;
    const auto near = [&](const TruthPlace &middle) {
        return std::ranges::count_if(others, [&](const TruthPlace &p) {
            return std::fabs(p.lat - middle.lat) < degrees / 2 && std::fabs(p.lon - middle.lon) < degrees / 2;
        });
    };
    const TruthPlace middle = *std::ranges::max_element(others, {}, near);
    const TruthCount count =
        look_at_pixels(level3_sample(file), square_domain(middle.lat, middle.lon, degrees), others);
    EXPECT_GT(count.looked, 3) << file;
    EXPECT_LE(count.wrong * 100, count.looked) << file << ": " << count.wrong << " of " << count.looked;
}
