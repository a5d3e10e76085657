#pragma once
/// A converted radar summary: a national grid of intensity levels, and what each radar reports.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "lib/system/calendar.h"

/// What the first byte of a file tells of its form.
enum RadFileKind : int {
    kRadUnknown = -1,
    kRadMarked = 1,    ///< text that begins with a record marker "*": grids alone
    kRadText = 2,      ///< text with a date label, grid, and reports or records
    kRadPackage = 3,   ///< the same behind a header line
    kRadStations = 11, ///< netCDF, one entry for each station
    kRadReports = 12   ///< netCDF, one entry for each report
};

enum class SummaryKind : int { none = 0, digitized = 1, coded_message = 2 };

inline constexpr int kSummaryColumns = 480, kSummaryRows = 360;
inline constexpr std::uint8_t kSummaryMissing = 255;

/// Levels by column (from the west) and row (from the north); 0 is no echo.
class SummaryGrid {
public:
    [[nodiscard]] std::uint8_t at(int column, int row) const { return levels_[index(column, row)]; }
    /// Outside the grid nothing is set.
    void set(int column, int row, std::uint8_t level) {
        if (column >= 0 && column < kSummaryColumns && row >= 0 && row < kSummaryRows)
            levels_[index(column, row)] = level;
    }

private:
    static std::size_t index(int column, int row) {
        return static_cast<std::size_t>(row) * kSummaryColumns + static_cast<std::size_t>(column);
    }
    std::vector<std::uint8_t> levels_ =
        std::vector<std::uint8_t>(std::size_t{kSummaryColumns} * kSummaryRows, 0);
};

struct RadarInfo {
    std::string label; ///< the file's date as it writes it
    DateRecord date;
    SummaryKind kind = SummaryKind::none;
    SummaryGrid grid;
};

/// A report of a Manually Digitized Radar summary.
struct MdrReport {
    struct Coverage {
        float tenths = kMissingF;
        std::string types; ///< of "TRWSZLPAI", "*" none
        int intensity = 0; ///< 1 "-", 2 none, 3 "+", 4 "++", 5 "X", 6 "XX", 9 "U"; 0 not known
    };
    struct Way {
        float azimuth = kMissingF, range_nm = kMissingF; ///< degrees, nautical miles
    };
    struct Movement {
        char type = ' ';                                   ///< 'A' area, 'L' line, 'C' cell
        float direction = kMissingF, speed_kt = kMissingF; ///< degrees it comes from
    };
    std::string id, region;
    float grid_x = kMissingF, grid_y = kMissingF;
    std::string configuration;
    std::vector<Coverage> coverage;
    std::string trend;
    std::array<Way, 5> ways;
    float width_nm = kMissingF;
    std::array<Movement, 3> movements;
    float top = kMissingF; ///< hundreds of feet
    Way top_way;
};

inline constexpr std::size_t kRecordMostVortices = 10, kRecordMostMesocyclones = 20, kRecordMostStorms = 40;

/// What one radar's coded message came to.
struct RcmRecord {
    enum class Mode : int { unknown = 0, precipitation = 1, clear_air = 2 };
    enum class Status : int { not_available = -1, unknown = 0, no_echoes = 1, maintenance = 2 };
    struct Feature {
        std::string id;
        float lat = kMissingF, lon = kMissingF;
    };
    struct Storm : Feature {
        int direction = kMissing, speed = kMissing, top = kMissing; ///< degrees, knots, hundreds of feet
        int hail = 0;                                               ///< 1 hail, 2 severe hail
    };
    std::string id;
    int number = 0;
    Mode mode = Mode::unknown;
    Status status = Status::unknown;
    int top = kMissing;
    float top_lat = kMissingF, top_lon = kMissingF;
    std::vector<Feature> vortices, mesocyclones;
    std::vector<Storm> storms;
};
