#pragma once
/// The frame that every radar driver runs: first header, open session, callbacks, map set-up, the series of
/// files, close; and what a window asks for afterwards: another domain or size, newer files.

#include <string>
#include <string_view>

#include "lib/system/calendar.h"
#include "plot/session/view.h"

/// The steps in which formats differ, all of the one file that is open, and what the window calls.
struct RadarSteps {
    bool (*open_file)(std::string_view name); ///< opens and reads the header; false after a message
    void (*close_file)();
    PlotDomain (*product_domain)();
    void (*plot_frame)();
    MouseCallback mouse = nullptr;
    PlotRedraw plot = nullptr;      ///< the driver itself: draws again after a zoom or a change of size
    PlotRedraw next_file = nullptr; ///< calls RADAR_next_file; set to watch for newer files
    bool strict = false;            ///< a file of a series that cannot be read makes the status kExitNoFile
};

/// Plots the file, or the series of files from `base_date` on, of the file selection. A domain without
/// projection becomes the product's own. A single file that cannot be read ends the program with kExitNoFile
/// before a page is made; in a series such a file is skipped. On a window each file of a series gets a frame,
/// and the frames loop; on a file device it gets a page of its own. Called again while the graphics are open
/// it draws the same files once more and leaves the session open.
void RADAR_plot(const RadarSteps &steps, DateRecord base_date, PlotDomain &domain);

/// Plots the newest file, when it is another than the last: into the last frame, while the others move down
/// and the oldest drops out, or instead of the picture when there are no frames.
void RADAR_next_file(const RadarSteps &steps);
/// The file whose picture the window shows; empty when there is none.
std::string RADAR_seen_file();
/// What has become of a file since its picture was drawn.
enum class RadarFileNow { as_drawn, changed, gone };
RadarFileNow RADAR_file_now(const std::string &name);
/// Draws the colour bar below the plot when it is on; transform 2 is current again afterwards.
void RADAR_draw_bar();
/// True while the session is open and RADAR_plot is to draw again.
[[nodiscard]] bool RADAR_is_open();
