#include "lib/report/message.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <unistd.h>

#include <gtest/gtest.h>

#include "lib/options/flags.h"
#include "lib/report/message_words.h"
#include "lib/report/misfits.h"
#include "lib/system/calendar.h"

namespace {

namespace fs = std::filesystem;

constexpr unsigned kDefaultMask = 0x000FFFFF;

/// A file name of this process in the temporary directory, removed at the end.
class TemporaryFile {
public:
    explicit TemporaryFile(const char *name)
        : path_(fs::temp_directory_path() / ("vyx_" + std::to_string(getpid()) + name)) {}
    TemporaryFile(const TemporaryFile &) = delete;
    TemporaryFile &operator=(const TemporaryFile &) = delete;
    ~TemporaryFile() { fs::remove(path_); }
    [[nodiscard]] std::string path() const { return path_.string(); }
    [[nodiscard]] std::string content() const {
        std::ifstream file(path_);
        return {std::istreambuf_iterator<char>(file), {}};
    }

private:
    fs::path path_;
};

/// Brings the module back to where a program starts, whatever an earlier test in this process did.
class Message : public testing::Test {
protected:
    void SetUp() override { restore(); }
    void TearDown() override { restore(); }
    static void restore() {
        MESS_set(10, kDefaultMask);
        MESS_set_out(MessageOutput::terminal);
        MESS_set_page(1);
        MESS_file_close();
        FLAG_set_batch(0);
    }
};

std::string printed(unsigned level, const char *text) {
    testing::internal::CaptureStdout();
    MESS_print(level, "%s", text);
    return testing::internal::GetCapturedStdout();
}

/// Makes `text` the standard input of this process.
void set_input(const TemporaryFile &file, const std::string &text) {
    std::ofstream(file.path()) << text;
    ASSERT_NE(std::freopen(file.path().c_str(), "r", stdin), nullptr);
}

} // namespace

/// Standard output is held back in a buffer: what was told first comes first all the same.
TEST_F(Message, WarningsStandBehindTheOutputBeforeThem) {
    const TemporaryFile both("both");
    const auto all_in_one_file = [&] {
        const int file = open(both.path().c_str(), O_CREAT | O_WRONLY | O_APPEND, 0600);
        dup2(file, STDOUT_FILENO);
        dup2(file, STDERR_FILENO);
        std::setvbuf(stdout, nullptr, _IOFBF, BUFSIZ);
        for (const unsigned level : {kMess, kWarn, kMess, kError, kMess})
            MESS_print(level, level == kMess ? "output\n" : "warning\n");
        std::exit(0);
    };
    EXPECT_EXIT(all_in_one_file(), testing::ExitedWithCode(0), "");
    EXPECT_EQ(both.content(), "output\nwarning\noutput\nwarning\noutput\n");
}

TEST_F(Message, ALogThatCannotBeOpenedIsToldOnce) {
    for (const char *word : {"fi=/dev/null/log", "dfi=/dev/null/log"}) {
        WORD_forget();
        testing::internal::CaptureStderr();
        MESS_set_str(word);
        MESS_print(kPrint, "one\n");
        MESS_print(kPrint, "two\n");
        EXPECT_EQ(testing::internal::GetCapturedStderr(),
                  "-me (message): Unable to open log file: /dev/null/log: Not a directory\n");
    }
}

TEST_F(Message, ALogThatFillsUpIsToldAtTheEnd) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
    for (const char *word : {"fi=/dev/full", "+fi=/dev/full", "dfi=/dev/full"}) {
        MESS_set_str(word);
        testing::internal::CaptureStderr();
        MESS_print(kMess, "one\n");
        MESS_print(kMess, "two\n");
        EXPECT_FALSE(MESS_end_log()) << word;
        EXPECT_EQ(testing::internal::GetCapturedStderr(),
                  "MESS_print: Error writing log file: /dev/full: No space left on device\n");
    }
}

TEST_F(Message, TheMaskDecides) {
    EXPECT_EQ(MESS_print(0x100000, "hidden"), 0);
    EXPECT_EQ(printed(0x100000, "hidden"), "");
    EXPECT_EQ(printed(kMess | kOut4, "one shared bit"), "one shared bit");
    MESS_set_str("none");
    EXPECT_EQ(printed(kPrint, "even prompts"), "");
    EXPECT_EQ(MESS_check(~0U), 0);
}

TEST_F(Message, ErrorsAndWarningsGoToStandardError) {
    for (const unsigned level : {unsigned{kError}, unsigned{kWarn}, 0x10U | kMess}) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(MESS_print(level, "trouble %d\n", 7), 1);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "trouble 7\n") << level;
    }
}

TEST_F(Message, LevelWords) {
    const auto mask_after = [](std::string_view text) {
        MESS_set(10, kDefaultMask);
        MESS_set_str(text);
        return MESS_get();
    };
    EXPECT_EQ(mask_after("warn"), 0xFFU);
    EXPECT_EQ(mask_after("+debug"), kDefaultMask | 0xF0000000U);
    EXPECT_EQ(mask_after("-warn"), kDefaultMask & ~0xC0U);
    EXPECT_EQ(mask_after("out1b"), 0x3FFFU) << "one bit of the group and all below";
    EXPECT_EQ(mask_after("none,+OUT4D"), 0x08000000U);
    EXPECT_EQ(mask_after("debug"), ~0U);
    EXPECT_EQ(mask_after("bogus"), 0U) << "unknown means none";
    EXPECT_EQ(mask_after("+bogus"), kDefaultMask);
    EXPECT_EQ(mask_after("error,+out3,-print"), 0xF00030U) << "items act in order";
    EXPECT_EQ(mask_after(""), kDefaultMask);
}

