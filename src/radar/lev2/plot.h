#pragma once
/// Plotting Level II volumes: the driver of the input types "lev2" and "lev2z".
/// Sources: sweep, readout.

#include <functional>
#include <string_view>

#include "plot/domain/plot_domain.h"
#include "radar/common/cells.h"
#include "radar/common/options.h"
#include "radar/common/readout.h"
#include "radar/lev2/moment.h"

/// Plots one elevation cut of each file of the file selection, or with the variable "list" prints the cuts of
/// the first one. Returns 0; a single file that cannot be read ends the program with kExitNoFile.
int LEV2_plot(PlotDomain &domain);
/// Takes the resource "plot_param": the words of every radar driver (clutter in km), "range=230" (km) and
/// "superres".
void LEV2_plot_param();
/// The words that it takes besides those of every radar driver.
std::span<const WordRule> LEV2_param_words();
/// Tells every word of the resource "variable" that is neither a moment nor "list".
void LEV2_check_variables();
/// Takes the requested date; null: from the file selection.
void LEV2_set_date(const DateRecord *date);
/// The domain of a radar: polar stereographic around it, `range` km to north and south and half as much more
/// to east and west, in steps of 1 km. Returns 1.
int LEV2_get_domain(PlotDomain &domain, float lat, float lon, float range);
int LEV2_plot_frame();
/// Draws the sweep, the site and the rings, and sets the labels. 0.
int LEV2_plot_summary();
void LEV2_print_info();
/// Looks for a newer file and plots it. Returns 0.
int LEV2_plot_nextfile();
/// Keys and buttons of the window: place under the cursor, zoom, resizing.
void LEV2_callback(int kind, std::string_view event, float x, float y);

class Lev2Reader;

struct Lev2PlotState {
    bool open = false; ///< a volume is open
    Lev2Info info;
    DateRecord base_date;  ///< requested date
    PlotDomain domain;     ///< the radar's own
    RadarOptions options;  ///< clutter in km
    int range_km = 460;    ///< of the radar's domain
    bool superres = false; ///< half-degree radials are drawn half a degree wide
    Lev2Choice choice;

    /// How wide a radial is drawn, degrees.
    [[nodiscard]] float radial_width(const Lev2Radial &radial) const;
    /// Nothing nearer to the radar is drawn.
    [[nodiscard]] float clutter_km() const;
};

/// State of the driver, for its own files.
Lev2PlotState &LEV2_state();
/// Opens a volume and reads its header. False after a message.
[[nodiscard]] bool LEV2_open_volume(std::string_view name);

/// What a sweep shows in its label.
struct Lev2Sweep {
    int radials = 0;
    float elevation = 0; ///< degrees, of the last radial
    int pattern = 0;     ///< volume coverage pattern
    float smallest = 100, largest = -100;
    bool whole = false; ///< the cut was read to its end
};
/// Chooses moment and elevation by the resource "variable". False when the cut is not in the open volume or
/// not to its end; reading stands at the first message again.
[[nodiscard]] bool LEV2_sweep_is_whole(Lev2Reader &reader);
/// Walks the open volume and draws the radials of the chosen cut. Cells go to `sink`, or are filled when it
/// is null.
Lev2Sweep LEV2_draw_sweep(Lev2Reader &reader, const Lev2PlotState &state, const Lev2Choice &choice,
                          const CellSink *sink);

/// Sets `choice` to moment and cut for the open volume as a drawing does, and calls `take` for the radials of
/// the cut that have the moment; tells nothing.
void LEV2_visit_cut(Lev2Reader &reader, Lev2Choice &choice,
                    const std::function<void(const Lev2Radial &)> &take);

/// A RadarReader: reads the value at a place from a volume's sweep, which it keeps until another is asked
/// for.
[[nodiscard]] bool LEV2_read_place(const std::string &file, RadarReading &reading);
/// Files may have changed: the sweep that was kept is not used any more.
void LEV2_forget_sweep();
