/// What the user asks of a window that shows the plot: zoom, the original view, a new size, newer data.

#include <algorithm>
#include <cmath>
#include <optional>

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "graphics/window/frames.h"
#include "lib/report/message.h"
#include "plot/map/current_map.h"
#include "plot/places/region.h"
#include "plot/places/station_priority.h"
#include "plot/session/plot_session.h"

namespace {

struct State {
    PlotRedraw zoom = nullptr, resize = nullptr, refresh = nullptr;
    std::optional<Point> press; ///< where the zoom box was begun, plot coordinates
    int zooms = 0;              ///< since the original domain
    PlotDomain original;        ///< saved at the first zoom
    bool drawing = false;       ///< a redraw is under way; its own events ask for no other
} state;

constexpr unsigned kZoomLevel = 0x200, kDomainLevel = 0x100;
constexpr int kRectangleBand = 2;
constexpr int kBusyCursor = 8;
constexpr int kWholeView = 0, kDataTransform = 2;

int redraw(PlotRedraw function, PlotDomain domain) {
    if (function == nullptr || state.drawing) return -1;
    state.drawing = true;
    GPH_trans(kWholeView);
    const int cursor = gset_cursor(kBusyCursor);
    function(domain);
    GPH_trans(kDataTransform);
    gupdate_window();
    gset_cursor(cursor);
    state.drawing = false;
    return 0;
}

void tell_domain(const char *what, const PlotDomain &domain) {
    MESS_print(kZoomLevel, "%s", what);
    DOM_print(kDomainLevel, domain);
}

float spacing(float length, int points) {
    return length / static_cast<float>(std::max(points - 1, 1));
}

/// False when the box's middle is not on the earth.
bool zoom_map(PlotDomain &domain, const Rect &box) {
    const float x = (box.xmin + box.xmax) / 2, y = (box.ymin + box.ymax) / 2;
    if (MAP_untran(domain.clat, domain.clon, x, y) != 1) return false;
    domain.dx = domain.dy = std::max(spacing(box.width(), domain.nx), spacing(box.height(), domain.ny));
    DOM_set_base_prior(box.height());
    return true;
}

/// Diagrams keep corner and extent where maps have centre and spacing.
bool zoom_diagram(PlotDomain &domain, const Rect &box) {
    float a1 = box.xmin, b1 = box.ymin, a2 = box.xmax, b2 = box.ymax;
    const bool plot_x = domain.proj == kProjHodo || domain.proj == kProjSkewT;
    const bool plot_y = domain.proj == kProjHodo;
    if (MAP_untran(a1, b1, box.xmin, box.ymin) != 1 || MAP_untran(a2, b2, box.xmax, box.ymax) != 1)
        return false;
    domain.clat = plot_x ? box.xmin : std::min(a1, a2);
    domain.clon = plot_y ? box.ymin : domain.proj == kProjXP ? std::max(b1, b2) : std::min(b1, b2);
    domain.dx = plot_x ? box.width() : std::abs(a2 - a1);
    domain.dy = plot_y ? box.height() : std::abs(b2 - b1);
    return true;
}

int zoom_to_box(float x, float y) {
    if (!state.press || state.drawing) return -1;
    const Point from = *state.press;
    state.press.reset();
    if (from.x == x || from.y == y) return 0;
    const Rect box{std::min(from.x, x), std::max(from.x, x), std::min(from.y, y), std::max(from.y, y)};
    const PlotDomain before = MAP_get_domain();
    PlotDomain domain = before;
    if (!(is_map_projection(domain.proj) ? zoom_map(domain, box) : zoom_diagram(domain, box))) return -1;
    if (state.zooms == 0) state.original = before;
    ++state.zooms;
    tell_domain("New domain: ", domain);
    return redraw(state.zoom, domain);
}

int zoom_back() {
    if (gget_zoom() != 1 || state.zooms == 0 || state.drawing) return 0;
    const PlotDomain &domain = state.original;
    if (is_map_projection(domain.proj)) DOM_set_base_prior(static_cast<float>(domain.ny - 1) * domain.dy);
    tell_domain("Original domain: ", domain);
    state.zooms = 0;
    return redraw(state.zoom, domain);
}

void refresh_now() {
    PLT_plot_refresh();
}

} // namespace

void PLT_set_callback(MouseCallback function) {
    if (function != nullptr) gset_mouse_callback(function);
}

void PLT_set_zoom_func(PlotRedraw function) {
    state.zoom = function;
}

void PLT_set_resize_func(PlotRedraw function) {
    state.resize = function;
}

void PLT_set_refresh_func(int seconds, PlotRedraw function) {
    state.refresh = function;
    gset_refresh_callback(seconds, refresh_now);
}

int PLT_plot_zoom(std::string_view event, float x, float y) {
    if (event.starts_with("B1-P-Shft")) {
        state.press = Point{x, y};
        gset_rubber_band(kRectangleBand);
        return 0;
    }
    // Whichever modifier is still held when the button is released.
    if (event.starts_with("B1-R")) return zoom_to_box(x, y);
    if (event == "u-Alt") return zoom_back();
    if (event == "r-Alt") return redraw(state.zoom, MAP_get_domain());
    return 0;
}

int PLT_plot_resize(std::string_view event) {
    if (event != "size") return 0;
    if (!state.drawing) return redraw(state.resize, MAP_get_domain());
    // The picture under way is for the old size: whoever draws it hears of the new one.
    PlotDomain domain = MAP_get_domain();
    return state.resize != nullptr ? state.resize(domain) : -1;
}

int PLT_plot_refresh() {
    return redraw(state.refresh, MAP_get_domain());
}

void PLT_set_zoom(int count) {
    state.zooms = count;
}

int PLT_get_zoom() {
    return state.zooms;
}
