#include "graphics/window/zoom.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "graphics/core/error.h"
#include "graphics/core/state.h"
#include "graphics/devices/raster/display.h"
#include "graphics/kernel/kernel.h"
#include "graphics/window/frame_table.h"
#include "graphics/window/replicate.h"
#include "graphics/window/surface.h"

namespace {

constexpr int kMaxZoom = 1024;

struct View {
    int zoom = 1;
    int left = 0, top = 0; ///< first pixel of the unzoomed picture that shows
};

struct Zoom {
    View view;
    std::vector<View> before; ///< the views with a smaller zoom that led here
};

struct State {
    Zoom now;
    Zoom suspended;             ///< while a picture is drawn anew
    PixmapId saved = kNoPixmap; ///< the unzoomed base picture, while zoomed without frames
} state;

int shown(int size, int zoom) {
    return (size + zoom - 1) / zoom;
}

/// First visible pixel when `centre` is to be in the middle; the part stays inside the picture.
int first_shown(int centre, int size, int zoom) {
    return std::clamp(centre - size / zoom / 2, 0, std::max(size - shown(size, zoom), 0));
}

int wanted_zoom(int factor) {
    const int present = state.now.view.zoom;
    if (factor == -1) return present;
    const long long zoom = factor >= 0 ? factor : -static_cast<long long>(factor) * present;
    return static_cast<int>(std::clamp<long long>(zoom, 1, kMaxZoom));
}

PixelRect base_area() {
    const GraphicsState &s = gstate();
    return {s.win_x, s.win_y, s.win_width, s.win_height};
}

void save_base() {
    if (state.saved != kNoPixmap) return;
    const PixelRect area = base_area();
    state.saved = graster_create_pixmap(area.x + area.width, area.y + area.height);
    graster_copy(graster_base(), state.saved, area, area.x, area.y);
}

void forget_zoom() {
    if (state.saved != kNoPixmap && graster_display() != RasterDisplay::none)
        graster_free_pixmap(state.saved);
    state = State{};
}

bool can_zoom() {
    return gtype_is_WIN();
}

void restore_base() {
    const PixelRect area = base_area();
    const PixmapId picture = state.saved != kNoPixmap ? state.saved : gframe_pixmap(kFrameCurrent);
    if (picture != kNoPixmap) graster_copy(picture, graster_base(), area, area.x, area.y);
}

/// Shows the part of a frame, or of the base picture when there are none. False when there is no picture.
bool show(const View &view, int frame) {
    const bool framed = gframe_table().count > 0;
    if (!framed) save_base();
    const PixmapId source = framed ? gframe_pixmap(frame) : state.saved;
    RasterImage image;
    if (source == kNoPixmap || !graster_read(source, image)) return false;
    state.now.view = view;
    graster_write(graster_base(), replicate_pixels(image, view.left, view.top, view.zoom), {}, 0, 0);
    gupdate_window();
    return true;
}

/// The way here, when the view is followed by another.
std::vector<View> way_to(int zoom) {
    std::vector<View> way = state.now.before;
    way.push_back(state.now.view);
    std::erase_if(way, [zoom](const View &view) { return view.zoom >= zoom; });
    return way;
}

} // namespace

int gzoom(int frame, int x, int y, int factor, int keep) {
    const View &now = state.now.view;
    if (!can_zoom() || (now.zoom == 1 && keep != 0)) return 0;
    const bool grows = factor < -1;
    if (now.zoom == kMaxZoom && grows) {
        gerr_printf("gzoom", "Cannot zoom past %dx\n", kMaxZoom);
        return 0;
    }
    const int zoom = wanted_zoom(factor);
    if (zoom == 1) return gunzoom();
    const int width = gstate().win_width, height = gstate().win_height;
    const int centre_x = x == -1 ? now.left + width / now.zoom / 2 : now.left + x / now.zoom;
    const int centre_y = y == -1 ? now.top + height / now.zoom / 2 : now.top + y / now.zoom;
    std::vector<View> way = way_to(zoom);
    if (!show({zoom, first_shown(centre_x, width, zoom), first_shown(centre_y, height, zoom)}, frame))
        return 0;
    state.now.before = std::move(way);
    return 1;
}

int gunzoom() {
    if (!can_zoom() || state.now.view.zoom == 1) return 0;
    restore_base();
    forget_zoom();
    gupdate_window();
    return 1;
}

int gzoom_back() {
    std::vector<View> &before = state.now.before;
    if (!can_zoom() || state.now.view.zoom == 1) return 0;
    if (before.empty() || before.back().zoom == 1) return gunzoom();
    if (show(before.back(), kFrameCurrent)) before.pop_back();
    return 1;
}

int gsuspend_zoom() {
    restore_base();
    Zoom zoom = std::move(state.now);
    forget_zoom();
    state.suspended = std::move(zoom);
    return state.suspended.view.zoom;
}

void gresume_zoom(bool keep) {
    Zoom zoom = std::exchange(state.suspended, {});
    if (!keep || !can_zoom() || zoom.view.zoom == 1 || !show(zoom.view, kFrameCurrent)) return;
    state.now.before = std::move(zoom.before);
}

void greset_zoom() {
    forget_zoom();
}

int gget_zoom() {
    return state.now.view.zoom;
}

float xZ_p(float x) {
    return x / static_cast<float>(state.now.view.zoom) + static_cast<float>(state.now.view.left);
}

float yZ_p(float y) {
    return y / static_cast<float>(state.now.view.zoom) + static_cast<float>(state.now.view.top);
}
