#include <algorithm>

#include "graphics/core/mapping.h"
#include "graphics/core/state.h"
#include "graphics/kernel/argument_checks.h"
#include "graphics/kernel/kernel.h"

namespace {

void remap() {
    refresh_mapping();
    install_clip();
}

} // namespace

int gset_win(int transform, const Rect &world) {
    if (!transform_valid("gset_win", transform)) return -1;
    GraphicsState &s = gstate();
    record_rect(ObjectType::window, transform, world);
    s.windows[static_cast<std::size_t>(transform)] = make_transform_rect(world);
    // The viewport, and with it the device's clip, stays.
    if (transform == s.current_transform) refresh_mapping();
    return 0;
}

int gset_vp(int transform, const Rect &ndc) {
    if (!transform_valid("gset_vp", transform)) return -1;
    GraphicsState &s = gstate();
    record_rect(ObjectType::viewport, transform, ndc);
    s.viewports[static_cast<std::size_t>(transform)] = make_transform_rect(ndc);
    if (transform == s.current_transform) remap();
    return 0;
}

int gsel_norm_tran(int transform) {
    if (!transform_valid("gsel_norm_tran", transform)) return -1;
    GraphicsState &s = gstate();
    if (transform == s.current_transform) return 0;
    record_value(ObjectType::select_transform, transform);
    s.current_transform = transform;
    remap();
    return 0;
}

int gset_ws_win(int ws, const Rect &ndc) {
    record_rect(ObjectType::ws_window, ws, ndc);
    gstate().map.ws_window = make_transform_rect(ndc);
    remap();
    return 0;
}

int gset_ws_vp(int ws, const Rect &device) {
    record_rect(ObjectType::ws_viewport, ws, device);
    gstate().ws_viewport = make_transform_rect(device);
    remap();
    return 0;
}

int ginq_norm_tran(int transform, Rect &window, Rect &viewport) {
    if (!transform_valid("ginq_norm_tran", transform)) return -1;
    const auto number = static_cast<std::size_t>(transform);
    window = to_rect(gstate().windows[number]);
    viewport = to_rect(gstate().viewports[number]);
    return 0;
}

void ginq_maxview(int /*ws*/, float &xmax, float &ymax) {
    // A device of one unit has no extent; it counts as square.
    const auto width = static_cast<float>(std::max(1, gstate().win_width - 1));
    const auto height = static_cast<float>(std::max(1, gstate().win_height - 1));
    const bool wide = width > height;
    xmax = wide ? 1 : width / height;
    ymax = wide ? height / width : 1;
}

void ginq_disp_space_size(int /*ws*/, float &width_units, float &height_units, int &width, int &height) {
    width = gstate().win_width;
    height = gstate().win_height;
    width_units = static_cast<float>(width - 1);
    height_units = static_cast<float>(height - 1);
}
