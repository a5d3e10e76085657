/// Geo-located truth: the gate drawn over a place on the earth has the level that an independent decoding of
/// the volume found there.

#include <map>

#include <gtest/gtest.h>

#include "lib/options/flags.h"
#include "lib/report/message.h"
#include "lib/resources/database.h"
#include "plot/colour/levels.h"
#include "radar/cell_places.h"
#include "radar/lev2/plot.h"
#include "radar/lev2/reader.h"
#include "radar/lev2/volume_reader.h"
#include "real_files.h"
#include "tsv.h"

namespace {

struct Sweep {
    std::string file;
    Lev2Choice choice;
    std::vector<Place> places; ///< whose neighbours have the same level
};

std::vector<Sweep> sweeps() {
    std::map<std::string, Sweep> found;
    for (const TsvRow &row : read_tsv(shared_dir() + "/samples/level2-points.tsv")) {
        Sweep &sweep = found[row.at("file") + row.at("moment")];
        sweep.file = row.at("file");
        sweep.choice.type = row.at("moment") == "REF" ? kLev2Reflectivity : kLev2Velocity;
        sweep.choice.number = std::stoi(row.at("elevation_number"));
        if (row.at("neighbours") != "same") continue;
        sweep.places.push_back({std::stof(row.at("latitude")), std::stof(row.at("longitude")),
                                std::stof(row.at("value_formula_A")), std::stoi(row.at("level"))});
    }
    std::vector<Sweep> all;
    for (auto &[key, sweep] : found) all.push_back(std::move(sweep));
    return all;
}

/// Places whose cell has another level, in the radar's own domain or, with a size, in another projection.
int count_wrong(Sweep sweep, int proj, float size) {
    const Lev2PlotState &state = LEV2_state();
    if (!LEV2_open_volume(shared_dir() + "/samples/level2/" + sweep.file)) return 1000;
    MAP_setup(size > 0 ? domain_around(proj, state.info.lat, state.info.lon, size) : state.domain);
    put_on_map(sweep.places);
    CONT_reset_fill_set();
    CONT_reset_values();
    CONT_set_fill_colors("-1000000:#123456", 1);
    const CellSink sink{note_cell, &sweep.places};
    const Lev2Sweep drawn = LEV2_draw_sweep(LEV2_reader(), state, sweep.choice, &sink);
    EXPECT_GT(drawn.radials, 359);
    return static_cast<int>(
        std::ranges::count_if(sweep.places, [](const Place &place) { return place.found != place.level; }));
}

TEST(Lev2GeoTruth, GatesStandWhereIndependentDecodersSawThem) {
    SKIP_WITHOUT_REAL_FILES();
    MESS_set(0, kError);
    FLAG_set_batch(1); // read no further than the cut
    RES_put("file_path", VYX_SOURCE_DIR "/data/");
    RES_put("identifier", "KLOT"); // of the one volume that has none
    for (const Sweep &sweep : sweeps()) {
        SCOPED_TRACE(sweep.file + " moment " + std::to_string(sweep.choice.type));
        const int allowed = static_cast<int>(sweep.places.size()) / 100;
        LEV2_state().superres = true;
        EXPECT_LE(count_wrong(sweep, kProjPolar, 0), allowed) << "own domain";
        LEV2_state().superres = false;
        EXPECT_LE(count_wrong(sweep, kProjLambert, 12), allowed) << "Lambert";
    }
}

} // namespace
