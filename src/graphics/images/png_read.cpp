#include <csetjmp>
#include <cstring>
#include <memory>

#include "graphics/images/image_file.h"
#include "graphics/images/pixels.h"
#include "graphics/images/png_fault.h"
#include "lib/report/message.h"

namespace {

/// The compression makes no more than 1032 bytes of one.
constexpr std::size_t kMostBytesPerByte = 1040;
/// From here on a pixel covers what lies below it.
constexpr int kOpaque = 128;
constexpr std::size_t kAlphaPixel = 4; ///< bytes

/// How the pixels are wanted.
enum class Want { indices, grey, alpha };

struct Source {
    const std::byte *next;
    std::size_t left;
};

/// An open decoder. Ended by its destructor, which the jumps never pass over.
struct Decoder {
    Decoder() = default;
    Decoder(const Decoder &) = delete;
    Decoder &operator=(const Decoder &) = delete;
    ~Decoder() { png_destroy_read_struct(&png, &info, nullptr); }

    png_structp png = nullptr;
    png_infop info = nullptr;
    Source source{};
    PngFault fault;
    int color_type = 0;
    Want want = Want::alpha;
};

void read_data(png_structp png, png_bytep data, png_size_t length) {
    auto *source = static_cast<Source *>(png_get_io_ptr(png));
    if (source->left < length) png_error(png, "truncated file");
    std::memcpy(data, source->next, length);
    source->next += length;
    source->left -= length;
}

Want wanted(const Decoder &decoder) {
    if (decoder.color_type == PNG_COLOR_TYPE_PALETTE) return Want::indices;
    const bool transparent = png_get_valid(decoder.png, decoder.info, PNG_INFO_tRNS) != 0;
    return decoder.color_type == PNG_COLOR_TYPE_GRAY && !transparent ? Want::grey : Want::alpha;
}

void set_transforms(const Decoder &decoder) {
    png_set_scale_16(decoder.png);
    switch (decoder.want) {
    case Want::indices: png_set_packing(decoder.png); break;
    case Want::grey: png_set_expand_gray_1_2_4_to_8(decoder.png); break;
    case Want::alpha:
        png_set_expand(decoder.png);
        png_set_gray_to_rgb(decoder.png);
        png_set_add_alpha(decoder.png, 0xFF, PNG_FILLER_AFTER);
        break;
    }
}

/// Everything before the pixels.
bool start(Decoder &decoder) {
    if (setjmp(png_jmpbuf(decoder.png)) != 0) return false;
    png_set_read_fn(decoder.png, &decoder.source, read_data);
    png_set_user_limits(decoder.png, kMaxImageSide, kMaxImageSide);
    // Texts and profiles are not wanted, and the library takes memory for as long a one as a file announces.
    static constexpr std::array<png_byte, 25> unwanted{"tEXt\0zTXt\0iTXt\0iCCP\0eXIf"};
    png_set_keep_unknown_chunks(decoder.png, PNG_HANDLE_CHUNK_NEVER, unwanted.data(), 5);
    png_read_info(decoder.png, decoder.info);
    decoder.color_type = png_get_color_type(decoder.png, decoder.info);
    decoder.want = wanted(decoder);
    set_transforms(decoder);
    png_set_interlace_handling(decoder.png);
    png_read_update_info(decoder.png, decoder.info);
    return true;
}

/// The pixels and the end of the file.
bool finish(const Decoder &decoder, png_bytepp rows) {
    if (setjmp(png_jmpbuf(decoder.png)) != 0) return false;
    png_read_image(decoder.png, rows);
    png_read_end(decoder.png, nullptr);
    return true;
}

std::vector<Rgb> palette_of(const Decoder &decoder) {
    png_colorp entries = nullptr;
    int count = 0;
    png_get_PLTE(decoder.png, decoder.info, &entries, &count);
    std::vector<Rgb> colors;
    colors.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        colors.push_back(color_of_bytes(entries[i].red, entries[i].green, entries[i].blue));
    return colors;
}

/// Transparent indices become the first of them, which is the background.
void join_transparent(const Decoder &decoder, ImageRecord &record) {
    png_bytep alpha = nullptr;
    int count = 0;
    if (png_get_tRNS(decoder.png, decoder.info, &alpha, &count, nullptr) == 0 || alpha == nullptr) return;
    std::array<std::uint8_t, 256> index{};
    for (std::size_t i = 0; i < index.size(); ++i) {
        index[i] = static_cast<std::uint8_t>(i);
        if (i >= static_cast<std::size_t>(count) || alpha[i] >= kOpaque) continue;
        if (record.background < 0) record.background = static_cast<long>(i);
        index[i] = static_cast<std::uint8_t>(record.background);
    }
    for (std::uint8_t &pixel : record.data) pixel = index[pixel];
}

/// A colour that no opaque pixel has.
std::uint32_t unused_color(std::span<const std::uint8_t> pixels) {
    std::vector<bool> used(std::size_t{1} << 24);
    for (std::size_t i = 0; i + 3 < pixels.size(); i += kAlphaPixel)
        if (pixels[i + 3] >= kOpaque)
            used[static_cast<std::size_t>(pixels[i] << 16 | pixels[i + 1] << 8 | pixels[i + 2])] = true;
    std::uint32_t color = 0;
    while (color < 0xFFFFFF && used[color]) ++color;
    return color;
}

/// Turns red, green, blue, alpha into a most significant zero byte and the colour, in place.
void drop_alpha(ImageRecord &record) {
    bool transparent = false;
    for (std::size_t i = 3; i < record.data.size(); i += kAlphaPixel)
        transparent = transparent || record.data[i] < kOpaque;
    const std::uint32_t color = transparent ? unused_color(record.data) : 0;
    if (transparent) record.background = color;
    for (std::size_t i = 0; i + 3 < record.data.size(); i += kAlphaPixel) {
        std::uint8_t *pixel = record.data.data() + i;
        std::uint32_t value = color;
        if (pixel[3] >= kOpaque)
            value = static_cast<std::uint32_t>(pixel[0] << 16 | pixel[1] << 8 | pixel[2]);
        pixel[0] = 0;
        for (int byte = 1; byte < 4; ++byte)
            pixel[byte] = static_cast<std::uint8_t>(value >> (24 - 8 * byte));
    }
}

void make_picture(const Decoder &decoder, ImageRecord &record, int width, int height) {
    if (decoder.want == Want::alpha) {
        make_color_picture(record, width, height);
        return;
    }
    make_byte_picture(record, width, height);
    record.mapped = true;
    if (decoder.want == Want::indices) {
        record.colors = palette_of(decoder);
        return;
    }
    for (int grey = 0; grey < 256; ++grey) {
        const auto byte = static_cast<std::uint8_t>(grey);
        record.colors.push_back(color_of_bytes(byte, byte, byte));
    }
}

std::vector<png_bytep> rows_of(ImageRecord &record) {
    std::vector<png_bytep> rows(static_cast<std::size_t>(record.height));
    for (std::size_t row = 0; row < rows.size(); ++row)
        rows[row] = record.data.data() + row * static_cast<std::size_t>(record.bytes_per_line);
    return rows;
}

bool fail(const char *what) {
    MESS_print(kWarn, "PNG_read: %s\n", what);
    return false;
}

/// Behind a jump out of the library.
bool fail(const Decoder &decoder) {
    decoder.fault.throw_without_memory();
    return fail(decoder.fault.text.data());
}

bool read(Decoder &decoder, std::size_t file_size, ImageRecord &record) {
    if (!start(decoder)) return fail(decoder);
    const std::int64_t width = png_get_image_width(decoder.png, decoder.info);
    const std::int64_t height = png_get_image_height(decoder.png, decoder.info);
    if (!check_size("PNG_read", width, height)) return false;
    // One bit a pixel is the least that a file holds.
    if (static_cast<std::size_t>(width * height / 8) / kMostBytesPerByte > file_size)
        return fail("truncated file");

    make_picture(decoder, record, static_cast<int>(width), static_cast<int>(height));
    if (png_get_rowbytes(decoder.png, decoder.info) != static_cast<std::size_t>(record.bytes_per_line))
        return fail("unexpected layout");
    std::vector<png_bytep> rows = rows_of(record);
    if (!finish(decoder, rows.data())) return fail(decoder);

    if (decoder.want == Want::alpha) drop_alpha(record);
    if (!record.mapped) return true;
    if (!check_indices("PNG_read", record)) return false;
    if (decoder.want == Want::indices) join_transparent(decoder, record);
    return true;
}

} // namespace

int PNG_read(std::span<const std::byte> bytes, ImageRecord &record) {
    Decoder decoder;
    decoder.source = {bytes.data(), bytes.size()};
    decoder.png = png_create_read_struct_2(PNG_LIBPNG_VER_STRING, &decoder.fault, png_on_error,
                                           png_on_warning, &decoder.fault, png_take, png_give_back);
    if (decoder.png != nullptr) decoder.info = png_create_info_struct(decoder.png);
    const bool made = decoder.info != nullptr ? read(decoder, bytes.size(), record) : fail(decoder);
    return made ? 1 : 0;
}
