#pragma once
/// Converted summaries in netCDF: a national Manually Digitized Radar grid, and an entry for each station or
/// for each report.

#include <cstddef>
#include <string>
#include <vector>

#include "radar/summary/netcdf_file.h"
#include "radar/summary/summary.h"

class SummaryNetcdf {
public:
    /// Takes the bytes of a file; kind() is kRadUnknown, and fault() tells why, when they are no such
    /// summary: a dimension or variable is missing, has another type, or is too small.
    explicit SummaryNetcdf(std::vector<std::byte> bytes);

    [[nodiscard]] RadFileKind kind() const { return kind_; }
    [[nodiscard]] const std::string &fault() const { return file_.fault(); }
    /// Date, kind and grid. False, with fault() set, when they cannot be read.
    bool read_info(RadarInfo &info);
    /// How many stations or reports there are.
    [[nodiscard]] std::size_t count() const { return count_; }
    /// The report at an index below count(). False, with fault() set, when it cannot be read.
    bool read_report(std::size_t index, MdrReport &report);

private:
    bool check_stations();
    bool check_reports();
    bool check_grid(const char *variable);
    bool need_dimension(const char *name, std::size_t least);
    bool need(const char *variable, NetcdfFile::Type type, std::span<const char *const> dimensions);
    bool read_grid(SummaryGrid &grid);
    bool read_station(std::size_t index, MdrReport &report);
    bool read_coverage(std::size_t index, MdrReport &report);
    bool read_places(std::size_t index, MdrReport &report);
    bool read_movements(std::size_t index, char type, MdrReport &report);
    /// One number, or as many as `counter` tells (no more than `most`), of entry `index`.
    float number(const char *variable, std::size_t index);
    std::vector<float> numbers(const char *variable, const char *counter, std::size_t index,
                               std::size_t most);
    std::string text(const char *variable, const char *length, std::size_t index);
    [[nodiscard]] float given(float value) const;

    NetcdfFile file_;
    RadFileKind kind_ = kRadUnknown;
    const char *grid_ = nullptr; ///< the grid's variable
    bool x_first_ = true;        ///< of its dimensions
    std::size_t count_ = 0;
    bool read_whole_ = true; ///< all of the report that is being read
    float missing_ = kMissingF, missing_integer_ = kMissingF;
    std::string missing_text_;
};
