#include "radar/nids/product_reader.h"

#include <algorithm>

#include "lib/report/message.h"

namespace {

constexpr unsigned kBlockDivider = 0xFFFF;
constexpr unsigned kSymbologyBlock = 1;
constexpr std::size_t kSymbologyHeader = 10, kLayerHeader = 6; ///< bytes

/// The kinds of packets, by what their headers are.
enum class Kind { radial, raster, precipitation, vectors, barbs, text, skipped };

struct PacketRow {
    int code;
    Kind kind;
    const char *trace; ///< what the trace calls the packet, null: nothing
    bool value_word;   ///< a value word stands behind the length
};
constexpr auto kPackets = std::to_array<PacketRow>({
    {kPacketText, Kind::text, "Uniform Text Data", false},
    {kPacketMeso, Kind::skipped, "Special Symbolic Graphic Data", false},
    {kPacketWind, Kind::barbs, "Wind Barb Data", false},
    {kPacketArrow, Kind::skipped, "Vector Arrow Data", false},
    {kPacketLinked, Kind::skipped, "Linked Vector Data", false},
    {kPacketVector, Kind::vectors, "Unlinked Vector Data", false},
    {kPacketTextValue, Kind::text, "Uniform Text Data", true},
    {kPacketLinkedValue, Kind::skipped, "Linked Vector Data", false},
    {kPacketVectorValue, Kind::vectors, "Unlinked Vector Data", true},
    {11, Kind::skipped, "Special Symbolic Graphic Data", false},
    {12, Kind::skipped, "Special Symbolic Graphic Data", false},
    {13, Kind::skipped, "Special Symbolic Graphic Data", false},
    {14, Kind::skipped, "Special Symbolic Graphic Data", false},
    {15, Kind::skipped, "Special Symbolic Graphic Data", false},
    {kPacketDigitalRadial, Kind::radial, nullptr, false},
    {kPacketDigitalPrecip, Kind::precipitation, "Digital Precipitation Array Data", false},
    {kPacketSupplemental, Kind::skipped, "Supplemental Precipitation Data", false},
    {kPacketRadial, Kind::radial, "Radial Data", false},
    {kPacketRaster7, Kind::raster, "Rastor Data", false},
    {kPacketRaster, Kind::raster, "Rastor Data", false},
});
static_assert(std::ranges::is_sorted(kPackets, {}, &PacketRow::code) &&
              std::ranges::adjacent_find(kPackets, {}, &PacketRow::code) == kPackets.end());

/// Reads an unsigned word and traces it.
int traced_word(ByteReader &bytes, const char *name) {
    const int value = bytes.u16();
    MESS_print(kOut4, "%s: %d\n", name, value);
    return value;
}

int traced_signed(ByteReader &bytes, const char *name) {
    const int value = bytes.i16();
    MESS_print(kOut4, "%s: %d\n", name, value);
    return value;
}

/// Bytes of a packet header behind its code.
std::size_t header_size(Kind kind) {
    switch (kind) {
    case Kind::radial: return 12;
    case Kind::raster: return 20;
    case Kind::precipitation: return 8;
    case Kind::vectors:
    case Kind::barbs:
    case Kind::text:
    case Kind::skipped: break;
    }
    return 2;
}

void read_radial_header(ByteReader &bytes, NidsPacketState &packet) {
    NidsRadialHeader header;
    header.first_bin = traced_word(bytes, "Index of first range bin");
    header.bins = traced_word(bytes, "Number of range bins");
    header.i_centre = traced_signed(bytes, "I center of sweep");
    header.j_centre = traced_signed(bytes, "J center of sweep");
    header.scale = traced_word(bytes, "Scale factor");
    header.radials = traced_word(bytes, "Number of radials");
    packet.radial = header;
    packet.elements_left = header.radials;
}

void read_raster_header(ByteReader &bytes, NidsPacketState &packet) {
    bytes.take(4); // two words of flags
    NidsRasterHeader header;
    header.i_start = traced_signed(bytes, "I coordinate start");
    header.j_start = traced_signed(bytes, "J coordinate start");
    header.x_scale = traced_word(bytes, "X scale int");
    header.x_fraction = traced_word(bytes, "X scale frac");
    header.y_scale = traced_word(bytes, "Y scale int");
    header.y_fraction = traced_word(bytes, "Y scale frac");
    header.rows = traced_word(bytes, "Number of rows");
    header.packing = traced_word(bytes, "Packing descriptor");
    packet.raster = header;
    packet.elements_left = header.rows;
    packet.code = kPacketRaster;
}

void read_precipitation_header(ByteReader &bytes, NidsPacketState &packet) {
    bytes.take(4); // two spare words
    traced_word(bytes, "Number of LFM boxes in row");
    packet.raster = NidsRasterHeader{};
    packet.raster.rows = traced_word(bytes, "Number of rows");
    packet.elements_left = packet.raster.rows;
}

/// Packets that begin with their length: what the length counts becomes the body, the readers take it from
/// there.
void read_counted_header(NidsStream &stream, const PacketRow &row, NidsPacketState &packet) {
    ByteReader &bytes = stream.bytes();
    const auto length = static_cast<std::size_t>(traced_word(bytes, "Number of bytes"));
    const std::size_t start = bytes.offset();
    const auto counted = stream.take(length);
    packet.body_cut = counted.size() < length;
    ByteReader body(counted, start);
    packet.value_word = 0;
    if (row.value_word) packet.value_word = traced_signed(body, "Value");
    if (row.kind == Kind::text) {
        packet.text_i = traced_signed(body, "I");
        packet.text_j = traced_signed(body, "J");
    }
    if (row.kind != Kind::skipped) packet.body = body;
}

void clear_element(NidsPacketState &packet) {
    packet.body.reset();
    packet.body_cut = packet.element_cut = false;
    packet.elements_left = 0;
    packet.element = {};
}

void read_packet_header(NidsStream &stream, const PacketRow &row, NidsPacketState &packet) {
    switch (row.kind) {
    case Kind::radial: read_radial_header(stream.bytes(), packet); break;
    case Kind::raster: read_raster_header(stream.bytes(), packet); break;
    case Kind::precipitation: read_precipitation_header(stream.bytes(), packet); break;
    case Kind::vectors:
    case Kind::barbs:
    case Kind::text:
    case Kind::skipped: read_counted_header(stream, row, packet); break;
    }
}

} // namespace

