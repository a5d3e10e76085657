#include "graphics/images/vyximg.h"

#include <algorithm>
#include <array>
#include <new>
#include <numeric>
#include <optional>

#include <zlib.h>

#include "graphics/images/formats.h"
#include "graphics/images/image_file.h"
#include "graphics/images/pixels.h"
#include "lib/report/message.h"
#include "lib/text/strings.h"
#include "lib/time/date.h"

namespace {

constexpr std::size_t kPieceSpace = 12000; ///< a compressed piece, which may be longer than the plain one
constexpr std::size_t kLongestLine = 1000;
/// The compression makes no more than 1032 bytes of one.
constexpr std::size_t kMostBytesPerByte = 1040;

std::uint8_t mean(int a, int b, int c) {
    return static_cast<std::uint8_t>((a + b + c) / 3);
}

/// The byte that stands for a pixel of a row: its brightness as far as one byte has it.
std::uint8_t byte_of(const ImageRecord &record, std::uint32_t value) {
    const std::uint32_t masks = record.red_mask | record.green_mask | record.blue_mask;
    switch (record.bits_per_pixel) {
    case 32:
        if (!record.mapped && masks > 0xFFFFFF)
            return mean(MaskField(record.red_mask).byte(value), MaskField(record.green_mask).byte(value),
                        MaskField(record.blue_mask).byte(value));
        return mean(static_cast<int>(value >> 16), static_cast<int>(value >> 8 & 0xFF),
                    static_cast<int>(value & 0xFF));
    case 24: return static_cast<std::uint8_t>(value >> 16);
    case 16: return static_cast<std::uint8_t>(value >> 8);
    default: return static_cast<std::uint8_t>(value);
    }
}

std::vector<std::uint8_t> bytes_of(const ImageRecord &record) {
    std::vector<std::uint8_t> bytes;
    std::vector<std::uint32_t> values(static_cast<std::size_t>(record.width));
    bytes.reserve(values.size() * static_cast<std::size_t>(record.height));
    for (int row = 0; row < record.height; ++row) {
        read_row(record, row, values);
        std::transform(values.begin(), values.end(), std::back_inserter(bytes),
                       [&](std::uint32_t value) { return byte_of(record, value); });
    }
    return bytes;
}

void append_compressed(std::string &out, std::span<const std::uint8_t> bytes) {
    std::array<std::uint8_t, kPieceSpace> space{};
    std::size_t taken = 0, made = 0;
    while (taken < bytes.size()) {
        const auto piece = bytes.subspan(taken, std::min(kVyxPiece, bytes.size() - taken));
        uLongf length = space.size();
        const int status = compress(space.data(), &length, piece.data(), piece.size());
        if (status == Z_MEM_ERROR) throw std::bad_alloc();
        taken += piece.size();
        made += length;
        MESS_print(kDebug, "Deflate+ %d = %d %d = %d %d\n", status, static_cast<int>(piece.size()),
                   static_cast<int>(length), static_cast<int>(taken), static_cast<int>(made));
        out.append(space.begin(), space.begin() + static_cast<std::ptrdiff_t>(length));
    }
}

/// A text that must stay one line.
std::string line_of(std::string text) {
    for (const char end : {'\n', '\r'}) fill_string(text, end, ' ');
    return text + '\n';
}

std::string encode(const ImageRecord &record, bool compressed) {
    std::string out(kVyxMagic);
    if (compressed) out += kVyxCompressed;
    out += '\n';
    out += line_of(record.label) + line_of(record.title);
    out += vyx_size_line(record.domain, record.width, record.height) + '\n';
    const std::vector<std::uint8_t> bytes = bytes_of(record);
    if (compressed)
        append_compressed(out, bytes);
    else
        out.append(bytes.begin(), bytes.end());
    return out;
}

/// The next line without its end, which is taken from `bytes`; nothing when there is no line end near.
std::optional<std::string> take_line(std::span<const std::byte> &bytes) {
    std::string line;
    for (std::size_t i = 0; i < std::min(bytes.size(), kLongestLine); ++i) {
        if (bytes[i] == std::byte{'\n'}) {
            bytes = bytes.subspan(i + 1);
            return line;
        }
        line += static_cast<char>(bytes[i]);
    }
    return {};
}

/// Decompresses stream after stream until `out` is full.
class Inflater {
public:
    Inflater() {
        const int status = inflateInit(&stream_);
        if (status == Z_MEM_ERROR) throw std::bad_alloc();
        open_ = status == Z_OK;
    }
    Inflater(const Inflater &) = delete;
    Inflater &operator=(const Inflater &) = delete;
    ~Inflater() {
        if (open_) inflateEnd(&stream_);
    }

