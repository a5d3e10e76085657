#pragma once
/// Pictures to write, their colours as numbers, and other programs' opinions of the files.

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "graphics/images/image.h"
#include "graphics/images/pixels.h"
#include "lib/scratch_dir.h"

using Colors = std::vector<std::uint32_t>; ///< 0xRRGGBB, rows from the top

/// Colour of a pixel, 0xRRGGBB, or its index.
using Paint = std::function<std::uint32_t(int x, int y)>;

/// 32 bits a pixel.
inline ImageRecord true_color(int width, int height, const Paint &paint, int byte_order = 1) {
    ImageRecord record;
    make_color_picture(record, width, height);
    record.byte_order = byte_order;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            for (int byte = 0; byte < 4; ++byte)
                record.data[static_cast<std::size_t>(4 * (y * width + x) +
                                                     (byte_order == 1 ? 3 - byte : byte))] =
                    static_cast<std::uint8_t>(paint(x, y) >> 8 * byte);
    return record;
}

/// 8 bits a pixel, rows padded to four bytes with the value 0xEE.
inline ImageRecord bytes_picture(int width, int height, const Paint &paint) {
    ImageRecord record;
    record.width = width;
    record.height = height;
    record.depth = record.bits_per_pixel = 8;
    record.bytes_per_line = (width + 3) / 4 * 4;
    record.data.assign(static_cast<std::size_t>(record.bytes_per_line * height), 0xEE);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            record.data[static_cast<std::size_t>(y * record.bytes_per_line + x)] =
                static_cast<std::uint8_t>(paint(x, y));
    return record;
}

inline std::uint32_t number_of(const Rgb &color) {
    return static_cast<std::uint32_t>(color_byte(color.red) << 16 | color_byte(color.green) << 8 |
                                      color_byte(color.blue));
}

inline Colors colors_of(const ImageRecord &record) {
    Colors all;
    if (!is_complete(record)) return all;
    const PixelColors colors(record);
    std::vector<std::uint32_t> values(static_cast<std::size_t>(record.width));
    for (int row = 0; row < record.height; ++row) {
        read_row(record, row, values);
        for (const std::uint32_t value : values) all.push_back(number_of(colors.color(value)));
    }
    return all;
}

inline std::string file_content(const std::string &path) {
    std::ostringstream all;
    all << std::ifstream(path, std::ios::binary).rdbuf();
    return all.str();
}

/// Standard output of a command.
inline std::string output_of(const std::string &command) {
    std::string all;
    std::FILE *pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return all;
    std::array<char, 65536> part{};
    for (std::size_t count = 1; count > 0;) {
        count = std::fread(part.data(), 1, part.size(), pipe);
        all.append(part.data(), count);
    }
    pclose(pipe);
    return all;
}

inline bool has_tool(const std::string &name) {
    return std::system(("command -v " + name + " >/dev/null 2>&1").c_str()) == 0;
}

/// The colours of a three-byte portable pixmap.
inline Colors colors_of_pnm(const std::string &pnm) {
    std::istringstream in(pnm);
    std::string magic;
    std::size_t width = 0, height = 0;
    int most = 0;
    in >> magic >> width >> height >> most;
    in.get();
    const std::size_t start = static_cast<std::size_t>(std::max<std::streamoff>(in.tellg(), 0));
    Colors all;
    if (magic != "P6" || most != 255 || pnm.size() < start + 3 * width * height) return all;
    for (std::size_t i = start; i < start + 3 * width * height; i += 3) {
        std::uint32_t number = 0;
        for (std::size_t byte = 0; byte < 3; ++byte)
            number = number << 8 | static_cast<std::uint8_t>(pnm[i + byte]);
        all.push_back(number);
    }
    return all;
}

#define SKIP_WITHOUT(tool)                                                                                   \
    if (!has_tool(tool)) GTEST_SKIP() << "the program " << (tool) << " is not here"
