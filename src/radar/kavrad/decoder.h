#pragma once
/// Reading KAVRAD grids: header and packets. One file is read at a time.

#include "radar/common/mosaic.h"

/// Grids that are a composite count in other levels than the others.
enum class KavradType : int { plain = 0, composite = 1 };

struct KavradInfo : MosaicInfo {
    std::array<int, 2> kept{}; ///< two numbers of the header without a meaning here
    KavradType type = KavradType::plain;
};

inline constexpr int kKavradToLineEnd = -1;

/// Cells of one value side by side.
struct KavradPacket {
    int run = 0;     ///< cells; kKavradToLineEnd: to the end of the line; 0: only the value changes
    float value = 0; ///< dBZ
    std::uint8_t level = 0;
};

/// Reads the header of a stream that stands at its first byte; then at the first packet. 1, or 0 when the
/// stream is short.
[[nodiscard]] int KAVRAD_header(Stream &stream, KavradInfo &info);
/// The next packet. 1, or 0 at the end of the data or of the file.
[[nodiscard]] int KAVRAD_get_packet(Stream &stream, KavradPacket &packet);
/// Back to the first byte and past the header. 1, or 0.
[[nodiscard]] int KAVRAD_rewind(Stream &stream);

/// The same packets as lines of a mosaic.
extern const MosaicFormat kKavradFormat;
