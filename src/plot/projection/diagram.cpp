#include "plot/projection/families.h"

namespace diagram {

bool prepare(ProjectionState &p, const PlotDomain &domain) {
    const bool linear = p.code == kProjXY || p.code == kProjCat || p.code == kProjXP;
    if (!linear) return true;
    p.xmin = domain.clat;
    p.ymin = p.code == kProjXP ? -domain.clon : domain.clon;
    p.xfactor = static_cast<double>(domain.nx) / domain.dx;
    p.yfactor = static_cast<double>(domain.ny) / domain.dy;
    return std::isfinite(p.xfactor) && std::isfinite(p.yfactor) && p.xfactor != 0 && p.yfactor != 0;
}

PlanePoint forward(const ProjectionState &p, double a, double b) {
    switch (p.code) {
    case kProjXP: b = -b; [[fallthrough]];
    case kProjXY:
    case kProjCat: return {p.xmin + (a - p.xmin) * p.xfactor, p.ymin + (b - p.ymin) * p.yfactor, true};
    case kProjXLogY: return b > 0 ? PlanePoint{a, -std::log(b), true} : PlanePoint{};
    case kProjHodo: return {b * std::sin(radians(a)), b * std::cos(radians(a)), true};
    default: return {a, -b, true}; // pixels: rows count downwards
    }
}

GeoPoint inverse(const ProjectionState &p, double x, double y) {
    switch (p.code) {
    case kProjXY:
    case kProjCat:
    case kProjXP: {
        const double b = p.ymin + (y - p.ymin) / p.yfactor;
        return {p.xmin + (x - p.xmin) / p.xfactor, p.code == kProjXP ? -b : b, true};
    }
    case kProjXLogY: return {x, std::exp(-y), true};
    case kProjHodo: return {degrees(std::atan2(x, y)), std::hypot(x, y), true};
    default: return {x, -y, true};
    }
}

} // namespace diagram
