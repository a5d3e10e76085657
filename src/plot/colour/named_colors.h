#pragma once
/// Named colours, read from colour table files and extended by colours written as numbers.

#include <string>
#include <string_view>

#include "graphics/core/types.h"

/// Reads the colour table file(s): the name, else the resource "color_table", else "vyx.clr".
void CLR_read_table(std::string_view name);
/// Colour index of a text; kColorBackground for none or an unknown name, kColorEnd for "end".
int CLR_get_ind(std::string_view text);
/// Tells when a text of a resource names no colour of the table and is no way to write one.
void CLR_check(std::string_view resource, std::string_view text);
/// The index, or kColorBackground for one beyond the table that no print colour has.
[[nodiscard]] int CLR_drawable(int index);
/// Adds a colour (also to the graphics kernel) and returns its index; the last index when the table is full.
int CLR_add(std::string_view name, const Rgb &color);
/// An index beyond the table is clamped to the last entry.
std::string CLR_get_name(int index);
Rgb CLR_get_rgb(int index);
int CLR_get_num();
int CLR_get_num_fill();
void CLR_clear_table();
/// Loads every colour of the table into the graphics kernel.
void CLR_load_kernel();
