#pragma once
/// Frames of a window or memory display: pictures that are drawn apart and shown as a loop.

#include <string>
#include <string_view>

#include "graphics/devices/common/raster_types.h"
#include "graphics/window/frame_numbers.h"

void ginit_loop();
/// A frame number, or a negative one to append. The frame's number; 0 when there is no display, and after a
/// message when there is no room or memory for it.
[[nodiscard]] int gcreate_frame(int frame);
/// 1, or 0 when there is no such frame: drawing then goes where it went before.
int gselect_frame(int frame);
int gdisplay_frame(int frame);
int gdelete_frame(int frame);
void gdelete_all_frames();
[[nodiscard]] int gcopy_frame(int to, int from);
int gclear_frame(int frame);
int gswitch_frame(int a, int b);
int gget_num_images();
int gget_cur_frame();
/// The frame shown last, also when the frames have been forgotten since; -1 before any.
int gget_frame_place();
PixmapId gget_frame_id(int frame);
/// What a frame's picture was made from: it goes where the picture goes. Empty where nobody has told.
void gset_frame_source(int frame, std::string_view source);
std::string gget_frame_source(int frame);
/// Shows a text in the title behind the frame's number, until the next picture is shown; an empty one takes
/// it away.
void gshow_note(std::string_view text);
/// Seconds that a frame is shown.
float gget_frame_delay(int frame);
