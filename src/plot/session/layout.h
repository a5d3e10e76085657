#pragma once
/// Where on the view the plot stands, and what room is left for labels and bar. NDC.

#include "graphics/core/types.h"

void PLT_set_view_offset(float offset);
void PLT_set_view_offsets(float left, float right, float bottom, float top);
float PLT_get_view_offset();
/// left, right, bottom, top
Rect PLT_get_view_offsets();
/// The plot area in NDC.
Rect PLT_get_view();
/// Sets it.
void PLT_set_view(const Rect &view);
/// Full-label mode: labels and bar stand inside the plot area.
void PLT_set_full_lab(int on);
int PLT_get_full_lab();
