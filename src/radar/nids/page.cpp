#include "lib/report/message.h"
#include "radar/nids/product_reader.h"

namespace {

constexpr unsigned kBlockDivider = 0xFFFF;
constexpr unsigned kGraphicBlock = 2;
/// Message header and description block: no block stands before their end.
constexpr std::size_t kHeaderBytes = 120;
constexpr std::size_t kBlockHeader = 10;

/// A graphic block header, with or without its divider, stands at the reader's place.
bool header_ahead(NidsStream &stream, bool with_divider) {
    const std::size_t size = with_divider ? 4 : 2;
    ByteReader ahead(stream.bytes().peek(size));
    if (with_divider && ahead.u16() != kBlockDivider) return false;
    return ahead.u16() == kGraphicBlock && !ahead.failed();
}

/// Goes to the block's header; `with_divider` tells whether its divider is still to be read. The block stands
/// where the description block says; failing that it may follow the divider that ended the packets.
bool find_block(NidsReader &reader, bool &with_divider) {
    NidsStream &stream = reader.stream;
    const std::size_t offset = std::size_t{reader.blocks.description.graphic} * 2;
    const std::size_t here = stream.bytes().offset();
    with_divider = true;
    if (offset >= kHeaderBytes && stream.seek_message(offset)) {
        if (stream.bytes().remaining() >= kBlockHeader && header_ahead(stream, true)) return true;
        stream.bytes().seek(here);
    }
    with_divider = false;
    return reader.packet.code == kPacketDivider && stream.bytes().remaining() >= kBlockHeader - 2 &&
           header_ahead(stream, false);
}

} // namespace

bool NidsReader::graphic() {
    finish_packet();
    packet.pages = packet.pages_read = 0;
    packet.page_end.reset();
    bool with_divider = true;
    if (blocks.description.graphic == 0 || !find_block(*this, with_divider)) return false;
    ByteReader &bytes = stream.bytes();
    MESS_print(kOut4, "Graphic Alphanumeric: %d\n", static_cast<int>(bytes.offset()));
    if (with_divider) MESS_print(kOut4, "Divider: %d\n", bytes.i16());
    MESS_print(kOut4, "Identifier: %d\n", bytes.u16());
    MESS_print(kOut4, "Length: %d\n", bytes.i32());
    packet.pages = bytes.u16();
    MESS_print(kOut4, "Number of Pages: %d\n", packet.pages);
    return true;
}

int NidsReader::next_page() {
    finish_packet();
    // Each page begins where the one before says it ends, whatever was read of it.
    if (packet.page_end && !stream.bytes().seek(*packet.page_end)) stream.exhaust();
    packet.page_end.reset();
    if (packet.pages_read >= packet.pages) return 0;
    ByteReader &bytes = stream.bytes();
    if (bytes.remaining() < 4) return 0;
    const int number = bytes.u16();
    const std::size_t length = bytes.u16();
    MESS_print(kOut4, "Graphic Alphanumeric Layer: %d\n", static_cast<int>(bytes.offset()));
    MESS_print(kOut4, "Number: %d\n", number);
    MESS_print(kOut4, "Length: %d\n", static_cast<int>(length));
    if (number > packet.pages) return 0;
    ++packet.pages_read;
    packet.page_end = bytes.offset() + length;
    return number;
}
