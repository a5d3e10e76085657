#pragma once
/// Plot parameters that every radar driver knows, and what they draw: site marker and range rings.

#include <array>
#include <span>
#include <string_view>

#include "lib/resources/list_words.h"
#include "plot/domain/plot_domain.h"

inline constexpr int kMaxRings = 4;
inline constexpr float kDefaultRingNm = 100.0F;
inline constexpr int kDefaultClutterBins = 25;

struct RadarOptions {
    bool site = false;                       ///< mark the radar
    std::array<float, kMaxRings> rings_nm{}; ///< range rings, nautical miles; 0 ends the list
    float clutter = 0;    ///< range next to the radar that is not drawn, in the driver's own unit
    bool refresh = false; ///< keep watching for newer files
    bool strict = false;  ///< a file that is not whole counts as one that cannot be read
};

/// Takes one word of the resource "plot_param" ("site", "dist=30:60", "nodist", "clutter=10", "noclutter",
/// "refresh", "strict"). False when the word is none of these.
[[nodiscard]] bool RADAR_option_word(std::string_view word, RadarOptions &options);
/// The words that it takes.
std::span<const WordRule> RADAR_param_words();

/// Draws the site marker and the range rings around plot point (x, y) with the attributes in force. Only on
/// maps.
void RADAR_draw_site(const RadarOptions &options, float x, float y);
