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

} // namespace

bool RADAR_option_word(std::string_view word, RadarOptions &options) {
    if (stricmp(word, "site") == 0) {
        options.site = true;
    } else if (begins_with(word, "dist")) {
        if (const auto distances = keyword_value(word, "dist"))
            decode_rings(*distances, options.rings_nm);
        else
            options.rings_nm = {kDefaultRingNm};
    } else if (stricmp(word, "nodist") == 0) {
        options.rings_nm = {};
    } else if (begins_with(word, "clutter")) {
        const auto bins = keyword_value(word, "clutter");
        options.clutter = bins ? Scanner(*bins).real().value_or(0) : static_cast<float>(kDefaultClutterBins);
    } else if (stricmp(word, "noclutter") == 0) {
        options.clutter = 0;
    } else if (stricmp(word, "refresh") == 0) {
        options.refresh = true;
    } else if (stricmp(word, "strict") == 0) {
        options.strict = true;
    } else {
        return false;
    }
    return true;
}

std::span<const WordRule> RADAR_param_words() {
    static constexpr std::array words{
        WordRule{"site"},      WordRule{"dist", PARAM_up_to_four, "up to four distances"},
        WordRule{"nodist"},    WordRule{"clutter", PARAM_number, "a number"},
        WordRule{"noclutter"}, WordRule{"refresh"},
        WordRule{"strict"}};
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
