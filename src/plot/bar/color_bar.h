#pragma once
/// The colour bar under the plot, in normalised device coordinates (transform 1).
/// Sources: level_flash.

#include <string_view>

/// Draws the bar of the current levels; orientation 1 is horizontal. 0, or -1 when no bar can be drawn.
int CONT_draw_bar(int orientation, std::string_view title);
/// Level value under a point of the bar; kMissing outside it.
float CONT_get_bar_value(float x, float y);
/// Colour index of the box under a point of the bar; -1 outside it and for an empty box.
int CONT_get_bar_color(float x, float y);
/// On a callback text that begins "f-Al", with the cursor at (x, y) of transform 2 over a box of the bar:
/// flashes the box's colour four times, half a second black and half a second its own. -1 when there is no
/// colour.
int CONT_flash_value(std::string_view event, float x, float y);
/// Flashes a colour index so. -1 for none.
int CONT_flash_color(int color);
