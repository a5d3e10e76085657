#pragma once
/// Stepping through the frames, the loop's timing and its switches.

#include "graphics/window/frame_numbers.h"

int gget_looping();
float gget_loop_delay();
int gset_looping(int flag);
int gtoggle_loop(int flag);
int ginc_loop_delay(float delta);
/// Multiplies the loop delay, kept within 0.05 and 5 s, and lets the last frame stay twice as long.
int gscale_loop_delay(float factor);
int ginc_frame(int step);
void gset_loop_title(int flag);
/// A LoopDirection; out of range: the nearest.
void gset_loop_direction(int direction);
/// Called every so many seconds while the window is held; 0 seconds: never.
void gset_refresh_callback(int seconds, void (*function)());
/// Called with the number of each frame that the user deletes.
void gset_delete_callback(void (*function)(int frame));
