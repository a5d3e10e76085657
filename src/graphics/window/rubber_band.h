#pragma once
/// The rubber band between a button's press and its release; inside the window room. Pixels of the window.

/// A button was pressed here: the anchor of a band that may be set now.
void band_press(int x, int y);
void band_move(int x, int y);
/// Ends the band with a final outline.
void band_release();
/// No band is set.
void band_reset();
/// One is set, between press and release.
bool band_is_set();
/// Takes the band away that is being drawn. False when there is none.
bool band_cancel();
