#pragma once
/// Devices of pixels: what is the same for the program's own window and for another program's.

#include "graphics/kernel/device.h"
#include "graphics/kernel/raster_ink.h"

/// The background that the user wants in the colour table and on the display. True when what stands there is
/// to be covered with it.
bool raster_store_background();
void raster_install_clip();
int raster_clear(const char *operation, const Rect &world);

/// A device of pixels without opening, closing, pages and background.
constexpr Device raster_device() {
    Device device{};
    device.mode = PlotMode::window;
    device.raster = true;
    device.marker_unit = 1;
    device.abandon = [] {};
    device.install_clip = raster_install_clip;
    device.polyline = raster_polyline;
    device.fill_area = raster_fill_area;
    device.stroke = raster_stroke;
    device.clear_region = raster_clear;
    device.markers = raster_markers;
    device.text = raster_text;
    device.begin_text = [](const Point &, std::string_view) {};
    device.message = [](std::string_view) {};
    return device;
}
