#include <algorithm>
#include <array>

#include "graphics/images/gif_format.h"

namespace {

/// Packs codes of growing width, the least significant bit first, into sub-blocks.
class CodeWriter {
public:
    explicit CodeWriter(std::string &out) : out_(out) {}

    void put(unsigned code, int width) {
        bits_ |= code << count_;
        for (count_ += width; count_ >= 8; count_ -= 8) {
            put_byte(static_cast<char>(bits_ & 0xFF));
            bits_ >>= 8;
        }
    }
    void finish() {
        if (count_ > 0) put_byte(static_cast<char>(bits_ & 0xFF));
        flush();
    }

private:
    static constexpr std::size_t kBlock = 254;

    void put_byte(char byte) {
        block_[used_++] = byte;
        if (used_ == kBlock) flush();
    }
    void flush() {
        if (used_ == 0) return;
        out_ += static_cast<char>(used_);
        out_.append(block_.data(), used_);
        used_ = 0;
    }

    std::string &out_;
    std::array<char, kBlock> block_{};
    std::size_t used_ = 0;
    unsigned bits_ = 0;
    int count_ = 0; ///< bits not yet written, below 8 between calls
};

/// Codes of (pixel, prefix code) pairs, fewer than there are codes: a bucket holds one entry and a chain of
/// further ones, all from one pool, so that nothing is allocated while encoding.
class StringTable {
public:
    StringTable() { clear(); }

    void clear() {
        heads_.fill(kNone);
        used_ = 0;
    }
    /// -1 when the pair is not there.
    [[nodiscard]] int find(unsigned pixel, unsigned prefix) const {
        const unsigned key = key_of(pixel, prefix);
        for (int i = heads_[bucket_of(pixel, prefix)]; i != kNone; i = nodes_[index(i)].next)
            if (nodes_[index(i)].key == key) return nodes_[index(i)].code;
        return kNone;
    }
    void add(unsigned pixel, unsigned prefix, int code) {
        std::int16_t &head = heads_[bucket_of(pixel, prefix)];
        nodes_[index(used_)] = {key_of(pixel, prefix), static_cast<std::int16_t>(code), head};
        head = static_cast<std::int16_t>(used_++);
    }

private:
    static constexpr std::int16_t kNone = -1;
    struct Node {
        unsigned key;
        std::int16_t code, next;
    };
    static std::size_t index(int i) { return static_cast<std::size_t>(i); }
    static unsigned key_of(unsigned pixel, unsigned prefix) { return pixel << kGifMaxBits | prefix; }
    static std::size_t bucket_of(unsigned pixel, unsigned prefix) { return pixel * 16 ^ prefix; }

    std::array<std::int16_t, kGifMaxCodes> heads_;
    std::array<Node, kGifMaxCodes> nodes_;
    int used_ = 0;
};

class Compressor {
public:
    Compressor(std::string &out, int code_size) : writer_(out), code_size_(code_size) { reset(); }

    void run(std::span<const std::uint8_t> pixels) {
        put(clear_code());
        int prefix = pixels[0];
        for (const std::uint8_t pixel : pixels.subspan(1)) {
            const int known = table_.find(pixel, static_cast<unsigned>(prefix));
            if (known >= 0) {
                prefix = known;
                continue;
            }
            put(prefix);
            if (next_ == kGifMaxCodes) {
                put(clear_code());
                reset();
            } else {
                table_.add(pixel, static_cast<unsigned>(prefix), next_++);
            }
            prefix = pixel;
        }
        put(prefix);
        put(clear_code() + 1);
        writer_.finish();
    }

private:
    [[nodiscard]] int clear_code() const { return 1 << code_size_; }
    void reset() {
        table_.clear();
        width_ = code_size_ + 1;
        next_ = clear_code() + 2;
    }
    void put(int code) {
        writer_.put(static_cast<unsigned>(code), width_);
        if (next_ > (1 << width_) - 1 && width_ < kGifMaxBits) ++width_;
    }

