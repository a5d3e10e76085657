#pragma once
/// Stroke fonts: the font list, the loaded font, and text drawn as line segments.
/// Sources: current_font, window_font.

#include <string>
#include <string_view>
#include <vector>

#include "graphics/core/types.h"

/// Loads the font list (resource "font_list", else "vyx.fnl" along "file_path") and the current font. Where
/// that one cannot be loaded the package's own strokes stand in, after a message: "modern.fnt", else any of
/// the list.
void gsetup_fonts();
/// Makes a font file (searched along "file_path") the current font; a file is read once until gsetup_fonts is
/// called again. 0, or -1 with a message; then text draws nothing.
[[nodiscard]] int read_font(std::string_view name);
/// Loads entry `font` (from 1) of the font list, or what stands in for one that cannot be loaded; a message
/// tells of each such font once until gsetup_fonts is called again. 0 also when the list is empty (nothing is
/// loaded then); -1 with a message for a number outside the list, or when nothing stands in.
[[nodiscard]] int gload_font(int font);
/// 1-based position of a font in the list, a number as it stands, else 1.
int gget_font_index(std::string_view name);
/// Names of the font list.
std::vector<std::string_view> gget_font_names();
/// Selects a font by name; an empty name selects the default font.
[[nodiscard]] int GPH_text_font(std::string_view name);
/// Name of the default font.
void GPH_set_def_font(std::string_view name);
const std::string &gget_def_font();

/// Width in world units that `text` takes with the current text attributes.
float gtext_width(std::string_view text);
/// Height in world units of its capitals.
float gtext_height();
