#pragma once
/// Window events: keys, buttons, sizes, the end of the window; what is heard while a picture is drawn.

#include <string_view>

/// kind 2: key or "size", 3: button ("B1-P" pressed, "B1-M" moved while held, "B1-R" released); place in
/// world coordinates of the current transform (size: pixels).
using MouseCallback = void (*)(int kind, std::string_view event, float x, float y);
void gset_mouse_callback(MouseCallback function);
enum InputMode : int { kInputIdle = 0, kInputWaiting = 1, kInputSeen = 2, kInputQuit = 3 };
void gset_input_mode(int mode);
int gget_input_mode();
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
[[nodiscard]] bool gwait_undisturbed(float seconds);

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
[[nodiscard]] bool gquit_wanted();
/// A key that makes the drawing useless waits to be acted on.
[[nodiscard]] bool gview_wanted();
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

/// Gives the window another size, or (-1, -1) follows the size that it has got. The base picture is kept as
/// far as it fits; zoom and frames end. 1 when the size changed.
int gresize_window(int width, int height);
