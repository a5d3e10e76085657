#pragma once
/// Option words of the PostScript device and what the page's layout follows from.

#include <string_view>

#include "graphics/devices/print/setup_file.h"

struct PostScriptOptions {
    bool eps = false;
    bool portrait = false; ///< as drawn, not turned by 90 degrees
    bool color = false;    ///< RGB, else grey
    bool reverse = false;  ///< greys count from the other end
    float scale = 1;       ///< kSmallestScale to kLargestScale
    int base_width = 1;    ///< multiplies every line width
    PageInches page;       ///< as drawn: width along the lines of text
};

inline constexpr PageInches kPostScriptPage{11.0F, 8.5F};
/// Below the smallest, "%.2f" would write a scale of nothing.
inline constexpr float kSmallestScale = 0.01F, kLargestScale = 100.0F;
inline constexpr int kLargestBaseWidth = 1000;

/// Applies one word. False for unknown words and values out of range, which change nothing. `inverse` is set
/// by "color", which also asks for a white background.
[[nodiscard]] bool apply_postscript_option(PostScriptOptions &options, std::string_view word, bool &inverse);
/// Applies comma-separated words; what changes nothing is told.
void apply_postscript_options(PostScriptOptions &options, std::string_view words, bool &inverse);

/// The drawing area of a page: the page without its margins, points.
DrawingArea postscript_area(const PageInches &page);

/// Where an encapsulated picture lies.
struct EpsLayout {
    float shift_x = 0, shift_y = 0; ///< translation after the described one, points, before scaling
    int width = 0, height = 0;      ///< bounding box from (0, 0), points
};
/// Layout of an encapsulated picture that draws in `area` of `options.page`.
EpsLayout eps_layout(const PostScriptOptions &options, const DrawingArea &area);
