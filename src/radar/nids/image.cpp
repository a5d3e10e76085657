/// The product image: radial bins, raster boxes, and the vectors, barbs and texts of the symbology block.

#include "radar/nids/image.h"

#include <algorithm>
#include <cmath>

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "lib/options/flags.h"
#include "lib/time/date.h"
#include "plot/colour/attribute.h"
#include "plot/colour/level_choice.h"
#include "plot/colour/levels.h"
#include "plot/map/current_map.h"
#include "plot/session/labels.h"
#include "plot/session/plot_session.h"
#include "plot/session/status_text.h"
#include "plot/symbols/wind.h"
#include "radar/nids/grid_file.h"
#include "radar/nids/levels.h"
#include "radar/nids/product_reader.h"
#include "radar/nids/state.h"

namespace {

constexpr int kPrecipArrayCode = 81;
constexpr float kSymbolScreen = 511.0F; ///< units across the product's screen
constexpr float kTextUnits = 8.0F;
constexpr float kMapTextUnits = 5.0F; ///< notes on maps are set in lines of 7 units
/// Column headings stand 38 units apart: four characters at full width would touch.
constexpr float kTextExpansion = 0.75F;
constexpr float kBarbUnits = 20.0F;

bool is_vector(int packet) {
    return packet == kPacketVector || packet == kPacketVectorValue;
}
bool is_text(int packet) {
    return packet == kPacketText || packet == kPacketTextValue;
}

/// Precipitation arrays hold decibels of hundredths of an inch.
float raster_value(int code, float value) {
    if (code != kPrecipArrayCode || is_missing(value)) return value;
    return std::pow(10.0F, value / 10.0F) / 100.0F;
}

/// `skip`: bins next to the radar that are not drawn.
void draw_radials(NidsReader &reader, int packet, const NidsImageGrid &grid, std::size_t skip,
                  const LevelInk &ink, const CellSink &sink) {
    RadialCells cells(grid.frame);
    std::vector<std::uint8_t> levels;
    float start = 0;
    float delta = 0;
    while (reader.next_radial(start, delta) == NidsRead::done) {
        NIDS_radial_levels(reader, packet, levels);
        cells.draw(start, start + delta + kRadialOverlapDeg, 0.0F, grid.bin, levels, skip, ink, sink);
    }
}

void draw_rows(NidsReader &reader, const NidsInfo &info, const NidsImageGrid &grid, const LevelInk &ink,
               const CellSink &sink, NidsGridFile *file) {
    const float size = grid.bin;
    auto [left, top] = grid.raster_corner(info);
    BoxCells cells(grid.frame);
    while (reader.next_row() == NidsRead::done) {
        int column = 0;
        NidsRun run;
        while (reader.next_run(run) == NidsRead::done) {
            const int count = static_cast<int>(run.length);
            const auto level = static_cast<std::uint8_t>(run.level);
            if (file != nullptr) file->write(raster_value(info.code, run.value), count);
            if (ink[level].color >= 0)
                cells.draw(left + static_cast<float>(column) * size, top, size, count, level, sink);
            column += count;
        }
        top -= size;
    }
}

/// The product's screen, on which symbols stand, laid over the plot: rows count downwards from the upper
/// edge.
struct SymbolScreen {
    Rect window = GPH_get_win(kDataTransform);
    float unit = window.height() / kSymbolScreen;

    [[nodiscard]] Point at(float i, float j) const {
        return {window.xmin + i * unit, window.ymax - j * unit};
    }
};

void draw_symbols(NidsReader &reader, int packet, const Attribute &data, const Attribute &grid) {
    const SymbolScreen screen;
    if (is_vector(packet)) {
        GPH_line_attr(nullptr);
        GPH_line_attr(&grid);
        NidsVector v{};
        while (reader.next_vector(v) == NidsRead::done) {
            const Point a = screen.at(v.i1, v.j1);
            const Point b = screen.at(v.i2, v.j2);
            GPH_line(a.x, a.y, b.x, b.y);
        }
    } else if (packet == kPacketWind) {
        NidsWind wind{};
        while (reader.next_wind(wind) == NidsRead::done) {
            const Point p = screen.at(wind.i, wind.j);
            Attribute ink;
            CONT_get_fill_attrib(ink, wind.value);
            if (ink.color < 0) continue;
            GPH_fill_attr(&ink);
            GPH_line_attr(&ink);
            WIND_barb(p.x, p.y, wind.direction, wind.speed, kBarbUnits * screen.unit, 0.0F);
        }
    } else if (is_text(packet)) {
        NidsText text;
        if (reader.next_text(text) != NidsRead::done || data.color < 0) return;
        Attribute letters = data;
        if (is_missing(letters.expansion)) letters.expansion = kTextExpansion;
        const float height = is_map_projection(MAP_get_proj()) ? kMapTextUnits : kTextUnits;
        GPH_text_attr(&letters, height * screen.unit);
        GPH_text_align(kAlignLeft, kAlignCap);
        gtext(screen.at(text.i, text.j), text.text);
    }
}

} // namespace

