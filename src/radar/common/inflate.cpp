#include "radar/common/inflate.h"

#include <algorithm>
#include <array>
#include <limits>
#include <new>

#include <bzlib.h>
#include <zlib.h>

#include "lib/report/message.h"
#include "lib/system/large_memory.h"

namespace {

/// First output space, at least and for each byte of input; it doubles whenever it is used up.
constexpr std::size_t kFirstSpace = 64U << 10, kUsualRatio = 4;

unsigned byte_at(std::span<const std::byte> bytes, std::size_t index) {
    return std::to_integer<unsigned>(bytes[index]);
}

unsigned int clamped(std::size_t count) {
    return static_cast<unsigned int>(std::min<std::size_t>(count, std::numeric_limits<unsigned int>::max()));
}

/// What a step of a decompressor left behind. Lack of memory says nothing about the data: it is thrown.
enum class Step { more, end, damaged };

/// Window bits that make zlib expect its own header, and a gzip header.
constexpr int kZlibHeader = MAX_WBITS, kGzipHeader = MAX_WBITS + 16;

/// The zlib decompressor as the loop below wants it.
template <int HeaderBits> class DeflateStream {
public:
    DeflateStream() {
        const int result = inflateInit2(&stream_, HeaderBits);
        if (result == Z_MEM_ERROR) throw std::bad_alloc();
        open_ = result == Z_OK;
    }
    DeflateStream(const DeflateStream &) = delete;
    DeflateStream &operator=(const DeflateStream &) = delete;
    ~DeflateStream() {
        if (open_) inflateEnd(&stream_);
    }

    /// Takes input and output spans and shortens both by what was used.
    Step step(std::span<const std::byte> &in, std::span<std::byte> &out) {
        if (!open_) return Step::damaged;
        // zlib does not write through next_in; its type merely lacks the const.
        stream_.next_in = const_cast<Bytef *>(reinterpret_cast<const Bytef *>(in.data()));
        stream_.avail_in = clamped(in.size());
        stream_.next_out = reinterpret_cast<Bytef *>(out.data());
        stream_.avail_out = clamped(out.size());
        const unsigned int in_before = stream_.avail_in, out_before = stream_.avail_out;
        const int result = inflate(&stream_, Z_NO_FLUSH);
        if (result == Z_MEM_ERROR) throw std::bad_alloc();
        in = in.subspan(in_before - stream_.avail_in);
        out = out.subspan(out_before - stream_.avail_out);
        if (result == Z_STREAM_END) return Step::end;
        return result == Z_OK || result == Z_BUF_ERROR ? Step::more : Step::damaged;
    }

    void restart() { open_ = open_ && inflateReset(&stream_) == Z_OK; }

private:
    z_stream stream_{};
    bool open_ = false;
};

/// The bzip2 decompressor with the same face.
class Bzip2Stream {
public:
    Bzip2Stream() { restart(); }
    Bzip2Stream(const Bzip2Stream &) = delete;
    Bzip2Stream &operator=(const Bzip2Stream &) = delete;
    ~Bzip2Stream() { end(); }

    Step step(std::span<const std::byte> &in, std::span<std::byte> &out) {
        if (!open_) return Step::damaged;
        stream_.next_in = const_cast<char *>(reinterpret_cast<const char *>(in.data()));
        stream_.avail_in = clamped(in.size());
        stream_.next_out = reinterpret_cast<char *>(out.data());
        stream_.avail_out = clamped(out.size());
        const unsigned int in_before = stream_.avail_in, out_before = stream_.avail_out;
        const int result = BZ2_bzDecompress(&stream_);
        if (result == BZ_MEM_ERROR) throw std::bad_alloc();
        in = in.subspan(in_before - stream_.avail_in);
        out = out.subspan(out_before - stream_.avail_out);
        if (result == BZ_STREAM_END) return Step::end;
        return result == BZ_OK ? Step::more : Step::damaged;
    }

    void restart() {
        end();
        stream_ = {};
        stream_.opaque = this;
        stream_.bzalloc = take;
        stream_.bzfree = give_back;
        const int result = BZ2_bzDecompressInit(&stream_, 0, 0);
        if (result == BZ_MEM_ERROR) throw std::bad_alloc();
        open_ = result == BZ_OK;
    }

private:
    void end() {
        if (open_) BZ2_bzDecompressEnd(&stream_);
        open_ = false;
    }

    struct Block {
        LargeMemory memory;
        bool taken = false;
    };

