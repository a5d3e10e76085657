#pragma once
/// Window events: keys, buttons, the rubber band, resizing, zoom by pixel replication.

#include <string_view>

/// kind 2: key or "size", 3: button; place in world coordinates of the current transform (size: pixels).
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
/// Event processing on or off; the previous setting.
int gset_cache(int flag);
int gget_cache();
int gis_mapped();

int gupdate_window();
int gresize_window(int width, int height);
void gset_win_title_extra(std::string_view text);
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