bool NIDS_is_radial(int packet) {
    return packet == kPacketRadial || packet == kPacketDigitalRadial;
}

bool NIDS_is_raster(int packet) {
    return packet == kPacketRaster || packet == kPacketDigitalPrecip;
}

std::size_t NIDS_clutter_bins(const RadarOptions &options) {
    return static_cast<std::size_t>(std::clamp(options.clutter, 0.0F, 100000.0F));
}

Point NidsImageGrid::raster_corner(const NidsInfo &info) const {
    return {centre.x - static_cast<float>(info.columns) / 2.0F * bin,
            centre.y + static_cast<float>(info.rows) / 2.0F * bin};
}

/// Bins and boxes of a radar count from the radar along the earth; those of precipitation arrays and mosaics
/// lie in the plane of their own projection.
NidsImageGrid NIDS_image_grid(const NidsBlocks &blocks, const NidsInfo &info) {
    const float lat = blocks.latitude(), lon = blocks.longitude();
    const PlotDomain &d = info.domain;
    if (d.proj == kProjPolar && d.plat == d.clat && d.plon == d.clon) {
        CellFrame frame(d, lat, lon);
        const MapDomainScope scope(d);
        return {frame, d.dx / MAP_factor(d.clat), {0, 0}};
    }
    CellFrame frame(d);
    const MapDomainScope scope(d);
    Point centre;
    MAP_tran(centre.x, centre.y, lat, lon);
    return {frame, d.dx, centre};
}

void NIDS_radial_levels(NidsReader &reader, int packet, std::vector<std::uint8_t> &levels) {
    levels.clear();
    if (packet == kPacketDigitalRadial) {
        for (const std::byte level : reader.data_bytes())
            levels.push_back(std::to_integer<std::uint8_t>(level));
    } else {
        NidsRun run;
        while (reader.next_run(run) == NidsRead::done)
            levels.insert(levels.end(), static_cast<std::size_t>(run.length),
                          static_cast<std::uint8_t>(run.level));
    }
}

void NIDS_image_values(const NidsReader &reader, int packet, std::span<float, kCellLevels> values) {
    reader.level_values(packet, values);
    for (float &value : values) value = raster_value(reader.blocks.message.code, value);
}

void NIDS_choose_levels(const NidsInfo &info) {
    const NidsLevelRule &rule = NIDS_level_rule(info.code);
    LevelChoice choice{rule.colors, {}, rule.base, rule.interval, rule.range_min, rule.range_max};
    if (rule.thresholds) choice.values = info.thresholds;
    CONT_choose_levels(choice);
}

void NIDS_walk_image(NidsReader &reader, const NidsInfo &info, const RadarOptions &options,
                     const CellSink *other_sink) {
    Attribute data;
    Attribute grid_lines;
    ATTRIB_get("color_data", ATTRIB_text_default(), data);
    ATTRIB_get("color_grid", "red", grid_lines);
    const NidsImageGrid grid = NIDS_image_grid(reader.blocks, info);
    // A product without a bin size has no cells to draw.
    const bool draw = FLAG_getplot(kPlotSummary) > 0 && grid.bin > 0;
    std::array<float, kCellLevels> values{};
    int packet = info.packet, rasters = 0;
    for (bool more = packet != 0; more; more = reader.next_packet(packet) == NidsRead::done) {
        if (!NIDS_is_radial(packet) && !NIDS_is_raster(packet)) {
            draw_symbols(reader, packet, data, grid_lines);
            continue;
        }
        NIDS_image_values(reader, packet, values);
        LevelInk ink = CELL_ink(values);
        if (!draw)
            for (Attribute &attribute : ink) attribute.color = kColorBackground;
        CellFiller filler(ink);
        const CellSink sink = other_sink != nullptr ? *other_sink : filler.sink();
        if (NIDS_is_radial(packet)) {
            draw_radials(reader, packet, grid, NIDS_clutter_bins(options), ink, sink);
        } else {
            std::optional<NidsGridFile> file = NIDS_grd_out_file(info, ++rasters);
            draw_rows(reader, info, grid, ink, sink, file ? &*file : nullptr);
            if (file) file->finish();
        }
    }
}

int NIDS_plot_summary() {
    const NidsPlotState &state = NIDS_state();
    GPH_trans(kDataTransform);
    PLT_label_up_left(state.info.name);
    PLT_label_low_right(state.info.label);
    PLT_label_up_right(DATE_make_label(state.info.date));
    PLT_label_date(state.info.date);
    NIDS_choose_levels(state.info);
    PLT_mess("NIDS Sum");
    NIDS_walk_image(NIDS_reader(), state.info, state.options, nullptr);
    return 0;
}
