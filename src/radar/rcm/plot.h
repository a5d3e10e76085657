#pragma once
/// Plotting Radar Coded Messages: the driver of the input type "rcmsite".
/// Sources: grid, markers, readout, station_fields.

#include <span>
#include <string>
#include <string_view>

#include "lib/resources/list_words.h"
#include "plot/domain/plot_domain.h"
#include "plot/symbols/station.h"
#include "radar/common/cells.h"
#include "radar/common/readout.h"
#include "radar/rcm/report.h"

/// Finds the radar to plot: the resource "identifier", else the answer to a prompt; none after five unusable
/// answers. In a batch run without "identifier" it is that of the file's first report.
void RCM_prompt_id();
/// Takes the requested date; null: from the file selection.
void RCM_set_date(const DateRecord *date);
/// 1, or 0 after a warning. Switches the colour bar on unless the user has switched it off.
[[nodiscard]] int RCM_open_file(std::string_view name);
int RCM_close_file();
/// Takes the resource "plot_param".
void RCM_plot_param();
/// The words that it takes besides those of every radar driver.
std::span<const WordRule> RCM_param_words();
/// Tells every word of the resource "variable" that means nothing here.
void RCM_check_variables();
/// Plots the report of the chosen radar in each file of the file selection. Returns 0; a single file without
/// it ends the program with kExitNoFile.
int RCM_plot(PlotDomain &domain);
int RCM_plot_frame();
/// Draws the grid of the report, and sets the labels. 0.
int RCM_plot_summary();
/// The same for cells that go to `sink`, or are filled when it is null.
void RCM_draw_grid(const RcmReport &report, const CellSink *sink);
/// Draws the site, the rings, and the markers of the report's features. 0; -1 when the data are not asked
/// for.
int RCM_plot_data(const RcmReport &report);
/// Looks for a newer file and plots it. Returns 0.
int RCM_plot_nextfile();
/// Keys and buttons of the window: place and value under the cursor, zoom, resizing.
void RCM_callback(int kind, std::string_view event, float x, float y);
/// Field `field` ("city", "stat", "mode", "echotop", "tvs", "meso", and of storms "id", "severe", "hail",
/// "mvmt", "dir", "spd") of entry `index` of the report, with its place on the plot. 1; 0 when there is no
/// such entry, or no such field.
[[nodiscard]] int RCM_get_data(const RcmReport &report, int index, std::string_view field, StationData &data);
/// Reads the chosen radar's report of the open file. 1, or 0 when the file has none.
[[nodiscard]] int RCM_read_report(RcmReport &report);
/// A RadarReader: the level at a place.
[[nodiscard]] bool RCM_read_place(const std::string &file, RadarReading &reading);
