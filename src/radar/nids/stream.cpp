#include "radar/nids/stream.h"

#include <algorithm>

#include "lib/files/kept_input.h"
#include "lib/report/message.h"
#include "lib/system/stream.h"
#include "lib/text/scan.h"
#include "radar/common/file_kind.h"
#include "radar/common/inflate.h"

namespace {

constexpr std::byte kLineFeed{10};

bool is_damage(Inflated result) {
    return result == Inflated::damaged || result == Inflated::too_large || result == Inflated::too_many;
}

/// The limits of this program are told where they are met.
void tell_limit(Inflated result) {
    if (result == Inflated::too_large)
        MESS_print(kWarn, "NIDS_read: Product larger than %zu bytes\n", kNidsMaxProduct);
    if (result == Inflated::too_many)
        MESS_print(kWarn, "NIDS_read: Product of more than %zu compressed pieces, the rest is not read\n",
                   kInflatePieces);
}

std::span<const std::byte> without_trailer(std::span<const std::byte> bytes) {
    if (bytes.size() >= kTransmissionEnd.size() &&
        std::ranges::equal(bytes.last(kTransmissionEnd.size()), kTransmissionEnd))
        return bytes.first(bytes.size() - kTransmissionEnd.size());
    return bytes;
}

} // namespace

/// Decompresses `rest` behind a copy of `front` into inflated_.
void NidsStream::fill_inflated(NidsCompression kind, std::span<const std::byte> front,
                               std::span<const std::byte> rest) {
    std::vector<std::byte> view(front.begin(), front.end());
    const Inflated result = kind == NidsCompression::zlib ? INFLATE_zlib(rest, kNidsMaxProduct, view)
                                                          : INFLATE_bzip2(rest, kNidsMaxProduct, view);
    inflated_result_ = result;
    tell_limit(result);
    inflated_ = std::move(view);
}

/// Makes the view its bytes from the message header on (or from the compressed place), the rest decompressed.
void NidsStream::inflate_rest(NidsCompression kind) {
    const std::size_t here = reader_.offset();
    const std::size_t start = message_known_ ? message_start_ : here;
    // A product is read again for every redraw; its bytes are decompressed once.
    if (!in_file_ || inflated_from_ != here) {
        const std::span<const std::byte> rest = reader_.peek(reader_.remaining());
        reader_.seek(start);
        fill_inflated(kind, reader_.peek(here - start), rest);
        inflated_from_ = in_file_ ? here : kNowhere;
    }
    in_file_ = false;
    reader_ = ByteReader(inflated_);
    reader_.seek(here - start);
    message_start_ = 0;
}

/// What a gzip file holds; other bytes as they are.
std::vector<std::byte> NidsStream::unzipped(std::vector<std::byte> bytes) {
    if (!INFLATE_is_gzip(bytes)) return bytes;
    std::vector<std::byte> content;
    unzipped_result_ = INFLATE_gzip(bytes, kNidsMaxProduct, content);
    tell_limit(unzipped_result_);
    return content;
}

/// The next line with its line feed, at most `limit` bytes of it; empty at the end.
std::string NidsStream::read_line(std::size_t limit) {
    const auto ahead = reader_.peek(std::min(limit, reader_.remaining()));
    auto end = std::ranges::find(ahead, kLineFeed);
    if (end != ahead.end()) ++end;
    const auto bytes = reader_.take(static_cast<std::size_t>(end - ahead.begin()));
    std::string line;
    line.reserve(bytes.size());
    for (const std::byte byte : bytes) line += std::to_integer<char>(byte);
    return line;
}

/// The bytes from the reader's place plus `shift` look like a message: a description block begins behind its
/// header.
bool NidsStream::message_at(std::size_t shift) const {
    constexpr std::size_t kHeader = 18;
    const auto ahead = reader_.peek(shift + kHeader + 2);
    return !ahead.empty() && ahead[shift + kHeader] == std::byte{0xFF} &&
           ahead[shift + kHeader + 1] == std::byte{0xFF};
}

void NidsStream::set_bytes(std::vector<std::byte> bytes) {
    std::string selection = std::move(selection_);
    *this = NidsStream();
    selection_ = std::move(selection);
    file_ = unzipped(std::move(bytes));
    (void)rewind(); // without bytes there is nothing to go back to
}

