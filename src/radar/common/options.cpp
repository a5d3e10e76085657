#include "radar/common/options.h"

#include <cmath>
#include <cstdio>
#include <string>

#include "graphics/kernel/helpers.h"
#include "lib/text/strings.h"
#include "plot/background/background_map.h"
#include "plot/map/current_map.h"

namespace {

constexpr int kSiteMarker = 2;
constexpr float kMaxRingNm = 20000.0F; ///< beyond the earth's girth a ring means nothing

void decode_rings(std::string_view text, std::array<float, kMaxRings> &rings) {
    std::array<float, kMaxRings> given{};
    const std::string copy(text);
    const int count = std::sscanf(copy.c_str(), "%f:%f:%f:%f", &given[0], &given[1], &given[2], &given[3]);
    rings = {};
    std::size_t used = 0;
    for (int i = 0; i < count; ++i) {
        const float ring = given[static_cast<std::size_t>(i)];
        if (std::isfinite(ring) && ring > 0 && ring < kMaxRingNm) rings[used++] = ring;
    }
}

float decode_clutter(std::string_view text) {
    const std::string copy(text);
    float value = 0;
    if (std::sscanf(copy.c_str(), "%f", &value) != 1 || !std::isfinite(value)) return 0;
    return value;
}

} // namespace

bool RADAR_option_word(std::string_view word, RadarOptions &options) {
    constexpr std::string_view kDist = "dist";
    constexpr std::string_view kClutter = "clutter";
    if (stricmp(word, "site") == 0) {
        options.site = true;
    } else if (begins_with(word, kDist)) {
        if (word.size() > kDist.size())
            decode_rings(word.substr(kDist.size() + 1), options.rings_nm);
        else
            options.rings_nm = {kDefaultRingNm};
    } else if (stricmp(word, "nodist") == 0) {
        options.rings_nm = {};
    } else if (begins_with(word, kClutter)) {
        options.clutter = word.size() > kClutter.size() ? decode_clutter(word.substr(kClutter.size() + 1))
                                                        : static_cast<float>(kDefaultClutterBins);
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
