#pragma once
/// Fills the resource database at start-up and prints the option summary.
/// Sources: help.

#include <span>
#include <string_view>

/// Resets all flags, reads the four sources (resource files, environment, command line; see docs) for the
/// resources of the two id lists, applies those that act on global state, and sets the display time zone from
/// the environment variable "vyxtz". Returns 1.
int RES_init(int argc, const char *const argv[], std::span<const int> keyed_ids,
             std::span<const int> positional_ids);

/// Prints the option summary at level kPrint.
void RES_help_print(std::string_view program, std::span<const int> keyed_ids,
                    std::span<const int> positional_ids);
