#pragma once
/// Finding the files that come with the program or that a user has instead: maps, colours, fonts, regions,
/// cities, levels, naming conventions.

#include <string>
#include <string_view>
#include <vector>

#include "lib/system/stream.h"

/// The path of a data file for reading: in the directory of the resource "file_path", else, when it is not
/// there, in the first directory beside the program (or named by the search path of resource files) that has
/// it. A file that is nowhere is named as in "file_path".
std::string FILE_find_data(std::string_view name);

/// Opens a data file for reading; an empty Stream when it cannot be opened. Never a standard stream, which
/// could wait for the terminal.
[[nodiscard]] Stream FILE_open_data(std::string_view name);

/// The directories that stand in for "file_path", in the order of their preference.
void FILE_set_data_directories(std::vector<std::string> directories);
