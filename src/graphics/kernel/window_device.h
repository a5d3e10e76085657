#pragma once
/// The program's own window: of an X server, or of the process's memory.

#include "graphics/kernel/device.h"

extern const Device kWindowDevice;

/// Size of the next window without a geometry of its own, pixels.
void set_next_window_size(int width, int height);
