#include "lib/resources/database.h"

#include <cstdlib>

#include <gtest/gtest.h>

#include "lib/options/flags.h"
#include "lib/report/message.h"
#include "lib/resources/start.h"
#include "lib/scratch_dir.h"
#include "lib/text/missing.h"
#include "lib/time/fixed_time.h"

namespace {

/// Starts the resources of a program named radar with these arguments and no resource files but those named.
void start(std::vector<const char *> arguments) {
    arguments.insert(arguments.begin(), {"/usr/bin/radar", "-df=/nonexistent"});
    RES_init(static_cast<int>(arguments.size()), arguments.data(), RES_keyed_ids(), RES_positional_ids());
}

std::string text(const char *name) {
    const char *value = RES_get(name);
    return value == nullptr ? "(unset)" : value;
}

} // namespace

TEST(ResourceCommand, EverySpellingOfAnOption) {
    for (const std::vector<const char *> &arguments :
         {std::vector{"-pd", "us"}, {"-pd=us"}, {"-plot_domain", "us"}, {"-plot_d", "us"}, {"--PD", "us"}}) {
        RES_put("plot_domain", "before");
        start(arguments);
        EXPECT_EQ(text("plot_domain"), "us") << arguments.front();
    }
}

TEST(ResourceCommand, AbbreviationsBeatNamesAndNamesBeatBeginnings) {
    start({"-in", "5", "-inp", "nids", "-p", "there", "-sc", "-1.5", "-odd", "-va="});
    EXPECT_EQ(text("con_interval"), "5");
    EXPECT_EQ(text("input"), "nids");
    EXPECT_EQ(text("plot_domain"), "there") << "first name in list order that begins so";
    EXPECT_EQ(text("plot_scale"), "-1.5");
    EXPECT_EQ(text("odd"), "") << "an unknown option is kept under its own name";
    EXPECT_EQ(text("variable"), "");
    EXPECT_EQ(text("label"), "(unset)");
    float scale = 0;
    EXPECT_EQ(RES_getval("plot_scale", scale), 1);
    EXPECT_EQ(scale, -1.5F);
    EXPECT_EQ(RES_getval("label", scale), 0);
}

TEST(ResourceCommand, SwitchesTakeNoValueFromTheNextArgument) {
    start({"-ba", "first", "-pd", "us", "--", "-7", "-"});
    EXPECT_EQ(text("batch"), "");
    EXPECT_EQ(text("plot_domain"), "us");
    EXPECT_EQ(text("filename"), "first\n-7\n-");
    EXPECT_EQ(RES_getvals("filename").size(), 3U);
    EXPECT_EQ(FLAG_batch(), 1);
    EXPECT_EQ(MESS_get(), 0xFFU) << "batch mode shows print, error and warning only";
    EXPECT_EQ(FLAG_help(), 0);
}

TEST(ResourceCommand, TitleAndSearchPathAreTakenFirst) {
    setenv("vyxradar.x.plot_domain", "qualified", 1);
    setenv("vyxdomain", "plain", 1);
    start({"-na", "+x", "-default_things", "-name_c", "conventions"});
    EXPECT_EQ(text("plot_domain"), "qualified");
    EXPECT_EQ(text("name"), "+x");
    EXPECT_EQ(text("name_conv"), "conventions");
    EXPECT_EQ(text("default"), "");
    EXPECT_EQ(RES_get_progname(), "radar");
    EXPECT_EQ(RES_get_prog(), "/usr/bin/radar");
}

TEST(ResourceSources, LaterSourcesReplaceEarlierOnes) {
    const ScratchDir dir;
    const std::string file = "-df=" + dir.write("res", "*plot_domain file\n*label file\n*variable file\n");
    setenv("vyxdomain", "ne", 1);
    setenv("vyxlabel", "ne", 1);
    setenv("vyxfilename", "ne", 1);
    start({file.c_str(), "-pd", "us", "a", "b"});
    EXPECT_EQ(text("plot_domain"), "us");
    EXPECT_EQ(text("label"), "ne");
    EXPECT_EQ(text("variable"), "file");
    EXPECT_EQ(text("filename"), "a\nb");
    EXPECT_EQ(RES_records().front().name, "default") << "a record keeps its place";
}

