#pragma once
/// Plotting Level III products: the driver of the input type "nids".
/// Sources: overlays, readout.

#include <span>
#include <string>
#include <string_view>

#include "lib/resources/list_words.h"
#include "plot/domain/plot_domain.h"
#include "radar/common/readout.h"
#include "radar/nids/product.h"

/// Plots the file, or series of files, of the file selection. Returns 0; a single file that cannot be read
/// ends the program with kExitNoFile.
int NIDS_plot(PlotDomain &domain);
void NIDS_plot_param();
/// The words that it takes besides those of every radar driver.
std::span<const WordRule> NIDS_param_words();
/// Tells every word of the resource "variable" that is no storm variable.
void NIDS_check_variables();
/// Takes the requested date; null: from the file selection.
void NIDS_set_date(const DateRecord *date);
[[nodiscard]] int NIDS_open_file(std::string_view name);
int NIDS_close_file();
[[nodiscard]] int NIDS_rewind_file();
int NIDS_plot_frame();
/// Looks for a newer file and plots it. Returns 0.
int NIDS_plot_nextfile();
/// Keys and buttons of the window: place under the cursor, zoom, resizing, flashing of a level.
void NIDS_callback(int kind, std::string_view event, float x, float y);
[[nodiscard]] int NIDS_plot_data();
const NidsInfo &NIDS_get_info();
/// A RadarReader: reads the value at a place from a product's image, which it keeps until another is asked
/// for. The product becomes the present one.
[[nodiscard]] bool NIDS_read_place(const std::string &file, RadarReading &reading);
/// Files may have changed: the image that was kept is not used any more.
void NIDS_forget_image();
