#pragma once
/// Plotting RRWDS files: the driver of the input types "rrwds" and "site".

#include <span>
#include <string>
#include <string_view>

#include "lib/resources/list_words.h"
#include "plot/domain/plot_domain.h"
#include "radar/common/readout.h"
#include "radar/rrwds/file.h"

class Stream;

/// The header of the open file, completed by what is known of the station and of the file's name.
struct RrwdsInfo {
    std::string title, subtitle; ///< at most 50 characters
    DateRecord date;             ///< the year is that of the file selection
    float lat = kMissingF, lon = kMissingF, elevation_m = kMissingF; ///< of the radar
    float bin_nm = kMissingF;                                        ///< length of a bin
    int nx = 400, ny = 400;                                          ///< nominal size of the grid
    float elevation = 0, range_nm = 0;                               ///< degrees; nautical miles
};

/// 1. A file that cannot be opened or that has no header ends the program with kExitNoFile after an error,
/// one of an unknown station with kExitHeader, unless a picture is open that would be lost: then 0.
[[nodiscard]] int RRWDS_open_file(std::string_view name);
/// Reads header and station of a stream that stands at its first byte; returns as RRWDS_open_file.
[[nodiscard]] int RRWDS_get_header(Stream &stream, RrwdsInfo &info);
int RRWDS_close_file();
/// Back to the first radial. 1, or 0 when no file is open.
[[nodiscard]] int RRWDS_rewind_file();
/// Fills a domain that is not given with that of the open file. 0; -1 for one that is given.
int RRWDS_domain(PlotDomain &domain);
/// Takes the requested date; null: from the file selection.
void RRWDS_set_date(const DateRecord *date);
/// Takes the resource "plot_param": the words of every radar driver (clutter in nautical miles).
void RRWDS_plot_param();
/// Plots each file of the file selection. Returns 0.
int RRWDS_plot(PlotDomain &domain);
int RRWDS_plot_frame();
/// Draws the radials, the site and the rings, and sets the labels. 0.
int RRWDS_plot_data();
/// Looks for a newer file and plots it. Returns 0.
int RRWDS_plot_nextfile();
/// Keys and buttons of the window: place and value under the cursor, zoom, resizing, flashing of a level.
void RRWDS_callback(int kind, std::string_view event, float x, float y);
