#include "radar/lev2/volume_reader.h"

#include <algorithm>
#include <cerrno>

#include "lib/report/message.h"
#include "lib/text/byte_reader.h"
#include "plot/colour/levels.h"
#include "radar/common/file_kind.h"

namespace {

// ICD 2620002: messages between radar and product generator.
constexpr std::size_t kChannelBytes = 12; ///< in front of every message
constexpr std::size_t kHeaderBytes = 16;  ///< of a message
constexpr std::size_t kFrameBytes = 2420; ///< of every message but the generic radial

bool is_moment(int type) {
    return type >= 0 && static_cast<std::size_t>(type) < kLev2Types;
}

/// What some networks append behind the last message, and padding, are no message.
bool is_filling(std::span<const std::byte> bytes) {
    return std::ranges::equal(bytes, kTransmissionEnd) ||
           std::ranges::all_of(bytes, [](std::byte b) { return b == std::byte{0}; });
}

} // namespace

void Lev2Reader::read_message_header(std::span<const std::byte> bytes, Lev2Radial &radial) {
    ByteReader reader(bytes);
    reader.seek(kChannelBytes);
    message_bytes_ = 2 * std::size_t{reader.u16()};
    reader.u8(); // channel
    radial.type = reader.u8();
    radial.sequence = reader.u16();
    radial.date = reader.u16();
    radial.time = reader.i32();
    radial.segments = reader.u16();
    radial.segment = reader.u16();
    if (radial.type != kLev2Generic) message_bytes_ = kFrameBytes;
    message_bytes_ = std::max(message_bytes_, kHeaderBytes);
    MESS_print(kOut4, "Block-type: %d size: %zu seq: %d seg: %d nseg: %d\n", radial.type, message_bytes_,
               radial.sequence, radial.segment, radial.segments);
}

/// `there` of a message's bytes are left in the data.
void Lev2Reader::note_cut(std::size_t there, std::size_t wanted) {
    if (!cut_ && !stream.holds_records())
        MESS_print(kWarn, "LEV2_get_block: The file ends within a message: %zu of %zu bytes\n", there,
                   wanted);
    cut_ = true;
}

bool Lev2Reader::open(std::string_view name) {
    const std::string copy(name);
    close();
    if (!stream.open(name)) {
        const int fault = errno;
        stream.close();
        MESS_print(kWarn, "LEV2_open_file: Unable to open file:%s\n", copy.c_str());
        MESS_print_fault(kWarn, "LEV2_open_file", copy, fault);
        return false;
    }
    if (CONT_get_bar() != kBarOff) CONT_set_bar(1);
    return true;
}

void Lev2Reader::close() {
    stream.close();
    message_bytes_ = gate_ = 0;
    moments_ = {};
    type_ = kLev2Reflectivity;
    cut_ = false;
}

bool Lev2Reader::rewind() {
    moments_ = {};
    return stream.rewind();
}

bool Lev2Reader::next_block(Lev2Radial &radial) {
    radial = Lev2Radial{};
    moments_ = {};
    stream.begin_message();
    const auto header = stream.message_bytes(kChannelBytes + kHeaderBytes);
    if (header.size() < kChannelBytes + kHeaderBytes) {
        if (!is_filling(header)) note_cut(header.size(), kChannelBytes + kHeaderBytes);
        return false;
    }
    read_message_header(header, radial);
    const std::size_t wanted = kChannelBytes + message_bytes_;
    const auto bytes = stream.message_bytes(wanted);
    if (bytes.size() < wanted) note_cut(bytes.size(), wanted);
    const auto body = bytes.subspan(kChannelBytes + kHeaderBytes);
    if (radial.type == kLev2Legacy) return LEV2_read_legacy(body, radial, moments_);
    if (radial.type == kLev2Generic) return LEV2_read_generic(body, radial, moments_);
    return true;
}

void Lev2Reader::end_block() {
    stream.end_message(kChannelBytes + message_bytes_);
    MESS_print(kDebug, "BK-OPTR: %zu %zu %zu %zu\n", stream.message_offset(), message_bytes_, kChannelBytes,
               stream.message_offset() + kChannelBytes + message_bytes_);
}

bool Lev2Reader::select(int type) {
    type_ = type;
    if (!is_moment(type)) return true;
    gate_ = 0;
    return !gates(type).bytes.empty();
}

float Lev2Reader::next_value() {
    const Lev2Gates &selected = gates(type_);
    if (gate_ >= selected.size()) return kMissingF;
    return selected.value(selected.level(gate_++));
}

const Lev2Gates &Lev2Reader::gates(int type) const {
    static constexpr Lev2Gates kNone;
    return is_moment(type) ? moments_[static_cast<std::size_t>(type)] : kNone;
}

float Lev2Reader::first_gate_km(int type) const {
    const Lev2Gates &reflectivity = moments_[kLev2Reflectivity];
    return reflectivity.bytes.empty() ? gates(type).first_km : reflectivity.first_km;
}
