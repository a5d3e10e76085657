#include "graphics/images/pixels.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>

namespace {

constexpr bool kMsbFirst = true, kLsbFirst = false;
constexpr std::uint64_t kFullByte = 255;

/// Bits of a pixel, as far as there is a layout for them; 0: none.
int stored_bits(const ImageRecord &record) {
    const int bits = record.bits_per_pixel != 0 ? record.bits_per_pixel : record.depth;
    switch (bits) {
    case 1:
    case 4:
    case 8:
    case 16:
    case 24:
    case 32: return bits;
    default: return 0;
    }
}

/// Bits of a pixel that tell its colour. Of four bytes the most significant one tells nothing unless the
/// picture says so, as those of displays with 10 bits a colour do.
std::uint32_t color_bits(const ImageRecord &record) {
    const std::uint32_t masks = record.red_mask | record.green_mask | record.blue_mask;
    return record.mapped || masks == 0 ? 0xFFFFFF : masks;
}

/// Pixels of whole bytes.
template <int Bytes, bool MsbFirst>
void read_bytes(const std::uint8_t *row, std::uint32_t bits, std::span<std::uint32_t> values) {
    for (std::uint32_t &value : values) {
        std::uint32_t pixel = 0;
        for (int i = 0; i < Bytes; ++i)
            pixel |= static_cast<std::uint32_t>(row[i]) << 8 * (MsbFirst ? Bytes - 1 - i : i);
        value = pixel & bits;
        row += Bytes;
    }
}

template <int Bytes>
void read_bytes(bool msb_first, const std::uint8_t *row, std::uint32_t bits,
                std::span<std::uint32_t> values) {
    msb_first ? read_bytes<Bytes, kMsbFirst>(row, bits, values)
              : read_bytes<Bytes, kLsbFirst>(row, bits, values);
}

void read_nibbles(const std::uint8_t *row, std::span<std::uint32_t> values) {
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = static_cast<std::uint32_t>(row[i / 2]) >> (i % 2 == 0 ? 4 : 0) & 0xFU;
}

void read_bits(bool msb_first, const std::uint8_t *row, std::span<std::uint32_t> values) {
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = static_cast<std::uint32_t>(row[i / 8]) >> (msb_first ? 7 - i % 8 : i % 8) & 1U;
}

void make_picture(ImageRecord &record, int width, int height, int depth, int bytes) {
    record.width = width;
    record.height = height;
    record.depth = depth;
    record.bits_per_pixel = 8 * bytes;
    record.bytes_per_line = bytes * width;
    record.byte_order = 1;
    record.data.assign(static_cast<std::size_t>(record.bytes_per_line) * static_cast<std::size_t>(height), 0);
}

} // namespace

bool is_possible_size(std::int64_t width, std::int64_t height) {
    return width > 0 && height > 0 && width <= kMaxImageSide && height <= kMaxImageSide &&
           static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height) <= kMaxImagePixels;
}

bool is_complete(const ImageRecord &record) {
    const int bits = stored_bits(record);
    if (bits == 0 || !is_possible_size(record.width, record.height)) return false;
    const std::int64_t row_bytes = (static_cast<std::int64_t>(record.width) * bits + 7) / 8;
    return record.bytes_per_line >= row_bytes &&
           record.bytes().size() >=
               static_cast<std::size_t>(record.bytes_per_line) * static_cast<std::size_t>(record.height);
}

void read_row(const ImageRecord &record, int row, std::span<std::uint32_t> values) {
    const bool msb_first = record.byte_order != 0;
    const std::uint8_t *start = record.bytes().data() + static_cast<std::size_t>(row) *
                                                            static_cast<std::size_t>(record.bytes_per_line);
    const std::uint32_t bits = color_bits(record);
    switch (stored_bits(record)) {
    case 32: read_bytes<4>(msb_first, start, bits, values); break;
    case 24: read_bytes<3>(msb_first, start, bits, values); break;
    case 16: read_bytes<2>(msb_first, start, bits, values); break;
    case 8: read_bytes<1>(msb_first, start, bits, values); break;
    case 4: read_nibbles(start, values); break;
    case 1: read_bits(msb_first, start, values); break;
    default: std::fill(values.begin(), values.end(), 0U); break;
    }
}

MaskField::MaskField(std::uint32_t mask)
    : position(mask == 0 ? 0 : std::countr_zero(mask)), width(std::countr_one(mask >> position)) {}

std::uint8_t MaskField::byte(std::uint32_t value) const {
    const std::uint64_t full = (std::uint64_t{1} << width) - 1;
    if (full == 0) return 0;
    return static_cast<std::uint8_t>(((std::uint64_t{value} >> position & full) * kFullByte + full / 2) /
                                     full);
}

std::uint32_t MaskField::field(std::uint8_t byte) const {
    const std::uint64_t full = (std::uint64_t{1} << width) - 1;
    return static_cast<std::uint32_t>((byte * full + kFullByte / 2) / kFullByte << position);
}

PixelColors::PixelColors(const ImageRecord &record)
    : record_(record), red_(record.red_mask), green_(record.green_mask), blue_(record.blue_mask) {}

Rgb PixelColors::color(std::uint32_t value) const {
    if (record_.mapped) return value < record_.colors.size() ? record_.colors[value] : Rgb{};
    if (red_.width + green_.width + blue_.width == 0) {
        const std::uint8_t grey =
            stored_bits(record_) == 1 ? (value != 0 ? 255 : 0) : static_cast<std::uint8_t>(value);
        return color_of_bytes(grey, grey, grey);
    }
    return color_of_bytes(red_.byte(value), green_.byte(value), blue_.byte(value));
}

std::uint8_t color_byte(float component) {
    if (std::isnan(component)) return 0;
    return static_cast<std::uint8_t>(std::lround(std::clamp(component, 0.0F, 1.0F) * 255.0F));
}

Rgb color_of_bytes(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    return {static_cast<float>(red) / 255.0F, static_cast<float>(green) / 255.0F,
            static_cast<float>(blue) / 255.0F};
}

void make_byte_picture(ImageRecord &record, int width, int height) {
    make_picture(record, width, height, 8, 1);
}

void make_color_picture(ImageRecord &record, int width, int height) {
    make_picture(record, width, height, 24, 4);
    record.red_mask = 0xFF0000;
    record.green_mask = 0x00FF00;
    record.blue_mask = 0x0000FF;
}