    /// False when the streams are damaged or end too early.
    bool fill(std::span<const std::byte> in, std::span<std::uint8_t> out) {
        if (!open_) return false;
        std::size_t made = 0, taken = 0;
        while (made < out.size()) {
            // zlib does not write through next_in; its type merely lacks the const.
            stream_.next_in = const_cast<Bytef *>(reinterpret_cast<const Bytef *>(in.data() + taken));
            stream_.avail_in = static_cast<uInt>(in.size() - taken);
            stream_.next_out = out.data() + made;
            stream_.avail_out = static_cast<uInt>(out.size() - made);
            const int status = inflate(&stream_, Z_FINISH);
            if (status == Z_MEM_ERROR) throw std::bad_alloc();
            const std::size_t used = stream_.total_in, got = stream_.total_out;
            taken += used;
            made += got;
            MESS_print(kDebug, "Inflate+ %d = %d %d = %d %d - %d %d\n", status, static_cast<int>(used),
                       static_cast<int>(got), static_cast<int>(taken), static_cast<int>(made),
                       static_cast<int>(in.size() - taken), static_cast<int>(out.size() - made));
            if (status != Z_STREAM_END || inflateReset(&stream_) != Z_OK) return false;
        }
        return true;
    }

private:
    z_stream stream_{};
    bool open_ = false;
};

bool fail(const char *what) {
    MESS_print(kWarn, "IMG_read_vyx: %s\n", what);
    return false;
}

bool read_pixels(std::span<const std::byte> bytes, bool compressed, ImageRecord &record) {
    const std::size_t count =
        static_cast<std::size_t>(record.width) * static_cast<std::size_t>(record.height);
    if (count / (compressed ? kMostBytesPerByte : 1) > bytes.size()) return fail("Truncated pixels");
    make_byte_picture(record, record.width, record.height);
    if (compressed) return Inflater().fill(bytes, record.data) || fail("Damaged or truncated pixels");
    std::transform(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count), record.data.begin(),
                   [](std::byte byte) { return std::to_integer<std::uint8_t>(byte); });
    return true;
}

bool read(std::span<const std::byte> bytes, ImageRecord &record) {
    const auto magic = take_line(bytes);
    if (!magic || !magic->starts_with(kVyxMagic)) return fail("Invalid image type");
    const std::string_view flags = std::string_view(*magic).substr(kVyxMagic.size());
    const bool compressed = flags == std::string_view(&kVyxCompressed, 1);
    if (!compressed && !flags.empty()) return fail("Unknown layout");
    const auto label = take_line(bytes), title = take_line(bytes), size = take_line(bytes);
    if (!label || !title || !size) return fail("Truncated header");
    record.label = *label;
    record.title = *title;
    DATE_decode_label(record.label, record.date);
    if (!vyx_read_size_line(*size, record.domain, record.width, record.height))
        return fail("Invalid size or domain");
    return check_size("IMG_read_vyx", record.width, record.height) && read_pixels(bytes, compressed, record);
}

} // namespace

int IMG_write(std::string_view path, const ImageRecord &record, int compress) {
    if (!can_write("IMG_write", record)) return 0;
    OutputFile file = create_image("IMG_write", path);
    if (!file) {
        MESS_print(kWarn, "Unable to open: %s\n", std::string(path).c_str());
        return 0;
    }
    const bool plain_bytes = record.bits_per_pixel == 8 && record.colors.empty();
    return write_and_close("IMG_write", path, file, encode(record, compress == 1 && plain_bytes)) ? 1 : 0;
}

int IMG_read_vyx(std::span<const std::byte> bytes, ImageRecord &record) {
    return read(bytes, record) ? 1 : 0;
}
