#pragma once
/// Places on the earth, and which drawn cell covers each.

#include <algorithm>
#include <vector>

#include "plot/map/current_map.h"
#include "radar/common/cells.h"

inline constexpr int kNoCell = -1;

struct Place {
    float lat = 0, lon = 0, value = 0;
    int level = 0;
    Point plot{};
    int found = kNoCell; ///< level of the last cell drawn over the place
};

/// Brings the places onto the current map and into the order that note_cell wants.
inline void put_on_map(std::vector<Place> &places) {
    for (Place &place : places) MAP_tran(place.plot.x, place.plot.y, place.lat, place.lon);
    std::sort(places.begin(), places.end(),
              [](const Place &a, const Place &b) { return a.plot.x < b.plot.x; });
}

inline bool inside(const CellCorners &c, const Point &p) {
    bool left = true;
    bool right = true;
    for (std::size_t i = 0; i < 4; ++i) {
        const double cross =
            (static_cast<double>(c[i + 1].x) - c[i].x) * (static_cast<double>(p.y) - c[i].y) -
            (static_cast<double>(c[i + 1].y) - c[i].y) * (static_cast<double>(p.x) - c[i].x);
        left = left && cross >= 0;
        right = right && cross <= 0;
    }
    return left || right;
}

/// A sink's function; its context is the vector of places.
inline void note_cell(void *context, const CellCorners &c, std::uint8_t level) {
    auto &places = *static_cast<std::vector<Place> *>(context);
    const auto [x_low, x_high] = std::minmax({c[0].x, c[1].x, c[2].x, c[3].x});
    const auto [y_low, y_high] = std::minmax({c[0].y, c[1].y, c[2].y, c[3].y});
    const auto first = std::lower_bound(places.begin(), places.end(), x_low,
                                        [](const Place &place, float x) { return place.plot.x < x; });
    for (auto place = first; place != places.end() && place->plot.x <= x_high; ++place) {
        const Point &p = place->plot;
        if (p.y >= y_low && p.y <= y_high && inside(c, p)) place->found = level;
    }
}

/// A square domain around a place; `size` in plane units, for latitude-longitude degrees.
inline PlotDomain domain_around(int proj, float lat, float lon, float size) {
    PlotDomain domain;
    domain.proj = proj;
    domain.clat = lat;
    domain.clon = lon;
    domain.nx = domain.ny = 21;
    domain.dx = domain.dy = size / 20.0F;
    return domain;
}
