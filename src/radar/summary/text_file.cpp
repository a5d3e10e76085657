#include "radar/summary/text_file.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "lib/text/scan.h"
#include "lib/text/strings.h"
#include "lib/time/date.h"

namespace {

constexpr std::string_view kDigitizedHead = "SDUS", kCodedHead = "RCM", kTableHead = "SDXX STATION",
                           kRecordHead = "** ";
constexpr int kUsualMinute = 35; ///< of summaries whose label tells the hour alone

/// "1" to "6" and, in two further shapes of the same levels, "7" to "<" and "=" to "B".
constexpr std::uint8_t coded_level(char c) {
    constexpr int kLevels = 6, kShapes = 3;
    const int step = c - '1';
    return step < 0 || step >= kLevels * kShapes ? 0 : static_cast<std::uint8_t>(step % kLevels + 1);
}

constexpr std::uint8_t digit_level(char c) {
    return c >= '1' && c <= '9' ? static_cast<std::uint8_t>(c - '0') : 0;
}

std::string word_or_blank(std::optional<std::string_view> word) {
    return !word || *word == "*" ? std::string() : std::string(*word);
}

/// Tells of a height: missing values are written in two ways.
float height_or_missing(int height) {
    constexpr int kShortMissing = -99;
    return height == kShortMissing || is_missing(height) ? kMissingF : static_cast<float>(height);
}

} // namespace

void RAD_decode_label(std::string_view label, DateRecord &date) {
    DATE_decode_label(label, date);
    if (!is_missing(date.year) && is_missing(date.minute)) date.minute = kUsualMinute;
}

SummaryText::SummaryText(const std::vector<std::byte> &bytes, RadFileKind kind) : kind_(kind) {
    text_.assign(reinterpret_cast<const char *>(bytes.data()), bytes.size());
    std::erase(text_, '\r');
    for (std::size_t at = 0; at < text_.size();) {
        const std::size_t end = std::min(text_.find('\n', at), text_.size());
        lines_.push_back(std::string_view(text_).substr(at, end - at));
        at = end + 1;
    }
}

void SummaryText::tell(std::string fault) {
    if (std::ranges::find(faults_, fault) == faults_.end()) faults_.push_back(std::move(fault));
}

/// Where the next characters of a section go.
struct SummaryText::Block {
    enum class Section { none, digitized, coded } section = Section::none;
    bool begun = false; ///< the first "+" line of a digitized section has been read
    bool read = false;  ///< a digitized block has been read
    int row = 0, first_column = 0, column = 0;
};

void SummaryText::read_label(RadarInfo &info) {
    info.label.clear();
    info.date = DateRecord();
    if (kind_ == kRadPackage && !at_end()) ++at_;
    if (kind_ == kRadMarked || at_end()) return;
    constexpr std::size_t kMostLabelBytes = 47;
    info.label = lines_[at_++].substr(0, kMostLabelBytes);
    RAD_decode_label(info.label, info.date);
    if (is_missing(info.date.year)) tell("The first line is no date label: \"" + info.label + '"');
}

void SummaryText::take_row(std::string_view line, Block &block, RadarInfo &info) {
    if (block.row < 0 || block.row >= kSummaryRows ||
        block.first_column + static_cast<int>(line.size()) > kSummaryColumns)
        tell("Cells outside the grid are left out");
    for (std::size_t i = 0; i < line.size() && i < kSummaryColumns; ++i)
        info.grid.set(block.first_column + static_cast<int>(i), block.row, digit_level(line[i]));
    ++block.row;
}

void SummaryText::take_digitized(std::string_view line, Block &block, RadarInfo &info) {
    if (!line.starts_with('+')) {
        if (block.begun) take_row(line, block, info);
        return;
    }
    if (block.begun) {
        block.section = Block::Section::none;
        return;
    }
    Scanner scan(line.substr(1));
    const auto row = scan.integer(), column = scan.integer();
    if (!scan.failed() && *row >= -1 && *row < kSummaryRows && *column >= 0 && *column < kSummaryColumns) {
        block.begun = block.read = true;
        block.row = *row + 1;
        block.first_column = *column;
    } else {
        tell("A grid without first row and column is not read: \"" + std::string(line) + '"');
    }
}

