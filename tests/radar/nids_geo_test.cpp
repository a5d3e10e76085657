/// Geo-located truth: the cell that the plotting geometry puts at a place on the earth has the level that an
/// independent decoding of the file found there.

#include <algorithm>
#include <cmath>
#include <map>

#include "graphics/kernel/kernel.h"
#include "plot/levels.h"
#include "plot/map.h"
#include "radar/nids/image.h"
#include "radar/nids/plot.h"
#include "radar/nids/reader.h"
#include "real_files.h"
#include "tsv.h"

namespace {

constexpr int kNothing = -1;

struct Place {
    float lat, lon, value;
    int level;
    Point plot;
    int found = kNothing; ///< level of the last cell drawn over the place
};

bool inside(const CellCorners &c, const Point &p) {
    bool left = true;
    bool right = true;
    for (std::size_t i = 0; i < 4; ++i) {
        const double cross =
            (static_cast<double>(c[i + 1].x) - c[i].x) * (static_cast<double>(p.y) - c[i].y) -
            (static_cast<double>(c[i + 1].y) - c[i].y) * (static_cast<double>(p.x) - c[i].x);
        left = left && cross >= 0;
        right = right && cross <= 0;
    }
    return left || right;
}

void note_cell(void *context, const CellCorners &c, std::uint8_t level) {
    auto &places = *static_cast<std::vector<Place> *>(context);
    const auto [x_low, x_high] = std::minmax({c[0].x, c[1].x, c[2].x, c[3].x});
    const auto [y_low, y_high] = std::minmax({c[0].y, c[1].y, c[2].y, c[3].y});
    const auto first = std::lower_bound(places.begin(), places.end(), x_low,
                                        [](const Place &place, float x) { return place.plot.x < x; });
    for (auto place = first; place != places.end() && place->plot.x <= x_high; ++place) {
        const Point &p = place->plot;
        if (p.y >= y_low && p.y <= y_high && inside(c, p)) place->found = level;
    }
}

std::map<std::string, std::vector<Place>> places_by_file() {
    std::map<std::string, std::vector<Place>> files;
    for (const TsvRow &row : read_tsv(shared_dir() + "/samples/level3-points.tsv"))
        files[row.at("file")].push_back({std::stof(row.at("latitude")),
                                         std::stof(row.at("longitude")),
                                         std::stof(row.at("value_formula_A")),
                                         std::stoi(row.at("level")),
                                         {}});
    return files;
}

PlotDomain around(int proj, const NidsInfo &info, float size) {
    PlotDomain domain;
    domain.proj = proj;
    domain.clat = info.domain.clat;
    domain.clon = info.domain.clon;
    domain.nx = domain.ny = 21;
    domain.dx = domain.dy = size / 20.0F;
    return domain;
}

/// Places whose cell has the wrong level in one plot domain.
int count_wrong(const std::string &path, const PlotDomain *domain, std::vector<Place> places) {
    if (NIDS_open_file(path) != 1) return static_cast<int>(places.size());
    const NidsInfo info = NIDS_get_info();
    MAP_setup(domain != nullptr ? *domain : info.domain);
    for (Place &place : places) MAP_tran(place.plot.x, place.plot.y, place.lat, place.lon);
    std::sort(places.begin(), places.end(),
              [](const Place &a, const Place &b) { return a.plot.x < b.plot.x; });
    CONT_reset_fill_set();
    CONT_reset_values();
    CONT_set_fill_colors("-1000000:#123456", 1);
    std::array<float, kCellLevels> values{};
    NIDS_level_values(info.packet, values);
    const CellSink sink{note_cell, &places};
    NIDS_walk_image(info, &sink);
    NIDS_close_file();
    int wrong = 0;
    for (const Place &place : places) {
        const float value = values[static_cast<std::size_t>(place.level)];
        const int expected = is_missing(value) ? kNothing : place.level;
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
        const PlotDomain lat_lon = around(kProjLatLon, NIDS_get_info(), kWideDegrees);
        const PlotDomain lambert = around(kProjLambert, NIDS_get_info(), kWidePlane);
        NIDS_close_file();
        const int allowed = static_cast<int>(places.size()) / 200; // half a percent
        EXPECT_LE(count_wrong(path, nullptr, places), allowed) << file << ", own domain";
        EXPECT_LE(count_wrong(path, &lat_lon, places), allowed) << file << ", latitude-longitude";
        EXPECT_LE(count_wrong(path, &lambert, places), allowed) << file << ", Lambert";
    }
}

} // namespace
