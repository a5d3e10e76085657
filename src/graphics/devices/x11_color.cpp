#include <algorithm>
#include <bit>
#include <cmath>

#include "graphics/core/state.h"
#include "graphics/devices/x11.h"
#include "graphics/devices/x11_state.h"
#include "lib/report/message.h"

namespace {

constexpr float kFull = 65535; ///< a component of 1

unsigned short to_server(float component) {
    return static_cast<unsigned short>(std::clamp(component, 0.0F, 1.0F) * kFull);
}
float from_server(unsigned short component) {
    return static_cast<float>(component) / kFull;
}

XColor make_color(const Rgb &color) {
    XColor result{};
    result.red = to_server(color.red);
    result.green = to_server(color.green);
    result.blue = to_server(color.blue);
    result.flags = DoRed | DoGreen | DoBlue;
    return result;
}

Rgb make_rgb(const XColor &color) {
    return {from_server(color.red), from_server(color.green), from_server(color.blue)};
}

/// The level of one component nearest to `value` in a field of a pixel, and the value that the level shows.
unsigned long field(unsigned long mask, unsigned short &value) {
    if (mask == 0) return 0;
    const int shift = std::countr_zero(mask);
    const unsigned long top = mask >> shift;
    const auto full = static_cast<unsigned long>(kFull);
    const unsigned long level = (value * top + full / 2) / full;
    value = static_cast<unsigned short>(level * full / top);
    return level << shift;
}

/// A pixel of a true-colour visual says its own colour: no need to ask the server.
bool compose(const X11Session &s, XColor &color) {
    if (s.visual->c_class != TrueColor) return false;
    color.pixel = field(s.visual->red_mask, color.red) | field(s.visual->green_mask, color.green) |
                  field(s.visual->blue_mask, color.blue);
    return true;
}

bool shared_color(const X11Session &s, XColor &color) {
    return compose(s, color) || XAllocColor(s.display(), s.colors(), &color) != 0;
}

/// A read-write cell of our own. Without one, read-write colours are over.
bool own_cell(const X11Session &s, XColor &color) {
    unsigned long pixel = 0;
    const bool had = XAllocColorCells(s.display(), s.colors(), False, nullptr, 0, &pixel, 1) != 0;
    MESS_print(kDebug, "Allocated RW Cells: %d\n", had ? 1 : 0);
    gstate().rw_colors = had;
    if (!had) return false;
    color.pixel = pixel;
    XStoreColor(s.display(), s.colors(), &color);
    XQueryColor(s.display(), s.colors(), &color);
    return true;
}

void trace(const char *what, int index, const Rgb &asked, const XColor &got) {
    MESS_print(kDebug, "%s: %d %ld (%.2f %.2f %.2f) (%5d %5d %5d)\n", what, index,
               static_cast<long>(got.pixel), static_cast<double>(asked.red), static_cast<double>(asked.green),
               static_cast<double>(asked.blue), got.red, got.green, got.blue);
}

} // namespace

RasterColor gx11_alloc_color(int index, const Rgb &color, long pixel) {
    const X11Session *const s = x11_session();
    if (s == nullptr) return {};
    XColor wanted = make_color(color);
    const char *done = nullptr;
    if (pixel >= 0 && gstate().rw_colors && s->visual->c_class != TrueColor) {
        wanted.pixel = static_cast<unsigned long>(pixel);
        XStoreColor(s->display(), s->colors(), &wanted);
        XQueryColor(s->display(), s->colors(), &wanted);
        done = "Stored RW Cells";
    } else if (pixel < 0 && gstate().rw_colors && own_cell(*s, wanted)) {
        done = "Stored new RW Cells";
    } else if (shared_color(*s, wanted)) {
        done = pixel < 0 ? "Allocated new RW Cells" : "Allocated RW Cells";
    }
    if (done == nullptr) return {};
    trace(done, index, color, wanted);
    return {static_cast<long>(wanted.pixel), make_rgb(wanted)};
}

std::optional<Rgb> gx11_parse_color(std::string_view name) {
    const X11Session *const s = x11_session();
    XColor color{};
    if (s == nullptr || XParseColor(s->display(), s->colors(), std::string(name).c_str(), &color) == 0)
        return std::nullopt;
    return make_rgb(color);
}

void gx11_set_background(long pixel) {
    X11Session *const s = x11_session();
    if (s == nullptr || pixel < 0) return;
    s->background = static_cast<unsigned long>(pixel);
    XSetWindowBackground(s->display(), s->window.get(), s->background);
    XSetForeground(s->display(), s->root_context.get(), s->background);
    for (const XDrawing &context : s->contexts) XSetBackground(s->display(), context.get(), s->background);
}
