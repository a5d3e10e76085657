#include "radar/lev2/stream.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

#include "lib/files/kept_input.h"
#include "lib/report/message.h"
#include "lib/text/byte_reader.h"
#include "radar/common/file_kind.h"
#include "radar/common/inflate.h"
#include "radar/lev2/volume.h"

namespace {

constexpr std::size_t kPlainPiece = 128U << 10; ///< bytes read at once from a plain file
constexpr unsigned kUnpackBuffer = 64U << 10;   ///< of the gzip layer

} // namespace

void Lev2Stream::forget_position() {
    started_ = ended_ = false;
    header_size_ = ahead_size_ = ahead_used_ = 0;
    out_.clear();
    begin_ = next_ = dropped_ = 0;
    record_ = 0;
}

/// Reads from the file, behind what was looked at ahead. Short at the end of the file.
std::size_t Lev2Stream::read_file(std::span<std::byte> bytes) {
    const std::size_t kept = std::min(bytes.size(), ahead_size_ - ahead_used_);
    std::copy_n(ahead_.begin() + static_cast<std::ptrdiff_t>(ahead_used_), kept, bytes.begin());
    ahead_used_ += kept;
    std::size_t filled = kept;
    while (filled < bytes.size()) {
        const int count =
            gzread(unpacked_.get(), &bytes[filled],
                   static_cast<unsigned>(std::min<std::size_t>(bytes.size() - filled, 1U << 30)));
        if (count <= 0) break;
        filled += static_cast<std::size_t>(count);
    }
    return filled;
}

/// Reads `count` bytes into `bytes`, which grows with what is there. Short at the end of the file.
void Lev2Stream::read_growing(std::vector<std::byte> &bytes, std::size_t count) {
    bytes.clear();
    while (bytes.size() < count) {
        const std::size_t have = bytes.size();
        const std::size_t piece = std::min(kPlainPiece, count - have);
        bytes.resize(have + piece);
        const std::size_t got = read_file(std::span(bytes).subspan(have));
        bytes.resize(have + got);
        if (got < piece) return;
    }
}

void Lev2Stream::tell_kind() {
    if (told_kind_ || records_ == expect_records_) return;
    told_kind_ = true;
    MESS_print(kMess, "LEV2_open_file: %s holds %s\n", name_.c_str(),
               records_ ? "compressed records" : "messages that are not compressed");
}

/// Reads the volume header and looks at what follows: a control word and a bzip2 stream, or messages.
void Lev2Stream::start() {
    if (started_) return;
    started_ = true;
    header_size_ = read_file(header_);
    const std::size_t seen = read_file(ahead_);
    ahead_size_ = seen;
    ahead_used_ = 0;
    if (seen == ahead_.size()) {
        records_ = INFLATE_is_bzip2(std::span(ahead_).subspan(kControlBytes));
        tell_kind();
    }
}

bool Lev2Stream::end_of_data() {
    ended_ = true;
    return false;
}

/// Moves the bytes of the present message to the start of the buffer.
void Lev2Stream::compact() {
    if (begin_ == 0) return;
    MESS_print(kDebug, "Block moved: %zu of %zu\n", begin_, out_.size());
    out_.erase(out_.begin(), out_.begin() + static_cast<std::ptrdiff_t>(begin_));
    dropped_ += begin_;
    next_ -= std::min(next_, begin_);
    begin_ = 0;
}

bool Lev2Stream::read_plain() {
    const std::size_t have = out_.size();
    out_.resize(have + kPlainPiece);
    const std::size_t got = read_file(std::span(out_).subspan(have));
    out_.resize(have + got);
    MESS_print(kDebug, "Read: %zu %zu - %zu\n", got, have, out_.size());
    return got > 0 || end_of_data();
}

/// The length of the next record; 0 at the end of the file.
std::size_t Lev2Stream::control_word() {
    std::array<std::byte, kControlBytes> word{};
    if (read_file(word) < word.size() || std::ranges::equal(word, kTransmissionEnd)) return 0;
    ByteReader reader(word);
    const std::int64_t value = reader.i32();
    return static_cast<std::size_t>(std::abs(value));
}

