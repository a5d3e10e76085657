#include "plot/map/current_map.h"

#include <algorithm>
#include <cmath>

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "plot/projection/direction.h"
#include "plot/projection/sphere.h"
#include "plot/projection/transform.h"

namespace {

constexpr float kGridMargin = 3; // grid lengths around the domain that still count as inside

struct KnownProjection {
    PlotDomain domain;
    MapProjection projection;
};

struct State {
    PlotDomain domain;        ///< plat and plon filled
    MapProjection projection; ///< derived from `domain`, never stale
    Rect limits;
    KnownProjection from, to; ///< of the last conversion between domains, which comes point by point
};

State state;

int store(const PlanePoint &point, float &x, float &y) {
    x = static_cast<float>(point.x);
    y = static_cast<float>(point.y);
    return point.visible ? 1 : 0;
}

Rect map_limits(const PlotDomain &d) {
    float xc = 0, yc = 0;
    MAP_tran_center(xc, yc);
    const float half_width = static_cast<float>(d.nx - 1) * 0.5F * d.dx;
    const float half_height = static_cast<float>(d.ny - 1) * 0.5F * d.dy;
    return {xc - half_width, xc + half_width, yc - half_height, yc + half_height};
}

// A diagram's domain is its lower left corner and its extent: in plane units where the axes are linear or
// polar, in data units elsewhere.
Rect diagram_limits(const PlotDomain &d) {
    Point first{d.clat, d.clon}, second{d.clat + d.dx, d.clon + d.dy};
    switch (d.proj) {
    case kProjXP: first.y = -d.clon; [[fallthrough]];
    case kProjXY:
    case kProjCat: second = {first.x + static_cast<float>(d.nx), first.y + static_cast<float>(d.ny)}; break;
    case kProjHodo: break;
    default:
        MAP_tran(first.x, first.y, d.clat, d.clon);
        MAP_tran(second.x, second.y, d.clat + d.dx, d.clon + d.dy);
    }
    return {std::min(first.x, second.x), std::max(first.x, second.x), std::min(first.y, second.y),
            std::max(first.y, second.y)};
}

bool is_diagram(int code) {
    return has_transform(code) && !is_map_projection(code) && code != kProjNone;
}

const MapProjection &derived(KnownProjection &known, const PlotDomain &domain) {
    if (!DOM_comp(known.domain, domain)) known = {domain, derive_projection(domain)};
    return known.projection;
}

} // namespace

int MAP_domain(const PlotDomain *domain) {
    if (domain == nullptr) {
        MAP_proj(kProjNone);
        return -1;
    }
    state.domain = *domain;
    if (is_missing(state.domain.plat)) state.domain.plat = state.domain.clat;
    if (is_missing(state.domain.plon)) state.domain.plon = state.domain.clon;
    state.projection = derive_projection(state.domain);
    state.limits = is_map_projection(state.domain.proj) ? map_limits(state.domain)
                   : is_diagram(state.domain.proj)      ? diagram_limits(state.domain)
                                                        : Rect{};
    return 0;
}

int MAP_setup(const PlotDomain &domain) {
    const int status = MAP_domain(&domain);
    gset_win(kDataTransform, state.limits);
    gsel_norm_tran(kDataTransform);
    return status;
}

const PlotDomain &MAP_get_domain() {
    return state.domain;
}

void MAP_proj(int code) {
    state.domain.proj = code;
    state.projection = derive_projection(state.domain);
}

int MAP_get_proj() {
    return state.domain.proj;
}

float MAP_get_clat() {
    return state.domain.clat;
}

float MAP_get_clon() {
    return state.domain.clon;
}

Rect MAP_get_limits() {
    return state.limits;
}

void MAP_get_up_left(float &x, float &y) {
    x = state.limits.xmin;
    y = state.limits.ymax;
}

int MAP_tran(float &x, float &y, float lat, float lon) {
    if (!has_transform(state.domain.proj)) return 1;
    return store(project(state.projection, lat, lon), x, y);
}

int MAP_untran(float &lat, float &lon, float x, float y) {
    if (!has_transform(state.domain.proj)) return 1;
    const GeoPoint point = unproject(state.projection, x, y);
    lat = static_cast<float>(point.lat);
    lon = static_cast<float>(point.lon);
    return point.visible ? 1 : 0;
}

int MAP_tran_center(float &x, float &y) {
    return MAP_tran(x, y, state.domain.clat, state.domain.clon);
}

int MAP_grid_tran(float &x, float &y, float i, float j) {
    if (is_missing(i)) {
        x = y = kMissingF;
        return -1;
    }
    x = state.limits.xmin + i * state.domain.dx;
    y = state.limits.ymax - j * state.domain.dy;
    return 0;
}

int MAP_grid_untran(float &i, float &j, float x, float y) {
    if (is_missing(x) || state.domain.dx == 0 || state.domain.dy == 0) {
        i = j = kMissingF;
        return -1;
    }
    i = (x - state.limits.xmin) / state.domain.dx;
    j = (state.limits.ymax - y) / state.domain.dy;
    return 0;
}

int MAP_in_grid_domain(float x, float y) {
    if (state.domain.proj == kProjNone) return 1;
    const float margin_x = kGridMargin * state.domain.dx, margin_y = kGridMargin * state.domain.dy;
    const Rect &r = state.limits;
    return x >= r.xmin - margin_x && x <= r.xmax + margin_x && y >= r.ymin - margin_y &&
           y <= r.ymax + margin_y;
}

void MAP_offset(float &xo, float &yo, float x, float y, float azimuth, float km) {
    if (!has_transform(state.domain.proj)) return;
    PlanePoint reached;
    if (const GeoPoint start = unproject(state.projection, x, y); start.lat != kMissingF) {
        const SpherePoint end = SphereOrigin(start.lat, start.lon).towards(azimuth, km);
        reached = project(state.projection, end.lat, end.lon);
    }
    store(reached, xo, yo);
}

float MAP_dir_adj(float direction, float x, float y) {
    if (!is_map_projection(state.domain.proj)) return direction;
    return static_cast<float>(direction_on_plane(state.projection, direction, x, y).value_or(kMissingF));
}

float MAP_dir(float x1, float y1, float x2, float y2) {
    const double right = static_cast<double>(x2) - x1, up = static_cast<double>(y2) - y1;
    if (!is_map_projection(state.domain.proj)) return static_cast<float>(degrees(std::atan2(right, up)));
    return static_cast<float>(direction_from_north(state.projection, right, up, x1, y1).value_or(kMissingF));
}

float MAP_factor(float lat) {
    if (state.domain.proj == kProjPolar)
        return static_cast<float>(1.866 / std::max(1 + std::sin(radians(lat)), 1e-6));
    // A domain that does not say has true lengths at its standard parallels.
    const bool told = state.domain.proj == kProjLambert && !is_missing(state.domain.p5);
    return told ? state.domain.p5 : 1.0F;
}

int MAP_domain_tran(const PlotDomain &from, const PlotDomain &to, float &xo, float &yo, float x, float y) {
    if (DOM_comp(from, to)) {
        xo = x;
        yo = y;
        return 1;
    }
    if (!has_transform(from.proj) || !has_transform(to.proj)) return 1;
    const GeoPoint place = unproject(derived(state.from, from), x, y);
    const bool placed = place.visible || place.lat != kMissingF;
    return store(placed ? project(derived(state.to, to), place.lat, place.lon) : PlanePoint{}, xo, yo);
}
