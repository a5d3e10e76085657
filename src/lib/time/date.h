#pragma once
/// Date labels: reading them from data files, writing them on plots, and the display time zone.

#include <string>
#include <string_view>

#include "lib/system/calendar.h"

/// Month number of "JAN" or "jan" by the letters that tell months apart; 0 when unknown or of mixed case.
[[nodiscard]] int DATE_decode_month(std::string_view text);

/// Reads YYYYMMDDhhmm into the fields that are there; -1 for a null text, else 0.
[[nodiscard]] int DATE_decode_seq(const char *text, DateRecord &date);

/// Reads a date label such as "1830Z  4 JUL 03" (and its other forms); clears the record first. Returns 0.
int DATE_decode_label(std::string_view text, DateRecord &date);

/// The standard label of a date, shown in the display time zone, as long as fields are set: "1830Z  4 JUL
/// 03".
std::string DATE_make_label(const DateRecord &date);

/// Label with weekday of the time `hours` after the date.
std::string DATE_make_label_valid_time(int hours, const DateRecord &date);

/// Forecast-period label such as "36 hour" (style 0) or "1.5 day" (style 1); empty for 0 and kMissing.
std::string DATE_fhour_label(int hours, int style);

/// Sets the display time zone from "[-|+]name:hours", for example "-CDT:-5".
void DATE_set_TZ(std::string_view text);
/// Seconds added to universal time for display.
int DATE_get_tz_off();
/// Zone name as printed behind the hour, with its leading blank ("Z" at the start).
const std::string &DATE_get_tz_str();

/// Prints "Y/M/D hh:mm:ss".
void DATE_print(unsigned level, const DateRecord &date);
