// What is under the pointer: against independent decodings, and against the cells as they are drawn.

#include "radar/common/readout.h"

#include <cmath>
#include <functional>
#include <map>
#include <random>

#include <gtest/gtest.h>

#include "lib/options/flags.h"
#include "lib/report/message.h"
#include "lib/resources/database.h"
#include "plot/colour/level_choice.h"
#include "plot/colour/levels.h"
#include "plot/colour/named_colors.h"
#include "radar/cell_places.h"
#include "radar/common/cell_image.h"
#include "radar/lev2/painter.h"
#include "radar/lev2/plot.h"
#include "radar/lev2/reader.h"
#include "radar/lev2/volume_reader.h"
#include "radar/nids/image.h"
#include "radar/nids/plot.h"
#include "radar/nids/product_reader.h"
#include "radar/nids/reader.h"
#include "real_files.h"
#include "tsv.h"

namespace {

TEST(ReadOut, BeamsRiseAboveABentEarth) {
    EXPECT_NEAR(RADAR_beam_height(0, 0.5, 220), 220, 0.01);
    // The rule of thumb: range squared over twice the bent radius, and the slope.
    EXPECT_NEAR(RADAR_beam_height(100, 0, 0), 1e10 / (2 * 8495e3), 1);
    EXPECT_NEAR(RADAR_beam_height(230, 0.5, 220), 220 + 2007 + 3113, 5);
    EXPECT_NEAR(RADAR_beam_height(50, 90, 0), 50e3, 1);
}

TEST(ReadOut, TheTextTellsWhatIsKnown) {
    RadarReading reading;
    reading.value = RADAR_value_text(-0.0F, "dB");
    EXPECT_EQ(RADAR_reading_text(reading), "0 dB");
    reading.value = RADAR_value_text(0.99667F, "");
    reading.lat = 38.38264F;
    reading.lon = -91.93591F;
    EXPECT_EQ(RADAR_reading_text(reading), "0.9967  lat 38.3826 lon -91.9359");
    reading.azimuth = 252.5F;
    reading.range_km = 114.51F;
    reading.beam_m = 2345.4F;
    EXPECT_EQ(RADAR_reading_text(reading),
              "0.9967  lat 38.3826 lon -91.9359  az 252.5 dist 114.51 km  beam 2345 m");
    reading.above_radar = true;
    EXPECT_TRUE(RADAR_reading_text(reading).ends_with("beam 2345 m above radar"));
}

TEST(ReadOut, TheWayToAPlaceLeadsThere) {
    for (const double lat : {-89.0, -33.9, 0.0, 38.7, 71.3}) {
        const SphereOrigin radar(lat, 179.9);
        for (double azimuth = 0; azimuth < 360; azimuth += 7.5)
            for (const double km : {0.001, 1.0, 230.0, 4000.0}) {
                const SpherePoint place = radar.towards(azimuth, km);
                const SphereOrigin::Way way = radar.to(place.lat, place.lon);
                const double off = std::hypot(way.east * 100 - km * std::sin(azimuth * kDegree),
                                              way.north * 100 - km * std::cos(azimuth * kDegree));
                EXPECT_LT(off, 1e-5) << lat << " " << azimuth << " " << km;
            }
    }
    EXPECT_EQ(SphereOrigin(38.7, -90).to(38.7, -90).north, 0);
}

TEST(ReadOut, OfOverlappingCellsTheLastOneDrawnIsSeen) {
    CellImage image;
    const auto add = [&image](float from, float to, std::vector<std::uint16_t> levels, std::size_t skip) {
        image.add({CellStrip::Kind::radial, from, to, 0.1F, 0.01F, skip, 0, std::move(levels)});
    };
    add(359, 360.5F, {5, 6, 7}, 0);
    add(0, 1.5F, {8, 0, 9}, 1);
    const auto at = [&image](double azimuth, double range) {
        const Point p{static_cast<float>(range * std::sin(azimuth * kDegree)),
                      static_cast<float>(range * std::cos(azimuth * kDegree))};
        return image.at(p, [](const FoundCell &cell) { return cell.level > 0; });
    };
    EXPECT_EQ(at(-0.5, 0.125)->level, 7U);
    EXPECT_EQ(at(0.25, 0.125)->level, 9U);
    EXPECT_EQ(at(0.25, 0.115)->level, 6U) << "what draws nothing covers nothing";
    EXPECT_EQ(at(0.25, 0.105)->level, 5U) << "nor does what is skipped";
    EXPECT_EQ(at(1, 0.115)->level, 0U);
    EXPECT_FALSE(at(1, 0.115)->drawn);
    EXPECT_FALSE(at(1, 0.099));
    EXPECT_FALSE(at(1, 0.131));
    EXPECT_FALSE(at(2, 0.115));
}

// Real files --------------------------------------------------------------------------------------------

class ReadOutTruth : public testing::Test {
protected:
    void SetUp() override {
        SKIP_WITHOUT_REAL_FILES();
        MESS_set(0, kError);
        FLAG_resetplot(1);
        FLAG_set_batch(1); // read no further than the cut
        RES_put("file_path", VYX_SOURCE_DIR "/data/");
        CLR_read_table("");
        RES_put("identifier", "KLOT"); // of the one volume that has none
    }
};

std::map<std::string, TsvRow> level3_facts() {
    std::map<std::string, TsvRow> facts;
    for (const TsvRow &row : read_tsv(shared_dir() + "/samples/level3-facts.tsv"))
        facts[row.at("file")] = row;
    return facts;
}

double number(const TsvRow &row, const char *column) {
    return std::stod(row.at(column));
}

/// "ND" and the like as the reading says it; empty for a number.
std::string expected_words(const TsvRow &row) {
    const std::string &published = row.at("value_published");
    if (published == "RF") return std::string(kRangeFoldedWords);
    if (published == "TH") return std::string(kBelowWords);
    if (published == "ND") return std::string(kNoDataWords);
    // By the rules of the levels it is missing, where the format has a first value.
    return number(row, "value_formula_A") < -99.9 ? std::string(kNoDataWords) : std::string();
}

void expect_value(const RadarReading &reading, const std::string &words, double value) {
    if (!words.empty()) {
        EXPECT_EQ(reading.value, words);
        EXPECT_TRUE(is_missing(reading.number));
        return;
    }
    // The table's values are rounded.
    EXPECT_NEAR(static_cast<double>(reading.number), value, 0.002 + std::abs(value) * 0.001) << reading.value;
}

/// By the 4/3 earth, written another way than the program does.
double truth_height(double km, double degrees, double antenna_m) {
    const double bent = 4.0 / 3 * 6371, slope = degrees * 3.14159265358979 / 180;
    const double up = km * std::sin(slope), along = km * std::cos(slope);
    return (std::hypot(bent + up, along) - bent) * 1000 + antenna_m;
}

void expect_way(const RadarReading &reading, double azimuth, double km) {
    constexpr double kPlaceKm = 0.01; // five decimals of a degree, to single precision
    EXPECT_NEAR(static_cast<double>(reading.range_km), km, kPlaceKm);
    const double aside = std::remainder(static_cast<double>(reading.azimuth) - azimuth, 360.0);
    EXPECT_LT(std::abs(aside) * kDegree * km, kPlaceKm + 0.005 * kDegree * km);
}

TEST_F(ReadOutTruth, LevelThreeValuesStandWhereOthersSawThem) {
    const std::map<std::string, TsvRow> facts = level3_facts();
    int read = 0;
    for (const TsvRow &row : read_tsv(shared_dir() + "/samples/level3-points.tsv")) {
        SCOPED_TRACE(row.at("file") + " az " + row.at("azimuth_deg") + " km " + row.at("range_km"));
        RadarReading reading;
        reading.lat = std::stof(row.at("latitude"));
        reading.lon = std::stof(row.at("longitude"));
        ASSERT_TRUE(NIDS_read_place(shared_dir() + "/samples/level3/" + row.at("file"), reading));
        expect_value(reading, expected_words(row), number(row, "value_formula_A"));
        expect_way(reading, number(row, "azimuth_deg"), number(row, "range_km"));
        const TsvRow &fact = facts.at(row.at("file"));
        if (row.at("elevation_number") == "0")
            EXPECT_TRUE(is_missing(reading.beam_m)) << "no height of a composite";
        else
            EXPECT_NEAR(static_cast<double>(reading.beam_m),
                        truth_height(number(row, "range_km"), number(fact, "P3") / 10,
                                     number(fact, "height_ft") * 0.3048),
                        10);
        ++read;
    }
    EXPECT_EQ(read, 3750);
}

TEST_F(ReadOutTruth, LevelTwoValuesStandWhereOthersSawThem) {
    LEV2_state().superres = true;
    int read = 0;
    std::string chosen;
    for (const TsvRow &row : read_tsv(shared_dir() + "/samples/level2-points.tsv")) {
        const std::string word = row.at("moment") == "REF" ? "ref" : "vel";
        SCOPED_TRACE(row.at("file") + " " + word + " az " + row.at("azimuth_deg") + " km " +
                     row.at("range_km"));
        const std::string variable = word + row.at("elevation_number");
        if (variable != chosen) {
            RES_put("variable", variable.c_str());
            LEV2_forget_sweep();
            chosen = variable;
        }
        // Drawn gates begin where the table has their middle.
        const double km = number(row, "range_km") + number(row, "gate_km") / 2;
        const SphereOrigin radar(number(row, "site_latitude"), number(row, "site_longitude"));
        const SpherePoint place = radar.towards(number(row, "azimuth_deg"), km);
        RadarReading reading;
        reading.lat = static_cast<float>(place.lat);
        reading.lon = static_cast<float>(place.lon);
        ASSERT_TRUE(LEV2_read_place(shared_dir() + "/samples/level2/" + row.at("file"), reading));
        const int level = std::stoi(row.at("level"));
        expect_value(reading,
                     std::string(level == 0   ? kBelowWords
                                 : level == 1 ? kRangeFoldedWords
                                              : ""),
                     number(row, "value_formula_A"));
        EXPECT_NEAR(static_cast<double>(reading.range_km), km, 0.03) << "places of sites differ by metres";
        ASSERT_FALSE(reading.above_radar);
        static const std::map<std::string, double> antennas{
            {"KABR", 421}, {"KLBB", 1029}, {"KLOT", 231}, {"KMKX", 311}, {"Leve", 197}};
        const double rounding = km * 1000 * 0.005 * kDegree; // the table's elevation has two decimals
        EXPECT_NEAR(static_cast<double>(reading.beam_m),
                    truth_height(km, number(row, "elevation_deg"), antennas.at(row.at("file").substr(0, 4))),
                    10 + rounding);
        ++read;
    }
    EXPECT_EQ(read, 1666);
}

/// Places all over a domain.
std::vector<Place> random_places(const PlotDomain &domain, float degrees) {
    std::mt19937 random(7);
    std::uniform_real_distribution<float> aside(-degrees, degrees);
    std::vector<Place> places(3000);
    for (Place &place : places) place = {domain.clat + aside(random), domain.clon + aside(random)};
    return places;
}

/// Every place reads as the cell that was drawn over it; where none was, as something without a colour.
void expect_as_drawn(const std::string &path, const std::vector<Place> &places, RadarReader read,
                     const std::function<float(int)> &value_of) {
    int wrong = 0, drawn = 0;
    for (const Place &place : places) {
        RadarReading reading;
        reading.lat = place.lat;
        reading.lon = place.lon;
        ASSERT_TRUE(read(path, reading));
        const bool has_color = !is_missing(reading.number) && CELL_draws(reading.number);
        if (place.found == kNoCell)
            wrong += has_color ? 1 : 0;
        else if (++drawn > 0 && !is_missing(reading.number))
            wrong += reading.number != value_of(place.found) ? 1 : 0;
    }
    EXPECT_GT(drawn, 100) << path;
    // Drawn edges bulge a metre between their corners.
    EXPECT_LE(wrong, 3) << path;
}

TEST_F(ReadOutTruth, WhatIsReadIsWhatIsDrawn) {
    for (const char *file : {"KLSX_SDUS53_N0RLSX_202105041639", "LSX_N0B_2022_03_30_15_40_41",
                             "KLSX_SDUS63_NCZLSX_202112110130", "KLSX_SDUS53_DPALSX_202112110238"}) {
        const std::string path = shared_dir() + "/samples/level3/" + file;
        ASSERT_EQ(NIDS_open_file(path), 1);
        const NidsInfo info = NIDS_get_info();
        const float lat = static_cast<float>(NIDS_get_prod_desc().latitude) / 1000;
        const float lon = static_cast<float>(NIDS_get_prod_desc().longitude) / 1000;
        const PlotDomain domain = domain_around(kProjLambert, lat, lon, 6);
        MAP_setup(domain);
        std::vector<Place> places = random_places(domain, 2);
        put_on_map(places);
        NIDS_choose_levels(info);
        std::array<float, kCellLevels> values{};
        NIDS_image_values(NIDS_reader(), info.packet, values);
        const CellSink sink{note_cell, &places};
        NIDS_walk_image(NIDS_reader(), info, {}, &sink);
        NIDS_close_file();
        expect_as_drawn(path, places, NIDS_read_place,
                        [&values](int level) { return values[static_cast<std::size_t>(level)]; });
    }
    // Radials of half a degree drawn a whole one wide.
    const std::string volume = shared_dir() + "/samples/level2/KLBB20160601_150025_V06";
    RES_put("variable", "ref1");
    LEV2_state().superres = false;
    ASSERT_TRUE(LEV2_open_volume(volume));
    const PlotDomain domain = domain_around(kProjLambert, LEV2_state().info.lat, LEV2_state().info.lon, 6);
    MAP_setup(domain);
    std::vector<Place> places = random_places(domain, 2);
    put_on_map(places);
    CONT_choose_levels({LEV2_moment(kLev2Reflectivity).levels, {}});
    const CellSink sink{note_cell, &places};
    LEV2_draw_sweep(LEV2_reader(), LEV2_state(), {}, &sink);
    const auto value_of = [](int level) { return static_cast<float>(level - 66) / 2; };
    expect_as_drawn(volume, places, LEV2_read_place, value_of);
}

} // namespace
