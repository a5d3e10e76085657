#include "radar/common/file_kind.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "lib/text/byte_reader.h"
#include "lib/text/strings.h"
#include "lib/time/date.h"
#include "radar/common/inflate.h"

namespace {

constexpr unsigned kStartOfHeading = 1;
constexpr int kLastProductCode = 300;
constexpr std::size_t kDividerAt = 18; ///< behind the message header

bool begins(std::span<const std::byte> bytes, std::string_view text) {
    if (bytes.size() < text.size()) return false;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (std::to_integer<unsigned char>(bytes[i]) != static_cast<unsigned char>(text[i])) return false;
    return true;
}

/// "SDUS53 ": four capitals, two digits and a blank.
bool is_heading(std::span<const std::byte> bytes) {
    constexpr std::size_t kLetters = 4, kDigits = 2;
    if (bytes.size() <= kLetters + kDigits) return false;
    const auto within = [&](std::size_t from, std::size_t to, char low, char high) {
        for (std::size_t i = from; i < to; ++i) {
            const int c = std::to_integer<int>(bytes[i]);
            if (c < low || c > high) return false;
        }
        return true;
    };
    return within(0, kLetters, 'A', 'Z') && within(kLetters, kLetters + kDigits, '0', '9') &&
           within(kLetters + kDigits, kLetters + kDigits + 1, ' ', ' ');
}

/// One of the first lines of a text, which may have a heading, names a coded message: "RCMLSX".
bool names_coded_message(std::span<const std::byte> bytes) {
    constexpr std::size_t kSearched = 200, kIdLetters = 3;
    constexpr std::string_view kMark = "RCM";
    const std::string_view text(reinterpret_cast<const char *>(bytes.data()),
                                std::min(bytes.size(), kSearched));
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        const std::string_view line = trimmed(text.substr(at, end - at));
        if (line.size() == kMark.size() + kIdLetters && begins_with(line, kMark)) return true;
        at = end + 1;
    }
    return false;
}

/// Digits, or a blank in place of a first zero.
std::optional<int> two_digits(std::span<const std::byte> bytes, std::size_t at) {
    const char tens = std::to_integer<char>(bytes[at]), units = std::to_integer<char>(bytes[at + 1]);
    if (!(is_digit(tens) || tens == ' ') || !is_digit(units)) return {};
    return (tens == ' ' ? 0 : tens - '0') * 10 + units - '0';
}

/// Hour, minute, second, day and month in a header of 2048 bytes.
bool has_kavrad_time(std::span<const std::byte> bytes) {
    constexpr std::size_t kHeaderBytes = 2048, kTimeAt = 2012;
    constexpr std::array<std::pair<int, int>, 5> kRanges{{{0, 23}, {0, 59}, {0, 59}, {1, 31}, {1, 12}}};
    if (bytes.size() < kHeaderBytes) return false;
    for (std::size_t i = 0; i < kRanges.size(); ++i) {
        const auto value = two_digits(bytes, kTimeAt + 2 * i);
        if (!value || *value < kRanges[i].first || *value > kRanges[i].second) return false;
    }
    return true;
}

/// A station of three letters and digits, and day and month in decimal digits of four bits.
bool has_rrwds_header(std::span<const std::byte> bytes) {
    constexpr std::size_t kHeaderBytes = 12, kRadialBytes = 80, kDayAt = 10, kMonthAt = 11;
    if (bytes.size() < kHeaderBytes + kRadialBytes) return false;
    const auto is_station_letter = [](std::byte byte) {
        const char c = std::to_integer<char>(byte);
        return (c >= 'A' && c <= 'Z') || is_digit(c);
    };
    const auto decimal = [bytes](std::size_t at) {
        const int tens = std::to_integer<int>(bytes[at] >> 4),
                  units = std::to_integer<int>(bytes[at] & std::byte{15});
        return tens > 9 || units > 9 ? 0 : 10 * tens + units;
    };
    const int day = decimal(kDayAt), month = decimal(kMonthAt);
    return std::ranges::all_of(bytes.first(3), is_station_letter) && day >= 1 && day <= 31 && month >= 1 &&
           month <= 12;
}

/// A text whose first line, or second behind the header of the package's own files, is a date label; or one
/// of marked sections.
bool is_summary_text(std::span<const std::byte> bytes) {
    constexpr std::string_view kFirst = " 012*W", kPackage = "VYXRAD";
    std::string_view text(reinterpret_cast<const char *>(bytes.data()), bytes.size());
    if (text.starts_with(kPackage)) return true;
    if (text.empty() || kFirst.find(text.front()) == kFirst.npos) return false;
    if (text.starts_with('*')) return text.find("\nSDUS") != text.npos || text.find("\nRCM") != text.npos;
    if (text.starts_with('W')) text.remove_prefix(std::min(text.find('\n'), text.size() - 1) + 1);
    DateRecord date;
    DATE_decode_label(trimmed(text.substr(0, text.find('\n'))), date);
    return !is_missing(date.year) && !is_missing(date.hour);
}

bool is_netcdf(std::span<const std::byte> bytes) {
    return begins(bytes, "CDF\1") || begins(bytes, "CDF\2") || begins(bytes, "CDF\5");
}

bool is_message(std::span<const std::byte> bytes) {
    ByteReader reader(bytes);
    const int code = reader.i16();
    reader.seek(kDividerAt);
    return reader.i16() == -1 && !reader.failed() && code > 0 && code < kLastProductCode;
}

} // namespace

bool RADAR_names_archive(std::span<const std::byte> bytes) {
    return begins(bytes, "AR2V") || begins(bytes, "ARCHIVE2");
}

RadarFileKind RADAR_file_kind(std::span<const std::byte> first) {
    if (INFLATE_is_gzip(first)) {
        std::vector<std::byte> inside;
        INFLATE_gzip(first, kKindBytes, inside);
        // A file compressed twice is none that a reader opens.
        return INFLATE_is_gzip(inside) ? RadarFileKind::unknown : RADAR_file_kind(inside);
    }
    if (RADAR_names_archive(first)) return RadarFileKind::level2;
    if (begins(first, {"\0\xF0\x09", 3})) return RadarFileKind::nowrad;
    if (is_netcdf(first) || is_summary_text(first)) return RadarFileKind::summary;
    if (names_coded_message(first)) return RadarFileKind::coded_message;
    const bool started = !first.empty() && std::to_integer<unsigned>(first[0]) == kStartOfHeading;
    if (started || is_heading(first) || INFLATE_is_zlib(first) || is_message(first))
        return RadarFileKind::level3;
    if (has_kavrad_time(first)) return RadarFileKind::kavrad;
    if (has_rrwds_header(first)) return RadarFileKind::rrwds;
    return RadarFileKind::unknown;
}
