#include "graphics/devices/memory/display.h"

#include <array>
#include <bit>
#include <cstring>
#include <map>
#include <optional>
#include <string_view>
#include <utility>

#include "graphics/core/error.h"
#include "graphics/core/state.h"
#include "graphics/devices/memory/canvas.h"
#include "lib/report/message.h"
#include "lib/system/large_memory.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"

namespace {

constexpr int kMaxSide = 32767;              ///< of a pixmap, pixels
constexpr std::size_t kMaxPixels = 1U << 28; ///< of a pixmap
constexpr std::uint32_t kBlack = 0x000000, kWhite = 0xFFFFFF, kPixelMask = 0xFFFFFF;
constexpr float kFull = 65535; ///< a colour component of 1
constexpr unsigned kTopLevel = 255;

struct Picture {
    int width = 0, height = 0;
    LargeMemory memory;
    std::span<std::uint32_t> pixels;

    Picture(int w, int h)
        : width(w), height(h),
          memory(static_cast<std::size_t>(w) * static_cast<std::size_t>(h) * sizeof(std::uint32_t)),
          pixels(reinterpret_cast<std::uint32_t *>(memory.bytes().data()),
                 memory.bytes().size() / sizeof(std::uint32_t)) {}
};

struct Context {
    Canvas canvas; ///< empty without a drawable
    int width = 0;
    DashLengths dashes;
    bool projecting = false; ///< ends of wide lines
};

struct State {
    bool open = false;
    std::map<PixmapId, Picture> pictures;
    PixmapId last = kNoPixmap; ///< the newest number given
    PixmapId base = kNoPixmap, drawable = kNoPixmap;
    Picture *target = nullptr; ///< the drawable's picture, null without one
    std::uint32_t background = kBlack;
    PixelRect clip{0, 0, kMaxSide, kMaxSide};
    std::array<Context, kRasterContexts> contexts;
} state;

Picture *picture(PixmapId pixmap) {
    const auto found = state.pictures.find(pixmap);
    return found == state.pictures.end() ? nullptr : &found->second;
}

Context &context_of(RasterContext which) {
    return state.contexts[static_cast<std::size_t>(which)];
}

/// The drawable or the clip is another: every context draws there.
void aim_canvases() {
    Picture *const p = state.target;
    const PixelRect &clip = state.clip;
    for (Context &context : state.contexts) {
        Canvas &canvas = context.canvas;
        canvas.pixels = p != nullptr ? p->pixels.data() : nullptr;
        canvas.stride = p != nullptr ? p->width : 0;
        canvas.left = std::max(clip.x, 0);
        canvas.top = std::max(clip.y, 0);
        canvas.right = std::min(clip.x + std::max(clip.width, 0), p != nullptr ? p->width : 0);
        canvas.bottom = std::min(clip.y + std::max(clip.height, 0), p != nullptr ? p->height : 0);
    }
}

/// A number without a sign, which would be a place, and that an int can hold.
std::optional<int> side_of(Scanner &geometry) {
    if (geometry.at_end() || !is_digit(geometry.rest().front())) return std::nullopt;
    const auto number = geometry.long_integer();
    if (!number || !std::in_range<int>(*number)) return std::nullopt;
    return static_cast<int>(*number);
}

/// Width and height of "wxh+x+y"; a place without a size, and anything else, changes nothing.
void take_size(std::string_view geometry, int &width, int &height) {
    if (geometry.starts_with('=')) geometry.remove_prefix(1);
    Scanner scan(geometry);
    const std::optional<int> w = side_of(scan);
    if (!scan.literal(scan.rest().starts_with('X') ? 'X' : 'x')) return;
    const std::optional<int> h = side_of(scan);
    if (!w || !h || *w <= 0 || *h <= 0) return;
    width = *w;
    height = *h;
}

std::uint32_t level(float component) {
    const auto value = static_cast<std::uint32_t>(std::clamp(component, 0.0F, 1.0F) * kFull);
    constexpr auto full = static_cast<std::uint32_t>(kFull);
    return (value * kTopLevel + full / 2) / full;
}

/// The part of a copy that lies inside both pictures.
struct CopyArea {
    int from_x, from_y, to_x, to_y, width, height;

