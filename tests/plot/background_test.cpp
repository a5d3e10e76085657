#include "plot/background/background_map.h"
#include "plot/background/curve_pen.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "graphics/core/state.h"
#include "graphics/text/font.h"
#include "lib/system/stream.h"
#include "plot/background/item.h"
#include "plot/background/line_file.h"
#include "plot/drawing_fixture.h"
#include "plot/map/settings.h"
#include "plot/map_writer.h"

namespace {

const MapLine kDiagonal{{10, -100}, {20, -90}};

class BackgroundTest : public DrawingTest {
protected:
    void write_map(const std::string &name, const std::vector<MapLine> &map_lines) const {
        std::string bytes;
        for (const MapLine &line : map_lines) bytes += binary_record(line);
        files_.write(name, bytes);
    }
    /// A map whose one line lies at this latitude, so that it is known again when drawn.
    void write_marked_map(const std::string &name, float lat) const {
        write_map(name, {{{lat, -101}, {lat, -99}}});
    }
    /// The longest step, across or up, from point to point of what was drawn.
    static float longest_step() {
        float longest = 0;
        for (const Line &line : lines())
            for (std::size_t i = 1; i < line.size(); ++i)
                longest = std::max(
                    {longest, std::abs(line[i].x - line[i - 1].x), std::abs(line[i].y - line[i - 1].y)});
        return longest;
    }
    /// The latitudes of what a pass draws on a latitude-longitude map.
    std::vector<float> drawn_latitudes(int mask) const {
        forget();
        MAP_draw(mask);
        std::vector<float> found;
        for (const Line &line : lines()) found.push_back(line[0].y);
        return found;
    }
};

using Latitudes = std::vector<float>;

TEST_F(BackgroundTest, CurvesTakeTheShorterWayAround) {
    static std::vector<Point> inked;
    const CurvePen::Ink keep = [](std::span<const Point> points) {
        inked.insert(inked.end(), points.begin(), points.end());
        return 0;
    };
    const auto curve = [&](float longest, const MapPoint &a, const MapPoint &b) {
        inked.clear();
        CurvePen pen(keep, longest);
        pen.to(a);
        pen.to(b);
        pen.lift();
        return inked.size();
    };
    PlotDomain domain = polar(60, 180, 11, 11, 1);
    MAP_domain(&domain);
    EXPECT_EQ(curve(20, {60, 179}, {60, -179}), 2U); // short enough as it is
    EXPECT_GT(curve(2, {60, 170}, {60, -170}), 8U);
    for (const Point &p : inked) {
        float lat = 0, lon = 0;
        MAP_untran(lat, lon, p.x, p.y);
        EXPECT_NEAR(lat, 60, 0.01);
        EXPECT_LE(std::abs(std::remainder(lon - 180, 360.0F)), 10.01F);
    }
}

TEST_F(BackgroundTest, PicksTheListByPlaceAndSizeOfThePlot) {
    const std::string missing = "MAP_process: Map file not found: ";
    MAP_setup(polar(40, 10, 25, 17, 2.3F));
    EXPECT_EQ(errors_of([] { MAP_draw(kMapOverlay); }), missing + "cont.map\n" + missing + "country.map\n");
    // The choice sticks.
    MAP_setup(polar(40, -100, 25, 17, 2.3F));
    EXPECT_EQ(errors_of([] { MAP_draw(kMapOverlay); }), missing + "cont.map\n" + missing + "country.map\n");
}

TEST_F(BackgroundTest, PicksTheRegionalMapForNorthAmerica) {
    MAP_setup(polar(40, -100, 25, 17, 2.3F));
    EXPECT_EQ(errors_of([] { MAP_draw(kMapOverlay); }), "MAP_process: Map file not found: vyx.map\n");
}

TEST_F(BackgroundTest, DrawsEachItemInItsPass) {
    write_marked_map("lakes.map", 41);
    write_marked_map("counties.map", 42);
    write_marked_map("roads.map", 43);
    MAP_setup(degrees(40, -100, 40, 20));
    RES_put("map_file", "-lakes.map,counties.map,+roads.map");
    EXPECT_EQ(drawn_latitudes(kMapUnderlay), Latitudes{41});
    EXPECT_EQ(drawn_latitudes(kMapOverlay), (Latitudes{42, 43}));
    FLAG_setplot(8, 0);
    EXPECT_EQ(drawn_latitudes(kMapOverlay), Latitudes{});
}

TEST_F(BackgroundTest, SizeConditionsCompareWithTheHeightOfThePlot) {
    const auto met = [](std::string_view item, float height) {
        const bool result = take_size_conditions(item, height);
        EXPECT_EQ(item, "a.map");
        return result;
    };
    EXPECT_TRUE(met("s+20:a.map", 20));
    EXPECT_FALSE(met("s+20:a.map", 19.9F));
    EXPECT_TRUE(met("s-20:a.map", 20));
    EXPECT_FALSE(met("s-20:a.map", 20.1F));
    EXPECT_TRUE(met(">5<10:a.map", 10));
    EXPECT_FALSE(met(">5<10:a.map", 11));
    EXPECT_FALSE(met("<10>5:a.map", 4));
    EXPECT_TRUE(met("s+5:s-10:a.map", 7));
    EXPECT_FALSE(met("s-10:s+5:a.map", 4));
    std::string_view name = "s-lakes.map";
    EXPECT_TRUE(take_size_conditions(name, 1));
    EXPECT_EQ(name, "s-lakes.map"); // no number follows: part of the name
}

TEST_F(BackgroundTest, MapListDrawsTheFirstBlockThatMatches) {
    write_marked_map("us.map", 41);
    write_marked_map("world.map", 42);
    write_marked_map("always.map", 43);
    files_.write("maps.lst", "always.map\n[20,50,-130,-60,80]\n us.map [-90,90,-180,180]\nworld.map\n");
    RES_put("map_file", "fi:maps.lst");
    MAP_setup(degrees(40, -100, 60, 36));
    EXPECT_EQ(drawn_latitudes(kMapOverlay), (Latitudes{43, 41}));
    EXPECT_EQ(drawn_latitudes(kMapOverlay), (Latitudes{43, 41})); // every pass begins anew
    MAP_setup(degrees(40, -140, 100, 36));
    EXPECT_EQ(drawn_latitudes(kMapOverlay), (Latitudes{43, 42}));
    MAP_setup(degrees(40, -100, 60, 81)); // too high for the first block
    EXPECT_EQ(drawn_latitudes(kMapOverlay), (Latitudes{43, 42}));

    // A guard holds for the underlay too, where its items stand.
    files_.write("maps.lst", "[20,50,-130,-60,80] -us.map [-90,90,-180,180] -world.map");
    EXPECT_EQ(drawn_latitudes(kMapUnderlay), Latitudes{42});
    EXPECT_EQ(drawn_latitudes(kMapOverlay), Latitudes{});

    RES_put("map_file", "fi:none.lst,us.map");
    EXPECT_EQ(errors_of([&] { EXPECT_EQ(drawn_latitudes(kMapOverlay), Latitudes{41}); }),
              "MAP_draw: Unable to open map list file: none.lst\n"
              "MAP_draw: none.lst: No such file or directory\n");
}

TEST_F(BackgroundTest, GuardsOrderTheirLimits) {
    const auto guard = parse_region_guard("[50,20,-60,-130]");
    ASSERT_TRUE(guard);
    EXPECT_TRUE(guard->matches(40, -100, 1000));
    EXPECT_FALSE(guard->matches(40, -100, 1001));
    EXPECT_FALSE(guard->matches(19, -100, 10));
    EXPECT_TRUE(parse_region_guard("[1,2,3]")->unconditional);
    EXPECT_TRUE(parse_region_guard("[")->unconditional);
    EXPECT_FALSE(parse_region_guard("a.map"));
}

TEST_F(BackgroundTest, ItemAttributesStandBeforeTheResources) {
    write_marked_map("a.map", 41);
    MAP_setup(degrees(40, -100, 40, 20));
    const auto color_of = [&](const char *item) {
        forget();
        gset_line_colr_ind(0);
        EXPECT_EQ(MAP_process(item), 0);
        return line_colors().empty() ? 0 : line_colors().back();
    };
    EXPECT_EQ(color_of("a.map"), CLR_get_ind("red"));
    EXPECT_EQ(color_of("a.map:yellow:w3"), CLR_get_ind("yellow"));
    RES_put("color_map", "blue");
    EXPECT_EQ(color_of("a.map"), CLR_get_ind("blue"));
    MAP_fill_cont(1);
    RES_put("color_cmap", "white");
    EXPECT_EQ(color_of("a.map"), CLR_get_ind("white"));

    forget();
    MAP_process("a.map:off");
    EXPECT_TRUE(lines().empty());
    MAP_process("a.map:blue:f0");
    EXPECT_TRUE(lines().empty());
    EXPECT_EQ(areas().size(), 1U);
    forget();
    MAP_process("a.map"); // areas hold for one item
    EXPECT_TRUE(areas().empty());
    EXPECT_EQ(errors_of([] { EXPECT_EQ(MAP_process("rf:a.raw"), -1); }),
              "MAP_process: Not available in this version: rf:a.raw\n");
    EXPECT_EQ(MAP_process("if:a.gif:black:-5:3"), -1) << "a page takes no image";
}

TEST_F(BackgroundTest, TextAndBinaryMapsDrawTheSame) {
    MAP_setup(degrees(15, -95, 40, 20));
    MapLine long_line;
    for (int i = 0; i < 20000; ++i) long_line.emplace_back(15.0F, -100 + static_cast<float>(i % 100) / 10);
    const std::vector<MapLine> map{kDiagonal, long_line, kDiagonal};
    std::string binary, text;
    for (const MapLine &line : map) {
        binary += binary_record(line);
        text += text_record(line);
    }
    files_.write("a.map", binary);
    files_.write("b.map", text);
    MAP_process("a.map");
    const std::vector<Line> from_binary = lines();
    forget();
    MAP_process("b.map");
    EXPECT_EQ(lines(), from_binary);
    ASSERT_EQ(from_binary.size(), 3U);
    EXPECT_EQ(from_binary[1].size(), 20000U);
}

TEST_F(BackgroundTest, DamagedMapsDrawTheirWholeRecords) {
    MAP_setup(degrees(15, -95, 40, 20));
    const auto draw = [&](const std::string &bytes) {
        forget();
        files_.write("a.map", bytes);
        Stream stream = FILE_open(files_.at("a.map"), "r");
        const int status = MAP_map(stream);
        return std::pair(status, lines().size());
    };
    const std::string good = binary_record(kDiagonal), text = text_record(kDiagonal);
    const auto cut_everywhere = [&](const std::string &whole, std::size_t end) {
        for (std::size_t cut = 1; cut < end; ++cut)
            EXPECT_EQ(draw(whole + whole.substr(0, cut)), std::pair(-1, std::size_t{1})) << cut;
    };
    cut_everywhere(good, good.size());
    cut_everywhere(text, text.rfind(' ')); // a cut number is still a number
    EXPECT_EQ(draw(""), std::pair(-1, std::size_t{0}));
    EXPECT_EQ(draw(good + std::string(2, '\0') + good), std::pair(0, std::size_t{1}));
    EXPECT_EQ(draw(text + "0 0 0 0 0 0\n" + text), std::pair(0, std::size_t{1}));
    EXPECT_EQ(draw(good + "\xFF\xFE" + good), std::pair(-1, std::size_t{1})); // a count of -2
    EXPECT_EQ(draw(text + "99999 0 0 0 0 1\n" + text), std::pair(-1, std::size_t{1}));

    MapLine wild = kDiagonal;
    wild.emplace_back(std::nanf(""), -95.0F);
    wild.emplace_back(15.0F, 1e30F);
    wild.insert(wild.end(), kDiagonal.begin(), kDiagonal.end());
    EXPECT_EQ(draw(binary_record(wild)), std::pair(-1, std::size_t{2}));

    MAP_proj(kProjXY);
    EXPECT_EQ(draw(good), std::pair(1, std::size_t{0}));
}

TEST_F(BackgroundTest, CoastCrossesTheDateLineInTwoPieces) {
    write_map("a.map", {{{10, 175}, {11, 178}, {12, -178}, {13, -175}}});
    MAP_setup(degrees(0, 0, 360, 180));
    MAP_process("a.map");
    const std::vector<Line> pieces = lines();
    ASSERT_EQ(pieces.size(), 2U);
    EXPECT_EQ(pieces[0], (Line{{175, 10}, {178, 11}, {182, 12}}));
    EXPECT_EQ(pieces[1], (Line{{-178, 12}, {-175, 13}}));
}

TEST_F(BackgroundTest, LinesEndAtTheGapOfACone) {
    write_map("a.map", {{{40, -85}, {40, -82}, {40, -78}, {40, -75}}}); // the gap is at 80 west
    PlotDomain cone = degrees(40, 100, 240, 240);
    cone.proj = kProjLambert;
    MAP_setup(cone);
    MAP_process("a.map");
    ASSERT_EQ(lines().size(), 2U);
    EXPECT_EQ(lines()[0].size(), 2U);
    EXPECT_EQ(lines()[1].size(), 2U);
    forget();
    MAP_lines(10, 10);
    EXPECT_LE(longest_step(), 10.0F);
}

/// Everything that the antipode of an equal-area map tears: parallels that sweep round the rim, a coast that
/// passes north of the antipode and one that passes east of it, rings around a radar there.
TEST_F(BackgroundTest, NothingIsDrawnAcrossAnAzimuthalMap) {
    const auto passing = [](float lat, float lon, float lat_step, float lon_step) {
        MapLine line;
        for (int i = -20; i <= 20; ++i)
            line.emplace_back(lat + static_cast<float>(i) * lat_step, lon + static_cast<float>(i) * lon_step);
        return line;
    };
    write_map("a.map", {passing(-39.6F, 83, 0, 0.3F), passing(-40, 83.4F, 0.3F, 0)});
    for (const int proj : {kProjLambertAzim, kProjOrtho, kProjPolar, kProjSatellite}) {
        PlotDomain globe = degrees(40, -97, 270, 270);
        globe.proj = proj;
        MAP_setup(globe);
        forget();
        MAP_process("a.map");
        EXPECT_LE(longest_step(), 20.0F) << proj;
        EXPECT_EQ(lines().size(), proj == kProjLambertAzim ? 2U : 0U) << proj;
        forget();
        MAP_lines(10, 10);
        EXPECT_LE(longest_step(), 10.0F) << proj;
        EXPECT_GT(lines().size(), 30U) << proj;
    }
    MAP_setup(degrees(0, 0, 360, 180));
    forget();
    MAP_draw_circle(179, 60, 300);
    ASSERT_EQ(lines().size(), 3U);
    EXPECT_LE(longest_step(), 2.0F);
    EXPECT_GT(lines()[0].back().x, 180) << "over the seam";
    EXPECT_LT(lines()[1].front().x, -180);
    PlotDomain far = degrees(40, -97, 270, 270);
    far.proj = kProjLambertAzim;
    MAP_setup(far);
    forget();
    Point radar;
    MAP_tran(radar.x, radar.y, -41, 84);
    MAP_draw_circle(radar.x, radar.y, 300);
    EXPECT_LE(longest_step(), 50.0F);
}

TEST_F(BackgroundTest, HiddenPointsBreakLines) {
    write_map("a.map", {{{0, 0}, {0, 10}, {0, 120}, {0, 20}, {0, 30}, {0, 130}, {0, 40}}});
    PlotDomain globe = degrees(0, 0, 140, 140);
    globe.proj = kProjOrtho;
    MAP_setup(globe);
    MAP_process("a.map");
    ASSERT_EQ(lines().size(), 2U); // the last point alone makes no line
    EXPECT_EQ(lines()[0].size(), 2U);
    EXPECT_EQ(lines()[1].size(), 2U);
}

TEST_F(BackgroundTest, LatitudeLinesAreLabelledWhereTheyCrossTheLeftEdge) {
    MAP_setup(polar(15, -97, 61, 61, 1.5F));
    EXPECT_EQ(MAP_lines(10, 20), 0);
    const Rect limits = MAP_get_limits();
    std::set<std::string> at_left;
    for (const DrawnText &label : texts()) {
        if (std::abs(label.place.x - (limits.xmin + 0.01F * limits.width())) > 1e-3F) continue;
        at_left.insert(label.text);
        EXPECT_GT(label.place.y, limits.ymin);
        EXPECT_LT(label.place.y, limits.ymax);
    }
    EXPECT_TRUE(at_left.contains("10N"));
    EXPECT_TRUE(at_left.contains("20N"));
    EXPECT_TRUE(at_left.contains("EQ"));
    EXPECT_FALSE(at_left.contains("80N"));

    EXPECT_EQ(MAP_lines(kMissingF, 10), -1);
    EXPECT_EQ(MAP_lines(10, kMissingF), -1);
    EXPECT_EQ(MAP_lines(0, 10), -1);
    EXPECT_EQ(errors_of([] { EXPECT_EQ(MAP_lines(1, 0.01F), -1); }),
              "MAP_lines: Lines less than 0.05 degrees apart are not drawn\n");
}

TEST_F(BackgroundTest, MeridiansAreLabelledAtTheBottomAndRepeated) {
    MAP_setup(degrees(0, 0, 360, 160));
    MAP_latlon(0, 30, 0, 0);
    MAP_lines(30, 90);
    std::multiset<std::string> at_bottom, all;
    for (const DrawnText &label : texts()) {
        all.insert(label.text);
        if (std::abs(label.place.y - (-80 + 3.6F)) < 0.01F) at_bottom.insert(label.text);
    }
    EXPECT_EQ(at_bottom, (std::multiset<std::string>{"90E", "90W", "PM"})); // the date line is the edge
    EXPECT_EQ(all.count("PM"), 6U); // bottom edge, and 0, 30 and 60 north and south
    EXPECT_LE(longest_step(), 2.6F);
    // Each line in one piece, so that its dashes run on: five parallels, four meridians, all in small steps.
    EXPECT_EQ(lines().size(), 9U);
}

/// With a font, so that labels have widths: none covers another, and what is left is regular.
TEST_F(BackgroundTest, LabelsTellFractionsAndDoNotCollide) {
    RES_put("file_path", VYX_SOURCE_DIR "/data");
    gsetup_fonts();
    const struct {
        PlotDomain domain;
        float lat_spacing, lon_spacing;
        int extra;
        std::vector<std::string> shown, left_out;
    } cases[]{
        {degrees(40, -97, 60, 36), 1, 1, 0, {"96W", "100W", "28N"}, {"99W", "101W"}},
        {degrees(38, -90, 3, 2), 0.5F, 0.125F, 0, {"37.5N", "38N", "90W", "89.5W"}, {"89.875W", "89.625W"}},
        {polar(90, 0, 25, 25, 4), 10, 5, 20, {"PM", "60N"}, {}},
        {degrees(0, 0, 360, 180), 15, 30, 30, {"PM", "EQ", "30E", "30N"}, {"DL"}}};
    for (const auto &c : cases) {
        MAP_setup(c.domain);
        MAP_latlon(0, c.extra, 0, 0);
        forget();
        gset_char_ht(0.018F * MAP_get_vert());
        MAP_lines(c.lat_spacing, c.lon_spacing);
        const std::vector<DrawnText> labels = texts();
        const auto has = [&](const std::string &text) {
            return std::ranges::count(labels, text, &DrawnText::text) > 0;
        };
        for (const std::string &text : c.shown) EXPECT_TRUE(has(text)) << text;
        for (const std::string &text : c.left_out) EXPECT_FALSE(has(text)) << text;
        const float height = 0.018F * MAP_get_vert();
        for (std::size_t i = 0; i < labels.size(); ++i) {
            for (std::size_t k = 0; k < i; ++k) {
                const auto &[a, b] = std::pair(labels[i], labels[k]);
                const bool apart =
                    std::abs(a.place.y - b.place.y) >= height / 2 ||
                    std::abs(a.place.x - b.place.x) > (gtext_width(a.text) + gtext_width(b.text)) / 2;
                EXPECT_TRUE(apart) << a.text << " and " << b.text;
            }
        }
    }
}

TEST_F(BackgroundTest, LatLonLinesHaveAWidthOfTheirOwn) {
    write_marked_map("a.map", 41);
    MAP_setup(degrees(40, -100, 40, 20));
    MAP_latlon(0, 0, 10, 10);
    RES_put("map_file", "a.map:red:w4");
    MAP_draw(kMapOverlay);
    EXPECT_LE(gstate().line.width, 1.0F);
    RES_put("map_file", "a.map:red:w4,lalo:10:blue:w2");
    MAP_latlon(0, 0, 0, 0);
    MAP_draw(kMapOverlay);
    EXPECT_EQ(gstate().line.width, 2.0F);
}

TEST_F(BackgroundTest, LatLonItemTakesSpacingsAndAttributes) {
    const auto item = [](std::string_view text) {
        const LatLonItem parsed = parse_latlon_item(text);
        return std::tuple(parsed.lat_spacing, parsed.lon_spacing, std::string(parsed.attributes));
    };
    EXPECT_EQ(item(""), std::tuple(5.0F, 5.0F, ""));
    EXPECT_EQ(item("10"), std::tuple(10.0F, 10.0F, ""));
    EXPECT_EQ(item("10:20:blue:w2"), std::tuple(10.0F, 20.0F, "blue:w2"));
    EXPECT_EQ(item("10:blue"), std::tuple(10.0F, 10.0F, "blue"));
    EXPECT_EQ(item(":20"), std::tuple(5.0F, 20.0F, ""));

    MAP_setup(degrees(40, -100, 40, 20));
    EXPECT_EQ(MAP_process("lalo:10:blue"), 0);
    EXPECT_EQ(line_colors().back(), CLR_get_ind("blue"));
    EXPECT_FALSE(lines().empty());
    forget();
    MAP_process("lalo:10:off");
    EXPECT_TRUE(lines().empty());
    RES_put("map_file", "none");
    MAP_latlon(0, 0, 10, 10);
    errors_of([] { MAP_draw(kMapUnderlay); });
    EXPECT_EQ(line_colors().back(), CLR_get_ind("magenta"));
    EXPECT_FALSE(lines().empty());
}

TEST_F(BackgroundTest, CircleKeepsItsRadiusOnTheEarth) {
    MAP_setup(degrees(60, -100, 20, 10));
    MAP_draw_circle(0, 60, 111.195F);
    ASSERT_EQ(lines().size(), 1U);
    const Line circle = lines()[0];
    ASSERT_EQ(circle.size(), 49U);
    EXPECT_NEAR(circle[0].y, 61, 1e-3);
    EXPECT_NEAR(circle[12].x, 2, 1e-3); // a degree of longitude is half as long here
    EXPECT_NEAR(circle[48].x, circle[0].x, 1e-4);
}

/// The installed maps: whole, in the form they claim, and with nothing outside of the world.
TEST_F(BackgroundTest, InstalledMapsReadToTheirEnds) {
    for (const char *name :
         {"cont", "country", "coarse", "vyx", "states", "counties", "lakes", "provinces"}) {
        Stream stream = FILE_open(std::string(VYX_SOURCE_DIR "/data/") + name + ".map", "r");
        ASSERT_TRUE(stream) << name;
        MapReader reader(stream.get());
        std::vector<MapPoint> points;
        std::size_t records = 0;
        while (reader.next(points) == MapReader::Result::record) {
            ++records;
            EXPECT_GE(points.size(), 2U);
            for (const MapPoint &p : points) {
                ASSERT_LE(std::abs(p.lat), 90);
                ASSERT_LE(std::abs(p.lon), 180);
            }
        }
        EXPECT_GT(records, 100U) << name;
        EXPECT_EQ(std::ftell(stream.get()), FILE_size(std::string(VYX_SOURCE_DIR "/data/") + name + ".map"));
    }
}

} // namespace
