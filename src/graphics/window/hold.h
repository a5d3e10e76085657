#pragma once
/// Keeping a window alive after the plot.

/// Lets the kernel hold windows, forget frames and process events while it draws. Once, before a workstation
/// is opened.
void gsetup_window();
/// Waits until the current frame has been shown for its time, or the loop is stopped or shows another.
int gloop_sleep();
/// The hold loop: shows, animates and listens until the user ends it. Only on a window.
int ghold(int flag);
