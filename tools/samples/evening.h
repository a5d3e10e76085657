#pragma once
/// The simulated evening on the earth, and the plane in which national summaries are made.

#include <numbers>

#include "samples/scene.h"

namespace samples {

inline constexpr double kRadian = std::numbers::pi / 180, kEarthKm = 6371.22;

/// From one place of the earth to another, along a great circle.
struct EarthWay {
    double km, azimuth; ///< degrees from north
};
EarthWay earth_way(double from_lat, double from_lon, double lat, double lon);

/// Reflectivity at a place on the earth.
class Evening {
public:
    explicit Evening(double minutes) : scene_(minutes) {}
    /// dBZ; below -30 there is no echo.
    [[nodiscard]] double dbz(double lat, double lon) const;
    /// A place near the storms: elsewhere there is no echo.
    [[nodiscard]] bool near(double lat, double lon) const;
    /// Where a cell is.
    void place(const Cell &cell, double &lat, double &lon) const;
    [[nodiscard]] const Scene &scene() const { return scene_; }

private:
    Site site_;
    Scene scene_;
};

/// The six intensities of summaries, 0 for none.
unsigned summary_level(double dbz);

/// Polar stereographic, true at 60 degrees north (Snyder, chapter 21), kilometres; 105 degrees west points
/// down.
struct Polar {
    static void forward(double lat, double lon, double &x, double &y);
    static void inverse(double x, double y, double &lat, double &lon);
};

} // namespace samples
