// What a frame of a Level II volume draws: choice of cut and moment, cells, labels.

#include <algorithm>
#include <cmath>

#include "lib/report/message.h"
#include "plot/colour/levels.h"
#include "plot/drawing_fixture.h"
#include "plot/session/labels.h"
#include "radar/lev2/plot.h"
#include "radar/lev2/reader.h"
#include "radar/lev2/volume_reader.h"
#include "samples/level2.h"

namespace {

constexpr float kLat = 38.7F, kLon = -90.7F;

TEST(Lev2Choices, WordsOfTheVariable) {
    const struct {
        const char *word;
        Lev2Type type;
        int number;
        float angle;
    } cases[]{{"ref2", kLev2Reflectivity, 2, kMissingF}, {"VEL1", kLev2Velocity, 1, kMissingF},
              {"spect11", kLev2Width, 11, kMissingF},    {"ref", kLev2Reflectivity, 1, kMissingF},
              {"zdr3", kLev2Zdr, 3, kMissingF},          {"phi@1.5", kLev2Phi, 1, 1.5F},
              {"rho@-0.2", kLev2Rho, 1, -0.2F},          {"cfp@x", kLev2Cfp, 1, kMissingF}};
    for (const auto &c : cases) {
        Lev2Choice choice;
        ASSERT_TRUE(LEV2_decode_choice(c.word, choice)) << c.word;
        EXPECT_EQ(choice.type, c.type) << c.word;
        EXPECT_EQ(choice.number, c.number) << c.word;
        EXPECT_EQ(choice.angle, c.angle) << c.word;
    }
    Lev2Choice kept{kLev2Rho, 7, 0};
    EXPECT_FALSE(LEV2_decode_choice("list", kept));
    EXPECT_EQ(kept.number, 7);
}

TEST(Lev2Choices, TheNearestCutThatHasTheMoment) {
    std::vector<Lev2Cut> cuts(5);
    const std::array<float, 5> angles{0.51F, 0.48F, 0.9F, 1.3F, 0.5F};
    for (std::size_t i = 0; i < cuts.size(); ++i) {
        cuts[i].number = static_cast<int>(i) + 1;
        cuts[i].elevation = angles[i];
        cuts[i].moments[kLev2Reflectivity].gates = 100;
        cuts[i].moments[kLev2Velocity].gates = i == 1 || i == 3 ? 100 : 0;
    }
    const auto nearest = [&](Lev2Type type, float angle) { return LEV2_nearest_cut(cuts, {type, 1, angle}); };
    EXPECT_EQ(nearest(kLev2Reflectivity, 0.5F), 1) << "cuts of one angle: the first";
    EXPECT_EQ(nearest(kLev2Reflectivity, 1.0F), 3);
    EXPECT_EQ(nearest(kLev2Velocity, 0.5F), 2);
    EXPECT_EQ(nearest(kLev2Velocity, 20.0F), 4);
    EXPECT_EQ(nearest(kLev2Rho, 0.5F), std::nullopt);
}

struct SeenCell {
    float low_deg, high_deg, near_km, far_km; ///< azimuths and ranges around the radar
    int level;
};

class Lev2Plot : public DrawingTest {
protected:
    void SetUp() override {
        FLAG_resetplot(1);
        FLAG_setplot(kPlotMap, 0);
        MESS_set(0, kError | kWarn);
        LEV2_state() = Lev2PlotState{};
        volume_.id = "    ";
        volume_.lat = kLat;
        volume_.lon = kLon;
        volume_.time = 1057356000;
    }
    void TearDown() override {
        LEV2_close_file();
        RES_put("variable", "");
        RES_put("plot_param", "");
        FLAG_set_batch(0);
    }

