#include <algorithm>
#include <cstring>

#include "graphics/devices/x11/display.h"
#include "graphics/devices/x11/state.h"

namespace {

constexpr float kFull = 65535;

std::vector<Rgb> map_colors(const X11Session &s) {
    const std::vector<XColor> cells = x11_map_cells(s);
    std::vector<Rgb> colors(cells.size());
    std::ranges::transform(cells, colors.begin(), [](const XColor &c) {
        return Rgb{static_cast<float>(c.red) / kFull, static_cast<float>(c.green) / kFull,
                   static_cast<float>(c.blue) / kFull};
    });
    return colors;
}

/// What of an image at (x, y) lies within the pixmap, in pixmap pixels.
PixelRect overlap(const PixmapRecord &pixmap, int x, int y, int width, int height) {
    const int left = std::max(x, 0), top = std::max(y, 0);
    const int right = std::min(x + width, pixmap.width), bottom = std::min(y + height, pixmap.height);
    return {left, top, right - left, bottom - top};
}

/// An X image over a copy of the picture's bytes.
XImageHandle make_image(const X11Session &s, const RasterImage &image) {
    XImageHandle result(XCreateImage(s.display(), s.visual, static_cast<unsigned>(s.depth), ZPixmap, 0,
                                     nullptr, static_cast<unsigned>(image.width),
                                     static_cast<unsigned>(image.height), BitmapPad(s.display()),
                                     image.bytes_per_line));
    if (!result || result->bits_per_pixel != image.bits_per_pixel) return nullptr;
    const int order = image.msb_first ? MSBFirst : LSBFirst;
    result->byte_order = order;
    if (image.bits_per_pixel == 1) result->bitmap_bit_order = order;
    // The library frees the bytes with free().
    result->data = static_cast<char *>(std::malloc(image.data.size()));
    if (result->data == nullptr) return nullptr;
    std::memcpy(result->data, image.data.data(), image.data.size());
    return result;
}

bool whole(const RasterImage &image) {
    return image.width > 0 && image.height > 0 && image.bytes_per_line > 0 &&
           image.data.size() >=
               static_cast<std::size_t>(image.height) * static_cast<std::size_t>(image.bytes_per_line);
}

} // namespace

bool gx11_read(PixmapId pixmap, RasterImage &image) {
    const X11Session *const s = x11_settled();
    const PixmapRecord *const record = s == nullptr ? nullptr : x11_pixmap(*s, pixmap);
    if (record == nullptr) return false;
    const XImageHandle got(XGetImage(s->display(), pixmap, 0, 0, static_cast<unsigned>(record->width),
                                     static_cast<unsigned>(record->height), AllPlanes, ZPixmap));
    if (!got) return false;
    image = RasterImage{};
    image.width = got->width;
    image.height = got->height;
    image.depth = got->depth;
    image.bits_per_pixel = got->bits_per_pixel;
    image.bytes_per_line = got->bytes_per_line;
    image.msb_first = (got->bits_per_pixel == 1 ? got->bitmap_bit_order : got->byte_order) == MSBFirst;
    image.mapped = s->visual->c_class != TrueColor && s->visual->c_class != DirectColor;
    image.red_mask = static_cast<std::uint32_t>(s->visual->red_mask);
    image.green_mask = static_cast<std::uint32_t>(s->visual->green_mask);
    image.blue_mask = static_cast<std::uint32_t>(s->visual->blue_mask);
    if (image.mapped && s->depth <= kMaxMappedDepth) image.colors = map_colors(*s);
    const auto *const bytes = reinterpret_cast<const std::byte *>(got->data);
    image.data.assign(bytes, bytes + static_cast<std::ptrdiff_t>(got->height) * got->bytes_per_line);
    return true;
}

void gx11_write(PixmapId pixmap, const RasterImage &image, std::span<const std::uint8_t> mask, int x, int y) {
    const X11Session *const s = x11_settled();
    const PixmapRecord *const record = s == nullptr ? nullptr : x11_pixmap(*s, pixmap);
    if (record == nullptr || !whole(image)) return;
    const XImageHandle source = make_image(*s, image);
    const PixelRect area = overlap(*record, x, y, image.width, image.height);
    if (!source || area.width <= 0 || area.height <= 0) return;
    const auto width = static_cast<unsigned>(area.width), height = static_cast<unsigned>(area.height);
    if (mask.empty()) {
        XPutImage(s->display(), pixmap, s->root_context.get(), source.get(), area.x - x, area.y - y, area.x,
                  area.y, width, height);
        return;
    }
    if (mask.size() < static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height)) return;
    const XImageHandle merged(
        XGetImage(s->display(), pixmap, area.x, area.y, width, height, AllPlanes, ZPixmap));
    if (!merged) return;
    for (int row = 0; row < area.height; ++row) {
        for (int column = 0; column < area.width; ++column) {
            const int from_x = column + area.x - x, from_y = row + area.y - y;
            const auto at = static_cast<std::size_t>(from_y) * static_cast<std::size_t>(image.width) +
                            static_cast<std::size_t>(from_x);
            if (mask[at] != 0) XPutPixel(merged.get(), column, row, XGetPixel(source.get(), from_x, from_y));
        }
    }
    XPutImage(s->display(), pixmap, s->root_context.get(), merged.get(), 0, 0, area.x, area.y, width, height);
}

void gx11_sync() {
    if (const X11Session *const s = x11_settled()) XSync(s->display(), False);
}
