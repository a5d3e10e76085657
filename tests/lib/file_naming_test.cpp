#include "lib/files/naming.h"

#include <cstdlib>

#include <gtest/gtest.h>

#include "lib/resources/database.h"
#include "lib/scratch_dir.h"
#include "lib/text/missing.h"
#include "lib/time/fixed_time.h"

namespace {

DateRecord date(int year, int month, int day, int hour = kMissing, int minute = kMissing) {
    DateRecord record;
    record.year = year;
    record.month = month;
    record.day = day;
    record.hour = hour;
    record.minute = minute;
    return record;
}

const DateRecord kEvening = date(2003, 7, 4, 18, 30);

/// The name that a template makes of a date.
std::string expand(const std::string &text, const DateRecord &when = kEvening) {
    EXPECT_EQ(FILE_set_name("@" + text), 1);
    std::string name;
    FILE_set_date(&when, name);
    return name;
}

/// The full name of a name given by the user.
std::string given(const std::string &name) {
    std::string out;
    FILE_set_file(name, out);
    return out;
}

std::string current(const char *spec) {
    std::string out;
    FILE_set_current(spec, out);
    return out;
}

void set_hour_text(const char *text) {
    FILE_set_hour_text(text);
}

} // namespace

TEST(NamingConvention, ExactAndPartialKeys) {
    const ScratchDir dir;
    dir.write("name_conv", "# comment\n"
                           "rad_cvt  %y%m%d.rad  h%y  100\n"
                           "half\n"
                           "nids  %s/%y%m%d%h%n.%e  -  5\n"
                           "nids_n0r never.reached - 0\n");
    RES_put("file_path", dir.path());
    std::string name;
    EXPECT_EQ(FILE_set_name("RAD_CVT"), 1);
    EXPECT_EQ(FILE_get_name_conv().substr(5), "%y%m%d.rad h%y");
    EXPECT_EQ(FILE_get_min_size(), 100);
    EXPECT_EQ(FILE_hdr_set_date(&kEvening, name), 1);
    EXPECT_EQ(name, "h03");

    EXPECT_EQ(FILE_set_name("nids_grd_N0R:s=KTLX a:x:i=07"), 1);
    FILE_set_date(&kEvening, name);
    EXPECT_EQ(name, "KTLX_a/0307041830.N0R");
    EXPECT_EQ(FILE_get_key('i'), "07");
    EXPECT_EQ(FILE_hdr_set_date(&kEvening, name), 0);
    FILE_set_min_size(9);
    EXPECT_EQ(FILE_get_min_size(), 9);

    FILE_save_name_conv();
    EXPECT_EQ(FILE_set_name("@dump%i.gif"), 1);
    FILE_set_date(&kEvening, name);
    EXPECT_EQ(name, "dump07.gif");
    FILE_restore_name_conv();
    EXPECT_EQ(FILE_get_filename(), "KTLX_a/0307041830.N0R");
    FILE_set_date(&kEvening, name);
    EXPECT_EQ(name, "KTLX_a/0307041830.N0R");

    EXPECT_EQ(FILE_set_name("unknown%y"), 0);
    FILE_set_date(&kEvening, name);
    EXPECT_EQ(name, "unknown03");
    EXPECT_EQ(FILE_set_name("none"), 0);
    EXPECT_EQ(FILE_set_date(&kEvening, name), 1);
    EXPECT_EQ(name, "filename");

    FILE_set_name_conv("120 a%y b");
    EXPECT_EQ(FILE_get_late_off(), 120);
    EXPECT_EQ(FILE_get_name_conv(), "120 a%y b");
}

TEST(NamingConvention, LongLinesAreTold) {
    const ScratchDir dir;
    const std::string file = dir.write("name_conv", "nids %y%m%d" + std::string(200, 'x') + " - 0\n");
    RES_put("file_path", dir.path());
    testing::internal::CaptureStderr();
    for (int i = 0; i < 2; ++i) EXPECT_EQ(FILE_set_name("nids"), 1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              file + ", line 1: Of 215 characters only the first 160 are read\n");
}

