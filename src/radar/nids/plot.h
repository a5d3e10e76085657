#pragma once
/// Plotting Level III products: the driver of the input type "nids".

#include <span>
#include <string_view>

#include "lib/resources/list_words.h"
#include "plot/domain/plot_domain.h"
#include "plot/symbols/station.h"
#include "radar/nids/product.h"

/// One line of a storm table.
struct NidsStorm {
    std::string id;
    float azimuth = kMissingF; ///< degrees
    float range_nm = kMissingF;
    float tvs = 0;           ///< 1 with a tornadic vortex signature
    float meso = 0;          ///< 1, or the number given
    float poh = 0, posh = 0; ///< probability of hail and of severe hail, percent
    float hail_size_in = 0;
    float vil = 0, max_dbz = 0, max_dbz_height = 0, spare = 0, top = 0;
    float direction = kMissingF, speed_kt = kMissingF; ///< motion
};

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
int NIDS_open_file(std::string_view name);
int NIDS_close_file();
int NIDS_rewind_file();
int NIDS_plot_frame();
/// Looks for a newer file and plots it. Returns 0.
int NIDS_plot_nextfile();
/// Keys and buttons of the window: place under the cursor, zoom, resizing, flashing of a level.
void NIDS_callback(int kind, std::string_view event, float x, float y);
int NIDS_plot_summary();
int NIDS_plot_data();
const NidsInfo &NIDS_get_info();
/// Parses one line of a storm table; `layout` (1 or 2) is switched by heading lines. 1 when a storm was read.
int NIDS_storm_line(std::string_view line, int &layout, NidsStorm &storm);
/// Picks one storm attribute for a plot variable.
void NIDS_get_plot_data(const NidsStorm &storm, std::string_view variable, StationData &record);
