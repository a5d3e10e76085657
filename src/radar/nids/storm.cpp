/// Reading the two storm table layouts.

#include "radar/nids/storm.h"

#include <algorithm>

#include "lib/text/scan.h"
#include "lib/text/strings.h"

namespace {

// The pages of ICD 2620003: hail and storm structure, combined attributes.
constexpr int kHailTable = 1;   ///< "VLOW" heading: TVS, MESO and hail words, then structure
constexpr int kLiquidTable = 2; ///< "VIL" heading: azimuth/range and fixed columns
constexpr float kStrongHail = 49.0F;
constexpr float kSmallestHailInch = 0.25F;

/// Fixed columns of the second layout.
enum LiquidColumn : std::size_t {
    kColumnHail = 26,
    kColumnLess = 34,
    kColumnSize = 35,
    kColumnStructure = 42,
    kColumnMotion = 62
};

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

/// Longest word of the tables, characters.
constexpr std::size_t kWordWidth = 19;
/// A ">" before the top tells that the storm reaches above the highest beam.
constexpr std::string_view kBeforeTop = " >";

/// A field that the line does not have stays as it is, and so do those behind it.
void take(Scanner &scan, float &field) {
    if (const auto value = scan.real()) field = *value;
}

float hail_probability(std::string_view word) {
    if (word == "POS") return 100.0F; // positive
    if (word == "PRO") return 50.0F;  // probable
    return 0.0F;
}

/// What stands from a column on; empty when the line is shorter.
std::string_view from_column(std::string_view line, std::size_t column) {
    return line.substr(std::min(column, line.size()));
}

bool read_hail_line(std::string_view line, NidsStorm &storm) {
    Scanner scan(line);
    const auto id = scan.word(kWordWidth);
    if (!id) return false;
    storm.id = *id;
    take(scan, storm.azimuth);
    take(scan, storm.range_nm);
    storm.tvs = scan.word(kWordWidth) == "YES" ? 1.0F : 0.0F;
    storm.meso = scan.word(kWordWidth) == "YES" ? 1.0F : 0.0F;
    storm.posh = hail_probability(scan.word(kWordWidth).value_or(""));
    take(scan, storm.max_dbz);
    take(scan, storm.max_dbz_height);
    take(scan, storm.spare);
    scan.skip(kBeforeTop);
    take(scan, storm.top);
    take(scan, storm.direction);
    take(scan, storm.speed_kt);
    return true;
}

/// Probabilities of severe hail and of hail, and the size of the stones.
void read_hail(std::string_view line, NidsStorm &storm) {
    constexpr std::size_t kPercentWidth = 6;
    Scanner percent(from_column(line, kColumnHail));
    const auto severe = percent.integer(kPercentWidth);
    percent.literal('/');
    const auto hail = percent.integer(kPercentWidth);
    if (hail) {
        storm.posh = static_cast<float>(*severe);
        storm.poh = static_cast<float>(*hail);
    }
    Scanner size(from_column(line, kColumnSize));
    take(size, storm.hail_size_in);
    // "<0.50": too small to measure. The sign stands in the column before the number, or takes its first
    // place.
    if (contains(from_column(line, kColumnLess).substr(0, 2), "<")) storm.hail_size_in = kSmallestHailInch;
}

bool read_liquid_line(std::string_view line, NidsStorm &storm) {
    Scanner scan(line);
    const auto id = scan.word(kWordWidth);
    take(scan, storm.azimuth);
    scan.literal('/');
    take(scan, storm.range_nm);
    const auto tvs = scan.word(kWordWidth);
    if (!tvs) return false;
    storm.id = *id;
    storm.tvs = tvs == "YES" || tvs == "TVS" ? 1.0F : 0.0F;
    const std::string_view meso = scan.word(kWordWidth).value_or("");
    const int strength = Scanner(meso).integer().value_or(0);
    if (meso == "YES" || meso == "MESO") storm.meso = 1.0F;
    if (strength >= 1) storm.meso = static_cast<float>(strength);
    read_hail(line, storm);

    Scanner structure(from_column(line, kColumnStructure));
    take(structure, storm.vil);
    take(structure, storm.max_dbz);
    take(structure, storm.max_dbz_height);
    structure.skip(kBeforeTop);
    take(structure, storm.top);
    Scanner motion(from_column(line, kColumnMotion));
    take(motion, storm.direction);
    motion.literal('/');
    take(motion, storm.speed_kt);
    return true;
}

} // namespace

bool NIDS_storm_line(std::string_view line, int &layout, NidsStorm &storm) {
    if (contains(line, "VLOW"))
        layout = kHailTable;
    else if (contains(line, "VIL"))
        layout = kLiquidTable;
    if (line.starts_with(" STM") || line.starts_with("NO STORM")) return false;
    storm = NidsStorm{};
    const bool read = layout == kHailTable     ? read_hail_line(line, storm)
                      : layout == kLiquidTable ? read_liquid_line(line, storm)
                                               : false;
    return read && !is_missing(storm.azimuth);
}

bool NIDS_is_strong(const NidsStorm &storm) {
    return storm.tvs > 0 || storm.meso > 0 || storm.posh > kStrongHail;
}

void NidsStormReader::line(std::string_view text) {
    NidsStorm storm;
    if (!NIDS_storm_line(text, layout_, storm)) return;
    ++count_;
    const bool all = most_ == 0 && !strong_only_;
    if (all || (most_ > 0 && count_ <= most_) || (strong_only_ && NIDS_is_strong(storm)))
        storms_.push_back(storm);
}
