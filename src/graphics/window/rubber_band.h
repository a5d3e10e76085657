#pragma once
/// The rubber band between a button's press and its release; pixels of the window.

/// 0 none, 1 a line, else a rectangle, from the next button press on.
void gset_rubber_band(int kind);
/// A button was pressed here: the anchor of a band that may be set now.
void band_press(int x, int y);
void band_move(int x, int y);
/// Draws the band again, over a picture that has just been shown in the place of the last.
void band_show();
/// Ends the band with a final outline.
void band_release();
/// No band is set.
void band_reset();
/// One is set, between press and release.
[[nodiscard]] bool band_is_set();
/// Takes the band away that is being drawn. False when there is none.
[[nodiscard]] bool band_cancel();
