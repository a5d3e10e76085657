#include "radar/common/file_kind.h"

#include <string_view>
#include <vector>

#include "lib/text/byte_reader.h"
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
    const bool started = !first.empty() && std::to_integer<unsigned>(first[0]) == kStartOfHeading;
    if (started || is_heading(first) || INFLATE_is_zlib(first) || is_message(first))
        return RadarFileKind::level3;
    return RadarFileKind::unknown;
}
