#include "lib/system/calendar.h"

#include <climits>

#include <gtest/gtest.h>

namespace {

DateRecord make(int year, int month, int day, int hour = 0, int minute = 0) {
    DateRecord date = *DATE_to_struct(year, month, day, hour, minute);
    return date;
}

std::int64_t seconds_of(DateRecord date) {
    return DATE_num_sec(date);
}

} // namespace

TEST(Calendar, SecondsOfKnownDates) {
    EXPECT_EQ(seconds_of(make(1970, 1, 1)), 0);
    EXPECT_EQ(seconds_of(make(2000, 3, 1)), 951868800);
    EXPECT_EQ(seconds_of(make(2003, 7, 4, 18, 30)), 1057343400);
    EXPECT_EQ(seconds_of(make(2038, 1, 19, 3, 15)), 2147483700) << "beyond 32 bits";
}

TEST(Calendar, SecondsNormaliseTheRecord) {
    const auto year_of = [](int year) {
        DateRecord date = make(year, 1, 1);
        DATE_num_sec(date);
        return date.year;
    };
    EXPECT_EQ(year_of(99), 1999);
    EXPECT_EQ(year_of(3), 2003);
    EXPECT_EQ(year_of(50), 1950);
    EXPECT_EQ(year_of(kMissing), 1980);

    DateRecord bad = make(2003, 13, 32, 24, 60);
    bad.second = 60;
    EXPECT_EQ(DATE_num_sec(bad), seconds_of(make(2003, 1, 1)));
    EXPECT_EQ(bad.month, 1);
    EXPECT_EQ(bad.day, 1);
    EXPECT_EQ(bad.minute, 0);

    DateRecord absurd = make(INT_MAX, INT_MIN, INT_MIN, INT_MAX, INT_MIN);
    EXPECT_GT(DATE_num_sec(absurd), 60'000'000'000'000'000);
}

TEST(Calendar, DatesAndSecondsAreInverse) {
    // Every 37 hours from 1950 to 2090 passes all months, leap days and turns of the year.
    for (std::int64_t time = -631152000; time < 3786912000; time += 37 * 3600 + 61) {
        DateRecord date;
        DATE_get_gmdate(&time, date);
        int julian = 0;
        int month = 0;
        int day = 0;
        DATE_monday_julian(date.year, date.month, date.day, julian);
        DATE_julian_monday(date.year, date.julian, month, day);
        ASSERT_EQ(julian, date.julian) << time;
        ASSERT_EQ(month, date.month) << time;
        ASSERT_EQ(day, date.day) << time;
        ASSERT_EQ(DATE_num_sec(date), time);
    }
}

TEST(Calendar, AbsurdTimesGiveDates) {
    for (const std::int64_t time : {std::int64_t{INT64_MIN}, std::int64_t{INT64_MAX}}) {
        DateRecord date;
        DATE_get_gmdate(&time, date);
        EXPECT_GE(date.year, 1);
        EXPECT_LE(date.year, 9999);
    }
}

TEST(Calendar, DayOfYearIsClamped) {
    int month = 0;
    int day = 0;
    DATE_julian_monday(2003, 366, month, day);
    EXPECT_EQ(month * 100 + day, 1231);
    DATE_julian_monday(2004, 60, month, day);
    EXPECT_EQ(month * 100 + day, 229);
    DATE_julian_monday(1900, 60, month, day);
    EXPECT_EQ(month * 100 + day, 301) << "1900 was no leap year";
    DATE_julian_monday(2000, kMissing, month, day);
    EXPECT_EQ(month * 100 + day, 101);
    int julian = 0;
    DATE_monday_julian(2000, 99, 31, julian);
    EXPECT_EQ(julian, 366);
    DATE_monday_julian(2000, 1, INT_MAX, julian);
    EXPECT_GT(julian, 366);
}

TEST(Calendar, NamesOutsideTheTablesAreEmpty) {
    EXPECT_STREQ(DATE_month(12), "DEC");
    EXPECT_STREQ(DATE_month_lower(1), "jan");
    for (const int month : {INT_MIN, kMissing, 0, 13}) EXPECT_STREQ(DATE_month(month), "") << month;
    EXPECT_STREQ(DATE_weekday(0), "SUN");
    EXPECT_STREQ(DATE_weekday(7), "");
}

TEST(Calendar, TheClockCanBeFixed) {
    DATE_fix_time(1057343400);
    EXPECT_EQ(DATE_get_time(), 1057343400);
    EXPECT_EQ(DATE_get_current_str(), "03 JUL 04  18:30:00Z");
    DateRecord now;
    DATE_get_gmdate(nullptr, now);
    EXPECT_EQ(now.weekday, 5);
    DATE_fix_time(-1);
    EXPECT_GT(DATE_get_time(), 1057343400);
}

TEST(Calendar, DateToStructKeepsDayOfYearAndWeekday) {
    DateRecord *date = DATE_to_struct(2003, 7, 4, 18, 30);
    date->weekday = 5;
    EXPECT_EQ(DATE_to_struct(2003, 7, 5, 1, 2), date);
    EXPECT_EQ(date->weekday, 5);
    EXPECT_EQ(date->second, 0);
}
