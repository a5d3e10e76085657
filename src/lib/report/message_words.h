#pragma once
/// The "message" resource: levels, paging and log files by words.

#include <string_view>

/// Applies a value such as "out2,+debug,fi=log". Returns 0.
int MESS_set_str(std::string_view text);
/// Names for which it is true are no log files: nothing is written there, and that is told.
using LogRefusal = bool (*)(std::string_view name);
void MESS_refuse_log(LogRefusal refuses);
