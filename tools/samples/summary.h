#pragma once
/// Writing converted radar summaries, in text and in netCDF.

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "samples/byte_writer.h"
#include "samples/netcdf.h"

namespace samples {

/// Levels by rows from the north.
struct SummaryLevels {
    int columns = 0, rows = 0;
    std::vector<unsigned> levels;
    [[nodiscard]] unsigned at(int column, int row) const {
        return levels[static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) +
                      static_cast<std::size_t>(column)];
    }
};

struct StationReport {
    std::string id{};
    double lat = 0, lon = 0;
    std::string configuration{};        ///< "AREA", "LINE", "CELL", or a status "NE", "OM", "NA"
    std::string precipitation{};        ///< "TRW"
    std::string sign{};                 ///< "-", "", "+", "++", "X", "XX"
    int coverage = 0;                   ///< tenths
    std::string trend{};                ///< "+", "-", "NC", "NEW"
    int top = 0;                        ///< hundreds of feet, 0 none
    int top_azimuth = 0, top_range = 0; ///< degrees, nautical miles
    char movement = ' ';
    int direction = 0, speed = 0; ///< tens of degrees, knots
};

struct StormRecord {
    std::string id{};
    double lat = 0, lon = 0;
    int direction = 0, speed = 0, top = 0, hail = 0;
    bool rotating = false, vortex = false;
};

struct SiteRecord {
    std::string id{};
    int number = 0;
    std::string words{}; ///< " PCPN", " CLAR NE"
    int top = 0;         ///< hundreds of feet, 0 none
    double top_lat = 0, top_lon = 0;
    std::vector<StormRecord> storms{};
};

enum class SummaryForm {
    text,    ///< a date label first
    marked,  ///< "*" first, no label
    package, ///< behind the line "VYXRAD"
    header_w ///< behind a header that begins with "W"
};

struct DigitizedSummary {
    std::int64_t time = 0; ///< seconds since 1970
    SummaryLevels grid;    ///< 120 x 90
    std::vector<StationReport> reports;
};
Bytes digitized_text(const DigitizedSummary &summary, SummaryForm form);
/// One entry for each station, or for each report.
NetcdfDescription digitized_stations(const DigitizedSummary &summary);
NetcdfDescription digitized_reports(const DigitizedSummary &summary);

struct CodedSummary {
    std::int64_t time = 0;
    SummaryLevels grid; ///< 449 x 353
    std::vector<SiteRecord> records;
    bool closed = true; ///< a line "*" follows the last record
};
Bytes coded_text(const CodedSummary &summary, SummaryForm form);

/// The simulated evening.
DigitizedSummary digitized(double minutes);
CodedSummary coded(double minutes);

} // namespace samples
