#pragma once
/// Option words of the plotter device.

#include <string_view>

#include "graphics/devices/print/setup_file.h"

/// What stands around a plot for laser printers.
enum class PclWrap : int {
    none = 0,
    wrapper = 1, ///< enters and leaves the plotter language
    laser = 2    ///< the same, turned by 90 degrees
};

struct HpglOptions {
    PclWrap pcl = PclWrap::wrapper;
    int rotation = 0;        ///< degrees: 0, 90, 180 or 270
    float scale = 1;         ///< of everything that is drawn
    float base_width = 0.2F; ///< multiplies every pen width, millimetres
    PageInches page;         ///< as drawn
};

inline constexpr PageInches kHpglPage{10.5F, 8.0F};
inline constexpr float kHpglRollHeight = 23.5F; ///< inches
inline constexpr float kHpglPerInch = 1015;     ///< plotter units
inline constexpr int kHpglOrigin = 10;

/// Applies comma-separated words; what changes nothing is told.
void apply_hpgl_options(HpglOptions &options, std::string_view words);
/// The drawing area of a page, plotter units.
DrawingArea hpgl_area(const PageInches &page);
