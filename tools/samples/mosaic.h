#pragma once
/// Writing national mosaics: NOWRad and KAVRAD files.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "samples/byte_writer.h"

namespace samples {

/// The level of a cell; lines count from the top.
using LevelOf = std::function<unsigned(int line, int column)>;

/// The cells that may have echo; the others of a large grid are not asked for one by one.
struct EchoWindow {
    int first_line = 0, end_line = 1 << 30, first_column = 0, end_column = 1 << 30;
    unsigned outside = 0; ///< level of the others
};

struct NowradFile {
    char map = 'C'; ///< 'C' latitudes and longitudes, 'L' Lambert conformal
    int lines = 0, columns = 0;
    std::string description;
    std::vector<double> numbers; ///< of the map, angles in radians
    LevelOf level;               ///< 0 to 15
    EchoWindow window{};
};
Bytes nowrad_file(const NowradFile &file);

struct KavradFile {
    bool composite = false, half = false;
    std::int64_t time = 0; ///< seconds since 1970
    LevelOf level;         ///< 0 to 63
    EchoWindow window{};
};
inline constexpr unsigned kKavradPlainNoEcho = 16;
Bytes kavrad_file(const KavradFile &file);

/// The simulated evening: as NOWRad on either map, and as KAVRAD.
NowradFile nowrad_latlon(double minutes);
NowradFile nowrad_lambert(double minutes);
KavradFile kavrad(double minutes, bool composite, bool half);

} // namespace samples
