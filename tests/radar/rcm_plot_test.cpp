/// What is drawn over the cells of a coded message, and which report of a file is taken.

#include <set>

#include "graphics/kernel/helpers.h"
#include "plot/drawing_fixture.h"
#include "radar/rcm/plot.h"
#include "radar/rcm/state.h"
#include "samples/rcm.h"

namespace {

class RcmPlot : public DrawingTest {
protected:
    RcmPlot() {
        FLAG_resetplot(1);
        RES_put("file_path", VYX_SOURCE_DIR "/data");
        samples::RcmBulletin bulletin = samples::rcm(0);
        const samples::Bytes first = rcm_bulletin(bulletin, samples::RcmForm::wrapped);
        bulletin.id = "EAX";
        bulletin.storms = {{{"Z9", 50, 52}, 180, 50, 999, 'U'}};
        const samples::Bytes second = rcm_bulletin(bulletin, samples::RcmForm::lines);
        std::string both(reinterpret_cast<const char *>(first.data()), first.size());
        both += "\n" + std::string(reinterpret_cast<const char *>(second.data()), second.size());
        name_ = files_.write("bulletins", both);
    }
    /// Identifier of the report that is found for a wish.
    std::string found(const char *wish) const {
        RES_put("identifier", wish);
        RCM_prompt_id();
        RcmReport report;
        EXPECT_EQ(RCM_open_file(name_), 1);
        return RCM_read_report(report) == 1 ? report.id : "";
    }
    void open(const char *wish, const char *variables) const {
        RcmPlotState &state = RCM_state();
        RES_put("identifier", wish);
        RES_put("variable", variables);
        RCM_prompt_id();
        ASSERT_EQ(RCM_open_file(name_), 1);
        ASSERT_EQ(RCM_read_report(state.report), 1);
        state.lat = 38.6987F;
        state.lon = -90.6829F;
        MAP_setup(polar(38.7F, -90.7F, 101, 101, 0.05F));
        RCM_plot_param();
        forget();
        RCM_plot_data(state.report);
    }
    static std::multiset<std::string> written() {
        std::multiset<std::string> found;
        for (const DrawnText &text : texts()) found.insert(text.text);
        return found;
    }
    static std::vector<int> marker_types() {
        std::vector<int> types;
        int type = kMissing;
        for (const ObjectRecord *object = gfirst_obj(); object != nullptr; object = object->next) {
            if (object->type == ObjectType::marker_type) type = object->value;
            if (object->type == ObjectType::polymarker) types.push_back(type);
        }
        return types;
    }
    std::string name_;
};

TEST_F(RcmPlot, TheRadarAskedForIsFound) {
    EXPECT_EQ(found("LSX"), "LSX");
    EXPECT_EQ(found("eax"), "EAX");
    EXPECT_EQ(found("KEAX"), "EAX");
    EXPECT_EQ(found("OKX"), "");
    FLAG_set_batch(1);
    EXPECT_EQ(found(""), "LSX") << "the first one of the file";
}

TEST_F(RcmPlot, StormsHaveMarkersAndTexts) {
    RES_put("plot_param", "dist=50:100");
    open("LSX", "comp");
    EXPECT_EQ(written(), (std::multiset<std::string>{"A1", "B2", "C3", "D4", "E5", "F6", "255", "239", "225",
                                                     "247", "201", "189"}));
    // Hail of the storms in their order, then two mesocyclones and a vortex for the first.
    EXPECT_EQ(marker_types(), (std::vector<int>{3, 5, 2, 3, 2, 2, 4, 4, 7, 7}));
    std::size_t rings = 0;
    for (const Line &line : lines()) rings += line.size() == 49 ? 1U : 0U;
    EXPECT_EQ(rings, 2U);
}

TEST_F(RcmPlot, FieldsOfTheStationPlotter) {
    RES_put("plot_param", "");
    open("EAX", "city,mode,hail,mvmt-2");
    EXPECT_EQ(written(), (std::multiset<std::string>{"EAX", "PCPN", "180/50"}));
    StationData data;
    const RcmReport &report = RCM_state().report;
    EXPECT_EQ(RCM_get_data(report, 0, "echotop", data), 1);
    EXPECT_EQ(data.value, 480);
    EXPECT_EQ(RCM_get_data(report, 0, "severe", data), 1);
    EXPECT_EQ(data.value, 999);
    EXPECT_EQ(RCM_get_data(report, 1, "severe", data), 0);
    EXPECT_EQ(RCM_get_data(report, 0, "nothing", data), 0);
    EXPECT_EQ(RCM_get_data(report, 1, "meso", data), 1);
    EXPECT_EQ(RCM_get_data(report, 2, "meso", data), 0);
    EXPECT_EQ(RCM_get_data(report, -1, "city", data), 0);
}

} // namespace
