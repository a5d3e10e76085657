#pragma once
/// Opening the graphics for a plot: device resource, colour table, view.

#include "graphics/core/types.h"

/// Reads the device resource and colour table, opens kernel and workstation (ends the program with
/// kExitGraphics on failure) and begins the first frame. `panel`: in, margins left, right, bottom, top; out,
/// the plot area in NDC.
int GPH_setup(int &ws_id, DeviceKind &device, Rect &panel, float aspect);
/// Begins a new frame on the open workstation: clears it, sets view and panel, loads the colours.
int GPH_reset(int ws_id, DeviceKind device, Rect &panel, float aspect);
