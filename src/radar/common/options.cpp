#include "radar/common/options.h"

#include <cmath>

#include "graphics/kernel/helpers.h"
#include "lib/text/scan.h"
#include "lib/text/strings.h"
#include "plot/background/background_map.h"
#include "plot/map/current_map.h"

namespace {

constexpr int kSiteMarker = 2;
constexpr float kMaxRingNm = 20000.0F; ///< beyond the earth's girth a ring means nothing

void decode_rings(std::string_view text, std::array<float, kMaxRings> &rings) {
    rings = {};
    std::size_t used = 0;
    Scanner scan(text);
    for (std::size_t i = 0; i < rings.size(); ++i) {
        if (const auto ring = scan.real(); ring && *ring > 0 && *ring < kMaxRingNm) rings[used++] = *ring;
        scan.literal(':');
    }
}

void set_rings(RadarOptions &options, ParamValue distances) {
    if (distances)
        decode_rings(*distances, options.rings_nm);
    else
        options.rings_nm = {kDefaultRingNm};
}

void set_clutter(RadarOptions &options, ParamValue bins) {
    options.clutter = bins ? Scanner(*bins).real().value_or(0) : static_cast<float>(kDefaultClutterBins);
}

using Row = ParamRow<RadarOptions>;
constexpr std::array kParams{Row{{"site"}, [](RadarOptions &o, ParamValue) { o.site = true; }},
                             Row{{"dist", PARAM_up_to_four, "up to four distances"}, set_rings},
                             Row{{"nodist"}, [](RadarOptions &o, ParamValue) { o.rings_nm = {}; }},
                             Row{{"clutter", PARAM_number, "a number"}, set_clutter},
                             Row{{"noclutter"}, [](RadarOptions &o, ParamValue) { o.clutter = 0; }},
                             Row{{"refresh"}, [](RadarOptions &o, ParamValue) { o.refresh = true; }},
                             Row{{"strict"}, [](RadarOptions &o, ParamValue) { o.strict = true; }}};

} // namespace

bool RADAR_option_word(std::string_view word, RadarOptions &options) {
    return PARAM_take(word, kParams, options);
}

std::span<const WordRule> RADAR_param_words() {
    static constexpr auto words = PARAM_rules(kParams);
    return words;
}

void RADAR_draw_site(const RadarOptions &options, float x, float y) {
    if (!is_map_projection(MAP_get_proj()) || is_missing(x)) return;
    if (options.site) {
        Attribute marker;
        marker.style = kSiteMarker;
        GPH_mark_attr(&marker, 1.0F);
        GPH_mark(x, y);
    }
    for (const float ring : options.rings_nm) {
        if (ring <= 0) break;
        MAP_draw_circle(x, y, ring * kKmPerNauticalMile);
    }
}
