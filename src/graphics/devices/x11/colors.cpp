#include <algorithm>
#include <bit>
#include <cmath>
#include <utility>

#include "graphics/core/error.h"
#include "graphics/core/state.h"
#include "graphics/devices/x11/display.h"
#include "graphics/devices/x11/state.h"
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

void store(const X11Session &s, XColor &color) {
    XStoreColor(s.display(), s.colors(), &color);
    XQueryColor(s.display(), s.colors(), &color);
}

/// A read-write cell of our own. Without one, read-write colours are over.
bool own_cell(X11Session &s, XColor &color) {
    unsigned long pixel = 0;
    const bool had = XAllocColorCells(s.display(), s.colors(), False, nullptr, 0, &pixel, 1) != 0;
    MESS_print(kDebug, "Allocated RW Cells: %d\n", had ? 1 : 0);
    gstate().rw_colors = had;
    if (!had) return false;
    color.pixel = pixel;
    s.own_cells.insert(pixel);
    store(s, color);
    return true;
}

/// How light the eye takes a colour for, of the sum of its components' shares 1 (ITU-R BT.601, rounded).
constexpr float kRedShare = 0.30F, kGreenShare = 0.59F, kBlueShare = 0.11F;

/// Square of the difference that is seen, 0 to 1.
float difference(const XColor &a, const XColor &b) {
    const Rgb first = make_rgb(a), second = make_rgb(b);
    const auto square = [](float x) { return x * x; };
    return kRedShare * square(first.red - second.red) + kGreenShare * square(first.green - second.green) +
           kBlueShare * square(first.blue - second.blue);
}

void tell_full(X11Session &s) {
    if (std::exchange(s.told_full, true)) return;
    gerr_printf("galloc_colr", "the colour map is full, the nearest colours are taken%s\n",
                s.own_colors ? "" : "; -pp lcmap gives the window a map of its own");
}

/// The cell is ours, or becomes ours and others' together, so that nobody changes it.
bool share_cell(X11Session &s, XColor &cell) {
    if (s.own_cells.contains(cell.pixel)) return true;
    if (s.foreign_cells.contains(cell.pixel)) return false;
    const unsigned long pixel = cell.pixel;
    if (XAllocColor(s.display(), s.colors(), &cell) != 0) return true;
    s.foreign_cells.insert(pixel);
    return false;
}

/// The nearest of the colours that a full map has. Cells that another program writes may change at any time:
/// one is taken only where every shared cell is much farther off.
bool nearest_color(X11Session &s, XColor &color) {
    const bool mapped = s.visual->c_class == PseudoColor || s.visual->c_class == GrayScale;
    if (!mapped || s.depth > kMaxMappedDepth) return false;
    tell_full(s);
    std::vector<XColor> cells = x11_map_cells(s);
    std::ranges::stable_sort(cells, {}, [&color](const XColor &cell) { return difference(cell, color); });
    constexpr float kMuchFarther = 4, kStillNear = 0.01F; // of squares
    const float farthest = std::max(kMuchFarther * difference(cells.front(), color), kStillNear);
    const XColor wanted = color;
    color = cells.front();
    for (XColor &cell : cells) {
        if (difference(cell, wanted) > farthest) break;
        if (!share_cell(s, cell)) continue;
        color = cell;
        break;
    }
    return true;
}

void trace(const char *what, int index, const Rgb &asked, const XColor &got) {
    MESS_print(kDebug, "%s: %d %ld (%.2f %.2f %.2f) (%5d %5d %5d)\n", what, index,
               static_cast<long>(got.pixel), static_cast<double>(asked.red), static_cast<double>(asked.green),
               static_cast<double>(asked.blue), got.red, got.green, got.blue);
}

} // namespace

std::vector<XColor> x11_map_cells(const X11Session &session) {
    std::vector<XColor> cells(std::size_t{1} << session.depth);
    for (std::size_t i = 0; i < cells.size(); ++i) cells[i].pixel = i;
    XQueryColors(session.display(), session.colors(), cells.data(), static_cast<int>(cells.size()));
    return cells;
}

RasterColor gx11_alloc_color(int index, const Rgb &color, long pixel) {
    X11Session *const s = x11_session();
    if (s == nullptr) return {};
    XColor wanted = make_color(color);
    const char *done = nullptr;
    const bool own = pixel >= 0 && s->own_cells.contains(static_cast<unsigned long>(pixel));
    if (own && gstate().rw_colors) {
        wanted.pixel = static_cast<unsigned long>(pixel);
        store(*s, wanted);
        done = "Stored RW Cells";
    } else if (pixel < 0 && gstate().rw_colors && own_cell(*s, wanted)) {
        done = "Stored new RW Cells";
    } else if (shared_color(*s, wanted) || nearest_color(*s, wanted)) {
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

namespace {

/// Black or white in the window's own colour map, whichever is seen on the background.
unsigned long visible_ink(X11Session &s) {
    XColor back{};
    back.pixel = s.background;
    XQueryColor(s.display(), s.colors(), &back);
    const Rgb color = make_rgb(back);
    const float light = kRedShare * color.red + kGreenShare * color.green + kBlueShare * color.blue;
    const float other = light > 0.5F ? 0.0F : 1.0F;
    XColor ink = make_color({other, other, other});
    return shared_color(s, ink) || nearest_color(s, ink) ? ink.pixel : s.foreground;
}

} // namespace

void gx11_set_background(long pixel) {
    X11Session *const s = x11_session();
    if (s == nullptr || pixel < 0) return;
    s->background = static_cast<unsigned long>(pixel);
    s->ink = visible_ink(*s);
    if (!s->foreign) XSetWindowBackground(s->display(), s->window.get(), s->background);
    XSetForeground(s->display(), s->root_context.get(), s->background);
    for (const XDrawing &context : s->contexts) XSetBackground(s->display(), context.get(), s->background);
}
