#pragma once
/// Text files that come with the program (colour tables, fill levels): found along the resource "file_path".

#include <string>
#include <string_view>

#include "lib/stream.h"

/// Full path of a data file.
std::string PLT_data_file_path(std::string_view name);

/// Opens a file for reading; an empty Stream when it cannot be opened. Never a standard stream, which could
/// wait for the terminal.
Stream PLT_open_data_file(std::string_view name);

/// The next line without line end and surrounding blanks, cut at `most` characters as they stand in the file.
/// False at the end.
bool PLT_read_line(Stream &stream, std::string &line, std::size_t most);
