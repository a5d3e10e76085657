/// The value under the pointer: the image of the file that is seen, read again and kept until another is
/// asked for.

#include <optional>

#include "lib/report/message.h"
#include "radar/common/cell_image.h"
#include "radar/nids/image.h"
#include "radar/nids/level_words.h"
#include "radar/nids/plot.h"
#include "radar/nids/product_reader.h"
#include "radar/nids/reader.h"
#include "radar/nids/state.h"

namespace {

/// What the levels of one packet mean.
struct Look {
    std::array<float, kCellLevels> values{};
    std::array<std::string_view, kCellLevels> words{};
    std::array<bool, kCellLevels> drawn{};
};

struct Image {
    std::string file;
    NidsInfo info;
    NidsImageGrid grid;
    CellImage cells{};
    std::vector<Look> looks{}; ///< one a packet
    std::string_view unit{};
    bool on_radar = false;  ///< there is a radar to count from
    bool has_tilt = false;  ///< the image is that of one elevation
    float elevation = 0;    ///< degrees
    float antenna_m = 0;    ///< above sea level
    float lat = 0, lon = 0; ///< of the radar
};

struct State {
    std::optional<Image> image;
} state;

/// `skip`: bins next to the radar that are not drawn.
void keep_radials(NidsReader &reader, int packet, std::size_t skip, Image &image) {
    CellStrip strip;
    strip.step = image.grid.bin;
    strip.skip = skip;
    strip.look = image.looks.size() - 1;
    std::vector<std::uint8_t> levels;
    float delta = 0;
    while (reader.next_radial(strip.side_a, delta) == NidsRead::done) {
        NIDS_radial_levels(reader, packet, levels);
        strip.side_b = strip.side_a + delta + kRadialOverlapDeg;
        strip.levels.assign(levels.begin(), levels.end());
        image.cells.add(strip);
    }
}

void keep_rows(NidsReader &reader, const NidsInfo &info, Image &image) {
    CellStrip strip;
    strip.kind = CellStrip::Kind::row;
    strip.step = image.grid.bin;
    strip.look = image.looks.size() - 1;
    const Point corner = image.grid.raster_corner(info);
    strip.first = corner.x;
    strip.side_a = corner.y;
    while (reader.next_row() == NidsRead::done) {
        strip.side_b = strip.side_a - image.grid.bin;
        strip.levels.clear();
        NidsRun run;
        while (reader.next_run(run) == NidsRead::done)
            strip.levels.insert(strip.levels.end(), static_cast<std::size_t>(run.length),
                                static_cast<std::uint16_t>(run.level));
        image.cells.add(strip);
        strip.side_a = strip.side_b;
    }
}

Look look_of(const NidsReader &reader, const NidsInfo &info, int packet) {
    Look look;
    NIDS_image_values(reader, packet, look.values);
    for (std::size_t level = 0; level < kCellLevels; ++level) {
        look.words[level] = NIDS_level_word(reader.blocks, info, packet, static_cast<int>(level));
        look.drawn[level] = CELL_draws(look.values[level]);
    }
    return look;
}

/// Of the open product, whose first packet's header has been read.
Image read_image(NidsReader &reader, const NidsInfo &info, const RadarOptions &options) {
    constexpr float kMetresPerFoot = 0.3048F; // international foot
    const NidsDescription &description = reader.blocks.description;
    Image image{
        .file = {}, .info = info, .grid = NIDS_image_grid(reader.blocks, info), .unit = NIDS_unit(info)};
    image.on_radar = info.source <= kLastRadarSource;
    const bool told =
        description.elevation_number > 0 || reader.blocks.product().elevation != NidsElevation::none;
    image.has_tilt = image.on_radar && told;
    image.elevation = static_cast<float>(description.p[3]) / 10;
    image.antenna_m = static_cast<float>(description.height_ft) * kMetresPerFoot;
    image.lat = reader.blocks.latitude();
    image.lon = reader.blocks.longitude();
    int packet = info.packet;
    for (bool more = packet != 0; more; more = reader.next_packet(packet) == NidsRead::done) {
        if (!(NIDS_is_radial(packet) || NIDS_is_raster(packet)) || image.grid.bin <= 0) continue;
        image.looks.push_back(look_of(reader, info, packet));
        if (NIDS_is_radial(packet))
            keep_radials(reader, packet, NIDS_clutter_bins(options), image);
        else
            keep_rows(reader, info, image);
    }
    return image;
}

/// Makes the file's product the present one.
bool load(const std::string &file) {
    NidsPlotState &plot = NIDS_state();
    NidsInfo &info = plot.info;
    if (state.image && state.image->file == file) {
        info = state.image->info;
        return true;
    }
    state.image.reset();
    const MessagePause told(~kPrint); // all that is to be said of the file was said when it was drawn
    bool read = NIDS_open_stream(file) && NIDS_get_header(info) == 1;
    if (read) {
        // The levels may be those of another product that was drawn later.
        NIDS_choose_levels(info);
        state.image = read_image(NIDS_reader(), info, plot.options);
        state.image->file = file;
        read = state.image->cells.is_whole();
        if (!read) state.image.reset();
    }
    NIDS_close_stream();
    return read;
}

/// The level's value in words or with its unit.
void describe(const Image &image, const std::optional<FoundCell> &cell, RadarReading &reading) {
    if (!cell) {
        reading.value = kOutsideWords;
        return;
    }
    const Look &look = image.looks[cell->look];
    const float value = look.values[cell->level];
    reading.value = look.words[cell->level];
    if (!reading.value.empty()) return;
    if (is_missing(value)) {
        reading.value = kNoDataWords;
        return;
    }
    const std::string_view name = NIDS_class_name(image.info, value);
    if (name == kRangeFoldedWords) {
        reading.value = name;
        return;
    }
    reading.number = value;
    reading.value = RADAR_value_text(value, name.empty() ? image.unit : name);
}

} // namespace

void NIDS_forget_image() {
    state.image.reset();
}

bool NIDS_read_place(const std::string &file, RadarReading &reading) {
    if (!load(file)) {
        reading.value = "it cannot be read";
        return false;
    }
    const Image &image = *state.image;
    if (image.on_radar) {
        const SphereOrigin radar(static_cast<double>(image.lat), static_cast<double>(image.lon));
        RADAR_set_way(radar, reading);
        if (image.has_tilt && !image.looks.empty())
            reading.beam_m =
                static_cast<float>(RADAR_beam_height(reading.range_km, image.elevation, image.antenna_m));
    }
    if (image.looks.empty()) return true;
    const auto draws = [&image](const FoundCell &cell) { return image.looks[cell.look].drawn[cell.level]; };
    describe(image, image.cells.at(image.grid.frame.grid_point(reading.lat, reading.lon), draws), reading);
    return true;
}
