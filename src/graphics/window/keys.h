#pragma once
/// What keys and buttons do; inside the window room.
/// Sources: image_keys.

#include <string>

#include "graphics/devices/x11/display.h"

/// True for the keys that end the hold.
[[nodiscard]] bool is_quit_key(const RasterEvent &event);
/// The key that goes back, whatever is held down beside it: a box is drawn with shift.
[[nodiscard]] bool is_escape(const RasterEvent &event);
/// The wheel's turns come as buttons.
[[nodiscard]] bool is_wheel(const RasterEvent &event);
/// Does what an Alt key, an arrow or Escape asks for. True when the mouse callback is to hear of the key.
[[nodiscard]] bool act_on_key(const RasterEvent &event);
/// Loop control of a button press without Alt; shift and button 1 begin a box instead.
void act_on_button(const RasterEvent &event);
/// "x-Alt-Shft-Cntrl"
std::string key_name(const RasterEvent &event);
/// "B1-P-Shft" for `what` 'P', "B1-R" for 'R', "B1-M" for 'M'.
std::string button_name(const RasterEvent &event, char what);

/// One file of the picture, or one of each frame of a running loop, named after the window's title.
void write_gif_files();
void write_xwd_files();
