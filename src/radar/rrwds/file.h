#pragma once
/// Reading RRWDS files: 360 radials of one-degree steps with 200 bins of 3-bit levels around one radar.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "lib/system/calendar.h"

inline constexpr int kRrwdsRadials = 360, kRrwdsBins = 200;
inline constexpr std::size_t kRrwdsHeaderBytes = 12, kRrwdsRecordBytes = 80;

/// The header as the file has it: no place, and a date without a year.
struct RrwdsHeader {
    std::string station; ///< three characters
    DateRecord date;     ///< month, day, hour and minute
    float elevation = 0; ///< degrees
    float range_nm = 0;  ///< 100 or 200
};

/// Decodes the twelve bytes of a header. False for too few.
[[nodiscard]] bool RRWDS_decode_header(std::span<const std::byte> bytes, RrwdsHeader &header);
/// Levels of the bins of a record from the radar outwards. What a cut record lacks is level 0; the number of
/// bins that are there.
int RRWDS_decode_radial(std::span<const std::byte> record, std::array<std::uint8_t, kRrwdsBins> &levels);
