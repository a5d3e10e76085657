#pragma once
/// The stroke font that text is drawn with; inside the text room.

#include "graphics/text/stroke_font.h"
#include "graphics/text/window_font.h"

/// The loaded font; one without glyphs until a font loads and after a load failed.
const StrokeFont &current_stroke_font();

/// Text is drawn with a font of the window's, not with strokes.
[[nodiscard]] bool has_window_font();
const WindowFonts &window_fonts();
