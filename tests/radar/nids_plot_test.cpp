/// What a frame of a Level III product draws: cells, rings, grid file, and pages that end anywhere.

#include <algorithm>
#include <cmath>
#include <map>

#include "graphics/kernel/helpers.h"
#include "lib/files/naming.h"
#include "plot/colour/levels.h"
#include "plot/drawing_fixture.h"
#include "plot/symbols/watch.h"
#include "radar/common/cells.h"
#include "radar/common/options.h"
#include "radar/nids/image.h"
#include "radar/nids/plot.h"
#include "radar/nids/product_reader.h"
#include "radar/nids/state.h"
#include "radar/nids/wedge.h"
#include "samples/level3_products.h"

namespace {

constexpr std::size_t kRunBoxes = 23;

class NidsPlot : public DrawingTest {
protected:
    void SetUp() override {
        FLAG_resetplot(1);
        FLAG_setplot(kPlotMap, 0);
    }
    void TearDown() override { NIDS_close_file(); }

    void open(const samples::Bytes &bytes) {
        const std::string name =
            files_.write("product", {reinterpret_cast<const char *>(bytes.data()), bytes.size()});
        ASSERT_EQ(NIDS_open_file(name), 1);
    }
    void open(const samples::Level3Product &product) { open(samples::level3_message(product)); }

    /// All outlines of the image in a plot domain, every value having a colour.
    static std::vector<CellCorners> cells(const PlotDomain &domain) {
        MAP_setup(domain);
        CONT_reset_fill_set();
        CONT_reset_values();
        CONT_set_fill_colors("-1000000:red", 1);
        std::vector<CellCorners> found;
        const CellSink sink{[](void *context, const CellCorners &corners, std::uint8_t) {
                                static_cast<std::vector<CellCorners> *>(context)->push_back(corners);
                            },
                            &found};
        NIDS_walk_image(NIDS_reader(), NIDS_get_info(), NIDS_state().options, &sink);
        EXPECT_EQ(NIDS_rewind_file(), 1);
        return found;
    }

