/// Zoom by pixel replication. The source is always the unzoomed picture: a frame, or the copy of the base
/// picture that was kept when zooming began.

#include <algorithm>

#include "graphics/core/error.h"
#include "graphics/core/state.h"
#include "graphics/devices/raster/display.h"
#include "graphics/window/events.h"
#include "graphics/window/frames.h"
#include "graphics/window/replicate.h"

namespace {

constexpr int kMaxZoom = 1024;

struct State {
    int zoom = 1;
    int left = 0, top = 0;      ///< first pixel of the unzoomed picture that shows
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
    if (factor == -1) return state.zoom;
    const long long zoom = factor >= 0 ? factor : -static_cast<long long>(factor) * state.zoom;
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
    return graster_display() != RasterDisplay::none && gstate().kind != DeviceKind::pix;
}

} // namespace

int gzoom(int frame, int x, int y, int factor, int keep) {
    if (!can_zoom() || (state.zoom == 1 && keep != 0)) return 0;
    const bool grows = factor < -1;
    if (state.zoom == kMaxZoom && grows) {
        gerr_printf("gzoom", "Cannot zoom past %dx\n", kMaxZoom);
        return 0;
    }
    const int zoom = wanted_zoom(factor);
    if (zoom == 1) return gunzoom();
    const bool framed = gget_num_images() > 0;
    if (!framed) save_base();
    const PixmapId source = framed ? gget_frame_id(frame) : state.saved;
    RasterImage image;
    if (source == kNoPixmap || !graster_read(source, image)) return 0;

    const int width = gstate().win_width, height = gstate().win_height;
    const int centre_x = x == -1 ? state.left + width / state.zoom / 2 : state.left + x / state.zoom;
    const int centre_y = y == -1 ? state.top + height / state.zoom / 2 : state.top + y / state.zoom;
    state.zoom = zoom;
    state.left = first_shown(centre_x, width, zoom);
    state.top = first_shown(centre_y, height, zoom);
    graster_write(graster_base(), replicate_pixels(image, state.left, state.top, zoom), {}, 0, 0);
    gupdate_window();
    return 1;
}

int gunzoom() {
    if (!can_zoom() || state.zoom == 1) return 0;
    const PixelRect area = base_area();
    const bool kept = state.saved != kNoPixmap;
    if (kept) graster_copy(state.saved, graster_base(), area, area.x, area.y);
    forget_zoom();
    if (kept)
        gupdate_window();
    else
        gdisplay_frame(kFrameCurrent);
    return 1;
}

void greset_zoom() {
    forget_zoom();
}

int gget_zoom() {
    return state.zoom;
}

float xZ_p(float x) {
    return x / static_cast<float>(state.zoom) + static_cast<float>(state.left);
}

float yZ_p(float y) {
    return y / static_cast<float>(state.zoom) + static_cast<float>(state.top);
}