    samples::Level2Radial &add(int cut, double azimuth, std::vector<samples::Level2Moment> moments) {
        samples::Level2Radial radial;
        radial.azimuth = azimuth;
        radial.elevation_number = cut;
        radial.elevation = 0.5 * cut;
        radial.moments = std::move(moments);
        return volume_.radials.emplace_back(std::move(radial));
    }
    static samples::Level2Moment gates(const char *name, std::vector<unsigned> levels, float offset = 66) {
        samples::Level2Moment m;
        m.name = name;
        m.levels = std::move(levels);
        m.offset = offset;
        return m;
    }
    void open(samples::Level2Form form = samples::Level2Form::generic) {
        const samples::Bytes bytes = samples::level2_file(volume_, form);
        const std::string name =
            files_.write("volume", {reinterpret_cast<const char *>(bytes.data()), bytes.size()});
        ASSERT_TRUE(LEV2_open_volume(name));
        MAP_setup(LEV2_state().domain);
    }
    /// Cells of a sweep, every value having a colour.
    std::vector<SeenCell> cells(const Lev2Choice &choice) {
        CONT_reset_fill_set();
        CONT_reset_values();
        CONT_set_fill_colors("-1000000:red", 1);
        std::vector<SeenCell> found;
        const CellSink sink{[](void *context, const CellCorners &c, std::uint8_t level) {
                                static_cast<std::vector<SeenCell> *>(context)->push_back(seen(c, level));
                            },
                            &found};
        sweep_ = LEV2_draw_sweep(LEV2_reader(), LEV2_state(), choice, &sink);
        return found;
    }
    static SeenCell seen(const CellCorners &c, int level) {
        Point radar;
        MAP_tran(radar.x, radar.y, kLat, kLon);
        const float km = 100.0F / MAP_factor(kLat);
        const auto azimuth = [&](const Point &p) {
            return static_cast<float>(std::atan2(p.x - radar.x, p.y - radar.y) / kDegree);
        };
        const auto range = [&](const Point &p) { return std::hypot(p.x - radar.x, p.y - radar.y) * km; };
        return {azimuth(c[1]), azimuth(c[2]), range(c[0]), range(c[1]), level};
    }
    /// Runs the summary with a variable and gives the label below right.
    std::string label(const char *variable) {
        RES_put("variable", variable);
        open();
        LEV2_plot_summary();
        return PLT_get_label(5, 0);
    }

