/// Domain strings in all their forms, region files, the region menu and the station priority.

#include <limits>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

#include "lib/files/naming.h"
#include "lib/options/flags.h"
#include "lib/report/message.h"
#include "lib/report/process.h"
#include "lib/resources/database.h"
#include "lib/scratch_dir.h"
#include "plot/places/region.h"
#include "plot/places/region_lines.h"
#include "plot/places/station_priority.h"

namespace {

constexpr const char *kRegions = "# comment us nothing 1 ps,1,1\n"
                                 "first First_region 1 ps,40,-100,30,20,1.5,1.5\n"
                                 "hide  Hidden_one   0 lc,35,-95,50,40,0.6,0.5\n"
                                 "long  A_description_of_more_than_twenty 1 first\n"
                                 "loop1 Loop 0 loop2\n"
                                 "loop2 Loop 0 loop1\n"
                                 "bad   Broken 1 ps,x,y\n"
                                 "us    Own_US 0 us\n";

class Region : public testing::Test {
protected:
    Region() {
        RES_put("file_path", files.path());
        DOM_init(domain);
    }
    int decode(const std::string &text) { return DOM_decode(text, domain); }
    void expect_grid(int nx, int ny, float dx, float dy) const {
        EXPECT_EQ(domain.nx, nx);
        EXPECT_EQ(domain.ny, ny);
        EXPECT_EQ(domain.dx, dx);
        EXPECT_EQ(domain.dy, dy);
    }
    ScratchDir files;
    PlotDomain domain;
};

/// Answers from a file on standard input.
void answer_with(const std::string &file) {
    ASSERT_NE(freopen(file.c_str(), "r", stdin), nullptr);
}

} // namespace

TEST_F(Region, DomainStringPatterns) {
    files.write("sao.cty", "Town MO US KXYZ 1 38.5 -90.5 0 72000 0\n");
    constexpr float none = kMissingF;
    const struct {
        const char *text;
        int proj;
        float plon, clat, clon;
        int nx, ny;
        float dx, dy;
    } cases[] = {
        {"size,640,480", kProjSize, none, none, none, 640, 480, none, none},
        {"ps,-90,40,-100,30,20,2,3", kProjPolar, -90, 40, -100, 30, 20, 2, 3},
        {"ps,40,-100,30,20,2,3", kProjPolar, none, 40, -100, 30, 20, 2, 3},
        {"ps,-90,40,-100,2,3", kProjPolar, -90, 40, -100, 25, 17, 2, 3},
        {"lc,35,-95,50,40,0.6", kProjLambert, none, 35, -95, 50, 40, 0.6F, 0.6F},
        {"40,-100,30,20,2,3", kProjPolar, none, 40, -100, 30, 20, 2, 3},
        {"merc,40,-100,2,3", kProjMercator, none, 40, -100, 25, 17, 2, 3},
        {"40,-100,30,20,2", kProjPolar, none, 40, -100, 30, 20, 2, 2},
        {"or,40,-100,2", kProjOrtho, none, 40, -100, 25, 17, 2, 2},
        {"40,-100,30,20", kProjPolar, none, 40, -100, 30, 20, 1.2F, 1.2F},
        {"40,-100,2.5", kProjPolar, none, 40, -100, 25, 17, 2.5F, 2.5F},
        {"gn,40,-100", kProjGnomonic, none, 40, -100, 25, 17, 1.2F, 1.2F},
        {"zoom,40,-100", kProjZoom, none, 40, -100, 25, 17, 1.0F, 1.0F},
        {"SIZE,640,480", kProjSize, none, none, none, 640, 480, none, none},
        {"40,-100", kProjPolar, none, 40, -100, 25, 17, 1.2F, 1.2F},
        {"id:KXYZ", kProjPolar, none, 38.5F, -90.5F, 25, 17, 1.2F, 1.2F},
        {"id:sao.cty:kxyz,0.5", kProjPolar, none, 38.5F, -90.5F, 25, 17, 0.5F, 0.5F},
        {"lc,id:KXYZ,50,40,0.6", kProjLambert, none, 38.5F, -90.5F, 50, 40, 0.6F, 0.6F},
        // Six items that fit two forms: Chicago and Berlin by points, the others by spacings.
        {"lc,41.6,-88.08,31,21,0.25", kProjLambert, none, 41.6F, -88.08F, 31, 21, 0.25F, 0.25F},
        {"me,52.5,13.4,50,40,0.1", kProjMercator, none, 52.5F, 13.4F, 50, 40, 0.1F, 0.1F},
        {"ll,10,20,30,2,9", kProjLatLon, none, 10, 20, 30, 2, 9, 9},
        {"ll,10,50,20,6,2", kProjLatLon, 10, 50, 20, 25, 17, 6, 2},
        {"lc,10,50,20.5,21,0.25", kProjLambert, 10, 50, 20.5F, 25, 17, 21, 0.25F},
        {"lc,10,50,20,1,0.25", kProjLambert, 10, 50, 20, 25, 17, 1, 0.25F},
        {"lc,10,50,-20,21,0.25", kProjLambert, 10, 50, -20, 25, 17, 21, 0.25F},
        {"lc,100,50,30,21,0.25", kProjLambert, 100, 50, 30, 25, 17, 21, 0.25F},
        {"lc,-90,id:KXYZ,0.6,0.7", kProjLambert, -90, 38.5F, -90.5F, 25, 17, 0.6F, 0.7F},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(decode(c.text), 1);
        EXPECT_EQ(FLAG_get(kFlagDomain), 1);
        EXPECT_EQ(domain.proj, c.proj);
        EXPECT_EQ(domain.plon, c.plon);
        EXPECT_EQ(domain.plat, kMissingF);
        EXPECT_EQ(domain.clat, c.clat);
        EXPECT_EQ(domain.clon, c.clon);
        expect_grid(c.nx, c.ny, c.dx, c.dy);
    }
    EXPECT_EQ(FILE_get_key('r'), "lc,-90,id:KXYZ,0.6,0.7");
}

