#pragma once
/// The kernel's colour table: indices 0 to 255, the background at -1, and indices that only print devices
/// know.

#include "graphics/core/types.h"

/// 1 for -1 to 256 and the print-only indices.
[[nodiscard]] int gis_valid_colr(int index);
[[nodiscard]] bool is_print_only_color(int index);

/// Device pixel of an index: kPixelUnset (-1) not allocated, kPixelPrintOnly (-2) known to a print device
/// only.
int gget_color_ind(int index);
/// Stored colour; black for print-only and invalid indices.
Rgb gget_color_rgb(int index);

/// Stores a colour and raises the highest used index. 0, or -1 for an index without slot.
int store_color(int index, const Rgb &color);
/// The last used index whose colour is nearly `color`; -1 when there is none.
[[nodiscard]] int find_near_color(const Rgb &color);
/// Forgets every colour.
void clear_colors();

/// Inverse video: dark on a light background. Print devices set it with colour output.
int gget_inverse();
void gset_inverse(int flag);
