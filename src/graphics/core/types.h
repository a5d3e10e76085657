#pragma once
/// Plain types of the graphics floor.

#include "lib/text/missing.h"

/// What the workstation is. The codes are those of the device flag, which has others too (3 metafile, 5 HPGL,
/// 6 window or pixmap of another program): a kind that is no enumerator is refused when it is opened.
enum class DeviceKind : int {
    none = 0, ///< not chosen: the user is asked
    win = 1,  ///< the program's own X11 window
    meta = 3, ///< a metafile
    ps = 4,   ///< PostScript
    hpgl = 5, ///< plotter language
    pix = 6   ///< a window or pixmap of another program
};

/// A position; world, normalised device (NDC) or device units as said where it is used.
struct Point {
    float x = 0, y = 0;
    friend bool operator==(const Point &, const Point &) = default;
};

/// A rectangle in the order in which callers give it.
struct Rect {
    float xmin = 0, xmax = 1, ymin = 0, ymax = 1;
    [[nodiscard]] float width() const { return xmax - xmin; }
    [[nodiscard]] float height() const { return ymax - ymin; }
    friend bool operator==(const Rect &, const Rect &) = default;
};

struct Rgb {
    float red = 0, green = 0, blue = 0; ///< 0 to 1
    friend bool operator==(const Rgb &, const Rgb &) = default;
};

/// Attributes of a primitive. kMissing in a field (a negative colour for the kernel) leaves it unchanged.
struct Attribute {
    int color = kMissing;        ///< colour index; -1 draws nothing, -2 ends a list
    float width = kMissingF;     ///< line width, device units
    float height = kMissingF;    ///< text height or marker size
    float expansion = kMissingF; ///< text expansion
    int style = kMissing;        ///< line type 1 to 5 or marker type 1 to 9
    int fill = kMissing;         ///< fill pattern, 0 solid
    int font = kMissing;         ///< font index from 1
};

inline constexpr int kColorBackground = -1; ///< also "draw nothing" in level lists
inline constexpr int kColorEnd = -2;
inline constexpr int kColorSlots = 256;      ///< indices 0 to 255
inline constexpr int kColorPrintFirst = 500; ///< print-only black, bold and thick; white; grey
inline constexpr int kColorPrintLast = 508;
inline constexpr int kTransformCount = 6;

/// Text alignment codes.
enum HorizontalAlign : int { kAlignNormal = 0, kAlignLeft = 1, kAlignCenter = 2, kAlignRight = 3 };
enum VerticalAlign : int {
    kAlignVNormal = 0,
    kAlignTop = 1,
    kAlignCap = 2,
    kAlignHalf = 3,
    kAlignBase = 4,
    kAlignBottom = 5
};