void SummaryText::take_coded(std::string_view line, Block &block, RadarInfo &info) {
    if (line.starts_with('+')) {
        block.row = std::clamp(Scanner(line.substr(1)).integer().value_or(0), 0, kSummaryRows - 1);
        block.column = 0;
        return;
    }
    int column = std::min(block.column, kSummaryColumns - 1);
    if (column + static_cast<int>(std::min<std::size_t>(line.size(), kSummaryColumns)) > kSummaryColumns)
        tell("Cells outside the grid are left out");
    for (std::size_t i = 0; i < line.size() && column < kSummaryColumns; ++i)
        info.grid.set(column++, block.row, coded_level(line[i]));
    block.column += static_cast<int>(std::min<std::size_t>(line.size(), kSummaryColumns));
    block.column = std::min(block.column, kSummaryColumns);
}

void SummaryText::read_sections(RadarInfo &info) {
    Block block;
    for (; !at_end(); ++at_) {
        const std::string_view line = lines_[at_];
        if (line.starts_with(kDigitizedHead)) {
            info.kind = SummaryKind::digitized;
            block = {.section = Block::Section::digitized, .read = block.read};
        } else if (line.starts_with(kCodedHead)) {
            info.kind = SummaryKind::coded_message;
            block = {.section = Block::Section::coded, .read = block.read};
        } else if (block.section == Block::Section::coded) {
            if (line.starts_with('*')) break; // the head of the first record
            take_coded(line, block, info);
        } else if (block.section == Block::Section::digitized) {
            if (line.starts_with('*'))
                block.section = Block::Section::none;
            else
                take_digitized(line, block, info);
        }
    }
    if (info.kind == SummaryKind::digitized && !block.read) tell("The file has no grid");
    if (block.section == Block::Section::digitized && block.begun) tell("The grid is cut: no line ends it");
    digitized_ = block.read;
}

bool SummaryText::read_info(RadarInfo &info) {
    at_ = 0;
    faults_.clear();
    read_label(info);
    read_sections(info);
    return digitized_;
}

void SummaryText::take_header(std::string_view line, RcmRecord &record) {
    Scanner scan(line.substr(kRecordHead.size()));
    record.id = scan.word().value_or("");
    record.number = scan.integer().value_or(0);
    // Behind the site, whose own letters may begin with those of a status.
    const std::string_view words = scan.failed() ? line : scan.rest();
    const auto has = [words](std::string_view word) { return words.find(word) != std::string_view::npos; };
    if (has(" PCPN")) record.mode = RcmRecord::Mode::precipitation;
    if (has(" CLAR")) record.mode = RcmRecord::Mode::clear_air;
    if (has(" NA")) record.status = RcmRecord::Status::not_available;
    if (has(" NE")) record.status = RcmRecord::Status::no_echoes;
    if (has(" OM")) record.status = RcmRecord::Status::maintenance;
}

namespace {

/// "%s %f %f"; nothing when one is not there.
std::optional<RcmRecord::Feature> feature_of(Scanner &scan) {
    const auto id = scan.word();
    const auto lat = scan.real(), lon = scan.real();
    if (scan.failed()) return std::nullopt;
    return RcmRecord::Feature{std::string(*id), *lat, *lon};
}

std::optional<RcmRecord::Storm> storm_of(Scanner &scan) {
    const auto feature = feature_of(scan);
    if (!feature) return std::nullopt;
    RcmRecord::Storm storm;
    static_cast<RcmRecord::Feature &>(storm) = *feature;
    storm.direction = scan.integer().value_or(kMissing);
    storm.speed = scan.integer().value_or(kMissing);
    storm.top = scan.integer().value_or(kMissing);
    storm.hail = scan.integer().value_or(0);
    return storm;
}

} // namespace

void SummaryText::take_feature(std::string_view line, RcmRecord &record) {
    Scanner scan(line.substr(1));
    const auto keep = [this, &line](auto entry, auto &entries, std::size_t most) {
        if (!entry)
            tell("A line cannot be read: \"" + std::string(line) + '"');
        else if (entries.size() < most)
            entries.push_back(std::move(*entry));
        else
            tell(
                format_text("Only the first %zu entries of a kind (%c) are kept of a record", most, line[0]));
    };
    switch (line.front()) {
    case 'Z':
        record.top = scan.integer().value_or(kMissing);
        record.top_lat = scan.real().value_or(kMissingF);
        record.top_lon = scan.real().value_or(kMissingF);
        if (scan.failed()) tell("A line cannot be read: \"" + std::string(line) + '"');
        break;
    case 'T': keep(feature_of(scan), record.vortices, kRecordMostVortices); break;
    case 'M': keep(feature_of(scan), record.mesocyclones, kRecordMostMesocyclones); break;
    case 'S': keep(storm_of(scan), record.storms, kRecordMostStorms); break;
    default: break; // lines of other kinds are not for plots
    }
}

