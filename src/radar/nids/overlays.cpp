/// What is drawn over the image: site, range rings, graphic pages, storms.

#include <algorithm>

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "graphics/text/font.h"
#include "lib/options/flags.h"
#include "lib/resources/database.h"
#include "plot/colour/attribute.h"
#include "plot/colour/levels.h"
#include "plot/map/current_map.h"
#include "plot/projection/sphere.h"
#include "plot/session/plot_session.h"
#include "plot/session/status_text.h"
#include "plot/symbols/watch.h"
#include "plot/symbols/wind.h"
#include "radar/nids/product_reader.h"
#include "radar/nids/state.h"
#include "radar/nids/storm.h"

namespace {

/// The pages' own screen: 512 x 512 points, lines counted downwards.
constexpr int kPagePoints = 512;
constexpr float kPageSpacing = 511.0F;
/// Each page stands this much below the one before.
constexpr float kPageShift = 50.0F;
constexpr float kPageTextHeight = 7.0F;
constexpr float kPageTextExpansion = 0.85F;
constexpr float kPageMarkerSize = 1.5F;
constexpr float kPageBarbSize = 20.0F;

struct ExtrasInk {
    Attribute data;  ///< texts, site, rings
    Attribute lines; ///< vectors of the pages
};

PlotDomain page_domain() {
    PlotDomain page;
    page.proj = kProjPixel;
    page.clat = page.clon = 0;
    page.dx = page.dy = kPageSpacing;
    page.nx = page.ny = kPagePoints;
    return page;
}

Point page_point(float i, float j) {
    Point p;
    MAP_tran(p.x, p.y, i, j);
    return p;
}

void page_vectors(NidsReader &reader, const ExtrasInk &ink, float shift, bool draw) {
    GPH_line_attr(&ink.lines);
    NidsVector v{};
    while (reader.next_vector(v) == NidsRead::done) {
        if (!draw) continue;
        const Point a = page_point(v.i1, v.j1 + shift);
        const Point b = page_point(v.i2, v.j2 + shift);
        GPH_line(a.x, a.y, b.x, b.y);
    }
}

void page_winds(NidsReader &reader, float shift, bool draw) {
    NidsWind wind{};
    while (reader.next_wind(wind) == NidsRead::done) {
        Attribute ink;
        CONT_get_fill_attrib(ink, wind.value);
        if (!draw || ink.color < 0) continue;
        GPH_fill_attr(&ink);
        GPH_line_attr(&ink);
        const Point p = page_point(wind.i, wind.j + shift);
        WIND_barb(p.x, p.y, wind.direction, wind.speed, kPageBarbSize, 0.0F);
    }
}

void page_text(NidsReader &reader, const ExtrasInk &ink, float shift, bool draw, NidsStormReader &storms) {
    NidsText text;
    if (reader.next_text(text) != NidsRead::done) return;
    storms.line(text.text);
    if (!draw || ink.data.color < 0) return;
    Attribute letters = ink.data;
    letters.expansion = kPageTextExpansion;
    GPH_text_attr(&letters, kPageTextHeight);
    GPH_text_align(kAlignLeft, kAlignCap);
    gtext(page_point(text.i, text.j + shift), text.text);
}

/// Reads all pages, draws them when asked, and collects their storms. The plot's map is back in force
/// afterwards.
void read_pages(NidsReader &reader, const ExtrasInk &ink, bool draw, NidsStormReader &storms) {
    const PlotDomain plot = MAP_get_domain();
    MAP_setup(page_domain());
    gset_char_space(1.0F);
    gset_marker_size(kPageMarkerSize);
    if (reader.graphic()) {
        for (int page = reader.next_page(); page > 0; page = reader.next_page()) {
            const float shift = kPageShift * static_cast<float>(page);
            int packet = 0;
            while (reader.next_packet(packet) == NidsRead::done) {
                if (packet == kPacketVector || packet == kPacketVectorValue)
                    page_vectors(reader, ink, shift, draw);
                if (packet == kPacketWind) page_winds(reader, shift, draw);
                if (packet == kPacketText || packet == kPacketTextValue)
                    page_text(reader, ink, shift, draw, storms);
            }
        }
    }
    gset_char_space(0.0F);
    MAP_setup(plot);
}

/// Storms lie on their echo: on the same great circles as the cells.
std::vector<PlacedStorm> place_storms(const std::vector<NidsStorm> &storms, const SphereOrigin &radar) {
    std::vector<PlacedStorm> placed;
    for (const NidsStorm &storm : storms) {
        const SpherePoint at = radar.towards(storm.azimuth, storm.range_nm * kKmPerNauticalMile);
        Point place;
        if (MAP_tran(place.x, place.y, static_cast<float>(at.lat), static_cast<float>(at.lon)) == 1)
            placed.push_back({storm, place});
    }
    return placed;
}

} // namespace

int NIDS_plot_data() {
    if (FLAG_getplot(kPlotData) < 1) return -1;
    const NidsPlotState &state = NIDS_state();
    ExtrasInk ink;
    ATTRIB_get("color_data", ATTRIB_text_default(), ink.data);
    ATTRIB_get("color_grid", "red", ink.lines);
    PLT_mess("NIDS Extra");

    NidsReader &reader = NIDS_reader();
    StormScale scale;
    scale.radar_lat = reader.blocks.latitude();
    const float radar_lon = reader.blocks.longitude();
    Point radar{kMissingF, kMissingF};
    if (is_map_projection(MAP_get_proj())) MAP_tran(radar.x, radar.y, scale.radar_lat, radar_lon);
    // Nothing of the lines that the map left behind.
    GPH_line_attr(nullptr);
    GPH_line_attr(&ink.data);
    GPH_mark_attr(&ink.data, 1.0F);
    CONT_reset_values();
    (void)RES_getval("plot_scale", scale.plot_scale); // unset, the default stays
    RAW_plot_init(scale.plot_scale);
    RADAR_draw_site(state.options, radar.x, radar.y);

    if (RES_get("variable") != nullptr) (void)VAR_setup(kVariableFile); // told where it fails
    NidsStormReader storm_lines(state.most_storms, state.strong_only);
    read_pages(reader, ink, state.graph || VAR_has("table") == 1, storm_lines);
    if (is_map_projection(MAP_get_proj())) {
        scale.height = GPH_get_win(kDataTransform).height();
        const std::vector<PlacedStorm> storms =
            place_storms(storm_lines.storms(), SphereOrigin(scale.radar_lat, radar_lon));
        for (int i = 0; i < VAR_get_num(); ++i) {
            for (const PlacedStorm &storm : storms) {
                GPH_line_attr(&ink.data);
                GPH_fill_attr(&ink.data);
                GPH_text_attr(&ink.data, 1.0F);
                NIDS_draw_storm(storm, VAR_get(i), scale);
            }
        }
    }
    if (VAR_has("watch") == 1) WATCH_plot();
    return 0;
}
