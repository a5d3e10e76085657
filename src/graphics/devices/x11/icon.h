#pragma once
/// The window's icon: range rings around a radar, with its beam to the upper right. X bitmap order.

#include <array>
#include <cstddef>

inline constexpr int kIconSize = 48;

/// Bytes of the emblem, row by row, the least significant bit leftmost.
constexpr std::array<char, kIconSize * kIconSize / 8> make_icon() {
    std::array<char, kIconSize * kIconSize / 8> bits{};
    constexpr int centre = kIconSize / 2;
    constexpr std::array<int, 3> radii{7, 14, 22};
    for (int row = 0; row < kIconSize; ++row) {
        for (int column = 0; column < kIconSize; ++column) {
            const int x = column - centre, y = centre - row, square = x * x + y * y;
            bool set = x >= 0 && y >= x && y <= 2 * x && square <= radii[2] * radii[2];
            for (const int radius : radii)
                set = set || (square >= radius * (radius - 1) && square <= radius * (radius + 1));
            if (!set) continue;
            char &byte = bits[static_cast<std::size_t>((row * kIconSize + column) / 8)];
            byte = static_cast<char>(static_cast<unsigned char>(byte) | (1U << (column % 8)));
        }
    }
    return bits;
}
inline constexpr auto kIconBits = make_icon();
