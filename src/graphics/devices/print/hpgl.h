#pragma once
/// The plotter device: HP-GL/2 (Hewlett-Packard, HP-GL/2 and HP RTL Reference Guide), wrapped for laser
/// printers in PCL where that is asked for. Device units are plotter units, 1015 an inch, y upwards.

#include "graphics/devices/print/print_ink.h"

extern const PrintInk kHpglInk;
