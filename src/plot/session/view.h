#pragma once
/// What a window that shows a plot does when its user zooms, changes its size, or time has passed.

#include <string_view>

#include "graphics/window/events.h"
#include "plot/domain/plot_domain.h"

/// Draws the plot again, for this domain.
using PlotRedraw = int (*)(PlotDomain &domain);
void PLT_set_callback(MouseCallback function);
void PLT_set_zoom_func(PlotRedraw function);
void PLT_set_resize_func(PlotRedraw function);
/// Called every so many seconds while the window is held.
void PLT_set_refresh_func(int seconds, PlotRedraw function);
/// Shift and button 1 draw a box that becomes the domain, unless it is below 8 pixels of the window; Escape
/// leaves the box or goes back to the domain before, "u-Alt" to the first, "r-Alt" draws again. A loop goes
/// on or stands where it did. x, y: plot coordinates. 0, or -1 when the event meant nothing.
int PLT_plot_zoom(std::string_view event, float x, float y);
/// Draws again on the event "size".
int PLT_plot_resize(std::string_view event);
int PLT_plot_refresh();
/// How often the domain was zoomed since the original one.
void PLT_set_zoom(int count);
int PLT_get_zoom();
/// On the event "v-Alt" prints the place under the cursor at level 8.
int PLT_print_location(std::string_view event, float x, float y);
