#pragma once
/// The stroke font that text is drawn with; inside the text room.

#include "graphics/text/stroke_font.h"

/// The loaded font; one without glyphs until a font loads and after a load failed.
const StrokeFont &current_stroke_font();
