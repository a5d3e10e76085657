#include "radar/nids/product_table.h"

#include <algorithm>
#include <array>

#include "lib/text/missing.h"

namespace {

using enum NidsScale;
using enum NidsExtremes;
using enum NidsLabelPart;

constexpr auto kNoElevation = NidsElevation::none;
constexpr auto kRecorded = NidsElevation::recorded;
constexpr auto kElevation = NidsElevation::labelled;

constexpr std::string_view kReflectivity = "Base reflectivity (Dbz)";
constexpr std::string_view kVelocity = "Base velocity (knt)";
constexpr std::string_view kWidth = "Base spectrum width (knt)";
constexpr std::string_view kComposite = "Comp reflectivity (Dbz)";
constexpr std::string_view kStormRelative = "Stm rel mn rad velocity (knt)";
constexpr std::string_view kRain1 = "Sfc 1 hr rainfall acc. (in)";
constexpr std::string_view kRain3 = "Sfc 3 hr rainfall acc. (in)";
constexpr std::string_view kRainStorm = "Sfc storm total rainfall acc. (in)";

/// Terminal radars (TDWR) have bins of 150 and 300 metres.
constexpr float kBin150m = 150.0F / 1852.0F;
constexpr float kBin300m = 300.0F / 1852.0F;

// Codes, bins and ranges: ICD 2620001, message codes for products; parameters of each product: its
// product-dependent halfwords. The names are this program's own.
// Codes 153 to 155 are the super-resolution successors of 94, 99 and 28 to 30.
constexpr auto kProducts = std::to_array<NidsProduct>({
    {16, kReflectivity, 0.54F, 124, levels, maximum, kElevation},
    {17, kReflectivity, 1.08F, 248, levels, maximum, kElevation},
    {18, kReflectivity, 2.16F, 248, levels, maximum, kElevation},
    {19, kReflectivity, 0.54F, 124, levels, maximum, kElevation},
    {20, kReflectivity, 1.08F, 248, levels, maximum, kElevation},
    {21, kReflectivity, 2.16F, 248, levels, maximum, kElevation},
    {22, kVelocity, 0.135F, 31, levels, both, kElevation},
    {23, kVelocity, 0.27F, 62, levels, both, kElevation},
    {24, kVelocity, 0.54F, 124, levels, both, kElevation},
    {25, kVelocity, 0.135F, 31, levels, both, kElevation},
    {26, kVelocity, 0.27F, 62, levels, both, kElevation},
    {27, kVelocity, 0.54F, 124, levels, both, kElevation},
    {28, kWidth, 0.135F, 31},
    {29, kWidth, 0.27F, 62},
    {30, kWidth, 0.54F, 124, levels, maximum, kRecorded},
    {32, "Digital hyb reflectivity (Dbz)", 0.54F, 124, minimum_step},
    {35, kComposite, 0.54F, 124},
    {36, kComposite, 2.16F, 248},
    {37, kComposite, 0.54F, 124},
    {38, kComposite, 2.16F, 248},
    {41, "Echo tops (1000 ft)", 2.16F, 124},
    {48, "VAD wind profile (knt)", 512, 1, levels, maximum, kNoElevation, none, false, false,
     NidsGrid::screen},
    {55, kStormRelative, 0.27F, 27, levels, both, kElevation, storm_motion, false},
    {56, kStormRelative, 0.54F, 124, levels, both, kElevation, storm_motion, false},
    {57, "Vert int liquid (kg/m^3)", 2.16F, 124},
    {63, {}, 0, 0, levels, maximum, kNoElevation, layer},
    {64, {}, 0, 0, levels, maximum, kNoElevation, layer},
    {65, "Layer 1 comp refl (max Dbz)", 2.16F, 124, levels, maximum, kNoElevation, layer},
    {66, "Layer 2 comp refl (max Dbz)", 2.16F, 124, levels, maximum, kNoElevation, layer},
    {67, "Comp refl APR (Dbz)", 2.16F, 248},
    {78, kRain1, 1.08F, 124, levels, maximum_tenths},
    {79, kRain3, 1.08F, 124, levels, maximum_tenths},
    {80, kRainStorm, 1.08F, 124, levels, maximum_tenths, kNoElevation, begin_p5},
    {81, "Digital precip array (in)", 0.047596F, 124, thousandths, maximum_tenths, kNoElevation, none, true,
     false, NidsGrid::precipitation},
    {89, {}, 0, 0, levels, maximum, kNoElevation, layer},
    {90, "Layer 3 comp refl (max Dbz)", 2.16F, 124, levels, maximum, kNoElevation, layer},
    {94, kReflectivity, 0.54F, 248, minimum_step, maximum, kElevation},
    {99, kVelocity, 0.135F, 124, minimum_step_kt, both, kElevation},
    {134, "Digital vert int liquid (kg/m^3)", 0.54F, 248, liquid},
    {135, "Enh Echo tops (1000 ft)", 0.54F, 186, echo_tops},
    {138, "Digital storm precip (in)", 1.08F, 124, hundredths, maximum_hundredths, kNoElevation, begin_p1},
    {141, "Mesocyclone detection", 0.54F, 124},
    {153, kReflectivity, 0.135F, 248, minimum_step, maximum, kElevation},
    {154, kVelocity, 0.135F, 162, minimum_step_kt, both, kElevation},
    {155, kWidth, 0.135F, 162, minimum_step_kt, maximum, kElevation},
    {158, {}, 0, 0, levels, both_tenths, kElevation},
    {159, "Digital diff refl (dBZ)", 0.135F, 162, scale_offset, both_tenths, kElevation},
    {161, "Digital correl coeff", 0.135F, 162, scale_offset, both_correlation, kElevation},
    {163, "Digital spec diff phase (Deg/km)", 0.135F, 124, scale_offset, maximum, kElevation},
    {165, "Digital hydro class", 0.135F, 162, scale_offset, maximum_unlabelled, kElevation},
    {166, "Melting layer", 0.135F, 124},
    {169, "1 hr accum", 1.08F, 124, levels, maximum_tenths},
    {170, "Digital accum array (in)", 0.135F, 124, scale_offset, maximum_tenths, kNoElevation, none, true,
     true},
    {171, "Storm total accum", 1.08F, 124, levels, maximum_tenths, kNoElevation, begin_p1, true, true},
    {172, "Digital storm total accum (in)", 0.135F, 124, scale_offset, maximum_tenths, kNoElevation, begin_p1,
     true, true},
    {173, {}, 0, 0, scale_offset, maximum_tenths, kNoElevation, none, true, true},
    {174, "Digital 1 hr diff accum (in)", 0.135F, 124, scale_offset, maximum_tenths, kNoElevation, none, true,
     true},
    {175, "Digital storm total diff accum (in)", 0.135F, 124, scale_offset, difference, kNoElevation,
     begin_p1, true, true},
    {176, "Digital instant prec rate (in/hr)", 0.135F, 124, scale_offset},
    {177, "Hybrid hydro class", 0.135F, 124, scale_offset, maximum_unlabelled},
    {180, kReflectivity, kBin150m, 48, minimum_step, maximum, kElevation},
    {181, kReflectivity, kBin150m, 48, levels, maximum, kElevation},
    {182, kVelocity, kBin150m, 48, minimum_step, both, kElevation},
    {186, kReflectivity, kBin300m, 224, terminal_long_range},
    {220, kRain1, 1.08F, 124, levels, maximum_tenths},
    {221, kRain3, 1.08F, 124, levels, maximum_tenths},
    {222, kRainStorm, 1.08F, 124, levels, maximum_tenths, kNoElevation, begin_p5},
});

static_assert(std::ranges::is_sorted(kProducts, {}, &NidsProduct::code) &&
              std::ranges::adjacent_find(kProducts, {}, &NidsProduct::code) == kProducts.end());

constexpr NidsProduct kOtherProduct{};

constexpr std::string_view kMosaicReflectivity = "Composite reflectivity (Dbz)";
constexpr std::string_view kMosaicRain1 = "Sfc 1 hr precipitation (in)";
constexpr std::string_view kMosaicRain12Z = "Sfc precipitation since 12Z (in)";
constexpr std::string_view kMosaicRain24 = "Sfc 24 hr precipitation (in)";
constexpr std::string_view kMosaicLiquid = "Vert int liquid (kg/m^3)";

constexpr auto kMosaics = std::to_array<NidsMosaic>({
    {6, 6, "WARP Comp reflectivity (Dbz)", 4},
    {28, 29, kMosaicReflectivity, kMissingF},
    {30, 30, kMosaicReflectivity, 4},
    {31, 65, kMosaicReflectivity, kMissingF},
    {90, 90, kMosaicRain1, 4},
    {91, 91, kMosaicRain1, 8},
    {95, 95, "Echo tops (ft)", 4},
    {96, 96, "Echo tops (ft)", 8},
    {101, 101, kMosaicRain12Z, 4},
    {102, 102, kMosaicRain24, 4},
    {103, 103, kMosaicReflectivity, 4},
    {104, 104, kMosaicReflectivity, kMissingF},
    {105, 105, kMosaicRain12Z, 2},
    {106, 106, kMosaicRain24, 2},
    {107, 107, kMosaicRain12Z, 8},
    {108, 108, kMosaicRain24, 8},
    {137, 140, kReflectivity, 2},
    {141, 141, kReflectivity, 4},
    {142, 142, kReflectivity, 8},
    {143, 144, kReflectivity, kMissingF},
    {148, 148, kMosaicLiquid, 4},
    {149, 149, kMosaicLiquid, 8},
    {180, 180, kReflectivity, 2},
    {199, 199, "Winter reflectivity (Dbz)", 1},
    {200, 200, "Winter reflectivity (Dbz)", 2},
    {201, 201, {}, 4},
    {202, 202, {}, 8},
    {203, 203, "Reflectivity at Lowest Alt (Dbz)", 1},
    {209, 209, kMosaicLiquid, 1},
    {210, 210, "Echo tops-18dBZ (ft)", 1},
    {211, 211, kMosaicReflectivity, 1},
    {212, 212, "Echo tops-30dBZ (ft)", 1},
});

constexpr bool no_range_overlaps_the_next() {
    for (std::size_t i = 0; i < kMosaics.size(); ++i) {
        if (kMosaics[i].first > kMosaics[i].last) return false;
        if (i > 0 && kMosaics[i - 1].last >= kMosaics[i].first) return false;
    }
    return true;
}
static_assert(no_range_overlaps_the_next());

} // namespace

const NidsProduct &NIDS_find_product(int code) {
    const auto row = std::ranges::lower_bound(kProducts, code, {}, &NidsProduct::code);
    return row != kProducts.end() && row->code == code ? *row : kOtherProduct;
}

const NidsMosaic *NIDS_find_mosaic(int code) {
    const auto row = std::ranges::lower_bound(kMosaics, code, {}, &NidsMosaic::last);
    return row != kMosaics.end() && code >= row->first ? &*row : nullptr;
}
