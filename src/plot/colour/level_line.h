#pragma once
/// The line of a level, on the plot and in the colour bar.

#include "graphics/core/types.h"

/// Sets line colour, style and width for the line at a value: those of the level, else the dash rule's style
/// and what `common`, the attributes of all lines, tells.
void CONT_line_attr(const Attribute &level, const Attribute &common, float value);
