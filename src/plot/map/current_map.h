#pragma once
/// The one current plot domain, and the way between geographic and plane coordinates.

#include "graphics/core/types.h"
#include "plot/domain/plot_domain.h"

/// Installs a copy of the domain and derives its constants. 0; with a null domain the projection becomes
/// none, -1.
int MAP_domain(const PlotDomain *domain);
/// MAP_domain, then the plane limits become the window of transform 2, which is selected.
int MAP_setup(const PlotDomain &domain);
/// The current domain.
const PlotDomain &MAP_get_domain();
/// Replaces only the projection code.
void MAP_proj(int code);
int MAP_get_proj();
float MAP_get_clat();
float MAP_get_clon();
/// Plane rectangle covered by the domain.
Rect MAP_get_limits();
void MAP_get_up_left(float &x, float &y);

/// Geographic (degrees) to plane coordinates. 1; 0 and x = y = -9999 when the projection cannot show the
/// point.
int MAP_tran(float &x, float &y, float lat, float lon);
/// Plane to geographic; the same result convention.
int MAP_untran(float &lat, float &lon, float x, float y);
int MAP_tran_center(float &x, float &y);
/// Grid index (i from the left, j from the top) to plane and back. 0; -1 for a missing i (or x).
int MAP_grid_tran(float &x, float &y, float i, float j);
int MAP_grid_untran(float &i, float &j, float x, float y);
/// 1 inside the limits widened by three grid lengths.
int MAP_in_grid_domain(float x, float y);
/// Plane point reached from (x, y) by `km` along the great circle that sets out towards `azimuth` (degrees
/// clockwise from north); missing when either end is not shown.
void MAP_offset(float &xo, float &yo, float x, float y, float azimuth, float km);
/// Direction from true north at (x, y), turned to the plane's y axis. Not brought into [0, 360). Missing
/// where a map projection shows no place.
float MAP_dir_adj(float direction, float x, float y);
/// Direction from true north, at point 1, of the plane segment from point 1 to point 2.
float MAP_dir(float x1, float y1, float x2, float y2);
/// Map scale factor at a latitude.
float MAP_factor(float lat);
/// Plane point of domain `from` as a plane point of domain `to`; the current domain is untouched.
int MAP_domain_tran(const PlotDomain &from, const PlotDomain &to, float &xo, float &yo, float x, float y);

/// Installs a domain for a scope and puts the previous one back.
class MapDomainScope {
public:
    explicit MapDomainScope(const PlotDomain &domain) : saved_(MAP_get_domain()) { MAP_domain(&domain); }
    MapDomainScope(const MapDomainScope &) = delete;
    MapDomainScope &operator=(const MapDomainScope &) = delete;
    ~MapDomainScope() { MAP_domain(&saved_); }

private:
    PlotDomain saved_;
};