    /// The decompressor's work space is megabytes. It is kept from stream to stream: asking the system for it
    /// anew takes longer than decompressing a small one.
    static void *take(void *self, int items, int size) {
        if (items <= 0 || size <= 0) return nullptr;
        const std::size_t wanted = static_cast<std::size_t>(items) * static_cast<std::size_t>(size);
        Block *place = nullptr;
        for (Block &block : static_cast<Bzip2Stream *>(self)->blocks_) {
            if (block.taken) continue;
            if (place == nullptr || block.memory.bytes().size() >= wanted) place = &block;
            if (block.memory.bytes().size() >= wanted) break;
        }
        if (place == nullptr) return nullptr;
        if (place->memory.bytes().size() < wanted) {
            place->memory = {};
            place->memory = LargeMemory(wanted);
        }
        place->taken = !place->memory.bytes().empty();
        return place->taken ? place->memory.bytes().data() : nullptr;
    }
    static void give_back(void *self, void *place) {
        for (Block &block : static_cast<Bzip2Stream *>(self)->blocks_)
            if (block.memory.bytes().data() == place) block.taken = false;
    }

    std::array<Block, 4> blocks_; ///< a decompressor asks for two or three
    bz_stream stream_{};
    bool open_ = false;
};

/// Decompresses streams as long as `is_stream` sees one at the start of `in`, which is shortened by them. The
/// output space and the decompressor serve all streams, since a file may hold very many very small ones.
template <class Decompressor>
Inflated inflate_all(std::span<const std::byte> &in, bool (*is_stream)(std::span<const std::byte>),
                     std::size_t limit, std::size_t pieces, std::vector<std::byte> &out) {
    Decompressor decompressor;
    std::size_t used = out.size();
    Inflated result = Inflated::done;
    bool within = is_stream(in);
    while (within) {
        if (used >= limit) {
            result = Inflated::too_large;
            break;
        }
        const std::size_t in_before = in.size();
        if (used == out.size())
            out.resize(std::min(limit, std::max({kFirstSpace, 2 * used, kUsualRatio * in_before})));
        std::span<std::byte> space = std::span(out).subspan(used);
        const Step step = decompressor.step(in, space);
        const std::size_t produced = out.size() - used - space.size();
        used += produced;
        MESS_print(kDebug, "Inflate+ %d = %zu %zu = %zu %zu\n", static_cast<int>(step), in_before, in.size(),
                   produced, used);
        if (step == Step::damaged || (step == Step::more && produced == 0 && in.size() == in_before)) {
            result = step == Step::damaged ? Inflated::damaged : Inflated::truncated;
            break;
        }
        if (step == Step::end) {
            within = is_stream(in);
            if (within && --pieces == 0) {
                result = Inflated::too_many;
                break;
            }
            if (within) decompressor.restart();
        }
    }
    out.resize(used);
    return result;
}

} // namespace

/// RFC 1950.
bool INFLATE_is_zlib(std::span<const std::byte> bytes) {
    constexpr unsigned kDeflate = 8; // compression method in the low nibble
    return bytes.size() >= 2 && (byte_at(bytes, 0) & 0xF) == kDeflate &&
           (byte_at(bytes, 0) * 256 + byte_at(bytes, 1)) % 31 == 0;
}

/// RFC 1952.
bool INFLATE_is_gzip(std::span<const std::byte> bytes) {
    constexpr unsigned kDeflate = 8;
    return bytes.size() >= 3 && byte_at(bytes, 0) == 0x1F && byte_at(bytes, 1) == 0x8B &&
           byte_at(bytes, 2) == kDeflate;
}

/// "BZh" and the size of its blocks, hundreds of kilobytes.
bool INFLATE_is_bzip2(std::span<const std::byte> bytes) {
    return bytes.size() >= 4 && byte_at(bytes, 0) == 'B' && byte_at(bytes, 1) == 'Z' &&
           byte_at(bytes, 2) == 'h' && byte_at(bytes, 3) >= '1' && byte_at(bytes, 3) <= '9';
}

Inflated INFLATE_zlib(std::span<const std::byte> bytes, std::size_t limit, std::vector<std::byte> &out) {
    const Inflated result =
        inflate_all<DeflateStream<kZlibHeader>>(bytes, INFLATE_is_zlib, limit, kInflatePieces, out);
    if (result != Inflated::done) return result;
    if (bytes.size() > limit - out.size()) return Inflated::too_large;
    out.insert(out.end(), bytes.begin(), bytes.end());
    return Inflated::done;
}

Inflated INFLATE_gzip(std::span<const std::byte> bytes, std::size_t limit, std::vector<std::byte> &out) {
    return inflate_all<DeflateStream<kGzipHeader>>(bytes, INFLATE_is_gzip, limit, kInflatePieces, out);
}

Inflated INFLATE_bzip2(std::span<const std::byte> bytes, std::size_t limit, std::vector<std::byte> &out,
                       std::size_t pieces) {
    return inflate_all<Bzip2Stream>(bytes, INFLATE_is_bzip2, limit, pieces, out);
}
