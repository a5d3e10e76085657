#include <cmath>

#include "graphics/kernel/helpers.h"
#include "lib/options/flags.h"
#include "lib/report/message.h"
#include "lib/resources/database.h"
#include "lib/text/strings.h"
#include "lib/time/date.h"
#include "plot/colour/attribute.h"
#include "plot/colour/level_choice.h"
#include "plot/map/current_map.h"
#include "plot/session/labels.h"
#include "plot/session/plot_session.h"
#include "plot/session/status_text.h"
#include "radar/lev2/painter.h"
#include "radar/lev2/plot.h"

namespace {

constexpr float kRadialWidthDeg = 1.0F;
/// Volume coverage patterns of clear air.
constexpr int kFirstClearAir = 30, kLastClearAir = 39;

/// Takes the last moment that the resource "variable" names.
void choose() {
    Lev2PlotState &state = LEV2_state();
    state.choice = Lev2Choice{};
    for (const std::string &word : RES_getvals("variable")) LEV2_decode_choice(word, state.choice);
}

/// The elevation number of a choice made by angle, found by a first walk through the volume.
void find_angle(Lev2Choice &choice) {
    if (is_missing(choice.angle)) return;
    const std::vector<Lev2Cut> cuts = LEV2_list_cuts();
    choice.number = LEV2_nearest_cut(cuts, choice);
    if (LEV2_rewind_file() != 1)
        MESS_print(kWarn, "LEV2_plot: a pipe cannot be read twice, as an elevation angle needs it\n");
}

/// Nothing of the cuts that follow is shown, so they need not be read.
bool may_stop() {
    return FLAG_batch() == 1 || MESS_check(kOut1) == 0;
}

bool ends_cut(const Lev2Radial &radial) {
    return radial.status == kLev2EndOfElevation || radial.status == kLev2EndOfVolume;
}

void print_radial(const Lev2Radial &r, bool first_of_cut) {
    const unsigned level = first_of_cut ? kOut1 : kOut3;
    if (MESS_check(level) == 0) return;
    MESS_print(level, "El#=%d El=%.1f Az=%.1f Ptr=%d,%d,%d Num=%d,%d\n", r.elevation_number,
               static_cast<double>(r.elevation), static_cast<double>(r.azimuth), r.refl_ptr, r.vel_ptr,
               r.spect_ptr, r.refl_gates, r.vel_gates);
}

void draw_site() {
    const Lev2PlotState &state = LEV2_state();
    Attribute data;
    ATTRIB_get("color_data", ATTRIB_text_default(), data);
    GPH_line_attr(nullptr); // nothing of the lines that the map left behind
    GPH_line_attr(&data);
    GPH_mark_attr(&data, 1.0F);
    Point radar{kMissingF, kMissingF};
    MAP_tran(radar.x, radar.y, state.info.lat, state.info.lon);
    RADAR_draw_site(state.options, radar.x, radar.y);
}

std::string sweep_label(const Lev2Choice &choice, const Lev2Sweep &sweep) {
    const bool clear_air = sweep.pattern >= kFirstClearAir && sweep.pattern <= kLastClearAir;
    std::string text = format_text("Md=%s Sc=%d El=%.1f", clear_air ? "cl" : "pr", choice.number,
                                   static_cast<double>(sweep.elevation));
    const int decimals = LEV2_moment(choice.type).decimals;
    const double low = static_cast<double>(sweep.smallest), high = static_cast<double>(sweep.largest);
    if (choice.type == kLev2Reflectivity) return text + format_text(" Mx=%.0f", high);
    return text + format_text(" Rng=%.*f,%.*f", decimals, low, decimals, high);
}

void tell_missing(const Lev2Choice &choice) {
    const std::string keyword(LEV2_moment(choice.type).keyword);
    if (is_missing(choice.number))
        MESS_print(kWarn, "LEV2_plot: the volume has no %s\n", keyword.c_str());
    else
        MESS_print(kWarn, "LEV2_plot: elevation %d has no %s; -va list shows what the volume holds\n",
                   choice.number, keyword.c_str());
}

/// Calls `take` for each radial of the cut that has the moment. Quietly: no radial is told, and nothing
/// behind the cut is read.
template <class Take> Lev2Sweep walk_cut(const Lev2Choice &choice, Take take, bool quietly = false) {
    Lev2Sweep sweep;
    Lev2Radial radial;
    int number = kMissing;
    bool ended = false;
    for (; LEV2_get_block(radial) == 1; LEV2_next_block()) {
        if (radial.type != kLev2Legacy && radial.type != kLev2Generic) continue;
        if (!quietly) print_radial(radial, radial.elevation_number != number);
        number = radial.elevation_number;
        if (number != choice.number) {
            ended = ended || sweep.radials > 0;
            if (ended && (quietly || may_stop())) break;
            continue;
        }
        if (LEV2_set_data_type(choice.type) == 1) {
            ++sweep.radials;
            sweep.elevation = radial.elevation;
            sweep.pattern = radial.pattern;
            take(radial);
        }
        ended = ended || (ends_cut(radial) && !LEV2_is_cut());
        if (ended && (quietly || may_stop())) break;
    }
    sweep.whole = ended && sweep.radials > 0;
    return sweep;
}

} // namespace

