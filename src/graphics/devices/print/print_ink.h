#pragma once
/// What a device writes that puts ink on a page: all points in its own units, upwards, clipped to the window
/// and checked. A write error is remembered and reported once, at close.

#include <span>
#include <string_view>

#include "graphics/core/color_slots.h"
#include "graphics/core/types.h"
#include "graphics/devices/print/setup_file.h"

/// Print-only colours come in threes of black, white and grey: 0 plain, 1 bold, 2 very bold; others are
/// plain.
inline int print_boldness(int index) {
    return is_print_only_color(index) ? (index - kColorPrintFirst) % 3 : 0;
}
/// What multiplies the width of a line of such boldness; `plain` that of plain ones.
constexpr float print_bold_factor(int boldness, int plain) {
    return boldness == 0 ? static_cast<float>(plain) : boldness == 1 ? 2.0F : 4.0F;
}

struct PrintInk {
    float marker_unit; ///< device units of a unit of the window: markers look alike
    /// Opens the output that a device specification names and begins it; sets the drawing area. -1 after a
    /// message.
    int (*open)(std::string_view device_spec, DrawingArea &page);
    /// Ends the output and closes it. -1 after a message when it is not complete.
    int (*close)();
    /// Closes without the end: the output will not be whole.
    void (*abandon)();
    /// Ends the page and begins another; the clip must be set again. -1 after a message where there can be
    /// none.
    int (*new_page)();
    void (*clip)(const Rect &device);
    void (*polyline)(std::span<const Point> device, int color, float width, int type);
    void (*fill_area)(std::span<const Point> device, int color);
    /// Begin markers (their number) or text (its world position and string): width, colour, solid type.
    void (*begin_markers)(int count, int color, float width);
    void (*begin_text)(const Point &world, std::string_view text, int color, float width);
    /// One marker or text stroke path, in what was begun.
    void (*stroke)(std::span<const Point> device);
    /// Fills a rectangle path with the background.
    void (*clear_region)(std::span<const Point> device);
    void (*message)(std::string_view text);
    /// The drawing follows another one whose attributes are still in force for a reader; null where none can
    /// be.
    bool (*joins_drawing)() = nullptr;
};