bool SummaryText::next_record(RcmRecord &record) {
    record = RcmRecord();
    // The end of a file, and other marked lines, are written as "*" alone.
    while (!at_end() && !lines_[at_].starts_with(kRecordHead)) ++at_;
    if (at_end()) return false;
    take_header(lines_[at_++], record);
    for (; !at_end() && !lines_[at_].starts_with('*'); ++at_)
        if (!lines_[at_].empty()) take_feature(lines_[at_], record);
    return true;
}

void SummaryText::seek_reports() {
    at_ = 0;
    while (!at_end() && !lines_[at_].starts_with(kTableHead)) ++at_;
    if (!at_end()) ++at_;
}

std::string_view MDR_take_precipitation(std::string_view text, MdrReport::Coverage &coverage) {
    constexpr std::string_view kLetters = "*TRWSZLPAI", kSigns = "-+XU";
    constexpr std::array<std::pair<std::string_view, int>, 6> kIntensities{
        {{"-", 1}, {"+", 3}, {"++", 4}, {"X", 5}, {"XX", 6}, {"U", 9}}};
    constexpr int kPlain = 2;
    const std::size_t letters = std::min(text.find_first_not_of(kLetters), text.size());
    coverage.types = text.substr(0, letters) == "*" ? "" : text.substr(0, letters);
    text.remove_prefix(letters);
    const std::size_t signs = std::min(text.find_first_not_of(kSigns), text.size());
    coverage.intensity = signs == 0 && !coverage.types.empty() ? kPlain : 0;
    for (const auto &[sign, code] : kIntensities)
        if (sign == text.substr(0, signs)) coverage.intensity = code;
    return text.substr(signs);
}

namespace {

/// "450,250095": height, azimuth and range; "*" is none.
void take_top(Scanner &scan, MdrReport &report) {
    const auto word = scan.word();
    if (!word || *word == "*") return;
    constexpr std::size_t kDigits = 3;
    Scanner top(*word);
    report.top = height_or_missing(top.integer().value_or(kMissing));
    top.literal(',');
    const auto azimuth = top.integer(kDigits), range = top.integer(kDigits);
    if (top.failed()) return;
    report.top_way = {static_cast<float>(*azimuth), static_cast<float>(*range)};
}

/// "A2438": a kind, tens of degrees, knots; "*" is none.
MdrReport::Movement take_movement(std::string_view &text) {
    MdrReport::Movement movement;
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    if (text.empty()) return movement;
    movement.type = text.front() == '*' ? ' ' : text.front();
    text.remove_prefix(1);
    constexpr std::size_t kDigits = 2;
    if (text.empty() || !is_digit(text.front())) return movement;
    Scanner scan(text);
    const auto tens = scan.integer(kDigits), speed = scan.integer(kDigits);
    if (!scan.failed()) {
        movement.direction = static_cast<float>(*tens * 10);
        movement.speed_kt = static_cast<float>(*speed);
    }
    text.remove_prefix(scan.position());
    return movement;
}

} // namespace

bool SummaryText::next_report(MdrReport &report, bool header_only) {
    report = MdrReport();
    while (!at_end() && trimmed(lines_[at_]).empty()) ++at_;
    if (at_end() || lines_[at_].starts_with('*')) return false;
    Scanner scan(lines_[at_++]);
    report.id = scan.word().value_or("");
    if (header_only) return true;
    report.configuration = word_or_blank(scan.word());
    scan.skip_blanks();
    MdrReport::Coverage coverage;
    Scanner rest(MDR_take_precipitation(scan.rest(), coverage));
    report.coverage.push_back(std::move(coverage));
    report.trend = word_or_blank(rest.word());
    take_top(rest, report);
    std::string_view movements = rest.rest();
    for (MdrReport::Movement &movement : report.movements) movement = take_movement(movements);
    return true;
}
