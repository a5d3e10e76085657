#pragma once
/// What a Level II volume holds: radials, gates, cuts; and how much of it is read at most.

#include <array>
#include <cstddef>
#include <span>
#include <string>

#include "lib/system/calendar.h"

/// Moments of a radial.
enum Lev2Type : int {
    kLev2Reflectivity = 0, ///< dBZ
    kLev2Velocity = 1,     ///< m/s, positive away from the radar
    kLev2Width = 2,        ///< spectrum width, m/s
    kLev2Zdr = 3,          ///< differential reflectivity, dB
    kLev2Phi = 4,          ///< differential phase, degrees
    kLev2Rho = 5,          ///< correlation coefficient
    kLev2Cfp = 6           ///< clutter filter power removed, dB
};
inline constexpr std::size_t kLev2Types = 7;

/// Message types that hold radials (ICD 2620002).
inline constexpr int kLev2Legacy = 1, kLev2Generic = 31;

/// Values of the two gate levels, 0 and 1, that are no measurements (ICD 2620002).
inline constexpr float kLev2BelowThreshold = -100.0F, kLev2RangeFolded = -90.0F;

/// Radial status (ICD 2620002) of the last radial of an elevation and of a volume.
inline constexpr int kLev2EndOfElevation = 2, kLev2EndOfVolume = 4;

// Limits ----------------------------------------------------------------------------------------------------

/// Largest compressed record, largest record decompressed, largest volume decompressed (bytes).
inline constexpr std::size_t kLev2MaxPacked = 16U << 20;
inline constexpr std::size_t kLev2MaxRecord = 32U << 20;
inline constexpr std::size_t kLev2MaxVolume = 512U << 20;
/// Records have some 120 radials each.
inline constexpr int kLev2MaxRecords = 4096;
/// bzip2 streams of one record; real files have one.
inline constexpr std::size_t kLev2MaxPieces = 100;
/// Elevation cuts that a survey lists.
inline constexpr std::size_t kLev2MaxCuts = 128;

/// Position of a radar whose identifier is not known, when nothing else tells it.
inline constexpr float kLev2DefaultLat = 38.98F, kLev2DefaultLon = -77.48F;

/// The volume.
struct Lev2Info {
    std::string id; ///< three letters; empty when the file has none
    float lat = kLev2DefaultLat, lon = kLev2DefaultLon;
    float antenna_m = kMissingF; ///< above sea level, of the radar's identifier
    DateRecord date;
};

/// One radial; for messages of other types only the message header. kMissing where the message does not tell.
struct Lev2Radial {
    std::string id; ///< four letters
    float lat = kMissingF, lon = kMissingF;
    float site_height = kMissingF;    ///< metres
    float antenna_height = kMissingF; ///< metres above sea level
    int type = 0, sequence = 0;
    int date = 0, time = 0; ///< days (1 = 1 January 1970), milliseconds after midnight
    int segments = 0, segment = 0;
    int collection_time = 0, collection_date = 0;
    float unambiguous_range = kMissingF; ///< km
    float azimuth = 0;                   ///< degrees clockwise from north
    int azimuth_number = 0;
    int status = 0;
    int length = 0;
    float azimuth_resolution = 1; ///< degrees, 1 or 0.5
    int compression = 0;
    float elevation = 0; ///< degrees
    int elevation_number = 0;
    int spot_blanking = 0;
    int indexing_mode = 0;
    int block_count = 0;
    float first_refl_km = kMissingF, first_vel_km = kMissingF;
    float refl_size_km = kMissingF, vel_size_km = kMissingF;
    int refl_gates = kMissing, vel_gates = kMissing;
    int sector = 0;
    int refl_ptr = 0, vel_ptr = 0, spect_ptr = 0; ///< 0: the moment is absent
    int vol_ptr = 0, elev_ptr = 0, rad_ptr = 0;
    float doppler_resolution = kMissingF; ///< code of the message: 2 is 0.5 m/s, 4 is 1 m/s
    int pattern = 0;                      ///< volume coverage pattern
    float nyquist = kMissingF;            ///< m/s
    float attenuation = kMissingF;        ///< dB/km
    float threshold = kMissingF;
};

/// The gates of one moment. Gate k is k * gate_km behind the first.
struct Lev2Gates {
    std::span<const std::byte> bytes; ///< raw levels that are there, one or two (big-endian) bytes each
    int count = 0;                    ///< gates announced; `bytes` may hold fewer
    int word_bits = 8;                ///< 8 or 16
    float scale = 2, offset = 0;      ///< value = (level - offset) / scale
    float first_km = 0, gate_km = 0;

    [[nodiscard]] std::size_t word_bytes() const { return static_cast<std::size_t>(word_bits / 8); }
    /// Gates that are there.
    [[nodiscard]] std::size_t size() const { return bytes.size() / word_bytes(); }
    [[nodiscard]] unsigned level(std::size_t gate) const {
        const auto byte = [&](std::size_t i) { return std::to_integer<unsigned>(bytes[i]); };
        return word_bits == 8 ? byte(gate) : byte(2 * gate) << 8 | byte(2 * gate + 1);
    }
    [[nodiscard]] float value(unsigned raw) const {
        if (raw == 0) return kLev2BelowThreshold;
        if (raw == 1) return kLev2RangeFolded;
        return (static_cast<float>(raw) - offset) / scale;
    }
};

struct Lev2CutMoment {
    int gates = 0; ///< of the first radial; 0: the cut has no such moment
    float first_km = 0, gate_km = 0;
};
/// One elevation cut of a volume.
struct Lev2Cut {
    int number = 0;
    float elevation = 0; ///< degrees, mean
    int radials = 0;
    float azimuth_resolution = 1;
    float nyquist = kMissingF; ///< m/s
    int date = 0, time = 0;    ///< of the first radial: days, milliseconds
    std::array<Lev2CutMoment, kLev2Types> moments{};
};
