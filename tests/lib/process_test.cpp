#include "lib/report/process.h"

#include <array>
#include <climits>
#include <cmath>
#include <cstdio>
#include <functional>
#include <limits>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "lib/resources/database.h"
#include "lib/resources/prompt.h"

namespace {

struct Outcome {
    int status = -1;
    std::string output; ///< standard output and error
};

/// Runs `body` in a child process that reads `input` and ends with what the body returns, unless it exits
/// itself.
Outcome run_with_input(const std::string &input, const std::function<int()> &body) {
    std::FILE *in = std::tmpfile();
    std::FILE *out = std::tmpfile();
    std::fwrite(input.data(), 1, input.size(), in);
    std::rewind(in);
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        // Reopening also drops what an earlier test left in the buffer.
        const std::string in_path = "/dev/fd/" + std::to_string(fileno(in));
        if (std::freopen(in_path.c_str(), "r", stdin) == nullptr) std::_Exit(98);
        dup2(fileno(out), STDOUT_FILENO);
        dup2(fileno(out), STDERR_FILENO);
        const int status = body();
        std::fflush(nullptr);
        std::_Exit(status);
    }
    int state = 0;
    waitpid(child, &state, 0);
    Outcome outcome;
    if (WIFEXITED(state)) outcome.status = WEXITSTATUS(state);
    std::rewind(out);
    std::array<char, 4096> buffer{};
    const std::size_t size = std::fread(buffer.data(), 1, buffer.size(), out);
    outcome.output.assign(buffer.data(), size);
    std::fclose(in);
    std::fclose(out);
    return outcome;
}

} // namespace

TEST(Prompt, RepeatsUntilTheAnswerFits) {
    const Outcome number = run_with_input("\nabc\n 12 rest\n", [] { return VYX_promptd("N: "); });
    EXPECT_EQ(number.status, 12);
    EXPECT_EQ(number.output, "N: N: N: ");
    const Outcome real = run_with_input("x\n2.5", [] { return static_cast<int>(VYX_promptf("F: ") * 10); });
    EXPECT_EQ(real.status, 25) << "a last line without line end counts";
}

TEST(Prompt, WordsAreCutAtTheirLength) {
    const auto length_of = [](int length) {
        return run_with_input("  abcdefgh ij\r\n",
                              [length] { return static_cast<int>(VYX_prompts("P", length).size()); })
            .status;
    };
    EXPECT_EQ(length_of(100), 8);
    EXPECT_EQ(length_of(5), 4);
    EXPECT_EQ(length_of(1), 1) << "at least one character";
    EXPECT_EQ(length_of(std::numeric_limits<int>::min()), 1);
    const Outcome path = run_with_input(std::string(9000, 'v') + "\n" + std::string(4000, 'w') + "\n7\n", [] {
        return VYX_prompts("P", PATH_MAX) == std::string(4000, 'w') && VYX_promptd("N") == 7 ? 1 : 0;
    });
    EXPECT_EQ(path.status, 1) << "as long as a path may be; what is longer is asked for again, whole";
    EXPECT_NE(path.output.find("at most 8192 characters"), std::string::npos);
    EXPECT_EQ(
        run_with_input(std::string(30, 'w') + "\n", [] { return static_cast<int>(VYX_promptl("P").size()); })
            .status,
        19);
}

TEST(Prompt, ExitAndTheEndOfInput) {
    EXPECT_EQ(run_with_input("exit now\n", [] { return VYX_promptd("N"); }).status, kExitOk);
    const Outcome end = run_with_input("\n", [] { return VYX_promptd("N"); });
    EXPECT_EQ(end.status, kExitSession);
    EXPECT_NE(end.output.find("End of input"), std::string::npos);
}

TEST(Prompt, SetStoresAResourceAndAsksAgain) {
    const Outcome set = run_with_input("SET plot_domain = us, proj=lamb\n5\n", [] {
        const int answer = VYX_promptd("N");
        const char *value = RES_get("plot_domain");
        return value != nullptr && std::string(value) == "us, proj=lamb" ? answer : 99;
    });
    EXPECT_EQ(set.status, 5);
    EXPECT_EQ(set.output, "NN");
    const Outcome mistyped = run_with_input("set plot_domian us\n5\n", [] { return VYX_promptd("N"); });
    EXPECT_EQ(mistyped.status, 5);
    EXPECT_NE(mistyped.output.find("set: \"plot_domian\" is not known, the nearest is \"plot_domain\""),
              std::string::npos);
    const Outcome list = run_with_input("set region ne\nset\n5\n", [] { return VYX_promptd(""); });
    EXPECT_EQ(list.status, 5);
    EXPECT_EQ(list.output, "Set resources\nregion: ne\n\n");
    EXPECT_EQ(VYX_set_command("nids.dat"), 0);
    EXPECT_EQ(VYX_set_command("se"), 0);
}

TEST(Process, SleepingAndElapsedTime) {
    EXPECT_EQ(VYX_sleep(0.0F), -1);
    EXPECT_EQ(VYX_sleep(-1.0F), -1);
    EXPECT_EQ(VYX_sleep(std::nanf("")), -1);
    VYX_init_time();
    EXPECT_EQ(VYX_sleep(0.02F), 0);
    EXPECT_GE(VYX_elapse_time(), 0.0199F);
    EXPECT_LT(VYX_elapse_time(), 60.0F);
}

TEST(Process, ExitDeliversBufferedOutput) {
    const Outcome outcome = run_with_input("", [] {
        std::fputs("last words", stdout);
        VYX_exit(kExitRegion);
        return 0;
    });
    EXPECT_EQ(outcome.status, kExitRegion);
    EXPECT_EQ(outcome.output, "last words");
}

TEST(Process, BackgroundChildGoesOnAlone) {
    std::array<int, 2> channel{};
    ASSERT_EQ(pipe(channel.data()), 0);
    const Outcome outcome = run_with_input("input", [&channel] {
        std::fputs("once", stdout);
        const int result = VYX_back_proc();
        std::puts("to the null device");
        const bool alone = result == 1 && getpgrp() == getpid() && std::getchar() == EOF;
        const char report = alone ? 'y' : 'n';
        return write(channel[1], &report, 1) == 1 ? 7 : 8;
    });
    EXPECT_EQ(outcome.status, kExitOk) << "the parent ends well";
    char report = 0;
    EXPECT_EQ(read(channel[0], &report, 1), 1);
    EXPECT_EQ(report, 'y');
    EXPECT_EQ(outcome.output, "once");
    close(channel[0]);
    close(channel[1]);
}
