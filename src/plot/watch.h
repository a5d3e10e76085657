#pragma once
/// Severe-weather watch boxes, read from public watch bulletins below the watch path.

#include <string_view>
#include <vector>

#include "lib/calendar.h"

struct WatchPoint {
    float lat, lon; ///< degrees, north and east positive
};
struct WatchBox {
    std::string_view kind; ///< "TORNADO" or "SEVERE THUNDERSTORM"
    int number = 0;
    std::vector<WatchPoint> corners;
};

/// Reads the bulletins that are in force at a date. Number of boxes.
int WATCH_decode(const DateRecord &date);
const std::vector<WatchBox> &WATCH_boxes();
/// Draws the boxes with their labels on the current map; colours from the resource "color_watch".
void WATCH_plot();
