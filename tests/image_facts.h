#pragma once
/// What an image file says about itself, read without the program's own readers.

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

struct PictureSize {
    int width = 0, height = 0;
    friend bool operator==(const PictureSize &, const PictureSize &) = default;
};

inline std::vector<unsigned> bytes_of_file(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    std::vector<unsigned> bytes;
    for (std::istreambuf_iterator<char> c(in), end; c != end; ++c)
        bytes.push_back(static_cast<unsigned char>(*c));
    return bytes;
}

/// 0 x 0 when the file is no PNG.
inline PictureSize png_size(const std::string &path) {
    const std::vector<unsigned> b = bytes_of_file(path);
    if (b.size() < 24 || b[1] != 'P' || b[2] != 'N' || b[3] != 'G') return {};
    const auto word = [&b](std::size_t at) {
        return static_cast<int>(b[at] << 24 | b[at + 1] << 16 | b[at + 2] << 8 | b[at + 3]);
    };
    return {word(16), word(20)};
}

struct GifFacts {
    PictureSize size;
    bool loops = false;
    int pictures = 0;
    std::vector<int> delays; ///< hundredths of a second
};

/// Walks the blocks of a GIF up to its trailer.
inline GifFacts gif_facts(const std::string &path) {
    GifFacts facts;
    const std::vector<unsigned> b = bytes_of_file(path);
    const auto word = [&b](std::size_t i) { return static_cast<int>(b.at(i) | b.at(i + 1) << 8); };
    const auto table = [](unsigned flags) { return (flags & 0x80U) != 0 ? 3U << ((flags & 7U) + 1) : 0U; };
    if (b.size() < 13) return facts;
    facts.size = {word(6), word(8)};
    std::size_t at = 13 + table(b[10]);
    while (at + 1 < b.size() && b[at] != 0x3B) {
        if (b[at] == 0x21) {
            if (b[at + 1] == 0xF9) facts.delays.push_back(word(at + 4));
            if (b[at + 1] == 0xFF) facts.loops = true;
            at += 2;
        } else if (b[at] == 0x2C) {
            ++facts.pictures;
            at += 11 + table(b.at(at + 9));
        } else {
            return {};
        }
        while (b.at(at) != 0) at += b[at] + 1;
        ++at;
    }
    return facts;
}
