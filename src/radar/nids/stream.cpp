#include "radar/nids/stream.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string>

#include "lib/files/kept_input.h"
#include "lib/report/message.h"
#include "lib/system/stream.h"
#include "lib/text/scan.h"
#include "radar/common/inflate.h"
#include "radar/nids/reader.h"

namespace {

/// Carriage return, carriage return, line feed, end of text: what a transmission puts behind a product.
constexpr std::array kTrailer{std::byte{13}, std::byte{13}, std::byte{10}, std::byte{3}};
constexpr std::byte kLineFeed{10};
constexpr std::size_t kNowhere = std::numeric_limits<std::size_t>::max();

struct State {
    std::vector<std::byte> file;     ///< all bytes of the file
    std::vector<std::byte> inflated; ///< the view behind a compressed place
    std::size_t inflated_from =
        kNowhere; ///< that place within the file, while `inflated` was made from the file
    NidsInflated inflated_result = NidsInflated::done; ///< how the decompression into `inflated` ended
    NidsInflated unzipped_result = NidsInflated::done; ///< the same of a gzip file, whose content is `file`
    bool in_file = true;                               ///< the view is `file`, not `inflated`
    ByteReader reader;                                 ///< over `file` without trailer, or over `inflated`
    std::size_t message_start = 0;                     ///< of the message header within the view
    std::size_t message_in_file = 0; ///< the same within `file`; of a message inside compressed data, theirs
    bool message_inflated = false;   ///< the message begins inside compressed data
    bool message_known = false;
    bool encrypted = false;
    std::string ext_info; ///< selects one product of several: a separator and a number
};
State state;

bool is_damage(NidsInflated result) {
    return result == NidsInflated::damaged || result == NidsInflated::too_large ||
           result == NidsInflated::too_many;
}

/// The limits of this program are told where they are met.
void tell_limit(NidsInflated result) {
    if (result == NidsInflated::too_large)
        MESS_print(kWarn, "NIDS_read: Product larger than %zu bytes\n", kNidsMaxProduct);
    if (result == NidsInflated::too_many)
        MESS_print(kWarn, "NIDS_read: Product of more than %zu compressed pieces, the rest is not read\n",
                   kInflatePieces);
}

std::span<const std::byte> without_trailer(std::span<const std::byte> bytes) {
    if (bytes.size() >= kTrailer.size() && std::ranges::equal(bytes.last(kTrailer.size()), kTrailer))
        return bytes.first(bytes.size() - kTrailer.size());
    return bytes;
}

/// Decompresses `rest` behind a copy of `front` into state.inflated.
void fill_inflated(NidsCompression kind, std::span<const std::byte> front, std::span<const std::byte> rest) {
    std::vector<std::byte> view(front.begin(), front.end());
    const NidsInflated result = kind == NidsCompression::zlib
                                    ? NIDS_inflate_zlib(rest, kNidsMaxProduct, view)
                                    : NIDS_inflate_bzip2(rest, kNidsMaxProduct, view);
    state.inflated_result = result;
    tell_limit(result);
    state.inflated = std::move(view);
}

/// Makes the view its bytes from the message header on (or from the compressed place), the rest decompressed.
void inflate_rest(NidsCompression kind) {
    const std::size_t here = state.reader.offset();
    const std::size_t start = state.message_known ? state.message_start : here;
    // A product is read again for every redraw; its bytes are decompressed once.
    if (!state.in_file || state.inflated_from != here) {
        const std::span<const std::byte> rest = state.reader.peek(state.reader.remaining());
        state.reader.seek(start);
        fill_inflated(kind, state.reader.peek(here - start), rest);
        state.inflated_from = state.in_file ? here : kNowhere;
    }
    state.in_file = false;
    state.reader = ByteReader(state.inflated);
    state.reader.seek(here - start);
    state.message_start = 0;
}

/// What a gzip file holds; other bytes as they are.
std::vector<std::byte> unzipped(std::vector<std::byte> bytes) {
    if (!NIDS_is_gzip(bytes)) return bytes;
    std::vector<std::byte> content;
    state.unzipped_result = NIDS_inflate_gzip(bytes, kNidsMaxProduct, content);
    tell_limit(state.unzipped_result);
    return content;
}

/// The next line with its line feed, at most `limit` bytes of it; empty at the end.
std::string read_line(std::size_t limit) {
    const auto ahead = state.reader.peek(std::min(limit, state.reader.remaining()));
    auto end = std::ranges::find(ahead, kLineFeed);
    if (end != ahead.end()) ++end;
    const auto bytes = state.reader.take(static_cast<std::size_t>(end - ahead.begin()));
    std::string line;
    line.reserve(bytes.size());
    for (const std::byte byte : bytes) line += std::to_integer<char>(byte);
    return line;
}

/// The bytes from the reader's place plus `shift` look like a message: a description block begins behind its
/// header.
bool message_at(std::size_t shift) {
    constexpr std::size_t kHeader = 18;
    const auto ahead = state.reader.peek(shift + kHeader + 2);
    return !ahead.empty() && ahead[shift + kHeader] == std::byte{0xFF} &&
           ahead[shift + kHeader + 1] == std::byte{0xFF};
}

} // namespace

