#pragma once
/// Panels of a page, as geometries and plot parameters give them.

/// Fractions of the page, y upwards unless asked for otherwise.
struct PanelFractions {
    float width = 1, height = 1, x = 0, y = 0;
    /// True when a part of the page lies in the panel.
    [[nodiscard]] bool meets_page() const;
};

/// `columns` above 1: a grid (each of its numbers limited to 1..8), and `column` and `row` of a panel in it
/// counted from 0 at the top left. Up to 1 all four are fractions: width, height and the lower left corner.
/// `downwards`: y counts from the top, also in what comes of a grid.
PanelFractions panel_fractions(float columns, float rows, float column, float row, bool downwards = false);
