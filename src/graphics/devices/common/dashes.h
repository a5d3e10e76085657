#pragma once
/// The dashes of line types on raster displays.

#include <array>
#include <cstdint>
#include <span>

/// On and off lengths in turn, pixels; empty for a solid line.
using DashLengths = std::span<const std::uint8_t>;

inline constexpr std::array<std::uint8_t, 2> kDashed{6, 6}, kShortDashed{3, 6}, kDotted{2, 2};
inline constexpr std::array<std::uint8_t, 4> kDashDot{6, 6, 3, 6};

/// Line types 2 to 5 have dashes, others are solid.
inline DashLengths dash_lengths(int type) {
    switch (type) {
    case 2: return kDashed;
    case 3: return kShortDashed;
    case 4: return kDashDot;
    case 5: return kDotted;
    default: return {};
    }
}
