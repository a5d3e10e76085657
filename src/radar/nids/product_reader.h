#pragma once
/// The reader of one Level III product: its bytes, its header blocks, the packet being read. The procedures
/// of reader.h read the product that is open, with the one of NIDS_reader.
/// Sources: header, packet, info, message_data, page.

#include "radar/nids/header.h"
#include "radar/nids/packet.h"
#include "radar/nids/stream.h"

class NidsReader {
public:
    NidsStream stream;
    NidsBlocks blocks;
    NidsPacketState packet;

    // header: false when it is not there
    [[nodiscard]] bool message_header();
    [[nodiscard]] bool product_description();
    /// Rewinds and reads up to the first packet header. False when the product cannot be read.
    [[nodiscard]] bool read_header(NidsInfo &record);

    // packets
    [[nodiscard]] bool symbology();
    [[nodiscard]] bool symbology_layer();
    /// `none` at the end of the page or on an unknown code.
    [[nodiscard]] NidsRead next_packet(int &code);
    /// Goes to the end of the current packet, over whatever of it has not been read.
    void finish_packet();

    // elements of a packet: `none` when it, or the present element, has no more
    [[nodiscard]] NidsRead next_radial(float &start, float &delta);
    [[nodiscard]] NidsRead next_row();
    [[nodiscard]] NidsRead next_run(NidsRun &run);
    [[nodiscard]] std::span<const std::byte> data_bytes();
    void level_values(int code, std::span<float, 256> values) const;
    [[nodiscard]] NidsRead next_vector(NidsVector &vector);
    [[nodiscard]] NidsRead next_wind(NidsWind &wind);
    [[nodiscard]] NidsRead next_text(NidsText &text);

    // pages
    [[nodiscard]] bool graphic();
    /// Its number, from 1; 0 when there is no further one.
    [[nodiscard]] int next_page();

private:
    [[nodiscard]] int first_packet();
    void begin_element(std::size_t length, std::size_t used);
    [[nodiscard]] NidsRead end_elements();
};

/// The reader of the open product.
NidsReader &NIDS_reader();
