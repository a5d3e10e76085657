#include "graphics/window/keys.h"

#include "graphics/devices/raster/display.h"
#include "graphics/window/events.h"
#include "graphics/window/frames.h"
#include "lib/report/message.h"

namespace {

constexpr float kStep = 0.1F, kFineStep = 0.05F;            ///< seconds of loop delay
constexpr float kFineBelow = 0.11F, kFineUpToBelow = 0.09F; ///< delays near the fast end
constexpr int kToggle = -1;
constexpr int kZoomStep = -2; ///< multiplies

void show_neighbour(int step) {
    if (gget_num_images() > 0) gdisplay_frame(ginc_frame(step));
}

void faster_or_next() {
    if (gget_looping() != 0)
        ginc_loop_delay(gget_loop_delay() <= kFineBelow ? -kFineStep : -kStep);
    else
        show_neighbour(1);
}

void slower_or_previous() {
    if (gget_looping() != 0)
        ginc_loop_delay(gget_loop_delay() < kFineUpToBelow ? kFineStep : kStep);
    else
        show_neighbour(-1);
}

void zoom_at_pointer() {
    const PixelPoint pointer = gx11_pointer();
    gzoom(gget_cur_frame(), pointer.x, pointer.y, kZoomStep, 0);
}

std::string with_modifiers(std::string name, const RasterEvent &event) {
    if (event.alt) name += "-Alt";
    if (event.shift) name += "-Shft";
    if (event.control) name += "-Cntrl";
    return name;
}

} // namespace

bool is_quit_key(const RasterEvent &event) {
    return event.is_return || (event.alt && event.key == "q");
}

bool act_on_key(const RasterEvent &event) {
    if (!event.alt || event.key.size() != 1) return true;
    switch (event.key.front()) {
    case 'd': gdelete_frame(kFrameCurrent); break;
    case 'z': zoom_at_pointer(); break;
    case 'u': return gunzoom() == 0;
    case 'm': MESS_print(kWarn, "gprocess_x11_event: Metafiles are not written by this version\n"); break;
    case 'g': write_gif_files(); break;
    case 'x': write_xwd_files(); break;
    case 'l': gtoggle_loop(kToggle); break;
    case ']': faster_or_next(); break;
    case '[': slower_or_previous(); break;
    default: break;
    }
    return true;
}

void act_on_button(const RasterEvent &event) {
    if (event.alt) return;
    switch (event.button) {
    case 1: slower_or_previous(); break;
    case 2: gtoggle_loop(kToggle); break;
    case 3: faster_or_next(); break;
    default: break;
    }
}

std::string key_name(const RasterEvent &event) {
    return with_modifiers(event.is_return ? "Ret" : event.key, event);
}

std::string button_name(const RasterEvent &event, char what) {
    return with_modifiers("B" + std::to_string(event.button) + "-" + what, event);
}
