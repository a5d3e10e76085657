#include "plot/symbols/wind.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <initializer_list>

#include "graphics/core/types.h"
#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "plot/domain/plot_domain.h"

namespace {

constexpr float kCalm = 2.5F;   ///< knots
constexpr float kFastest = 500; ///< knots; what is beyond is no wind
constexpr int kPennant = 50, kBarb = 10, kHalfBarb = 5;

// Lengths as fractions of the staff.
constexpr float kCalmRadius = 0.1F;
constexpr float kBarbLength = 0.4F;
// What barbs and pennants count: WMO-No. 485, graphical representation of data. Their shape is this
// program's.
constexpr float kBarbSlant = 0.15F; ///< how far the tip of a barb leans outwards
constexpr float kStep = 0.13F;      ///< between two barbs
constexpr float kFeathered = 0.9F;  ///< part of the staff that may carry barbs

constexpr float kHeadLength = 0.25F, kHeadWidth = 0.2F; ///< of an arrow

constexpr int kMaxTicks = 100;
constexpr float kMarkWidth = 0.2F; ///< fraction of the symbol size

bool all_given(std::initializer_list<float> values) {
    return std::ranges::all_of(values, [](float v) { return std::isfinite(v) && v != kMissingF; });
}

/// A straight shaft seen from its foot: places are given along it and to its right.
struct Shaft {
    Point foot;
    float sine, cosine;

    Shaft(float x, float y, float direction)
        : foot{x, y}, sine(static_cast<float>(std::sin(direction * kDegree))),
          cosine(static_cast<float>(std::cos(direction * kDegree))) {}
    [[nodiscard]] Point at(float along, float right) const {
        return {foot.x + along * sine + right * cosine, foot.y + along * cosine - right * sine};
    }
};

void draw_line(const Point &a, const Point &b) {
    gpolyline(std::array{a, b});
}

} // namespace

void WIND_barb(float x, float y, float direction, float speed, float size, float flag) {
    if (!all_given({x, y, direction, speed, size}) || speed < 0 || speed > kFastest) return;
    if (speed < kCalm) {
        GPH_circle(x, y, kCalmRadius * size);
        return;
    }
    const int rest = kHalfBarb * static_cast<int>(std::lround(speed / kHalfBarb));
    const int pennants = rest / kPennant, barbs = rest % kPennant / kBarb;
    const bool half = rest % kBarb != 0;
    // A lone half barb stands one step from the end, where it cannot be taken for a whole one.
    const int steps = pennants + barbs + (pennants > 0 ? 1 : 0) + (half ? 1 : 0);
    const float step = size * std::min(kStep, kFeathered / static_cast<float>(std::max(steps, 1)));
    const float side = flag != 0 ? -size * kBarbLength : size * kBarbLength, slant = size * kBarbSlant;

    const Shaft staff(x, y, direction);
    draw_line(staff.foot, staff.at(size, 0));
    float along = size;
    for (int i = 0; i < pennants; ++i, along -= step)
        gfill_area(std::array{staff.at(along, 0), staff.at(along, side), staff.at(along - step, 0),
                              staff.at(along, 0)});
    if (pennants > 0) along -= step;
    for (int i = 0; i < barbs; ++i, along -= step)
        draw_line(staff.at(along, 0), staff.at(along + slant, side));
    if (!half) return;
    if (pennants + barbs == 0) along -= step;
    draw_line(staff.at(along, 0), staff.at(along + slant / 2, side / 2));
}

void WIND_track(int ticks, float x, float y, float direction, float length, float size) {
    if (!all_given({x, y, direction, length, size})) return;
    ticks = std::clamp(ticks, 1, kMaxTicks);
    const Shaft shaft(x, y, direction);
    const float half = size * kMarkWidth / 2;
    draw_line(shaft.foot, shaft.at(length, 0));
    for (int i = 1; i < ticks; ++i) {
        const float along = length * static_cast<float>(i) / static_cast<float>(ticks);
        draw_line(shaft.at(along, -half), shaft.at(along, half));
    }
    gpolyline(std::array{shaft.at(length - half, -half), shaft.at(length, 0), shaft.at(length - half, half)});
}

void WIND_vect(float x, float y, float direction, float length) {
    if (!all_given({x, y, direction, length}) || length <= 0) return;
    const Shaft shaft(x, y, direction);
    const float barb = kHeadLength * length, half = kHeadWidth * length / 2;
    const Point tip = shaft.at(-length, 0);
    draw_line(shaft.foot, tip);
    gpolyline(std::array{shaft.at(-length + barb, half), tip, shaft.at(-length + barb, -half)});
}
