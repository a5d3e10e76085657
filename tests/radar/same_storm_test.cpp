/// One simulated storm in every source: each draws it over the same places of the earth, and tells its value
/// there.

#include <cmath>
#include <fstream>
#include <functional>
#include <map>
#include <random>

#include <unistd.h>

#include <gtest/gtest.h>

#include "graphics/devices/raster/display.h"
#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "lib/options/flags.h"
#include "lib/report/message.h"
#include "lib/resources/database.h"
#include "plot/colour/level_choice.h"
#include "plot/colour/levels.h"
#include "plot/inked_areas.h"
#include "plot/map/current_map.h"
#include "plot/places/city.h"
#include "plot/projection/sphere.h"
#include "plot/session/plot_session.h"
#include "radar/cell_places.h"
#include "radar/common/intensity_legend.h"
#include "radar/common/level_lists.h"
#include "radar/kavrad/plot.h"
#include "radar/nids/image.h"
#include "radar/nids/plot.h"
#include "radar/nids/product_reader.h"
#include "radar/nids/reader.h"
#include "radar/nowrad/plot.h"
#include "radar/rcm/plot.h"
#include "radar/rcm/state.h"
#include "radar/rrwds/plot.h"
#include "radar/summary/plot.h"
#include "radar/summary/state.h"
#include "samples/level3_products.h"
#include "samples/mosaic.h"
#include "samples/rcm.h"
#include "samples/rrwds.h"
#include "samples/scene.h"
#include "samples/summary.h"