TEST(NamingConvention, NamesWithoutATimeTakeThatOfTheData) {
    EXPECT_EQ(FILE_set_name("none"), 0);
    std::string out;
    FILE_set_file("plain.nids", out);
    FILE_set_data_date(kEvening);
    EXPECT_EQ(FILE_get_full_date(), kEvening);
    EXPECT_EQ(FILE_get_date(), DateRecord{});
    EXPECT_EQ(FILE_set_name("@%Y%m%d.nids"), 1);
    FILE_set_file("20010203.nids", out);
    EXPECT_EQ(FILE_get_full_date(), date(2001, 2, 3, 18, 30)) << "what the name tells counts";
}

TEST(NamingConvention, MissingFileMakesTheKeyTheTemplate) {
    RES_put("file_path", "/nonexistent");
    testing::internal::CaptureStderr();
    EXPECT_EQ(FILE_set_name("radar%y"), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "FILE_set_name: No file name convention file: /nonexistent/name_conv\n");
    std::string name;
    FILE_set_date(&kEvening, name);
    EXPECT_EQ(name, "radar03");
}

TEST(NameTemplate, Codes) {
    RES_put("data_path", "/data/");
    RES_put("my", "own");
    FILE_set_key('s', "KTLX");
    EXPECT_EQ(expand("%Dnids/%s/%y%m%d%h%n.nids"), "/data/nids/KTLX/0307041830.nids");
    EXPECT_EQ(FILE_get_late_off(), 60);
    EXPECT_EQ(FILE_get_date(), kEvening);
    EXPECT_EQ(expand("%Y %b{%j}%%.%2s%9s%2x%{my}%{none}"), "2003_jul185%.KTKTLX0own");
    EXPECT_EQ(FILE_get_late_off(), 86400);
    EXPECT_EQ(FILE_get_date().day, 4) << "a day of the year tells month and day";
    EXPECT_EQ(expand("%C/x"), "./x");
    EXPECT_EQ(expand("%D/x//y"), "/data/x//y") << "a directory ends in its own slash";
    EXPECT_EQ(FILE_search_pattern(), "/data/x//y");
    EXPECT_EQ(expand("%10Y-%5y"), "2000-00");
    EXPECT_EQ(FILE_get_late_off(), kMissing);
    EXPECT_EQ(FILE_get_offset(), 100000);
    EXPECT_EQ(expand("%y%m%d%3h.gif", date(2003, 7, 4, 17, 0)), "03070415.gif");
    EXPECT_EQ(FILE_get_late_off(), 3 * 3600);
    EXPECT_EQ(expand("%Y%m%b%d%j%h%n", DateRecord{}), "000000xxx000000000");
    EXPECT_EQ(FILE_search_pattern(), "?[0-9]??[0-9]??[a-z]?[0-9]??[0-9]?[0-9]?[0-9]?");
    expand("%Dx/%s%4k%k{.%e}");
    EXPECT_EQ(FILE_search_pattern(), "/data/x/KTLX????*.*");
    EXPECT_EQ(expand("std"), "-");
}

