#include <array>
#include <cmath>
#include <cstdio>

#include "graphics/images/formats.h"
#include "graphics/images/image_file.h"
#include "graphics/images/pixels.h"
#include "graphics/images/xwd_format.h"

namespace {

void put(std::string &out, std::uint32_t value, int bytes) {
    for (int i = bytes - 1; i >= 0; --i) out += static_cast<char>(value >> 8 * i & 0xFF);
}

std::string header_of(const ImageRecord &record) {
    const auto word = [](int value) { return static_cast<std::uint32_t>(value); };
    const auto colors = static_cast<std::uint32_t>(record.colors.size());
    std::array<std::uint32_t, kXwdWords> words{};
    words[kXwdHeaderSize] = kXwdHeaderBytes + static_cast<std::uint32_t>(record.title.size()) + 1;
    words[kXwdVersion] = kXwdFileVersion;
    words[kXwdPixmapFormat] = kXwdZPixmap;
    words[kXwdDepth] = word(record.depth);
    words[kXwdWidth] = words[kXwdWindowWidth] = word(record.width);
    words[kXwdHeight] = words[kXwdWindowHeight] = word(record.height);
    words[kXwdByteOrder] = words[kXwdBitOrder] = word(record.byte_order);
    words[kXwdBitmapUnit] = words[kXwdBitmapPad] = kXwdUnit;
    words[kXwdBitsPerPixel] = word(record.bits_per_pixel);
    words[kXwdBytesPerLine] = word(record.bytes_per_line);
    words[kXwdVisualClass] = record.mapped ? kXwdPseudoColor : kXwdTrueColor;
    words[kXwdRedMask] = record.red_mask;
    words[kXwdGreenMask] = record.green_mask;
    words[kXwdBlueMask] = record.blue_mask;
    words[kXwdBitsPerRgb] = 8;
    words[kXwdMapEntries] = words[kXwdColors] = colors;
    std::string out;
    for (const std::uint32_t value : words) put(out, value, 4);
    return out;
}

std::string colors_of(const ImageRecord &record) {
    const auto component = [](float value) {
        return std::isnan(value) ? 0U : static_cast<std::uint32_t>(std::fmin(std::fmax(value, 0), 1) * 65535);
    };
    std::string out;
    std::uint32_t pixel = 0;
    for (const Rgb &color : record.colors) {
        put(out, pixel++, 4);
        for (const float value : {color.red, color.green, color.blue}) put(out, component(value), 2);
        put(out, kXwdAllComponents, 1);
        put(out, 0, 1);
    }
    return out;
}

bool write_part(OutputFile &file, std::string_view part, const char *failure) {
    file.write(part);
    if (!file.failed()) return true;
    std::fputs(failure, stderr);
    return false;
}

bool write_pixels(OutputFile &file, const ImageRecord &record) {
    const std::size_t size =
        static_cast<std::size_t>(record.bytes_per_line) * static_cast<std::size_t>(record.height);
    const char *const pixels = reinterpret_cast<const char *>(record.bytes().data());
    file.write({pixels, size});
    if (file.commit()) return true;
    std::fputs("Unable to write to XWD file.\n", stderr);
    return false;
}

bool write_all(OutputFile &file, const ImageRecord &record) {
    const std::string_view title(record.title.c_str(), record.title.size() + 1);
    return write_part(file, header_of(record), "Unable to write dump file header\n") &&
           write_part(file, title, "Unable to write window name to dump file.\n") &&
           write_part(file, colors_of(record), "Unable to write color map to dump file.\n") &&
           write_pixels(file, record);
}

} // namespace

int XWD_write(std::string_view path, const ImageRecord &record) {
    if (!can_write("XWD_write", record)) return 0;
    OutputFile file = create_image("XWD_write", path);
    if (!file) {
        std::fputs("Unable to open dump file\n", stderr);
        return 0;
    }
    if (write_all(file, record)) return 1;
    std::fprintf(stderr, "XWD_write: %s: %s\n", std::string(path).c_str(), file.fault().c_str());
    return 0;
}
