#pragma once
/// Wind symbols, drawn with the current line and fill attributes in world coordinates.

/// A wind barb at (x, y): `direction` in degrees from the plane's y axis (where the wind comes from), `speed` in
/// knots (half barb 5, barb 10, pennant 50; below 2.5 a circle), staff length `size` in world units. With a flag other
/// than 0 the barbs stand on the other side (southern hemisphere).
void WIND_barb(float x, float y, float direction, float speed, float size, float flag);

/// A motion arrow from (x, y) towards `direction` (degrees from the y axis): `ticks` equal steps of
/// length / ticks, each marked, the last with an arrow head; `size` is the length of the marks, world units.
void WIND_track(int ticks, float x, float y, float direction, float length, float size);
