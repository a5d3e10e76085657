#pragma once
/// The attributes that primitives are drawn with; the values here are those of a plot's beginning.

#include "graphics/core/types.h"

struct LineState {
    int type = 1;    ///< 1 solid to 5 dots
    float width = 1; ///< device units
    int color = 1;
};

struct MarkerState {
    int type = 1;
    float size = 1; ///< 10 raster units each
    float width = 1;
    int color = 1;
};

struct TextState {
    int color = 1;
    float width = 1;
    float height = 0.01F; ///< character height, world units
    float expansion = 1;
    float space = 0.25F;  ///< gap between characters, in 100 glyph units
    float char_space = 0; ///< fixed pitch when positive
    int horizontal = kAlignNormal;
    int vertical = kAlignVNormal;
    Point up{0, 1}; ///< unit length
    int font = 1;   ///< from 1, into the font list
    int precision = 2;
};

enum FillInterior : int { kInteriorSolid = 1, kInteriorPattern = 2 };
inline constexpr int kFillStyleMax = 19;

struct FillState {
    int interior = kInteriorSolid;
    int style = 1; ///< 0 to kFillStyleMax
    int color = 1;
};

/// All of them, to be kept and put back.
struct AttributeSet {
    LineState line;
    MarkerState marker;
    TextState text;
    FillState fill;
};
