#include "radar/common/cell_image.h"

#include <cmath>

#include "plot/domain/plot_domain.h"

namespace {

/// A point as a strip sees it.
struct Along {
    double aside; ///< distance from the middle line, 1 at the edges
    double reach; ///< from where the strip's cells count
};

/// A cell of a radial is bounded by straight lines from edge to edge: in its middle it reaches less far out
/// than at its corners.
Along along_radial(const CellStrip &strip, const Point &point) {
    const double half = (static_cast<double>(strip.side_b) - static_cast<double>(strip.side_a)) / 2;
    const double middle = static_cast<double>(strip.side_a) + half;
    const double azimuth = std::atan2(static_cast<double>(point.x), static_cast<double>(point.y)) / kDegree;
    const double turn = std::remainder(azimuth - middle, 360.0);
    const double range = std::hypot(static_cast<double>(point.x), static_cast<double>(point.y));
    return {std::abs(turn / half), range * std::cos(turn * kDegree) / std::cos(half * kDegree)};
}

Along along_row(const CellStrip &strip, const Point &point) {
    const double half = (static_cast<double>(strip.side_a) - static_cast<double>(strip.side_b)) / 2;
    const double middle = static_cast<double>(strip.side_b) + half;
    return {std::abs(static_cast<double>(point.y) - middle) / half, static_cast<double>(point.x)};
}

} // namespace

void CellImage::add(CellStrip strip) {
    cells_ += strip.levels.size();
    if (is_whole()) strips_.push_back(std::move(strip));
}

std::optional<FoundCell> CellImage::at(const Point &point,
                                       const std::function<bool(const FoundCell &)> &draws) const {
    std::optional<FoundCell> nearest;
    double least_aside = 0;
    for (auto strip = strips_.rbegin(); strip != strips_.rend(); ++strip) {
        const Along along =
            strip->kind == CellStrip::Kind::radial ? along_radial(*strip, point) : along_row(*strip, point);
        const double cell =
            std::floor((along.reach - static_cast<double>(strip->first)) / static_cast<double>(strip->step));
        if (!(along.aside <= 1) || !(cell >= 0) || !(cell < static_cast<double>(strip->levels.size())))
            continue;
        const auto index = static_cast<std::size_t>(cell);
        FoundCell found{strip->look, strip->levels[index], false};
        found.drawn = index >= strip->skip && draws(found);
        if (found.drawn) return found;
        if (!nearest || along.aside < least_aside) {
            nearest = found;
            least_aside = along.aside;
        }
    }
    return nearest;
}