    CopyArea(const PixelRect &source, int x, int y)
        : from_x(source.x), from_y(source.y), to_x(x), to_y(y), width(source.width), height(source.height) {}
    void keep_inside(int from_width, int from_height, int to_width, int to_height) {
        const int skip_x = std::max({0, -from_x, -to_x}), skip_y = std::max({0, -from_y, -to_y});
        from_x += skip_x;
        to_x += skip_x;
        from_y += skip_y;
        to_y += skip_y;
        width = std::min({width - skip_x, from_width - from_x, to_width - to_x});
        height = std::min({height - skip_y, from_height - from_y, to_height - to_y});
    }
};

std::uint32_t *pixel_at(Picture &p, int x, int y) {
    return p.pixels.data() + static_cast<std::ptrdiff_t>(y) * p.width + x;
}

} // namespace

bool gmem_open(const RasterWish &wish, RasterWindow &window) {
    if (state.open) return false;
    int width = wish.width, height = wish.height;
    take_size(wish.geometry, width, height);
    state = State{};
    state.open = true;
    state.background = wish.inverse ? kWhite : kBlack;
    for (Context &context : state.contexts) context.canvas.color = wish.inverse ? kBlack : kWhite;
    context_of(RasterContext::text).projecting = true;
    const PixmapId base = gmem_create_pixmap(width, height);
    if (base == kNoPixmap) {
        gerr_printf("gopen_ws", "no memory for a picture of %d x %d pixels\n", width, height);
        gerr_printf("gopen_ws", "unable to open window\n");
        state = State{};
        return false;
    }
    gmem_set_base(base);
    gmem_set_drawable(base);
    gmem_clear(base);
    window = {width, height, base, {}};
    return true;
}

void gmem_close() {
    state = State{};
}

PixmapId gmem_create_pixmap(int width, int height) {
    if (!state.open || width <= 0 || height <= 0 || width > kMaxSide || height > kMaxSide) return kNoPixmap;
    const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    if (count > kMaxPixels) return kNoPixmap;
    Picture picture(width, height);
    if (picture.pixels.empty()) return kNoPixmap;
    state.pictures.insert_or_assign(++state.last, std::move(picture));
    return state.last;
}

void gmem_free_pixmap(PixmapId pixmap) {
    if (pixmap == state.base) state.base = kNoPixmap;
    if (pixmap == state.drawable) gmem_set_drawable(state.base);
    state.pictures.erase(pixmap);
}

void gmem_copy(PixmapId from, PixmapId to, const PixelRect &source, int x, int y) {
    Picture *const a = picture(from), *const b = picture(to);
    if (a == nullptr || b == nullptr) return;
    CopyArea area(source, x, y);
    area.keep_inside(a->width, a->height, b->width, b->height);
    if (area.width <= 0) return;
    const std::size_t bytes = static_cast<std::size_t>(area.width) * sizeof(std::uint32_t);
    // Within one picture the rows that are still to be read must not be written first.
    const bool upwards = area.to_y > area.from_y;
    for (int i = 0; i < area.height; ++i) {
        const int row = upwards ? area.height - 1 - i : i;
        std::memmove(pixel_at(*b, area.to_x, area.to_y + row), pixel_at(*a, area.from_x, area.from_y + row),
                     bytes);
    }
}

void gmem_clear(PixmapId pixmap) {
    if (Picture *const p = picture(pixmap)) std::ranges::fill(p->pixels, state.background);
}

void gmem_set_drawable(PixmapId pixmap) {
    state.drawable = pixmap;
    state.target = picture(pixmap);
    aim_canvases();
}

PixmapId gmem_drawable() {
    return state.drawable;
}

void gmem_set_base(PixmapId pixmap) {
    state.base = pixmap;
}

PixmapId gmem_base() {
    return state.base;
}

void gmem_show() {}

void gmem_set_clip(const PixelRect &clip) {
    state.clip = clip;
    aim_canvases();
}

void gmem_set_foreground(RasterContext context, long pixel) {
    if (pixel >= 0) context_of(context).canvas.color = static_cast<std::uint32_t>(pixel) & kPixelMask;
}

void gmem_set_line(RasterContext context, int width, int type) {
    context_of(context).width = std::clamp(width, 0, kMaxSide);
    context_of(context).dashes = dash_lengths(type);
}

void gmem_set_fill(int pattern) {
    const bool solid = pattern < 0 || static_cast<std::size_t>(pattern) >= kFillPatterns.size();
    context_of(RasterContext::fill).canvas.stipple =
        solid ? nullptr : &kFillPatterns[static_cast<std::size_t>(pattern)];
}

void gmem_lines(RasterContext context, std::span<const PixelPoint> points) {
    if (points.size() < 2) return;
    const Context &c = context_of(context);
    if (c.width == 0)
        canvas_thin_lines(c.canvas, points, c.dashes);
    else
        canvas_wide_lines(c.canvas, points, c.width, c.dashes, c.projecting);
}

