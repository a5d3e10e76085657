#pragma once
/// Opening data files that are read more than once, whatever they are.

#include <string_view>

#include "lib/system/stream.h"

/// What is kept of one input at most, bytes; more is not read and told.
inline constexpr std::size_t kMostInputBytes = std::size_t{1} << 30;

/// Opens an input for reading, at its first byte. What can be read once only (standard input, the output of a
/// command, a named pipe) is read whole into memory at the first open and given from there at every later
/// one. Standard input is kept for good, of the others the one opened last. An empty Stream on failure.
[[nodiscard]] Stream FILE_open_input(std::string_view name);

/// What FILE_open_input gives at once, without waiting for a pipe or running a command again: plain files,
/// and what is kept.
[[nodiscard]] bool FILE_can_reread(std::string_view name);

/// False, after a warning, for an input kept in memory that is longer than that, or whose command ended with
/// an error.
[[nodiscard]] bool FILE_input_is_whole(std::string_view name);
