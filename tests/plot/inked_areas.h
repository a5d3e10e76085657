#pragma once
/// The areas that were filled, with their colours, in the order of drawing.

#include <cstring>
#include <vector>

#include "graphics/core/object_list.h"
#include "graphics/core/types.h"

/// Even-odd, for outlines of any kind of points.
template <typename Points, typename X, typename Y>
bool outline_contains(const Points &points, float x, float y, X at_x, Y at_y) {
    bool inside = false;
    for (std::size_t k = 0; k < points.size(); ++k) {
        const auto &a = points[k], &b = points[(k + 1) % points.size()];
        if ((at_y(a) > y) != (at_y(b) > y) &&
            x < (at_x(b) - at_x(a)) * (y - at_y(a)) / (at_y(b) - at_y(a)) + at_x(a))
            inside = !inside;
    }
    return inside;
}

struct InkedArea {
    std::vector<Point> outline;
    int color;
};

inline std::vector<InkedArea> inked_areas() {
    std::vector<InkedArea> found;
    int color = -1;
    for (const ObjectRecord *object = gfirst_obj(); object != nullptr; object = object->next) {
        if (object->type == ObjectType::fill_color) color = object->value;
        if (object->type != ObjectType::fill_area) continue;
        std::vector<Point> outline(static_cast<std::size_t>(object->value));
        std::memcpy(outline.data(), object->data(), object->size);
        found.push_back({std::move(outline), color});
    }
    return found;
}

/// The colour seen at a point: of the last area over it; -1 without one.
inline int color_seen(const std::vector<InkedArea> &areas, float x, float y) {
    int seen = -1;
    for (const InkedArea &area : areas)
        if (outline_contains(
                area.outline, x, y, [](const Point &q) { return q.x; }, [](const Point &q) { return q.y; }))
            seen = area.color;
    return seen;
}
