#pragma once
/// A Radar Coded Message: the coded summary of one radar's half hour.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "lib/system/calendar.h"

inline constexpr int kRcmGridSize = 104; ///< cells of the grid to each side
inline constexpr std::uint8_t kRcmNoReport = 255;
inline constexpr std::size_t kRcmMostStorms = 40, kRcmMostVortices = 10, kRcmMostMesocyclones = 20,
                             kRcmMostEntries = 20, kRcmMostGroups = 1000;

enum class RcmMode : int { unknown = kMissing, precipitation = 1, clear_air = 2 };
enum class RcmStatus : int { unknown = kMissing, normal = 0, no_echoes = 1, maintenance = 2 };
enum class RcmHail : int { unknown = -1, none = 0, probable = 1, positive = 2 };

/// Columns count eastwards and rows southwards from 0.
struct RcmFeature {
    std::string id; ///< two characters
    float column = kMissingF, row = kMissingF;
};
struct RcmStorm : RcmFeature {
    int severe = kMissing;
    int direction = kMissing; ///< degrees
    int speed = kMissing;     ///< knots
    RcmHail hail = RcmHail::unknown;
};
/// A wind level of part B as coded: height, direction and speed are given no meaning here.
struct RcmEntry {
    int height = kMissing, direction = kMissing, speed = kMissing;
    int level = kMissing; ///< of the letter: 2, 4, 6, 8, 10, 12 or 15
};

struct RcmReport {
    std::string id; ///< of the radar, at most 8 characters
    int number = kMissing;
    float lat = kMissingF, lon = kMissingF, elevation_m = kMissingF; ///< told by the packet form only
    DateRecord date;
    RcmMode mode = RcmMode::unknown;
    RcmStatus status = RcmStatus::unknown;
    std::array<std::array<std::uint8_t, kRcmGridSize>, kRcmGridSize> cells; ///< [column][row], 0 to 9
    int max_top = kMissing;                                                 ///< as coded
    float top_column = kMissingF, top_row = kMissingF;
    std::vector<RcmStorm> storms;
    std::vector<RcmFeature> vortices, mesocyclones;
    std::vector<RcmEntry> entries;
    bool whole = false; ///< read to the end of part A, and the cells are as many as the bulletin counts

    RcmReport();
};
