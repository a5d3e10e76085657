#include <algorithm>
#include <array>
#include <cerrno>

#include "lib/report/message.h"
#include "lib/text/byte_reader.h"
#include "plot/colour/levels.h"
#include "radar/lev2/radial.h"
#include "radar/lev2/reader.h"
#include "radar/lev2/stream.h"

namespace {

constexpr std::size_t kChannelBytes = 12; ///< in front of every message
constexpr std::size_t kHeaderBytes = 16;  ///< of a message
constexpr std::size_t kFrameBytes = 2420; ///< of every message but the generic radial

struct State {
    std::size_t message_bytes = 0; ///< of the present message, behind its channel header
    Lev2Moments moments;           ///< of the present radial; they point into the stream's buffer
    int type = kLev2Reflectivity;  ///< selected moment
    std::size_t gate = 0;          ///< next gate of it
    bool cut = false;              ///< the data ended within a message
};
State state;

bool is_moment(int type) {
    return type >= 0 && static_cast<std::size_t>(type) < kLev2Types;
}

void read_header(std::span<const std::byte> bytes, Lev2Radial &radial) {
    ByteReader reader(bytes);
    reader.seek(kChannelBytes);
    state.message_bytes = 2 * std::size_t{reader.u16()};
    reader.u8(); // channel
    radial.type = reader.u8();
    radial.sequence = reader.u16();
    radial.date = reader.u16();
    radial.time = reader.i32();
    radial.segments = reader.u16();
    radial.segment = reader.u16();
    if (radial.type != kLev2Generic) state.message_bytes = kFrameBytes;
    state.message_bytes = std::max(state.message_bytes, kHeaderBytes);
    MESS_print(kOut4, "Block-type: %d size: %zu seq: %d seg: %d nseg: %d\n", radial.type, state.message_bytes,
               radial.sequence, radial.segment, radial.segments);
}

/// `there` of a message's bytes are left in the data.
void note_cut(std::size_t there, std::size_t wanted) {
    if (!state.cut && !LEV2_holds_records())
        MESS_print(kWarn, "LEV2_get_block: The file ends within a message: %zu of %zu bytes\n", there,
                   wanted);
    state.cut = true;
}

/// What some networks append behind the last message, and padding, are no message.
bool is_filling(std::span<const std::byte> bytes) {
    constexpr std::array kTrailer{std::byte{13}, std::byte{13}, std::byte{10}, std::byte{3}};
    return std::ranges::equal(bytes, kTrailer) ||
           std::ranges::all_of(bytes, [](std::byte b) { return b == std::byte{0}; });
}

} // namespace

int LEV2_open_file(std::string_view name) {
    const std::string copy(name);
    LEV2_close_file();
    if (LEV2_open_stream(name) != 1) {
        const int fault = errno;
        LEV2_close_stream();
        MESS_print(kWarn, "LEV2_open_file: Unable to open file:%s\n", copy.c_str());
        MESS_print_fault(kWarn, "LEV2_open_file", copy, fault);
        return 0;
    }
    if (CONT_get_bar() != kBarOff) CONT_set_bar(1);
    return 1;
}

int LEV2_close_file() {
    LEV2_close_stream();
    state = State{};
    return 1;
}

int LEV2_rewind_file() {
    state.moments = {};
    return LEV2_rewind_stream() ? 1 : 0;
}

int LEV2_get_block(Lev2Radial &radial) {
    radial = Lev2Radial{};
    state.moments = {};
    LEV2_begin_message();
    const auto header = LEV2_message_bytes(kChannelBytes + kHeaderBytes);
    if (header.size() < kChannelBytes + kHeaderBytes) {
        if (!is_filling(header)) note_cut(header.size(), kChannelBytes + kHeaderBytes);
        return 0;
    }
    read_header(header, radial);
    const std::size_t wanted = kChannelBytes + state.message_bytes;
    const auto bytes = LEV2_message_bytes(wanted);
    if (bytes.size() < wanted) note_cut(bytes.size(), wanted);
    const auto body = bytes.subspan(kChannelBytes + kHeaderBytes);
    if (radial.type == kLev2Legacy) return LEV2_read_legacy(body, radial, state.moments) ? 1 : 0;
    if (radial.type == kLev2Generic) return LEV2_read_generic(body, radial, state.moments) ? 1 : 0;
    return 1;
}

bool LEV2_is_cut() {
    return state.cut;
}

int LEV2_next_block() {
    LEV2_end_message(kChannelBytes + state.message_bytes);
    MESS_print(kDebug, "BK-OPTR: %zu %zu %zu %zu\n", LEV2_message_offset(), state.message_bytes,
               kChannelBytes, LEV2_message_offset() + kChannelBytes + state.message_bytes);
    return 1;
}

int LEV2_set_data_type(int type) {
    state.type = type;
    if (!is_moment(type)) return 1;
    state.gate = 0;
    return LEV2_get_gates(type).bytes.empty() ? 0 : 1;
}

float LEV2_get_data() {
    const Lev2Gates &gates = LEV2_get_gates(state.type);
    if (state.gate >= gates.size()) return kMissingF;
    return gates.value(gates.level(state.gate++));
}

const Lev2Gates &LEV2_get_gates(int type) {
    static constexpr Lev2Gates kNone;
    return is_moment(type) ? state.moments[static_cast<std::size_t>(type)] : kNone;
}

float LEV2_first_gate_km(int type) {
    const Lev2Gates &reflectivity = state.moments[kLev2Reflectivity];
    return reflectivity.bytes.empty() ? LEV2_get_gates(type).first_km : reflectivity.first_km;
}
