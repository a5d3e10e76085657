#include "plot/domain/plot_domain.h"

namespace {

float projection_latitude(const PlotDomain &domain) {
    return is_missing(domain.plat) ? domain.clat : domain.plat;
}

float projection_longitude(const PlotDomain &domain) {
    return is_missing(domain.plon) ? domain.clon : domain.plon;
}

} // namespace

int DOM_init(PlotDomain &domain) {
    domain = PlotDomain{};
    return 0;
}

int DOM_comp_proj(const PlotDomain &a, const PlotDomain &b) {
    return a.proj == b.proj && projection_latitude(a) == projection_latitude(b) &&
           projection_longitude(a) == projection_longitude(b) && a.p3 == b.p3 && a.p4 == b.p4 &&
           a.p5 == b.p5 && a.p6 == b.p6 && a.p7 == b.p7 && a.ellipsoid == b.ellipsoid;
}

int DOM_comp(const PlotDomain &a, const PlotDomain &b) {
    return DOM_comp_proj(a, b) && a.clat == b.clat && a.clon == b.clon && a.dx == b.dx && a.dy == b.dy &&
           a.nx == b.nx && a.ny == b.ny;
}

float DOM_aspect(const PlotDomain &domain) {
    if (domain.nx < 2 || domain.ny < 2) return 1.0F;
    return static_cast<float>(domain.nx - 1) / static_cast<float>(domain.ny - 1);
}
