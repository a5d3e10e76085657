#pragma once
/// Writing RRWDS site files.

#include <cstdint>
#include <functional>
#include <string>

#include "samples/byte_writer.h"

namespace samples {

struct RrwdsFile {
    std::string station = "LSX";
    bool short_range = false;                            ///< 100 nautical miles, else 200
    std::int64_t time = 0;                               ///< seconds since 1970
    double elevation = 0.5;                              ///< degrees
    std::function<unsigned(int azimuth, int bin)> level; ///< 0 to 7
};
Bytes rrwds_file(const RrwdsFile &file);

/// The simulated evening.
RrwdsFile rrwds(double minutes, bool short_range);

} // namespace samples
