/// What the program leaves on the disk: whole files or none, under the names that were asked for.

#include <chrono>
#include <random>
#include <thread>

#include "app/child_process.h"
#include "app/program_run.h"

namespace {

namespace fs = std::filesystem;

const std::string kImage = "-ba -inp nids -de d,memory -ge 320x240 ";

std::vector<std::string> names_in(const std::string &directory) {
    std::vector<std::string> names;
    for (const auto &entry : fs::recursive_directory_iterator(directory))
        if (entry.is_regular_file()) names.push_back(entry.path().filename().string());
    std::ranges::sort(names);
    return names;
}

/// As the end of the file shows; true for files that are no output.
bool is_whole(const std::string &path) {
    const std::string bytes = file_text(path);
    if (path.ends_with(".png")) return bytes.size() > 8 && bytes.find("IEND") == bytes.size() - 8;
    return !path.ends_with(".ps") || bytes.ends_with("%%EOF\n");
}

TEST(Outputs, AFullDiskLeavesNoPart) {
    const ProgramRun run;
    run.product("ncr", samples::composite(0));
    const std::string small = "-ba -inp nids -de d,memory -ge 640x480 -mf none -pp ";
    struct Case {
        std::string arguments;
        const char *name, *message;
    };
    const std::vector<Case> cases{
        {"-ba -inp nids -mf none -de p,out/page.ps ", "page.ps",
         "gps_close: Error writing postscript file: out/page.ps"},
        {small + "png=out/x.png ", "x.png", "PNG_write: Unable to write: out/x.png"},
        {small + "gif=out/x.gif ", "x.gif", "GIF_write: Unable to write: out/x.gif"},
        {small + "img=out/x.img ", "x.img", "IMG_write: Unable to write: out/x.img"},
        {small + "xwd=out/x.xwd ", "x.xwd", "XWD_write: out/x.xwd"},
        {small + "anim=out/a.gif ", "a.gif", "AnimatedGif: Unable to write: out/a.gif"},
        {"-ba -inp nids -pl none -of vyx -gp out ", "308_37_20030704_2200.grd",
         "NIDS_grd_out_file: Error writing grid file: out/308_37_20030704_2200.grd"},
    };
    for (const Case &c : cases) {
        fs::remove_all(run.dir.at("out"));
        const RunResult full = run(c.arguments + "ncr", "ulimit -f 4; ");
        EXPECT_EQ(full.status, 1) << c.name;
        EXPECT_TRUE(contains(full.err, c.message + std::string(": File too large\n"))) << full.err;
        EXPECT_TRUE(names_in(run.dir.at("out")).empty()) << c.name;
        EXPECT_EQ(run(c.arguments + "ncr").status, 0) << c.name;
        EXPECT_EQ(names_in(run.dir.at("out")), std::vector<std::string>{c.name});
        const std::string old = file_text(run.dir.at("out/" + std::string(c.name)));
        EXPECT_EQ(run(c.arguments + "ncr", "ulimit -f 4; ").status, 1) << c.name;
        EXPECT_EQ(file_text(run.dir.at("out/" + std::string(c.name))), old) << "the old one stays";
    }
    EXPECT_EQ(run("-ba -inp nids -pl none -of vyx:@/dev/full/x.grd ncr").status, 1);
    EXPECT_EQ(run("-ba -inp nids -pl none -of vyx:@/dev/full ncr").status, 1);
}

TEST(Outputs, ARunThatIsKilledLeavesWholeFiles) {
    const ProgramRun run;
    std::string files;
    for (int i = 0; i < 60; ++i)
        files +=
            " " + run.product("f" + std::to_string(i), samples::reflectivity(samples::kVolumeMinutes * i));
    std::mt19937 random(9); // NOLINT: the same moments in each run of the test
    int killed = 0, whole = 0;
    for (int moment = 0; moment < 50; ++moment) {
        const std::string out = run.dir.at("out" + std::to_string(moment));
        const std::string output = moment % 2 == 0
                                       ? "-ba -inp nids -de d,memory -ge 200x150 -pp png=" + out + "/%i.png"
                                       : "-ba -inp nids -de p," + out + "/page.ps";
        Child child({"sh", "-c", "exec " VYX_PROGRAM " -mf none " + output + files}, run.dir.at("log"));
        // From the first file on, that is in the middle of the work.
        for (int i = 0; i < 10000 && (!fs::exists(out) || fs::is_empty(out)); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        std::this_thread::sleep_for(std::chrono::milliseconds(random() % 100));
        kill(child.pid(), SIGTERM);
        if (child.wait_for_end(std::chrono::seconds(20)) == -1) ++killed;
        for (const std::string &name : names_in(out)) {
            EXPECT_TRUE(name.ends_with(".png") || name.ends_with(".ps")) << name;
            EXPECT_TRUE(is_whole(out + "/" + name)) << name << " " << moment;
            ++whole;
        }
    }
    EXPECT_GT(killed, 25);
    EXPECT_GT(whole, 0);
}

TEST(Outputs, WhoReadsWhileWeWriteSeesWholePictures) {
    const ProgramRun run;
    run.product("n0r", samples::reflectivity(0));
    run.product("ncr", samples::composite(0));
    ASSERT_EQ(run(kImage + "-pp png=x.png n0r").status, 0);
    const Child writer(
        {"sh", "-c",
         "while :; do for f in n0r ncr; do " VYX_PROGRAM " " + kImage + "-pp png=x.png $f; done; done"},
        run.dir.at("log"));
    constexpr int kReads = 1000, kLeastChanges = 50;
    int whole = 0, reads = 0, changes = 0;
    std::string before;
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(2);
    while ((reads < kReads || changes < kLeastChanges) && std::chrono::steady_clock::now() < end) {
        std::string now = file_text(run.dir.at("x.png"));
        ++reads;
        whole += now.size() > 8 && now.find("IEND") == now.size() - 8 ? 1 : 0;
        changes += now != before ? 1 : 0;
        before = std::move(now);
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    EXPECT_EQ(whole, reads);
    EXPECT_GE(reads, kReads);
    EXPECT_GE(changes, kLeastChanges);
}

TEST(Outputs, AnInputIsNotWrittenOver) {
    const ProgramRun run;
    run.product("n0r", samples::reflectivity(0));
    const std::string before = file_text(run.dir.at("n0r"));
    fs::create_symlink("n0r", run.dir.at("link"));
    for (const char *name : {"n0r", "./n0r", "link", "+n0r"}) {
        const RunResult page = run("-ba -inp nids -de p," + std::string(name) + " n0r");
        EXPECT_EQ(page.status, 4) << name;
        EXPECT_TRUE(contains(page.err, ": it is an input file\n")) << page.err;
    }
    for (const std::string kind : {"png", "gif", "xwd", "img", "anim"})
        EXPECT_EQ(run(kImage + "-pp " + kind + "=link n0r").status, 1) << kind;
    run.product("ncr", samples::composite(0));
    EXPECT_EQ(run("-ba -inp nids -de p,page.ps -of vyx:@n0r ncr n0r").status, 1);
    for (const std::string kind : {"fi", "-fi", "@fi", "dfi"}) {
        const RunResult log = run("-me=" + kind + "=link -inp nids -de p,page.ps n0r");
        EXPECT_TRUE(contains(log.err, "-me (message): A log file is no input file: link\n")) << log.err;
    }
    const RunResult closed = run("-me fi=/dev/null/log -inp nids -de p,page.ps n0r");
    EXPECT_TRUE(contains(closed.err, "Unable to open log file: /dev/null/log: Not a directory\n"));
    const RunResult full = run("-me +fi=/dev/full -inp nids -mf none -de p,page.ps n0r");
    EXPECT_EQ(full.status, 1);
    EXPECT_TRUE(contains(full.err, "Error writing log file: /dev/full: No space left on device\n"));
    EXPECT_EQ(file_text(run.dir.at("n0r")), before);
}

TEST(Outputs, EveryProductHasItsGridFile) {
    const ProgramRun run;
    run.product("ncr", samples::composite(0));
    run.product("net", samples::echo_tops(0));
    EXPECT_EQ(run("-ba -inp nids -pl none -of vyx -gp 'my grids' ncr net ncr").status, 0);
    EXPECT_EQ(names_in(run.dir.at("my grids")),
              (std::vector<std::string>{"308_37_20030704_2200.grd", "308_41_20030704_2200.grd"}));

    const RunResult one = run("-ba -inp nids -pl none '-of=vyx:@one grid' ncr net");
    EXPECT_EQ(one.status, 1);
    EXPECT_TRUE(contains(one.err, "NIDS_grd_out_file: Not written: one grid: it holds the raster 1 of ncr\n"))
        << one.err;
    EXPECT_EQ(file_text(run.dir.at("one grid")), file_text(run.dir.at("my grids/308_37_20030704_2200.grd")));
}

TEST(Outputs, EachKindOfImageIsWritten) {
    const ProgramRun run;
    run.product("n0r", samples::reflectivity(0));
    const RunResult all = run(kImage + "-pp 'png=my picture.gif,gif=p.png,img,xwd' -of png=other.png n0r");
    EXPECT_EQ(all.status, 0) << all.err;
    EXPECT_EQ(all.err, "");
    const std::vector<std::pair<const char *, const char *>> begins{
        {"my picture.gif", "\x89PNG"}, {"p.png", "GIF89a"}, {"vyx.img", "VYXIMG"}, {"other.png", "\x89PNG"}};
    for (const auto &[name, beginning] : begins)
        EXPECT_TRUE(file_text(run.dir.at(name)).starts_with(beginning)) << name;
    EXPECT_EQ(file_text(run.dir.at("vyx.xwd")).substr(4, 4), std::string("\0\0\0\7", 4));

    const RunResult same = run(kImage + "-pp png=same,gif=same n0r");
    EXPECT_EQ(same.status, 1);
    EXPECT_TRUE(
        contains(same.err, "Another image of this picture has the name, GIF file not written: same\n"));
    EXPECT_TRUE(file_text(run.dir.at("same")).starts_with("\x89PNG"));
}

} // namespace
