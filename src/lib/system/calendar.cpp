#include "lib/system/calendar.h"

#include <algorithm>
#include <array>
#include <ctime>

#include "lib/text/strings.h"

namespace {

struct State {
    std::int64_t fixed_time = -1; ///< negative: the clock runs
    DateRecord shared;            ///< what DATE_to_struct hands out
};
State state;

constexpr std::int64_t kDaySeconds = 86400;
constexpr std::int64_t kCommonYearSeconds = 365 * kDaySeconds;

/// Days before each month, and in the whole year: common years, then leap years.
constexpr std::array<std::array<int, 13>, 2> kDaysBefore{{
    {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334, 365},
    {0, 31, 60, 91, 121, 152, 182, 213, 244, 274, 305, 335, 366},
}};

constexpr std::array kMonths{"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                             "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};
constexpr std::array kMonthsLower{"jan", "feb", "mar", "apr", "may", "jun",
                                  "jul", "aug", "sep", "oct", "nov", "dec"};
constexpr std::array kWeekdays{"SUN", "MON", "TUE", "WED", "THU", "FRI", "SAT"};

/// The name of number `value` where the names count from `first`; "" outside.
template <std::size_t Count>
const char *name_at(const std::array<const char *, Count> &names, int value, int first) {
    const std::int64_t index = std::int64_t{value} - first;
    return index >= 0 && index < std::int64_t{Count} ? names[static_cast<std::size_t>(index)] : "";
}

const std::array<int, 13> &days_before(int year) {
    return kDaysBefore[static_cast<std::size_t>(DATE_is_leap(year))];
}

int in_range(int value, int low, int high, int otherwise) {
    return value < low || value > high ? otherwise : value;
}

void normalise(DateRecord &date) {
    if (date.year < 0) date.year = 1980;
    if (date.year < 50) date.year += 2000;
    if (date.year < 200) date.year += 1900;
    date.month = in_range(date.month, 1, 12, 1);
    date.day = in_range(date.day, 1, 31, 1);
    date.hour = in_range(date.hour, 0, 23, 0);
    date.minute = in_range(date.minute, 0, 59, 0);
    date.second = in_range(date.second, 0, 59, 0);
}

} // namespace

void DATE_init(DateRecord &date) {
    date = DateRecord{};
}

bool DATE_is_possible(const DateRecord &date) {
    const auto within = [](int value, int first, int last) {
        return is_missing(value) || (value >= first && value <= last);
    };
    return within(date.year, 0, 9999) && within(date.month, 1, 12) && within(date.day, 1, 31) &&
           within(date.hour, 0, 23) && within(date.minute, 0, 59) && within(date.second, 0, 59);
}

int DATE_is_leap(int year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0) ? 1 : 0;
}

std::int64_t DATE_num_sec(DateRecord &date) {
    normalise(date);
    const std::int64_t days = date.day - 1 + kDaysBefore[0][static_cast<std::size_t>(date.month - 1)];
    const std::int64_t year = date.year - 1900;
    // Every fourth year counts as a leap year, which holds from 1901 to 2099.
    const std::int64_t leap_days = year / 4 - (date.month > 2 || year % 4 != 0 ? 17 : 18);
    return (days + leap_days) * kDaySeconds + (year - 70) * kCommonYearSeconds + date.hour * 3600 +
           date.minute * 60 + date.second;
}

std::int64_t DATE_get_time() {
    return state.fixed_time >= 0 ? state.fixed_time : std::int64_t{std::time(nullptr)};
}

void DATE_fix_time(std::int64_t seconds) {
    state.fixed_time = seconds;
}

void DATE_get_gmdate(const std::int64_t *seconds, DateRecord &date) {
    // The years 1 to 9999. Times outside come only from damaged files; their dates still print in four
    // digits.
    constexpr std::int64_t kEarliest = -62135596800;
    constexpr std::int64_t kLatest = 253402300799;
    const std::time_t time = std::clamp(seconds != nullptr ? *seconds : DATE_get_time(), kEarliest, kLatest);
    std::tm fields{};
    gmtime_r(&time, &fields);
    date.year = fields.tm_year + 1900;
    date.month = fields.tm_mon + 1;
    date.day = fields.tm_mday;
    date.julian = fields.tm_yday + 1;
    date.weekday = fields.tm_wday;
    date.hour = fields.tm_hour;
    date.minute = fields.tm_min;
    date.second = fields.tm_sec;
}

DateRecord *DATE_to_struct(int year, int month, int day, int hour, int minute) {
    DateRecord &date = state.shared;
    date.year = year;
    date.month = month;
    date.day = day;
    date.hour = hour;
    date.minute = minute;
    date.second = 0;
    return &date;
}

void DATE_julian_monday(int year, int julian, int &month, int &day) {
    const auto &before = days_before(year);
    const int wanted = std::clamp(julian, 1, before.back());
    const auto end_of_month = std::lower_bound(before.begin(), before.end(), wanted);
    month = static_cast<int>(end_of_month - before.begin());
    day = wanted - *(end_of_month - 1);
}

void DATE_monday_julian(int year, int month, int day, int &julian) {
    constexpr int kAbsurd = 1'000'000; // keeps the sum of any day in range
    julian = std::clamp(day, -kAbsurd, kAbsurd) +
             days_before(year)[static_cast<std::size_t>(std::clamp(month, 1, 12) - 1)];
}

const char *DATE_month(int month) {
    return name_at(kMonths, month, 1);
}

const char *DATE_month_lower(int month) {
    return name_at(kMonthsLower, month, 1);
}

const char *DATE_weekday(int weekday) {
    return name_at(kWeekdays, weekday, 0);
}

std::string DATE_get_current_str() {
    DateRecord now;
    DATE_get_gmdate(nullptr, now);
    return format_text("%2.2d %s %2.2d  %2.2d:%2.2d:%2.2dZ", now.year % 100, DATE_month(now.month), now.day,
                       now.hour, now.minute, now.second);
}
