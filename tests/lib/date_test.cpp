#include "lib/time/date.h"

#include <gtest/gtest.h>

#include "lib/report/message.h"

namespace {

/// The given fields and unset ones.
DateRecord make(int year, int month = kMissing, int day = kMissing, int hour = kMissing,
                int minute = kMissing) {
    DateRecord date;
    date.year = year;
    date.month = month;
    date.day = day;
    date.hour = hour;
    date.minute = minute;
    return date;
}

DateRecord decoded(std::string_view text) {
    DateRecord date = make(1, 1, 1, 1, 1);
    EXPECT_EQ(DATE_decode_label(text, date), 0);
    return date;
}

} // namespace

TEST(Date, MonthNamesOfOneCase) {
    for (int month = 1; month <= 12; ++month) {
        EXPECT_EQ(DATE_decode_month(DATE_month(month)), month);
        EXPECT_EQ(DATE_decode_month(DATE_month_lower(month)), month);
    }
    for (const char *text : {"Jul", "jUL", "JU", "", "JUX", "XYZ", "M1R"})
        EXPECT_EQ(DATE_decode_month(text), 0) << text;
}

TEST(Date, ReadsDigitsInSequence) {
    DateRecord date = make(kMissing);
    EXPECT_EQ(DATE_decode_seq("200307041830", date), 0);
    EXPECT_EQ(date, make(2003, 7, 4, 18, 30));
    date = make(kMissing);
    EXPECT_EQ(DATE_decode_seq("20030704", date), 0);
    EXPECT_EQ(date, make(2003, 7, 4)) << "fields that are not there stay unset";
    EXPECT_EQ(DATE_decode_seq(nullptr, date), -1);
}

TEST(Date, ReadsEveryLabelForm) {
    EXPECT_EQ(decoded("18Z  4 JUL 03"), make(2003, 7, 4, 18));
    EXPECT_EQ(decoded("1830Z  4 JUL 03"), make(2003, 7, 4, 18, 30));
    EXPECT_EQ(decoded("VALID  930Z 14 jul 99"), make(1999, 7, 14, 9, 30))
        << "one digit of hour behind a blank";
    DateRecord seconds = make(2003, 7, 4, 18, 30);
    seconds.second = 15;
    EXPECT_EQ(decoded("RADAR 18:30:15Z  4 JUL 03"), seconds);
    EXPECT_EQ(decoded("MDR SUMMARY 18Z  4 JUL 03"), make(2003, 7, 4, 18));
    EXPECT_EQ(decoded("18Z  4 Jul 03"), make(2003, 0, 4, 18)) << "unknown month";
}

TEST(Date, OtherTextLeavesFieldsUnset) {
    EXPECT_EQ(decoded(""), make(kMissing, 0));
    EXPECT_EQ(decoded("no date in here at all"), make(kMissing, 0));
    EXPECT_EQ(decoded("03 07 04 18"), make(2018, 0, 4)) << "first and fourth number are the year";
}

TEST(Date, LabelsShortenWithUnsetFields) {
    EXPECT_EQ(DATE_make_label(make(2003)), "03");
    EXPECT_EQ(DATE_make_label(make(2003, 7)), "JUL 03");
    EXPECT_EQ(DATE_make_label(make(2003, 7, 4)), " 4 JUL 03");
    EXPECT_EQ(DATE_make_label(make(2003, 7, 4, 18)), "18Z  4 JUL 03");
    EXPECT_EQ(DATE_make_label(make(2003, 7, 4, 18, 30)), "1830Z  4 JUL 03");
    EXPECT_EQ(DATE_make_label(make(-5, 13, 32, 24, 60)), "0000Z  1 JAN 80");
    EXPECT_EQ(DATE_make_label(make(1999, 12, 31, 23, 59)), "2359Z 31 DEC 99")
        << "the last that a label can show";
    EXPECT_EQ(DATE_make_label(make(2003, kMissing, 4, 18, 30)), "03")
        << "the first unset field ends the label";
}