void gmem_point(RasterContext context, PixelPoint point) {
    const Canvas &canvas = context_of(context).canvas;
    if (canvas.contains(point.x, point.y)) canvas.ink(point.x, point.y);
}

void gmem_area(std::span<const PixelPoint> points) {
    canvas_area(context_of(RasterContext::fill).canvas, points);
}

void gmem_rectangle(RasterContext context, const PixelRect &rect) {
    const Canvas &canvas = context_of(context).canvas;
    const int bottom = std::min(rect.y + rect.height, canvas.bottom);
    for (int row = std::max(rect.y, canvas.top); row < bottom; ++row)
        canvas.span(row, rect.x, rect.x + rect.width);
}

RasterColor gmem_alloc_color(int index, const Rgb &color, long pixel) {
    if (!state.open) return {};
    if (pixel < 0 && gstate().rw_colors) { // pixels say their own colour: there are no cells to write
        MESS_print(kDebug, "Allocated RW Cells: %d\n", 0);
        gstate().rw_colors = false;
    }
    const std::array levels{level(color.red), level(color.green), level(color.blue)};
    const long got = static_cast<long>(levels[0] << 16 | levels[1] << 8 | levels[2]);
    constexpr unsigned kSpread = 257; // a level of 255 is 65535
    MESS_print(kDebug, "%s: %d %ld (%.2f %.2f %.2f) (%5d %5d %5d)\n",
               pixel < 0 ? "Allocated new RW Cells" : "Allocated RW Cells", index, got,
               static_cast<double>(color.red), static_cast<double>(color.green),
               static_cast<double>(color.blue), static_cast<int>(levels[0] * kSpread),
               static_cast<int>(levels[1] * kSpread), static_cast<int>(levels[2] * kSpread));
    constexpr auto top = static_cast<float>(kTopLevel);
    return {got,
            {static_cast<float>(levels[0]) / top, static_cast<float>(levels[1]) / top,
             static_cast<float>(levels[2]) / top}};
}

void gmem_set_background(long pixel) {
    if (pixel >= 0) state.background = static_cast<std::uint32_t>(pixel) & kPixelMask;
}

std::span<const std::uint8_t> gmem_lend(PixmapId pixmap, RasterImage &image) {
    const Picture *const p = picture(pixmap);
    if (p == nullptr) return {};
    image = RasterImage{};
    image.width = p->width;
    image.height = p->height;
    image.bytes_per_line = p->width * static_cast<int>(sizeof(std::uint32_t));
    image.msb_first = std::endian::native == std::endian::big;
    return {reinterpret_cast<const std::uint8_t *>(p->pixels.data()), p->pixels.size_bytes()};
}

bool gmem_read(PixmapId pixmap, RasterImage &image) {
    const std::span<const std::uint8_t> pixels = gmem_lend(pixmap, image);
    const auto *const bytes = reinterpret_cast<const std::byte *>(pixels.data());
    image.data.assign(bytes, bytes + pixels.size());
    return !pixels.empty();
}

void gmem_write(PixmapId pixmap, const RasterImage &image, std::span<const std::uint8_t> mask, int x, int y) {
    Picture *const p = picture(pixmap);
    if (p == nullptr || image.bits_per_pixel != 32 || image.bytes_per_line < image.width * 4) return;
    CopyArea area({0, 0, image.width, image.height}, x, y);
    area.keep_inside(image.width, image.height, p->width, p->height);
    const auto line = static_cast<std::size_t>(image.bytes_per_line);
    for (int row = 0; row < area.height; ++row) {
        const auto from_row = static_cast<std::size_t>(area.from_y) + static_cast<std::size_t>(row);
        for (int column = 0; column < area.width; ++column) {
            const auto from_column = static_cast<std::size_t>(area.from_x) + static_cast<std::size_t>(column);
            const std::size_t spot = from_row * static_cast<std::size_t>(image.width) + from_column;
            if (!mask.empty() && (spot >= mask.size() || mask[spot] == 0)) continue;
            const std::size_t at = from_row * line + from_column * 4;
            if (at + 4 > image.data.size()) return;
            std::uint32_t pixel = 0;
            for (std::size_t i = 0; i < 4; ++i) {
                const std::size_t byte = image.msb_first ? 3 - i : i;
                pixel |= std::to_integer<std::uint32_t>(image.data[at + byte]) << (8 * i);
            }
            *pixel_at(*p, area.to_x + column, area.to_y + row) = pixel & kPixelMask;
        }
    }
}

void gmem_sync() {}
