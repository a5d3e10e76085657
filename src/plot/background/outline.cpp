#include "plot/background/outline.h"

#include <cmath>
#include <optional>
#include <span>
#include <vector>

#include "graphics/core/types.h"
#include "graphics/kernel/kernel.h"
#include "plot/background/curve_pen.h"
#include "plot/background/line_file.h"
#include "plot/background/reach.h"
#include "plot/map/current_map.h"
#include "plot/map/seam.h"

namespace {

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
