/// Storm tables of the graphic pages.

#include <algorithm>

#include <gtest/gtest.h>

#include "lib/text/scan.h"
#include "plot/drawing_fixture.h"
#include "radar/nids/plot.h"
#include "radar/nids/storm.h"
#include "real_files.h"
#include "tsv.h"

namespace {

constexpr const char *kLiquidHeading =
    " STM ID  AZ/RAN TVS  MDA  POSH/POH/MX SIZE VIL DBZM  HT  TOP  FCST MVMT ";
constexpr const char *kHailHeading = " STM ID  AZ  RAN  TVS  MESO HAIL DBZM HT  VLOW  TOP  DIR SPD";

NidsStorm read(const char *heading, const char *line, bool expected = true) {
    int layout = 0;
    NidsStorm storm;
    EXPECT_FALSE(NIDS_storm_line(heading, layout, storm)) << "a heading is no storm";
    EXPECT_EQ(NIDS_storm_line(line, layout, storm), expected) << line;
    return storm;
}

TEST(Storms, TableWithFixedColumns) {
    NidsStorm s =
        read(kLiquidHeading, "    M9   81/ 23 NONE    3   60/100/ 1.50    47  62  6.3  26.9  245/ 60  ");
    EXPECT_EQ(s.id, "M9");
    EXPECT_EQ(s.azimuth, 81);
    EXPECT_EQ(s.range_nm, 23);
    EXPECT_EQ(s.tvs, 0);
    EXPECT_EQ(s.meso, 3);
    EXPECT_EQ(s.posh, 60);
    EXPECT_EQ(s.poh, 100);
    EXPECT_EQ(s.hail_size_in, 1.5F);
    EXPECT_EQ(s.vil, 47);
    EXPECT_EQ(s.max_dbz, 62);
    EXPECT_EQ(s.max_dbz_height, 6.3F);
    EXPECT_EQ(s.top, 26.9F);
    EXPECT_EQ(s.direction, 245);
    EXPECT_EQ(s.speed_kt, 60);

    s = read(kLiquidHeading, "    H3  151/  4 TVS  NONE    0/ 50/<0.50    15  60  5.8 > 7.6    NEW    ");
    EXPECT_EQ(s.tvs, 1);
    EXPECT_EQ(s.meso, 0);
    EXPECT_EQ(s.hail_size_in, 0.25F);
    EXPECT_EQ(s.top, 7.6F);
    EXPECT_EQ(s.speed_kt, kMissingF);

    s = read(kLiquidHeading, "    X0  161/154 NONE MESO     UNKNOWN       67  63 24.4  45.2  235/ 41  ");
    EXPECT_EQ(s.meso, 1);
    EXPECT_EQ(s.posh, 0);
    EXPECT_EQ(s.hail_size_in, 0);
    EXPECT_EQ(s.vil, 67);
    read(kLiquidHeading, "    X0  161", false);
    read(kLiquidHeading, "", false);
    read(kLiquidHeading, "NO STORMS DETECTED", false);
}

TEST(Storms, TableWithHailWords) {
    const NidsStorm s = read(kHailHeading, " A1   258   52  YES  NO   POS    63 12.0   1.5 > 48.0  245  38");
    EXPECT_EQ(s.id, "A1");
    EXPECT_EQ(s.azimuth, 258);
    EXPECT_EQ(s.range_nm, 52);
    EXPECT_EQ(s.tvs, 1);
    EXPECT_EQ(s.meso, 0);
    EXPECT_EQ(s.posh, 100);
    EXPECT_EQ(s.max_dbz, 63);
    EXPECT_EQ(s.top, 48);
    EXPECT_EQ(s.direction, 245);
    EXPECT_EQ(s.speed_kt, 38);
    EXPECT_EQ(read(kHailHeading, " B2  10 20 NO NO PRO 50 10 1 >30 240 20").posh, 50);
    EXPECT_EQ(read(kHailHeading, " B2  10 20 NO NO NONE 50 10 1 >30 240 20").posh, 0);
    read(kHailHeading, " B2", 0);
}

class StormMarkers : public DrawingTest {
protected:
    StormMarkers() {
        const PlotDomain domain = polar(38.7F, -90.7F, 101, 101, 0.05F);
        MAP_setup(domain);
    }
    /// The types of the markers that a storm gets.
    static std::vector<int> of(float posh, float meso, float tvs) {
        PlacedStorm placed;
        MAP_tran_center(placed.place.x, placed.place.y);
        placed.storm.posh = posh;
        placed.storm.meso = meso;
        placed.storm.tvs = tvs;
        PlotVariable variable;
        variable.name = "comp";
        forget();
        NIDS_draw_storm(placed, variable, {1, 5, 38.7F});
        std::vector<int> types;
        static int type = 0; // what has not changed is not recorded again
        for (const ObjectRecord *object = gfirst_obj(); object != nullptr; object = object->next) {
            if (object->type == ObjectType::marker_type) type = object->value;
            if (object->type == ObjectType::polymarker) types.push_back(type);
        }
        return types;
    }
};

TEST_F(StormMarkers, TellHailRotationAndTornadoes) {
    using Types = std::vector<int>;
    EXPECT_EQ(of(0, 0, 0), Types{2});
    EXPECT_EQ(of(49, 0, 0), Types{2});
    EXPECT_EQ(of(50, 0, 0), Types{5});
    EXPECT_EQ(of(74, 0, 0), Types{5});
    EXPECT_EQ(of(75, 0, 0), Types{3});
    EXPECT_EQ(of(0, 3, 0), Types{4});
    EXPECT_EQ(of(0, 0, 1), Types{9});
    EXPECT_EQ(of(80, 1, 1), (Types{3, 4, 9}));
}

TEST(Storms, SelectionByNumberAndStrength) {
    const char *const lines[]{kHailHeading, " A1 10 20 NO NO NONE 50 10 1 >30 240 20",
                              " B2 10 20 NO YES NONE 50 10 1 >30 240 20",
                              " C3 10 20 NO NO PRO 50 10 1 >30 240 20"};
    const auto chosen = [&](int most, bool strong) {
        NidsStormReader reader(most, strong);
        for (const char *line : lines) reader.line(line);
        std::string ids;
        for (const NidsStorm &storm : reader.storms()) ids += storm.id + " ";
        return ids;
    };
    EXPECT_EQ(chosen(0, false), "A1 B2 C3 ");
    EXPECT_EQ(chosen(1, false), "A1 ");
    EXPECT_EQ(chosen(0, true), "B2 C3 ");
    EXPECT_EQ(chosen(1, true), "A1 B2 C3 ") << "among the first, or strong";
}

TEST(Storms, AttributesOfPlotVariables) {
    NidsStorm storm;
    storm.id = "A1";
    storm.meso = 5;
    storm.posh = 80;
    storm.poh = 60;
    storm.vil = 40;
    storm.top = 30;
    storm.direction = 240;
    storm.speed_kt = 35;
    struct Row {
        const char *variable;
        float value;
        const char *text;
    };
    const Row rows[]{{"id", kMissingF, "A1"}, {"tvs", kMissingF, ""}, {"meso", 1, "MESO"},
                     {"posh", 80, "*"},       {"poh", 60, "X"},       {"vil", 40, ""},
                     {"vil-small", 40, ""},   {"top", 30, ""},        {"wave_dir", 240, ""},
                     {"move_spd", 35, ""},    {"mvmt", 240, ""},      {"nosuch", kMissingF, ""},
                     {"hsize", 0, ""}};
    for (const Row &row : rows) {
        StationData data;
        NIDS_get_plot_data(storm, row.variable, data);
        EXPECT_EQ(data.value, row.value) << row.variable;
        EXPECT_EQ(data.text, row.text) << row.variable;
    }
    storm.speed_kt = kMissingF;
    StationData data;
    NIDS_get_plot_data(storm, "mvmt", data);
    EXPECT_EQ(data.value, kMissingF);
}

/// The same line read word by word, without columns: numbers in order, words and slashes as gaps.
std::vector<float> numbers_of(std::string line) {
    std::ranges::replace_if(
        line, [](char c) { return c == '/' || c == '>' || c == '<'; }, ' ');
    std::vector<float> numbers;
    Scanner words(line);
    words.word(); // the identifier may be a number too
    while (const auto word = words.word())
        if (const auto number = Scanner(*word).real()) numbers.push_back(*number);
    return numbers;
}

TEST(Storms, RealTablesAreReadWhole) {
    SKIP_WITHOUT_REAL_FILES();
    int layout = 0, storms = 0;
    for (const TsvRow &row : read_tsv(shared_dir() + "/samples/level3-packets.tsv")) {
        const std::string &file = row.at("file"), &content = row.at("content");
        const std::size_t at = content.find("text=");
        if (file.find("_NC") == std::string::npos || row.at("where")[0] != 'G' || at == std::string::npos)
            continue;
        const std::string line = content.substr(at + 5);
        NidsStorm s;
        if (!NIDS_storm_line(line, layout, s)) {
            EXPECT_EQ(line.find('/') != std::string::npos, line.find("STM ID") != std::string::npos) << line;
            continue;
        }
        ++storms;
        std::vector<float> read{s.azimuth, s.range_nm};
        if (s.meso > 0) read.push_back(s.meso);
        if (line.find("UNKNOWN") == std::string::npos)
            read.insert(read.end(), {s.posh, s.poh, s.hail_size_in == 0.25F ? 0.5F : s.hail_size_in});
        read.insert(read.end(), {s.vil, s.max_dbz, s.max_dbz_height, s.top});
        if (line.find("NEW") == std::string::npos) read.insert(read.end(), {s.direction, s.speed_kt});
        EXPECT_EQ(read, numbers_of(line)) << line;
        EXPECT_EQ(s.hail_size_in == 0.25F, line.find('<') != std::string::npos) << line;
    }
    EXPECT_GT(storms, 60);
}

} // namespace
