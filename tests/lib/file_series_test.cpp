#include "lib/files/series.h"

#include <cstdlib>

#include <gtest/gtest.h>

#include "lib/files/listing.h"
#include "lib/files/naming.h"
#include "lib/options/flags.h"
#include "lib/resources/database.h"
#include "lib/scratch_dir.h"
#include "lib/system/stream.h"
#include "lib/text/missing.h"

namespace {

const DateRecord kEvening{2003, 7, 4, kMissing, kMissing, 18, 30, 0};

std::vector<std::string> series(const char *hours, std::size_t most = 100) {
    if (hours != nullptr) RES_put("num_hour", hours);
    std::string name;
    FILE_set_date(&kEvening, name);
    FILE_first(kEvening);
    std::vector<std::string> names;
    while (names.size() < most && FILE_get_next(name) == 1) names.push_back(name);
    return names;
}

void set_names(const char *names) {
    RES_new(kMissing, "filename", names, ResourceKind::list);
}

using Names = std::vector<std::string>;

} // namespace

TEST(FileSeries, HoursAroundTheFirstDate) {
    EXPECT_EQ(FILE_set_name("@%d%h"), 1);
    EXPECT_EQ(series(nullptr), (Names{"0418"}));
    EXPECT_EQ(FILE_get_num_file(), 0);
    EXPECT_EQ(series("-6"), (Names{"0412", "0413", "0414", "0415", "0416", "0417", "0418"}));
    EXPECT_NE(FILE_get_num_file(), 0);
    EXPECT_EQ(FILE_get_num_hour(), -6);
    EXPECT_EQ(series("2"), (Names{"0418", "0419", "0420"}));
    EXPECT_EQ(series("5,2"), (Names{"0418", "0420", "0422"}));
    EXPECT_EQ(series("-5,2"), (Names{"0412", "0414", "0416", "0418"}))
        << "whole steps, not nearer than the span";
    EXPECT_EQ(series("2,-7"), (Names{"0418", "0419", "0420"}));

    EXPECT_EQ(FILE_set_name("@%h%10n"), 1);
    EXPECT_EQ(series(":30"), (Names{"1830", "1840", "1850", "1900"}));
    EXPECT_EQ(series("-0:20"), (Names{"1810", "1820", "1830"}));
    EXPECT_EQ(FILE_get_nsecs(), -1200);
    EXPECT_EQ(series("1:00,0:30"), (Names{"1830", "1900", "1930"}));
    EXPECT_EQ(series("99999999999", 2).size(), 2U);
    EXPECT_EQ(series("-99999999999", 2).size(), 2U);
}

TEST(FileSeries, NoneIsEndlessOrWithoutTimes) {
    EXPECT_EQ(FILE_set_name("@%d%h"), 1);
    testing::internal::CaptureStderr();
    EXPECT_EQ(series("9999999", 200000).size(), std::size_t{kMostSeriesFiles});
    const Names back = series("-9999999", 200000);
    EXPECT_EQ(back.size(), std::size_t{kMostSeriesFiles});
    EXPECT_EQ(back.back(), "0418");
    EXPECT_EQ(
        testing::internal::GetCapturedStderr(),
        "-nh (num_hour): A series is looked for at no more than 100000 times, which are 99999 hours here\n");

    testing::internal::CaptureStderr();
    FILE_set_filename("undated");
    FILE_first(DateRecord{});
    EXPECT_EQ(FILE_get_num_file(), 0) << "the same picture again and again";
    EXPECT_NE(testing::internal::GetCapturedStderr().find("tells no time from which"), std::string::npos);
}

TEST(FileSeries, DefaultSpanAndUnknownPeriod) {
    EXPECT_EQ(FILE_set_name("@%y"), 1);
    FILE_set_def_hours(-30);
    EXPECT_EQ(series(nullptr), (Names{"03", "03", "03"})) << "steps of 100000 seconds";
    EXPECT_EQ(FILE_get_nsecs(), -30 * 3600);
}

TEST(FileSeries, ListedNames) {
    EXPECT_EQ(FILE_set_name("@%d%h"), 1);
    set_names("first\n0419\n@third");
    EXPECT_EQ(series("3"), (Names{"first", "0419", "third"}));
    EXPECT_EQ(FILE_get_num_file(), 2);
    set_names("only");
    EXPECT_EQ(series("0"), (Names{"only"}));
    EXPECT_EQ(series("1"), (Names{"0418", "0419"}));
    set_names("latest\nb");
    EXPECT_EQ(series("0").size(), 1U) << "no list: one current file";
}

