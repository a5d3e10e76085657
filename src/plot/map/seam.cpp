#include "plot/map/seam.h"

#include <algorithm>
#include <cmath>

#include "plot/map/current_map.h"

namespace {

constexpr float kMercatorPeriod = 400.31555892808814F; ///< 2 pi earth radii
constexpr float kMollweideWidth = 254.852F, kMollweideHalfHeight = 63.713F;

/// At height y; nothing for projections that are torn nowhere.
std::optional<float> period_at(float y) {
    switch (MAP_get_proj()) {
    case kProjLatLon: return 360.0F;
    case kProjMercator: return kMercatorPeriod;
    // The sides of the gap in the cone stand at an angle, and around the antipode all directions are sides:
    // no shift lays one on the other.
    case kProjLambert:
    case kProjLambertAzim: return 0.0F;
    case kProjMollweide: {
        const float height = y / kMollweideHalfHeight;
        return kMollweideWidth * std::sqrt(std::max(0.0F, 1 - height * height));
    }
    default: return std::nullopt;
    }
}

} // namespace

std::optional<float> MAP_seam_jump(const Point &from, const Point &to, float longest) {
    const float jump = to.x - from.x;
    const bool far_up = MAP_get_proj() == kProjLambertAzim && std::abs(to.y - from.y) > longest;
    if (std::abs(jump) <= longest && !far_up) return std::nullopt;
    const auto period = period_at(to.y);
    return period ? std::optional(std::copysign(*period, jump)) : std::nullopt;
}
