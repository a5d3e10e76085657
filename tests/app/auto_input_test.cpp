/// The input "auto": whatever names the file, and whatever the file is.

#include <gtest/gtest.h>

#include "app/program_run.h"
#include "samples/level2.h"
#include "samples/mosaic.h"
#include "samples/rcm.h"

namespace {

class AutoInput : public testing::Test {
protected:
    AutoInput() {
        run.dir.write("name_conv", "nids  %D/%s_%Y%m%d_%h%n  -  100\nlev2  %D/vol_%Y%m%d_%h%n  -  100\n");
        std::filesystem::create_directory(run.dir.at("data"));
        run.product("data/LSX_20030704_2200", samples::reflectivity(0));
        run.product("data/LSX_20030704_2206", samples::reflectivity(6));
        run.product("plain", samples::reflectivity(0));
        volume("data/vol_20030704_2200");
        volume("volume");
        run.dir.write("text", "no radar data\n");
    }
    void volume(const std::string &name) const {
        const samples::Bytes bytes =
            level2_file(samples::level2_volume(0, false), samples::Level2Form::records);
        run.dir.write(name, {reinterpret_cast<const char *>(bytes.data()), bytes.size()});
    }
    /// What was drawn: "lev2", "nids", or nothing.
    std::string drawn() const {
        const std::string page = file_text(run.dir.at("a.ps"));
        if (contains(page, "Base reflectivity (Dbz)\n")) return "nids";
        return contains(page, "Reflectivity (Dbz)\n") ? "lev2" : "";
    }
    RunResult plot(const std::string &arguments, const std::string &before = {}) const {
        std::filesystem::remove(run.dir.at("a.ps"));
        // The shell of the run takes what stands before it as the first command of a pipe.
        const std::string command =
            before + VYX_PROGRAM " -ba -inp auto -nc ./name_conv -dp data -mf none -de p,a.ps " + arguments +
            " >stdout.txt 2>stderr.txt";
        const int status = std::system(command.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, file_text(run.dir.at("stdout.txt")),
                file_text(run.dir.at("stderr.txt"))};
    }
    const ProgramRun run;
};

TEST_F(AutoInput, TakesWhatTheFileSelectionFinds) {
    const struct {
        const char *before, *arguments, *kind;
    } cases[]{
        {"", "plain", "nids"},
        {"", "volume", "lev2"},
        {"", "@plain", "nids"},
        {"", "LSX_20030704_2200", "nids"},
        {"", "vol_20030704_2200", "lev2"},
        {"", "-if lev2 vol_20030704_2200", "lev2"},
        {"", "'|cat plain'", "nids"},
        {"", "-va ref@0.5 '|cat volume'", "lev2"},
        {"cat plain | ", "-", "nids"},
        {"cat volume | ", "-va ref@0.5 -", "lev2"},
        {"", "-if nids:s=LSX -cu '#200307042300la'", "nids"},
        {"", "-cu '#200307042201la#3'", "lev2"},
        {"", "'#200307042201la#3'", "lev2"},
        {"", "-if nids:s=LSX '#200307042205-0:05'", "nids"},
        {"", "missing text volume", "lev2"},
        {"", "-if nids:s=LSX -nh 0:12,0:06 -cu '#200307042154'", "nids"},
        {"", "-if nids:s=LSX -nh 0:12,0:06 LSX_20030704_2154", "nids"},
    };
    for (const auto &c : cases) {
        const RunResult result = plot(c.arguments, c.before);
        EXPECT_EQ(drawn(), c.kind) << c.arguments << "\n" << result.err;
        EXPECT_EQ(result.status, 0) << c.arguments << "\n" << result.err;
    }
}

TEST_F(AutoInput, KnowsMosaicsAndCodedMessages) {
    const auto write = [this](const char *name, const samples::Bytes &bytes) {
        run.dir.write(name, {reinterpret_cast<const char *>(bytes.data()), bytes.size()});
    };
    samples::NowradFile mosaic = samples::nowrad_lambert(0);
    mosaic.level = [](int line, int column) { return static_cast<unsigned>(line + column) % 16; };
    write("one", samples::nowrad_file(mosaic));
    write("two", samples::kavrad_file({true, true, 1057356000,
                                       [](int line, int) { return static_cast<unsigned>(line / 100) % 7; }}));
    write("three", rcm_bulletin(samples::rcm(0), samples::RcmForm::lines));
    write("four", rcm_bulletin(samples::rcm(0), samples::RcmForm::wrapped));
    const struct {
        const char *arguments, *title, *before;
    } cases[]{{"one", "NOWRad Radar US Composite (Dbz)\n", ""},
              {"two", "KAV Radar Master Grid\n", ""},
              {"three", "RCM Base Reflectivity\n", ""},
              {"four", "RCM Base Reflectivity\n", ""},
              {"'|cat four'", "RCM Base Reflectivity\n", ""},
              {"-", "NOWRad Radar US Composite (Dbz)\n", "cat one | "},
              {"'|gzip -c two'", "KAV Radar Master Grid\n", ""},
              {"-", "RCM Base Reflectivity\n", "gzip -c three | "}};
    for (const auto &c : cases) {
        const RunResult result =
            plot(std::string("-pd ps,38.7,-90.7,11,11,0.5,0.5 ") + c.arguments, c.before);
        EXPECT_EQ(result.status, 0) << c.arguments << "\n" << result.err;
        EXPECT_TRUE(contains(file_text(run.dir.at("a.ps")), c.title)) << c.arguments;
    }
}

TEST_F(AutoInput, TellsWhatItCannotTake) {
    const struct {
        const char *arguments, *err;
    } cases[]{
        {"missing", "RAD_cvt_in_file: Unable to open file:missing: No such file or directory\n"},
        {"text", "RAD_cvt_in_file: Kind of file not recognised: text\n"},
        {"'|exit 3'", "FILE_open_input: Ended with an error: |exit 3\n"
                      "RAD_cvt_in_file: Kind of file not recognised: |exit 3\n"},
        {"missing text", "RAD_cvt_in_file: Unable to open file:missing: No such file or directory\n"
                         "RAD_cvt_in_file: Kind of file not recognised: text\n"},
        {"-cu '#200307031200'", "File not found: data/0_20030703_1200\n"},
    };
    for (const auto &c : cases) {
        const RunResult result = plot(c.arguments);
        EXPECT_EQ(result.status, 10) << c.arguments;
        EXPECT_EQ(result.err, c.err) << c.arguments;
    }
}

TEST_F(AutoInput, SizesAndTimesOfFilesCount) {
    const std::string latest = "-if nids:s=LSX -cu '#200307042300la'";
    EXPECT_EQ(plot(latest + " -me mess").status, 0);
    EXPECT_TRUE(contains(file_text(run.dir.at("stdout.txt")), "Current filename: data/LSX_20030704_2206\n"));
    EXPECT_EQ(plot(latest + " -pp min_size=100000000").status, 10) << "no file is large enough";
    // A picture's name takes the time of the data where the file's name tells none.
    EXPECT_EQ(plot("-de d,memory -pp png=%Y%m%d%h%n.png plain").status, 0);
    EXPECT_TRUE(std::filesystem::exists(run.dir.at("200307042200.png")));
}

} // namespace
