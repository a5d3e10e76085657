#include <algorithm>
#include <optional>

#include "graphics/images/gif_format.h"
#include "graphics/images/image_file.h"
#include "graphics/images/pixels.h"
#include "lib/report/message.h"
#include "lib/text/byte_reader.h"

namespace {

/// A code of 12 bits stands for 4096 pixels at most: no file unpacks to more pixels a byte.
constexpr std::size_t kMostPixelsPerByte = 2731;

int read_u16(ByteReader &reader) {
    const int low = reader.u8();
    return low | reader.u8() << 8;
}

bool fail(const char *what, const ByteReader &reader) {
    MESS_print(kWarn, "GIF_read: %s at byte %zu\n", what, reader.offset());
    return false;
}

class GifReader {
public:
    GifReader(std::span<const std::byte> bytes, ImageRecord &record) : reader_(bytes), record_(record) {}

    bool read() {
        if (!read_screen()) return false;
        for (;;) {
            const int kind = reader_.u8();
            if (reader_.failed()) return fail("Truncated file", reader_);
            if (kind == kGifImage) return read_image();
            if (kind == kGifTrailer) return fail("No image", reader_);
            if (kind != kGifExtension) return fail("Unknown block", reader_);
            if (!read_extension()) return fail("Truncated extension", reader_);
        }
    }

private:
    bool read_screen() {
        const auto signature = reader_.take(6);
        if (signature.size() < 6) return fail("Truncated file", reader_);
        const char version = static_cast<char>(signature[4]);
        if (signature[3] != std::byte{'8'} || (version != '7' && version != '9') ||
            signature[5] != std::byte{'a'})
            return fail("Unknown version", reader_);
        screen_.width = read_u16(reader_);
        screen_.height = read_u16(reader_);
        const int flags = reader_.u8();
        background_ = reader_.u8();
        reader_.u8(); // aspect of a pixel
        if ((flags & kGifHasTable) != 0) read_table(flags, global_);
        return !reader_.failed() || fail("Truncated header", reader_);
    }

    void read_table(int flags, std::vector<Rgb> &table) {
        const std::size_t count = std::size_t{2} << (flags & 7);
        const auto bytes = reader_.take(3 * count);
        for (std::size_t i = 0; i + 2 < bytes.size(); i += 3)
            table.push_back(color_of_bytes(std::to_integer<std::uint8_t>(bytes[i]),
                                           std::to_integer<std::uint8_t>(bytes[i + 1]),
                                           std::to_integer<std::uint8_t>(bytes[i + 2])));
    }

    bool read_extension() {
        const int label = reader_.u8();
        MESS_print(kDebug, "GIF extension: %d\n", label);
        for (int length = reader_.u8(); length != 0; length = reader_.u8()) {
            ByteReader block = reader_.block(static_cast<std::size_t>(length));
            if (reader_.failed()) return false;
            if (label == kGifGraphicControl && length >= 4) read_control(block);
        }
        return !reader_.failed();
    }

    void read_control(ByteReader &block) {
        const int flags = block.u8(), delay = read_u16(block), index = block.u8();
        const bool transparent = (flags & kGifTransparent) != 0;
        transparent_ = transparent ? index : -1;
        MESS_print(kDebug, "disposal: %d user input: %d transparent: %d delay: %d\n", flags >> 2 & 7,
                   flags >> 1 & 1, transparent_, delay);
    }

    bool read_image() {
        GifRect rect;
        for (int *field : {&rect.left, &rect.top, &rect.width, &rect.height}) *field = read_u16(reader_);
        const int flags = reader_.u8();
        std::vector<Rgb> local;
        const bool has_local = (flags & kGifHasTable) != 0;
        if (has_local) read_table(flags, local);
        record_.colors = has_local ? local : global_;
        if (has_local) background_ = 0; // an index into the other table
        const int code_size = reader_.u8();
        if (reader_.failed()) return fail("Truncated image", reader_);
        if (record_.colors.empty()) return fail("No colour table", reader_);
        if (code_size < 1 || code_size > 8) return fail("Invalid code size", reader_);

        const std::int64_t width = std::max(screen_.width, rect.left + rect.width);
        const std::int64_t height = std::max(screen_.height, rect.top + rect.height);
        if (rect.width == 0 || rect.height == 0) return fail("Empty image", reader_);
        if (!check_size("GIF_read", width, height)) return false;
        const auto pixels = read_pixels(rect, code_size);
        if (!pixels) return false;
        place(rect, (flags & kGifInterlaced) != 0, *pixels, static_cast<int>(width),
              static_cast<int>(height));
        return check_indices("GIF_read", record_);
    }

    std::optional<std::vector<std::uint8_t>> read_pixels(const GifRect &rect, int code_size) {
        const std::optional<std::vector<std::byte>> codes = join_blocks();
        const std::size_t count =
            static_cast<std::size_t>(rect.width) * static_cast<std::size_t>(rect.height);
        if (!codes || count / kMostPixelsPerByte > codes->size()) {
            fail("Truncated image", reader_);
            return {};
        }
        std::vector<std::uint8_t> pixels(count);
        switch (gif_decompress(*codes, code_size, pixels)) {
        case GifResult::complete: return pixels;
        case GifResult::truncated: fail("Truncated image", reader_); break;
        case GifResult::damaged: fail("Invalid code", reader_); break;
        }
        return {};
    }

    std::optional<std::vector<std::byte>> join_blocks() {
        std::vector<std::byte> codes;
        for (int length = reader_.u8(); length != 0; length = reader_.u8()) {
            const auto block = reader_.take(static_cast<std::size_t>(length));
            codes.insert(codes.end(), block.begin(), block.end());
            if (reader_.failed()) break;
        }
        if (reader_.failed()) return {};
        return codes;
    }

    /// The screen around the image is transparent where the image can be, else background.
    void place(const GifRect &rect, bool interlaced, const std::vector<std::uint8_t> &pixels, int width,
               int height) {
        make_byte_picture(record_, width, height);
        record_.mapped = true;
        record_.background = transparent_;
        const int around = transparent_ >= 0 ? transparent_ : background_;
        if (rect.width != width || rect.height != height)
            std::fill(record_.data.begin(), record_.data.end(),
                      static_cast<std::uint8_t>(
                          static_cast<std::size_t>(around) < record_.colors.size() ? around : 0));
        std::vector<int> rows;
        if (interlaced) rows = gif_interlaced_rows(rect.height);
        auto source = pixels.begin();
        for (int i = 0; i < rect.height; ++i, source += rect.width) {
            const int row = rect.top + (interlaced ? rows[static_cast<std::size_t>(i)] : i);
            std::copy(source, source + rect.width,
                      record_.data.begin() + static_cast<std::ptrdiff_t>(row) * width + rect.left);
        }
    }

    ByteReader reader_;
    ImageRecord &record_;
    GifRect screen_;
    std::vector<Rgb> global_;
    int background_ = 0;
    int transparent_ = -1;
};

} // namespace

int GIF_read(std::span<const std::byte> bytes, ImageRecord &record) {
    return GifReader(bytes, record).read() ? 1 : 0;
}
