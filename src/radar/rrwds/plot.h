#pragma once
/// Plotting RRWDS files: the driver of the input types "rrwds" and "site".
/// Sources: radials.

#include <string>
#include <string_view>
#include <vector>

#include "plot/domain/plot_domain.h"
#include "radar/common/cells.h"
#include "radar/common/options.h"
#include "radar/common/readout.h"
#include "radar/rrwds/file.h"

class Stream;

/// The header of the open file, completed by what is known of the station and of the file's name.
struct RrwdsInfo {
    std::string title, subtitle; ///< at most 50 characters
    DateRecord date; ///< the year is that of the file selection, else the last before the file was written
    float lat = kMissingF, lon = kMissingF; ///< of the radar
    float bin_nm = kMissingF;               ///< length of a bin
    int nx = 400, ny = 400;                 ///< nominal size of the grid
    float elevation = kMissingF;            ///< degrees
    float range_nm = kMissingF;
};

/// 1. A file that cannot be opened, or has no header, ends the program with kExitNoFile after an error, one
/// of an unknown station with kExitHeader; 0 instead of an end while pictures are open that would be lost.
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
/// Tells every word of the resource "variable", of which there are none.
void RRWDS_check_variables();
/// Plots each file of the file selection. Returns 0.
int RRWDS_plot(PlotDomain &domain);
int RRWDS_plot_frame();
/// Draws the radials, the site and the rings, and sets the labels. 0.
int RRWDS_plot_data();
/// Looks for a newer file and plots it. Returns 0.
int RRWDS_plot_nextfile();
/// Keys and buttons of the window: place, height and value under the cursor, zoom, resizing, flashing of a
/// level.
void RRWDS_callback(int kind, std::string_view event, float x, float y);
/// A RadarReader: the intensity at a place.
[[nodiscard]] bool RRWDS_read_place(const std::string &file, RadarReading &reading);

/// State of the driver, for its own files and for tests.
struct RrwdsPlotState {
    std::vector<std::byte> bytes; ///< of the open file; empty when none is open
    RrwdsInfo info;
    DateRecord base_date; ///< requested date
    RadarOptions options; ///< clutter in nautical miles
    std::string told;     ///< the file of which was told what it lacks
};
RrwdsPlotState &RRWDS_state();
/// The domain of the open file's radar.
PlotDomain RRWDS_site_domain();
/// The cells of the open file; they go to `sink`, or are filled when it is null.
void RRWDS_draw_radials(const CellSink *sink);