    /// Where the current map has the radar.
    static Point radar() {
        Point place;
        MAP_tran(place.x, place.y, 38.7F, -90.7F);
        return place;
    }
    static samples::Level3Product product(int code) {
        samples::Level3Product p;
        p.code = code;
        p.time = samples::kFirstVolume;
        p.lat_millideg = 38700;
        p.lon_millideg = -90700;
        return p;
    }
    /// A square precipitation array of 23 boxes each way: level 160, which is 20 decibels, in its upper row.
    static samples::Level3Product precipitation() {
        samples::Level3Product p = product(81);
        p.thresholds[1] = 125;
        std::vector<std::vector<std::uint8_t>> rows(kRunBoxes, std::vector<std::uint8_t>(kRunBoxes, 255));
        rows[0].assign(kRunBoxes, 160);
        p.packets.push_back(samples::precipitation_packet(rows));
        return p;
    }
    static samples::Level3Product radials(std::size_t bins) {
        samples::Level3Product p = product(19);
        for (unsigned i = 0; i < p.thresholds.size(); ++i) p.thresholds[i] = 5 * i;
        samples::RadialData data{0, 1, {4, std::vector<std::uint8_t>(bins, 5)}};
        p.packets.push_back(samples::radial_packet(data));
        return p;
    }
};

TEST_F(NidsPlot, AScreenOfItsOwnStandsUpright) {
    open(samples::wind_profile(0));
    PlotDomain domain = NIDS_get_info().domain;
    MAP_setup(domain);
    forget();
    NIDS_plot_summary();
    std::map<int, float> height_of; // of the label of each altitude, thousands of feet
    float times = 0;
    for (const DrawnText &text : texts()) {
        if (text.text.size() == 2) height_of[std::stoi(text.text)] = text.place.y;
        if (text.text == "TIME") times = text.place.y;
    }
    ASSERT_EQ(height_of.size(), 15U);
    float before = times;
    for (const auto &[altitude, height] : height_of) {
        EXPECT_GT(height, before) << altitude;
        before = height;
    }
}

TEST_F(NidsPlot, ClutterLeavesTheFirstBinsEmpty) {
    open(radials(30));
    const PlotDomain domain = NIDS_get_info().domain;
    EXPECT_EQ(cells(domain).size(), 4U * 30);
    RES_put("plot_param", "clutter");
    NIDS_plot_param();
    const std::vector<CellCorners> left = cells(domain);
    ASSERT_EQ(left.size(), 4U * 5);
    // Due north; the plane is true to scale near the radar.
    EXPECT_NEAR(left[0][0].y - radar().y, 25 * domain.dx, 0.05F * domain.dx);
    EXPECT_NEAR(left[0][1].y - radar().y, 26 * domain.dx, 0.05F * domain.dx);
    RES_put("plot_param", "site, clutter=28.7"); // blanks around a word do not matter
    NIDS_plot_param();
    EXPECT_EQ(cells(domain).size(), 4U * 2) << "the integer part";
    RES_put("plot_param", "noclutter");
    NIDS_plot_param();
    EXPECT_EQ(cells(domain).size(), 4U * 30);
}

/// Neighbouring radials share their edge, the last and the first as well: no gap shows between them.
TEST_F(NidsPlot, RadialsLeaveNoGap) {
    samples::Level3Product p = product(19);
    for (unsigned i = 0; i < p.thresholds.size(); ++i) p.thresholds[i] = 5 * i;
    constexpr std::size_t kRadials = 360;
    p.packets.push_back(samples::radial_packet({0, 1, {kRadials, std::vector<std::uint8_t>(2, 5)}}));
    open(p);
    const std::vector<CellCorners> bins = cells(NIDS_get_info().domain);
    ASSERT_EQ(bins.size(), 2 * kRadials);
    const Point centre = radar();
    // Positive where b lies clockwise of a.
    const auto clockwise = [&](const Point &a, const Point &b) {
        return (a.y - centre.y) * (b.x - centre.x) - (a.x - centre.x) * (b.y - centre.y);
    };
    for (std::size_t i = 0; i < kRadials; ++i) {
        const CellCorners &bin = bins[2 * i + 1], &next = bins[2 * ((i + 1) % kRadials) + 1];
        EXPECT_GT(clockwise(bin[1], bin[2]), 0) << i;
        EXPECT_GE(clockwise(next[1], bin[2]), 0) << "beyond the next one's beginning, " << i;
        EXPECT_GT(clockwise(bin[2], next[2]), 0) << "and not over all of it, " << i;
    }
}

TEST_F(NidsPlot, RunsAreMergedInTheirOwnProjectionOnly) {
    open(precipitation());
    const PlotDomain own = NIDS_get_info().domain;
    const auto widths = [&] {
        std::vector<long> boxes;
        for (const CellCorners &c : cells(own)) boxes.push_back(std::lround((c[1].x - c[0].x) / own.dx));
        return boxes;
    };
    EXPECT_EQ(widths(), (std::vector<long>{10, 10, 3}));
    PlotDomain other = degrees(own.clat, own.clon, 40, 20);
    EXPECT_EQ(cells(other).size(), kRunBoxes);
}

TEST_F(NidsPlot, GridFileHoldsTheRasterInInches) {
    open(precipitation());
    RES_put("out_file", "text,vyx:@" + files_.at("grid"));
    cells(NIDS_get_info().domain);
    std::ifstream in(files_.at("grid"));
    std::string format, date, name, token, line;
    std::getline(in, format);
    std::getline(in, date);
    std::getline(in, name);
    EXPECT_EQ(format, "VYXGRID");
    EXPECT_EQ(date, "2200Z  4 JUL 03");
    EXPECT_EQ(name, "Digital precip array (in)");
    std::getline(in, line);
    EXPECT_EQ(line, "PS:-105.000000 38.700001 -90.699997 0.047596 0.047596 23 23");
    std::vector<std::string> values;
    while (std::getline(in, line)) values.push_back(line);
    ASSERT_EQ(values.size(), kRunBoxes * kRunBoxes);
    EXPECT_EQ(std::ranges::count(values, "1.000000"), 23);
    EXPECT_EQ(values[kRunBoxes - 1], "1.000000") << "rows from the top";
    EXPECT_EQ(values[kRunBoxes], "-9999.000000");
}

TEST_F(NidsPlot, WedgesFollowOneAnother) {
    open(radials(230));
    MAP_setup(NIDS_get_info().domain);
    CONT_reset_fill_set();
    CONT_set_fill_colors("0:off,10:red", 1);
    GPH_trans(kDataTransform);
    const Point foot = radar();
    std::array<Point, 5> wedge{};
    wedge.fill(foot);
    const std::array<float, 4> steps{0, 0.1F, 0.1F, 0};
    forget();
    EXPECT_EQ(NIDS_plot_WEDGE(wedge, steps, 3, 5), 0) << "level without colour";
    EXPECT_EQ(NIDS_plot_WEDGE(wedge, steps, 2, kMissingF), 0);
    EXPECT_TRUE(areas().empty());
    EXPECT_EQ(NIDS_plot_WEDGE(wedge, steps, 1, 15), 0);
    ASSERT_EQ(areas().size(), 1U);
    const Line drawn = areas()[0];
    ASSERT_EQ(drawn.size(), 5U);
    EXPECT_NEAR(drawn[0].y - foot.y, 0.5F, 1e-4F);
    EXPECT_NEAR(drawn[1].y - foot.y, 0.6F, 1e-4F);
    EXPECT_NEAR(drawn[2].x - foot.x, 0.6F, 1e-4F);
    EXPECT_NEAR(drawn[3].x - foot.x, 0.5F, 1e-4F);
    FLAG_setplot(kPlotSummary, 0);
    EXPECT_EQ(NIDS_plot_WEDGE(wedge, steps, 1, 15), -1);
    EXPECT_EQ(areas().size(), 1U);
}

TEST_F(NidsPlot, RingsStandAtTheirDistances) {
    open(radials(230));
    MAP_setup(NIDS_get_info().domain);
    RES_put("plot_param", "dist=30:60");
    NIDS_plot_param();
    forget();
    ASSERT_EQ(NIDS_plot_data(), 0);
    const std::vector<Line> rings = lines();
    ASSERT_EQ(rings.size(), 2U);
    for (std::size_t i = 0; i < rings.size(); ++i) {
        for (const Point &p : rings[i]) {
            float lat = 0, lon = 0;
            MAP_untran(lat, lon, p.x, p.y);
            const double cosine =
                std::sin(lat * kDegree) * std::sin(38.7 * kDegree) +
                std::cos(lat * kDegree) * std::cos(38.7 * kDegree) * std::cos((lon + 90.7) * kDegree);
            ASSERT_NEAR(std::acos(cosine) * kEarthRadius * 100, i == 0 ? 55.56 : 111.12, 0.5) << "km";
        }
    }
}

TEST_F(NidsPlot, WatchesAreReadBesideOtherVariables) {
    files_.write("watches/tornado", "WWUS20 KWNS 042200\nTORNADO WATCH NUMBER 552\n"
                                    "LAT...LON 39009100 39009000 38009000 38009100\n");
    const samples::Bytes bytes = samples::level3_message(radials(30));
    files_.write("product", {reinterpret_cast<const char *>(bytes.data()), bytes.size()});
    RES_put("watch_path", files_.at("watches"));
    RES_put("variable", "comp,watch");
    RES_put("device", "ps," + files_.at("other.ps"));
    EXPECT_EQ(FILE_set_name("@" + files_.at("product")), 1);
    (void)GPH_end(1); // a plot that begins opens its own page
    PlotDomain domain;
    NIDS_plot(domain);
    EXPECT_EQ(WATCH_boxes().size(), 1U);
}

/// A storm, its ring and its track at 180 nautical miles, on maps that are true to the radar's circles
/// nowhere.
TEST_F(NidsPlot, StormsAndRingsLieOnTheirEcho) {
    constexpr std::size_t echo_bin = 166; // of 1.08 nautical miles: 179.3 to 180.4
    samples::Level3Product p = product(20);
    for (unsigned i = 0; i < p.thresholds.size(); ++i) p.thresholds[i] = 5 * i;
    std::vector<std::uint8_t> bins(200, 0);
    bins[echo_bin] = 9;
    p.packets.push_back(samples::radial_packet({59.5, 1, {bins}}));
    p.pages.push_back(
        {samples::text_packet(1, 0, 1, " STM ID  AZ/RAN TVS  MDA  POSH/POH/MX SIZE VIL"),
         samples::text_packet(1, 0, 11,
                              "    M9   60/180 TVS     3   60/100/ 1.50    47  62  6.3  26.9  240/ 50  ")});
    RES_put("variable", "comp,track");
    RES_put("plot_param", "dist=180");
    open(p);
    NIDS_plot_param();
    const auto between = [](const Point &a, const Point &b) { return std::hypot(a.x - b.x, a.y - b.y); };
    for (const int proj : {kProjLatLon, kProjLambert, kProjOrtho, kProjMercator, kProjPolar}) {
        PlotDomain domain = degrees(38.7F, -90.7F, 12, 12);
        domain.proj = proj;
        SCOPED_TRACE(proj);
        const std::vector<CellCorners> beam = cells(domain);
        ASSERT_EQ(beam.size(), bins.size());
        const CellCorners &echo = beam[echo_bin];
        const Point middle{(echo[0].x + echo[2].x) / 2, (echo[0].y + echo[2].y) / 2};
        const float km = between(echo[0], echo[1]) / (1.08F * kKmPerNauticalMile); // plane units of one
        forget();
        ASSERT_EQ(NIDS_plot_data(), 0);
        const std::vector<Line> storms = drawn(ObjectType::polymarker);
        ASSERT_FALSE(storms.empty());
        for (const Line &marker : storms) EXPECT_LT(between(marker[0], middle), 0.5F * km);
        const std::vector<Line> all = lines();
        const auto ring = std::ranges::find(all, 49U, &Line::size);
        ASSERT_NE(ring, all.end());
        EXPECT_LT(between((*ring)[8], middle), 0.5F * km) << "towards 60 degrees";
        // Two hours at 50 knots, away from where the storm comes from.
        Point end;
        MAP_offset(end.x, end.y, middle.x, middle.y, 60, 100 * kKmPerNauticalMile);
        const auto tip = std::ranges::find_if(all, [&](const Line &line) {
            return line.size() == 2 && between(line[0], middle) < 0.5F * km && between(line[1], end) < km;
        });
        EXPECT_NE(tip, all.end());
        EXPECT_EQ(NIDS_rewind_file(), 1);
    }
}

/// A file cut anywhere, and one with any byte changed, is refused or drawn as far as it goes.
TEST_F(NidsPlot, PagesOfDamagedProductsAreDrawnAsFarAsTheyGo) {
    samples::Level3Product p = radials(12);
    p.pages.push_back(
        {samples::text_packet(1, 0, 1, " STM ID  AZ/RAN TVS  MDA  POSH/POH/MX SIZE VIL"),
         samples::text_packet(1, 0, 11,
                              "    M9   81/ 23 TVS     3   60/100/ 1.50    47  62  6.3  26.9  245/ 60  "),
         samples::vector_packet(0, {{0, 1, 500, 1}}), samples::wind_packet({{5, 100, 100, 240, 55}})});
    RES_put("variable", "comp,track,table,id,vil,mvmt");
    const samples::Bytes whole = samples::level3_message(p);
    open(whole);
    MAP_setup(NIDS_get_info().domain);
    const auto frame_of = [&](const samples::Bytes &bytes) {
        const std::string name =
            files_.write("product", {reinterpret_cast<const char *>(bytes.data()), bytes.size()});
        forget();
        return NIDS_open_file(name) == 1 && NIDS_plot_frame() == 0;
    };
    const auto shows = [&](std::string_view id) { return std::ranges::count(texts(), id, &DrawnText::text); };
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    ASSERT_TRUE(frame_of(whole));
    EXPECT_EQ(shows("M9"), 2) << "of the composite symbol and by itself";
    EXPECT_EQ(shows("245/60"), 1);
    std::size_t drawn = 0;
    for (std::size_t size = 0; size < whole.size(); ++size)
        drawn += frame_of({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)}) ? 1U : 0U;
    constexpr std::size_t headers = 120 + 10 + 6 + 14; // up to the first packet's
    EXPECT_EQ(drawn, whole.size() - headers) << "all that have a part of the image";
    for (std::size_t at = 120; at < whole.size(); ++at) {
        samples::Bytes changed = whole;
        for (const unsigned value : {0x00U, 0x7FU, 0xFFU}) {
            changed[at] = static_cast<std::byte>(value);
            EXPECT_TRUE(frame_of(changed)) << at;
        }
    }
    testing::internal::GetCapturedStderr();
    testing::internal::GetCapturedStdout();
}

} // namespace
