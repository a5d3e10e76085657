#include "graphics/images/capture.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <unordered_map>

#include "graphics/core/error.h"
#include "graphics/core/object_list.h"
#include "graphics/core/state.h"
#include "graphics/devices/raster/display.h"
#include "graphics/images/formats.h"
#include "graphics/images/pixels.h"
#include "lib/report/message.h"
#include "lib/text/strings.h"

namespace {

constexpr const char *kNoTitle = "xwdump";
constexpr float kFullComponent = 0.99F; ///< above: full intensity
constexpr int kLineAlign = 4;           ///< rows of a display's image are a multiple of so many bytes

using Writer = int (*)(std::string_view, const ImageRecord &);

bool has_drawable() {
    return graster_display() != RasterDisplay::none && graster_drawable() != kNoPixmap;
}

std::string window_title() {
    std::string title = gstate().title;
    if (title.empty()) return kNoTitle;
    fill_string(title, '_', ' ');
    return title;
}

void trace(const RasterImage &image) {
    const auto number = [](const char *name, int value) { MESS_print(kDebug, "%s: %d\n", name, value); };
    constexpr int kZPixmap = 2, kUnit = 32;
    number("width", image.width);
    number("height", image.height);
    number("xoffset", 0);
    number("format", kZPixmap);
    number("byte_order", image.msb_first ? 1 : 0);
    number("bitmap_unit", kUnit);
    number("bitmap_bit_order", image.msb_first ? 1 : 0);
    number("bitmap_pad", kUnit);
    number("depth", image.depth);
    number("bits_per_pixel", image.bits_per_pixel);
    number("bytes_per_line", image.bytes_per_line);
    MESS_print(kDebug, "red_mask: %lX\n", static_cast<unsigned long>(image.red_mask));
    MESS_print(kDebug, "green_mask: %lX\n", static_cast<unsigned long>(image.green_mask));
    MESS_print(kDebug, "blue_mask: %lX\n", static_cast<unsigned long>(image.blue_mask));
    number("num colors", static_cast<int>(image.colors.size()));
}

void copy_colors(const RasterImage &image, ImageRecord &record) {
    record.mapped = image.mapped;
    record.red_mask = image.red_mask;
    record.green_mask = image.green_mask;
    record.blue_mask = image.blue_mask;
    if (!image.mapped) return;
    record.colors = image.colors;
    for (Rgb &color : record.colors)
        for (float *component : {&color.red, &color.green, &color.blue})
            if (*component > kFullComponent) *component = 1;
}

/// The picture of the drawable, its pixels lent where the display can: for writing at once, before anything
/// else is drawn.
int look_at_image(ImageRecord &record) {
    IMG_init(record);
    if (!has_drawable()) return 0;
    RasterImage image;
    record.lent = graster_lend(graster_drawable(), image);
    if (record.lent.empty() && !graster_read(graster_drawable(), image)) {
        gerr_printf("gget_image", "Unable to get image at %dx%d+%d+%d\n", gstate().win_width,
                    gstate().win_height, 0, 0);
        return 0;
    }
    record.title = window_title();
    record.width = image.width;
    record.height = image.height;
    record.depth = image.depth;
    record.bits_per_pixel = image.bits_per_pixel;
    record.bytes_per_line = image.bytes_per_line;
    record.byte_order = image.msb_first ? 1 : 0;
    copy_colors(image, record);
    record.data.resize(image.data.size());
    if (!image.data.empty()) std::memcpy(record.data.data(), image.data.data(), image.data.size());
    record.background = gstate().colors[kBackgroundSlot].pixel;
    trace(image);
    return 1;
}

int dump(std::string_view path, Writer write) {
    ImageRecord record;
    return look_at_image(record) == 1 ? write(path, record) : 0;
}

/// Puts pixel values into an image of a display's layout, row after row.
void store_pixel(const RasterImage &image, std::byte *&at, std::uint32_t pixel) {
    const int bytes = image.bits_per_pixel / 8;
    for (int i = 0; i < bytes; ++i)
        *at++ = static_cast<std::byte>(pixel >> 8 * (image.msb_first ? bytes - 1 - i : i) & 0xFF);
}

/// Pixels of the display for the colours of a picture.
class DisplayColors {
public:
    DisplayColors(const ImageRecord &record, const RasterImage &layout)
        : colors_(record), layout_(layout), red_(layout.red_mask), green_(layout.green_mask),
          blue_(layout.blue_mask) {}

