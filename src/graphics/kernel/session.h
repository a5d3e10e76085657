#pragma once
/// What the plot session tells the workstation about itself: titles, cursors, frames and callbacks. On
/// devices that have no window or frames these keep the setting and do nothing else.

#include <string>
#include <string_view>

/// Window title; file devices write it into their header.
void GPH_set_win_title(std::string_view title);
const std::string &gget_win_title();

/// Frames exist on window devices only; elsewhere there are none and these return 0.
int gget_num_images();
