#pragma once
/// Names of files that are written.

#include <span>
#include <string>
#include <string_view>

#include "lib/system/calendar.h"

/// A naming key and what it stands for in one name.
struct NameKey {
    char letter;
    std::string value;
};
/// The name that a convention, or a template such as "%p_%Y%m%d.png", gives for a date. Blanks of the
/// convention's text stay. The convention, the current file and the keys of the input are as before.
std::string FILE_name_output(std::string_view convention, const DateRecord &date,
                             std::span<const NameKey> keys);

/// True for a name that is one of the input files, listed or current, whichever way it is spelt.
[[nodiscard]] bool FILE_is_input(std::string_view name);