/// Reads and decompresses one record behind what is left of the one before.
bool Lev2Stream::read_record() {
    const std::size_t length = control_word();
    if (length == 0) return end_of_data();
    ++record_;
    if (length > kLev2MaxPacked) {
        MESS_print(kWarn, "LEV2_get_block: Record %d of %zu bytes is too large\n", record_, length);
        return end_of_data();
    }
    read_growing(in_, length);
    const std::size_t before = out_.size();
    const Inflated result = INFLATE_bzip2(in_, before + kLev2MaxRecord, out_, kLev2MaxPieces);
    const std::size_t produced = out_.size() - before;
    MESS_print(kDebug, "Decompress: %d %zu:%zu %zu - %zu\n", static_cast<int>(result), length, in_.size(),
               produced, out_.size());
    MESS_print(kDebug, "NSIZE: %zu \n", produced);
    const bool whole = in_.size() == length;
    if (result == Inflated::too_large)
        MESS_print(kWarn, "LEV2_get_block: Record %d is larger than %zu bytes\n", record_, kLev2MaxRecord);
    else if (result == Inflated::too_many)
        MESS_print(kWarn, "LEV2_get_block: Record %d has more than %zu compressed pieces\n", record_,
                   kLev2MaxPieces);
    else if (!whole)
        MESS_print(kWarn, "LEV2_get_block: The file ends within record %d: %zu of %zu bytes\n", record_,
                   in_.size(), length);
    else if (result != Inflated::done)
        MESS_print(kWarn, "LEV2_get_block: Record %d is damaged\n", record_);
    if (!whole || result != Inflated::done) ended_ = true;
    return produced > 0 || !ended_;
}

bool Lev2Stream::read_block() {
    if (ended_ || unpacked_ == nullptr) return false;
    start();
    MESS_print(kDebug, "Block: %d %zu - %zu %zu %zu %zu\n", record_, in_.size(), begin_, next_, out_.size(),
               dropped_);
    compact();
    if (dropped_ + out_.size() > kLev2MaxVolume || record_ >= kLev2MaxRecords) {
        MESS_print(kWarn, "LEV2_get_block: Volume larger than %zu bytes or %d records\n", kLev2MaxVolume,
                   kLev2MaxRecords);
        return end_of_data();
    }
    return records_ ? read_record() : read_plain();
}

bool Lev2Stream::open(std::string_view name) {
    close();
    name_ = name;
    file_ = FILE_open_input(name);
    if (!file_) return false;
    const int descriptor = fcntl(fileno(file_.get()), F_DUPFD_CLOEXEC, 0);
    if (descriptor < 0) return false;
    unpacked_ = decltype(unpacked_)(gzdopen(descriptor, "rb"));
    if (unpacked_ == nullptr) {
        ::close(descriptor);
        return false;
    }
    gzbuffer(unpacked_.get(), kUnpackBuffer);
    return true;
}

void Lev2Stream::close() {
    forget_position();
    unpacked_.reset();
    file_ = Stream();
    told_kind_ = false;
}

bool Lev2Stream::rewind() {
    if (unpacked_ == nullptr) return false;
    if (!started_) return true;
    if (gzrewind(unpacked_.get()) != 0) return false;
    forget_position();
    return true;
}

std::span<const std::byte> Lev2Stream::header_bytes() {
    if (unpacked_ != nullptr) start();
    return std::span(header_).first(header_size_);
}

void Lev2Stream::begin_message() {
    begin_ = std::min(next_, out_.size());
}

std::span<const std::byte> Lev2Stream::message_bytes(std::size_t count) {
    while (out_.size() - begin_ < count && read_block()) {
    }
    return std::span(out_).subspan(begin_, std::min(count, out_.size() - begin_));
}

void Lev2Stream::end_message(std::size_t count) {
    next_ = std::min(begin_ + count, out_.size());
}
