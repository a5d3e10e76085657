#pragma once
/// Lines of region files.

#include <optional>
#include <string>

#include "lib/report/text_lines.h"

struct RegionLine {
    std::string abbreviation;
    std::string description; ///< at most 20 characters, blanks in place of underscores
    int menu_flag = 0;       ///< not 0: shown in the menu
    std::string domain;      ///< domain string; the abbreviation itself on a line of a single word
    int words = 0;
};

/// Opens a region file along the resource "file_path"; prints a message when it cannot be opened.
TextLines open_region_file(std::string_view name);
/// The next line that is neither blank nor a comment.
std::optional<RegionLine> read_region_line(TextLines &lines);