namespace {

/// The level that a source has at a place, kilometres east and north of the radar.
using LevelAt = std::function<int(double x_km, double y_km)>;

/// What a function of reflectivity makes of the simulated evening.
template <typename LevelOfDbz> LevelAt level_of_echo(LevelOfDbz level_of) {
    return [level_of, scene = samples::Scene(0)](double x, double y) { return level_of(scene.dbz(x, y)); };
}

int five_dbz(double dbz) {
    return std::clamp(static_cast<int>(std::floor(dbz / 5)), 0, 15);
}

/// Six intensities from 20 to 55 dBZ.
int intensity(double dbz) {
    int level = 0;
    for (const double step : {20, 30, 40, 45, 50, 55}) level += dbz >= step ? 1 : 0;
    return level;
}

/// Places of the simulated evening around which, `cell_km` to each side, the level changes by `spread` at
/// most, from `level` to `value`: many with echo, and half as many without.
std::vector<Place> places_of_storm(const LevelAt &level_at, double cell_km, int spread) {
    const samples::Site site;
    const SphereOrigin radar(site.lat, site.lon);
    std::mt19937 random(7);
    std::uniform_real_distribution<double> azimuth(0, 360), range(5, 220);
    std::vector<Place> places;
    std::size_t with_echo = 0;
    for (int tries = 0; tries < 200000 && with_echo < 400; ++tries) {
        const double angle = azimuth(random), km = range(random);
        const double x = km * std::sin(angle * kDegree), y = km * std::cos(angle * kDegree);
        const int level = level_at(x, y);
        if (level == 0 && places.size() - with_echo > with_echo / 2) continue;
        int least = level, most = level;
        for (int i = 0; i < 169; ++i) {
            const int beside = level_at(x + (i % 13 - 6) * cell_km / 10, y + (i / 13 - 6) * cell_km / 10);
            least = std::min(least, beside);
            most = std::max(most, beside);
        }
        if (most - least > spread) continue;
        const SpherePoint place = radar.towards(angle, km);
        places.push_back(
            {static_cast<float>(place.lat), static_cast<float>(place.lon), static_cast<float>(most), least});
        with_echo += level > 0 ? 1 : 0;
    }
    EXPECT_GT(with_echo, 100U);
    return places;
}

std::string scratch(const samples::Bytes &bytes) {
    const std::string name = testing::TempDir() + "same_storm_" + std::to_string(::getpid());
    std::ofstream(name, std::ios::binary)
        .write(reinterpret_cast<const char *>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return name;
}

void quiet() {
    MESS_set(0, kError | kWarn);
    FLAG_resetplot(1);
    FLAG_set(kFlagDevice, 1);
    RES_put("file_path", VYX_SOURCE_DIR "/data/");
    RES_put("plot_param", "full,nobar");
    RES_put("device", "d,memory");
    RES_put("geometry", "300x300");
}

struct MosaicCase {
    MosaicDriver &driver;
    samples::Bytes bytes;
    double cell_km;
    int spread; ///< levels that such cells may span
    bool intensities;
};

std::vector<MosaicCase> mosaics() {
    using namespace samples;
    return {{NOWRad_driver(), nowrad_file(nowrad_latlon(0)), 2.0, 0, false},
            {NOWRad_driver(), nowrad_file(nowrad_lambert(0)), 8.6, 4, false},
            {KAVRAD_driver(), kavrad_file(kavrad(0, false, false)), 1.2, 0, false},
            {KAVRAD_driver(), kavrad_file(kavrad(0, true, true)), 2.3, 0, true}};
}

/// Levels of KAVRAD files that say "no echo".
int plain(int level) {
    return level == static_cast<int>(samples::kKavradPlainNoEcho) ? 0 : level;
}

TEST(SameStorm, OfMosaicsLiesOverTheSamePlaces) {
    quiet();
    PLT_open(1); // colours have names on a display
    const samples::Site site;
    for (const MosaicCase &mosaic : mosaics()) {
        const std::string name = scratch(mosaic.bytes);
        const std::vector<Place> all = places_of_storm(
            level_of_echo(mosaic.intensities ? intensity : five_dbz), mosaic.cell_km, mosaic.spread);
        ASSERT_TRUE(mosaic.driver.open(name));
        for (const int proj : {kProjPolar, kProjLatLon, kProjLambert, kProjOrtho}) {
            std::vector<Place> places = all;
            const float size = proj == kProjLatLon ? 6.0F : 6.5F;
            MAP_setup(domain_around(proj, static_cast<float>(site.lat), static_cast<float>(site.lon), size));
            put_on_map(places);
            ASSERT_TRUE(mosaic.driver.rewind());
            const CellSink sink{note_cell, &places};
            mosaic.driver.draw(&sink);
            for (const Place &place : places) {
                const int found = place.found == kNoCell ? 0 : plain(place.found);
                EXPECT_TRUE(found >= place.level && static_cast<float>(found) <= place.value)
                    << mosaic.driver.info().title << " in projection " << proj << " at " << place.lat << " "
                    << place.lon << ": " << found << " for " << place.level << " to " << place.value;
            }
        }
        for (std::size_t i = 0; i < all.size(); i += 10) {
            RadarReading reading;
            reading.lat = all[i].lat;
            reading.lon = all[i].lon;
            ASSERT_TRUE(mosaic.driver.read_place(name, reading));
            constexpr std::array values{0, 20, 30, 40, 45, 50, 55};
            const auto value_of = [&](int level) {
                return mosaic.intensities ? values[static_cast<std::size_t>(level)] : 5 * level;
            };
            const int least = value_of(all[i].level), most = value_of(static_cast<int>(all[i].value));
            const int value = is_missing(reading.number) ? 0 : static_cast<int>(reading.number);
            EXPECT_TRUE(value >= least && value <= most) << value << " for " << least << " to " << most;
            EXPECT_EQ(reading.value, value == 0 ? std::string(kBelowWords) : std::to_string(value) + " dBZ");
        }
    }
}

TEST(SameStorm, OfTheRadarsOwnProductsLiesOverTheSamePlaces) {
    struct Case {
        samples::Level3Product product;
        double (samples::Scene::*value)(double x_km, double y_km) const;
        int spread;
    };
    quiet();
    PLT_open(1);
    for (const Case &c : {Case{samples::reflectivity(0), &samples::Scene::dbz, 4},
                          Case{samples::echo_tops(0), &samples::Scene::top_kft, 2}}) {
        ASSERT_EQ(NIDS_open_file(scratch(samples::level3_message(c.product))), 1);
        const NidsInfo &info = NIDS_get_info();
        std::array<float, kCellLevels> values{};
        NIDS_image_values(NIDS_reader(), info.packet, values);
        const auto level_at = [&, scene = samples::Scene(0)](double x, double y) {
            constexpr std::size_t kLevelsOfProduct = 16;
            int best = 0;
            for (std::size_t i = 1; i < kLevelsOfProduct; ++i)
                if (!is_missing(values[i]) && static_cast<double>(values[i]) <= (scene.*c.value)(x, y))
                    best = static_cast<int>(i);
            return best;
        };
        std::vector<Place> places = places_of_storm(level_at, 4, c.spread); // as wide as cells are
        MAP_setup(domain_around(kProjLambert, 38.7F, -90.7F, 6));
        put_on_map(places);
        NIDS_choose_levels(info);
        CONT_reset_fill_set();
        CONT_set_fill_colors("-1000000:red", 1);
        const CellSink sink{note_cell, &places};
        NIDS_walk_image(NIDS_reader(), info, {}, &sink);
        for (const Place &place : places) {
            const int found = place.found == kNoCell ? 0 : place.found;
            EXPECT_TRUE(found >= place.level && static_cast<float>(found) <= place.value)
                << c.product.code << " at " << place.lat << " " << place.lon << ": " << found << " for "
                << place.level << " to " << place.value;
        }
        NIDS_close_file();
    }
}

TEST(SameStorm, OfACodedMessageLiesOverTheSamePlaces) {
    quiet();
    PLT_open(1);
    FLAG_set_batch(1);
    const samples::RcmBulletin bulletin = samples::rcm(0);
    const std::string name = scratch(samples::rcm_bulletin(bulletin, samples::RcmForm::wrapped));
    RCM_prompt_id();
    RcmPlotState &state = RCM_state();
    ASSERT_EQ(RCM_open_file(name), 1);
    ASSERT_EQ(RCM_read_report(state.report), 1);
    EXPECT_EQ(state.id, "LSX");
    ASSERT_EQ(CTY_get_loc("rad.cty", state.id, state.lat, state.lon), 1);
    const std::vector<Place> all = places_of_storm(level_of_echo(intensity), 28, 6); // across a cell and more
    for (const int proj : {kProjPolar, kProjLatLon, kProjOrtho}) {
        std::vector<Place> places = all;
        MAP_setup(domain_around(proj, 38.7F, -90.7F, proj == kProjLatLon ? 6.0F : 6.5F));
        put_on_map(places);
        const CellSink sink{note_cell, &places};
        CONT_choose_levels({kSummaryLevels, {}, kSummaryBase, kSummaryInterval, 0, kSummaryTop});
        RCM_draw_grid(state.report, &sink);
        std::size_t same = 0;
        for (const Place &place : places) {
            const int found = place.found == kNoCell ? 0 : place.found;
            EXPECT_TRUE(found >= place.level && static_cast<float>(found) <= place.value)
                << proj << " at " << place.lat << " " << place.lon;
            same += place.level == static_cast<int>(place.value) ? 1U : 0U;
        }
        EXPECT_GT(same, places.size() / 10);
    }
    for (const Place &place : all) {
        RadarReading reading;
        reading.lat = place.lat;
        reading.lon = place.lon;
        ASSERT_TRUE(RCM_read_place(name, reading));
        const float level = is_missing(reading.number) ? 0 : reading.number;
        EXPECT_TRUE(level >= static_cast<float>(place.level) && level <= place.value) << reading.value;
    }
    // The storms of the evening lie in the cells that are told, by the kilometre.
    const RcmGrid grid = RCM_grid(state.lat, state.lon);
    const samples::Scene scene(0);
    const SphereOrigin radar(samples::Site().lat, samples::Site().lon);
    for (std::size_t i = 0; i < scene.cells().size(); ++i) {
        const RcmStorm &storm = state.report.storms[i];
        const Point place = RCM_cell_place(grid, storm.column, storm.row);
        float lat = 0, lon = 0;
        MAP_untran(lat, lon, place.x, place.y);
        const SphereOrigin::Way way = radar.to(static_cast<double>(lat), static_cast<double>(lon));
        EXPECT_LT(std::hypot(way.east * 100 - scene.cells()[i].x_km, way.north * 100 - scene.cells()[i].y_km),
                  8.5)
            << storm.id;
    }
}

TEST(SameStorm, OfASiteFileLiesOverTheSamePlaces) {
    quiet();
    PLT_open(1);
    const std::string name = scratch(samples::rrwds_file(samples::rrwds(0, false)));
    ASSERT_EQ(RRWDS_open_file(name), 1);
    const std::vector<Place> all = places_of_storm(level_of_echo(intensity), 4, 3);
    for (const int proj : {kProjPolar, kProjLatLon, kProjLambert}) {
        std::vector<Place> places = all;
        MAP_setup(domain_around(proj, 38.7F, -90.7F, proj == kProjLatLon ? 6.0F : 6.5F));
        put_on_map(places);
        const CellSink sink{note_cell, &places};
        CONT_choose_levels({kSummaryLevels, {}, kSummaryBase, kSummaryInterval, 0, kSummaryTop});
        RRWDS_draw_radials(&sink);
        for (const Place &place : places) {
            const int found = place.found == kNoCell ? 0 : place.found;
            EXPECT_TRUE(found >= place.level && static_cast<float>(found) <= place.value)
                << proj << " at " << place.lat << " " << place.lon;
        }
    }
    for (const Place &place : all) {
        RadarReading reading;
        reading.lat = place.lat;
        reading.lon = place.lon;
        ASSERT_TRUE(RRWDS_read_place(name, reading));
        const float least = place.level > 0 ? RAD_intensity_dbz(place.level) : 0;
        const float most = place.value > 0 ? RAD_intensity_dbz(static_cast<int>(place.value)) : 0;
        const float value = is_missing(reading.number) ? 0 : reading.number;
        EXPECT_TRUE(value >= least && value <= most) << reading.value;
    }
}

struct SummaryCase {
    samples::Bytes bytes;
    double cell_km; ///< what lies so far to each side decides the level of a place
    SummaryKind kind;
};

std::vector<SummaryCase> summaries() {
    using namespace samples;
    using enum SummaryForm;
    constexpr double kDigitizedKm = 52, kCodedKm = 13;
    const DigitizedSummary d = digitized(0);
    const CodedSummary c = coded(0);
    return {{digitized_text(d, text), kDigitizedKm, SummaryKind::digitized},
            {digitized_text(d, marked), kDigitizedKm, SummaryKind::digitized},
            {digitized_text(d, package), kDigitizedKm, SummaryKind::digitized},
            {digitized_text(d, header_w), kDigitizedKm, SummaryKind::digitized},
            {netcdf_file(digitized_stations(d)), kDigitizedKm, SummaryKind::digitized},
            {netcdf_file(digitized_reports(d)), kDigitizedKm, SummaryKind::digitized},
            {coded_text(c, text), kCodedKm, SummaryKind::coded_message},
            {coded_text(c, package), kCodedKm, SummaryKind::coded_message}};
}

TEST(SameStorm, OfConvertedSummariesLiesOverTheSamePlaces) {
    quiet();
    for (const SummaryCase &summary : summaries()) {
        const std::string name = scratch(summary.bytes);
        const std::vector<Place> all = places_of_storm(level_of_echo(intensity), summary.cell_km, 6);
        std::size_t decided = 0;
        for (const int proj : {kProjPolar, kProjLatLon, kProjLambert}) {
            std::vector<Place> places = all;
            PlotDomain domain = domain_around(proj, 38.7F, -90.7F, proj == kProjLatLon ? 6.0F : 6.5F);
            PLT_open(DOM_aspect(domain));
            MAP_setup(domain);
            put_on_map(places);
            ASSERT_EQ(RAD_open_file(name), 1);
            EXPECT_EQ(RAD_state().info.kind, summary.kind);
            gclear_objs();
            gset_redraw(1);
            RAD_plot_summary();
            const std::vector<InkedArea> areas = inked_areas();
            std::map<int, int> level_of{{-1, 0}};
            for (int level = 1; level <= kSummaryTop; ++level) {
                Attribute ink;
                CONT_get_fill_attrib(ink, static_cast<float>(level));
                level_of[ink.color] = level;
            }
            for (const Place &place : places) {
                const int level = level_of.at(color_seen(areas, place.plot.x, place.plot.y));
                EXPECT_TRUE(level >= place.level && static_cast<float>(level) <= place.value)
                    << name << " in projection " << proj << " at " << place.lat << " " << place.lon << ": "
                    << level << " for " << place.level << " to " << place.value;
                decided += static_cast<float>(place.level) == place.value ? 1U : 0U;
            }
            RAD_close_file();
            (void)GPH_end(1);
        }
        EXPECT_GT(decided, 100U); // most of them without echo where the cells are wide
        for (const Place &place : all) {
            RadarReading reading;
            reading.lat = place.lat;
            reading.lon = place.lon;
            ASSERT_TRUE(RAD_read_place(name, reading));
            const float level = is_missing(reading.number) ? 0 : reading.number;
            EXPECT_TRUE(level >= static_cast<float>(place.level) && level <= place.value) << reading.value;
        }
    }
}

TEST(SameStorm, MosaicsEndWhereTheirGridEnds) {
    quiet();
    ASSERT_TRUE(NOWRad_driver().open(scratch(samples::nowrad_file(samples::nowrad_lambert(0)))));
    RadarReading reading;
    reading.lat = 38.7F;
    reading.lon = 20;
    ASSERT_TRUE(
        NOWRad_driver().read_place(scratch(samples::nowrad_file(samples::nowrad_lambert(0))), reading));
    EXPECT_EQ(reading.value, kOutsideWords);
    EXPECT_FALSE(NOWRad_driver().read_place("/nonexistent", reading));
}

/// The file as a display draws it.
std::vector<std::byte> picture(const std::string &name, int proj, float size, bool outlines) {
    PlotDomain domain = domain_around(proj, 38.7F, -90.7F, size);
    PLT_open(DOM_aspect(domain));
    MAP_setup(domain);
    gset_redraw(outlines ? 1 : 0);
    EXPECT_TRUE(NOWRad_driver().open(name));
    NOWRad_driver().draw();
    RasterImage image;
    EXPECT_TRUE(graster_read(graster_base(), image));
    (void)GPH_end(1);
    return image.data;
}

TEST(SameStorm, CellsSmallerThanPixelsMakeThePictureOfTheirOutlines) {
    quiet();
    samples::NowradFile file = samples::nowrad_latlon(0);
    file.lines = 500;
    file.columns = 560;
    file.numbers = {-90.7 * kDegree, 48 * kDegree, 0, 0.04 * kDegree, 0.05 * kDegree};
    file.window = {};
    file.level = [](int line, int column) { return static_cast<unsigned>(line / 9 + column / 13) % 5; };
    const std::string name = scratch(samples::nowrad_file(file));
    for (const auto &[proj, size] :
         {std::pair{kProjPolar, 20.0F}, {kProjLatLon, 20.0F}, {kProjPolar, 3.0F}}) {
        const std::vector<std::byte> outlines = picture(name, proj, size, true);
        const std::vector<std::byte> pixels = picture(name, proj, size, false);
        ASSERT_EQ(outlines.size(), pixels.size());
        const std::size_t count = outlines.size() / 4;
        std::size_t inked = 0, other = 0;
        for (std::size_t i = 0; i < count; ++i) {
            const auto at = [i](const std::vector<std::byte> &data) {
                return std::span(data).subspan(i * 4, 3);
            };
            inked +=
                std::ranges::any_of(at(outlines), [](std::byte b) { return b != std::byte{0}; }) ? 1U : 0U;
            other += std::ranges::equal(at(outlines), at(pixels)) ? 0U : 1U;
        }
        EXPECT_GT(inked, count / 2) << proj << " " << size;
        EXPECT_LT(other, count / 100) << proj << " " << size;
    }
}

} // namespace
