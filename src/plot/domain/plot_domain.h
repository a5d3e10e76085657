#pragma once
/// The plot domain record: projection, centre, grid. Stands below everything that uses domains.

#include "lib/text/missing.h"

/// Projection codes. 1 to 9 are map projections, the others diagrams.
enum Projection : int {
    kProjNone = kMissing, ///< coordinates pass through
    kProjUnknown = -1,    ///< a name that no projection has
    kProjPolar = 1,
    kProjLatLon = 2,
    kProjMercator = 3,
    kProjLambert = 4,
    kProjOrtho = 5,
    kProjGnomonic = 6,
    kProjMollweide = 7,
    kProjLambertAzim = 8,
    kProjSatellite = 9,
    kProjXY = 20,
    kProjXZ = 21,
    kProjXLogY = 22,
    kProjHodo = 23,
    kProjCat = 24,
    kProjXP = 25,
    kProjSkewT = 40,
    kProjStuve = 41,
    kProjEma = 42,
    kProjTeph = 43,
    kProjRTeph = 44,
    kProjZoom = 50,
    kProjSize = 51,
    kProjPixel = 99
};

/// Sphere of all map projections, in plane units of 100 km (6371.22 km).
inline constexpr float kEarthRadius = 63.7122F;
/// Lengths in the plane of a projection, and the earth's radius, are in units of this.
inline constexpr float kKmPerPlaneUnit = 100.0F;
inline constexpr double kEarthRadiusKm =
    static_cast<double>(kEarthRadius) * static_cast<double>(kKmPerPlaneUnit);
inline constexpr double kDegree = 0.017453292519943334; ///< radians
inline constexpr float kKmPerNauticalMile = 1.852F;

/// kMissing in a field means not given. Plane units are 100 km, for latitude-longitude degrees.
struct PlotDomain {
    int proj = kMissing;
    float plat = kMissingF; ///< projection latitude; clat when not given
    float plon = kMissingF; ///< central longitude, east positive; clon when not given
    float p3 = kMissingF;   ///< true latitude, first true latitude, or satellite distance (plane units)
    float p4 = kMissingF;   ///< second true latitude, or satellite scan mode (1: scan angles)
    float p5 = kMissingF;   ///< map factor of the Lambert conformal projection
    float p6 = kMissingF, p7 = kMissingF;
    float clat = kMissingF, clon = kMissingF; ///< centre, degrees
    float dx = kMissingF, dy = kMissingF;     ///< grid spacing, plane units
    int nx = kMissing, ny = kMissing;         ///< grid points
    int ellipsoid = 0;                        ///< 1: WGS-84 for the satellite view
};

inline bool is_map_projection(int proj) {
    return proj >= kProjPolar && proj <= kProjSatellite;
}

/// Fills the not-given values. Returns 0.
int DOM_init(PlotDomain &domain);
/// 1 when both describe the same domain; a not-given plat or plon counts as clat or clon. Floats compare
/// exactly.
int DOM_comp(const PlotDomain &a, const PlotDomain &b);
/// The same test restricted to the projection.
int DOM_comp_proj(const PlotDomain &a, const PlotDomain &b);
/// (nx - 1) / (ny - 1), or 1 when either count is below 2.
float DOM_aspect(const PlotDomain &domain);