bool NidsReader::symbology() {
    NidsCompression found{};
    if (!stream.test_compression(found)) return false;
    ByteReader &bytes = stream.bytes();
    MESS_print(kOut4, "Product Symbology: %d\n", static_cast<int>(bytes.offset()));
    if (blocks.description.symbology == 0 || bytes.remaining() < kSymbologyHeader) return false;
    MESS_print(kOut4, "Divider: %d\n", bytes.i16());
    const unsigned identifier = bytes.u16();
    MESS_print(kOut4, "Identifier: %d\n", static_cast<int>(identifier));
    MESS_print(kOut4, "Length: %d\n", bytes.i32());
    packet.layers = traced_word(bytes, "Number of Layers");
    return identifier == kSymbologyBlock;
}

bool NidsReader::symbology_layer() {
    ByteReader &bytes = stream.bytes();
    MESS_print(kOut4, "Product Symbology Layer: %d\n", static_cast<int>(bytes.offset()));
    if (bytes.remaining() < kLayerHeader) return false;
    const unsigned divider = bytes.u16();
    MESS_print(kOut4, "Divider: %d\n", static_cast<int>(divider));
    MESS_print(kOut4, "Length: %d\n", bytes.i32());
    return divider == kBlockDivider;
}

void NidsReader::finish_packet() {
    // Radials and rows have no common length; walk over those not yet read.
    float start = 0, delta = 0;
    const bool radials = packet.code == kPacketRadial || packet.code == kPacketDigitalRadial;
    while (packet.elements_left > 0)
        if ((radials ? next_radial(start, delta) : next_row()) != NidsRead::done) break;
    clear_element(packet);
}

NidsRead NidsReader::next_packet(int &code) {
    finish_packet();
    ByteReader &bytes = stream.bytes();
    if (packet.page_end && bytes.offset() >= *packet.page_end) return NidsRead::none;
    MESS_print(kOut4, "Packets: %d\n", static_cast<int>(bytes.offset()));
    std::int16_t word = 0;
    if (stream.read_short(word) != NidsRead::done) return NidsRead::exhausted;
    packet.code = code = static_cast<std::uint16_t>(word);
    MESS_print(kOut4, "Code: %X\n", static_cast<unsigned>(code));
    const auto row = std::ranges::lower_bound(kPackets, code, {}, &PacketRow::code);
    if (row == kPackets.end() || row->code != code) return NidsRead::none;
    if (row->trace != nullptr) {
        if (row->kind == Kind::radial || row->kind == Kind::raster)
            MESS_print(kOut4, "%s\n", row->trace);
        else
            MESS_print(kOut4, "%s:%d\n", row->trace, code);
    }
    if (bytes.remaining() < header_size(row->kind)) {
        stream.exhaust();
        return NidsRead::exhausted;
    }
    read_packet_header(stream, *row, packet);
    code = packet.code;
    if (packet.elements_left > 0) level_values(packet.code, packet.values);
    return NidsRead::done;
}
