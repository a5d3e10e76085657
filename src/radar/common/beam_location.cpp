#include "radar/common/beam_location.h"

#include <cmath>

#include "lib/report/message.h"
#include "lib/text/missing.h"
#include "plot/map/current_map.h"
#include "plot/projection/sphere.h"

namespace {

constexpr double kBeamEarthRadius = 63.713;      ///< mean radius of the earth, units of 100 km
constexpr double kNauticalMilesPerUnit = 53.996; ///< 100 / 1.852
constexpr double kFeetPerNauticalMile = 6076.22; ///< a tenth above 1852 / 0.3048, which no rounded foot shows

struct BeamPoint {
    float distance_nm = kMissingF, altitude_ft = kMissingF;
};

/// The beam at `distance` (units of 100 km along the ground) and `elevation` (degrees) over a sphere,
/// straight: no air bends it.
BeamPoint beam_at(double distance, double elevation) {
    const double angle = (elevation + 90) * kDegree;
    const double height = std::sqrt(distance * distance + kBeamEarthRadius * kBeamEarthRadius -
                                    2 * distance * kBeamEarthRadius * std::cos(angle)) -
                          kBeamEarthRadius;
    return {static_cast<float>(distance * kNauticalMilesPerUnit),
            static_cast<float>(height * kNauticalMilesPerUnit * kFeetPerNauticalMile)};
}

} // namespace

void NIDS_print_loc_elev(std::string_view event, float x, float y, float radar_lat, float radar_lon,
                         float elevation) {
    if (event != "v-Alt") return;
    float radar_x = kMissingF, radar_y = kMissingF, lat = kMissingF, lon = kMissingF;
    const bool seen = MAP_tran(radar_x, radar_y, radar_lat, radar_lon) != 0;
    const bool placed = MAP_untran(lat, lon, x, y) != 0;
    BeamPoint beam;
    if (seen && placed) {
        const double distance =
            std::hypot(static_cast<double>(x - radar_x), static_cast<double>(y - radar_y)) /
            static_cast<double>(MAP_factor(radar_lat));
        beam = beam_at(distance, static_cast<double>(elevation));
        if (is_missing(elevation)) beam.altitude_ft = kMissingF;
    }
    MESS_print(kDebug, "Str: %.*s Pos: %6.2f,%6.2f Lat: %6.2f Lon: %6.2f\n", static_cast<int>(event.size()),
               event.data(), static_cast<double>(x), static_cast<double>(y), static_cast<double>(lat),
               static_cast<double>(lon));
    MESS_print(kPrint, "Lat: %6.2f Lon: %6.2f Dist: %5.1fnm Alt: %5.0fft\n", static_cast<double>(lat),
               static_cast<double>(lon), static_cast<double>(beam.distance_nm),
               static_cast<double>(beam.altitude_ft));
}
