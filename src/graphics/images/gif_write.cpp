#include <algorithm>
#include <cstdio>

#include "graphics/images/formats.h"
#include "graphics/images/gif_format.h"
#include "graphics/images/image.h"
#include "graphics/images/image_file.h"
#include "graphics/images/palette.h"
#include "lib/report/message.h"

namespace {

constexpr int kDelay = 10; ///< hundredths of a second, in the control block of a still picture

struct State {
    bool interlaced = false;
    bool transparent = false;
};
State state;

std::vector<std::uint8_t> interlaced(const PaletteImage &image) {
    std::vector<std::uint8_t> pixels;
    pixels.reserve(image.pixels.size());
    for (const int row : gif_interlaced_rows(image.height)) {
        const auto start = image.pixels.begin() + static_cast<std::ptrdiff_t>(row) * image.width;
        pixels.insert(pixels.end(), start, start + image.width);
    }
    return pixels;
}

std::string encode(const PaletteImage &image) {
    const int bits = gif_index_bits(image.colors.size());
    MESS_print(kDebug, "num_color: %d\n", static_cast<int>(image.colors.size()));
    MESS_print(kDebug, "num_color+: %d\n", image.colors.size() < 2 ? 1 : 1 << bits);
    MESS_print(kDebug, "code_size: %d\n", std::max(bits, 2));

    std::string out;
    gif_put_header(out, image.width, image.height, image.colors);
    if (state.transparent) gif_put_control(out, 0, kDelay, image.transparent);
    gif_put_image(out, {0, 0, image.width, image.height}, state.interlaced, bits,
                  state.interlaced ? interlaced(image) : image.pixels);
    out += static_cast<char>(kGifTrailer);
    return out;
}

} // namespace

void GIF_interlace(int flag) {
    state.interlaced = flag != 0;
}

void GIF_transparent(int flag) {
    state.transparent = flag != 0;
}

int GIF_write(std::string_view path, const ImageRecord &record) {
    if (!can_write("GIF_write", record)) return 0;
    OutputFile file = create_image("GIF_write", path);
    if (!file) {
        MESS_print(kWarn, "Unable to open GIF file\n");
        return 0;
    }
    return write_and_close("GIF_write", path, file, encode(IMG_palette(record))) ? 1 : 0;
}
