/// Whole runs of the program: arguments in, status, messages and pages out.

#include <tuple>

#include <gtest/gtest.h>

#include "app/program_run.h"
#include "lib/options/table.h"
#include "plot/session/images.h"

namespace {

struct RunCase {
    const char *arguments;
    int status;
    const char *out, *err; ///< parts of what is printed
};

TEST(Program, HelpNamesEveryOption) {
    const ProgramRun run;
    const RunResult result = run("-h");
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(result.out.starts_with("vyxradar: This program plots various types of radar data\n"
                                       "vyxradar syntax (version:5.60-LINUX-X11)\n   vyxradar [options...]\n"
                                       "Keyed options...\n -df file    Resource/defaults file name\n"
                                       " -na name    Program name\n -h          Print this help\n"));
    EXPECT_EQ(RES_keyed_ids().size(), 57U);
    for (const int id : RES_keyed_ids())
        EXPECT_TRUE(contains(result.out, "\n " + std::string(RES_descriptor(id)->option_text))) << id;
    EXPECT_TRUE(result.out.ends_with("Positional options...\n file [file...]  Input file names\n"));
}

TEST(Program, StatusesAndMessages) {
    const ProgramRun run;
    run.product("n0r", samples::reflectivity(0));
    run.product("vwp", samples::wind_profile(0));
    run.dir.write("text", "NOUS63 KLSX 041404\r\r\nFTMLSX\r\r\nMESSAGE DATE:  JAN 04 2022 14:04:57\n");
    run.dir.write("empty", "");
    const RunCase cases[]{
        {"", 1, "Enter the radar filename: ", "End of input"},
        {"-ba -inp mdr n0r", 10, "", "Unable to open file:n0r\n"},
        {"-ba text", 10, "", ""},
        {"-ba -inp nids", 10, "", "File not found: "},
        {"-ba -inp nids none.nids", 10, "", "NIDS_open_file: Unable to open file:none.nids\n"},
        {"-ba -inp nids text", 10, "", "NIDS_open_file: Unable to read file:text\n"},
        {"-ba -inp nids empty", 10, "", "NIDS_open_file: Unable to read file:empty\n"},
        {"-inp nids", 1, "List of available files:", "End of input"},
        {"-inp nids list", 0, "", ""},
        {"-ba -inp nids -de d n0r", 4, "", "GPH_begin: Error opening workstation\n"},
        {"-ba -inp nids -de w n0r", 4, "", "GPH_begin: Error opening workstation\n"},
        {"-ba -inp nids -de m,/dev/null/x n0r", 4, "", "gopen_ws: unable to open metafile\n"},
        {"-ba -inp nids -de m,/dev/full n0r", 1, "",
         "gmeta_close: Error writing metafile: /dev/full: No space"},
        {"-ba -inp nids -de m,a.meta,gcm n0r", 0, "", "\"gcm\" is not known"},
        {"-ba -inp nids -de m,a.cgm,cgm n0r vwp", 0, "", ""},
        {"-ba -inp nids -de m,a.meta n0r vwp", 1, "", "One picture only in a metafile"},
        {"-ba -inp nids -mf mf:a.meta -de p,a.ps n0r", 0, "", ""},
        {"-ba -inp nids -pd 99,99,99 n0r", 43, "", "DOM_decode: Invalid plot domain\nInvalid domain\n"},
        {"-ba -inp nids -de p,a.ps -pd size,640,480 n0r", 43, "", "is no map\nInvalid domain\n"},
        {"-ba -inp nids -de p,a.ps -pd zoom,40,-90 n0r", 43, "", "is no map\nInvalid domain\n"},
        {"-ba -inp nids -de p,a.ps -pd us vwp", 0, "", "the plot domain is not used\n"},
        {"-ba -inp nids -re nowhere n0r", 43, "", "Invalid domain\n"},
        {"-ba -inp nids -de p,/dev/full n0r", 1, "",
         "gps_close: Error writing postscript file: /dev/full: No space left on device\n"},
        {"-ba -inp nids -de p,/dev/null/x.ps n0r", 4, "", "gopen_ws: unable to open postscript file\n"},
        {"-ba -inp nids '-de=p,|false' n0r", 1, "", "gps_close: Error writing"},
        {"-ba -inp nids -de p,a.ps -mf none.map n0r", 0, "", "MAP_process: Map file not found: none.map\n"},
        {"-ba -inp nids -de p,a.ps -cof none.lev n0r", 0, "",
         "Unable to read contour level file: none.lev\n"},
        {"-ba -inp nids -de p,a.ps -fl nofont n0r", 0, "", "read_font: unable to load font file: nofont\n"},
        {"-ba -inp nids -de p,a.ps -ct none.clr n0r", 0, "",
         "CLR_read_table: No colors in color table: none.clr\n"},
        {"-ba -inp nids -de p,a.ps -pl none n0r", 0, "", ""},
        {"-ba -inp nids -de p,a.ps -nosuch thing -sc abc n0r", 0, "", ""},
        {"-ba -inp nids -de d,memory -dr none -pp png=x.png n0r", 1, "",
         "PLT_dump: Unable to write PNG file: x.png\n"},
    };
    for (const RunCase &c : cases) {
        const RunResult result = run(c.arguments);
        EXPECT_EQ(result.status, c.status) << c.arguments << "\n" << result.err;
        EXPECT_TRUE(contains(result.out, c.out)) << c.arguments << "\n" << result.out;
        EXPECT_TRUE(contains(result.err, c.err)) << c.arguments << "\n" << result.err;
    }
}

TEST(Program, PagesAreCompleteWhereverTheyGo) {
    const ProgramRun run;
    run.product("n0r", samples::reflectivity(0));
    const char *const ways[]{"-de p,new/dir/page.ps,color n0r", "'-de=p,|cat > new/dir/page.ps' n0r",
                             "-de p,new/dir/page.ps '|cat n0r'"};
    for (const char *way : ways) {
        std::filesystem::remove_all(run.dir.at("new"));
        std::filesystem::create_directory(run.dir.at("new"));
        if (contains(way, "cat >")) std::filesystem::create_directory(run.dir.at("new/dir"));
        const RunResult result = run(std::string("-ba -inp nids ") + way);
        EXPECT_EQ(result.status, 0) << way << result.err;
        const std::string page = file_text(run.dir.at("new/dir/page.ps"));
        EXPECT_TRUE(page.starts_with("%!PS-Adobe-1.0\n")) << way;
        EXPECT_TRUE(page.ends_with("saveobj restore\nshowpage\nend\n%%EOF\n")) << way;
        EXPECT_TRUE(contains(page, "Base reflectivity (Dbz)\n")) << way;
        EXPECT_GT(count_of(page, "%%FA:5\n"), 1000) << way;
    }
}

TEST(Program, EncapsulatedPagesKeepTheirPromises) {
    if (std::system("command -v gs > /dev/null 2>&1") != 0) GTEST_SKIP() << "ghostscript is not installed";
    const ProgramRun run;
    run.product("n0r", samples::reflectivity(0));
    const std::string check = VYX_SOURCE_DIR "/tools/check_eps ";
    for (const std::string options : {"", ",port,color", ",a4", ",ansid,port", ",sz=12x3", ",b1,scale=0.5"}) {
        EXPECT_EQ(run("-ba -inp nids -de p,a.eps,eps" + options + " n0r").status, 0) << options;
        EXPECT_EQ(std::system((check + "a.eps").c_str()), 0) << options;
    }
    // The check itself sees what it is there for.
    for (const std::string change :
         {"initclip showpage", "1 showpage", "9 dict begin showpage", "showpage showpage"}) {
        std::system(("sed 's/^showpage/" + change + "/' a.eps > bad.eps").c_str());
        EXPECT_NE(std::system((check + "bad.eps > said.txt").c_str()), 0) << change;
    }
}

TEST(Program, EachFileOfASeriesHasAPageAndMissingOnesAreSkipped) {
    const ProgramRun run;
    run.product("a", samples::reflectivity(0));
    run.product("c", samples::reflectivity(12));
    const RunResult result = run("-ba -inp nids -de p,page.ps a missing c");
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(contains(result.err, "Unable to open file:missing\n"));
    const std::string page = file_text(run.dir.at("page.ps"));
    EXPECT_EQ(count_of(page, "\nshowpage\n"), 2);
    EXPECT_TRUE(contains(page, "2200Z  4 JUL 03\n"));
    EXPECT_TRUE(contains(page, "2212Z  4 JUL 03\n"));
    // Each is told once, and where whole files are wanted the status tells of them.
    run.dir.write("cut", file_text("a").substr(0, 5000));
    for (const auto &[parameter, status, pages] : {std::tuple{"site", 0, 3}, {"strict", 10, 2}}) {
        const RunResult again =
            run(std::string("-ba -inp nids -de p,page.ps -pp ") + parameter + " none a cut c");
        EXPECT_EQ(again.status, status);
        EXPECT_EQ(count_of(again.err, "Unable to open file:none\n"), 1) << again.err;
        EXPECT_EQ(count_of(again.err, "Incomplete product, 4970 of "), 1) << again.err;
        EXPECT_EQ(count_of(file_text(run.dir.at("page.ps")), "\nshowpage\n"), pages);
    }
}

TEST(Program, ColoursThatAreNoneAreToldOnce) {
    const ProgramRun run;
    run.product("n0r", samples::reflectivity(0));
    for (const char *colors :
         {"-cof 20:300,30:red", "-cof 20:200,30:red", "-cof 0:blue,20:300", "-cot 300"}) {
        const RunResult result =
            run(std::string("-ba -inp nids -de d,memory -pp png=a.png ") + colors + " n0r");
        EXPECT_EQ(count_of(result.err, "\n"), 1) << result.err;
        EXPECT_TRUE(contains(result.err, "00\" is not the number of a colour")) << result.err;
    }
}

TEST(Program, ACutProductDrawsWhatIsThere) {
    const ProgramRun run;
    samples::Level3Product small = samples::reflectivity(0);
    samples::RadialData data;
    data.delta_deg = 30;
    data.radials.assign(12, std::vector<std::uint8_t>(30, 9));
    small.packets = {radial_packet(data)};
    small.pages = {{samples::text_packet(1, 0, 1, samples::storm_table(samples::Scene(0)).front())}};
    const samples::Bytes whole = level3_file(small, samples::Framing::wmo, samples::Compression::none);
    const std::string_view bytes(reinterpret_cast<const char *>(whole.data()), whole.size());
    EXPECT_GT(cells_of_growing_parts(run, bytes, 7, "-ba -inp nids"), 300);
}

TEST(Program, SettingsComeFromFileEnvironmentAndCommand) {
    const ProgramRun run;
    run.product("n0r", samples::reflectivity(0));
    run.dir.write("my.cfg", "*device: p,from_file.ps\n*color_fill: ref.lev\nother.device: p,wrong.ps\n");
    EXPECT_EQ(run("-ba -inp nids -df my.cfg n0r").status, 0);
    EXPECT_TRUE(std::filesystem::exists("from_file.ps"));
    setenv("vyxdevice", "p,from_environment.ps", 1);
    EXPECT_EQ(run("-ba -inp nids -df my.cfg n0r").status, 0);
    EXPECT_TRUE(std::filesystem::exists("from_environment.ps"));
    EXPECT_EQ(run("-ba -inp nids -df my.cfg -de p,from_command.ps n0r").status, 0);
    EXPECT_TRUE(std::filesystem::exists("from_command.ps"));
    unsetenv("vyxdevice");
}

TEST(Program, TimesAreShownInTheZoneOfThePlot) {
    const ProgramRun run;
    run.product("n0r", samples::reflectivity(0));
    EXPECT_EQ(run("-ba -inp nids -pp tz=-CDT:-5 -la=ul:At_%D -de p,a.ps n0r").status, 0);
    const std::string page = file_text(run.dir.at("a.ps"));
    EXPECT_EQ(count_of(page, "5:00 PM CDT [2200Z]  4 JUL 03\n"), 2) << "in the upper right and in the label";
}

} // namespace
