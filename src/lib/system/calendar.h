#pragma once
/// Calendar arithmetic and the program's one clock. Stands below messages; the date labels are in date.h.

#include <cstdint>
#include <string>

#include "lib/text/missing.h"

/// A date and time, universal time unless said otherwise. kMissing in a field means unset.
struct DateRecord {
    int year = kMissing;    ///< four digits
    int month = kMissing;   ///< 1 to 12
    int day = kMissing;     ///< 1 to 31
    int julian = kMissing;  ///< day of the year, 1 to 366
    int weekday = kMissing; ///< 0 Sunday to 6 Saturday
    int hour = kMissing;    ///< 0 to 23
    int minute = kMissing;  ///< 0 to 59
    int second = kMissing;  ///< 0 to 59

    friend bool operator==(const DateRecord &, const DateRecord &) = default;
};

void DATE_init(DateRecord &date);

/// The fields that are set lie within their ranges: what a file says may be no time.
[[nodiscard]] bool DATE_is_possible(const DateRecord &date);

/// 1 for a Gregorian leap year, else 0.
[[nodiscard]] int DATE_is_leap(int year);

/// Seconds since 1970-01-01 00:00 UTC. Brings out-of-range fields of `date` into range in place: a negative
/// year counts as 1980, two-digit years as 1950 to 2049, a bad month or day as 1, a bad time as 0.
std::int64_t DATE_num_sec(DateRecord &date);

/// The current time in seconds since 1970. Every "now" of the program is read here.
std::int64_t DATE_get_time();
/// For tests and reproducible output: from now on "now" is `seconds`. A negative value frees the clock.
void DATE_fix_time(std::int64_t seconds);

/// All eight fields from a time in seconds; with a null pointer from now.
void DATE_get_gmdate(const std::int64_t *seconds, DateRecord &date);

/// A module-owned record with the given fields and second 0, overwritten by the next call.
DateRecord *DATE_to_struct(int year, int month, int day, int hour, int minute);

/// Day of the year to month and day, and back. Out-of-range values are clamped.
void DATE_julian_monday(int year, int julian, int &month, int &day);
void DATE_monday_julian(int year, int month, int day, int &julian);

/// "JAN" to "DEC", "jan" to "dec"; "" outside 1 to 12.
const char *DATE_month(int month);
const char *DATE_month_lower(int month);
/// "SUN" to "SAT"; "" outside 0 to 6.
const char *DATE_weekday(int weekday);

/// The current universal time as "03 JUL 04  18:30:00Z": two-digit year, month, day, hour, minute, second.
std::string DATE_get_current_str();