TEST_F(Region, ProjectionParameters) {
    ASSERT_EQ(decode("ps:60:-100,40,-95"), 1);
    EXPECT_EQ(domain.plat, 60);
    EXPECT_EQ(domain.plon, -100);
    ASSERT_EQ(decode("ps:-100,40,-95"), 1);
    EXPECT_EQ(domain.plat, kMissingF);
    EXPECT_EQ(domain.plon, -100);
    ASSERT_EQ(decode("ps:60:,40,-95"), 1);
    EXPECT_EQ(domain.plat, 60);
    EXPECT_EQ(domain.plon, kMissingF);
    ASSERT_EQ(decode("lamb::-95:33:45,40,-95"), 1);
    EXPECT_EQ(domain.plat, kMissingF);
    EXPECT_EQ(domain.p3, 33);
    EXPECT_EQ(domain.p4, 45);
    ASSERT_EQ(decode("sat:e:0:-75:421.61:1,0,-75"), 1);
    EXPECT_EQ(domain.ellipsoid, 1);
    EXPECT_EQ(domain.plon, -75);
    EXPECT_FLOAT_EQ(domain.p3, 421.61F);
    EXPECT_EQ(domain.p4, 1);
    testing::internal::CaptureStdout();
    DOM_print(kPrint, domain);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "sat:e:0.000:-75.000:421.610:1.000:,0.000,-75.000,25,17,1.2000,1.2000\n");
}

