#pragma once
/// Whether a netCDF header can be handed to the library, which believes every count that it reads: it would
/// take gigabytes for a name, or a table, that a damaged file announces.

#include <cstddef>
#include <span>

/// Null for the header of a classic file (versions 1, 2 and 5 of the format; NetCDF Classic and 64-bit Offset
/// Format specification) whose counts fit its bytes, else what is wrong with it.
[[nodiscard]] const char *netcdf_header_fault(std::span<const std::byte> bytes);
