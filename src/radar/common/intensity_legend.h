#pragma once
/// The legend of the six intensities of older radars, below the left end of the plot, in normalised device
/// coordinates.

#include <string_view>

/// What intensity 1 to 6 begins at, dBZ.
[[nodiscard]] float RAD_intensity_dbz(int level);
/// Draws the legend in the colours of levels 1 to 6 when labels or the colour bar are on and the plot leaves
/// room for it.
void RAD_draw_bar();
/// On a callback text that begins "f-Al", with the cursor at (x, y) of transform 2 over a box of the legend
/// or its label: flashes the box's colour four times, half a second black and half a second its own. 0, or -1
/// when there is no box.
int RAD_flash_levels(std::string_view event, float x, float y);
