#pragma once
/// The frames and the loop as they are kept: for the sources of this room only.

#include <array>
#include <string>

#include "graphics/devices/common/raster_types.h"
#include "graphics/window/frame_numbers.h"

inline constexpr float kFirstDelay = 0.5F; ///< seconds

struct Frame {
    PixmapId pixmap = kNoPixmap;
    float delay = kFirstDelay; ///< seconds
    std::string source;        ///< what the picture was made from, in the words of who drew it
};

struct FrameTable {
    std::array<Frame, kMaxFrames> frames;
    int count = 0;
    int current = -1; ///< the frame shown last; -1 before any
    int place = -1;   ///< `current` before the frames were forgotten

    bool looping = false;
    float delay = kFirstDelay;     ///< seconds
    float last_delay = kLastDelay; ///< seconds; the last frame's
    bool proportional = false;     ///< it follows the delay of the others
    int direction = kLoopForward;
    bool titles = true;      ///< the window title tells the frame
    int refresh_seconds = 0; ///< 0: never
    void (*refresh)() = nullptr;
    void (*deleted)(int frame) = nullptr;
};

FrameTable &gframe_table();
/// A display is there and something to draw into.
[[nodiscard]] bool gframes_possible();
[[nodiscard]] bool is_frame_slot(int frame);
/// Of a number that is_frame_slot.
Frame &gframe_slot(int frame);
/// Selectors -1 and -2 to a number; others stay.
[[nodiscard]] int gframe_number(int selector);
/// The pixmap of a frame or the base picture; kNoPixmap where there is none.
PixmapId gframe_pixmap(int selector);
