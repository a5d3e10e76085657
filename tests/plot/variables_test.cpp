#include "plot/symbols/variables.h"

#include <array>
#include <set>

#include "plot/drawing_fixture.h"
#include "plot/symbols/station.h"

namespace {

class VariablesTest : public DrawingTest {
protected:
    VariablesTest() {
        files_.write("a.var", "# comment\nvil 1 2 -3 yellow:w2\nbroken x\nid 99 0 0\nvil-2 3 0 0\n");
        gset_win(2, {0, 100, 0, 100});
        gsel_norm_tran(2);
        forget();
    }
};

TEST_F(VariablesTest, AreFoundByNameOrByItsFirstPart) {
    RES_put("variable", "vil-1,id, top ,vil-2,");
    ASSERT_EQ(VAR_setup("a.var"), 4);
    const auto &vars = VAR_get_vars();
    EXPECT_EQ(vars[0].name, "vil-1");
    EXPECT_EQ(vars[0].decimals, 1);
    EXPECT_EQ(vars[0].dy, -3);
    EXPECT_EQ(vars[0].attributes, "yellow:w2");
    EXPECT_EQ(vars[1].decimals, 6); // no more than a float holds
    EXPECT_EQ(VAR_get_name(2), "top");
    EXPECT_EQ(vars[2].attributes, "");
    EXPECT_EQ(vars[3].decimals, 3);
    EXPECT_EQ(VAR_has("vil"), 1);
    EXPECT_EQ(VAR_has("broken"), 0);
    testing::internal::CaptureStderr();
    EXPECT_EQ(VAR_setup("missing.var"), 4);
    EXPECT_TRUE(testing::internal::GetCapturedStderr().ends_with("missing.var: No such file or directory\n"));
    EXPECT_EQ(VAR_get_vars()[0].decimals, 0);
}

TEST_F(VariablesTest, StationDrawsTextOrValueAtItsOffset) {
    PlotVariable variable;
    variable.decimals = 1;
    variable.dx = 2;
    StationData data;
    EXPECT_EQ(RAW_plot_data(data, variable), -1);
    data.x = data.y = 50;
    EXPECT_EQ(RAW_plot_data(data, variable), -1);
    data.value = 12.34F;
    EXPECT_EQ(RAW_plot_data(data, variable), 0);
    data.value2 = 30;
    RAW_plot_init(2);
    EXPECT_EQ(RAW_plot_data(data, variable), 0);
    data.text = "TVS";
    EXPECT_EQ(RAW_plot_data(data, variable), 0);
    const auto drawn = texts();
    ASSERT_EQ(drawn.size(), 3U);
    EXPECT_EQ(drawn[0].text, "12.3");
    EXPECT_FLOAT_EQ(drawn[0].place.x, 54); // two heights of a fiftieth of the plot
    EXPECT_EQ(drawn[1].text, "12.3/30.0");
    EXPECT_FLOAT_EQ(drawn[1].place.x, 58);
    EXPECT_EQ(drawn[2].text, "TVS");
    variable.attributes = "off";
    EXPECT_EQ(RAW_plot_data(data, variable), -1);
    RAW_data_init_val(data);
    EXPECT_EQ(data.x, 50);
    EXPECT_EQ(data.value, kMissingF);
}

TEST_F(VariablesTest, MotionsAndMarkersStandAtTheirPlaces) {
    MAP_domain(nullptr); // the plane's own directions
    PlotVariable arrow;
    arrow.kind = VariableKind::vector;
    StationData data;
    data.x = data.y = 50;
    data.value = 270;
    data.value2 = 50;
    ASSERT_EQ(RAW_plot_data(data, arrow), 0);
    ASSERT_FALSE(lines().empty());
    EXPECT_EQ(lines().front().front(), (Point{50, 50}));
    EXPECT_NEAR(lines().front().back().x, 60, 1e-3); // from the west, two twentieths of the plot
    EXPECT_NEAR(lines().front().back().y, 50, 1e-3);
    data.value2 = kMissingF;
    ASSERT_EQ(RAW_plot_data(data, arrow), 0); // a direction alone is a number
    EXPECT_EQ(texts().back().text, "270");
    PlotVariable marked;
    marked.dx = 4;
    data.marker = "*";
    ASSERT_EQ(RAW_plot_data(data, marked), 0);
    ASSERT_EQ(drawn(ObjectType::polymarker).size(), 1U);
    EXPECT_EQ(drawn(ObjectType::polymarker).front().front(), (Point{50, 50}));
    data.marker = "T";
    ASSERT_EQ(RAW_plot_data(data, marked), 0);
    EXPECT_EQ(texts().back().text, "T");
    EXPECT_EQ(texts().back().place, (Point{50, 50}));
}

TEST_F(VariablesTest, StationsComeByPriorityAndDoNotCoverEachOther) {
    RES_put("variable", "one,two");
    ASSERT_EQ(VAR_setup("a.var"), 2);
    const auto station = [](float x, int priority, const char *text) {
        StationPlot plot{priority, {}};
        for (std::size_t variable : {0U, 1U}) {
            StationData data;
            data.x = x;
            data.y = 50 + 3 * static_cast<float>(variable);
            data.text = text;
            plot.items.push_back({data, variable});
        }
        return plot;
    };
    const std::array stations{station(50, 2, "low"), station(50, 1, "high"), station(20, 2, "far"),
                              station(20, 2, "late")};
    EXPECT_EQ(RAW_plot_stations(stations), 2);
    const auto shown = texts();
    ASSERT_EQ(shown.size(), 4U);
    EXPECT_EQ(shown[0].text, "high");
    EXPECT_EQ(shown[1].text, "high"); // both of its variables
    EXPECT_EQ(shown[2].text, "far");
}

TEST_F(VariablesTest, FilesMayTellMoreThanHowToDraw) {
    files_.write("m.var", "a 1 0 0\nb 0 1 1 - 7 vector mdr:rcm Motion of b\nc 0 0 0 red 8 text rcm C\n"
                          "d 0 0 0 red x\ne 0 0 0 red 9 nokind - E\nf 0 0 0 - 10 none - F\n");
    const std::string told = errors_of([] { EXPECT_EQ(VAR_open_file("m.var"), 1); });
    EXPECT_NE(told.find("\"d 0 0 0 red x\" describes no variable"), std::string::npos) << told;
    EXPECT_NE(told.find("nokind"), std::string::npos);
    VAR_set_model_str("mdr");
    EXPECT_EQ(VAR_read_menu(), 2); // b and f
    VAR_set_model_str("rcm");
    EXPECT_EQ(VAR_read_menu(), 3);
    EXPECT_EQ(VAR_setup(std::vector<std::string>{"b-2", "f", "a"}), 3);
    EXPECT_EQ(VAR_get(0).code, 7);
    EXPECT_EQ(VAR_get(0).attributes, "");
    EXPECT_EQ(VAR_make_var_form_datatype(VAR_get(0)), "Motion of b");
    EXPECT_TRUE(VAR_is_type_PLOT(VAR_get(0)) && VAR_is_LABEL(VAR_get(0)));
    EXPECT_FALSE(VAR_is_type_PLOT(VAR_get(1)) || VAR_is_LABEL(VAR_get(2)));
    EXPECT_EQ(VAR_open_file("none.var"), 0);
}

TEST_F(VariablesTest, InstalledFileDescribesEveryStormAttribute) {
    RES_put("file_path", VYX_SOURCE_DIR "/data");
    RES_put("variable", "hsize,tvs,mvmt");
    ASSERT_EQ(VAR_setup("nids.var"), 3);
    EXPECT_EQ(VAR_get_vars()[0].decimals, 2);
    EXPECT_EQ(VAR_get_vars()[1].attributes, "red");
}

} // namespace
