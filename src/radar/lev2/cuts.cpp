#include <algorithm>
#include <cmath>

#include "radar/lev2/volume_reader.h"

namespace {

Lev2Cut begin_cut(const Lev2Reader &reader, const Lev2Radial &radial) {
    Lev2Cut cut;
    cut.number = radial.elevation_number;
    cut.azimuth_resolution = radial.azimuth_resolution;
    cut.nyquist = radial.nyquist;
    cut.date = radial.collection_date;
    cut.time = radial.collection_time;
    for (std::size_t i = 0; i < kLev2Types; ++i) {
        const Lev2Gates &gates = reader.gates(static_cast<int>(i));
        if (!gates.bytes.empty()) cut.moments[i] = {gates.count, gates.first_km, gates.gate_km};
    }
    return cut;
}

} // namespace

std::vector<Lev2Cut> Lev2Reader::list_cuts() {
    std::vector<Lev2Cut> cuts;
    std::vector<double> sums;
    Lev2Radial radial;
    for (; next_block(radial); end_block()) {
        if (radial.type != kLev2Legacy && radial.type != kLev2Generic) continue;
        auto cut = std::ranges::find(cuts, radial.elevation_number, &Lev2Cut::number);
        if (cut == cuts.end() && cuts.size() == kLev2MaxCuts) continue;
        if (cut == cuts.end()) {
            cut = cuts.insert(cut, begin_cut(*this, radial));
            sums.push_back(0);
        }
        double &sum = sums[static_cast<std::size_t>(cut - cuts.begin())];
        sum += static_cast<double>(radial.elevation);
        cut->elevation = static_cast<float>(sum / ++cut->radials);
    }
    return cuts;
}
