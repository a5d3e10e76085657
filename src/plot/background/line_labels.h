#pragma once
/// The labels of latitude and longitude lines, collected while the lines are drawn and thinned so that none
/// covers another. Beside the source.

#include <string>
#include <vector>

#include "graphics/core/types.h"

struct LineLabel {
    Point place;
    std::string text;
    HorizontalAlign horizontal;
    VerticalAlign vertical;
    int line = 0; ///< number of the line, counted from the equator or the prime meridian
};

/// Degrees as a label has them: no decimals where there are none to tell.
std::string degree_text(float degrees);

class LineLabels {
public:
    /// At the edge of the plot: of lines that stand too close every second, third ... is labelled, in steps
    /// of a round number of degrees where `spacing` (degrees) has such multiples.
    void draw_at_edge(const std::vector<LineLabel> &labels, float spacing);
    /// Along the lines: one that would cover another moves up beside it, or is left out.
    void draw_along(const std::vector<LineLabel> &labels);

private:
    /// Draws the label unless it would stand on another. False when it would.
    bool take(const LineLabel &label);
    std::vector<Rect> taken_; ///< plane
};
