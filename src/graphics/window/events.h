#pragma once
/// Window events: keys, buttons, the rubber band, resizing, zoom by pixel replication.

#include <string>
#include <string_view>

/// kind 2: key or "size", 3: button ("B1-P" pressed, "B1-M" moved while held, "B1-R" released); place in
/// world coordinates of the current transform (size: pixels).
using MouseCallback = void (*)(int kind, std::string_view event, float x, float y);
void gset_mouse_callback(MouseCallback function);
enum InputMode : int { kInputIdle = 0, kInputWaiting = 1, kInputSeen = 2, kInputQuit = 3 };
void gset_input_mode(int mode);
int gget_input_mode();
/// 0 none, 1 a line, else a rectangle, from the next button press on.
void gset_rubber_band(int kind);
/// Number of user events processed.
int gwait_event();
int gcheck_event();
/// Processes what waits while a drawing is under way: the window is kept up to date, but keys and buttons are
/// dropped (the end of the hold is noted) and a new size waits until the drawing is done.
void gpump_events();
/// Forgets rubber band, exposures and zoom; input mode and callback stay.
void ginit_events();
/// Event processing on or off; the previous setting.
int gset_cache(int flag);
int gget_cache();
int gis_mapped();

/// Shows the base picture. -1 when there is no display.
int gupdate_window();
/// Shows the base picture with one pixel value replaced by another, until the next update: a colour changes
/// so where pixels tell their own colour. -1 when there is nothing to change.
int gshow_recolored(long from, long to);
/// Gives the window another size, or (-1, -1) follows the size that it has got. The base picture is kept as
/// far as it fits; zoom and frames end. 1 when the size changed.
int gresize_window(int width, int height);
/// Title with a remark behind it, and the remark that the window shows at present.
void gset_win_title_extra(std::string_view text);
std::string gget_win_title_extra();
/// Rings at so many percent, 50 when 0.
void gbell(int percent);
/// Cursor types 0 X-shape, 1 pointer, 2 move, 3 looping, 4 stopped, 5 pencil, 6 selection, 7 text, 8 busy.
/// The previous.
int gset_cursor(int type);
int gget_cursor_type();

/// Zooms a frame (or the base picture) around a pixel; -1 keeps centre or factor, below -1 multiplies.
int gzoom(int frame, int x, int y, int factor, int keep);
int gunzoom();
void greset_zoom();
int gget_zoom();
/// A pixel of the window to the pixel of the unzoomed picture.
float xZ_p(float x);
float yZ_p(float y);