    std::uint32_t pixel_of(const Rgb &color) const {
        if (!layout_.mapped)
            return red_.field(color_byte(color.red)) | green_.field(color_byte(color.green)) |
                   blue_.field(color_byte(color.blue));
        const long pixel = graster_alloc_color(kNoIndex, color, -1).pixel;
        return pixel < 0 ? 0 : static_cast<std::uint32_t>(pixel);
    }
    /// Each value of the picture is looked up once.
    std::uint32_t pixel_of_value(std::uint32_t value) {
        const auto [found, is_new] = known_.try_emplace(value, 0);
        if (is_new) found->second = pixel_of(colors_.color(value));
        return found->second;
    }

private:
    static constexpr int kNoIndex = -1; ///< the colours are none of the colour table
    PixelColors colors_;
    const RasterImage &layout_;
    MaskField red_, green_, blue_;
    std::unordered_map<std::uint32_t, std::uint32_t> known_;
};

struct Overlay {
    RasterImage image;
    std::vector<std::uint8_t> mask; ///< 0: transparent
};

/// The picture as the display stores it. `layout` is any image of the display.
Overlay overlay_of(const ImageRecord &record, const RasterImage &layout, const Rgb *transparent) {
    Overlay overlay;
    RasterImage &image = overlay.image;
    image = layout;
    image.width = record.width;
    image.height = record.height;
    const int bytes = layout.bits_per_pixel / 8;
    image.bytes_per_line = (record.width * bytes + kLineAlign - 1) / kLineAlign * kLineAlign;
    const auto width = static_cast<std::size_t>(record.width),
               height = static_cast<std::size_t>(record.height);
    image.data.assign(static_cast<std::size_t>(image.bytes_per_line) * height, std::byte{0});
    overlay.mask.resize(width * height);

    DisplayColors colors(record, layout);
    std::optional<std::uint32_t> hidden;
    if (transparent != nullptr) hidden = colors.pixel_of(*transparent);
    std::vector<std::uint32_t> values(width);
    auto mask = overlay.mask.begin();
    for (std::size_t row = 0; row < height; ++row) {
        read_row(record, static_cast<int>(row), values);
        std::byte *at = image.data.data() + row * static_cast<std::size_t>(image.bytes_per_line);
        for (const std::uint32_t value : values) {
            const std::uint32_t pixel = colors.pixel_of_value(value);
            store_pixel(image, at, pixel);
            *mask++ = pixel != hidden && static_cast<long>(value) != record.background ? 1 : 0;
        }
    }
    return overlay;
}

} // namespace

int gget_image(ImageRecord &record) {
    if (look_at_image(record) != 1) return 0;
    if (record.lent.empty()) return 1;
    record.data.assign(record.lent.begin(), record.lent.end());
    record.lent = {};
    return 1;
}

int GIF_dump(std::string_view path) {
    return dump(path, GIF_write);
}

int PNG_dump(std::string_view path) {
    return dump(path, PNG_write);
}

int XWD_dump(std::string_view path) {
    return dump(path, XWD_write);
}

int IMG_dump(std::string_view path, std::string_view label, std::string_view title,
             const ImageDomain &domain) {
    ImageRecord record;
    if (look_at_image(record) != 1) return 0;
    record.label = label;
    record.title = title;
    record.domain = domain;
    return IMG_write(path, record, 0);
}

int goverlay_image_file(std::string_view path, const Rgb *transparent, int x, int y) {
    if (!has_drawable()) return 0;
    ImageRecord record;
    if (gread_image_file(path, record) != 1) return 0;
    RasterImage layout;
    if (!graster_read(graster_drawable(), layout) || layout.bits_per_pixel < 8) {
        gerr_printf("goverlay_image_file", "Unable to get image of the drawable\n");
        return 0;
    }
    const Overlay overlay = overlay_of(record, layout, transparent);
    const ClipRect &view = gstate().clip;
    if (x < 0) x += view.x + view.width;
    if (y < 0) y += view.y + view.height;
    graster_write(graster_drawable(), overlay.image, overlay.mask, x, y);
    gobj_note_incomplete();
    return 1;
}
