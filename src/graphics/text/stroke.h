#pragma once
/// Stroke text: a string turned into runs of connected strokes for whatever device is open.

#include <string_view>

#include "graphics/core/types.h"
#include "graphics/text/stroke_font.h"

/// Draws a string at a world point of the current transform with the current text attributes, as runs handed
/// to core/stroke_output.h. Draws nothing while no stroke font is loaded. Always 0.
int text(std::string_view string, float x, float y);

/// The same with a font of the caller's.
void draw_stroke_text(const StrokeFont &font, std::string_view string, const Point &origin);
