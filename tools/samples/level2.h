#pragma once
/// Writing Level II volumes: both kinds of radial, plain and in bzip2 records.

#include <cstdint>
#include <string>
#include <vector>

#include "samples/byte_writer.h"

namespace samples {

/// Gates of one moment; levels of 16-bit moments are words.
struct Level2Moment {
    std::string name; ///< "REF", "VEL", "SW ", "ZDR", "PHI", "RHO" or "CFP"
    int first_m = 2125, gate_m = 250;
    int word_bits = 8;
    float scale = 2, offset = 66;
    std::vector<unsigned> levels;
};

struct Level2Radial {
    int number = 1; ///< from 1 within the cut
    double azimuth = 0, elevation = 0.5;
    int elevation_number = 1;
    int status = 1; ///< 0 begins an elevation, 1 within, 2 ends it, 3 begins the volume, 4 ends it
    bool half_degree = false;
    std::vector<Level2Moment> moments;
};

struct Level2Volume {
    std::string archive = "AR2V0006.001";
    std::string id = "KLSX";
    std::int64_t time = 0; ///< seconds since 1970
    float lat = 0, lon = 0;
    int height_m = 0, pattern = 212, nyquist_cms = 2600;
    std::vector<Level2Radial> radials;
};

/// The 24 bytes at the start of a file.
Bytes level2_header(const Level2Volume &volume);
/// A message with its channel header. A legacy radial holds the moments REF, VEL and SW alone; VEL and SW
/// share their gates. A velocity scale of 1 is written as the resolution of 1 m/s.
Bytes legacy_message(const Level2Volume &volume, const Level2Radial &radial);
Bytes generic_message(const Level2Volume &volume, const Level2Radial &radial);
/// A frame without a radial.
Bytes filler_message(int type);

/// A record: control word (negative when asked for) and bzip2 stream.
Bytes level2_record(const Bytes &messages, bool negative = false);

enum class Level2Form { legacy, generic, records };
/// The whole file, with metadata frames in front of the radials.
Bytes level2_file(const Level2Volume &volume, Level2Form form);

/// Two cuts of the simulated evening: reflectivity alone with the dual-polarisation moments, then
/// reflectivity, velocity and width.
Level2Volume level2_volume(double minutes, bool half_degree);

} // namespace samples