TEST(Date, ValidTimeLabels) {
    EXPECT_EQ(DATE_make_label_valid_time(12, make(2003, 7, 4, 18)), "06Z SAT  5 JUL 03");
    EXPECT_EQ(DATE_make_label_valid_time(906, make(2003, 7, 4, 18)), "12Z MON 11 AUG 03");
    EXPECT_EQ(DATE_make_label_valid_time(1900, make(2003, 7, 4, 18)), "18Z FRI  4 JUL 03");
    EXPECT_EQ(DATE_make_label_valid_time(kMissing, make(2003, 7, 4)), "FRI  4 JUL 03");
}

TEST(Date, ForecastPeriodLabels) {
    struct Row {
        int hours, style;
        const char *text;
    };
    for (const Row &row :
         {Row{36, 1, "1.5 day"}, Row{36, 0, "36 hour"}, Row{84, 0, "3.5 day"}, Row{84, 1, "3.5 day"},
          Row{12, 1, "0.5 day"}, Row{72, 0, "3 day"}, Row{66, 1, "66 hour"}, Row{906, 0, "6 month"},
          Row{803, 0, "3 day"}, Row{800, 0, "800 hour"}, Row{900, 0, "100 day"}, Row{-6, 1, "-6 hour"},
          Row{0, 1, ""}, Row{kMissing, 1, ""}})
        EXPECT_EQ(DATE_fhour_label(row.hours, row.style), row.text) << row.hours;
}

TEST(Date, PrintsThroughMessages) {
    DateRecord date = make(2003, 7, 4, 8, 5);
    date.second = 9;
    testing::internal::CaptureStdout();
    DATE_print(kPrint, date);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "2003/7/4 08:05:09\n");
}

// The clock style has no way back, so the tests that set a zone stand last.
TEST(Date, LabelsInTheDisplayZone) {
    DATE_set_TZ("+EST:-5");
    EXPECT_EQ(DATE_make_label(make(2003, 7, 4, 3)), "10 PM EST  3 JUL 03");
    EXPECT_EQ(DATE_make_label(make(2004, 1, 1, 3, 7)), "10:07 PM EST 31 DEC 03");
    EXPECT_EQ(DATE_make_label(make(2003, 7, 4)), " 4 JUL 03") << "a day without hour is not shifted";
    EXPECT_EQ(DATE_make_label(make(2003, 7, 4, 5, 0)), "12:00 AM EST  4 JUL 03");
    EXPECT_EQ(DATE_make_label(make(2003, 7, 4, 17)), "12 PM EST  4 JUL 03");

    DATE_set_TZ("-CDT:-5");
    EXPECT_EQ(DATE_make_label(make(2003, 7, 4, 18)), "1 PM CDT [18Z]  4 JUL 03");
    EXPECT_EQ(DATE_make_label(make(2003, 7, 4, 18, 5)), "1:05 PM CDT [1805Z]  4 JUL 03");

    EXPECT_EQ(DATE_make_label_valid_time(6, make(2003, 7, 4, 18, 30)), "7 PM CDT [00Z] FRI  4 JUL 03");

    DATE_set_TZ("IST:5.5");
    EXPECT_EQ(DATE_get_tz_off(), 19800);
    EXPECT_EQ(DATE_make_label(make(2003, 7, 4, 18)), "11 PM IST [18Z]  4 JUL 03")
        << "no sign keeps the clock style";
}

TEST(Date, OddZones) {
    DATE_set_TZ("CDT");
    EXPECT_EQ(DATE_get_tz_off(), 0);
    EXPECT_EQ(DATE_get_tz_str(), " CDT");
    DATE_set_TZ("EASTERN:-5");
    EXPECT_EQ(DATE_get_tz_str(), " EAST");
    EXPECT_EQ(DATE_get_tz_off(), 0) << "no colon behind the fourth letter";
    DATE_set_TZ("");
    EXPECT_EQ(DATE_get_tz_str(), " ");
    for (const char *text : {"X:1e30", "X:-1e30", "X:nan"}) {
        DATE_set_TZ(text);
        EXPECT_FALSE(DATE_make_label(make(2003, 7, 4, 18)).empty()) << text;
    }
}
