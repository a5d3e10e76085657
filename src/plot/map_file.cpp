#include "plot/map_file.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>

#include "graphics/core/types.h"
#include "graphics/kernel/kernel.h"
#include "lib/text/byte_reader.h"
#include "lib/text/scan.h"
#include "plot/map.h"
#include "plot/map_pen.h"
#include "plot/map_reach.h"
#include "plot/map_seam.h"

namespace {

constexpr std::size_t kCountSize = 2, kHeaderSize = 22, kPointSize = 8;
constexpr int kHeaderNumbers = 5; ///< bounding values and identifier, after the count
constexpr std::size_t kLongestNumber = 64, kTextHeader = (kHeaderNumbers + 1) * kLongestNumber;
constexpr std::string_view kBlanks = " \t\n\v\f\r";

/// A larger step between two neighbouring points crosses the seam of the projection, plane units.
constexpr float kSeamJump = 20;

/// What no map means, and what would make the transforms turn for long.
constexpr float kMaxLatitude = 91, kMaxLongitude = 1080;

bool is_on_earth(const MapPoint &point) {
    return std::abs(point.lat) <= kMaxLatitude && std::abs(point.lon) <= kMaxLongitude;
}

/// The visible pieces of one record.
class OutlinePen {
public:
    explicit OutlinePen(MapStyle style) : style_(style) {}

    void lift() {
        if (piece_.size() >= 2) style_ == MapStyle::areas ? gfill_area(piece_) : gpolyline(piece_);
        piece_.clear();
    }

    void to(const MapPoint &point) {
        Point plane;
        if (MAP_tran(plane.x, plane.y, point.lat, point.lon) == 1)
            move_to(plane);
        else
            lift();
    }

private:
    void move_to(const Point &point) {
        const auto seam = piece_.empty() ? std::nullopt : MAP_seam_jump(piece_.back(), point, kSeamJump);
        if (seam) {
            if (*seam != 0) piece_.push_back({point.x - *seam, point.y});
            lift();
        }
        piece_.push_back(point);
    }

    MapStyle style_;
    std::vector<Point> piece_;
};

template <typename Pen> void draw_record(std::span<const MapPoint> points, Pen &pen) {
    for (const MapPoint &point : points) is_on_earth(point) ? pen.to(point) : pen.lift();
    pen.lift();
}

template <typename Pen> int draw_records(std::FILE *file, Pen &pen) {
    MapReader reader(file);
    const MapReach reach;
    std::vector<MapPoint> points;
    for (;;) {
        const MapReader::Result result = reader.next(points);
        if (result != MapReader::Result::record) return result == MapReader::Result::last ? 0 : -1;
        if (!reach.misses(points)) draw_record(points, pen);
    }
}

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
    want(kTextHeader);
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
    want(kLongestNumber);
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

int draw_map_file(std::FILE *file, MapStyle style) {
    if (!is_map_projection(MAP_get_proj())) return 1;
    if (MAP_get_proj() == kProjLambertAzim) {
        // Lines sweep round the rim as they pass the antipode.
        CurvePen pen(style == MapStyle::areas ? gfill_area : gpolyline, kSeamJump);
        return draw_records(file, pen);
    }
    OutlinePen pen(style);
    return draw_records(file, pen);
}
