#pragma once
/// Choosing the input file, walking a series of files, and listing what is there.

#include <cstdint>
#include <string>
#include <string_view>

#include "lib/system/calendar.h"

/// Times at which the files of a series are looked for at most: ten weeks of minutes.
inline constexpr int kMostSeriesFiles = 100000;

/// Chooses the input file from the resources "filename" and "current", the latest file in batch mode, else at
/// the terminal. 1 when the file exists. A file that cannot be found ends the program with kExitNoFile.
[[nodiscard]] int FILE_get_file(std::string_view prompt, std::string &out);
/// Chooses it likewise, but neither asks nor tests whether it exists. False when only a question could tell.
[[nodiscard]] bool FILE_select(std::string &out);

/// Starts a series at a date; FILE_get_next then gives its names: 1 while files remain, else 0.
void FILE_first(const DateRecord &date);
[[nodiscard]] int FILE_get_next(std::string &out);
/// 0 for a single file, non-zero when a series follows.
int FILE_get_num_file();
/// Span of the series in hours and in seconds.
int FILE_get_num_hour();
std::int64_t FILE_get_nsecs();
void FILE_set_nsecs(std::int64_t seconds);
/// Span when "num_hour" is not set.
void FILE_set_def_hours(int hours);

/// Lists the files that match the template on standard output.
void FILE_list_file();
