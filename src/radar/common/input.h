#pragma once
/// Opening the files of formats that read from a stream.

#include <string>

#include "lib/system/stream.h"

/// What a gzip file may hold at most, bytes; more is not read, and told.
inline constexpr std::size_t kMostGunzipped = 64U << 20;

/// FILE_open_input; of a gzip file what it holds. What is damaged there is told, and given as far as it came
/// out. An empty Stream on failure; errno tells why.
[[nodiscard]] Stream RADAR_open_input(const std::string &name);
