#pragma once
/// The plot session: the workstation, its frames, and their end.

#include "graphics/core/types.h"

/// Decodes the plot parameters and opens the workstation. -1 when nothing is to be drawn.
int PLT_open(float aspect);
/// Begins a new frame. 0 or -1.
int PLT_reset(float aspect);
/// Like reset for a sub-panel; aspect 0 means the current view's.
int PLT_panel(float aspect);
/// Ends the session: writes the animation when one was asked for, else, without image files, holds a window
/// until the user ends it; in batch mode a window that stays detaches the program into the background first.
/// A page or an image that could not be written whole, or a picture that is missing, ends the program with
/// kExitSession, also where nothing was to be drawn. -1 when nothing was drawn.
int PLT_close();
/// Says that memory is out, finishes what is whole and ends the program with kExitNoMemory.
[[noreturn]] void PLT_end_without_memory();
/// Closes the workstation and ends the program; with a status other than 0 what a file device was given is
/// dropped, as it is not whole.
[[noreturn]] void PLT_exit(int status);
/// The pictures of a series are kept as frames: there is a window that stays to show them.
[[nodiscard]] bool PLT_keeps_frames();
DeviceKind PLT_get_work_type();
/// Nothing is to be drawn: no plot component is on, or the plot type is "none".
[[nodiscard]] bool PLT_nothing_to_draw();