TEST_F(Region, RefusesImpossibleDomains) {
    for (const char *text : {"nowhere",
                             "40",
                             "40,x",
                             "ps,40,-100,30,20,2,3,4,5",
                             "id:NONE",
                             "ps,91,-100",
                             "ps,40,-1e9",
                             "95,-100",
                             "40,-100,0,17",
                             "40,-100,25,-3",
                             "40,-100,999999999,17",
                             "40,-100,0",
                             "40,-100,-1",
                             "40,-100,1e30",
                             "40,nan",
                             "lamb:40:-95:90:45,40,-95",
                             "lamb:40:-95:30:-30,40,-95",
                             "lamb:40:-95:0:0,40,-95",
                             "sat:0:-75:10,0,-75",
                             "ps:40:-95:-90,40,-95",
                             "ps:100:0,40,-95",
                             "skewt,40,-100",
                             "xy,0,0,10,10,0,1",
                             "loop:",
                             "fi:none.reg",
                             "none.reg:us"}) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(decode(text), -1) << text;
        const std::string warning = testing::internal::GetCapturedStderr();
        EXPECT_TRUE(warning.ends_with("DOM_decode: Invalid plot domain\n")) << text << ": " << warning;
        EXPECT_EQ(FLAG_get(kFlagDomain), -1);
    }
    EXPECT_EQ(decode(""), kMissing);
    EXPECT_EQ(decode("MISS"), kMissing);
    decode("nowhere");
    EXPECT_EQ(domain.proj, kProjUnknown);
}

TEST_F(Region, BuiltInRegionsWithoutFile) {
    ASSERT_EQ(decode("US"), 2);
    EXPECT_EQ(domain.proj, kProjPolar);
    EXPECT_EQ(domain.clat, 39);
    EXPECT_EQ(domain.plon, -97);
    expect_grid(25, 17, 2.3F, 2.3F);
    EXPECT_EQ(DOM_get_prior(), 2);
    EXPECT_EQ(DOM_aspect(domain), 1.5F);
    ASSERT_EQ(decode("40,-100"), 1);
    EXPECT_EQ(DOM_get_prior(), 3);
}

TEST_F(Region, RegionFiles) {
    files.write("vyx.reg", kRegions);
    files.write("other.reg", "# nothing\nus Other 1 ps,10,20,3\n");
    files.write("one.reg", "us\n");
    ASSERT_EQ(decode("FIRST"), 2);
    expect_grid(30, 20, 1.5F, 1.5F);
    ASSERT_EQ(decode("hide"), 2);
    expect_grid(50, 40, 0.6F, 0.5F);
    ASSERT_EQ(decode("long"), 2); // names another region
    EXPECT_EQ(domain.clat, 40);
    ASSERT_EQ(decode("us"), 2); // names itself: the built-in one
    EXPECT_EQ(domain.clat, 39);
    ASSERT_EQ(decode("sp"), 2); // not in the file
    EXPECT_EQ(domain.clat, 32.5F);
    EXPECT_EQ(decode("loop1"), -1);
    EXPECT_EQ(decode("bad"), -1);
    ASSERT_EQ(decode("fi:other.reg"), 2);
    EXPECT_EQ(domain.clat, 10);
    ASSERT_EQ(decode("other.reg:us"), 2);
    EXPECT_EQ(domain.clon, 20);
    std::string text;
    EXPECT_EQ(DOM_search_file("one.reg", "sp", text), 1); // a single word answers everything
    EXPECT_EQ(text, "us");
    testing::internal::CaptureStdout();
    DOM_print_file("other.reg");
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              " Abbr    Description\nus       Other                                             \n");
}

