#pragma once
/// Naming conventions: a key selects a template; a template and a date make a file name; a name gives back
/// its date.
/// Sources: current.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "lib/system/calendar.h"

/// Selects the naming convention of a key ("nids", "nids:s=KTLX", "@template", "none"); 1 on a match, else 0.
[[nodiscard]] int FILE_set_name(std::string_view key);

/// The keys of the naming-convention file; none when there is no such file.
std::vector<std::string> FILE_convention_keys();

/// Expands the template for a date (null: the stored file date) into `out` and makes it the current name. 0,
/// or 1 when no template applied.
int FILE_set_date(const DateRecord *date, std::string &out);
/// Expands for date + seconds; seconds / period (seconds / 100000 when the period is unknown).
int FILE_set_date_off(const DateRecord &date, std::int64_t seconds, std::string &out);
/// Expands the header template; 1 when a name resulted, 0 when the date has no year.
[[nodiscard]] int FILE_hdr_set_date(const DateRecord *date, std::string &out);
/// Interprets a name given by the user; "exit" ends the program. Returns 0.
int FILE_set_file(std::string_view name, std::string &out);
/// True for a name that is a current-time specification: "#...", "la..." or "cu...". A file of the user's
/// that merely begins so ("lasx.nids") is a file.
[[nodiscard]] bool FILE_is_current_spec(std::string_view name);
/// Finds the file of a current-time specification ("la", "la#10", "-2:30", "#200307041830"; null: "la").
/// Returns the chosen time in seconds, rounded down to a multiple of the period.
std::int64_t FILE_set_current(const char *spec, std::string &out);

/// File-naming keys: one text for each 7-bit letter; blanks are stored as "_".
void FILE_set_key(char letter, std::string_view value);
std::string FILE_get_key(char letter);

/// Date of the current file, as its name represents it.
DateRecord FILE_get_date();
/// The time in the data of the current file, which its driver tells; and the date of the file with what its
/// name does not tell taken from there.
void FILE_set_data_date(const DateRecord &date);
DateRecord FILE_get_full_date();
std::string FILE_get_filename();
/// Sets the current name as given by the user.
void FILE_set_filename(std::string_view name);

/// 0 plain, 1 names may carry extra information behind "#", "-", "+" or ":".
void FILE_set_type(int type);
std::string FILE_get_ext_info();
void FILE_set_ext_info(std::string_view text);

/// File period in seconds (the smallest time step of the template), kMissing while unknown.
int FILE_get_late_off();
void FILE_set_late_off(int seconds);
/// The period, or 100000 when below 1.
int FILE_get_offset();
void FILE_set_min_size(std::int64_t bytes);
/// The required size when set, else the convention's.
std::int64_t FILE_get_min_size();

/// Keeps the convention, the current file and the keys, and brings them back.
void FILE_save_name_conv();
void FILE_restore_name_conv();
/// "period template header-template"
std::string FILE_get_name_conv();
void FILE_set_name_conv(std::string_view text);

/// Shell pattern of the files that the current template can name, for listings.
std::string FILE_search_pattern();
