#pragma once
/// The reader of one Level III product: its bytes, its header blocks, the packet being read. The procedures
/// of reader.h read the product that is open, with the one of NIDS_reader; what they return is told there.
/// Sources: header, packet, info, message_data, page.

#include "radar/nids/header.h"
#include "radar/nids/packet.h"
#include "radar/nids/stream.h"

class NidsReader {
public:
    NidsStream stream;
    NidsBlocks blocks;
    NidsPacketState packet;

    // header
    [[nodiscard]] int message_header();
    [[nodiscard]] int product_description();
    /// Rewinds and reads up to the first packet header. False when the product cannot be read.
    [[nodiscard]] bool read_header(NidsInfo &record);

    // packets
    [[nodiscard]] int symbology();
    [[nodiscard]] int symbology_layer();
    [[nodiscard]] int next_packet(int &code);
    /// Goes to the end of the current packet, over whatever of it has not been read.
    void finish_packet();

    // elements of a packet
    [[nodiscard]] int next_radial(float &start, float &delta);
    [[nodiscard]] int next_row();
    [[nodiscard]] int next_run(NidsRun &run);
    [[nodiscard]] std::span<const std::byte> data_bytes();
    void level_values(int code, std::span<float, 256> values) const;
    [[nodiscard]] int next_vector(NidsVector &vector);
    [[nodiscard]] int next_wind(NidsWind &wind);
    [[nodiscard]] int next_text(NidsText &text);

    // pages
    [[nodiscard]] int graphic();
    [[nodiscard]] int next_page();

private:
    int first_packet();
    void begin_element(std::size_t length, std::size_t used);
    int end_elements();
};

/// The reader of the open product.
NidsReader &NIDS_reader();
