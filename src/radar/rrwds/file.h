#pragma once
/// What an RRWDS file holds: 360 radials a degree apart, with 200 bins of 3-bit levels around one radar.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "lib/system/calendar.h"

inline constexpr int kRrwdsRadials = 360, kRrwdsBins = 200;
inline constexpr std::size_t kRrwdsHeaderBytes = 12, kRrwdsRecordBytes = 80;
inline constexpr std::size_t kRrwdsFileBytes = kRrwdsHeaderBytes + kRrwdsRadials * kRrwdsRecordBytes;

/// The header as the file has it: no place, and a date without a year.
struct RrwdsHeader {
    std::string station;         ///< three characters
    DateRecord date;             ///< month, day, hour and minute; all missing where one makes no sense
    float elevation = kMissingF; ///< degrees; missing where its digits are none
    float range_nm = 0;          ///< 100 or 200
    bool short_range = false;    ///< the bit that says so
};

/// Decodes the twelve bytes of a header. False for too few, and where no station is named.
[[nodiscard]] bool RRWDS_decode_header(std::span<const std::byte> bytes, RrwdsHeader &header);
using RrwdsLevels = std::array<std::uint8_t, kRrwdsBins>;
/// Levels of the bins of a record from the radar outwards; 0 for those that a cut record lacks.
RrwdsLevels RRWDS_decode_radial(std::span<const std::byte> record);
/// The same of the radial at an azimuth, 0 to 359 degrees, of a file.
RrwdsLevels RRWDS_levels(std::span<const std::byte> file, int azimuth);
/// Whole radials of a file of so many bytes.
std::size_t RRWDS_count_radials(std::size_t bytes);
/// The year of a date that has none: the one of `near` in which the date is closest to it. Both may be in
/// different years at the turn of one.
[[nodiscard]] int RRWDS_year(const DateRecord &date, const DateRecord &near);