float LEV2_radial_width(const Lev2Radial &radial) {
    return LEV2_state().superres ? radial.azimuth_resolution : kRadialWidthDeg;
}

float LEV2_clutter_km() {
    return std::trunc(LEV2_state().options.clutter);
}

void LEV2_visit_cut(const std::function<void(const Lev2Radial &)> &take) {
    Lev2Choice &choice = LEV2_state().choice;
    choose();
    find_angle(choice);
    walk_cut(choice, take, true);
}

Lev2Sweep LEV2_draw_sweep(const Lev2Choice &choice, const CellSink *sink) {
    const Lev2PlotState &state = LEV2_state();
    const CellFrame frame(state.domain, state.info.lat, state.info.lon);
    Lev2Painter painter(frame, LEV2_clutter_km(), sink);
    Lev2Sweep sweep = walk_cut(choice, [&](const Lev2Radial &radial) {
        painter.draw(radial.azimuth, LEV2_radial_width(radial), LEV2_first_gate_km(choice.type),
                     LEV2_get_gates(choice.type));
    });
    sweep.smallest = painter.levels().smallest();
    sweep.largest = painter.levels().largest();
    return sweep;
}

bool LEV2_sweep_is_whole() {
    Lev2Choice &choice = LEV2_state().choice;
    choose();
    find_angle(choice);
    const bool whole = walk_cut(choice, [](const Lev2Radial &) {}).whole;
    LEV2_rewind_file();
    return whole;
}

int LEV2_plot_summary() {
    Lev2PlotState &state = LEV2_state();
    choose();
    if (FLAG_getplot(kPlotSummary) < 1) return 0;
    GPH_trans(kDataTransform);
    CONT_choose_levels({LEV2_moment(state.choice.type).levels, {}});
    PLT_mess("LEV2 Sum");
    find_angle(state.choice);
    const Lev2Sweep sweep = LEV2_draw_sweep(state.choice, nullptr);
    const Lev2Moment &moment = LEV2_moment(state.choice.type);
    if (sweep.radials == 0)
        tell_missing(state.choice);
    else if (!sweep.whole)
        MESS_print(kWarn, "LEV2_plot: the data of elevation %d end early, after %d radials\n",
                   state.choice.number, sweep.radials);
    draw_site();
    PLT_label_up_left(moment.title);
    PLT_label_low_right(sweep_label(state.choice, sweep));
    PLT_label_up_right(DATE_make_label(state.info.date));
    PLT_label_date(state.info.date);
    return 0;
}