    samples::Level2Volume volume_;
    Lev2Sweep sweep_;
};

TEST_F(Lev2Plot, ACutWithoutItsEndIsToldOrRefused) {
    for (int cut = 1; cut <= 2; ++cut)
        for (int i = 0; i < 3; ++i) add(cut, 90.0 * i, {gates("REF", {66, 80, 90})});
    volume_.radials.back().status = 0;
    open();
    cells({kLev2Reflectivity, 1});
    EXPECT_TRUE(sweep_.whole) << "another cut follows";
    ASSERT_EQ(LEV2_rewind_file(), 1);
    cells({kLev2Reflectivity, 2});
    EXPECT_FALSE(sweep_.whole);

    const std::string name = files_.at("volume");
    RES_put("plot_param", "strict");
    LEV2_plot_param();
    testing::internal::CaptureStderr();
    for (const auto &[variable, opened] :
         {std::pair{"ref1", true}, {"ref2", false}, {"vel1", false}, {"list", true}}) {
        RES_put("variable", variable);
        EXPECT_EQ(LEV2_open_volume(name), opened) << variable;
    }
    EXPECT_NE(testing::internal::GetCapturedStderr().find("LEV2_open_file: Incomplete volume:" + name),
              std::string::npos);
    RES_put("variable", "ref1");
    ASSERT_TRUE(LEV2_open_volume(name));
    EXPECT_EQ(cells({kLev2Reflectivity, 1}).size(), 9U) << "looking for the end leaves nothing out";
}

TEST_F(Lev2Plot, DomainOfARadar) {
    PlotDomain domain;
    EXPECT_EQ(LEV2_get_domain(domain, kLat, kLon, 230), 1);
    EXPECT_EQ(domain.nx, 691);
    EXPECT_EQ(domain.ny, 461);
    EXPECT_EQ(domain.proj, kProjPolar);
    EXPECT_EQ(domain.plat, kLat);
    EXPECT_EQ(domain.clon, kLon);
    EXPECT_EQ(domain.dx, domain.dy);
    EXPECT_NEAR(domain.dx, 0.0100008 * 1.866 / (1 + std::sin(kLat * kDegree)), 0.00001);
}

TEST_F(Lev2Plot, WhereTheGatesOfARadialStand) {
    add(1, 45, {gates("REF", {0, 10, 20, 30})}).half_degree = true;
    add(2, 90, {gates("REF", {99, 99})});
    open();
    const std::vector<SeenCell> found = cells({kLev2Reflectivity, 1, kMissingF});
    ASSERT_EQ(found.size(), 4U) << "the other cut is left out";
    EXPECT_EQ(found[3].level, 30);
    EXPECT_NEAR(found[3].near_km, 2.125F + 0.75F, 0.01F);
    EXPECT_NEAR(found[3].far_km, 2.125F + 1.0F, 0.01F);
    EXPECT_NEAR(found[3].low_deg, 44.5F, 0.02F);
    EXPECT_NEAR(found[3].high_deg, 45.51F, 0.02F);
    EXPECT_EQ(sweep_.largest, -18.0F);
    EXPECT_EQ(sweep_.smallest, -28.0F);
    RES_put("plot_param", "superres,clutter=2.9");
    LEV2_plot_param();
    open();
    const std::vector<SeenCell> fine = cells({kLev2Reflectivity, 1, kMissingF});
    ASSERT_EQ(fine.size(), 4U) << "2 km of clutter: below the first gate";
    EXPECT_NEAR(fine[3].low_deg, 44.75F, 0.02F);
    EXPECT_NEAR(fine[3].high_deg, 45.26F, 0.02F);
}

TEST_F(Lev2Plot, GatesNotBehindTheRadarNorWithinTheClutter) {
    for (const bool reflectivity : {false, true}) {
        volume_.radials.clear();
        auto &moments = add(1, 30, {gates("VEL", std::vector<unsigned>(20, 150), 129)}).moments;
        moments[0].first_m = -375;
        if (reflectivity) {
            moments.push_back(gates("REF", {70}));
            moments[1].first_m = 1000;
        }
        RES_put("plot_param", "clutter=3");
        LEV2_plot_param();
        open();
        const std::vector<SeenCell> found = cells({kLev2Velocity, 1, kMissingF});
        // The gates begin where those of the reflectivity do, when there is one.
        ASSERT_EQ(found.size(), reflectivity ? 12U : 6U);
        EXPECT_NEAR(found[0].near_km, reflectivity ? 3.0F : 3.125F, 0.01F);
        RES_put("plot_param", "noclutter");
        LEV2_plot_param();
        open();
        EXPECT_EQ(cells({kLev2Velocity, 1, kMissingF}).size(), reflectivity ? 20U : 18U);
    }
}

TEST_F(Lev2Plot, LabelsOfSweeps) {
    volume_.pattern = 32;
    add(1, 10, {gates("REF", {0, 1, 80, 166})});
    add(2, 20, {gates("REF", {90}), gates("VEL", {0, 1, 79, 189}, 129)});
    EXPECT_EQ(label("ref1"), "Md=cl Sc=1 El=0.5 Mx=50");
    EXPECT_EQ(PLT_get_label(0, 0), "Reflectivity (Dbz)");
    for (const int pattern : {31, 35}) {
        volume_.pattern = pattern;
        EXPECT_EQ(label("ref1"), "Md=cl Sc=1 El=0.5 Mx=50") << pattern;
    }
    for (const int pattern : {12, 21, 121, 215}) {
        volume_.pattern = pattern;
        EXPECT_EQ(label("ref1"), "Md=pr Sc=1 El=0.5 Mx=50") << pattern;
    }
    volume_.pattern = 212;
    EXPECT_EQ(label("vel2"), "Md=pr Sc=2 El=1.0 Rng=-25,30");
    EXPECT_EQ(label("vel@0.1"), "Md=pr Sc=2 El=1.0 Rng=-25,30");
    MESS_set(0, 0);
    EXPECT_EQ(label("vel1"), "Md=pr Sc=1 El=0.0 Rng=100,-100");
    MESS_set(0, kWarn);
    testing::internal::CaptureStderr();
    label("rho2");
    EXPECT_NE(testing::internal::GetCapturedStderr().find("LEV2_plot: elevation 2 has no rho"),
              std::string::npos);
}

TEST_F(Lev2Plot, WordLevelsGetTheirColours) {
    samples::Level2Moment zdr = gates("ZDR", {0, 1, 418, 500, 700, 5000}, 418);
    zdr.word_bits = 16;
    zdr.scale = 32; // 0, 2.6, 8.8 and 143 dB
    add(1, 10, {zdr});
    RES_put("color_fill", "-50:off,0:red,2:yellow,5:blue");
    RES_put("variable", "zdr1");
    open();
    forget();
    LEV2_plot_summary();
    EXPECT_EQ(areas().size(), 4U);
    EXPECT_EQ(PLT_get_label(5, 0), "Md=pr Sc=1 El=0.5 Rng=0.0,143.2");
    RES_put("color_fill", "-50:off,2:yellow,5:blue");
    open();
    forget();
    LEV2_plot_summary();
    EXPECT_EQ(areas().size(), 3U);
    RES_put("color_fill", "");
}

TEST_F(Lev2Plot, InBatchModeReadingStopsBehindTheCut) {
    for (int i = 0; i < 3; ++i) add(1, 10 * i, {gates("REF", {80})});
    volume_.radials.back().status = kLev2EndOfElevation;
    add(2, 50, {gates("REF", {80})});
    open();
    FLAG_set_batch(1);
    EXPECT_EQ(cells({kLev2Reflectivity, 1, kMissingF}).size(), 3U);
    Lev2Radial radial;
    ASSERT_EQ(LEV2_get_block(radial), 1);
    EXPECT_EQ(radial.elevation_number, 1);
    EXPECT_EQ(radial.status, kLev2EndOfElevation);
}

} // namespace