bool NidsStream::open(std::string_view name) {
    set_bytes({});
    Stream stream = FILE_open_input(name);
    if (!stream) return false;
    std::vector<std::byte> bytes = stream.read_all(kNidsMaxFile + 1);
    if (bytes.size() > kNidsMaxFile) {
        MESS_print(kWarn, "NIDS_open_stream: File longer than %zu bytes, the rest is not read: %.*s\n",
                   kNidsMaxFile, static_cast<int>(name.size()), name.data());
        bytes.resize(kNidsMaxFile);
    }
    set_bytes(std::move(bytes));
    return true;
}

bool NidsStream::rewind() {
    reader_ = ByteReader(without_trailer(file_));
    message_start_ = 0;
    message_known_ = encrypted_ = false;
    in_file_ = true;
    return !file_.empty();
}

bool NidsStream::select_product() {
    constexpr std::string_view kHeading = "** SDUS97";
    constexpr std::size_t kLongLine = 199, kShortLine = 49;
    if (selection_.empty()) return true;
    const int wanted = std::max(0, Scanner(std::string_view(selection_).substr(1)).integer().value_or(0));
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
    if (message_at(1) || !message_at(0)) reader_.take(1);
    return true;
}

bool NidsStream::test_compression(NidsCompression &found) {
    found = NidsCompression::none;
    const auto ahead = reader_.peek(std::min<std::size_t>(4, reader_.remaining()));
    if (ahead.size() >= 2 && ahead[0] == std::byte{'R'} && ahead[1] == std::byte{'3'}) {
        MESS_print(kDebug, "Encrypted data\n");
        encrypted_ = true;
        exhaust();
        return false;
    }
    // A first stream begins with "x", the largest window; later ones may use smaller windows.
    if (INFLATE_is_zlib(ahead) && ahead[0] == std::byte{'x'}) {
        MESS_print(kDebug, "Zlib Compressed data\n");
        found = NidsCompression::zlib;
    } else if (INFLATE_is_bzip2(ahead)) {
        MESS_print(kDebug, "BZlib Compressed data\n");
        found = NidsCompression::bzip2;
    }
    if (found != NidsCompression::none) inflate_rest(found);
    return true;
}

void NidsStream::set_message_start(std::size_t offset) {
    message_start_ = message_in_file_ = offset;
    message_known_ = true;
    message_inflated_ = !in_file_;
}

NidsExtent NidsStream::extent() const {
    NidsExtent extent;
    const std::size_t whole = message_inflated_ ? inflated_.size() : without_trailer(file_).size();
    extent.bytes = whole - std::min(whole, message_in_file_);
    const std::size_t view = reader_.offset() + reader_.remaining();
    extent.view = view - std::min(view, message_start_);
    extent.inflated = !in_file_;
    if (extent.inflated) extent.result = inflated_result_;
    if (unzipped_result_ != Inflated::done) extent.result = unzipped_result_;
    return extent;
}

bool NidsStream::seek_message(std::size_t offset) {
    const std::size_t size = reader_.offset() + reader_.remaining();
    if (offset > size - std::min(size, message_start_)) return false;
    return reader_.seek(message_start_ + offset);
}

std::span<const std::byte> NidsStream::take(std::size_t count) {
    return reader_.take(std::min(count, reader_.remaining()));
}

void NidsStream::exhaust() {
    reader_.take(reader_.remaining());
}

/// Exhausts the stream, and tells by what.
NidsRead NidsStream::end() {
    exhaust();
    return !in_file_ && is_damage(inflated_result_) ? NidsRead::none : NidsRead::exhausted;
}

NidsRead NidsStream::read(std::span<std::byte> buffer) {
    if (buffer.empty()) return NidsRead::done;
    const auto bytes = take(buffer.size());
    std::ranges::copy(bytes, buffer.begin());
    return bytes.size() == buffer.size() ? NidsRead::done : end();
}

NidsRead NidsStream::read_short(std::int16_t &value) {
    if (reader_.remaining() < sizeof value) return end();
    value = reader_.i16();
    return NidsRead::done;
}

NidsRead NidsStream::read_long(std::int32_t &value) {
    if (reader_.remaining() < sizeof value) return end();
    value = reader_.i32();
    return NidsRead::done;
}

NidsRead NidsStream::skip_line() {
    while (true) {
        const auto byte = reader_.take(1);
        if (byte.empty()) return end();
        if (byte[0] == kLineFeed) return NidsRead::done;
    }
}
