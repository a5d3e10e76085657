#pragma once
/// The plot session: plot parameters, the workstation, frames, labels and their end.

#include <string>
#include <string_view>

#include "graphics/core/types.h"
#include "lib/calendar.h"
#include "plot/domain.h"

/// Decodes the plot parameters and opens the workstation. -1 when nothing is to be drawn.
int PLT_open(float aspect);
/// Begins a new frame. 0 or -1.
int PLT_reset(float aspect);
/// Like reset for a sub-panel; aspect 0 means the current view's.
int PLT_panel(float aspect);
/// Ends the session. A page that could not be written whole ends the program with kExitSession. -1 when
/// nothing was drawn.
int PLT_close();
/// Closes the workstation and ends the program.
[[noreturn]] void PLT_exit(int status);

/// Decodes the resource "label" and draws border and labels; -1 when there is no room.
int PLT_labels();
void PLT_label_up_left(std::string_view text);
void PLT_label_up_center(std::string_view text);
void PLT_label_up_right(std::string_view text);
void PLT_label_low_left(std::string_view text);
void PLT_label_low_center(std::string_view text);
void PLT_label_low_right(std::string_view text);
/// Position 0 upper left, 1 upper centre, 2 upper right, 3 lower left, 4 lower centre, 5 lower right.
std::string PLT_get_label(int position, int overlay);
void PLT_init_labels();
/// Expands a label format such as "Radar_%y%m%d".
std::string PLT_label_format(std::string_view format);
void PLT_label_date(const DateRecord &date);
void PLT_label_for_time(int hours);

void PLT_set_overlay(int overlay);
void PLT_set_overlay_base(int overlay);
void PLT_set_num_overlay(int count);
int PLT_next_overlay();
int PLT_get_num_over();
int PLT_get_overlay_base();
void PLT_set_label_type(int type);
int PLT_get_label_type();

void PLT_set_view_offset(float offset);
void PLT_set_view_offsets(float left, float right, float bottom, float top);
float PLT_get_view_offset();
/// left, right, bottom, top
Rect PLT_get_view_offsets();
/// The plot area in NDC.
Rect PLT_get_view();
DeviceKind PLT_get_work_type();
/// Full-label mode: labels and bar stand inside the plot area.
void PLT_set_full_lab(int on);
int PLT_get_full_lab();

/// Shows a status text on the workstation.
int PLT_mess(const char *format, ...) __attribute__((format(printf, 1, 2)));
/// On the event "v-Alt" prints the place under the cursor at level 8.
int PLT_print_location(std::string_view event, float x, float y);
/// Draws the border of the plot area with the labels (1, as at the start) or not (0).
void PLT_border(int on);
/// Nothing is to be drawn: no plot component is on, or the plot type is "none".
bool PLT_nothing_to_draw();
