/// Reading the two storm table layouts.

#include "radar/nids/storm.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>

#include "lib/text/strings.h"

namespace {

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

/// Words as the tables use them, at most 19 characters.
struct Words {
    std::array<char, 20> id{}, first{}, second{}, third{};
};

float hail_probability(std::string_view word) {
    if (word == "POS") return 100.0F; // positive
    if (word == "PRO") return 50.0F;  // probable
    return 0.0F;
}

/// What stands from a column on; empty when the line is shorter.
std::string from_column(std::string_view line, std::size_t column) {
    return column < line.size() ? std::string(line.substr(column)) : std::string();
}

int read_hail_line(const std::string &line, NidsStorm &storm) {
    Words w;
    const int read = std::sscanf(line.c_str(), "%19s %f %f %19s %19s %19s %f %f %f%*[ >]%f %f %f",
                                 w.id.data(), &storm.azimuth, &storm.range_nm, w.first.data(),
                                 w.second.data(), w.third.data(), &storm.max_dbz, &storm.max_dbz_height,
                                 &storm.spare, &storm.top, &storm.direction, &storm.speed_kt);
    if (read < 1) return 0;
    storm.id = w.id.data();
    storm.tvs = std::string_view(w.first.data()) == "YES" ? 1.0F : 0.0F;
    storm.meso = std::string_view(w.second.data()) == "YES" ? 1.0F : 0.0F;
    storm.posh = hail_probability(w.third.data());
    return 1;
}

int read_liquid_line(const std::string &line, NidsStorm &storm) {
    Words w;
    const int read = std::sscanf(line.c_str(), "%19s %f/%f %19s %19s", w.id.data(), &storm.azimuth,
                                 &storm.range_nm, w.first.data(), w.second.data());
    if (read < 4) return 0;
    storm.id = w.id.data();
    const std::string_view tvs = w.first.data();
    const std::string_view meso = w.second.data();
    storm.tvs = tvs == "YES" || tvs == "TVS" ? 1.0F : 0.0F;
    int strength = 0;
    std::from_chars(meso.data(), meso.data() + meso.size(), strength);
    if (meso == "YES" || meso == "MESO") storm.meso = 1.0F;
    if (strength >= 1) storm.meso = static_cast<float>(strength);

    int severe = 0;
    int hail = 0;
    if (std::sscanf(from_column(line, kColumnHail).c_str(), "%6d/%6d", &severe, &hail) == 2) {
        storm.posh = static_cast<float>(severe);
        storm.poh = static_cast<float>(hail);
    }
    std::sscanf(from_column(line, kColumnSize).c_str(), "%f", &storm.hail_size_in);
    // "<0.50": too small to measure. The sign stands in the column before the number, or takes its first
    // place.
    if (from_column(line, kColumnLess).substr(0, 2).find('<') != std::string::npos)
        storm.hail_size_in = kSmallestHailInch;
    // A ">" before the top tells that the storm reaches above the highest beam.
    std::sscanf(from_column(line, kColumnStructure).c_str(), "%f %f %f%*[ >]%f", &storm.vil, &storm.max_dbz,
                &storm.max_dbz_height, &storm.top);
    std::sscanf(from_column(line, kColumnMotion).c_str(), "%f/%f", &storm.direction, &storm.speed_kt);
    return 1;
}

} // namespace

int NIDS_storm_line(std::string_view line, int &layout, NidsStorm &storm) {
    if (contains(line, "VLOW"))
        layout = kHailTable;
    else if (contains(line, "VIL"))
        layout = kLiquidTable;
    if (line.starts_with(" STM") || line.starts_with("NO STORM")) return 0;
    storm = NidsStorm{};
    const std::string copy(line);
    int read = 0;
    if (layout == kHailTable) read = read_hail_line(copy, storm);
    if (layout == kLiquidTable) read = read_liquid_line(copy, storm);
    return read == 1 && !is_missing(storm.azimuth) ? 1 : 0;
}

bool NIDS_is_strong(const NidsStorm &storm) {
    return storm.tvs > 0 || storm.meso > 0 || storm.posh > kStrongHail;
}

void NidsStormReader::line(std::string_view text) {
    NidsStorm storm;
    if (NIDS_storm_line(text, layout_, storm) != 1) return;
    ++count_;
    const bool all = most_ == 0 && !strong_only_;
    if (all || (most_ > 0 && count_ <= most_) || (strong_only_ && NIDS_is_strong(storm)))
        storms_.push_back(storm);
}
