/// Shows the picture with one pixel value replaced, where a colour cannot change by itself.

#include <array>
#include <cstring>

#include "graphics/devices/raster/display.h"
#include "graphics/window/surface.h"

namespace {

void replace_pixels(RasterImage &image, long from, long to) {
    const auto size = static_cast<std::size_t>(image.bits_per_pixel / 8);
    if (size == 0 || size > sizeof(std::uint32_t)) return;
    const auto bytes_of = [&](long pixel) {
        std::array<std::byte, sizeof(std::uint32_t)> bytes{};
        for (std::size_t i = 0; i < size; ++i) {
            const std::size_t shift = 8 * (image.msb_first ? size - 1 - i : i);
            bytes[i] = static_cast<std::byte>(static_cast<unsigned long>(pixel) >> shift);
        }
        return bytes;
    };
    const auto old_bytes = bytes_of(from), new_bytes = bytes_of(to);
    const auto line = static_cast<std::size_t>(image.bytes_per_line);
    for (int row = 0; row < image.height; ++row) {
        std::byte *at = image.data.data() + static_cast<std::size_t>(row) * line;
        for (int column = 0; column < image.width; ++column, at += size)
            if (std::memcmp(at, old_bytes.data(), size) == 0) std::memcpy(at, new_bytes.data(), size);
    }
}

} // namespace

int gshow_recolored(long from, long to) {
    const PixmapId base = graster_base();
    RasterImage image;
    if (from == to || !graster_read(base, image)) return -1;
    const PixmapId changed = graster_create_pixmap(image.width, image.height);
    if (changed == kNoPixmap) return -1;
    replace_pixels(image, from, to);
    graster_write(changed, image, {}, 0, 0);
    graster_set_base(changed);
    graster_show();
    graster_sync();
    graster_set_base(base);
    graster_free_pixmap(changed);
    return 0;
}
