#include "plot/projection/transform.h"

#include <array>

namespace {

constexpr int kMostGridPoints = 100000;   // in one direction
constexpr float kLargestSpacing = 100000; // plane units
constexpr float kLargestLongitude = 720;  // degrees; one turn more than anyone writes
constexpr float kLargestNumber = 1e7F;    // of a diagram
constexpr double kBeyondPlane = 1e30;     // no position; also keeps results within single precision

bool prepare_family(ProjectionState &state, const PlotDomain &domain) {
    switch (state.code) {
    case kProjPolar: return polar::prepare(state, domain);
    case kProjLambert: return lambert::prepare(state, domain);
    case kProjSatellite: return satellite::prepare(state, domain);
    default: return is_map_projection(state.code) || diagram::prepare(state, domain);
    }
}

PlanePoint forward(const ProjectionState &state, double lat, double lon) {
    switch (state.code) {
    case kProjPolar: return polar::forward(state, lat, lon);
    case kProjLatLon: return latlon::forward(state, lat, lon);
    case kProjMercator: return mercator::forward(state, lat, lon);
    case kProjLambert: return lambert::forward(state, lat, lon);
    case kProjOrtho: return orthographic::forward(state, lat, lon);
    case kProjGnomonic: return gnomonic::forward(state, lat, lon);
    case kProjMollweide: return mollweide::forward(state, lat, lon);
    case kProjLambertAzim: return lambert_azimuthal::forward(state, lat, lon);
    case kProjSatellite: return satellite::forward(state, lat, lon);
    case kProjNone: return {lat, lon, true};
    default: return diagram::forward(state, lat, lon);
    }
}

GeoPoint inverse(const ProjectionState &state, double x, double y) {
    switch (state.code) {
    case kProjPolar: return polar::inverse(state, x, y);
    case kProjLatLon: return latlon::inverse(state, x, y);
    case kProjMercator: return mercator::inverse(state, x, y);
    case kProjLambert: return lambert::inverse(state, x, y);
    case kProjOrtho: return orthographic::inverse(state, x, y);
    case kProjGnomonic: return gnomonic::inverse(state, x, y);
    case kProjMollweide: return mollweide::inverse(state, x, y);
    case kProjLambertAzim: return lambert_azimuthal::inverse(state, x, y);
    case kProjSatellite: return satellite::inverse(state, x, y);
    case kProjNone: return {x, y, true};
    default: return diagram::inverse(state, x, y);
    }
}

bool is_latitude(float value) {
    return std::abs(value) <= 90;
}

bool is_longitude(float value) {
    return std::abs(value) <= kLargestLongitude;
}

bool is_possible_map(const PlotDomain &d) {
    return is_latitude(d.clat) && is_longitude(d.clon) && (is_missing(d.plat) || is_latitude(d.plat)) &&
           (is_missing(d.plon) || is_longitude(d.plon)) && d.dx > 0 && d.dx <= kLargestSpacing && d.dy > 0 &&
           d.dy <= kLargestSpacing && d.nx >= 1 && d.nx <= kMostGridPoints && d.ny >= 1 &&
           d.ny <= kMostGridPoints;
}

} // namespace

bool has_transform(int code) {
    switch (code) {
    case kProjNone:
    case kProjXY:
    case kProjXLogY:
    case kProjHodo:
    case kProjCat:
    case kProjXP:
    case kProjPixel: return true;
    default: return is_map_projection(code);
    }
}

MapProjection derive_projection(const PlotDomain &domain) {
    MapProjection projection;
    ProjectionState &state = projection.state;
    state.code = domain.proj;
    if (!has_transform(domain.proj)) return projection;
    state.lat0 = is_missing(domain.plat) ? domain.clat : domain.plat;
    state.lon0 = is_missing(domain.plon) ? domain.clon : domain.plon;
    // A domain without any latitude leaves the equator to the globes and the southern hemisphere to the rest.
    state.hemisphere = state.lat0 < 0 ? -1 : 1;
    const double lat0 = is_missing(static_cast<float>(state.lat0)) ? 0 : state.lat0;
    state.sin_lat0 = std::sin(radians(lat0));
    state.cos_lat0 = std::cos(radians(lat0));
    projection.possible = prepare_family(state, domain);
    return projection;
}

PlanePoint project(const MapProjection &projection, double lat, double lon) {
    if (!projection.possible) return {};
    if (is_map_projection(projection.state.code)) lon = bring_into_range(lon);
    const PlanePoint point = forward(projection.state, lat, lon);
    return std::abs(point.x) < kBeyondPlane && std::abs(point.y) < kBeyondPlane ? point : PlanePoint{};
}

GeoPoint unproject(const MapProjection &projection, double x, double y) {
    if (!projection.possible) return {};
    const GeoPoint point = inverse(projection.state, x, y);
    return std::abs(point.lat) < kBeyondPlane && std::abs(point.lon) < kBeyondPlane ? point : GeoPoint{};
}

bool is_possible_domain(const PlotDomain &domain) {
    if (is_map_projection(domain.proj)) return is_possible_map(domain) && derive_projection(domain).possible;
    for (const float value : {domain.clat, domain.clon, domain.dx, domain.dy})
        if (!(std::abs(value) <= kLargestNumber)) return false;
    for (const int count : {domain.nx, domain.ny})
        if (count != kMissing && (count < 1 || count > kMostGridPoints)) return false;
    const bool without_picture = domain.proj >= kProjSkewT && domain.proj <= kProjRTeph;
    return domain.proj != kProjUnknown && !without_picture && derive_projection(domain).possible;
}