TEST_F(Region, ChoiceFromResources) {
    files.write("vyx.reg", kRegions);
    EXPECT_EQ(DOM_get_region(domain, 3), 0);
    EXPECT_EQ(domain.proj, kProjNone);
    EXPECT_EQ(DOM_get_region(domain, 4), 2); // the first of the menu
    EXPECT_EQ(domain.nx, 30);
    EXPECT_EQ(DOM_get_grid_domain(domain), 0);
    RES_put("region", "sp");
    EXPECT_EQ(DOM_get_region(domain, 3), 2);
    RES_put("plot_domain", "45,-90");
    EXPECT_EQ(DOM_get_region(domain, 3), 1);
    EXPECT_EQ(domain.clat, 45);
    EXPECT_EQ(DOM_get_region(domain, 2), 2);
    EXPECT_EQ(DOM_get_grid_domain(domain), 2);
    RES_put("stat_prior", "+2");
    DOM_set_base_prior(36.8F);
    EXPECT_EQ(DOM_get_prior(), 4);
    RES_put("stat_prior", "7");
    DOM_set_base_prior(1);
    EXPECT_EQ(DOM_get_prior(), 7);
    RES_put("stat_prior", "10"); // no digit
    DOM_set_base_prior(1);
    EXPECT_EQ(DOM_get_prior(), 6);
    EXPECT_EQ(DOM_prompt_region(domain, 1), 1);
    EXPECT_EQ(DOM_prompt_region(domain, 1), 0); // chosen already
    RES_put("plot_domain", "nowhere");
    EXPECT_EXIT(DOM_get_region(domain, 3), testing::ExitedWithCode(kExitRegion), "Invalid domain");
}

TEST_F(Region, Menu) {
    files.write("vyx.reg", kRegions);
    // Hidden lines take no number: 1 first, 2 long, 3 bad.
    answer_with(files.write("answers", "list\n3\n2\nhide\n0\nnone\nnone\nnone\nlist\n9\n"));
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    EXPECT_EQ(DOM_prompt_region(domain, 2), 2);
    EXPECT_EQ(domain.clat, 40);
    EXPECT_EQ(DOM_prompt_region(domain, 2), 2);
    EXPECT_EQ(domain.clat, 35);
    EXPECT_EQ(DOM_prompt_region(domain, 2), 0);
    EXPECT_EQ(DOM_prompt_region(domain, 2), -1);
    const std::string shown = testing::internal::GetCapturedStdout();
    EXPECT_NE(shown.find("        Region Menu\n"), std::string::npos);
    EXPECT_NE(shown.find("  2 - A description of mor"), std::string::npos);
    EXPECT_NE(shown.find("hide     Hidden one"), std::string::npos);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("Invalid domain\n"), std::string::npos);
}

TEST_F(Region, MenuOfAnotherFile) {
    files.write("other.reg", "here Here 1 ps,10,20,3\n");
    answer_with(files.write("answers", "other.reg:\n1\nquit\n"));
    testing::internal::CaptureStdout();
    ASSERT_EQ(DOM_prompt_region(domain, 2), -1); // the name "here" is not in the default file
}

TEST_F(Region, BatchTakesTheFirstRegion) {
    files.write("vyx.reg", kRegions);
    FLAG_set_batch(1);
    EXPECT_EQ(DOM_prompt_region(domain, 2), 2);
    EXPECT_EQ(domain.nx, 30);
    EXPECT_EQ(DOM_prompt_region(domain, 2), 0);
}

TEST(RegionData, ShippedRegionsAllDecode) {
    RES_put("file_path", VYX_SOURCE_DIR "/data");
    const int entries = DOM_read_menu("vyx.reg");
    EXPECT_EQ(entries, 20);
    std::ifstream file(VYX_SOURCE_DIR "/data/vyx.reg");
    int regions = 0;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with('#')) continue;
        PlotDomain domain;
        EXPECT_EQ(DOM_decode(line.substr(0, line.find(' ')), domain), 2) << line;
        ++regions;
    }
    EXPECT_GE(regions, entries);
}

TEST(Domain, ComparesWithEffectiveProjectionCentre) {
    PlotDomain a, b;
    a.proj = b.proj = kProjPolar;
    a.clat = b.clat = 40;
    b.plat = 40;
    EXPECT_EQ(DOM_comp(a, b), 1);
    b.plat = 41;
    EXPECT_EQ(DOM_comp(a, b), 0);
    EXPECT_EQ(DOM_comp_proj(a, b), 0);
    b.plat = kMissingF;
    b.nx = 5;
    EXPECT_EQ(DOM_comp(a, b), 0);
    EXPECT_EQ(DOM_comp_proj(a, b), 1);
    EXPECT_EQ(DOM_aspect(b), 1);
}
