#include "plot/map_seam.h"

#include <algorithm>
#include <cmath>

#include "plot/map.h"

namespace {

constexpr float kMercatorPeriod = 400.31555892808814F; ///< 2 pi earth radii
constexpr float kMollweideWidth = 254.852F, kMollweideHalfHeight = 63.713F;

} // namespace

std::optional<float> MAP_seam_period(float y) {
    switch (MAP_get_proj()) {
    case kProjLatLon: return 360.0F;
    case kProjMercator: return kMercatorPeriod;
    // The sides of the gap in the cone stand at an angle: no shift lays one on the other.
    case kProjLambert: return std::nullopt;
    case kProjMollweide: {
        const float height = y / kMollweideHalfHeight;
        return kMollweideWidth * std::sqrt(std::max(0.0F, 1 - height * height));
    }
    default: return 0.0F;
    }
}
