#pragma once
/// The legend of the six intensities of older radars, above the upper right end of the plot, in normalised
/// device coordinates.

#include <string_view>

/// Draws the legend when labels or the colour bar are on and the plot leaves room for it.
void RAD_draw_bar();
/// On a callback text that begins "f-Al", with the cursor at (x, y) of transform 2 over a box of the legend:
/// flashes the box's colour four times, half a second black and half a second its own. -1 when there is none.
int RAD_flash_levels(std::string_view event, float x, float y);
