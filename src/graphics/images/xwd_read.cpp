#include <algorithm>
#include <array>

#include "graphics/images/image_file.h"
#include "graphics/images/pixels.h"
#include "graphics/images/xwd_format.h"
#include "lib/report/message.h"
#include "lib/text/byte_reader.h"

namespace {

constexpr std::uint32_t kLongestTitle = 1000;
constexpr std::uint32_t kMostColors = 65536;

bool fail(const char *what, std::uint32_t value) {
    MESS_print(kWarn, "XWD_read: %s: %u\n", what, value);
    return false;
}

class XwdReader {
public:
    XwdReader(std::span<const std::byte> bytes, ImageRecord &record) : reader_(bytes), record_(record) {}

    bool read() {
        return read_header() && check_header() && set_layout() && read_title() && read_colors() &&
               read_pixels();
    }

private:
    [[nodiscard]] std::uint32_t word(XwdWord index) const { return words_[static_cast<std::size_t>(index)]; }

    bool read_header() {
        for (std::uint32_t &value : words_) value = reader_.u32();
        if (reader_.failed())
            return fail("Not an image file; bytes", static_cast<std::uint32_t>(reader_.offset()));
        return true;
    }

    bool check_header() const {
        if (word(kXwdVersion) != kXwdFileVersion)
            return fail("Not an image file; version", word(kXwdVersion));
        if (word(kXwdPixmapFormat) != kXwdZPixmap)
            return fail("Unsupported pixmap format", word(kXwdPixmapFormat));
        if (word(kXwdHeaderSize) < kXwdHeaderBytes || word(kXwdHeaderSize) > kXwdHeaderBytes + kLongestTitle)
            return fail("Invalid header size", word(kXwdHeaderSize));
        if (word(kXwdVisualClass) > kXwdDirectColor)
            return fail("Invalid visual class", word(kXwdVisualClass));
        if (word(kXwdColors) > kMostColors) return fail("Invalid number of colours", word(kXwdColors));
        if (word(kXwdDepth) < 1 || word(kXwdDepth) > 32) return fail("Invalid depth", word(kXwdDepth));
        return check_size("XWD_read", word(kXwdWidth), word(kXwdHeight));
    }

    bool set_layout() {
        const std::uint32_t bits = word(kXwdBitsPerPixel), line = word(kXwdBytesPerLine);
        if (bits != 1 && bits != 4 && bits != 8 && bits != 16 && bits != 24 && bits != 32)
            return fail("Unsupported bits per pixel", bits);
        const std::uint32_t needed = (word(kXwdWidth) * bits + 7) / 8;
        if (line < needed || line > needed + kXwdUnit) return fail("Invalid bytes per line", line);
        record_.width = static_cast<int>(word(kXwdWidth));
        record_.height = static_cast<int>(word(kXwdHeight));
        record_.depth = static_cast<int>(word(kXwdDepth));
        record_.bits_per_pixel = static_cast<int>(bits);
        record_.bytes_per_line = static_cast<int>(line);
        // Bits within a byte have an order of their own; nothing else does when a pixel is a bit.
        record_.byte_order = word(bits == 1 ? kXwdBitOrder : kXwdByteOrder) != 0 ? 1 : 0;
        record_.mapped = word(kXwdVisualClass) < kXwdTrueColor;
        record_.red_mask = word(kXwdRedMask);
        record_.green_mask = word(kXwdGreenMask);
        record_.blue_mask = word(kXwdBlueMask);
        return true;
    }

    bool read_title() {
        const std::uint32_t size = word(kXwdHeaderSize) - kXwdHeaderBytes;
        const auto bytes = reader_.take(size);
        if (reader_.failed()) return fail("Truncated file; title bytes", size);
        for (const std::byte byte : bytes) {
            if (byte == std::byte{0}) break;
            record_.title += static_cast<char>(byte);
        }
        return true;
    }

    /// Entries say which pixel they are for.
    bool read_colors() {
        const std::uint32_t count = word(kXwdColors);
        ByteReader entries = reader_.block(std::size_t{count} * kXwdColorBytes);
        if (reader_.failed()) return fail("Truncated file; colours", count);
        if (!record_.mapped) return true;
        record_.colors.resize(count);
        for (std::uint32_t i = 0; i < count; ++i) {
            const std::uint32_t pixel = entries.u32();
            std::array<float, 3> components{};
            for (float &component : components) component = static_cast<float>(entries.u16()) / 65535.0F;
            entries.take(2);
            if (pixel < count) record_.colors[pixel] = {components[0], components[1], components[2]};
        }
        return true;
    }

    bool read_pixels() {
        const std::size_t size = std::size_t{word(kXwdBytesPerLine)} * word(kXwdHeight);
        const auto bytes = reader_.take(size);
        if (reader_.failed())
            return fail("Truncated file; bytes of pixels left",
                        static_cast<std::uint32_t>(reader_.remaining()));
        record_.data.resize(size);
        std::transform(bytes.begin(), bytes.end(), record_.data.begin(),
                       [](std::byte byte) { return std::to_integer<std::uint8_t>(byte); });
        return !record_.mapped || check_indices("XWD_read", record_);
    }

    ByteReader reader_;
    ImageRecord &record_;
    std::array<std::uint32_t, kXwdWords> words_{};
};

} // namespace

int XWD_read(std::span<const std::byte> bytes, ImageRecord &record) {
    return XwdReader(bytes, record).read() ? 1 : 0;
}
