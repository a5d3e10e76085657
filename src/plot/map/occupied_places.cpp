#include "plot/map/occupied_places.h"

#include <algorithm>

std::size_t OccupiedPlaces::part_at(float from, float length, float at) const {
    const float part = (at - from) / length * static_cast<float>(kSide);
    if (!(part > 0)) return 0;
    return std::min(static_cast<std::size_t>(std::min(part, static_cast<float>(kSide))), kSide - 1);
}

OccupiedPlaces::Parts OccupiedPlaces::parts_of(const Rect &place) const {
    return {part_at(plot_.xmin, plot_.width(), place.xmin), part_at(plot_.xmin, plot_.width(), place.xmax),
            part_at(plot_.ymin, plot_.height(), place.ymin), part_at(plot_.ymin, plot_.height(), place.ymax)};
}

void OccupiedPlaces::add(const Rect &place) {
    const Parts parts = parts_of(place);
    for (std::size_t row = parts.bottom; row <= parts.top; ++row)
        for (std::size_t column = parts.left; column <= parts.right; ++column)
            parts_[row * kSide + column].push_back(place);
}

bool OccupiedPlaces::meets(const Rect &place) const {
    const Parts parts = parts_of(place);
    for (std::size_t row = parts.bottom; row <= parts.top; ++row)
        for (std::size_t column = parts.left; column <= parts.right; ++column)
            if (std::ranges::any_of(parts_[row * kSide + column],
                                    [&](const Rect &taken) { return rects_meet(place, taken); }))
                return true;
    return false;
}
