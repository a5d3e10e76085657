#include <csetjmp>

#include "graphics/images/formats.h"
#include "graphics/images/image_file.h"
#include "graphics/images/palette.h"
#include "graphics/images/pixels.h"
#include "graphics/images/png_fault.h"
#include "lib/report/message.h"
#include "lib/system/calendar.h"
#include "lib/text/strings.h"

namespace {

constexpr std::size_t kPaletteEntries = PNG_MAX_PALETTE_LENGTH;
constexpr const char *kSoftware = "VYX - Korvane v5.0";

/// All that the encoder needs, made before it starts.
struct Picture {
    OutputFile *file = nullptr;
    png_uint_32 width = 0, height = 0;
    std::size_t pixel_bytes = 1; ///< 1: slots of the palette; 3: red, green, blue
    const std::uint8_t *pixels = nullptr;
    std::array<png_color, kPaletteEntries> palette{};
    std::array<png_text, 3> texts{};
};

void write_data(png_structp png, png_bytep data, png_size_t length) {
    auto *file = static_cast<OutputFile *>(png_get_io_ptr(png));
    file->write({reinterpret_cast<const char *>(data), length});
    if (file->failed()) png_error(png, "write error");
}

void flush_data(png_structp /*png*/) {}

bool encode(const Picture &picture, PngFault &fault) {
    png_structp png = png_create_write_struct_2(PNG_LIBPNG_VER_STRING, &fault, png_on_error, png_on_warning,
                                                &fault, png_take, png_give_back);
    if (png == nullptr) return false;
    png_infop info = png_create_info_struct(png);
    if (info == nullptr || setjmp(png_jmpbuf(png)) != 0) {
        png_destroy_write_struct(&png, &info);
        return false;
    }
    png_set_write_fn(png, picture.file, write_data, flush_data);
    const bool mapped = picture.pixel_bytes == 1;
    png_set_IHDR(png, info, picture.width, picture.height, 8,
                 mapped ? PNG_COLOR_TYPE_PALETTE : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    if (mapped) png_set_PLTE(png, info, picture.palette.data(), static_cast<int>(picture.palette.size()));
    png_set_text(png, info, picture.texts.data(), static_cast<int>(picture.texts.size()));
    png_write_info(png, info);
    for (png_uint_32 row = 0; row < picture.height; ++row)
        png_write_row(png, picture.pixels + std::size_t{row} * picture.width * picture.pixel_bytes);
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return true;
}

/// "03 Jul 2004 18:30:00 GMT"
std::string creation_time() {
    const std::int64_t now = DATE_get_time();
    DateRecord date;
    DATE_get_gmdate(&now, date);
    std::string month = DATE_month_lower(date.month);
    if (!month.empty()) month[0] = DATE_month(date.month)[0];
    return format_text("%02d %s %d %02d:%02d:%02d GMT", date.day, month.c_str(), date.year, date.hour,
                       date.minute, date.second);
}

png_text text_of(std::string &key, std::string &value) {
    png_text text{};
    text.compression = PNG_TEXT_COMPRESSION_NONE;
    text.key = key.data();
    text.text = value.data();
    text.text_length = value.size();
    return text;
}

bool write_with_texts(Picture &picture, const std::string &title, PngFault &fault) {
    std::array<std::string, 3> keys{"Title", "Software", "Creation Time"};
    std::array<std::string, 3> values{title, kSoftware, creation_time()};
    for (std::size_t i = 0; i < keys.size(); ++i) picture.texts[i] = text_of(keys[i], values[i]);
    return encode(picture, fault);
}

void put_palette(Picture &picture, const PaletteImage &image) {
    picture.pixels = image.pixels.data();
    for (std::size_t i = 0; i < image.colors.size(); ++i) {
        const Rgb &color = image.colors[i];
        picture.palette[i] = {color_byte(color.red), color_byte(color.green), color_byte(color.blue)};
    }
}

/// Red, green and blue of every pixel.
std::vector<std::uint8_t> color_bytes(const ImageRecord &record) {
    const PixelColors colors(record);
    std::vector<std::uint8_t> bytes;
    bytes.reserve(3 * static_cast<std::size_t>(record.width) * static_cast<std::size_t>(record.height));
    std::vector<std::uint32_t> values(static_cast<std::size_t>(record.width));
    for (int row = 0; row < record.height; ++row) {
        read_row(record, row, values);
        for (const std::uint32_t value : values) {
            const Rgb color = colors.color(value);
            for (const float component : {color.red, color.green, color.blue})
                bytes.push_back(color_byte(component));
        }
    }
    return bytes;
}

/// With a palette as long as its 256 entries hold every colour, else in true colour.
bool write_picture(const ImageRecord &record, OutputFile &file, PngFault &fault) {
    Picture picture;
    picture.file = &file;
    picture.width = static_cast<png_uint_32>(record.width);
    picture.height = static_cast<png_uint_32>(record.height);
    const std::optional<PaletteImage> image = IMG_exact_palette(record);
    if (image) {
        put_palette(picture, *image);
        return write_with_texts(picture, record.title, fault);
    }
    const std::vector<std::uint8_t> bytes = color_bytes(record);
    picture.pixels = bytes.data();
    picture.pixel_bytes = 3;
    return write_with_texts(picture, record.title, fault);
}

} // namespace

int PNG_write(std::string_view path, const ImageRecord &record) {
    if (!can_write("PNG_write", record)) return 0;
    OutputFile file = create_image("PNG_write", path);
    if (!file) {
        MESS_print(kWarn, "Unable to open PNG file\n");
        return 0;
    }
    PngFault fault;
    const bool written = write_picture(record, file, fault);
    fault.throw_without_memory();
    if (!written && !file.failed()) {
        MESS_print(kWarn, "PNG_write: Unable to write: %s: %s\n", std::string(path).c_str(),
                   fault.text.data());
        return 0;
    }
    return close_written("PNG_write", path, file) ? 1 : 0;
}
