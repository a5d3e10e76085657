#pragma once
/// World points on their way to a device.

#include <algorithm>
#include <array>
#include <new>
#include <span>
#include <vector>

#include "graphics/core/error.h"
#include "graphics/core/types.h"

/// Primitives of up to so many points, cells above all, are converted without an allocation.
inline constexpr std::size_t kLocalPoints = 10;

/// Converts the points and hands them to `ink`. Returns 0; throws after a report for `operation` when memory
/// is out, since the picture lacks them then.
template <typename Out, typename Convert, typename Ink>
int ink_points(const char *operation, std::span<const Point> world, Convert convert, Ink ink) {
    if (world.size() <= kLocalPoints) {
        std::array<Out, kLocalPoints> device;
        std::transform(world.begin(), world.end(), device.begin(), convert);
        ink(std::span<const Out>(device.data(), world.size()));
        return 0;
    }
    std::vector<Out> device;
    try {
        device.resize(world.size());
    } catch (const std::bad_alloc &) {
        gerr_printf(operation, "malloc error\n");
        throw;
    }
    std::transform(world.begin(), world.end(), device.begin(), convert);
    ink(std::span<const Out>(device));
    return 0;
}
