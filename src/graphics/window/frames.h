#pragma once
/// Frames of a window or memory display: pictures that are drawn apart and shown as a loop.

#include <string>
#include <string_view>

#include "graphics/devices/common/raster_types.h"

inline constexpr int kMaxFrames = 128;
inline constexpr float kLastDelay = 1.0F; ///< seconds at first; the newest picture of a loop stays longer
/// Bit 0 set: forwards; from kRockBack on the loop turns at its ends.
enum LoopDirection : int { kLoopBack = 0, kLoopForward = 1, kRockBack = 2, kRockForward = 3 };
/// Frame selectors beside the numbers 0 to 127.
enum FrameSelector : int { kFrameLast = -1, kFrameCurrent = -2, kFrameBase = -3 };

/// Lets the kernel hold windows, forget frames and process events while it draws. Once, before a workstation
/// is opened.
void gsetup_window();
void ginit_loop();
/// A frame number, or a negative one to append. The frame's number; 0 when there is no display, and after a
/// message when there is no room or memory for it.
int gcreate_frame(int frame);
/// 1, or 0 when there is no such frame: drawing then goes where it went before.
int gselect_frame(int frame);
int gdisplay_frame(int frame);
int gdelete_frame(int frame);
void gdelete_all_frames();
int gcopy_frame(int to, int from);
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

int gget_looping();
float gget_loop_delay();
int gset_looping(int flag);
int gtoggle_loop(int flag);
int ginc_loop_delay(float delta);
/// Multiplies the loop delay, kept within 0.05 and 5 s, and lets the last frame stay twice as long.
int gscale_loop_delay(float factor);
int ginc_frame(int step);
/// Waits until the current frame has been shown for its time, or the loop is stopped or shows another.
int gloop_sleep();
void gset_loop_title(int flag);
/// A LoopDirection; out of range: the nearest.
void gset_loop_direction(int direction);
/// Called every so many seconds while the window is held; 0 seconds: never.
void gset_refresh_callback(int seconds, void (*function)());
/// Called with the number of each frame that the user deletes.
void gset_delete_callback(void (*function)(int frame));
/// The hold loop: shows, animates and listens until the user ends it. Only on a window.
int ghold(int flag);
