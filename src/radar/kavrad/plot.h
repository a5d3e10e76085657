#pragma once
/// Plotting KAVRAD mosaics: the driver of the input type "kavrad".

#include <string_view>

#include "radar/common/mosaic.h"

/// Opens the file and reads its header, and sets the date label. 1, or 0 after a warning. A file whose header
/// makes no sense counts as open and without lines.
[[nodiscard]] int KAVRAD_open_file(std::string_view name);
int KAVRAD_close_file();
/// Back to the first line. 1, or 0 without an open file.
[[nodiscard]] int KAVRAD_rewind_file();
/// Takes the requested date; null: from the file selection.
void KAVRAD_set_date(const DateRecord *date);
/// Takes the resource "plot_param": "run" draws cells one by one, "run=4" four in a polygon at most.
void KAVRAD_plot_param();
/// Plots each file of the file selection. Returns 0; a single file that cannot be opened ends the program
/// with kExitNoFile.
int KAVRAD_plot(PlotDomain &domain);
/// Draws the mosaic of the open file, and sets the labels. 0.
int KAVRAD_plot_summary();
/// Keys and buttons of the window: place and value under the cursor, zoom, resizing, flashing of a level.
void KAVRAD_callback(int kind, std::string_view event, float x, float y);

/// The driver, for tests.
MosaicDriver &KAVRAD_driver();
