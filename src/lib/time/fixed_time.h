#pragma once
/// The fixed time fields that the "hour" resource and file names set, and file selection reads.

#include <cstddef>
#include <string_view>

#include "lib/system/calendar.h"

void FILE_set_time(const DateRecord &date);
DateRecord FILE_get_time();
void FILE_reset_time();
/// Decodes an "hour" value ("#YYYYMMDDhhmm", "MMDDhh", "DDhh", "12d6:30", "6:30", ":30", "-3", ...) and sets
/// the time; fields that the text does not give become unset.
void FILE_set_hour_text(std::string_view text);
/// Reads "YYYYMMDDhhmm" into the fields of `date`, each group only while digits follow; fields without digits
/// stay as they are. Returns the number of characters read.
std::size_t FILE_read_time_digits(std::string_view digits, DateRecord &date);
