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
#include "radar/lev2/volume_reader.h"

namespace {

constexpr float kRadialWidthDeg = 1.0F;
/// Volume coverage patterns of clear air (Federal Meteorological Handbook No. 11: 31, 32, 35).
constexpr int kFirstClearAir = 30, kLastClearAir = 39;

/// Takes the last moment that the resource "variable" names.
Lev2Choice chosen() {
    Lev2Choice choice;
    // A word that is none has been told.
    for (const std::string &word : RES_getvals("variable")) (void)LEV2_decode_choice(word, choice);
    return choice;
}

/// The elevation number of a choice made by angle, found by a first walk through the volume.
void find_angle(Lev2Reader &reader, Lev2Choice &choice) {
    if (is_missing(choice.angle)) return;
    const std::vector<Lev2Cut> cuts = reader.list_cuts();
    choice.number = LEV2_nearest_cut(cuts, choice).value_or(kMissing);
    if (!reader.rewind())
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

void draw_site(const Lev2PlotState &state) {
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
template <class Take>
Lev2Sweep walk_cut(Lev2Reader &reader, const Lev2Choice &choice, Take take, bool quietly = false) {
    Lev2Sweep sweep;
    Lev2Radial radial;
    int number = kMissing;
    bool ended = false;
    for (; reader.next_block(radial); reader.end_block()) {
        if (radial.type != kLev2Legacy && radial.type != kLev2Generic) continue;
        if (!quietly) print_radial(radial, radial.elevation_number != number);
        number = radial.elevation_number;
        if (number != choice.number) {
            ended = ended || sweep.radials > 0;
            if (ended && (quietly || may_stop())) break;
            continue;
        }
        if (reader.select(choice.type)) {
            ++sweep.radials;
            sweep.elevation = radial.elevation;
            sweep.pattern = radial.pattern;
            take(radial);
        }
        ended = ended || (ends_cut(radial) && !reader.is_cut());
        if (ended && (quietly || may_stop())) break;
    }
    sweep.whole = ended && sweep.radials > 0;
    return sweep;
}

} // namespace

float Lev2PlotState::radial_width(const Lev2Radial &radial) const {
    return superres ? radial.azimuth_resolution : kRadialWidthDeg;
}

float Lev2PlotState::clutter_km() const {
    return std::trunc(options.clutter);
}

void LEV2_visit_cut(Lev2Reader &reader, Lev2Choice &choice,
                    const std::function<void(const Lev2Radial &)> &take) {
    choice = chosen();
    find_angle(reader, choice);
    walk_cut(reader, choice, take, true);
}

Lev2Sweep LEV2_draw_sweep(Lev2Reader &reader, const Lev2PlotState &state, const Lev2Choice &choice,
                          const CellSink *sink) {
    const CellFrame frame(state.domain, state.info.lat, state.info.lon);
    Lev2Painter painter(frame, state.clutter_km(), sink);
    Lev2Sweep sweep = walk_cut(reader, choice, [&](const Lev2Radial &radial) {
        painter.draw(radial.azimuth, state.radial_width(radial), reader.first_gate_km(choice.type),
                     reader.gates(choice.type));
    });
    sweep.smallest = painter.levels().smallest();
    sweep.largest = painter.levels().largest();
    return sweep;
}

bool LEV2_sweep_is_whole(Lev2Reader &reader) {
    Lev2Choice choice = chosen();
    find_angle(reader, choice);
    const bool whole = walk_cut(reader, choice, [](const Lev2Radial &) {}).whole;
    (void)reader.rewind(); // a pipe is drawn from where it stands
    return whole;
}

int LEV2_plot_summary() {
    Lev2PlotState &state = LEV2_state();
    Lev2Reader &reader = LEV2_reader();
    state.choice = chosen();
    if (FLAG_getplot(kPlotSummary) < 1) return 0;
    GPH_trans(kDataTransform);
    CONT_choose_levels({LEV2_moment(state.choice.type).levels, {}});
    PLT_mess("LEV2 Sum");
    find_angle(reader, state.choice);
    const Lev2Sweep sweep = LEV2_draw_sweep(reader, state, state.choice, nullptr);
    const Lev2Moment &moment = LEV2_moment(state.choice.type);
    if (sweep.radials == 0)
        tell_missing(state.choice);
    else if (!sweep.whole)
        MESS_print(kWarn, "LEV2_plot: the data of elevation %d end early, after %d radials\n",
                   state.choice.number, sweep.radials);
    draw_site(state);
    PLT_label_up_left(moment.title);
    PLT_label_low_right(sweep_label(state.choice, sweep));
    PLT_label_up_right(DATE_make_label(state.info.date));
    PLT_label_date(state.info.date);
    return 0;
}
