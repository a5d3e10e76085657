#pragma once
/// The window of an X server behind the verbs of raster.h: same names and arguments, and what only a window
/// has. One connection at a time; without one every verb does nothing.
///
/// Losing the connection or the window, and the 25th protocol error, end the program with kExitGraphics after
/// a message.
/// Sources: session, window, foreign, colors, drawing, errors, events, pixels, names, state, icon.

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "graphics/devices/common/raster_types.h"

// The verbs of raster.h -----------------------------------------------------------

[[nodiscard]] bool gx11_open(const RasterWish &wish, RasterWindow &window);
void gx11_close();

PixmapId gx11_create_pixmap(int width, int height);
void gx11_free_pixmap(PixmapId pixmap);
void gx11_copy(PixmapId from, PixmapId to, const PixelRect &source, int x, int y);
void gx11_clear(PixmapId pixmap);
void gx11_set_drawable(PixmapId pixmap);
PixmapId gx11_drawable();
void gx11_set_base(PixmapId pixmap);
PixmapId gx11_base();
void gx11_show();

void gx11_set_clip(const PixelRect &clip);
void gx11_set_foreground(RasterContext context, long pixel);
void gx11_set_line(RasterContext context, int width, int type);
void gx11_set_fill(int pattern);

void gx11_lines(RasterContext context, std::span<const PixelPoint> points);
void gx11_point(RasterContext context, PixelPoint point);
void gx11_area(std::span<const PixelPoint> points);
void gx11_rectangle(RasterContext context, const PixelRect &rect);

RasterColor gx11_alloc_color(int index, const Rgb &color, long pixel);
void gx11_set_background(long pixel);

[[nodiscard]] bool gx11_read(PixmapId pixmap, RasterImage &image);
void gx11_write(PixmapId pixmap, const RasterImage &image, std::span<const std::uint8_t> mask, int x, int y);
void gx11_sync();

// What only a window of another program has -----------------------------------------

/// Fills a part of the drawable with the background.
void gx11_clear_area(const PixelRect &area);
/// Shows a part of the drawable in its window, and asks the owner to show it.
void gx11_show_area(const PixelRect &area);
/// The picture is done, and its window is left as it was: what comes behind is no more than a message, since
/// the owner may go at it.
void gx11_leave_picture();
/// Tells the owner by the first data byte of a message. False when there is no window that hears it.
[[nodiscard]] bool gx11_tell_owner(int message);
/// The same, and waits until the owner has taken the mark "+" from the title, but no longer than so many
/// seconds.
[[nodiscard]] bool gx11_ask_owner(int message, float seconds);

/// Numbers of the program's own window and of its colour map, for a program that draws into it; and how many
/// frames have been added for such programs, or that the last one could not be.
unsigned long gx11_window_id();
unsigned long gx11_colormap_id();
void gx11_tell_frames(unsigned count, bool added);

// What only a window has ----------------------------------------------------------

/// An X resource under the program's name; nothing when it is not set.
[[nodiscard]] std::optional<std::string> gx11_default(std::string_view option);
/// The colour that the server knows by this name.
[[nodiscard]] std::optional<Rgb> gx11_parse_color(std::string_view name);

/// Title of window and icon, at most 59 characters, underscores shown as blanks; UTF-8, other bytes are taken
/// for Latin-1.
void gx11_set_title(std::string_view title);
/// Title with a remark behind it; the bare title for an empty one.
void gx11_set_title_extra(std::string_view extra);
/// The window's present name without the title: the remark, from whomever it is.
std::string gx11_title_extra();
/// Tells the window manager which process the window belongs to: again after the program has forked.
void gx11_set_owner();
/// Cursor types as in window/events.h.
void gx11_set_cursor(int type);
/// Volume -100 to 100 percent.
void gx11_bell(int percent);

/// Asks for another size; the event that tells of it comes later.
void gx11_resize(int width, int height);
/// Present size of the window. False when it cannot be had.
[[nodiscard]] bool gx11_window_size(int &width, int &height);
/// Where the pointer is, pixels of the window.
PixelPoint gx11_pointer();

/// An outline on the window alone: a line (kind 1) or a rectangle. Drawing it twice with `invert` leaves the
/// window as it was.
void gx11_outline(int kind, PixelPoint a, PixelPoint b, bool invert);

enum class RasterEventKind : int {
    other, ///< nothing that anybody waits for
    expose,
    map,
    unmap,
    configure,
    message,
    close, ///< the window manager asks the window to go
    key_press,
    button_press,
    button_release,
    motion
};
/// Keys that are known by what they are, not by their text.
enum class NamedKey : int { none, escape, left, right, up, down };
/// One window event without its X types.
struct RasterEvent {
    RasterEventKind kind = RasterEventKind::other;
    int x = 0, y = 0;          ///< pointer, pixels of the window
    int width = 0, height = 0; ///< configure
    int button = 0;            ///< from 1
    int message = 0;           ///< first data byte of a message from a cooperating program
    std::string key;           ///< text of the key, whatever Caps Lock says; empty for one without
    bool is_return = false;    ///< the Return or Enter key
    NamedKey named = NamedKey::none;
    bool alt = false, shift = false, control = false;
};
/// Number of events that wait; never blocks.
int gx11_pending();
/// Waits until an event is there, but no longer than so many seconds. False when none has come.
[[nodiscard]] bool gx11_wait(float seconds);
/// The next event; waits for one. Of a run of pointer motions only the last is told.
RasterEvent gx11_next_event();

// X server fonts, one at a time ---------------------------------------------------

/// False when the server has no such font; the present one stays then.
[[nodiscard]] bool gx11_load_font(std::string_view name);
int gx11_text_width(std::string_view text);
int gx11_font_ascent();
int gx11_font_descent();
/// Draws with the text context; (x, y) is the left end of the base line.
void gx11_draw_string(int x, int y, std::string_view text);

// For tests -----------------------------------------------------------------------

/// What is held on the server at present.
struct RasterCounts {
    std::size_t pixmaps = 0; ///< created by gx11_create_pixmap and for the base
    int errors = 0;          ///< protocol errors since the window was opened
};
RasterCounts gx11_counts();
/// Frees a resource that never was, which the server answers with a protocol error.
void gx11_provoke_error();
