#pragma once
/// The six labels around a plot, of each overlay, and its border.

#include <string>
#include <string_view>

#include "lib/system/calendar.h"

/// Decodes the resource "label" and draws border and labels; -1 when there is no room.
int PLT_labels();
void PLT_label_up_left(std::string_view text);
void PLT_label_up_center(std::string_view text);
void PLT_label_up_right(std::string_view text);
void PLT_label_low_left(std::string_view text);
void PLT_label_low_center(std::string_view text);
void PLT_label_low_right(std::string_view text);
/// Position 0 upper left, 1 upper centre, 2 upper right, 3 lower left, 4 lower centre, 5 lower right.
std::string PLT_get_label(int position, int overlay);
void PLT_init_labels();
/// Expands a label format such as "Radar_%y%m%d".
std::string PLT_label_format(std::string_view format);
void PLT_label_date(const DateRecord &date);
void PLT_label_for_time(int hours);

void PLT_set_overlay(int overlay);
void PLT_set_overlay_base(int overlay);
void PLT_set_num_overlay(int count);
int PLT_next_overlay();
int PLT_get_num_over();
int PLT_get_overlay_base();
void PLT_set_label_type(int type);
int PLT_get_label_type();
/// Draws the border of the plot area with the labels (1, as at the start) or not (0).
void PLT_border(int on);
