#pragma once
/// Severe-weather watch boxes, read from public watch bulletins.

#include <vector>

#include "lib/system/calendar.h"
#include "plot/symbols/watch_text.h"

/// Reads the watches in force at a date; without a year all of them. The files are those that the naming
/// convention "watch" names for the eight hours before the date, else every file in the folder of the
/// resource "watch_path". Number of boxes.
int WATCH_decode(const DateRecord &date);
const std::vector<WatchBox> &WATCH_boxes();
/// Whether WATCH_plot writes "TOR 123" or "SVR 123" into the boxes; at first it does.
void WATCH_set_label(int flag);
/// Draws the boxes on the current map; outline and label colours from the resource "color_watch"
/// ("yellow,red").
void WATCH_plot();
