/// Geo-located truth: the cell that the plotting geometry puts at a place on the earth has the level that an
/// independent decoding of the file found there.

#include <algorithm>
#include <cmath>
#include <map>

#include "graphics/kernel/kernel.h"
#include "plot/colour/levels.h"
#include "plot/map/current_map.h"
#include "radar/cell_places.h"
#include "radar/nids/image.h"
#include "radar/nids/plot.h"
#include "radar/nids/product_reader.h"
#include "radar/nids/reader.h"
#include "real_files.h"
#include "tsv.h"

namespace {

std::map<std::string, std::vector<Place>> places_by_file() {
    std::map<std::string, std::vector<Place>> files;
    for (const TsvRow &row : read_tsv(shared_dir() + "/samples/level3-points.tsv"))
        files[row.at("file")].push_back({std::stof(row.at("latitude")), std::stof(row.at("longitude")),
                                         std::stof(row.at("value_formula_A")), std::stoi(row.at("level"))});
    return files;
}

/// Places whose cell has the wrong level in one plot domain.
int count_wrong(const std::string &path, const PlotDomain *domain, std::vector<Place> places) {
    if (NIDS_open_file(path) != 1) return static_cast<int>(places.size());
    const NidsInfo info = NIDS_get_info();
    MAP_setup(domain != nullptr ? *domain : info.domain);
    put_on_map(places);
    CONT_reset_fill_set();
    CONT_reset_values();
    CONT_set_fill_colors("-1000000:#123456", 1);
    std::array<float, kCellLevels> values{};
    NIDS_level_values(info.packet, values);
    const CellSink sink{note_cell, &places};
    NIDS_walk_image(NIDS_reader(), info, {}, &sink);
    NIDS_close_file();
    int wrong = 0;
    for (const Place &place : places) {
        const float value = values[static_cast<std::size_t>(place.level)];
        const int expected = is_missing(value) ? kNoCell : place.level;
        // One unit in the fourth digit: the table's values are rounded.
        EXPECT_NEAR(value, place.value, 0.002F + std::fabs(place.value) * 0.001F)
            << path << " level " << place.level;
        wrong += place.found != expected ? 1 : 0;
    }
    return wrong;
}

TEST(NidsGeoTruth, CellsStandWhereIndependentDecodersSawThem) {
    SKIP_WITHOUT_REAL_FILES();
    constexpr float kWideDegrees = 14.0F;
    constexpr float kWidePlane = 12.0F;
    for (const auto &[file, places] : places_by_file()) {
        const std::string path = shared_dir() + "/samples/level3/" + file;
        ASSERT_EQ(NIDS_open_file(path), 1) << file;
        const PlotDomain &own = NIDS_get_info().domain;
        const PlotDomain lat_lon = domain_around(kProjLatLon, own.clat, own.clon, kWideDegrees);
        const PlotDomain lambert = domain_around(kProjLambert, own.clat, own.clon, kWidePlane);
        NIDS_close_file();
        const int allowed = static_cast<int>(places.size()) / 200; // half a percent
        EXPECT_LE(count_wrong(path, nullptr, places), allowed) << file << ", own domain";
        EXPECT_LE(count_wrong(path, &lat_lon, places), allowed) << file << ", latitude-longitude";
        EXPECT_LE(count_wrong(path, &lambert, places), allowed) << file << ", Lambert";
    }
}

} // namespace
