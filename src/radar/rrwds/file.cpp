#include "radar/rrwds/file.h"

#include <algorithm>
#include <cstdlib>
#include <optional>

#include "lib/text/strings.h"

namespace {

/// Where the header has what.
enum Byte : std::size_t {
    kRangeAt = 3,
    kHourAt = 5,
    kMinuteAt = 6,
    kTensAt = 8,
    kUnitsAt = 9,
    kDayAt = 10,
    kMonthAt = 11
};
constexpr std::size_t kStationLetters = 3, kRecordHead = 4, kGroupBytes = 3, kGroupBins = 8;
constexpr unsigned kTopBit = 0x80;
constexpr float kShortRange = 100, kLongRange = 200; ///< nautical miles

/// Digits of tens and units as a number; nothing when one is no digit.
std::optional<int> decimal(unsigned tens, unsigned units) {
    if (tens > 9 || units > 9) return {};
    return static_cast<int>(10 * tens + units);
}

bool is_station_letter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || is_digit(c);
}

} // namespace

bool RRWDS_decode_header(std::span<const std::byte> bytes, RrwdsHeader &header) {
    header = RrwdsHeader();
    if (bytes.size() < kRrwdsHeaderBytes) return false;
    const auto at = [bytes](std::size_t i) { return std::to_integer<unsigned>(bytes[i]); };
    for (std::size_t i = 0; i < kStationLetters; ++i) header.station += static_cast<char>(at(i));
    if (!std::ranges::all_of(header.station, is_station_letter)) return false;
    header.short_range = (at(kRangeAt) & kTopBit) != 0;
    header.range_nm = header.short_range ? kShortRange : kLongRange;
    const auto hour = decimal(at(kHourAt) >> 6, at(kHourAt) >> 2 & 15U);
    const auto minute = decimal(at(kMinuteAt) >> 4 & 7U, at(kMinuteAt) & 15U);
    const auto day = decimal(at(kDayAt) >> 4, at(kDayAt) & 15U);
    const auto month = decimal(at(kMonthAt) >> 4, at(kMonthAt) & 15U);
    DateRecord date;
    if (hour && minute && day && month) {
        date.month = *month;
        date.day = *day;
        date.hour = *hour;
        date.minute = *minute;
        if (DATE_is_possible(date)) header.date = date;
    }
    const auto whole = decimal(at(kTensAt) & 7U, at(kUnitsAt) >> 4);
    const unsigned tenths = at(kUnitsAt) & 15U;
    if (whole && tenths <= 9) {
        header.elevation = static_cast<float>(*whole) + static_cast<float>(tenths) / 10;
        if ((at(kMinuteAt) & kTopBit) != 0) header.elevation = -header.elevation;
    }
    return true;
}

RrwdsLevels RRWDS_decode_radial(std::span<const std::byte> record) {
    RrwdsLevels levels{};
    for (std::size_t group = 0; group < kRrwdsBins / kGroupBins; ++group) {
        const std::size_t at = kRecordHead + group * kGroupBytes;
        unsigned bits = 0; // the first bin lowest
        for (std::size_t i = 0; i < kGroupBytes && at + i < record.size(); ++i)
            bits |= std::to_integer<unsigned>(record[at + i]) << (8 * i);
        for (std::size_t bin = 0; bin < kGroupBins; ++bin)
            levels[group * kGroupBins + bin] = static_cast<std::uint8_t>(bits >> (3 * bin) & 7U);
    }
    return levels;
}

RrwdsLevels RRWDS_levels(std::span<const std::byte> file, int azimuth) {
    const std::size_t at = kRrwdsHeaderBytes + static_cast<std::size_t>(azimuth) * kRrwdsRecordBytes;
    if (at >= file.size()) return {};
    return RRWDS_decode_radial(file.subspan(at, std::min(kRrwdsRecordBytes, file.size() - at)));
}

std::size_t RRWDS_count_radials(std::size_t bytes) {
    return bytes < kRrwdsHeaderBytes ? 0 : (bytes - kRrwdsHeaderBytes) / kRrwdsRecordBytes;
}

int RRWDS_year(const DateRecord &date, const DateRecord &near) {
    const auto seconds = [](DateRecord copy) {
        copy.second = is_missing(copy.second) ? 0 : copy.second;
        return DATE_num_sec(copy);
    };
    const std::int64_t there = seconds(near);
    int best = near.year;
    std::int64_t nearest = INT64_MAX;
    for (const int year : {near.year, near.year - 1, near.year + 1}) {
        DateRecord candidate = date;
        candidate.year = year;
        const std::int64_t away = std::abs(seconds(candidate) - there);
        if (away >= nearest) continue;
        nearest = away;
        best = year;
    }
    return best;
}
