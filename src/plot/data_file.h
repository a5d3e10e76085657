#pragma once
/// Text files that come with the program (colour tables, fill levels).

#include <string>

#include "lib/data_file.h"
#include "lib/text_lines.h"

/// The next line without line end and surrounding blanks, cut (and told) at its longest length. False at the
/// end.
bool PLT_read_line(TextLines &lines, std::string &line);
