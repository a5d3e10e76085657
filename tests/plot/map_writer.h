#pragma once
/// Map database files made by code: text and binary records from the same points.

#include <bit>
#include <cstdint>
#include <string>
#include <vector>

#include "lib/text/strings.h"

using MapLine = std::vector<std::pair<float, float>>; ///< latitude, longitude

inline void append_big_endian(std::string &bytes, std::uint32_t value, int size) {
    for (int shift = 8 * (size - 1); shift >= 0; shift -= 8)
        bytes.push_back(static_cast<char>(value >> shift & 0xFF));
}

inline std::string binary_record(const MapLine &line) {
    std::string bytes;
    const auto real = [&](float value) { append_big_endian(bytes, std::bit_cast<std::uint32_t>(value), 4); };
    append_big_endian(bytes, static_cast<std::uint32_t>(line.size()), 2);
    for (int i = 0; i < 4; ++i) real(0);
    append_big_endian(bytes, 1, 4);
    for (const auto &[lat, lon] : line) {
        real(lat);
        real(lon);
    }
    return bytes;
}

inline std::string text_record(const MapLine &line) {
    std::string text = format_text("%d 0.0 0.0 0.0 0.0 1\n", static_cast<int>(line.size()));
    for (const auto &[lat, lon] : line)
        text += format_text("%f %f\n", static_cast<double>(lat), static_cast<double>(lon));
    return text;
}
