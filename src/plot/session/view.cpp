#include "plot/session/view.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>
#include <vector>

#include "graphics/kernel/helpers.h"
#include "graphics/kernel/kernel.h"
#include "graphics/window/events.h"
#include "graphics/window/frames.h"
#include "graphics/window/loop.h"
#include "graphics/window/rubber_band.h"
#include "graphics/window/surface.h"
#include "graphics/window/zoom.h"
#include "lib/report/message.h"
#include "plot/map/current_map.h"
#include "plot/places/region.h"
#include "plot/places/station_priority.h"

namespace {

constexpr unsigned kLocationLevel = 8;

/// A view that a zoom box has left.
struct Level {
    PlotDomain domain;
    float height = 0; ///< that the base priority of a map was set to
};

struct State {
    PlotRedraw zoom = nullptr, resize = nullptr, refresh = nullptr;
    std::optional<Point> press; ///< where the zoom box was begun, plot coordinates
    int zooms = 0;              ///< since the original domain
    std::vector<Level> levels;  ///< the original domain and those that the boxes were drawn in
    float height = 0;           ///< of the present level
    bool drawing = false;       ///< a redraw is under way; its own events ask for no other
    bool magnified = false;     ///< pixels were magnified when it began
} state;

constexpr unsigned kZoomLevel = 0x200, kDomainLevel = 0x100;
constexpr int kRectangleBand = 2;
constexpr int kBusyCursor = 8;
constexpr std::string_view kEscape = "\x1b", kBack = "u-Alt", kAgain = "r-Alt";
constexpr float kSmallestBox = 8; ///< pixels of the window; less is a slip of the hand

/// What stays of the way the picture was looked at.
enum class Keep : unsigned { nothing = 0, pixels = 1, frame = 2 };
constexpr Keep operator|(Keep a, Keep b) {
    return static_cast<Keep>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}
bool keeps(Keep kept, Keep which) {
    return (static_cast<unsigned>(kept) & static_cast<unsigned>(which)) != 0;
}

/// A key that asks for another view makes the redraw under way useless.
bool asks_for_view(std::string_view key) {
    if (!state.drawing || state.zoom == nullptr) return false;
    if (key == kAgain) return true;
    const bool goes_back = key == kBack || (key == kEscape && !state.press);
    return goes_back && state.zooms > 0 && !state.magnified;
}

void show_frame(int place) {
    const int last = gget_num_images() - 1;
    if (place >= 0 && last >= 0 && gget_cur_frame() != std::min(place, last))
        gdisplay_frame(std::min(place, last));
}

int redraw(PlotRedraw function, PlotDomain domain, Keep kept) {
    if (function == nullptr || state.drawing) return -1;
    state.drawing = true;
    const int place = gget_frame_place();
    state.magnified = gsuspend_zoom() > 1 && keeps(kept, Keep::pixels);
    if (!keeps(kept, Keep::pixels)) state.press.reset(); // the box was meant for the picture of before
    GPH_trans(kNdcTransform);
    const int cursor = gset_cursor(kBusyCursor);
    function(domain);
    GPH_trans(kDataTransform);
    if (keeps(kept, Keep::frame)) show_frame(place);
    gresume_zoom(state.magnified && !gview_wanted());
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

bool is_too_small(const Point &a, const Point &b) {
    const auto zoom = static_cast<float>(gget_zoom());
    return std::abs(xW_p(a.x) - xW_p(b.x)) * zoom < kSmallestBox ||
           std::abs(yW_p(a.y) - yW_p(b.y)) * zoom < kSmallestBox;
}

float whole_height(const PlotDomain &domain) {
    return static_cast<float>(domain.ny - 1) * domain.dy;
}

/// Draws a view whose base priority follows from so much height.
int show_level(const char *what, const PlotDomain &domain, float height) {
    state.height = height;
    if (is_map_projection(domain.proj)) DOM_set_base_prior(height);
    tell_domain(what, domain);
    return redraw(state.zoom, domain, Keep::frame);
}

int zoom_to_box(float x, float y) {
    if (!state.press || state.drawing) return -1;
    const Point from = *state.press;
    state.press.reset();
    if (from.x == x || from.y == y || is_too_small(from, {x, y})) return 0;
    const Rect box{std::min(from.x, x), std::max(from.x, x), std::min(from.y, y), std::max(from.y, y)};
    const PlotDomain before = MAP_get_domain();
    PlotDomain domain = before;
    if (!(is_map_projection(domain.proj) ? zoom_map(domain, box) : zoom_diagram(domain, box))) return -1;
    if (state.zooms == 0) state.levels.clear();
    state.levels.push_back({before, state.levels.empty() ? whole_height(before) : state.height});
    ++state.zooms;
    return show_level("New domain: ", domain, box.height());
}

int zoom_back() {
    if (gget_zoom() != 1 || state.zooms == 0 || state.drawing || state.levels.empty()) return 0;
    const Level original = state.levels.front();
    state.levels.clear();
    state.zooms = 0;
    return show_level("Original domain: ", original.domain, whole_height(original.domain));
}

/// Leaves the box that was begun, else one zoom.
int step_back() {
    if (state.press) {
        state.press.reset();
        return 0;
    }
    if (state.zooms <= 1 || state.levels.size() <= 1) return zoom_back();
    if (gget_zoom() != 1 || state.drawing) return 0;
    const Level level = state.levels.back();
    state.levels.pop_back();
    --state.zooms;
    return show_level("New domain: ", level.domain, level.height);
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
    gset_view_key(asks_for_view);
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
    if (event == kBack) return zoom_back();
    if (event == kEscape) return step_back();
    if (event == kAgain) return redraw(state.zoom, MAP_get_domain(), Keep::pixels | Keep::frame);
    return 0;
}

int PLT_plot_resize(std::string_view event) {
    return event == "size" ? redraw(state.resize, MAP_get_domain(), Keep::frame) : 0;
}

int PLT_plot_refresh() {
    return redraw(state.refresh, MAP_get_domain(), Keep::pixels);
}

void PLT_set_zoom(int count) {
    state.zooms = count;
}

int PLT_get_zoom() {
    return state.zooms;
}

int PLT_print_location(std::string_view event, float x, float y) {
    if (event != "v-Alt") return 0;
    float lat = kMissingF, lon = kMissingF;
    MAP_untran(lat, lon, x, y);
    const auto wide = [](float value) { return static_cast<double>(value); };
    MESS_print(kLocationLevel, "Lat: %6.2f Lon: %7.2f XY: %6.2f %6.2f Pixel: %6.2f %6.2f\n", wide(lat),
               wide(lon), wide(x), wide(y), wide(xW_p(x)), wide(yW_p(y)));
    return 0;
}
