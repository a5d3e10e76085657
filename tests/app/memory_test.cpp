/// What becomes of runs that get no more memory, and how the program is built.

#include <gtest/gtest.h>

#include "app/program_run.h"
#include "samples/level3.h"

namespace {

/// A run with so many kilobytes of address space.
RunResult within(const ProgramRun &run, int kilobytes, const std::string &arguments) {
    run.dir.write("limited", "ulimit -v " + std::to_string(kilobytes) + "\nexec " VYX_PROGRAM " " +
                                 arguments + " </dev/null >out 2>err\n");
    const int status = std::system("sh limited");
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, file_text(run.dir.at("out")),
            file_text(run.dir.at("err"))};
}

/// A program with sanitizers lives in terabytes of addresses, and is built otherwise.
bool is_as_installed() {
    return VYX_HARDENED != 0;
}

TEST(Memory, ThatRunsOutInASeriesKeepsWhatWasDrawn) {
    if (!is_as_installed()) GTEST_SKIP() << "a program with sanitizers";
    const ProgramRun run;
    run.product("a", samples::reflectivity(0));
    run.product("c", samples::reflectivity(1));
    // A product of forty million bytes; whole as far as its data go.
    using namespace samples;
    Bytes bytes = level3_file(reflectivity(0), Framing::none, Compression::none);
    constexpr std::size_t kBehindDescription = 120;
    Bytes rest(bytes.begin() + kBehindDescription, bytes.end());
    rest.resize(40'000'000);
    bytes.resize(kBehindDescription);
    const Bytes packed = bzip2_compressed(rest);
    bytes.insert(bytes.end(), packed.begin(), packed.end());
    run.dir.write("b", {reinterpret_cast<const char *>(bytes.data()), bytes.size()});

    constexpr int kKilobytes = 60'000;
    const std::string page = "-ba -inp nids -de p,page.ps,color ";
    RunResult result = within(run, kKilobytes, page + "a b c");
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.err, "RADAR_plot: Out of memory at file: b\n");
    const std::string text = file_text(run.dir.at("page.ps"));
    EXPECT_TRUE(text.ends_with("%%EOF\n"));
    EXPECT_EQ(count_of(text, "\nshowpage\n"), 1);
    EXPECT_GT(count_of(text, "%%FA:5\n"), 1000);
    result =
        within(run, kKilobytes, "-ba -inp nids -de d,memory -ge 400x320 -pp png=x%i.png,anim=x.gif a b c");
    EXPECT_EQ(result.status, 3) << result.err;
    EXPECT_TRUE(file_text(run.dir.at("x00.png")).ends_with("IEND\xAE\x42\x60\x82"));
    EXPECT_FALSE(std::filesystem::exists(run.dir.at("x01.png")));
    EXPECT_TRUE(file_text(run.dir.at("x.gif")).ends_with(";"));
    // The first file is opened before there is a page.
    result = within(run, kKilobytes, page + "b");
    EXPECT_EQ(result.status, 3) << result.err;
    EXPECT_TRUE(contains(result.err, "Out of memory\n")) << result.err;
    EXPECT_EQ(within(run, 400'000, page + "a b c").status, 0);
}

TEST(Memory, RunsOutAnywhereWithoutASignalOrAWordOfDamage) {
    if (!is_as_installed()) GTEST_SKIP() << "a program with sanitizers";
    const ProgramRun run;
    run.product("a", samples::reflectivity(0));
    int limit = 4000, runs = 0;
    while (within(run, limit, "-h").status != 0) limit += 250;
    const std::string picture = "-ba -inp nids -de d,memory -ge 1000x800 -pp png=x.png a";
    for (RunResult result; result.status != 0 && runs < 200; ++runs, limit += 100) {
        result = within(run, limit, picture);
        const bool said = result.status == 3 || result.status == 4 || result.status == 0;
        EXPECT_TRUE(said) << limit << " " << result.status << " " << result.err;
        EXPECT_EQ(result.err.empty(), result.status == 0) << limit << " " << result.err;
        EXPECT_FALSE(contains(result.err, "amage") || contains(result.err, "nable to read")) << result.err;
    }
    EXPECT_GT(runs, 5);
    EXPECT_LT(runs, 200);
}

TEST(Program, IsBuiltForForeignFiles) {
    if (!is_as_installed()) GTEST_SKIP() << "a program with sanitizers";
#ifdef NDEBUG
    const std::string kind;
#else
    const std::string kind = "--debug ";
#endif
    EXPECT_EQ(std::system((VYX_SOURCE_DIR "/tools/check_binary " + kind + VYX_PROGRAM).c_str()), 0);
    EXPECT_NE(std::system(VYX_SOURCE_DIR "/tools/check_binary /dev/null >/dev/null 2>&1"), 0);
}

} // namespace
