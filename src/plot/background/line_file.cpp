#include "plot/background/line_file.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>

#include "lib/text/byte_reader.h"
#include "lib/text/scan.h"

namespace {

constexpr std::size_t kCountSize = 2, kHeaderSize = 22, kPointSize = 8;
constexpr int kHeaderNumbers = 5; ///< bounding values and identifier, after the count
constexpr std::size_t kLongestNumber = 64, kTextHeader = (kHeaderNumbers + 1) * kLongestNumber;
constexpr std::string_view kBlanks = " \t\n\v\f\r";

} // namespace

std::span<const std::byte> MapReader::unread() const {
    return std::as_bytes(std::span(buffer_)).subspan(begin_, available());
}

/// True when that many unread bytes are in the buffer, after reading more when needed.
bool MapReader::want(std::size_t bytes) {
    if (available() >= bytes) return true;
    std::memmove(buffer_.data(), buffer_.data() + begin_, available());
    end_ = available();
    begin_ = 0;
    end_ += std::fread(buffer_.data() + end_, 1, buffer_.size() - end_, file_);
    return available() >= bytes;
}

/// A file is text when its first record's header reads as six numbers.
MapReader::Form MapReader::detect() {
    (void)want(kTextHeader); // a shorter file is read as far as it goes
    Scanner scanner(std::string_view(buffer_.data() + begin_, std::min(available(), kTextHeader)));
    scanner.integer();
    for (int i = 0; i < kHeaderNumbers - 1; ++i) scanner.real();
    scanner.long_integer();
    return scanner.failed() ? Form::binary : Form::text;
}

MapReader::Result MapReader::next(std::vector<MapPoint> &points) {
    if (form_ == Form::unknown) form_ = detect();
    points.clear();
    return form_ == Form::text ? next_text(points) : next_binary(points);
}

MapReader::Result MapReader::next_binary(std::vector<MapPoint> &points) {
    if (!want(kCountSize)) return Result::end;
    const auto count = static_cast<std::int16_t>(ByteReader(unread()).u16());
    if (count == 0) return Result::last;
    if (count < 0 || !want(kHeaderSize)) return Result::end;
    begin_ += kHeaderSize;
    for (auto missing = static_cast<std::size_t>(count); missing > 0;) {
        if (!want(kPointSize)) return Result::end;
        const std::size_t here = std::min(missing, available() / kPointSize);
        ByteReader reader(unread());
        for (std::size_t i = 0; i < here; ++i) {
            const float lat = reader.f32();
            points.push_back({lat, reader.f32()});
        }
        begin_ += here * kPointSize;
        missing -= here;
    }
    return Result::record;
}

bool MapReader::text_number(float &number) {
    const auto is_blank = [](char c) { return kBlanks.find(c) != std::string_view::npos; };
    while (want(1) && is_blank(buffer_[begin_])) ++begin_;
    (void)want(kLongestNumber); // the last number may be shorter
    Scanner scanner(std::string_view(buffer_.data() + begin_, std::min(available(), kLongestNumber)));
    const auto value = scanner.real();
    if (!value) return false;
    begin_ += scanner.position();
    number = *value;
    return true;
}

MapReader::Result MapReader::next_text(std::vector<MapPoint> &points) {
    float count = 0, unused = 0;
    if (!text_number(count)) return Result::end;
    if (count == 0) return Result::last;
    constexpr float most = std::numeric_limits<std::int16_t>::max();
    if (!(count >= 1 && count <= most && count == std::floor(count))) return Result::end;
    for (int i = 0; i < kHeaderNumbers; ++i)
        if (!text_number(unused)) return Result::end;
    for (int i = 0; i < static_cast<int>(count); ++i) {
        MapPoint point{};
        if (!text_number(point.lat) || !text_number(point.lon)) return Result::end;
        points.push_back(point);
    }
    return Result::record;
}
