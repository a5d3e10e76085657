#pragma once
/// Which places of a plot are taken by what has been drawn, so that texts do not cover each other.

#include <array>
#include <vector>

#include "graphics/core/types.h"

[[nodiscard]] constexpr bool rects_meet(const Rect &a, const Rect &b) {
    return a.xmin < b.xmax && b.xmin < a.xmax && a.ymin < b.ymax && b.ymin < a.ymax;
}

/// Rectangles, found by the part of the plot that they touch: thousands are asked for without delay.
class OccupiedPlaces {
public:
    /// `plot`: where most of them will lie.
    explicit OccupiedPlaces(const Rect &plot) : plot_(plot) {}
    void add(const Rect &place);
    [[nodiscard]] bool meets(const Rect &place) const;

private:
    static constexpr std::size_t kSide = 32; ///< parts to each side
    struct Parts {
        std::size_t left, right, bottom, top;
    };
    [[nodiscard]] Parts parts_of(const Rect &place) const;
    [[nodiscard]] std::size_t part_at(float from, float length, float at) const;

    Rect plot_;
    std::array<std::vector<Rect>, kSide * kSide> parts_;
};
