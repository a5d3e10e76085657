#pragma once
/// The one state of the graphics floor. Only the floor's own sources include this header; plotting code asks
/// and sets through kernel.h.

#include <array>
#include <string>

#include "graphics/core/attribute_set.h"
#include "graphics/core/mapping.h"
#include "graphics/core/types.h"

struct Device;

inline constexpr int kPixelUnset = -1;     ///< never stored
inline constexpr int kPixelPrintOnly = -2; ///< known to the print device

struct ColorSlot {
    Rgb rgb;
    int pixel = kPixelUnset;
};

/// The slot behind the last colour index is the background (index -1).
inline constexpr int kBackgroundSlot = kColorSlots;

inline constexpr int kDefaultWidth = 640, kDefaultHeight = 512;

struct GraphicsState {
    bool kernel_open = false; ///< errors are reported
    bool open = false;        ///< a workstation is open
    DeviceKind kind = DeviceKind::none;
    const Device *device = nullptr; ///< its operations; null without a workstation
    int win_width = kDefaultWidth, win_height = kDefaultHeight; ///< device units
    int win_x = 0, win_y = 0;                                   ///< device offset
    std::string title;   ///< of the window; file devices write it into their header
    std::string program; ///< name for X resources

    std::array<TransformRect, kTransformCount> windows, viewports;
    int current_transform = 0;
    TransformRect ws_viewport; ///< device units
    Mapping map;
    ClipRect clip;

    LineState line;
    MarkerState marker;
    TextState text;
    FillState fill;
    // Not among the attributes that a plot initialisation resets
    int line_print_bold = 1;  ///< multiplies the line widths of print devices
    int fill_print_solid = 0; ///< print devices fill black
    int font_drop = 0;        ///< copies of a drop shadow, window devices

    std::array<ColorSlot, kColorSlots + 1> colors;
    int max_color = -1;    ///< highest index stored
    bool inverse = false;  ///< dark on light background, see gset_inverse
    bool rw_colors = true; ///< window devices: read-write colour cells while there are any
    bool local_colormap = false;
};

GraphicsState &gstate();
