#include "plot/symbols/variables.h"

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

TEST_F(VariablesTest, InstalledFileDescribesEveryStormAttribute) {
    RES_put("file_path", VYX_SOURCE_DIR "/data");
    RES_put("variable", "hsize,tvs,mvmt");
    ASSERT_EQ(VAR_setup("nids.var"), 3);
    EXPECT_EQ(VAR_get_vars()[0].decimals, 2);
    EXPECT_EQ(VAR_get_vars()[1].attributes, "red");
}

} // namespace
