/// Plots for pen plotters through the program: the drawing of the page, page by page, wherever they go.

#include <cmath>
#include <cstdio>
#include <sstream>
#include <vector>

#include <gtest/gtest.h>

#include "app/program_run.h"
#include "samples/level3_products.h"

namespace {

struct PenPoint {
    bool down;
    float x, y;
};

/// "mv" and "ln" of a page; "PU" and "PD" of a plot.
std::vector<PenPoint> page_points(const std::string &page) {
    std::vector<PenPoint> points;
    std::istringstream lines(page);
    bool clip = false;
    std::vector<PenPoint> path;
    for (std::string line; std::getline(lines, line);) {
        PenPoint point{};
        char verb[3] = "";
        if (line == "np") path.clear();
        clip = line == "initclip" || (clip && line != "clip");
        if (std::sscanf(line.c_str(), "%f %f %2s", &point.x, &point.y, verb) == 3) {
            point.down = std::string(verb) == "ln";
            path.push_back(point);
        }
        if (line == "stroke" || line == "fill") points.insert(points.end(), path.begin(), path.end());
    }
    return points;
}
std::vector<PenPoint> plot_points(const std::string &plot) {
    std::vector<PenPoint> points;
    for (std::size_t at = plot.find('P'); at != plot.npos; at = plot.find('P', at + 1)) {
        PenPoint point{};
        char verb = 0;
        if (std::sscanf(plot.c_str() + at, "P%c%f,%f;", &verb, &point.x, &point.y) != 3) continue;
        if (verb != 'U' && verb != 'D') continue;
        point.down = verb == 'D';
        points.push_back(point);
    }
    return points;
}

TEST(Plotter, DrawsThePageOfThePrinter) {
    const ProgramRun run;
    run.product("n0r", samples::reflectivity(0));
    const std::string what = "-ba -inp nids -mf lalo:2 -pp site,dist=60:120 n0r -de ";
    ASSERT_EQ(run(what + "p,a.ps").status, 0);
    ASSERT_EQ(run(what + "h,a.hpgl,sz=11x8.5").status, 0);
    const auto page = page_points(file_text(run.dir.at("a.ps"))),
               plot = plot_points(file_text(run.dir.at("a.hpgl")));
    ASSERT_EQ(page.size(), plot.size());
    ASSERT_GT(page.size(), 5000U);
    // Both areas are as many units wide as lie between their first and their last one.
    constexpr float kUnitsPerPoint = 10656.0F / 755;
    int different = 0;
    for (std::size_t i = 0; i < page.size(); ++i) {
        const auto near = [](float points, float units) {
            return std::abs(points * kUnitsPerPoint + 10 - units) < 3 + 0.001F * std::abs(units);
        };
        const bool same =
            page[i].down == plot[i].down && near(page[i].x, plot[i].x) && near(page[i].y, plot[i].y);
        different += same ? 0 : 1;
    }
    EXPECT_LT(different, static_cast<int>(page.size() / 100)); // markers are whole units large
}

TEST(Plotter, AnIndependentPlotterDrawsIt) {
    if (std::system("command -v hp2xx >/dev/null && command -v convert >/dev/null") != 0)
        GTEST_SKIP() << "there is no hp2xx, or no convert";
    const ProgramRun run;
    run.product("n0r", samples::reflectivity(0));
    for (const char *options : {"", ",nopcl", ",lj", ",port", ",rot=180,a4", ",roll=24"}) {
        ASSERT_EQ(run(std::string("-ba -inp nids -de h,a.hpgl") + options + " n0r").status, 0) << options;
        ASSERT_EQ(std::system("hp2xx -q -m png -f a.png a.hpgl >hp.txt 2>&1 && convert a.png -format "
                              "'%[fx:mean]' info: >mean.txt 2>>hp.txt"),
                  0)
            << options << file_text(run.dir.at("hp.txt"));
        const double light = std::atof(file_text(run.dir.at("mean.txt")).c_str());
        EXPECT_GT(light, 0.5) << options; // ink on paper, not paper alone
        EXPECT_LT(light, 0.97) << options;
        std::filesystem::remove(run.dir.at("a.png"));
    }
}

TEST(Plotter, PlotsGoWherePagesGo) {
    const ProgramRun run;
    run.product("a", samples::reflectivity(0));
    run.product("b", samples::reflectivity(6));
    const std::string plot = "-ba -inp nids -mf '' ";
    ASSERT_EQ(run(plot + "-de h,x.hpgl a b").status, 0);
    const auto pages = [&run](const char *name) { return count_of(file_text(run.dir.at(name)), "SP;PG;"); };
    EXPECT_EQ(pages("x.hpgl"), 2);
    ASSERT_EQ(run(plot + "-de h,+x.hpgl a").status, 0);
    EXPECT_EQ(pages("x.hpgl"), 2); // onto the last page
    ASSERT_EQ(run(plot + "-de q,-,nopcl a").status, 0);
    EXPECT_TRUE(file_text(run.dir.at("stdout.txt")).ends_with("SP;PG;\n"));
    ASSERT_EQ(run(plot + "'-de=h,|cat>y.hpgl' a").status, 0);
    EXPECT_EQ(pages("y.hpgl"), 1);
    ASSERT_EQ(run(plot + "-de p,z.hpgl a", "export vyxprint=hpgl; ").status, 0);
    EXPECT_EQ(pages("z.hpgl"), 1);
    ASSERT_EQ(run(plot + "-de h a").status, 0);
    EXPECT_EQ(pages("vyx.hpgl"), 1);
    RunResult result = run(plot + "-de h,/dev/full a");
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(contains(result.err, "ghpgl_close: Error writing HPGL file: /dev/full: No space left"));
    result = run(plot + "-de h,/dev/null/x a");
    EXPECT_EQ(result.status, 4);
    EXPECT_TRUE(contains(result.err, "gopen_ws: unable to open HPGL file\n"));
    EXPECT_TRUE(contains(run(plot + "-de h,x.hpgl,a9,scale=0,rot=45 a").err, "\"a9\" is not known"));
}

} // namespace
