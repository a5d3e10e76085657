#pragma once
/// Lists of file names, set as the shell's listing of names sets them.

#include <string_view>

/// Prints what fits the pattern ("*", "?", "[...]", "~" at its beginning) on standard output, as wide as the
/// terminal; directories with what stands in them. An empty pattern means the current directory. A pattern
/// that nothing fits is told.
void FILE_list_pattern(std::string_view pattern);
