#include "graphics/images/gif_format.h"

#include <algorithm>
#include <array>
#include <bit>

#include "graphics/images/pixels.h"

namespace {

/// Filled up with black to a power of two.
void put_table(std::string &out, std::span<const Rgb> colors) {
    for (const Rgb &color : colors)
        for (const float component : {color.red, color.green, color.blue})
            out += static_cast<char>(color_byte(component));
    out.append(3 * ((std::size_t{1} << gif_index_bits(colors.size())) - colors.size()), '\0');
}

} // namespace

std::vector<int> gif_interlaced_rows(int height) {
    struct Pass {
        int first, step;
    };
    constexpr std::array kPasses{Pass{0, 8}, Pass{4, 8}, Pass{2, 4}, Pass{1, 2}};
    std::vector<int> rows;
    rows.reserve(static_cast<std::size_t>(std::max(height, 0)));
    for (const Pass &pass : kPasses)
        for (int row = pass.first; row < height; row += pass.step) rows.push_back(row);
    return rows;
}

int gif_index_bits(std::size_t colors) {
    return colors < 2 ? 1 : static_cast<int>(std::bit_width(colors - 1));
}

void gif_put_u16(std::string &out, int value) {
    out += static_cast<char>(value & 0xFF);
    out += static_cast<char>(value >> 8 & 0xFF);
}

void gif_put_header(std::string &out, int width, int height, std::span<const Rgb> colors) {
    const int bits = gif_index_bits(colors.size());
    out += "GIF89a";
    gif_put_u16(out, width);
    gif_put_u16(out, height);
    out += static_cast<char>(kGifHasTable | (bits - 1) << 4 | (bits - 1));
    out.append(2, '\0'); // background index, aspect not given
    put_table(out, colors);
}

void gif_put_control(std::string &out, int disposal, int delay, int transparent) {
    out += static_cast<char>(kGifExtension);
    out += static_cast<char>(kGifGraphicControl);
    out += '\4';
    out += static_cast<char>(disposal << 2 | (transparent >= 0 ? kGifTransparent : 0));
    gif_put_u16(out, delay);
    out += static_cast<char>(std::max(transparent, 0));
    out += '\0';
}

void gif_put_image(std::string &out, const GifRect &rect, bool interlaced, int index_bits,
                   std::span<const std::uint8_t> pixels, std::span<const Rgb> own_colors) {
    out += static_cast<char>(kGifImage);
    for (const int value : {rect.left, rect.top, rect.width, rect.height}) gif_put_u16(out, value);
    const int table = own_colors.empty() ? 0 : kGifHasTable | (gif_index_bits(own_colors.size()) - 1);
    out += static_cast<char>((interlaced ? kGifInterlaced : 0) | table);
    if (!own_colors.empty()) put_table(out, own_colors);
    const int code_size = std::max(index_bits, 2);
    out += static_cast<char>(code_size);
    gif_compress(out, code_size, pixels);
    out += '\0';
}
