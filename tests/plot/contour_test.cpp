// Fields on grids: bands and lines against an oracle of their own, and what is drawn of them on maps.

#include "plot/contour/contour.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <optional>
#include <random>

#include "plot/colour/level_choice.h"
#include "plot/colour/levels.h"
#include "plot/contour/bands.h"
#include "plot/contour/trace.h"
#include "plot/drawing_fixture.h"
#include "plot/inked_areas.h"

namespace {

struct Outline {
    int band;
    std::vector<GridPoint> points;
};

struct Keeper : BandSink {
    std::vector<Outline> outlines;
    bool wants(int /*i*/, int /*j*/) override { return true; }
    void take(int band, std::span<const GridPoint> outline) override {
        outlines.push_back({band, {outline.begin(), outline.end()}});
    }
};

double area(const Outline &outline) {
    double twice = 0;
    for (std::size_t k = 0; k < outline.points.size(); ++k) {
        const GridPoint &a = outline.points[k], &b = outline.points[(k + 1) % outline.points.size()];
        twice += static_cast<double>(a.i) * static_cast<double>(b.j) -
                 static_cast<double>(b.i) * static_cast<double>(a.j);
    }
    return std::abs(twice) / 2;
}

bool contains(const std::vector<GridPoint> &points, const GridPoint &p) {
    return outline_contains(
        points, p.i, p.j, [](const GridPoint &q) { return q.i; }, [](const GridPoint &q) { return q.j; });
}

class RandomField {
public:
    RandomField(unsigned seed, int columns, int rows, bool plateaus, double holes)
        : columns_(columns), rows_(rows) {
        std::mt19937 random(seed);
        std::uniform_real_distribution<float> value(-1, 7);
        std::bernoulli_distribution hole(holes);
        for (int k = 0; k < columns * rows; ++k) {
            const float v = value(random);
            values_.push_back(hole(random) ? (k % 2 == 0 ? kMissingF : NAN) : plateaus ? std::floor(v) : v);
        }
    }
    [[nodiscard]] Field field() const { return {values_, columns_, rows_}; }
    [[nodiscard]] const std::vector<float> &values() const { return values_; }

private:
    int columns_, rows_;
    std::vector<float> values_;
};

/// Which side of the threshold a point of the unit cell lies on, by half planes: the straight cut of a cell,
/// or the two cut corners of a saddle. Nothing near the cut.
std::optional<bool> is_above(const std::array<float, 4> &v, float threshold, float x, float y) {
    constexpr std::array<std::array<float, 2>, 4> corner{{{0, 0}, {1, 0}, {1, 1}, {0, 1}}};
    std::vector<std::array<float, 2>> cuts;
    int above = 0;
    for (std::size_t k = 0; k < 4; ++k) {
        const std::size_t n = (k + 1) % 4;
        above += v[k] >= threshold ? 1 : 0;
        if ((v[k] >= threshold) == (v[n] >= threshold)) continue;
        const float t = (threshold - v[k]) / (v[n] - v[k]);
        cuts.push_back({corner[k][0] + t * (corner[n][0] - corner[k][0]),
                        corner[k][1] + t * (corner[n][1] - corner[k][1])});
    }
    if (above == 0 || above == 4) return above == 4;
    const auto side = [&](const auto &a, const auto &b, float px, float py) {
        return (b[0] - a[0]) * (py - a[1]) - (b[1] - a[1]) * (px - a[0]);
    };
    constexpr float kNear = 1e-3F;
    const bool twisted =
        std::min(v[0], v[2]) > std::max(v[1], v[3]) || std::min(v[1], v[3]) > std::max(v[0], v[2]);
    if (!twisted) {
        const float mine = side(cuts[0], cuts[1], x, y);
        if (std::abs(mine) < kNear) return std::nullopt;
        for (std::size_t k = 0; k < 4; ++k) {
            const float other = side(cuts[0], cuts[1], corner[k][0], corner[k][1]);
            if (std::abs(other) > kNear) return (v[k] >= threshold) == ((other > 0) == (mine > 0));
        }
        return std::nullopt;
    }
    // Each quarter between a side and the middle is linear.
    const float middle = (v[0] + v[1] + v[2] + v[3]) / 4;
    const bool right = x - y > 0, upper = x + y < 1;
    const std::size_t k = right ? (upper ? 0 : 1) : (upper ? 3 : 2);
    const std::size_t n = (k + 1) % 4;
    const float along = k == 0 ? x : k == 1 ? y : k == 2 ? 1 - x : 1 - y;
    const float depth = k == 0 ? y : k == 1 ? 1 - x : k == 2 ? 1 - y : x;
    const float value = v[k] + along * (v[n] - v[k]) + depth * (2 * middle - v[k] - v[n]);
    if (std::abs(value - threshold) < kNear) return std::nullopt;
    return value >= threshold;
}

constexpr std::array kThresholds{0.0F, 1.0F, 2.5F, 4.0F, 5.0F};

/// The band of a point of the grid; nothing in a hole or near a line.
std::optional<int> band_at(const Field &field, const GridPoint &p) {
    const auto i = static_cast<int>(p.i), j = static_cast<int>(p.j);
    const std::array v{field.at(i, j), field.at(i + 1, j), field.at(i + 1, j + 1), field.at(i, j + 1)};
    if (!std::ranges::all_of(v, Field::is_given)) return std::nullopt;
    int band = 0;
    for (const float threshold : kThresholds) {
        const auto above = is_above(v, threshold, p.i - static_cast<float>(i), p.j - static_cast<float>(j));
        if (!above) return std::nullopt;
        band += *above ? 1 : 0;
    }
    return band;
}

TEST(ContourBands, EveryPointOfEveryCellLiesInTheBandOfItsValue) {
    constexpr int kColumns = 13, kRows = 11;
    int compared = 0;
    for (unsigned seed = 0; seed < 40; ++seed) {
        const RandomField random(seed, kColumns, kRows, seed % 2 == 0, seed % 3 == 0 ? 0.08 : 0);
        const Field field = random.field();
        Keeper kept;
        CONT_walk_bands(field, kThresholds, std::vector<bool>(kThresholds.size() + 1, true), kept);
        double covered = 0, cells = 0;
        for (const Outline &outline : kept.outlines) covered += area(outline);
        for (int j = 0; j + 1 < kRows; ++j)
            for (int i = 0; i + 1 < kColumns; ++i) {
                const auto cell = cell_of(field, i, j);
                cells += std::ranges::all_of(cell.value, Field::is_given) ? 1 : 0;
            }
        EXPECT_NEAR(covered, cells, 1e-3) << seed;
        std::mt19937 places(seed + 1000);
        std::uniform_real_distribution<float> x(0, kColumns - 1.001F), y(0, kRows - 1.001F);
        for (int n = 0; n < 300; ++n) {
            const GridPoint p{x(places), y(places)};
            const auto band = band_at(field, p);
            if (!band) continue;
            int over = 0;
            for (const Outline &outline : kept.outlines) {
                if (!contains(outline.points, p)) continue;
                ++over;
                EXPECT_EQ(outline.band, *band) << seed << ": " << p.i << ", " << p.j;
            }
            EXPECT_EQ(over, 1) << seed << ": " << p.i << ", " << p.j;
            ++compared;
        }
    }
    EXPECT_GT(compared, 8000);
}

TEST(ContourLines, RunOnTheirLevelFromEdgeToEdgeAndAlongTheBands) {
    constexpr int kColumns = 14, kRows = 12;
    for (unsigned seed = 0; seed < 30; ++seed) {
        const RandomField random(seed, kColumns, kRows, seed % 2 == 0, seed % 3 == 0 ? 0.06 : 0);
        const Field field = random.field();
        Keeper kept;
        CONT_walk_bands(field, kThresholds, std::vector<bool>(kThresholds.size() + 1, true), kept);
        std::map<std::pair<float, float>, int> corners;
        for (const Outline &outline : kept.outlines)
            for (const GridPoint &p : outline.points) ++corners[{p.i, p.j}];
        const auto cell_is_whole = [&](int i, int j) {
            if (i < 0 || j < 0 || i + 1 >= kColumns || j + 1 >= kRows) return false;
            return std::ranges::all_of(cell_of(field, i, j).value, Field::is_given);
        };
        for (const float threshold : kThresholds)
            for (const ContourLine &line : CONT_trace_lines(field, threshold)) {
                ASSERT_GE(line.points.size(), 2U);
                for (const GridPoint &p : line.points)
                    EXPECT_TRUE(corners.contains({p.i, p.j})) << seed << ": " << p.i << ", " << p.j;
                if (line.closed) continue;
                // An open end lies on a side that has a whole cell on one side only.
                for (const GridPoint &end : {line.points.front(), line.points.back()}) {
                    const auto i = static_cast<int>(end.i), j = static_cast<int>(end.j);
                    const bool on_row = end.j == static_cast<float>(j) && end.i != static_cast<float>(i);
                    const bool corner = end.j == static_cast<float>(j) && end.i == static_cast<float>(i);
                    const bool both = on_row ? cell_is_whole(i, j) && cell_is_whole(i, j - 1)
                                             : cell_is_whole(i, j) && cell_is_whole(i - 1, j);
                    EXPECT_TRUE(corner || !both) << seed << ": " << end.i << ", " << end.j;
                }
            }
    }
}

class ContourTest : public DrawingTest {
protected:
    ContourTest() {
        RES_put("color_fill", "");
        RES_put("plot_param", "");
        RES_put("con_interval", "");
        // Opened anew, with a font.
        (void)gclose_ws(1);
        gclose_gks();
        RES_put("file_path", VYX_SOURCE_DIR "/data");
        (void)gopen_gks("", 0);
        (void)gopen_ws(1, files_.at("second.ps"), DeviceKind::ps);
        CONT_init();
        levels();
    }
    static void levels() {
        static constexpr std::array<float, 5> values = kThresholds;
        CONT_choose_levels({.colors = "red,yellow,blue,magenta,white", .values = values});
    }
    static void set_map(const PlotDomain &domain) { MAP_setup(domain); }
    /// A smooth field whose lines are long.
    static std::vector<float> hills(int columns, int rows) {
        std::vector<float> values;
        for (int j = 0; j < rows; ++j)
            for (int i = 0; i < columns; ++i)
                values.push_back(
                    static_cast<float>(2.5 + 2.9 * std::sin(i * 0.35) * std::cos(j * 0.3 + i * 0.05)));
        return values;
    }
};

TEST_F(ContourTest, BandsLieAtTheirPlacesInEveryProjection) {
    constexpr int kColumns = 24, kRows = 18;
    const RandomField random(7, kColumns, kRows, false, 0.05);
    const PlotDomain grid = polar(40, -100, kColumns, kRows, 0.5F);
    PlotDomain lambert = polar(40, -97, 40, 30, 0.4F), mercator = degrees(40, -97, 40, 30);
    lambert.proj = kProjLambert;
    lambert.plat = 30;
    lambert.p3 = 60;
    lambert.plon = -90;
    mercator.proj = kProjMercator;
    for (const PlotDomain &map :
         {polar(41, -99, 30, 24, 0.5F), lambert, degrees(40, -99, 24, 14), mercator}) {
        set_map(map);
        forget();
        ASSERT_EQ(CONT_draw_contour(random.values(), grid), 0);
        const std::vector<InkedArea> areas = inked_areas();
        std::mt19937 places(3);
        std::uniform_real_distribution<float> x(0, kColumns - 1.001F), y(0, kRows - 1.001F);
        const Rect window = MAP_get_limits();
        int compared = 0;
        for (int n = 0; n < 400; ++n) {
            const GridPoint p{x(places), y(places)};
            // Edges are straight on the plot: what lies within a hundredth of a cell of a line may differ.
            const auto band = band_at(random.field(), p);
            const auto sure = [&](float di, float dj) {
                const GridPoint q{p.i + di, p.j + dj};
                return q.i > 0 && q.j > 0 && q.i < kColumns - 1.001F && q.j < kRows - 1.001F &&
                       band_at(random.field(), q) == band;
            };
            constexpr float d = 0.03F;
            if (!band || !sure(d, 0) || !sure(-d, 0) || !sure(0, d) || !sure(0, -d)) continue;
            float gx = 0, gy = 0, px = 0, py = 0;
            {
                const MapDomainScope scope(grid);
                MAP_grid_tran(gx, gy, p.i, p.j);
            }
            MAP_domain_tran(grid, map, px, py, gx, gy);
            if (px < window.xmin || px > window.xmax || py < window.ymin || py > window.ymax) continue;
            Attribute expected;
            CONT_get_fill_attrib_ind(*band - 1, expected);
            const int seen = color_seen(areas, px, py);
            EXPECT_EQ(seen, *band == 0 ? -1 : expected.color) << map.proj << ": " << p.i << ", " << p.j;
            ++compared;
        }
        EXPECT_GT(compared, 60) << map.proj;
    }
}

TEST_F(ContourTest, CutOffsBoundBands) {
    const PlotDomain grid = polar(40, -100, 4, 4, 0.5F);
    set_map(grid);
    RES_put("plot_param", "conmin=1,conmax=4");
    CONT_init();
    levels();
    for (const auto &[value, drawn] : {std::pair{0.5F, false}, {1.0F, true}, {4.0F, true}, {4.5F, false}}) {
        forget();
        ASSERT_EQ(CONT_draw_contour(std::vector<float>(16, value), grid), 0);
        EXPECT_EQ(areas().empty(), !drawn) << value;
    }
}

TEST_F(ContourTest, LabelsOfLinesAndValuesCanBeRead) {
    const PlotDomain grid = polar(40, -100, 40, 30, 0.5F);
    set_map(polar(40, -100, 40, 30, 0.5F));
    const std::vector<float> field = hills(40, 30);
    const Rect window = MAP_get_limits();
    const auto count = [&](const char *words, int type) {
        RES_put("plot_param", words);
        CONT_init();
        levels();
        CONT_set_type(type);
        forget();
        EXPECT_EQ(CONT_draw_contour(field, grid), 0);
        for (const DrawnText &text : texts()) {
            EXPECT_GT(text.place.x, window.xmin);
            EXPECT_LT(text.place.x, window.xmax);
            for (const DrawnText &other : texts())
                if (&text != &other && (text.place.x != other.place.x || text.place.y != other.place.y)) {
                    EXPECT_GT(std::hypot(text.place.x - other.place.x, text.place.y - other.place.y),
                              0.013F * window.height());
                }
        }
        return texts().size();
    };
    const std::size_t usual = count("", kContourLines);
    EXPECT_GT(usual, 3U);
    EXPECT_TRUE(areas().empty());
    EXPECT_GT(count("lab=1:1:15", kContourLines), usual);
    EXPECT_EQ(count("lab=0:1", kContourLines), 0U);
    EXPECT_GT(count("lab=12,rlab", kContourFillLines), 0U);
    EXPECT_FALSE(areas().empty());
    EXPECT_GT(count("", kContourValues), 20U);
    EXPECT_LT(texts().size(), field.size());
    const std::size_t lines_before = lines().size();
    count("grid,lab=0:0", kContourFill);
    EXPECT_GE(lines().size(), lines_before + 40 * 30); // two strokes a cross
    EXPECT_FALSE(CONT_get_line_look().over_map);
    count("mapcon", kContourFill);
    EXPECT_TRUE(CONT_get_line_look().over_map);
}

TEST_F(ContourTest, WhatCannotBeDrawnIsTold) {
    PlotDomain grid = polar(40, -100, 4, 4, 0.5F);
    set_map(grid);
    std::vector<float> field(16, 3);
    const auto told = [&](const char *why) {
        int result = 0;
        const std::string text = errors_of([&] { result = CONT_draw_contour(field, grid); });
        EXPECT_EQ(result, -1);
        EXPECT_NE(text.find(why), std::string::npos) << text;
    };
    field.pop_back();
    told("does not fit its grid");
    for (const int side : {0, -3, 1 << 20}) {
        grid.nx = side;
        told("does not fit its grid");
    }
    grid.nx = 4;
    field.assign(16, INFINITY);
    EXPECT_EQ(CONT_draw_contour(field, grid), 0);
    EXPECT_TRUE(areas().empty());
    field.assign(16, 0);
    field.back() = 1e30F;
    CONT_choose_levels({.colors = "red,blue", .values = {}, .interval = 1, .range_max = 6});
    told("more levels");
    CONT_set_intrvl(0);
    told("no levels");
    grid.nx = 1;
    grid.ny = 16;
    CONT_set_intrvl(1e30F);
    EXPECT_EQ(CONT_draw_contour(field, grid), 0); // one column has no cells
}

} // namespace
