#include "graphics/window/replicate.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

namespace {

constexpr int kBitsPerByte = 8;

/// Row `row` of the image's bytes.
template <class Image> auto *row_of(Image &image, int row) {
    return image.data.data() + static_cast<std::size_t>(row) * static_cast<std::size_t>(image.bytes_per_line);
}

/// For each column of the result its column in the source.
std::vector<std::size_t> source_columns(int width, int left, int zoom) {
    std::vector<std::size_t> columns(static_cast<std::size_t>(width));
    for (int i = 0; i < width; ++i)
        columns[static_cast<std::size_t>(i)] =
            static_cast<std::size_t>(std::clamp(left + i / zoom, 0, width - 1));
    return columns;
}

template <std::size_t Bytes>
void copy_row(const std::byte *from, std::byte *to, const std::vector<std::size_t> &columns) {
    for (const std::size_t column : columns) {
        std::memcpy(to, from + column * Bytes, Bytes);
        to += Bytes;
    }
}

/// Pixels that share a byte: 1 or 4 bits each.
class PackedRow {
public:
    PackedRow(int bits, bool high_first) : bits_(static_cast<unsigned>(bits)), high_first_(high_first) {}
    void copy(const std::byte *from, std::byte *to, const std::vector<std::size_t> &columns) const {
        const unsigned mask = (1U << bits_) - 1;
        for (std::size_t i = 0; i < columns.size(); ++i) {
            const auto source = std::to_integer<unsigned>(from[columns[i] / per_byte()]);
            const unsigned value = source >> shift(columns[i]) & mask;
            std::byte &target = to[i / per_byte()];
            const unsigned others = std::to_integer<unsigned>(target) & ~(mask << shift(i));
            target = static_cast<std::byte>(others | value << shift(i));
        }
    }

private:
    [[nodiscard]] std::size_t per_byte() const { return kBitsPerByte / bits_; }
    [[nodiscard]] unsigned shift(std::size_t column) const {
        const auto place = static_cast<unsigned>(column % per_byte());
        return bits_ * (high_first_ ? static_cast<unsigned>(per_byte()) - 1 - place : place);
    }
    unsigned bits_;
    bool high_first_;
};

void copy_row(const RasterImage &image, const std::byte *from, std::byte *to,
              const std::vector<std::size_t> &columns) {
    switch (image.bits_per_pixel) {
    case 1:
    case 4: PackedRow(image.bits_per_pixel, image.msb_first).copy(from, to, columns); break;
    case 8: copy_row<1>(from, to, columns); break;
    case 16: copy_row<2>(from, to, columns); break;
    case 24: copy_row<3>(from, to, columns); break;
    case 32: copy_row<4>(from, to, columns); break;
    default: break;
    }
}

bool usable(const RasterImage &image) {
    constexpr std::array kDepths{1, 4, 8, 16, 24, 32};
    if (std::ranges::find(kDepths, image.bits_per_pixel) == kDepths.end()) return false;
    if (image.width <= 0 || image.height <= 0) return false;
    const long long row_bits = static_cast<long long>(image.width) * image.bits_per_pixel;
    return image.bytes_per_line >= (row_bits + kBitsPerByte - 1) / kBitsPerByte &&
           image.data.size() >=
               static_cast<std::size_t>(image.bytes_per_line) * static_cast<std::size_t>(image.height);
}

} // namespace

RasterImage replicate_pixels(const RasterImage &image, int left, int top, int zoom) {
    RasterImage result = image;
    if (!usable(image) || zoom < 1) return result;
    const std::vector<std::size_t> columns = source_columns(image.width, left, zoom);
    const auto line = static_cast<std::size_t>(image.bytes_per_line);
    for (int row = 0; row < image.height; ++row) {
        if (row % zoom != 0) {
            std::memcpy(row_of(result, row), row_of(result, row - 1), line);
            continue;
        }
        const int from = std::clamp(top + row / zoom, 0, image.height - 1);
        copy_row(image, row_of(image, from), row_of(result, row), columns);
    }
    return result;
}
