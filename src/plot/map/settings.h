#pragma once
/// Settings of the map background that plot parameters and drivers make, below the drawing.

/// Spacing of latitude and longitude lines in degrees (0 or less: none) and of their repeated labels.
struct LatLonSettings {
    float lat_spacing = 0, lon_spacing = 0;
    int extra = 0; ///< repeat labels every so many degrees; 0 only at the edges
    int dot = 0;   ///< kept with the spacings, used by no drawing
};
void MAP_latlon(int dot, int extra, float lat_spacing, float lon_spacing);
const LatLonSettings &MAP_get_latlon();
/// The data are colour-filled: plain map files take the "color_cmap" colour.
void MAP_fill_cont(int flag);
int MAP_get_fill_cont();
