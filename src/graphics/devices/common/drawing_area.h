#pragma once
/// Where on a device a picture is drawn, as the geometry that a user gives places it.

#include <string_view>

/// Device units.
struct DrawingArea {
    int width = 0, height = 0;
    int x = 0, y = 0; ///< its offset: y upwards on pages, downwards on rasters
};

/// Units of the numbers of a plain geometry "WxH+X+Y" and where its position counts from.
struct GeometryUnits {
    float scale = 1;                ///< device units per number
    int offset_x = 0, offset_y = 0; ///< added to a position given
    bool downwards = false;         ///< y counts from the upper edge
};

/// Places the drawing area: "P" and panel values "WxH+X+Y" (fractions, or a grid counted from the top left
/// when W is above 1), "WxH+X+Y", only the size "WxH", or only the position "+X+Y". What cannot be read is
/// told and changes nothing. False after a message when nothing of the device lies in the area.
[[nodiscard]] bool place_by_geometry(std::string_view geometry, const GeometryUnits &units,
                                     DrawingArea &area);
