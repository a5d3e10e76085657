#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <unistd.h>
#include <zlib.h>

#include "lib/files/kept_input.h"
#include "lib/report/message.h"
#include "lib/system/stream.h"
#include "lib/text/byte_reader.h"
#include "radar/common/inflate.h"
#include "radar/lev2/reader.h"
#include "radar/lev2/stream.h"

namespace {

constexpr std::size_t kControlBytes = 4;
constexpr std::size_t kSignatureBytes = 4;         ///< of a bzip2 stream
constexpr std::size_t kPlainPiece = 128U << 10;    ///< bytes read at once from a plain file
constexpr unsigned kUnpackBuffer = 64U << 10;      ///< of the gzip layer
constexpr std::uint32_t kTrailerWord = 0x0D0D0A03; ///< CR CR LF ETX, which some networks append

struct CloseGz {
    void operator()(gzFile file) const { gzclose(file); }
};
using GzHandle = std::unique_ptr<gzFile_s, CloseGz>;

struct State {
    Stream file;
    GzHandle unpacked; ///< the file, gunzipped when it is a gzip file
    std::string name;
    bool expect_records = false;
    bool told_kind = false; ///< that the file is of another kind than expected has been said
    bool records = false;   ///< the messages stand in bzip2 records
    bool started = false;   ///< the volume header has been read
    bool ended = false;     ///< no more bytes will come
    std::array<std::byte, kLev2HeaderBytes> header{};
    std::size_t header_size = 0;
    std::array<std::byte, kControlBytes + kSignatureBytes> ahead{}; ///< read to see what the file holds
    std::size_t ahead_size = 0, ahead_used = 0;
    std::vector<std::byte> in;  ///< one compressed record
    std::vector<std::byte> out; ///< messages
    std::size_t begin = 0;      ///< start of the present message in `out`
    std::size_t next = 0;       ///< start of the next one
    std::size_t dropped = 0;    ///< bytes of the volume before `out`
    int record = 0;             ///< records read
};
State state;

void forget_position() {
    state.started = state.ended = false;
    state.header_size = state.ahead_size = state.ahead_used = 0;
    state.out.clear();
    state.begin = state.next = state.dropped = 0;
    state.record = 0;
}

/// Reads from the file, behind what was looked at ahead. Short at the end of the file.
std::size_t read_file(std::span<std::byte> bytes) {
    const std::size_t kept = std::min(bytes.size(), state.ahead_size - state.ahead_used);
    std::copy_n(state.ahead.begin() + static_cast<std::ptrdiff_t>(state.ahead_used), kept, bytes.begin());
    state.ahead_used += kept;
    std::size_t filled = kept;
    while (filled < bytes.size()) {
        const int count =
            gzread(state.unpacked.get(), &bytes[filled],
                   static_cast<unsigned>(std::min<std::size_t>(bytes.size() - filled, 1U << 30)));
        if (count <= 0) break;
        filled += static_cast<std::size_t>(count);
    }
    return filled;
}

/// Reads `count` bytes into `bytes`, which grows with what is there. Short at the end of the file.
void read_growing(std::vector<std::byte> &bytes, std::size_t count) {
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

void tell_kind() {
    if (state.told_kind || state.records == state.expect_records) return;
    state.told_kind = true;
    MESS_print(kMess, "LEV2_open_file: %s holds %s\n", state.name.c_str(),
               state.records ? "compressed records" : "messages that are not compressed");
}

/// Reads the volume header and looks at what follows: a control word and a bzip2 stream, or messages.
void start() {
    if (state.started) return;
    state.started = true;
    state.header_size = read_file(state.header);
    const std::size_t seen = read_file(state.ahead);
    state.ahead_size = seen;
    state.ahead_used = 0;
    if (seen == state.ahead.size()) {
        state.records = INFLATE_is_bzip2(std::span(state.ahead).subspan(kControlBytes));
        tell_kind();
    }
}

bool end_of_data() {
    state.ended = true;
    return false;
}

/// Moves the bytes of the present message to the start of the buffer.
void compact() {
    if (state.begin == 0) return;
    MESS_print(kDebug, "Block moved: %zu of %zu\n", state.begin, state.out.size());
    state.out.erase(state.out.begin(), state.out.begin() + static_cast<std::ptrdiff_t>(state.begin));
    state.dropped += state.begin;
    state.next -= std::min(state.next, state.begin);
    state.begin = 0;
}

bool read_plain() {
    const std::size_t have = state.out.size();
    state.out.resize(have + kPlainPiece);
    const std::size_t got = read_file(std::span(state.out).subspan(have));
    state.out.resize(have + got);
    MESS_print(kDebug, "Read: %zu %zu - %zu\n", got, have, state.out.size());
    return got > 0 || end_of_data();
}

/// The length of the next record; 0 at the end of the file.
std::size_t control_word() {
    std::array<std::byte, kControlBytes> word{};
    if (read_file(word) < word.size()) return 0;
    ByteReader reader(word);
    const std::int64_t value = reader.i32();
    if (value == kTrailerWord) return 0;
    return static_cast<std::size_t>(std::abs(value));
}

/// Reads and decompresses one record behind what is left of the one before.
bool read_record() {
    const std::size_t length = control_word();
    if (length == 0) return end_of_data();
    ++state.record;
    if (length > kLev2MaxPacked) {
        MESS_print(kWarn, "LEV2_get_block: Record %d of %zu bytes is too large\n", state.record, length);
        return end_of_data();
    }
    read_growing(state.in, length);
    const std::size_t before = state.out.size();
    const Inflated result = INFLATE_bzip2(state.in, before + kLev2MaxRecord, state.out, kLev2MaxPieces);
    const std::size_t produced = state.out.size() - before;
    MESS_print(kDebug, "Decompress: %d %zu:%zu %zu - %zu\n", static_cast<int>(result), length,
               state.in.size(), produced, state.out.size());
    MESS_print(kDebug, "NSIZE: %zu \n", produced);
    const bool whole = state.in.size() == length;
    if (result == Inflated::too_large)
        MESS_print(kWarn, "LEV2_get_block: Record %d is larger than %zu bytes\n", state.record,
                   kLev2MaxRecord);
    else if (result == Inflated::too_many)
        MESS_print(kWarn, "LEV2_get_block: Record %d has more than %zu compressed pieces\n", state.record,
                   kLev2MaxPieces);
    else if (!whole)
        MESS_print(kWarn, "LEV2_get_block: The file ends within record %d: %zu of %zu bytes\n", state.record,
                   state.in.size(), length);
    else if (result != Inflated::done)
        MESS_print(kWarn, "LEV2_get_block: Record %d is damaged\n", state.record);
    if (!whole || result != Inflated::done) state.ended = true;
    return produced > 0 || !state.ended;
}

bool read_block() {
    if (state.ended || state.unpacked == nullptr) return false;
    start();
    MESS_print(kDebug, "Block: %d %zu - %zu %zu %zu %zu\n", state.record, state.in.size(), state.begin,
               state.next, state.out.size(), state.dropped);
    compact();
    if (state.dropped + state.out.size() > kLev2MaxVolume || state.record >= kLev2MaxRecords) {
        MESS_print(kWarn, "LEV2_get_block: Volume larger than %zu bytes or %d records\n", kLev2MaxVolume,
                   kLev2MaxRecords);
        return end_of_data();
    }
    return state.records ? read_record() : read_plain();
}

} // namespace

void LEV2_set_compress(int flag) {
    state.expect_records = flag != 0;
}

int LEV2_open_stream(std::string_view name) {
    LEV2_close_stream();
    state.name = name;
    state.file = FILE_open_input(name);
    if (!state.file) return 0;
    const int descriptor = fcntl(fileno(state.file.get()), F_DUPFD_CLOEXEC, 0);
    if (descriptor < 0) return 0;
    state.unpacked = GzHandle(gzdopen(descriptor, "rb"));
    if (state.unpacked == nullptr) {
        close(descriptor);
        return 0;
    }
    gzbuffer(state.unpacked.get(), kUnpackBuffer);
    return 1;
}

void LEV2_close_stream() {
    forget_position();
    state.unpacked.reset();
    state.file = Stream();
    state.told_kind = false;
}

bool LEV2_rewind_stream() {
    if (state.unpacked == nullptr) return false;
    if (!state.started) return true;
    if (gzrewind(state.unpacked.get()) != 0) return false;
    forget_position();
    return true;
}

std::span<const std::byte> LEV2_header_bytes() {
    if (state.unpacked != nullptr) start();
    return std::span(state.header).first(state.header_size);
}

void LEV2_begin_message() {
    state.begin = std::min(state.next, state.out.size());
}

std::span<const std::byte> LEV2_message_bytes(std::size_t count) {
    while (state.out.size() - state.begin < count && read_block()) {
    }
    return std::span(state.out).subspan(state.begin, std::min(count, state.out.size() - state.begin));
}

void LEV2_end_message(std::size_t count) {
    state.next = std::min(state.begin + count, state.out.size());
}

std::size_t LEV2_message_offset() {
    return state.dropped + state.begin;
}

bool LEV2_holds_records() {
    return state.records;
}
