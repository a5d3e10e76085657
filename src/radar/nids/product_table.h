#pragma once
/// What is known of each product code: name, bin size, range, and the rules for thresholds, levels, extremes
/// and label.

#include <string_view>

/// How the sixteen threshold words are read, and with it how the levels of a digital packet become values.
enum class NidsScale {
    levels,          ///< one value a word
    minimum_step,    ///< minimum and increment in tenths, number of levels
    minimum_step_kt, ///< the same in m/s, made knots
    thousandths,     ///< minimum and increment in thousandths
    hundredths,      ///< minimum and increment in hundredths
    liquid, ///< half-precision numbers: linear scale and offset, start of the logarithmic levels, their scale
    echo_tops,          ///< data mask, scale, offset
    scale_offset,       ///< two single-precision numbers
    terminal_long_range ///< fixed: from -32 dBZ in steps of 0.5
};

/// Where maximum and minimum stand among the product parameters, and with how many decimals the label shows
/// them.
enum class NidsExtremes {
    maximum,            ///< P4
    both,               ///< minimum P4, maximum P5
    both_tenths,        ///< the same, tenths
    both_correlation,   ///< the same, in steps of 0.00333
    difference,         ///< minimum P7, maximum P4, hundredths
    maximum_tenths,     ///< P4, tenths
    maximum_hundredths, ///< P4, hundredths
    maximum_unlabelled  ///< P4, not in the label
};

enum class NidsElevation {
    none,
    recorded, ///< in the information record only
    labelled
};

/// What the label says besides mode, range, elevation and extremes.
enum class NidsLabelPart {
    none,
    begin_p5,     ///< start of accumulation: day number P5, minutes P6
    begin_p1,     ///< start of accumulation: day number P1, minutes P2
    storm_motion, ///< P9 and P8, tenths
    layer         ///< bottom P5 and top P6
};

/// The plane a product is drawn in.
enum class NidsGrid {
    radar,        ///< centred on the radar
    screen,       ///< the screen of a diagram, 0 to 511
    precipitation ///< the national grid of quarter limited-fine-mesh boxes
};

struct NidsProduct {
    int code = 0;
    std::string_view name{}; ///< empty: not supported, but read
    float bin_nm = 0;        ///< one range bin or grid box
    float range_nm = 0;
    NidsScale scale = NidsScale::levels;
    NidsExtremes extremes = NidsExtremes::maximum;
    NidsElevation elevation = NidsElevation::none;
    NidsLabelPart label = NidsLabelPart::none;
    bool label_range = true;           ///< the label tells range and bin size
    bool values_in_hundredths = false; ///< digital values are divided by 100, the missing value too
    NidsGrid grid = NidsGrid::radar;
};

struct NidsMosaic {
    int first, last;       ///< codes
    std::string_view name; ///< empty: not supported, but read
    float bin_km;          ///< kMissingF: that of the product before
};

/// The row of a message code; for a code that has none a row without name, by the rules of the most products.
const NidsProduct &NIDS_find_product(int code);
/// The row of a national mosaic, null when the code has none.
const NidsMosaic *NIDS_find_mosaic(int code);
