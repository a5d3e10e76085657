/// The value under the pointer: the sweep of the volume that is seen, read again and kept until another is
/// asked for.

#include <algorithm>
#include <optional>

#include "lib/report/message.h"
#include "radar/common/cell_image.h"
#include "radar/lev2/painter.h"
#include "radar/lev2/plot.h"
#include "radar/lev2/volume_reader.h"

namespace {

struct Sweep {
    std::string file;
    CellImage cells;
    std::vector<Lev2Gates> looks; ///< gates without bytes: how their levels are scaled
    SphereOrigin radar;
    std::string_view unit;
    int radials = 0;
    double elevations = 0;       ///< sum over the radials, degrees
    float antenna_m = kMissingF; ///< above sea level
};

struct State {
    std::optional<Sweep> sweep;
} state;

std::size_t look_of(const Lev2Gates &gates, std::vector<Lev2Gates> &looks) {
    const auto same = [&gates](const Lev2Gates &other) {
        return other.scale == gates.scale && other.offset == gates.offset;
    };
    const auto known = std::ranges::find_if(looks, same);
    const auto index = static_cast<std::size_t>(known - looks.begin());
    if (known == looks.end()) {
        looks.push_back(gates);
        looks.back().bytes = {};
    }
    return index;
}

void keep_radial(const Lev2Reader &reader, const Lev2PlotState &plot, const Lev2Radial &radial,
                 Sweep &sweep) {
    const Lev2Type type = plot.choice.type;
    const Lev2Gates &gates = reader.gates(type);
    ++sweep.radials;
    sweep.elevations += static_cast<double>(radial.elevation);
    if (!is_missing(radial.antenna_height)) sweep.antenna_m = radial.antenna_height;
    if (gates.gate_km <= 0) return;
    const Lev2Strip drawn = LEV2_strip(radial.azimuth, plot.radial_width(radial), reader.first_gate_km(type),
                                       plot.clutter_km(), gates);
    CellStrip strip;
    strip.side_a = drawn.azimuth_a;
    strip.side_b = drawn.azimuth_b;
    strip.first = drawn.first;
    strip.step = drawn.step;
    strip.skip = drawn.skip;
    strip.look = look_of(gates, sweep.looks);
    strip.levels.resize(drawn.gates);
    for (std::size_t i = 0; i < drawn.gates; ++i)
        strip.levels[i] = static_cast<std::uint16_t>(gates.level(i));
    sweep.cells.add(std::move(strip));
}

bool load(const std::string &file) {
    if (state.sweep && state.sweep->file == file) return true;
    state.sweep.reset();
    Lev2PlotState &plot = LEV2_state();
    Lev2Reader &reader = LEV2_reader();
    Lev2Info &info = plot.info;
    const MessagePause told(~kPrint); // all that is to be said of the file was said when it was drawn
    bool read = reader.open(file) && reader.read_header(info);
    if (read) {
        Sweep &sweep = state.sweep.emplace();
        sweep.file = file;
        sweep.radar = SphereOrigin(static_cast<double>(info.lat), static_cast<double>(info.lon));
        sweep.antenna_m = info.antenna_m;
        LEV2_visit_cut(reader, plot.choice,
                       [&](const Lev2Radial &radial) { keep_radial(reader, plot, radial, sweep); });
        sweep.unit = LEV2_moment(plot.choice.type).unit;
        read = sweep.cells.is_whole();
        if (!read) state.sweep.reset();
    }
    reader.close();
    return read;
}

void describe(const Sweep &sweep, const std::optional<FoundCell> &cell, RadarReading &reading) {
    if (!cell) {
        reading.value = kOutsideWords;
        return;
    }
    const float value = sweep.looks[cell->look].value(cell->level);
    if (cell->level == 0) {
        reading.value = kBelowWords;
    } else if (cell->level == 1) {
        reading.value = kRangeFoldedWords;
    } else {
        reading.number = value;
        reading.value = RADAR_value_text(value, sweep.unit);
    }
}

} // namespace

void LEV2_forget_sweep() {
    state.sweep.reset();
}

bool LEV2_read_place(const std::string &file, RadarReading &reading) {
    if (!load(file)) {
        reading.value = "it cannot be read";
        return false;
    }
    const Sweep &sweep = *state.sweep;
    RADAR_set_way(sweep.radar, reading);
    if (sweep.radials > 0) {
        reading.above_radar = is_missing(sweep.antenna_m);
        reading.beam_m = static_cast<float>(
            RADAR_beam_height(static_cast<double>(reading.range_km), sweep.elevations / sweep.radials,
                              reading.above_radar ? 0 : static_cast<double>(sweep.antenna_m)));
    }
    const SphereOrigin::Way way =
        sweep.radar.to(static_cast<double>(reading.lat), static_cast<double>(reading.lon));
    const auto draws = [&sweep](const FoundCell &cell) {
        return CELL_draws(sweep.looks[cell.look].value(cell.level));
    };
    describe(sweep, sweep.cells.at({static_cast<float>(way.east), static_cast<float>(way.north)}, draws),
             reading);
    return true;
}
