#include "plot/background/curve_pen.h"

#include <algorithm>
#include <cmath>

#include "plot/map/current_map.h"

namespace {

/// Of a line between two places; 2.5 degrees become a kilometre.
constexpr int kHalvings = 8;

MapPoint halfway(const MapPoint &a, const MapPoint &b) {
    const float turn = std::remainder(b.lon - a.lon, 360.0F);
    return {(a.lat + b.lat) / 2, a.lon + turn / 2};
}

} // namespace

CurvePen::Node CurvePen::node_at(const MapPoint &place) {
    Node node{place, {}, false};
    node.visible = MAP_tran(node.plane.x, node.plane.y, place.lat, place.lon) == 1;
    return node;
}

bool CurvePen::is_far(const Point &a, const Point &b) const {
    return std::abs(b.x - a.x) > longest_ || std::abs(b.y - a.y) > longest_;
}

/// By the box around both points, and as much around it: a bend goes no farther.
bool CurvePen::is_outside(const Point &a, const Point &b) const {
    if (!keeps_to_window_) return false;
    const float margin = std::max(std::abs(b.x - a.x), std::abs(b.y - a.y));
    return std::max(a.x, b.x) + margin < window_.xmin || std::min(a.x, b.x) - margin > window_.xmax ||
           std::max(a.y, b.y) + margin < window_.ymin || std::min(a.y, b.y) - margin > window_.ymax;
}

void CurvePen::to(const MapPoint &place) {
    const Node node = node_at(place);
    if (has_last_) join(last_, node, kHalvings);
    last_ = node;
    has_last_ = true;
}

void CurvePen::lift() {
    finish_piece();
    has_last_ = false;
}

void CurvePen::finish_piece() {
    if (piece_.size() >= 2) ink_(piece_);
    piece_.clear();
}

void CurvePen::draw_to(const Node &a, const Node &b) {
    if (piece_.empty()) piece_.push_back(a.plane);
    piece_.push_back(b.plane);
    if (listener_) listener_(a.plane, b.plane);
}

void CurvePen::join(const Node &a, const Node &b, int halvings) {
    const bool both = a.visible && b.visible;
    if ((!a.visible && !b.visible) || (both && is_outside(a.plane, b.plane)))
        finish_piece();
    else if (both && !is_far(a.plane, b.plane))
        draw_to(a, b);
    else if (halvings == 0)
        finish_piece();
    else {
        const Node middle = node_at(halfway(a.place, b.place));
        join(a, middle, halvings - 1);
        join(middle, b, halvings - 1);
    }
}
