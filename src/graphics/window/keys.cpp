#include "graphics/window/keys.h"
#include "graphics/window/loop.h"
#include "graphics/window/zoom.h"

#include "graphics/devices/raster/display.h"
#include "graphics/kernel/kernel.h"
#include "graphics/window/frame_table.h"
#include "graphics/window/frames.h"
#include "graphics/window/surface.h"
#include "lib/report/message.h"

namespace {

constexpr float kStep = 0.1F, kFineStep = 0.05F;            ///< seconds of loop delay
constexpr float kFineBelow = 0.11F, kFineUpToBelow = 0.09F; ///< delays near the fast end
constexpr float kRatio = 1.4678F;                           ///< of two paces: six steps are a tenfold
constexpr int kToggle = -1;
constexpr int kWheelUp = 4, kWheelDown = 5; ///< buttons
constexpr int kZoomStep = -2;               ///< multiplies

void show_neighbour(int step) {
    if (gget_num_images() > 0) gdisplay_frame(ginc_frame(step));
}

/// Arrows and wheel: whoever steps wants to look at the frame, so the loop stands from here on.
void step(int by) {
    if (gget_num_images() < 2) return;
    if (gget_looping() != 0) gset_looping(0);
    show_neighbour(by);
}

void delete_current() {
    const FrameTable &t = gframe_table();
    const int frame = t.current;
    if (gdelete_frame(kFrameCurrent) == 1 && t.deleted != nullptr) t.deleted(frame);
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

void write_metafile() {
    constexpr int kBusyCursor = 8, kBellPercent = 50;
    const int cursor = gset_cursor(kBusyCursor);
    (void)gobj_print_meta(); // told, and the window stays
    gset_cursor(cursor);
    gbell(kBellPercent);
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

bool act_on_named_key(const RasterEvent &event) {
    if (event.alt || event.shift || event.control) return true;
    switch (event.named) {
    case NamedKey::escape: return gzoom_back() == 0;
    case NamedKey::left: step(-1); break;
    case NamedKey::right: step(1); break;
    case NamedKey::up: gscale_loop_delay(1 / kRatio); break;
    case NamedKey::down: gscale_loop_delay(kRatio); break;
    case NamedKey::none: break;
    }
    return true;
}

} // namespace

bool is_quit_key(const RasterEvent &event) {
    return event.is_return || (event.alt && event.key == "q");
}

bool is_escape(const RasterEvent &event) {
    return event.named == NamedKey::escape;
}

bool is_wheel(const RasterEvent &event) {
    return event.button == kWheelUp || event.button == kWheelDown;
}

bool act_on_key(const RasterEvent &event) {
    if (event.named != NamedKey::none) return act_on_named_key(event);
    if (!event.alt || event.key.size() != 1) return true;
    switch (event.key.front()) {
    case 'd': delete_current(); break;
    case 'z': zoom_at_pointer(); break;
    case 'u': return gunzoom() == 0;
    case 'm': write_metafile(); break;
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
    if (event.alt || (event.shift && event.button == 1)) return;
    switch (event.button) {
    case 1: slower_or_previous(); break;
    case 2: gtoggle_loop(kToggle); break;
    case 3: faster_or_next(); break;
    case kWheelUp: step(-1); break;
    case kWheelDown: step(1); break;
    default: break;
    }
}

std::string key_name(const RasterEvent &event) {
    return with_modifiers(event.is_return ? "Ret" : event.key, event);
}

std::string button_name(const RasterEvent &event, char what) {
    return with_modifiers("B" + std::to_string(event.button) + "-" + what, event);
}
