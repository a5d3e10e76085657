#include "radar/nids/level_words.h"

#include <algorithm>
#include <array>

#include "radar/common/readout.h"
#include "radar/nids/image.h"
#include "radar/nids/packet_types.h"

namespace {

struct Named {
    int number;
    std::string_view name;
};

/// Classes of echo (ICD 2620003, hydrometeor classification).
constexpr auto kClasses = std::to_array<Named>({
    {10, "biological"},
    {20, "ground clutter"},
    {30, "ice crystals"},
    {40, "dry snow"},
    {50, "wet snow"},
    {60, "light or moderate rain"},
    {70, "heavy rain"},
    {80, "big drops"},
    {90, "graupel"},
    {100, "hail and rain"},
    {110, "large hail"},
    {120, "giant hail"},
    {140, "unknown"},
    {150, kRangeFoldedWords},
});

/// What a threshold word that is no number stands for, by its low byte (ICD 2620001, data level thresholds).
constexpr auto kThresholdWords = std::to_array<Named>({
    {0, kNoDataWords},
    {1, kBelowWords},
    {2, kNoDataWords},
    {3, kRangeFoldedWords},
});

std::string_view name_of(std::span<const Named> names, int number) {
    const auto found = std::ranges::find(names, number, &Named::number);
    return found == names.end() ? std::string_view() : found->name;
}

bool holds_classes(const NidsInfo &info) {
    return info.source <= kLastRadarSource && (info.code == 165 || info.code == 177);
}

std::string_view threshold_word(const NidsDescription &description, int level) {
    constexpr unsigned kWord = 0x8000;
    const unsigned word = description.threshold[static_cast<std::size_t>(level)];
    if ((word & kWord) == 0) return {};
    const std::string_view name = name_of(kThresholdWords, static_cast<int>(word & 0xFF));
    return name.empty() ? kNoDataWords : name;
}

/// Of the second level of digital products that begin with it: those of Doppler and of polarisation are
/// folded there, the others have not measured.
bool folds(const NidsInfo &info, const NidsProduct &product) {
    constexpr int kTerminalVelocity = 182;
    return product.scale == NidsScale::minimum_step_kt || info.code == kTerminalVelocity ||
           (product.scale == NidsScale::scale_offset && !product.values_in_hundredths &&
            !holds_classes(info) && product.elevation != NidsElevation::none);
}

std::string_view digital_word(const NidsInfo &info, const NidsProduct &product, int level) {
    if (level == 0) return product.values_in_hundredths || holds_classes(info) ? kNoDataWords : kBelowWords;
    if (level == 1) return folds(info, product) ? kRangeFoldedWords : kNoDataWords;
    return {};
}

/// Names of products tell their unit in brackets, some of them in words of their own.
struct UnitWord {
    std::string_view name, unit;
};
constexpr auto kUnitWords = std::to_array<UnitWord>({
    {"Dbz", "dBZ"},
    {"max Dbz", "dBZ"},
    {"knt", "kt"},
    {"in", "in"},
    {"in/hr", "in/h"},
    {"kg/m^3", "kg/m^2"}, // what stands over a square metre
    {"1000 ft", "kft"},
    {"ft", "ft"},
    {"Deg/km", "deg/km"},
});

/// Units of radar products whose names do not tell them, or another.
struct UnitOfCode {
    int first, last;
    std::string_view unit;
};
constexpr auto kUnitsOfCodes = std::to_array<UnitOfCode>({
    {158, 159, "dB"},
    {169, 173, "in"},
    {182, 182, "m/s"},
});

} // namespace

std::string_view NIDS_level_word(const NidsBlocks &blocks, const NidsInfo &info, int packet, int level) {
    constexpr int kMissingPrecipitation = 255;
    if (packet == kPacketDigitalRadial) return digital_word(info, blocks.product(), level);
    if (packet == kPacketDigitalPrecip)
        return level == kMissingPrecipitation ? kNoDataWords : std::string_view();
    // Raster rows of pairs count hundreds above the sixteen.
    return level < kThresholds ? threshold_word(blocks.description, level) : std::string_view();
}

std::string_view NIDS_class_name(const NidsInfo &info, float value) {
    return holds_classes(info) ? name_of(kClasses, static_cast<int>(value)) : std::string_view();
}

std::string_view NIDS_unit(const NidsInfo &info) {
    if (info.source <= kLastRadarSource)
        for (const UnitOfCode &row : kUnitsOfCodes)
            if (info.code >= row.first && info.code <= row.last) return row.unit;
    const std::string_view name = info.name;
    const std::size_t open = name.rfind('('), close = name.rfind(')');
    if (open == std::string_view::npos || close == std::string_view::npos || close < open) return {};
    const auto found =
        std::ranges::find(kUnitWords, name.substr(open + 1, close - open - 1), &UnitWord::name);
    return found == kUnitWords.end() ? std::string_view() : found->unit;
}
