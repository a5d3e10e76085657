#pragma once
/// Image files of a session: what its other sources need beside PLT_set_dump and PLT_dump.

#include <string_view>

/// All frames go into one looping GIF when the session closes; an empty name: "vyx_anim.gif".
void PLT_set_animation(std::string_view name);
/// Writes the animation. False when an image was the product asked for, in batch mode on a raster display,
/// and it or an earlier one could not be written.
bool PLT_finish_images();
