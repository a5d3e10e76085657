#include "plot/symbols/station.h"

#include <cmath>

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "lib/text/strings.h"
#include "plot/background/background_map.h"
#include "plot/colour/attribute.h"

namespace {

struct State {
    float scale = 1; ///< of the text height
};
State state;

constexpr float kTextHeight = 0.02F; ///< fraction of the height of the plot

bool is_given(float value) {
    return std::isfinite(value) && value != kMissingF;
}

std::string written(float value, int decimals) {
    return format_text("%.*f", decimals, static_cast<double>(value));
}

std::string text_of(const StationData &data, int decimals) {
    if (!data.text.empty() || !is_given(data.value)) return data.text;
    const std::string first = written(data.value, decimals);
    return is_given(data.value2) ? first + "/" + written(data.value2, decimals) : first;
}

} // namespace

void RAW_data_init(StationData &data) {
    data = StationData{};
}

void RAW_data_init_val(StationData &data) {
    data.value = data.value2 = kMissingF;
    data.text.clear();
}

void RAW_plot_init(float scale) {
    state.scale = std::isfinite(scale) && scale > 0 ? scale : 1;
}

int RAW_plot_data(const StationData &data, const PlotVariable &variable) {
    const std::string text = text_of(data, variable.decimals);
    if (text.empty() || !is_given(data.x) || !is_given(data.y)) return -1;
    Attribute record;
    ATTRIB_get("color_data", ATTRIB_text_default(), record);
    if (!variable.attributes.empty()) ATTRIB_parse(variable.attributes, record);
    if (record.color == kColorBackground) return -1;
    const float height = state.scale * kTextHeight * MAP_get_vert();
    GPH_text_attr(&record, height);
    GPH_text_align(kAlignCenter, kAlignHalf);
    gtext({data.x + variable.dx * height, data.y + variable.dy * height}, text);
    return 0;
}
