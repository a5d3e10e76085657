#pragma once
/// Checks and device steps that the kernel's operations share.

#include <optional>
#include <span>

#include "graphics/core/types.h"

/// True when a workstation is open; else reports it for the operation.
[[nodiscard]] bool workstation_open(const char *operation);
[[nodiscard]] bool transform_valid(const char *operation, int transform);
/// The index that is drawn for a colour index on the open device; nothing, after a report, for an index that
/// the device cannot draw.
[[nodiscard]] std::optional<int> drawable_color(const char *operation, int index);

/// Hands the current viewport to the device as its clip.
void install_clip();
/// Stores a colour in the table and on the open device. -1 for an index without slot, or when the display has
/// no room for the colour.
int gstore_color(int index, const Rgb &color);
/// Strokes a run of text.
void gdraw_stroke(std::span<const Point> world);
