#pragma once
/// What the window shows beside its picture's making: the picture itself, its title, the cursor, a bell.
/// Sources: recolor.

#include <string>
#include <string_view>

/// Shows the base picture. -1 when there is no display.
int gupdate_window();
/// Shows the base picture with one pixel value replaced by another, until the next update: a colour changes
/// so where pixels tell their own colour. -1 when there is nothing to change.
int gshow_recolored(long from, long to);
/// Title with a remark behind it, and the remark that the window shows at present.
void gset_win_title_extra(std::string_view text);
std::string gget_win_title_extra();
/// Rings at so many percent, 50 when 0.
void gbell(int percent);
/// Cursor types 0 X-shape, 1 pointer, 2 move, 3 looping, 4 stopped, 5 pencil, 6 selection, 7 text, 8 busy.
/// The previous.
int gset_cursor(int type);
int gget_cursor_type();
