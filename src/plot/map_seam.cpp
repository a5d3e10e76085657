#include "plot/map_seam.h"

#include <algorithm>
#include <cmath>

#include "plot/map.h"

namespace {

constexpr float kMercatorPeriod = 400.31555892808814F; ///< 2 pi earth radii
constexpr float kOffThePlot = 1000;
constexpr float kMollweideWidth = 254.852F, kMollweideHalfHeight = 63.713F;

} // namespace

float MAP_seam_period(float y) {
    switch (MAP_get_proj()) {
    case kProjLatLon: return 360;
    case kProjMercator: return kMercatorPeriod;
    case kProjLambert: return kOffThePlot;
    case kProjMollweide: {
        const float height = y / kMollweideHalfHeight;
        return kMollweideWidth * std::sqrt(std::max(0.0F, 1 - height * height));
    }
    default: return 0;
    }
}
