#pragma once
/// Plotting converted radar summaries: the driver of the default input type.
/// Sources: grid, reports.

#include <span>
#include <string>
#include <string_view>

#include "lib/resources/list_words.h"
#include "lib/system/calendar.h"
#include "plot/domain/plot_domain.h"
#include "radar/common/readout.h"

/// Takes the requested date; null: from the file selection.
void RAD_set_date(const DateRecord *date);
/// Whether RAD_prompt_variable has still something to ask or to give.
void RAD_set_prompt_variable(int flag);
/// Chooses the variables to plot: those of the resource "variable", once; in a batch run without it none,
/// once; else by the menu. Not 0 while there is something to plot; "quit" ends the program with status 0.
[[nodiscard]] int RAD_prompt_variable();
/// Tells every word of the resource "variable" that means nothing here.
void RAD_check_variables();
/// Takes the resource "plot_param".
void RAD_plot_param();
/// The words that it takes besides those of every radar driver.
std::span<const WordRule> RAD_param_words();

/// 1, or 0 after a message.
[[nodiscard]] int RAD_open_file(std::string_view name);
int RAD_close_file();
/// Plots the grid and the reports of each file of the file selection. Returns 0; a single file that is no
/// summary ends the program with kExitNoFile.
int RAD_plot(PlotDomain &domain);
int RAD_plot_frame();
/// Draws the grid, and the legend where the plot type has one. 0; -1 when it is not asked for.
int RAD_plot_summary();
/// Draws sites, range circles and the chosen variables of the reports. 0; -1 when the data are not asked for.
int RAD_plot_data();
/// Draws the labels and, where the first variable is the area movement, the arrow of 25 knots.
int RAD_draw_label();
/// Looks for a newer file and plots it. Returns 0.
int RAD_plot_nextfile();
/// Keys and buttons of the window: place and value under the pointer, zoom, resizing, flashing of the legend.
void RAD_callback(int kind, std::string_view event, float x, float y);
/// A RadarReader: the level at a place.
[[nodiscard]] bool RAD_read_place(const std::string &file, RadarReading &reading);
