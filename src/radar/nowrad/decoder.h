#pragma once
/// Reading NOWRad mosaics: header, lines, and the packets of a line. One file is read at a time. Order of
/// calls: NOWRad_header, then for each line NOWRad_line and NOWRad_get_packet until they give 0.

#include "radar/common/mosaic.h"

/// Cells of one value side by side.
struct NowradPacket {
    int run = 0;     ///< cells; 0 for a packet that only sets the attribute
    float value = 0; ///< dBZ
    std::uint8_t level = 0;
    int attribute = 0; ///< bits that a packet of their own sets for those behind it; nothing is drawn by them
};

/// Reads the header of a stream that stands at its first byte; then at the first line. 1; 0 when a marker is
/// wrong, a number makes no sense or the stream is short.
[[nodiscard]] int NOWRad_header(Stream &stream, MosaicInfo &info);
/// Begins the next line. 1, or 0 where no line begins.
[[nodiscard]] int NOWRad_line(Stream &stream, int &line);
/// The next packet. 1, or 0 at the end of the line or of the file.
[[nodiscard]] int NOWRad_get_packet(Stream &stream, NowradPacket &packet);
/// Back to the first byte and past the header. 1, or 0.
[[nodiscard]] int NOWRad_rewind(Stream &stream);

/// The same packets as lines of a mosaic.
extern const MosaicFormat kNowradFormat;