TEST_F(Message, DefaultsYieldToExplicitSettings) {
    const int before = MESS_check_set();
    MESS_set(10, 0xFF);
    EXPECT_EQ(MESS_check_set(), before) << "operations from 5 on are not explicit";
    MESS_set(0, 0x40);
    EXPECT_EQ(MESS_check_set(), before + 1);
    EXPECT_EQ(MESS_get(), 0x7FU);
    MESS_set(20, ~0U);
    EXPECT_EQ(MESS_get(), 0x7FU);
    MESS_set(11, 0x80000000U);
    MESS_set(9, 0xF);
    EXPECT_EQ(MESS_get(), 0x80000070U);
    MESS_set(5, ~0U);
    EXPECT_EQ(MESS_get(), 0x80000070U) << "no such operation";
    MESS_set_str("");
    EXPECT_EQ(MESS_check_set(), before + 2);
    MESS_set(10, 0);
    EXPECT_EQ(MESS_get(), 0U);
}

TEST_F(Message, LogFiles) {
    const TemporaryFile log("_log");
    DATE_fix_time(1057343400);
    testing::internal::CaptureStdout();
    MESS_set_str("-fi=" + log.path());
    EXPECT_EQ(MESS_print(kPrint, "both\n"), 1);
    MESS_set_str("fi:" + log.path());
    EXPECT_EQ(MESS_print(kPrint, "log only\n"), 0);
    MESS_set_str("@fi=" + log.path());
    MESS_print(kPrint, "stamped\n");
    MESS_set_str("dfi=" + log.path());
    MESS_print(kPrint, "reopened\n");
    EXPECT_EQ(log.content(), "both\nlog only\n03 JUL 04  18:30:00Z -- stamped\nreopened\n")
        << "a reopened log is complete after each message";
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "both\nstamped\nreopened\n");
    DATE_fix_time(-1);
}

TEST_F(Message, AnUnopenableLogLeavesTheTerminal) {
    MESS_set_str("+fi=/dev/null/not/there");
    EXPECT_EQ(printed(kPrint, "still here"), "still here");
    MESS_set_str("fi=/dev/null/not/there");
    EXPECT_EQ(printed(kPrint, "lost"), "");
}

TEST_F(Message, TheCopyGetsEveryShownMessage) {
    const TemporaryFile copy("_copy");
    EXPECT_EQ(MESS_file("/dev/null/not/there", "w"), -1);
    EXPECT_EQ(MESS_file(copy.path(), "w"), 0);
    MESS_set_out(MessageOutput::log_only);
    MESS_print(kPrint, "%s", std::string(5000, 'x').c_str());
    MESS_print(kDebug, "masked");
    MESS_file_close();
    EXPECT_EQ(copy.content(), std::string(5000, 'x'));
}

TEST_F(Message, LinesOfAScreen) {
    MESS_set_str("line=7");
    EXPECT_EQ(MESS_get_max_lines(), 7);
    for (const char *text : {"line=0", "line", "line=", "line:-3", "line=x"}) {
        MESS_set_str(text);
        EXPECT_EQ(MESS_get_max_lines(), 22) << text;
    }
}

TEST_F(Message, PausesAfterAScreenful) {
    const TemporaryFile input("_input");
    set_input(input, "abc");
    MESS_set_str("page,line=2");
    testing::internal::CaptureStdout();
    for (int i = 0; i < 5; ++i) MESS_print(kPrint, "x\n");
    MESS_set_page(0);
    MESS_print(kPrint, "y\ny\ny\ny\n");
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "x\nx\nx\nPress return to continue\nx\nx\ny\ny\ny\ny\n");
    EXPECT_EQ(std::getchar(), 'b') << "one pause took one character";
}

TEST_F(Message, HoldWaitsOnlyWhereSomebodyCanAnswer) {
    const TemporaryFile input("_input");
    set_input(input, "abc");
    testing::internal::CaptureStdout();
    FLAG_set_batch(1);
    MESS_hold(kPrint, "batch");
    FLAG_set_batch(0);
    MESS_hold(kDebug, "masked");
    MESS_set_page(0);
    MESS_hold(kPrint, "no paging");
    MESS_set_page(1);
    MESS_set_out(MessageOutput::log_only);
    MESS_hold(kPrint, "no terminal");
    MESS_set_out(MessageOutput::terminal);
    MESS_hold(kPrint, "asked");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "asked");
    EXPECT_EQ(std::getchar(), 'b');
}

TEST_F(Message, Banner) {
    testing::internal::CaptureStdout();
    MESS_print_prog("RADAR DATA PLOTTING");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "      RADAR DATA PLOTTING (Ver 5.60-LINUX-X11)\n\n");
}
