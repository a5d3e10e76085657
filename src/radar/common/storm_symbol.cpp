#include "radar/common/storm_symbol.h"

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "plot/colour/attribute.h"
#include "plot/map/current_map.h"
#include "plot/symbols/wind.h"

namespace {

constexpr int kPlainType = 2;
constexpr float kMarkerWidth = 2.0F;
constexpr float kBarbSize = 0.075F, kTextSize = 0.02F, kTextOffset = 0.01F; ///< of the plot's height

} // namespace

StormMarker RADAR_plain_storm() {
    return {ATTRIB_text_default(), kPlainType};
}

void RADAR_draw_marker(const Point &place, const StormMarker &marker) {
    Attribute record;
    ATTRIB_parse(marker.color, record);
    record.style = marker.type;
    record.width = kMarkerWidth;
    GPH_mark_attr(&record, 1.0F);
    GPH_mark(place.x, place.y);
}

void RADAR_draw_storm(const Point &place, const StormSymbol &symbol, float height, float text) {
    for (const StormMarker &marker : symbol.markers) RADAR_draw_marker(place, marker);
    const auto [x, y] = place;
    if (!is_missing(symbol.direction) && !is_missing(symbol.speed_kt))
        WIND_barb(x, y, MAP_dir_adj(symbol.direction, x, y), symbol.speed_kt, kBarbSize * height, 0.0F);
    gset_char_ht(kTextSize * text * height);
    const float offset = kTextOffset * height;
    GPH_text_align(kAlignRight, kAlignBase);
    GPH_printf(x - offset, y + offset, "%s", symbol.left.c_str());
    if (symbol.right.empty()) return;
    GPH_text_align(kAlignLeft, kAlignBase);
    GPH_printf(x + offset, y + offset, "%s", symbol.right.c_str());
}

bool RADAR_motion_field(std::string_view field, int direction, int speed, StationData &data) {
    const auto given = [](int value) { return is_missing(value) ? kMissingF : static_cast<float>(value); };
    if (field != "dir" && field != "spd" && field != "mvmt") return false;
    data.value = given(field == "spd" ? speed : direction);
    if (field == "mvmt") data.value2 = given(speed);
    return true;
}