TEST(FileChoice, NamedCurrentAndBatch) {
    const ScratchDir dir;
    EXPECT_EQ(FILE_set_name("@" + dir.path() + "/%Y%m%d%h"), 1);
    DateRecord now = kEvening;
    DATE_fix_time(DATE_num_sec(now));
    std::string name;
    set_names(dir.at("nothing").c_str());
    EXPECT_EQ(FILE_get_file("", name), 0);
    set_names(dir.write("something", "x").c_str());
    EXPECT_EQ(FILE_get_file("", name), 1);
    EXPECT_EQ(name, dir.at("something"));

    set_names("");
    FLAG_set_batch(1);
    EXPECT_EXIT((void)FILE_get_file("", name), testing::ExitedWithCode(10),
                "File not found: .*/20030613[0-9]*\n");
    const std::string latest = dir.write("2003070415", "x");
    EXPECT_EQ(FILE_get_file("", name), 1);
    EXPECT_EQ(name, latest);
    RES_put("current", "-3");
    testing::internal::CaptureStdout();
    EXPECT_EQ(FILE_get_file("", name), 1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Current filename: " + latest + "\n");
    RES_put("current", "-4");
    EXPECT_EXIT((void)FILE_get_file("", name), testing::ExitedWithCode(10), "File not found: .*14\n");
}

TEST(FileChoice, AsksAtTheTerminal) {
    const ScratchDir dir;
    EXPECT_EQ(FILE_set_name("@" + dir.path() + "/%Y%m%d%h a$(touch " + dir.at("x") + ")"), 1);
    const std::string good = dir.write("good", "x");
    const auto answer = [&](const std::string &lines) {
        std::freopen(dir.write("answers", lines).c_str(), "r", stdin);
        std::string name;
        const int found = FILE_get_file("Which? ", name);
        std::exit(found == 1 && (name == good || FILE_is_command(name)) ? 77 : 78);
    };
    EXPECT_EXIT(answer("bad\nlist\nbad\nbad\n" + good + "\n"), testing::ExitedWithCode(77),
                "(File not found: bad\n.*){3}");
    EXPECT_EXIT(answer("a\nb\nc\nd\n" + good + "\n"), testing::ExitedWithCode(10), "File not found: d\n");
    EXPECT_EXIT(answer("|cat<good\n"), testing::ExitedWithCode(77), "");
    EXPECT_EXIT(answer("exit\n"), testing::ExitedWithCode(0), "");
    EXPECT_NE(std::system(("test -e " + dir.at("x")).c_str()), 0) << "a template never runs as a command";
}

TEST(FileChoice, ListsFilesOfTheTemplate) {
    const ScratchDir dir;
    dir.write("20030704.x", "");
    dir.write("other", "");
    EXPECT_EQ(FILE_set_name("@" + dir.path() + "/%Y%m%d.x"), 1);
    testing::internal::CaptureStdout();
    FILE_list_file();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), dir.at("20030704.x") + "\n");
    set_names("list\nb");
    std::string name;
    EXPECT_EXIT((void)FILE_get_file("", name), testing::ExitedWithCode(0), "");
}

TEST(FileChoice, ListsAsTheShellDoes) {
    const ScratchDir dir;
    std::filesystem::current_path(dir.path());
    const auto differs = [](const std::string &pattern, const std::string &before = "") {
        testing::internal::CaptureStdout();
        FILE_list_pattern(pattern);
        std::ofstream(".ours") << testing::internal::GetCapturedStdout();
        return std::system((before + "LC_ALL=C ls -x " + pattern + " | cmp - .ours").c_str());
    };
    for (int count = 1; count < 60; ++count) {
        const std::string number = std::to_string(count * 7919 % 101);
        dir.write(std::string(static_cast<std::size_t>(count * 31 % 23), 'a') + number + ".x", "");
        EXPECT_EQ(differs("*.x"), 0) << count;
    }
    dir.write("Upper.x", "");
    dir.write(std::string(100, 'w') + ".x", "");
    dir.write("sub/one", "");
    dir.write("sub/.hidden", "");
    dir.write("tub/two", "");
    for (const char *pattern : {"", "*.x", "a*[0-4].?", "*", "?ub", "s*", "./*b/*"})
        EXPECT_EQ(differs(pattern), 0) << pattern;
    EXPECT_EQ(setenv("COLUMNS", "33", 1), 0);
    EXPECT_EQ(differs("*.x", "COLUMNS=33 "), 0);

    testing::internal::CaptureStderr();
    FILE_list_pattern("$(touch ran)*;touch ran");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "FILE_list_file: No file fits: $(touch ran)*;touch ran\n");
    EXPECT_EQ(FILE_exist("ran"), 0);
}
