#pragma once
/// The frame that every radar driver runs: first header, open session, map set-up, the series of files,
/// close.

#include <string_view>

#include "lib/calendar.h"
#include "plot/domain.h"

/// The steps in which formats differ, all of the one file that is open.
struct RadarSteps {
    int (*open_file)(std::string_view name); ///< 1 when opened and its header read; else 0 after a message
    int (*close_file)();
    PlotDomain (*product_domain)();
    int (*plot_frame)();
};

/// Plots the file, or the series of files from `base_date` on, of the file selection. A domain without
/// projection becomes the product's own. A single file that cannot be read ends the program with kExitNoFile
/// before a page is made; in a series such a file is skipped. On a file device each file of a series gets a
/// page of its own. Returns 0.
int RADAR_plot(const RadarSteps &steps, DateRecord base_date, PlotDomain &domain);
