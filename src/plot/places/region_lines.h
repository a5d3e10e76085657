#pragma once
/// Lines of region files.

#include <optional>
#include <string>
#include <string_view>

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
[[nodiscard]] std::optional<RegionLine> read_region_line(TextLines &lines);

/// Finds a region line; 1 with its domain string in `out`, 0 otherwise. An empty key takes the first line.
[[nodiscard]] int DOM_search_file(std::string_view file, std::string_view key, std::string &out);
/// Prints abbreviations and descriptions as a list.
void DOM_print_file(std::string_view file);
