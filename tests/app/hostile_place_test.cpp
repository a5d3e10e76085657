/// Runs in directories where somebody else may have left something.

#include <array>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "app/program_run.h"

namespace {

constexpr const char *kPlot = "-ba -inp nids -mf none ";
constexpr uid_t kSomebody = 54321;

class HostilePlace : public testing::Test {
protected:
    HostilePlace() { run.product("file", samples::reflectivity(0)); }
    /// True when a command has run, which all of them tell by a file.
    [[nodiscard]] bool ran() const { return std::filesystem::remove(run.dir.at("RAN")); }
    [[nodiscard]] bool drawn() const { return std::filesystem::remove(run.dir.at("page.ps")); }
    void settings(const std::string &entry, mode_t mode = 0644) const {
        run.dir.write(".vyxdef", entry);
        ASSERT_EQ(chmod(run.dir.at(".vyxdef").c_str(), mode), 0);
    }

    ProgramRun run;
};

TEST_F(HostilePlace, SettingsThatOthersMayWriteAreNotRead) {
    const std::array entries{"*image_path: \"|touch RAN; :\"\n", "*file_path: \"|touch RAN;\"\n",
                             "*message: \"fi=|touch RAN\"\n", "*device: \"p,|touch RAN\"\n",
                             "*filename: \"|touch RAN\"\n"};
    const std::string refused = "-df (default): ./.vyxdef: Settings are not read, others may write to it; "
                                "-df . allows it\n";
    for (const std::string entry : entries) {
        settings(entry, 0646);
        const std::string device = contains(entry, "device") ? "" : "-de p,page.ps ";
        const std::string name = contains(entry, "filename") ? "" : "file";
        const RunResult result = run(kPlot + device + "-pp png=x.png " + name);
        EXPECT_FALSE(ran()) << entry;
        EXPECT_EQ(count_of(result.err, refused), 1) << result.err;
        EXPECT_EQ(drawn(), !device.empty() && !name.empty()) << entry << result.err;
    }
    settings("*device: p,page.ps\n", 0664);
    EXPECT_TRUE(contains(run(std::string(kPlot) + "file").err, "others may write to it"));
    EXPECT_FALSE(drawn());
    for (const char *allowed : {"-df . ", "-df .vyxdef ", "-default=./.vyxdef "}) {
        const RunResult result = run(std::string(kPlot) + allowed + "file");
        EXPECT_EQ(result.status, 0) << allowed << result.err;
        EXPECT_FALSE(contains(result.err, "-df")) << result.err;
        EXPECT_TRUE(drawn()) << allowed;
    }
    // A search path that stands in the environment is there wherever the user goes.
    setenv("vyxdefault", ".:", 1);
    EXPECT_EQ(run(std::string(kPlot) + "file").status, 4);
    unsetenv("vyxdefault");
    EXPECT_FALSE(drawn());
}

TEST_F(HostilePlace, TheDirectoryCountsAsItsFilesDo) {
    settings("*device: p,page.ps\n");
    std::filesystem::copy_file(VYX_SOURCE_DIR "/data/vyx.clr", run.dir.at("vyx.clr"));
    const std::string plot = std::string(kPlot) + "-de d,memory -pp png=x.png -me mess file";
    EXPECT_TRUE(contains(run(plot).out, "Settings file: ./.vyxdef\n"));
    ASSERT_EQ(chmod(run.dir.path().c_str(), 0777), 0);
    const RunResult result = run(plot);
    EXPECT_FALSE(contains(result.out, "Settings file: ./"));
    EXPECT_TRUE(contains(result.out, "/data/vyx.cfg\n")) << result.out;
    for (const char *told :
         {"./.vyxdef: Settings are not read, others may write to its directory; -df .",
          "./vyx.clr: Its directory is no place of data, others may write to its directory"})
        EXPECT_EQ(count_of(result.err, told), 1) << result.err;
    EXPECT_EQ(run("-df . " + plot).err, "MAP_process: Map file not found: none\n");
    ASSERT_EQ(chmod(run.dir.path().c_str(), 0755), 0);

    if (chown(run.dir.at(".vyxdef").c_str(), kSomebody, kSomebody) != 0)
        GTEST_SKIP() << "only root can give a file to another user";
    EXPECT_TRUE(contains(run(plot).err, "./.vyxdef: Settings are not read, it belongs to another user"));
    ASSERT_EQ(chown(run.dir.at(".vyxdef").c_str(), 0, 0), 0);
    ASSERT_EQ(chown(run.dir.path().c_str(), kSomebody, kSomebody), 0);
    EXPECT_TRUE(contains(run(plot).err, "Settings are not read, its directory belongs to another user"));
}

TEST_F(HostilePlace, OwnSettingsRunCommandsWhereCommandsStand) {
    for (const auto &[entry, told] : std::vector<std::pair<std::string, std::string>>{
             {"*image_path: \"|touch RAN; :\"\n", "-ip (image_path): \"|touch RAN; :\" is not run"},
             {"*file_path: \"|touch RAN;\"\n", "-fp (file_path): \"|touch RAN;\" is not run"},
             {"*grid_path: \"|touch RAN;\"\n", "-gp (grid_path): \"|touch RAN;\" is not run"},
             {"*message: \"fi=|touch RAN\"\n", "A log file is no command: |touch RAN"},
             {"*message: \"dfi=|touch RAN\"\n", "A log file is no command: |touch RAN"},
             {"*in_file: \"|touch RAN\"\n", "-if (in_file): \"|touch RAN\" is not run"}}) {
        settings(entry);
        const RunResult result =
            run(std::string(kPlot) + "-cu '#2003' -de d,memory -pp png=x.png -of vyx=%Gg");
        const RunResult named = run(std::string(kPlot) + "-de d,memory -pp png=x.png -of vyx=%Gg file");
        EXPECT_FALSE(ran()) << entry;
        EXPECT_TRUE(contains(result.err, told) && contains(named.err, told)) << entry << result.err;
    }
    run.dir.write("name_conv", "nids |touch%dRAN - 0\npic |touch<RAN - 0\n");
    settings("*name_conv: ./name_conv\n");
    run(std::string(kPlot) + "-cu '#2003'");
    run(std::string(kPlot) + "-de d,memory -pp png=pic file");
    EXPECT_FALSE(ran() || std::filesystem::exists(run.dir.at("00RAN"))) << "a convention makes no command";

    settings("*device: \"p,|cat > page.ps; touch RAN\"\n*filename: \"|cat file\"\n");
    EXPECT_EQ(run(kPlot).status, 0);
    EXPECT_TRUE(ran() && drawn());
    std::filesystem::remove(run.dir.at(".vyxdef"));
    EXPECT_EQ(run(std::string(kPlot) + "-de d,memory -ip pictures -pp 'png=|cat>page.ps' file").status, 0);
    EXPECT_TRUE(drawn()) << "an output that the user gave";
}

TEST_F(HostilePlace, NamesInTheDirectoryAreNoOptionsAndNoCommands) {
    for (const char *name : {"-de=p,|touch RAN", "--me=fi=|touch RAN", "|touch RAN", "z\n|touch RAN", "--"})
        run.product(name, samples::reflectivity(0));
    std::filesystem::create_directory(run.dir.at("-df=x"));
    std::filesystem::create_symlink("nowhere", run.dir.at("-device=p,|touch RAN"));
    for (const char *names : {"*", "-- *", "./*"}) {
        const RunResult result = run(std::string(kPlot) + "-de p,page.ps " + names);
        EXPECT_FALSE(ran()) << names;
        const std::string page = file_text(run.dir.at("page.ps"));
        EXPECT_EQ(count_of(page, "showpage\n"), std::string_view(names) == "*" ? 4 : 5)
            << names << result.err;
        EXPECT_TRUE(contains(result.err, "No file is read whose name has a line break: ")) << result.err;
        std::filesystem::remove(run.dir.at("page.ps"));
    }
    EXPECT_EQ(run(std::string(kPlot) + "-de p,page.ps '|touch RAN'").status, 0);
    EXPECT_TRUE(drawn() && !ran()) << "a file of that name";
    EXPECT_EQ(run(std::string(kPlot) + "-de p,page.ps '|touch RAN; cat file'").status, 0);
    EXPECT_TRUE(drawn() && ran());
    EXPECT_EQ(run(std::string(kPlot) + "-de p,page.ps -- -pd us").status, 10);
    EXPECT_EQ(run(std::string(kPlot) + "-ti -- -de p,page.ps file").status, 0)
        << "a value is no end of options";
}

TEST_F(HostilePlace, CommandsThatFailAreInputsThatAreNotWhole) {
    const std::string plot = std::string(kPlot) + "-de p,page.ps -pp ";
    const RunResult result = run(plot + "nobar '|cat file; exit 3'");
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(contains(result.err, "Ended with an error: |cat file; exit 3\n")) << result.err;
    EXPECT_TRUE(contains(result.err, "Incomplete product, its input ended early: |cat file; exit 3\n"));
    EXPECT_TRUE(drawn());
    EXPECT_EQ(run(plot + "strict '|cat file; exit 3'").status, 10);
    EXPECT_FALSE(drawn());
    EXPECT_EQ(run(plot + "strict '|cat file'").status, 0);
}

TEST_F(HostilePlace, StandardStreams) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
    const auto shell = [this](const std::string &arguments) {
        const std::string command = "(exec " VYX_PROGRAM " " + arguments + ") 2>stderr.txt </dev/null";
        const int status = std::system(command.c_str());
        return RunResult{WEXITSTATUS(status), "", file_text(run.dir.at("stderr.txt"))};
    };
    const RunResult full = shell("-h > /dev/full");
    EXPECT_EQ(full.status, 1);
    EXPECT_TRUE(contains(full.err, "VYX_exit: Error writing standard output: No space left on device\n"));
    EXPECT_EQ(shell(std::string(kPlot) + "-de p,- file > /dev/full").status, 1);
    EXPECT_EQ(shell(std::string(kPlot) + "-de p,- file >&-").status, 4) << "a page that goes nowhere";
    EXPECT_EQ(shell(std::string(kPlot) + "-de p,page.ps - <&-").status, 10);
    EXPECT_EQ(shell(std::string(kPlot) + "-de p,page.ps file <&- >&- 2>&-").status, 0);
    EXPECT_TRUE(file_text(run.dir.at("page.ps")).starts_with("%!PS")) << "no message stands in it";
}

} // namespace
