#pragma once
/// Converted summaries in text: a grid of levels, then the table of reports of a Manually Digitized Radar
/// summary or the records of coded messages.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "radar/summary/summary.h"

class SummaryText {
public:
    SummaryText() = default;
    /// Takes the bytes of a file of kind kRadMarked, kRadText or kRadPackage.
    SummaryText(const std::vector<std::byte> &bytes, RadFileKind kind);

    /// Reads date label, summary kind and grid from the beginning. What the file lacks leaves the record as
    /// it was. True when a Manually Digitized Radar block was read.
    bool read_info(RadarInfo &info);
    /// The next record of a coded message. False at the end.
    bool next_record(RcmRecord &record);

    /// Goes to the first report, behind the line "SDXX STATION"; without one to the end.
    void seek_reports();
    /// The next report, or only its station. False at the end.
    bool next_report(MdrReport &report, bool header_only);

    /// What was cut or could not be read, each kind once.
    [[nodiscard]] const std::vector<std::string> &faults() const { return faults_; }

private:
    [[nodiscard]] bool at_end() const { return at_ >= lines_.size(); }
    void read_label(RadarInfo &info);
    void read_sections(RadarInfo &info);
    struct Block;
    void take_digitized(std::string_view line, Block &block, RadarInfo &info);
    void take_coded(std::string_view line, Block &block, RadarInfo &info);
    void take_row(std::string_view line, Block &block, RadarInfo &info);
    void take_header(std::string_view line, RcmRecord &record);
    void take_feature(std::string_view line, RcmRecord &record);
    void tell(std::string fault);

    std::string text_;
    std::vector<std::string_view> lines_; ///< without line ends
    RadFileKind kind_ = kRadUnknown;
    std::size_t at_ = 0;
    bool digitized_ = false; ///< a Manually Digitized Radar block has been read
    std::vector<std::string> faults_;
};

/// Precipitation letters and the sign behind them: "TRW+" is "TRW" and 3. What stands behind is returned.
std::string_view MDR_take_precipitation(std::string_view text, MdrReport::Coverage &coverage);

/// DATE_decode_label; where the minute is missing it is that of the hourly summaries, 35.
void RAD_decode_label(std::string_view label, DateRecord &date);
