#pragma once
/// The reader of one Level II volume: its bytes and the message that is read. The procedures of reader.h are
/// its faces; what these return is told there.
/// Sources: header, cuts, generic_radial, legacy_radial.

#include <vector>

#include "radar/lev2/radial.h"
#include "radar/lev2/stream.h"
#include "radar/lev2/volume.h"

class Lev2Reader {
public:
    Lev2Stream stream;

    /// Opens the file, after closing the one before. False after a warning.
    [[nodiscard]] bool open(std::string_view name);
    void close();
    /// Back to the first message. False when the file (a pipe) cannot go back.
    [[nodiscard]] bool rewind();
    /// False for a file that is shorter than a header, or no volume.
    [[nodiscard]] bool read_header(Lev2Info &info);

    /// Reads the next message. False at the end of the data, or where they are damaged.
    [[nodiscard]] bool next_block(Lev2Radial &radial);
    /// The data ended within a message since the volume was opened.
    [[nodiscard]] bool is_cut() const { return cut_; }
    /// Moves on to the next message.
    void end_block();

    /// Selects a moment of the radial, at its first gate. False when the radial has no such moment.
    [[nodiscard]] bool select(int type);
    /// The next gate's value; kMissingF behind the last.
    [[nodiscard]] float next_value();
    /// Gates of a moment of the radial, valid until the next block; empty when it has none.
    [[nodiscard]] const Lev2Gates &gates(int type) const;
    /// Range at which the gates of a moment begin, km.
    [[nodiscard]] float first_gate_km(int type) const;

    /// Walks from the present message to the end of the volume. Cuts in the order of the file.
    [[nodiscard]] std::vector<Lev2Cut> list_cuts();

private:
    void read_message_header(std::span<const std::byte> bytes, Lev2Radial &radial);
    void note_cut(std::size_t there, std::size_t wanted);
    [[nodiscard]] bool place_in_data(float &lat, float &lon);
    [[nodiscard]] bool message_makes_sense();

    std::size_t message_bytes_ = 0; ///< of the present message, behind its channel header
    Lev2Moments moments_;           ///< of the present radial; they point into the stream's buffer
    int type_ = kLev2Reflectivity;  ///< selected moment
    std::size_t gate_ = 0;          ///< next gate of it
    bool cut_ = false;              ///< the data ended within a message
};

/// The reader of the open volume.
Lev2Reader &LEV2_reader();
