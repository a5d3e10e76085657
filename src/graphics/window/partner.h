#pragma once
/// A cooperating program that draws into the pictures of this window: it finds them by the window id file,
/// and asks for frames by messages.

#include <string_view>

/// The window's numbers stand in the file "vyxloop.NUMBER" of the current directory, "vyxloop.win" for an
/// empty number, from when the window opens until it closes.
void gshare_window(std::string_view number);
/// Writes the file where the picture to draw into is another one than before.
void gupdate_shared();
void gend_sharing();

/// A frame behind the last one, in the pixmap that a cooperating program draws into: what it has drawn is
/// moved to a frame before. The first takes the window's picture. The program hears of it either way.
void gadd_partner_frame();
/// Shows what a program has drawn into the last frame since, where that is the one that is seen. False where
/// it is not.
bool gshow_partner_frame();
