#pragma once
/// The plot session: plot parameters, the workstation, frames, labels and their end.

#include <string>
#include <string_view>

#include "graphics/core/types.h"
#include "graphics/window/events.h"
#include "lib/system/calendar.h"
#include "plot/domain/plot_domain.h"

/// Decodes the plot parameters and opens the workstation. -1 when nothing is to be drawn.
int PLT_open(float aspect);
/// Begins a new frame. 0 or -1.
int PLT_reset(float aspect);
/// Like reset for a sub-panel; aspect 0 means the current view's.
int PLT_panel(float aspect);
/// Ends the session: writes the animation when one was asked for, else, without image files, holds a window
/// until the user ends it; in batch mode a window that stays detaches the program into the background first.
/// A page or an image that could not be written whole, or a picture that is missing, ends the program with
/// kExitSession, also where nothing was to be drawn. -1 when nothing was drawn.
int PLT_close();
/// A picture that was asked for will not be there; why has been told.
void PLT_miss_picture();
/// Memory ran out while a picture was drawn, which has been told: the session ends with kExitNoMemory.
void PLT_lack_memory();
/// Says that memory is out, finishes what is whole and ends the program with kExitNoMemory.
[[noreturn]] void PLT_end_without_memory();
/// Closes the workstation and ends the program; with a status other than 0 what a file device was given is
/// dropped, as it is not whole.
[[noreturn]] void PLT_exit(int status);

// Image files ---------------------------------------------------------------------

enum DumpType : int { kDumpNone = 0, kDumpXwd = 1, kDumpGif = 2, kDumpImg = 3, kDumpPng = 4 };
/// All frames, one file each.
inline constexpr int kDumpAllFrames = -4;
/// Image file of every picture: type and name, a naming convention or a template in which %i is the frame
/// ("win" without frames) and %p the window title. An empty name: "vyx.gif", "vyx.png" or "vyx.xwd". Each
/// type and name that a session asks for is written; kDumpNone forgets them.
void PLT_set_dump(int type, std::string_view name);
/// Writes frame `frame` (the window when there are no frames) and adds it to the animation. 0, also when the
/// file could not be written, which is told; -1 when no image file is asked for.
int PLT_dump(int frame);
/// The same of the window's picture, which is picture `number` of a series that keeps no frames.
int PLT_dump_numbered(int number);
/// The pictures of a series are kept as frames: there is a window that stays to show them.
bool PLT_keeps_frames();
/// True when a plot parameter or the resource "out_file" asks for an image or an animation.
bool PLT_wants_image();

// Callbacks of a window -----------------------------------------------------------

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

// Labels --------------------------------------------------------------------------

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
