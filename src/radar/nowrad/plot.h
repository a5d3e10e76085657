#pragma once
/// Plotting NOWRad mosaics: the driver of the input type "nowrad".

#include <string_view>

#include "radar/common/mosaic.h"

/// Opens the file and reads its header, and sets the date label. 1, or 0 after a warning. A file whose header
/// makes no sense counts as open and without lines.
[[nodiscard]] int NOWRad_open_file(std::string_view name);
int NOWRad_close_file();
/// Back to the first line. 1, or 0 without an open file.
[[nodiscard]] int NOWRad_rewind_file();
/// Takes the requested date; null: from the file selection.
void NOWRad_set_date(const DateRecord *date);
/// Takes the resource "plot_param": "run" draws cells one by one, "run=4" four in a polygon at most.
void NOWRad_plot_param();
/// Plots each file of the file selection. Returns 0; a single file that cannot be opened ends the program
/// with kExitNoFile.
int NOWRad_plot(PlotDomain &domain);
/// Draws the mosaic of the open file, and sets the labels. 0.
int NOWRad_plot_summary();
/// Keys and buttons of the window: place and value under the cursor, zoom, resizing, flashing of a level.
void NOWRad_callback(int kind, std::string_view event, float x, float y);

/// The driver, for tests.
MosaicDriver &NOWRad_driver();
