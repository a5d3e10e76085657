#pragma once
/// Writing Level III product files: message, description, packets, pages, framings and compressions.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "samples/byte_writer.h"

namespace samples {

/// What stands in front of the binary message.
enum class Framing { none, wmo, noaaport };
enum class Compression {
    none,
    bzip2, ///< everything behind the description block
    zlib   ///< the whole message, as several streams, behind a copy of the text header
};

/// Symbology packets, each a whole packet with its code.
struct Level3Product {
    int code = 0;
    int source = 308, destination = 0;
    std::int64_t time = 0; ///< volume scan start, seconds since 1970
    int lat_millideg = 0, lon_millideg = 0, height_ft = 0;
    int mode = 2, pattern = 212, volume = 1, elevation_number = 0;
    std::array<int, 11> p{}; ///< P1 at index 1
    std::array<unsigned, 16> thresholds{};
    std::vector<Bytes> packets;            ///< one layer; none: no symbology block
    std::vector<std::vector<Bytes>> pages; ///< packets of each graphic page
    std::string awips = "N0RLSX";
    std::string wmo_heading = "SDUS53 KLSX";
};

/// The message alone: header, description, symbology and graphic blocks, uncompressed.
Bytes level3_message(const Level3Product &product);
/// The whole file.
Bytes level3_file(const Level3Product &product, Framing framing, Compression compression);

// Packets
// -----------------------------------------------------------------------------------------------------------

/// Levels of each radial (0 to 15 run-length, 0 to 255 digital); radial i starts at start + i * delta
/// degrees.
struct RadialData {
    double start_deg = 0, delta_deg = 1;
    std::vector<std::vector<std::uint8_t>> radials;
};
Bytes radial_packet(const RadialData &data);         ///< 0xAF1F
Bytes digital_radial_packet(const RadialData &data); ///< 16; odd bin counts are padded
/// Rows of levels 0 to 15.
Bytes raster_packet(const std::vector<std::vector<std::uint8_t>> &rows,
                    unsigned code = 0xBA07);                                    ///< 0xBA07 or 0xBA0F
Bytes precipitation_packet(const std::vector<std::vector<std::uint8_t>> &rows); ///< 17
Bytes text_packet(int value, int i, int j, std::string_view text);              ///< 8
struct Line {
    int i1, j1, i2, j2;
};
Bytes vector_packet(int value, const std::vector<Line> &lines); ///< 10
struct Barb {
    int value, i, j, direction, speed;
};
Bytes wind_packet(const std::vector<Barb> &barbs); ///< 4

Bytes bzip2_compressed(const Bytes &bytes);
Bytes zlib_compressed(const Bytes &bytes);

} // namespace samples
