#pragma once
/// One simulated evening: a squall line with supercells moving over a radar site. Everything the sample
/// writers put into files is read from here, so that products of one time fit each other.

#include <string>
#include <vector>

namespace samples {

/// A storm cell at one time.
struct Cell {
    std::string id;
    double x_km, y_km; ///< east and north of the radar
    double peak_dbz;
    double radius_km;
    double top_kft;
    bool rotating;
};

class Scene {
public:
    /// `minutes` since the first volume.
    explicit Scene(double minutes);

    [[nodiscard]] const std::vector<Cell> &cells() const { return cells_; }
    /// Reflectivity, dBZ; below -30 there is no echo. Distances east and north of the radar.
    [[nodiscard]] double dbz(double x_km, double y_km) const;
    /// Velocity away from the radar, metres a second, for a beam at a low elevation angle.
    [[nodiscard]] double radial_velocity(double x_km, double y_km) const;
    /// Echo top in thousands of feet, 0 without echo.
    [[nodiscard]] double top_kft(double x_km, double y_km) const;
    /// Vertically integrated liquid, kg a square metre.
    [[nodiscard]] double liquid(double x_km, double y_km) const;
    /// Rain of the hour before, inches.
    [[nodiscard]] double hour_rain_inch(double x_km, double y_km) const;

    /// Storm motion: where it comes from (degrees) and its speed (knots).
    static constexpr double kMotionFromDeg = 245.0;
    static constexpr double kMotionKnots = 38.0;

private:
    double minutes_;
    std::vector<Cell> cells_;
};

/// Wind of the environment at a height: from where (degrees) and how fast (knots).
struct Wind {
    double from_deg, knots;
};
Wind environment_wind(double height_kft, double minutes);

/// The radar of the samples.
struct Site {
    const char *id = "KLSX";
    double lat = 38.6987, lon = -90.6828; ///< degrees
    int height_ft = 721;
    int source = 308; ///< source identifier in message headers
};

} // namespace samples