TEST(ResourceSources, ActOnGlobalState) {
    start({"-ba", "-me", "out1b", "-dr", "map,data", "-pf", "app", "-pl", "cf", "-ho", "-306", "-h"});
    EXPECT_EQ(MESS_get(), 0x3FFFU) << "a level that was given stands in batch mode";
    EXPECT_EQ(FLAG_getplot(kPlotMap), 1);
    EXPECT_EQ(FLAG_getplot(kPlotBorder), 0);
    EXPECT_EQ(FLAG_get(kFlagFileParam), 2);
    EXPECT_EQ(FLAG_get(kFlagPlotType), 15);
    EXPECT_EQ(FLAG_get(kFlagDevice), kMissing);
    EXPECT_EQ(FILE_get_time().hour, -306);
    EXPECT_EQ(FLAG_help(), 1);
}

TEST(ResourceValues, ConvertByKind) {
    using Kind = ResourceKind;
    const auto number = [](const char *value, Kind kind) {
        int target = 77; // stays where the value does not fit
        RES_new(kMissing, "n", value, kind);
        (void)RES_getval("n", target, kind);
        return target;
    };
    EXPECT_EQ(number("Yes", Kind::switch_), 1);
    EXPECT_EQ(number("off", Kind::switch_), 0);
    EXPECT_EQ(number(nullptr, Kind::switch_), 1);
    EXPECT_EQ(number("maybe", Kind::switch_), 77);
    EXPECT_EQ(number("-12", Kind::integer), -12);
    EXPECT_EQ(number("0x1fZ", Kind::integer), 31);
    EXPECT_EQ(number("0x", Kind::integer), 77);
    EXPECT_EQ(number("x", Kind::integer), 77);
    EXPECT_EQ(number("99999999999", Kind::integer), 2147483647);
    EXPECT_EQ(number("99999", Kind::short_integer), 32767);
    EXPECT_EQ(number("-5", Kind::long_integer), 77);
    EXPECT_EQ(number("-5", Kind::decimal), -5);
    EXPECT_EQ(number("5", Kind::text), 77);

    std::string target;
    RES_put("d", "/data");
    EXPECT_EQ(RES_getval("d", target, Kind::directory), 1);
    EXPECT_EQ(target, "/data/");
    RES_put("d", "none");
    EXPECT_EQ(RES_getval("d", target, Kind::directory), 1);
    EXPECT_EQ(target, "");
    RES_put("d", "post,out.ps");
    EXPECT_EQ(RES_getval("d", target, Kind::device), 1);
    EXPECT_EQ(target, "out.ps");
    EXPECT_EQ(FLAG_get(kFlagDevice), 4);
    EXPECT_EQ(RES_set_device("Quick"), 5);
    EXPECT_EQ(RES_set_device(""), 1);

    RES_append(kMissing, "list", "a", Kind::list);
    RES_append(kMissing, "list", "b,c", Kind::list);
    EXPECT_EQ(RES_getvals("list"), (std::vector<std::string>{"a", "b,c"}));
    EXPECT_TRUE(RES_getvals("never_set").empty());
}

TEST(ResourceHelp, ListsEveryResourceInOrder) {
    testing::internal::CaptureStdout();
    const std::array keyed{57, 73, 96, 9999};
    RES_help_print("radar", keyed, RES_positional_ids());
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "radar syntax (version:5.60-LINUX-X11)\n"
              "   radar [options...]\n"
              "Keyed options...\n"
              " -df file    Resource/defaults file name\n"
              " -na name    Program name\n"
              " -h          Print this help\n"
              " -me level   Message level to be displayed:\n"
              "             none,print,error,warn,mess,out1,*out2,out3,out4,debug\n"
              " -re region or [proj],clat,clon[,nx,ny][,dx,dy]\n"
              "             Region to be used for plotting and gridding\n"
              "               region=predefined region:\n"
              "                  us,ne,at,se,mw,sp,nw,sw,etc\n"
              "               proj=projection, clat=central latitude, clon=central longitude,\n"
              "               nx,ny=number of gridpoints and dx,dy=grid spacing\n"
              "                  us,ne,at,se,mw,sp,nw,sw,var\n"
              "9999\n"
              "Positional options...\n"
              " file [file...]  Input file names\n");
}
