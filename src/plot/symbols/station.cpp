#include "plot/symbols/station.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <optional>

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "graphics/text/font.h"
#include "lib/text/strings.h"
#include "plot/background/background_map.h"
#include "plot/colour/attribute.h"
#include "plot/map/current_map.h"
#include "plot/map/occupied_places.h"
#include "plot/symbols/wind.h"

namespace {

struct State {
    float scale = 1; ///< of the text height
};
State state;

constexpr float kTextHeight = 0.02F;   ///< fraction of the height of the plot
constexpr float kBarbHeights = 2.5F;   ///< length of a barb, text heights
constexpr float kMarkerHeights = 1.0F; ///< extent of a marker, text heights

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

float text_height() {
    return state.scale * kTextHeight * MAP_get_vert();
}

/// What a record and its variable come to.
struct Look {
    enum class Shape { text, marker, vector, barb } shape = Shape::text;
    std::string text; ///< of a text
    int marker = 0;
    Point place;
    float height = 0; ///< of text, plane units
    Attribute ink;
};

std::optional<Attribute> ink_of(const PlotVariable &variable) {
    Attribute record;
    ATTRIB_get("color_data", ATTRIB_text_default(), record);
    if (!variable.attributes.empty()) ATTRIB_parse(variable.attributes, record);
    if (record.color == kColorBackground) return std::nullopt;
    return record;
}

bool is_letter_marker(const std::string &marker) {
    return marker.size() == 1 && ((marker[0] >= 'A' && marker[0] <= 'Z'));
}

std::optional<Look> look_of(const StationData &data, const PlotVariable &variable) {
    if (!is_given(data.x) || !is_given(data.y)) return std::nullopt;
    const auto ink = ink_of(variable);
    if (!ink) return std::nullopt;
    Look look;
    look.ink = *ink;
    look.height = text_height();
    look.place = {data.x + variable.dx * look.height, data.y + variable.dy * look.height};
    const bool motion = variable.kind == VariableKind::vector || variable.kind == VariableKind::barb;
    if (!data.marker.empty()) {
        look.place = {data.x, data.y};
        if (is_letter_marker(data.marker)) {
            look.text = data.marker;
        } else {
            look.shape = Look::Shape::marker;
            look.marker = ATTR_parse_marker(data.marker);
        }
    } else if (motion && data.text.empty() && is_given(data.value) && is_given(data.value2)) {
        look.shape = variable.kind == VariableKind::vector ? Look::Shape::vector : Look::Shape::barb;
    } else {
        look.text = text_of(data, variable.decimals);
    }
    if (look.shape == Look::Shape::text && look.text.empty()) return std::nullopt;
    return look;
}

float vector_length(float knots) {
    return state.scale * kVectorLength * MAP_get_vert() * knots / kVectorKnots;
}

/// The part of the plot that it covers.
Rect extent(const Look &look, const StationData &data) {
    const Point &p = look.place;
    const auto around = [&p](float across, float up) {
        return Rect{p.x - across, p.x + across, p.y - up, p.y + up};
    };
    switch (look.shape) {
    case Look::Shape::text: {
        GPH_text_attr(&look.ink, look.height);
        return around(std::max(gtext_width(look.text), look.height) / 2, look.height / 2);
    }
    case Look::Shape::marker:
        return around(kMarkerHeights * look.height / 2, kMarkerHeights * look.height / 2);
    case Look::Shape::barb: return around(kBarbHeights * look.height, kBarbHeights * look.height);
    case Look::Shape::vector: {
        const float turned = MAP_dir_adj(data.value, p.x, p.y), length = vector_length(data.value2);
        const Point tip{p.x - length * static_cast<float>(std::sin(turned * kDegree)),
                        p.y - length * static_cast<float>(std::cos(turned * kDegree))};
        return {std::min(p.x, tip.x), std::max(p.x, tip.x), std::min(p.y, tip.y), std::max(p.y, tip.y)};
    }
    }
    return around(0, 0);
}

void draw(const Look &look, const StationData &data) {
    switch (look.shape) {
    case Look::Shape::text:
        GPH_text_attr(&look.ink, look.height);
        GPH_text_align(kAlignCenter, kAlignHalf);
        gtext(look.place, look.text);
        return;
    case Look::Shape::marker: {
        Attribute record = look.ink;
        record.style = look.marker;
        GPH_mark_attr(&record, 1.0F);
        GPH_mark(look.place.x, look.place.y);
        return;
    }
    case Look::Shape::barb:
    case Look::Shape::vector: {
        const float turned = MAP_dir_adj(data.value, look.place.x, look.place.y);
        GPH_line_attr(nullptr);
        GPH_line_attr(&look.ink);
        GPH_fill_attr(&look.ink);
        if (look.shape == Look::Shape::barb)
            WIND_barb(look.place.x, look.place.y, turned, data.value2, kBarbHeights * look.height, 0);
        else
            WIND_vect(look.place.x, look.place.y, turned, vector_length(data.value2));
        return;
    }
    }
}

} // namespace

void RAW_data_init(StationData &data) {
    data = StationData{};
}

void RAW_data_init_val(StationData &data) {
    data.value = data.value2 = kMissingF;
    data.text.clear();
    data.marker.clear();
}

void RAW_plot_init(float scale) {
    state.scale = std::isfinite(scale) && scale > 0 ? scale : 1;
}

int RAW_plot_data(const StationData &data, const PlotVariable &variable) {
    const auto look = look_of(data, variable);
    if (!look) return -1;
    draw(*look, data);
    return 0;
}

namespace {

/// What is drawn of a station, and where it stands.
struct Drawable {
    std::vector<std::pair<Look, const StationData *>> looks;
    std::vector<Rect> extents;
};

Drawable drawable(const StationPlot &station) {
    Drawable drawn;
    for (const auto &[data, variable] : station.items) {
        auto look = look_of(data, VAR_get_vars().at(variable));
        if (!look) continue;
        drawn.extents.push_back(extent(*look, data));
        drawn.looks.emplace_back(std::move(*look), &data);
    }
    return drawn;
}

} // namespace

int RAW_plot_stations(std::span<const StationPlot> stations) {
    std::vector<std::size_t> order(stations.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::stable_sort(order, {}, [&](std::size_t i) { return stations[i].priority; });
    OccupiedPlaces occupied(GPH_get_win(kDataTransform));
    int left_out = 0;
    for (const std::size_t i : order) {
        const Drawable drawn = drawable(stations[i]);
        const auto covers = [&occupied](const Rect &extent) { return occupied.meets(extent); };
        if (std::ranges::any_of(drawn.extents, covers)) {
            ++left_out;
            continue;
        }
        for (const Rect &extent : drawn.extents) occupied.add(extent);
        for (const auto &[look, data] : drawn.looks) draw(look, *data);
    }
    return left_out;
}