    CodeWriter writer_;
    StringTable table_;
    int code_size_;
    int width_ = 0; ///< of the next code, bits
    int next_ = 0;  ///< first free code
};

/// Takes codes, the least significant bit first.
class CodeReader {
public:
    explicit CodeReader(std::span<const std::byte> bytes) : bytes_(bytes) {}
    /// -1 when the bytes run out.
    int take(int width) {
        while (count_ < width) {
            if (position_ == bytes_.size()) return -1;
            bits_ |= std::to_integer<unsigned>(bytes_[position_++]) << count_;
            count_ += 8;
        }
        const unsigned code = bits_ & ((1U << width) - 1);
        bits_ >>= width;
        count_ -= width;
        return static_cast<int>(code);
    }

private:
    std::span<const std::byte> bytes_;
    std::size_t position_ = 0;
    unsigned bits_ = 0;
    int count_ = 0;
};

class Decompressor {
public:
    Decompressor(int code_size, std::span<std::uint8_t> pixels) : pixels_(pixels), code_size_(code_size) {
        for (unsigned i = 0; i < 1U << code_size; ++i) strings_[i] = {0, 1, static_cast<std::uint8_t>(i)};
        reset();
    }

    GifResult run(std::span<const std::byte> codes) {
        CodeReader reader(codes);
        const int clear = 1 << code_size_;
        while (filled_ < pixels_.size()) {
            const int code = reader.take(width_);
            if (code < 0 || code == clear + 1) return GifResult::truncated;
            if (code == clear)
                reset();
            else if (!take_string(code))
                return GifResult::damaged;
        }
        return GifResult::complete;
    }

private:
    /// A string is the string of `prefix` and one pixel more.
    struct String {
        std::int16_t prefix = 0;
        std::int16_t length = 0; ///< 0: none has this code
        std::uint8_t last = 0;
    };
    String &string(int code) { return strings_[static_cast<std::size_t>(code)]; }

    void reset() {
        width_ = code_size_ + 1;
        next_ = (1 << code_size_) + 2;
        previous_ = -1;
    }

    bool take_string(int code) {
        const bool is_next = code == next_ && previous_ >= 0; // the string that this very code completes
        if (code >= next_ && !is_next) return false;
        if (is_next && next_ == kGifMaxCodes) return false;
        const std::uint8_t first = first_pixel(is_next ? previous_ : code);
        if (previous_ >= 0 && next_ < kGifMaxCodes) {
            string(next_++) = {static_cast<std::int16_t>(previous_),
                               static_cast<std::int16_t>(string(previous_).length + 1), first};
            if (next_ == 1 << width_ && width_ < kGifMaxBits) ++width_;
        }
        write_string(code);
        previous_ = code;
        return true;
    }
    std::uint8_t first_pixel(int code) {
        while (string(code).length > 1) code = string(code).prefix;
        return string(code).last;
    }
    /// What goes beyond the picture is dropped.
    void write_string(int code) {
        const auto length = static_cast<std::size_t>(string(code).length);
        for (std::size_t i = length; i > 0; --i, code = string(code).prefix)
            if (filled_ + i <= pixels_.size()) pixels_[filled_ + i - 1] = string(code).last;
        filled_ = std::min(filled_ + length, pixels_.size());
    }

    std::array<String, kGifMaxCodes> strings_{};
    std::span<std::uint8_t> pixels_;
    std::size_t filled_ = 0;
    int code_size_;
    int width_ = 0, next_ = 0;
    int previous_ = -1; ///< -1 behind a clear code
};

} // namespace

void gif_compress(std::string &out, int code_size, std::span<const std::uint8_t> pixels) {
    if (!pixels.empty()) Compressor(out, code_size).run(pixels);
}

GifResult gif_decompress(std::span<const std::byte> codes, int code_size, std::span<std::uint8_t> pixels) {
    return Decompressor(code_size, pixels).run(codes);
}