TEST(NameTemplate, HostileTemplates) {
    EXPECT_EQ(expand("%0h%0s%99999999999h%"), "18000");
    EXPECT_EQ(expand("%999999999d"), "04");
    EXPECT_EQ(FILE_get_late_off(), 9999 * 86400);
    FILE_set_key('s', std::string(100, 'k'));
    std::string keys;
    for (int i = 0; i < 70; ++i) keys += "%s";
    EXPECT_EQ(expand(keys), std::string(7000, 'k')) << "nothing of a name is cut";
    EXPECT_EQ(expand("%{never closed"), "");
    EXPECT_EQ(expand(std::string(500, 'x')).size(), 500U);
    EXPECT_EQ(expand("%y%h", date(2147483647, 99, -5, 2147483647)), "472147483647");
    // Each path code brings the path of the whole name, which is longer each time.
    std::string name = expand("/%7x%R%7x%R");
    FILE_set_file("/given/x", name);
    const DateRecord when = date(2003, 7, 4, 18);
    for (int i = 0; i < 24; ++i) FILE_set_date(&when, name);
    EXPECT_LT(name.size(), 20'000U);
}

TEST(NameTemplate, SetTimeOverridesTheDate) {
    FILE_set_time(date(1999, kMissing, -5, -306, -1030));
    EXPECT_EQ(expand("%y%m%d%h", date(2003, 7, 14, 17)), "99071015");
    EXPECT_EQ(FILE_get_late_off(), 6 * 3600);
    EXPECT_EQ(expand("%d", date(2003, 7, 14)), "10");
    EXPECT_EQ(FILE_get_late_off(), 5 * 86400);
    EXPECT_EQ(expand("%n"), "40");
    EXPECT_EQ(FILE_get_late_off(), 30 * 60);
    FILE_set_time(date(kMissing, kMissing, kMissing, 7, -100));
    EXPECT_EQ(expand("%3h"), "06");
    EXPECT_EQ(expand("%n"), "31") << "a cycle without step moves minute by minute";
}

TEST(SetTime, HourTexts) {
    const auto read = [](const char *text) {
        set_hour_text(text);
        return FILE_get_time();
    };
    constexpr int none = kMissing;
    EXPECT_EQ(read("#200307041830"), kEvening);
    EXPECT_EQ(read("#20030704"), date(2003, 7, 4));
    EXPECT_EQ(read("070418"), date(none, 7, 4, 18));
    EXPECT_EQ(read("0418"), date(none, none, 4, 18));
    EXPECT_EQ(read("418"), date(none, none, 4, 18));
    EXPECT_EQ(read("12d6:30"), date(none, none, 12, 6, 30));
    EXPECT_EQ(read(":30"), date(none, none, none, none, 30));
    EXPECT_EQ(read("-:30"), date(none, none, none, none, -30));
    EXPECT_EQ(read("6:30"), date(none, none, none, 6, 30));
    EXPECT_EQ(read("-306"), date(none, none, none, -306));
    EXPECT_EQ(read("-0:15"), date(none, none, none, none, -15));
    EXPECT_EQ(read("6"), date(none, none, none, 6));
    EXPECT_EQ(read("nonsense"), DateRecord{});
    EXPECT_EQ(read(""), DateRecord{});
}

TEST(NameReading, ProducedNamesReadBack) {
    RES_put("data_path", "/data");
    FILE_set_key('s', "KTLX");
    for (const char *text :
         {"%Dnids/%s/%y%m%d%h%n.nids", "%D/nids/%s/%Y_%b_%d_%h%n", "{%Dx/%Y/}%Y%m%d%h%n.%u",
          "%D%2s%Y%m%d%h%n.%e", "%{data_path}/%s:%Y%m%d-%h:%n"}) {
        const std::string name = expand(text);
        EXPECT_EQ(given(name), name) << text;
        EXPECT_EQ(FILE_get_date(), kEvening) << text;
        std::string again;
        const DateRecord hour_later = date(2003, 7, 4, 19, 30);
        FILE_set_date(&hour_later, again);
        EXPECT_EQ(again, expand(text, hour_later)) << text;
    }
    const std::string name = expand("%D/%Y%j%h%n");
    EXPECT_EQ(given(name), name);
    EXPECT_EQ(FILE_get_date().month, 7);
    EXPECT_EQ(FILE_get_date().day, 4);
}

TEST(NameReading, ShortNamesGrowAndOthersStand) {
    RES_put("data_path", "/data");
    FILE_set_key('s', "KTLX");
    EXPECT_EQ(FILE_set_name("@{%Dnids/%s/}%y%m%d%h%n.nids"), 1);
    EXPECT_EQ(given("0307041830"), "/data/nids/KTLX/0307041830.nids");
    EXPECT_EQ(given("/other/0307041830.nids"), "/other/0307041830.nids");
    EXPECT_EQ(FILE_get_date(), kEvening);
    EXPECT_EQ(given("030704"), "/data/nids/KTLX/030704")
        << "the hour is missing: the rest follows as it stands";
    EXPECT_EQ(FILE_get_date(), date(2003, 7, 4));
    EXPECT_EQ(given("sample.bin"), "sample.bin");
    EXPECT_EQ(FILE_get_date(), DateRecord{});

    EXPECT_EQ(FILE_set_name("@%Dnids/%s/%y%m%d%h%n.%e"), 1);
    EXPECT_EQ(given("nids/KTLX/0307041830.N0R"), "/data/nids/KTLX/0307041830.N0R");
    EXPECT_EQ(given("nids/KTLX/0307041830.NXX"), "/data/nids/KTLX/0307041830.N0R")
        << "the extension is set now";
    EXPECT_EQ(given("nids/wrong"), "nids/wrong");
    EXPECT_EQ(given("/elsewhere/file"), "/elsewhere/file");
    EXPECT_EQ(given("@la"), "la");
    EXPECT_EQ(given("none"), "none");
    EXPECT_EQ(given("std"), "-");
    EXPECT_EQ(given("|zcat 0307041830.gz"), "|zcat 0307041830.gz");
    EXPECT_EQ(given(std::string(300, 'x')).size(), 300U);
    EXPECT_EQ(FILE_set_name("@/a/%y.x"), 1);
    EXPECT_EQ(given("/b/03"), "/b/03") << "two full paths";
    EXPECT_EQ(FILE_set_name("@%D/%y%m%d%h%n.nids"), 1);
    EXPECT_EQ(given("0307041830.nids"), "/data/0307041830.nids");
    // A "*" stands for anything: what follows is not looked at.
    EXPECT_EQ(FILE_set_name("@%D/%y%m%d*%h%n"), 1);
    EXPECT_EQ(given("030704*1830"), "/data/030704*1830");
    EXPECT_EQ(FILE_get_date(), date(2003, 7, 4));
}

TEST(NameReading, AGivenNameIsTheFileOfItsDate) {
    EXPECT_EQ(FILE_set_name("@%D%s_%y%m%d%h%n.nids"), 1);
    EXPECT_EQ(given("/x/KTLX_0307041830.nids.gz"), "/x/KTLX_0307041830.nids.gz");
    EXPECT_EQ(FILE_get_date(), kEvening);
    std::string name;
    EXPECT_EQ(FILE_set_date(&kEvening, name), 0);
    EXPECT_EQ(name, "/x/KTLX_0307041830.nids.gz");
    EXPECT_EQ(FILE_set_date_off(kEvening, 3600, name), 60);
    EXPECT_EQ(name, "/x/0_0307041930.nids");
    EXPECT_EQ(FILE_set_date_off(kEvening, 0, name), 0);
    EXPECT_EQ(name, "/x/KTLX_0307041830.nids.gz");

    FILE_set_filename("/x/any");
    const DateRecord no_date;
    EXPECT_EQ(FILE_set_date(&no_date, name), 1);
    EXPECT_EQ(name, "/x/any");
}

TEST(NameReading, TimesAndExtraInformationSplitOff) {
    EXPECT_EQ(FILE_set_name("none"), 0);
    EXPECT_EQ(given("file#2003070418x"), "file");
    EXPECT_EQ(FILE_get_date(), date(2003, 7, 4, 18));
    EXPECT_EQ(given("file#x"), "file#x");
    FILE_reset_time();

    FILE_set_type(1);
    EXPECT_EQ(given("nids.dat#2"), "nids.dat");
    EXPECT_EQ(FILE_get_ext_info(), "#2");
    EXPECT_EQ(given("-x:3"), "-x");
    EXPECT_EQ(FILE_get_ext_info(), ":3");
    const ScratchDir dir;
    const std::string file = dir.write("with-sign/a:b", "x");
    EXPECT_EQ(given(file), file) << "a separator of a name that is there";
    EXPECT_EQ(FILE_get_ext_info(), "");
    EXPECT_EQ(given(file + "+12"), file);
    EXPECT_EQ(FILE_get_ext_info(), "+12");
    // Of a file that is missing only a number behind the last directory is no part of the name.
    EXPECT_EQ(given(dir.at("my-dir/KLSX-N0R.nids")), dir.at("my-dir/KLSX-N0R.nids"));
    EXPECT_EQ(FILE_get_ext_info(), "");
    EXPECT_EQ(given(dir.at("my-dir/KLSX-N0R.nids-2")), dir.at("my-dir/KLSX-N0R.nids"));
    EXPECT_EQ(FILE_get_ext_info(), "-2");
    EXPECT_EXIT(given("exit"), testing::ExitedWithCode(0), "");
}

TEST(CurrentFile, OffsetsFromTheBaseTime) {
    EXPECT_EQ(FILE_set_name("@%Y%m%d%h%n"), 1);
    DateRecord now = kEvening;
    DATE_fix_time(DATE_num_sec(now) + 42);
    EXPECT_EQ(current(""), "200307041830");
    EXPECT_EQ(current("cu-2:30"), "200307041600");
    EXPECT_EQ(current("2"), "200307041630");
    EXPECT_EQ(current("+1d2:05"), "200307052035");
    EXPECT_EQ(current("#2001-1"), "200012312300");
    EXPECT_EQ(current("#200102030405+0:10"), "200102030415");
    EXPECT_EQ(current("-1d"), "200307031830");
    EXPECT_EQ(current("-99999999999d"), "000101010000") << "no time before the calendar's first";
    EXPECT_EQ(given("cu-2:30"), "200307041600");

    std::string out;
    EXPECT_EQ(FILE_set_name("@%Y%m%d%3h"), 1);
    EXPECT_EQ(FILE_set_current("", out), DATE_num_sec(now) - 30 * 60);
    setenv("vyxcurtime", "#199912312359", 1);
    EXPECT_EQ(current(""), "1999123121");
}

TEST(CurrentFile, SetFieldsPullTheBaseBack) {
    EXPECT_EQ(FILE_set_name("@%Y%m%d%h%n"), 1);
    DateRecord now = kEvening;
    DATE_fix_time(DATE_num_sec(now));
    const auto with = [](const DateRecord &set) {
        FILE_set_time(set);
        return current("");
    };
    EXPECT_EQ(with(date(kMissing, kMissing, kMissing, 20)), "200307032030");
    EXPECT_EQ(with(date(kMissing, kMissing, kMissing, 6, 45)), "200307040645");
    EXPECT_EQ(with(date(kMissing, kMissing, kMissing, kMissing, 45)), "200307041745");
    EXPECT_EQ(with(date(kMissing, kMissing, 6)), "200306061830");
    EXPECT_EQ(with(date(kMissing, 9, kMissing)), "200209041830");
}

TEST(CurrentFile, SearchesTheLatest) {
    const ScratchDir dir;
    EXPECT_EQ(FILE_set_name("@" + dir.path() + "/%Y%m%d%h"), 1);
    DateRecord now = kEvening;
    DATE_fix_time(DATE_num_sec(now));
    dir.write("2003070410", "enough");
    dir.write("2003070412", "");
    EXPECT_EQ(current(nullptr), dir.at("2003070410"));
    EXPECT_EQ(current("la#5"), dir.at("2003070413")) << "five periods away from the start";
    EXPECT_EQ(current("la#0"), dir.at("2003070418"));
    EXPECT_EQ(current("la#0-2"), dir.at("2003070416")) << "an offset counts where no search is asked for";
    EXPECT_EQ(current("la-1"), dir.at("2003070409"));
    EXPECT_EQ(current("#2003070408+la#10"), dir.at("2003070410"));
    FILE_set_min_size(6);
    EXPECT_EQ(current("la#10"), dir.at("2003070408")) << "the file must be larger";
    EXPECT_EQ(given("la#10"), dir.at("2003070408"));
    // The signs of a time are none of a product selector, unless there is a file of that beginning.
    FILE_set_type(1);
    FILE_set_min_size(0);
    EXPECT_EQ(given("la#5"), dir.at("2003070413"));
    EXPECT_EQ(given("cu-2"), dir.at("2003070416"));
    EXPECT_EQ(given("#200307041200-1:00"), dir.at("2003070411"));
    EXPECT_EQ(FILE_get_ext_info(), "");
    std::filesystem::current_path(dir.path());
    dir.write("last", "x");
    EXPECT_EQ(given("last#2"), "last");
    EXPECT_EQ(FILE_get_ext_info(), "#2");
}

TEST(CurrentFile, FilesWhoseNamesBeginLikeASpecification) {
    const ScratchDir dir;
    std::filesystem::current_path(dir.path());
    dir.write("lasx.nids", "x");
    EXPECT_FALSE(FILE_is_current_spec("lasx.nids"));
    EXPECT_TRUE(FILE_is_current_spec("lasy.nids"));
    EXPECT_TRUE(FILE_is_current_spec("la#10"));
    EXPECT_TRUE(FILE_is_current_spec("cu-2:30"));
    EXPECT_TRUE(FILE_is_current_spec("#200307041830"));
}
