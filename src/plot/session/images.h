#pragma once
/// Image files of a session's pictures, and the animation of them all.

#include <string_view>

enum DumpType : int { kDumpNone = 0, kDumpXwd = 1, kDumpGif = 2, kDumpImg = 3, kDumpPng = 4 };
/// All frames, one file each.
inline constexpr int kDumpAllFrames = -4;
/// Image file of every picture: type and name, a naming convention or a template in which %i is the frame
/// ("win" without frames) and %p the window title. An empty name: "vyx.gif", "vyx.png" or "vyx.xwd". Each
/// type and name that a session asks for is written; kDumpNone forgets them.
void PLT_set_dump(int type, std::string_view name);
/// Writes frame `frame` (the window when there are no frames) and adds it to the animation. 0, also when the
/// file could not be written, which is told; -1 when no image file is asked for.
[[nodiscard]] int PLT_dump(int frame);
/// The same of the window's picture, which is picture `number` of a series that keeps no frames.
[[nodiscard]] int PLT_dump_numbered(int number);
/// True when a plot parameter or the resource "out_file" asks for an image or an animation.
[[nodiscard]] bool PLT_wants_image();

/// All frames go into one looping GIF when the session closes; an empty name: "vyx_anim.gif".
void PLT_set_animation(std::string_view name);
/// Its loop goes back from the last picture the way it came.
void PLT_rock_animation();
/// The pictures are drawn anew, and so are their files.
void PLT_begin_images();
/// Writes the animation. False when it or an earlier image could not be written.
[[nodiscard]] bool PLT_finish_images();
