#pragma once
/// Window events: keys, buttons, the rubber band, resizing, zoom by pixel replication.

#include <string>
#include <string_view>

/// kind 2: key or "size", 3: button ("B1-P" pressed, "B1-M" moved while held, "B1-R" released); place in
/// world coordinates of the current transform (size: pixels).
using MouseCallback = void (*)(int kind, std::string_view event, float x, float y);
void gset_mouse_callback(MouseCallback function);
enum InputMode : int { kInputIdle = 0, kInputWaiting = 1, kInputSeen = 2, kInputQuit = 3 };
void gset_input_mode(int mode);
int gget_input_mode();
/// 0 none, 1 a line, else a rectangle, from the next button press on.
void gset_rubber_band(int kind);
/// Number of user events processed.
int gwait_event();
int gcheck_event();
/// Waits for events no longer than so many seconds and processes them. Number of user events.
int gwait_events(float seconds);
/// Processes what waits while a drawing is under way: the window is kept up to date, but buttons are dropped,
/// keys wait until the drawing is done, and so does a new size. The end of the window is noted. Inside a
/// StoppableDrawing it throws DrawingStopped when the drawing is of no use any more.
void gpump_events();
/// Waits without acting on anything. True as soon as something is there to be acted on.
bool gwait_undisturbed(float seconds);

/// Thrown out of a drawing that is of no use any more: the user has ended the window or wants another view,
/// or the window has another size.
struct DrawingStopped {};
/// While it lives, gpump_events may throw.
class StoppableDrawing {
public:
    /// `follows_size`: a picture for another size than the window's is of no use.
    explicit StoppableDrawing(bool follows_size);
    StoppableDrawing(const StoppableDrawing &) = delete;
    StoppableDrawing &operator=(const StoppableDrawing &) = delete;
    ~StoppableDrawing();
};
/// Tells whether a key, named as for the callback, makes the picture useless that is being drawn.
using ViewKey = bool (*)(std::string_view key);
void gset_view_key(ViewKey function);
/// The user has ended the window, perhaps before it is held.
bool gquit_wanted();
/// A key that makes the drawing useless waits to be acted on.
bool gview_wanted();
/// Follows a new size of the window, if there is one, without a word to the callback. True when there was.
bool gfollow_size();
/// A window has just opened: nobody has ended it.
void gbegin_events();
/// Forgets rubber band, exposures and zoom; input mode and callback stay.
void ginit_events();
/// Event processing on or off; the previous setting.
int gset_cache(int flag);
int gget_cache();
int gis_mapped();

/// Shows the base picture. -1 when there is no display.
int gupdate_window();
/// Shows the base picture with one pixel value replaced by another, until the next update: a colour changes
/// so where pixels tell their own colour. -1 when there is nothing to change.
int gshow_recolored(long from, long to);
/// Gives the window another size, or (-1, -1) follows the size that it has got. The base picture is kept as
/// far as it fits; zoom and frames end. 1 when the size changed.
int gresize_window(int width, int height);
/// Title with a remark behind it, and the remark that the window shows at present.
void gset_win_title_extra(std::string_view text);
std::string gget_win_title_extra();
/// Rings at so many percent, 50 when 0.
void gbell(int percent);
/// Cursor types 0 X-shape, 1 pointer, 2 move, 3 looping, 4 stopped, 5 pencil, 6 selection, 7 text, 8 busy.
/// The previous.
int gset_cursor(int type);
int gget_cursor_type();

/// Zooms a frame (or the base picture) around a pixel; -1 keeps centre or factor, below -1 multiplies.
int gzoom(int frame, int x, int y, int factor, int keep);
int gunzoom();
/// Back to the magnification before. 0 when nothing is magnified.
int gzoom_back();
void greset_zoom();
/// While a picture is drawn anew: the base picture is the unzoomed one, and gget_zoom is 1. The zoom that
/// there was.
int gsuspend_zoom();
/// The view of before on the picture as it is now, when it is to be kept.
void gresume_zoom(bool keep);
int gget_zoom();
/// A pixel of the window to the pixel of the unzoomed picture.
float xZ_p(float x);
float yZ_p(float y);
