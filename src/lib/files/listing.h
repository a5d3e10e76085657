#pragma once
/// Lists of file names, set as the shell's listing of names sets them.

#include <string>
#include <string_view>
#include <vector>

/// Names side by side, row after row, in the most columns that fit into less than `width` characters; two
/// blanks at least stand between columns, tabs where they reach the next column.
std::string FILE_columns(const std::vector<std::string> &names, std::size_t width);

/// Prints what fits the pattern ("*", "?", "[...]", "~" at its beginning) on standard output, as wide as the
/// terminal; directories with what stands in them. An empty pattern means the current directory. A pattern
/// that nothing fits is told.
void FILE_list_pattern(std::string_view pattern);
