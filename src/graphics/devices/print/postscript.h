#pragma once
/// The PostScript device (PostScript Language Reference, third edition; document structuring conventions 3.0,
/// encapsulated files 3.0). Device units are points (1/72 inch), y upwards. The kernel has clipped to the
/// window, converted and checked; this device inks. A write error is remembered and reported once, at close.

#include <span>
#include <string_view>

#include "graphics/core/types.h"
#include "graphics/devices/print/print_ink.h"
#include "graphics/devices/print/setup_file.h"

/// Opens the output named by the first field of `device_spec` (or the environment) and writes the prologue.
/// -1 after a message when it cannot be opened.
[[nodiscard]] int gps_open(std::string_view device_spec, DrawingArea &page);
/// Writes the trailer and closes. -1 after a message when a write failed: the page is not complete.
[[nodiscard]] int gps_close();
/// Closes without the trailer: the page will not be whole. A file of that name stays as it was; a command
/// sees that the end is missing.
void gps_abandon();

/// Ends the page and begins another in the same file; the clip must be set again. -1 after a message where
/// one page is all that the output can hold.
[[nodiscard]] int gps_new_page();

void gps_polyline(std::span<const Point> device, int color, float width, int type);
void gps_fill_area(std::span<const Point> device, int color);
/// One marker or text stroke path in the given colour and width, solid.
void gps_stroke(std::span<const Point> device);
/// Begin markers (count) or text (its position and string): comment, width, colour, solid type.
void gps_begin_markers(int count, int color, float width);
void gps_begin_text(const Point &world, std::string_view text, int color, float width);
/// Fills a rectangle path with the background, which is white in grey output.
void gps_clear_region(std::span<const Point> device);
void gps_clip(const Rect &device);
void gps_message(std::string_view text);
/// The kernel stored a colour in its table: keep its grey value, and say the colour again when it is used.
void gps_set_color_rep(int index, const Rgb &color);
/// Grey value 0 to 1 of a colour index; print devices share the table.
float gps_get_gray(int index);

/// All of these for the kernel.
extern const PrintInk kPostScriptInk;

// Options, set before the device is opened
void gps_set_EPS(bool on);
void gps_set_orient(bool portrait);
void gps_set_scale(float scale);
void gps_set_colorPS(bool on);
void gps_set_reverse(bool on);
void gps_set_base_width(int width);