void NIDS_set_bytes(std::vector<std::byte> bytes) {
    std::string selection = std::move(state.ext_info);
    state = State{};
    state.ext_info = std::move(selection);
    state.file = unzipped(std::move(bytes));
    NIDS_rewind();
}

int NIDS_open_stream(std::string_view name) {
    NIDS_close_stream();
    Stream stream = FILE_open_input(name);
    if (!stream) return 0;
    std::vector<std::byte> bytes = stream.read_all(kNidsMaxFile + 1);
    if (bytes.size() > kNidsMaxFile) {
        MESS_print(kWarn, "NIDS_open_stream: File longer than %zu bytes, the rest is not read: %.*s\n",
                   kNidsMaxFile, static_cast<int>(name.size()), name.data());
        bytes.resize(kNidsMaxFile);
    }
    NIDS_set_bytes(std::move(bytes));
    return 1;
}

void NIDS_close_stream() {
    NIDS_set_bytes({});
}

void NIDS_set_ext_info(std::string_view text) {
    state.ext_info = text;
}

ByteReader &NIDS_bytes() {
    return state.reader;
}

bool NIDS_rewind() {
    state.reader = ByteReader(without_trailer(state.file));
    state.message_start = 0;
    state.message_known = state.encrypted = false;
    state.in_file = true;
    return !state.file.empty();
}

bool NIDS_select_product() {
    constexpr std::string_view kHeading = "** SDUS97";
    constexpr std::size_t kLongLine = 199, kShortLine = 49;
    if (state.ext_info.empty()) return true;
    const int wanted = std::max(0, Scanner(std::string_view(state.ext_info).substr(1)).integer().value_or(0));
    std::string line;
    for (int found = -1; found < wanted;) {
        line = read_line(kLongLine);
        if (line.empty()) return false;
        if (line.starts_with(kHeading)) ++found;
    }
    MESS_print(kDebug, "HDR: %s\n", line.c_str());
    MESS_print(kDebug, "HDR2: %s\n", read_line(kShortLine).c_str());
    read_line(kLongLine);
    // One more character stands before the message, unless that begins directly behind the line.
    if (message_at(1) || !message_at(0)) state.reader.take(1);
    return true;
}

bool NIDS_test_compression(NidsCompression &found) {
    found = NidsCompression::none;
    const auto ahead = state.reader.peek(std::min<std::size_t>(4, state.reader.remaining()));
    if (ahead.size() >= 2 && ahead[0] == std::byte{'R'} && ahead[1] == std::byte{'3'}) {
        MESS_print(kDebug, "Encrypted data\n");
        state.encrypted = true;
        NIDS_exhaust();
        return false;
    }
    // A first stream begins with "x", the largest window; later ones may use smaller windows.
    if (NIDS_is_zlib(ahead) && ahead[0] == std::byte{'x'}) {
        MESS_print(kDebug, "Zlib Compressed data\n");
        found = NidsCompression::zlib;
    } else if (NIDS_is_bzip2(ahead)) {
        MESS_print(kDebug, "BZlib Compressed data\n");
        found = NidsCompression::bzip2;
    }
    if (found != NidsCompression::none) inflate_rest(found);
    return true;
}

bool NIDS_is_encrypted() {
    return state.encrypted;
}

void NIDS_set_message_start(std::size_t offset) {
    state.message_start = state.message_in_file = offset;
    state.message_known = true;
    state.message_inflated = !state.in_file;
}

NidsExtent NIDS_extent() {
    NidsExtent extent;
    const std::size_t whole =
        state.message_inflated ? state.inflated.size() : without_trailer(state.file).size();
    extent.bytes = whole - std::min(whole, state.message_in_file);
    const std::size_t view = state.reader.offset() + state.reader.remaining();
    extent.view = view - std::min(view, state.message_start);
    extent.inflated = !state.in_file;
    if (extent.inflated) extent.result = state.inflated_result;
    if (state.unzipped_result != NidsInflated::done) extent.result = state.unzipped_result;
    return extent;
}

bool NIDS_seek_message(std::size_t offset) {
    const std::size_t size = state.reader.offset() + state.reader.remaining();
    if (offset > size - std::min(size, state.message_start)) return false;
    return state.reader.seek(state.message_start + offset);
}

std::span<const std::byte> NIDS_take(std::size_t count) {
    return state.reader.take(std::min(count, state.reader.remaining()));
}

int NIDS_exhaust() {
    state.reader.take(state.reader.remaining());
    return !state.in_file && is_damage(state.inflated_result) ? 0 : -1;
}

int NIDS_read(std::span<std::byte> buffer) {
    if (buffer.empty()) return 1;
    const auto bytes = NIDS_take(buffer.size());
    std::ranges::copy(bytes, buffer.begin());
    return bytes.size() == buffer.size() ? 1 : NIDS_exhaust();
}

int NIDS_read_short(std::int16_t &value) {
    if (state.reader.remaining() < sizeof value) return NIDS_exhaust();
    value = state.reader.i16();
    return 1;
}

int NIDS_read_long(std::int32_t &value) {
    if (state.reader.remaining() < sizeof value) return NIDS_exhaust();
    value = state.reader.i32();
    return 1;
}

int NIDS_skip_line() {
    while (true) {
        const auto byte = state.reader.take(1);
        if (byte.empty()) return NIDS_exhaust();
        if (byte[0] == kLineFeed) return 1;
    }
}
