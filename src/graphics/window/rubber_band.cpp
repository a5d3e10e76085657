#include "graphics/window/rubber_band.h"

#include "graphics/core/mapping.h"
#include "graphics/devices/raster/display.h"
#include "graphics/devices/x11/display.h"

namespace {

constexpr std::int16_t kUnset = -10000;

struct State {
    int kind = 0; ///< 0 none, 1 a line, else a rectangle
    PixelPoint anchor{kUnset, kUnset};
    PixelPoint current{kUnset, kUnset}; ///< end of the outline on the window; unset: none is there
} state;

PixelPoint pixel(int x, int y) {
    const auto limited = [](int v) {
        return static_cast<std::int16_t>(clamp_coordinate(static_cast<float>(v), kPixelLimit));
    };
    return {limited(x), limited(y)};
}

bool is_set(const PixelPoint &p) {
    return p.x != kUnset;
}

void outline(bool invert) {
    if (graster_display() == RasterDisplay::x11)
        gx11_outline(state.kind, state.anchor, state.current, invert);
}

} // namespace

void gset_rubber_band(int kind) {
    state.kind = kind;
}

void band_press(int x, int y) {
    state.anchor = pixel(x, y);
    state.current = {kUnset, kUnset};
}

void band_move(int x, int y) {
    if (state.kind == 0 || !is_set(state.anchor)) return;
    if (is_set(state.current)) outline(true);
    state.current = pixel(x, y);
    outline(true);
}

void band_show() {
    if (state.kind != 0 && is_set(state.current)) outline(true);
}

void band_release() {
    if (state.kind != 0 && is_set(state.current)) {
        outline(true);
        outline(false);
    }
    state = State{};
}

void band_reset() {
    state = State{};
}

bool band_is_set() {
    return state.kind != 0 && is_set(state.anchor);
}

bool band_cancel() {
    if (!band_is_set()) return false;
    if (is_set(state.current)) outline(true);
    band_reset();
    return true;
}
