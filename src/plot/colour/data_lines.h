#pragma once
/// Text files that come with the program (colour tables, fill levels).

#include <string>

#include "lib/report/text_lines.h"
#include "lib/resources/data_files.h"

/// The next line without line end and surrounding blanks, cut (and told) at its longest length. False at the
/// end.
[[nodiscard]] bool PLT_read_line(TextLines &lines, std::string &line);
