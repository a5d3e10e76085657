/// Converted radar summaries through the program: variables and their menu, reports on the page, what a file
/// without an input type is, and what is no summary.

#include <cmath>
#include <map>
#include <sstream>
#include <vector>

#include <gtest/gtest.h>

#include "app/program_run.h"
#include "plot/map/current_map.h"
#include "samples/summary.h"

namespace {

struct PageText {
    float x, y;
    std::string text;
};

class SummaryProgram : public testing::Test {
protected:
    SummaryProgram() {
        using namespace samples;
        write("mdr", digitized_text(digitized(0), SummaryForm::text));
        CodedSummary open = coded(0);
        open.closed = false;
        write("rcm", coded_text(open, SummaryForm::text));
        write("grid.nc", netcdf_file(digitized_reports(digitized(0))));
    }
    void write(const std::string &name, const samples::Bytes &bytes) const {
        run.dir.write(name, {reinterpret_cast<const char *>(bytes.data()), bytes.size()});
    }
    /// Plots a page in batch mode.
    RunResult plot(const std::string &arguments) const {
        std::filesystem::remove(run.dir.at("a.ps"));
        return run("-ba -pd ps,39,-92,25,17,0.6,0.6 -mf '' -de p,a.ps " + arguments);
    }
    /// Answers at the terminal.
    RunResult answered(const std::string &answers, const std::string &arguments) const {
        const std::string command =
            "printf '" + answers + "' | " VYX_PROGRAM " " + arguments + " >stdout.txt 2>stderr.txt";
        const int status = std::system(command.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, file_text(run.dir.at("stdout.txt")),
                file_text(run.dir.at("stderr.txt"))};
    }
    [[nodiscard]] std::vector<PageText> texts() const {
        std::vector<PageText> found;
        std::istringstream page(file_text(run.dir.at("a.ps")));
        for (std::string line; std::getline(page, line);) {
            PageText text{};
            char at[80] = "";
            if (std::sscanf(line.c_str(), "%%%%TE:%f %f %79[^\n]", &text.x, &text.y, at) != 3) continue;
            text.text = at;
            found.push_back(text);
        }
        return found;
    }
    [[nodiscard]] int count(const std::string &text) const {
        int found = 0;
        for (const PageText &t : texts()) found += t.text == text ? 1 : 0;
        return found;
    }
    /// Kilometres from a text to a place, as the page is projected.
    [[nodiscard]] float distance(const std::string &text, float lat, float lon) const {
        PlotDomain domain;
        domain.proj = kProjPolar;
        domain.clat = 39;
        domain.clon = domain.plon = -92;
        domain.nx = 25;
        domain.ny = 17;
        domain.dx = domain.dy = 0.6F;
        MAP_domain(&domain);
        float x = 0, y = 0, nearest = INFINITY;
        MAP_tran(x, y, lat, lon);
        for (const PageText &t : texts())
            if (t.text == text) nearest = std::min(nearest, 100 * std::hypot(t.x - x, t.y - y));
        return nearest;
    }
    const ProgramRun run;
};

TEST_F(SummaryProgram, ReportsStandAtTheirStationsAsFarAsTheyHaveTheVariables) {
    ASSERT_EQ(plot("-va id,top,prec mdr").status, 0);
    EXPECT_LT(distance("LSX", 38.6987F, -90.6829F), 30); // above its place
    EXPECT_LT(distance("410", 40.1505F, -89.3368F), 60);
    EXPECT_EQ(count("DVN"), 1);
    EXPECT_EQ(count("RW"), 1);
    EXPECT_EQ(count("IND"), 1); // beside echo of others, without a top
    EXPECT_EQ(count("Identifier of station or storm"), 1);
    EXPECT_EQ(count("Echo tops (100 ft)"), 1);
    EXPECT_EQ(count("2200Z  4 JUL 03"), 1);
    ASSERT_EQ(plot("-va top,id mdr").status, 0);
    EXPECT_EQ(count("DVN"), 1);
    EXPECT_EQ(count("IND"), 0); // what has no top has nothing behind it either
    ASSERT_EQ(plot("-va stat mdr").status, 0);
    EXPECT_EQ(count("NE"), 1); // another one lies outside
    EXPECT_EQ(count("OM"), 1);
    ASSERT_EQ(plot("-va amv,conf grid.nc").status, 0);
    EXPECT_EQ(count("AREA"), 3);
    EXPECT_EQ(count("Area Movement: 25 knts"), 1);
    ASSERT_EQ(plot("-va conf,amv -dr data mdr").status, 0);
    EXPECT_EQ(count("Area Movement: 25 knts"), 0);
}

TEST_F(SummaryProgram, RecordsShowTheirItemsWhereTheyAre) {
    ASSERT_EQ(plot("-va tvs,meso,id,city -sc 0.3 rcm").status, 0);
    EXPECT_LT(distance("T", 38.514F, -91.775F), 1);
    EXPECT_LT(distance("M", 38.061F, -92.031F), 1);
    for (const char *storm : {"A1", "B2", "C3", "D4", "E5", "F6", "LSX", "MPX", "DMX"})
        EXPECT_EQ(count(storm), storm[0] == 'M' ? 0 : 1) << storm; // that one lies outside
    ASSERT_EQ(plot("-va id -sc 0.3 -pp numplt=2 rcm").status, 0);
    EXPECT_EQ(count("B2"), 1);
    EXPECT_EQ(count("C3"), 0);
    ASSERT_EQ(plot("-va echotop,mode -sc 0.3 rcm").status, 0);
    EXPECT_LT(distance("480", 38.514F, -91.775F), 1);
    EXPECT_EQ(count("P"), 1);
    run.dir.write("clear", "2200Z  4 JUL 03\nRCM\n** LSX 1 CLAR\nS A1 39 -92 1 2 3 0\n");
    ASSERT_EQ(plot("-va id,mode clear").status, 0);
    EXPECT_EQ(count("A1") + count("C"), 2);
    ASSERT_EQ(plot("-va id,mode -pp noclar clear").status, 0);
    EXPECT_EQ(count("A1") + count("C"), 0);
}

TEST_F(SummaryProgram, StationsThatWouldCoverOthersAreLeftOut) {
    std::string records = "2200Z  4 JUL 03\nRCM\n** LSX 1 PCPN\n";
    for (int i = 0; i < 30; ++i)
        records += "S N" + std::to_string(i) + " 39." + std::to_string(i % 10) + " -92.0 245 38 480 1\n";
    run.dir.write("crowd", records);
    const RunResult result = plot("-me mess -va id,top crowd");
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(contains(result.out + result.err, "of 10 places are left out")) << result.out << result.err;
    int shown = 0;
    const std::vector<PageText> all = texts();
    for (const PageText &a : all)
        for (const PageText &b : all)
            if (a.text[0] == 'N' && b.text[0] == 'N' && &a < &b && a.text != b.text) {
                ++shown;
                if (a.x == b.x && a.y == b.y) continue; // storms at one place belong together
                EXPECT_GT(std::hypot(a.x - b.x, a.y - b.y), 0.015F * 16 * 0.6F) << a.text << b.text;
            }
    EXPECT_GT(shown, 0);
}

TEST_F(SummaryProgram, CirclesAndSites) {
    const auto lines = [this](const char *of) { return count_of(file_text(run.dir.at("a.ps")), of); };
    ASSERT_EQ(plot("-va id mdr").status, 0);
    EXPECT_EQ(lines("%%PL:49\n"), 0);
    EXPECT_EQ(lines("%%PM:1\n"), 0);
    for (const char *words : {"dist,site", "dist=5,site", "dist:40,site"}) {
        ASSERT_EQ(plot(std::string("-va id -pp ") + words + " mdr").status, 0);
        EXPECT_GE(lines("%%PL:49\n"), 6) << words;
        EXPECT_GE(lines("%%PM:1\n"), 6) << words;
    }
    ASSERT_EQ(plot("-va id -pp dist=5,nodist mdr").status, 0);
    EXPECT_EQ(lines("%%PL:49\n"), 0);
}

TEST_F(SummaryProgram, TheMenuOffersWhatTheFileHas) {
    const std::string plot = "-re mw -mf '' -de p,a.ps ";
    RunResult result = answered("top,3\\nnosuch\\nback\\n", plot + "mdr");
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_TRUE(contains(result.out, "\n        Variable Menu\n"));
    EXPECT_TRUE(contains(result.out, "  3 - Echo configuration"));
    EXPECT_TRUE(contains(result.out, "Enter the variable: "));
    EXPECT_FALSE(contains(result.out, "Mesocyclones"));
    EXPECT_TRUE(contains(result.err, "Invalid variable: nosuch"));
    EXPECT_EQ(count("DVN"), 0);
    EXPECT_EQ(count("280"), 1);
    result = answered("none\\n0\\n", plot + "rcm");
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_TRUE(contains(result.out, "Mesocyclones"));
    EXPECT_FALSE(contains(result.out, "Echo configuration"));
    EXPECT_TRUE(contains(file_text(run.dir.at("a.ps")), "%%FA:"));
    EXPECT_EQ(answered("quit\\n", plot + "mdr").status, 0);
    EXPECT_EQ(answered("", plot + "mdr").status, 1); // nobody answers
}

TEST_F(SummaryProgram, PlotTypesDrawBandsLinesAndValues) {
    const auto drawn = [this](const std::string &words) {
        EXPECT_EQ(plot(words + " rcm").status, 0);
        const std::string page = file_text(run.dir.at("a.ps"));
        return std::pair(count_of(page, "%%FA:"), count_of(page, "%%PL:"));
    };
    const auto [filled, outlines] = drawn("");
    EXPECT_GT(filled, 30);
    EXPECT_EQ(count("Intensities (Dbz):"), 1);
    const auto [of_lines, lines] = drawn("-pl ln");
    EXPECT_EQ(of_lines, 0);
    EXPECT_GT(lines, outlines + 20);
    const auto both = drawn("-pl lcf");
    EXPECT_GT(both.first, 30);
    EXPECT_GT(both.second, outlines + 20);
    EXPECT_EQ(count("Intensities (Dbz):"), 0);
    const auto values = drawn("-pl value");
    EXPECT_EQ(values.first, 0);
    EXPECT_GT(count("1") + count("2") + count("3"), 10);
    EXPECT_TRUE(contains(plot("-pl vect rcm").err, "not for radar summaries"));
    EXPECT_EQ(drawn("-dr map").first, 0);
}

TEST_F(SummaryProgram, AFileNamedAloneIsReadAsWhatItIs) {
    run.product("n0r", samples::reflectivity(0));
    RunResult result = plot("-me mess n0r");
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_TRUE(contains(result.out + result.err, "n0r is read as -inp nids"));
    EXPECT_EQ(count("Base reflectivity (Dbz)"), 1);
    result = plot("-me mess mdr");
    EXPECT_EQ(result.status, 0);
    EXPECT_FALSE(contains(result.out + result.err, "is read as"));
    // With a word about the input nothing is guessed.
    result = plot("-inp mdr n0r");
    EXPECT_EQ(result.status, 10);
    EXPECT_TRUE(contains(result.err, "Unable to open file:n0r\n"));
    EXPECT_EQ(plot("-if rad_cvt n0r").status, 10);
    run.dir.write("text", "nothing known\n");
    run.dir.write("c", "Certainly no netCDF file\n");
    run.dir.write("cdf", std::string("CDF\1\0\0\0\0", 8));
    for (const char *name : {"text", "c", "cdf", "missing"}) {
        result = plot(name);
        EXPECT_EQ(result.status, 10) << name;
        EXPECT_TRUE(contains(result.err, std::string("Unable to open file:") + name + "\n")) << result.err;
        EXPECT_EQ(plot(std::string("-inp rad ") + name).status, 10) << name;
    }
    for (const char *name : {"mdr", "rcm", "grid.nc"}) {
        EXPECT_EQ(plot(std::string("-inp auto ") + name).status, 0) << name;
        EXPECT_EQ(count("2200Z  4 JUL 03"), 1) << name;
        EXPECT_EQ(plot(std::string("'|gzip -c ") + name + "'").status, 0) << name;
    }
    // A text without any section draws a map, and is no success.
    run.dir.write("empty", "2200Z  4 JUL 03\nnothing\n");
    result = plot("empty");
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(contains(result.err, "has no radar summary"));
    EXPECT_EQ(plot("-pp strict empty").status, 10);
    // Neither file nor name tells a time: no label does.
    write("marked", digitized_text(samples::digitized(0), samples::SummaryForm::marked));
    EXPECT_TRUE(contains(plot("-me mess marked").out, "Date: not known\n"));
    EXPECT_EQ(count("80"), 0);
    EXPECT_EQ(plot("mdr text rcm").status, 0);
    EXPECT_EQ(plot("-pp strict mdr text rcm").status, 10);
}

} // namespace
