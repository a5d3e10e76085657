#pragma once
/// What the kernel asks of a device: one record of operations each, and the table that leads to it. The
/// kernel has checked, clipped to the window and recorded; points are world coordinates of the current
/// transform.

#include <span>
#include <string_view>

#include "graphics/core/types.h"
#include "graphics/kernel/kernel.h"

struct PrintInk;

struct Device {
    PlotMode mode;     ///< how a plot is set up on it
    bool raster;       ///< pixels that stay: fonts and colour cells of its own
    bool window;       ///< the program's own window besides: frames, events, objects that are kept
    float marker_unit; ///< device units of a unit of the window
    /// Opens it by its specification and sets size and offset of the state. -1 after a message.
    int (*open)(std::string_view device_spec);
    /// -1 when what was written is not complete.
    int (*close)();
    /// What was written will not be whole.
    void (*abandon)();
    /// Ends the page and begins another. -1 where there can be none.
    int (*new_page)();
    /// Takes the clip of the state.
    void (*install_clip)();
    /// Stores the background that it begins with.
    void (*init_background)();
    /// The next five: -1 after a report for `operation` when memory is out.
    int (*polyline)(const char *operation, std::span<const Point> world);
    int (*fill_area)(const char *operation, std::span<const Point> world);
    int (*stroke)(const char *operation, std::span<const Point> world);
    int (*clear_region)(const char *operation, const Rect &world);
    void (*markers)(std::span<const Point> world, float half);
    void (*text)(const Point &position, std::string_view string);
    /// A text of strokes begins.
    void (*begin_text)(const Point &world, std::string_view string);
    void (*message)(std::string_view text);
    const PrintInk *ink; ///< of a device that puts ink on pages, else null
};

/// The device of a kind; null for none, and for kinds that this version does not have.
const Device *gdevice_of(DeviceKind kind);
/// The open one. Without a workstation a device on which nothing happens.
const Device &gdevice();
