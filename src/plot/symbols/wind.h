#pragma once
/// Wind symbols, drawn with the current line and fill attributes in world coordinates. Missing values draw
/// nothing.

/// A wind barb at (x, y): `direction` in degrees clockwise from the plane's y axis (where the wind comes
/// from), `speed` in knots, rounded to 5 (half barb 5, barb 10, pennant 50; below 2.5 a circle), staff length
/// `size` in world units. The barbs stand clockwise of the staff, as on the northern hemisphere; with a flag
/// other than 0 on the other side.
void WIND_barb(float x, float y, float direction, float speed, float size, float flag);

/// A motion arrow from (x, y) towards `direction` (degrees clockwise from the y axis), `length` world units
/// long: a cross mark after each of `ticks` equal steps but the last, which ends in the arrow head. Marks and
/// head are a fifth of `size` (world units) wide.
void WIND_track(int ticks, float x, float y, float direction, float length, float size);

/// The arrow of a motion from `direction` (degrees clockwise from the y axis, where it comes from), from (x,
/// y) `length` world units long.
void WIND_vect(float x, float y, float direction, float length);
