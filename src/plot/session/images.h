#pragma once
/// Image files of a session: what its other sources need beside PLT_set_dump and PLT_dump.

#include <string_view>

/// All frames go into one looping GIF when the session closes; an empty name: "vyx_anim.gif".
void PLT_set_animation(std::string_view name);
/// Its loop goes back from the last picture the way it came.
void PLT_rock_animation();
/// The pictures are drawn anew, and so are their files.
void PLT_begin_images();
/// Writes the animation. False when it or an earlier image could not be written.
bool PLT_finish_images();
